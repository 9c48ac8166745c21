#pragma once
#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

#include "UtilsVector.h"

namespace UTILS {

// A gap buffer: the text before and after the editing position is kept at the two ends of one block, so that
// an edit moves only the text between it and the last edit.
template <class T>
class GapText {
public:
    GapText(const T* text, std::size_t count) : block_(text, text + count), size_(count) {}

    std::size_t Size() const noexcept { return size_; }

    // Moves the gap to `position`.
    void MoveTo(std::size_t position) {
        T* const block = block_.data();
        if (position < front_) {
            const std::size_t back = block_.size() - (size_ - front_);
            std::copy_backward(block + position, block + front_, block + back);
        } else {
            const std::size_t back = block_.size() - (size_ - front_);
            std::copy(block + back, block + back + (position - front_), block + front_);
        }
        front_ = position;
    }

    // The text after the gap.
    const T* Rest() const noexcept { return block_.data() + block_.size() - RestSize(); }
    std::size_t RestSize() const noexcept { return size_ - front_; }

    // Replaces the next `removed` elements and moves the gap after the replacement.
    void Replace(std::size_t removed, const T* replacement, std::size_t count) {
        size_ -= removed;
        if (block_.size() - size_ < count) {
            const std::size_t rest = RestSize();
            const std::size_t grow = std::max(count, block_.size());
            block_.resize(block_.size() + grow);
            T* const end = block_.data() + block_.size();
            std::copy_backward(end - grow - rest, end - grow, end);
        }
        std::copy_n(replacement, count, block_.data() + front_);
        front_ += count;
        size_ += count;
    }

private:
    std::vector<T> block_;
    std::size_t size_;
    std::size_t front_ = 0;
};

// Replaces the first occurrence, then the first one in the new text, and so on, until none is left or it is
// where the last one was replaced. A new occurrence further left must overlap the text just inserted, so the
// search goes back no further. Two rules end loops that would not terminate: an occurrence further right
// inside the replacement is skipped, and if the text grows, the number of steps back is limited to its length
// or, if the replacement does not contain the pattern and this is more, to what inserts a million elements.
// Result: the last position replaced.
template <class T, class Find>
std::size_t ReplaceEach(GapText<T>& text, std::size_t first, const Find& find, std::size_t patternCount,
                        const T* replacement, std::size_t count) {
    constexpr std::size_t mostElements = std::numeric_limits<DWORD>::max() - 1;
    const auto next = [&](std::size_t from) {
        text.MoveTo(std::min(from, text.Size()));
        const std::size_t at = find(text.Rest(), text.RestSize(), 0);
        return at == scan::none ? scan::none : from + at;
    };
    std::size_t stepsBack = scan::none;
    if (count > patternCount) {
        constexpr std::size_t million = 1000000;
        const bool holdsPattern = find(replacement, count, 0) != scan::none;
        stepsBack = holdsPattern ? text.Size() : std::max(text.Size(), million / count);
    }
    for (std::size_t at = first;;) {
        if (text.Size() - patternCount + count > mostElements) {
            ThrowBadAlloc(condition::incorrectParameter, text.Size() - patternCount + count,
                          header::allocator);
        }
        const std::size_t last = at;
        text.MoveTo(last);
        text.Replace(patternCount, replacement, count);
        at = next(stepsBack > 0 ? last - std::min(last, patternCount - 1) : last);
        if (at != scan::none && at < last) {
            stepsBack -= stepsBack == scan::none ? 0 : 1;
        } else if (at != scan::none && at > last && at + patternCount <= last + count) {
            at = next(last + count - (patternCount - 1));
        }
        if (at == scan::none || at == last) {
            return last;
        }
    }
}

template <class T, class H>
int Utils<T, H>::ReplaceIn(MemObject<T>& buffer, Replacing which, const T* pattern, DWORD patternCount,
                           const T* replacement, DWORD count, int matchCase, DWORD& last) const {
    const T* const text = buffer.c_str();
    const DWORD length = buffer.Readable();
    if (patternCount == length) {
        if (which == Replacing::next || this->compare(text, length, pattern, patternCount, matchCase) != 0) {
            return 0;
        }
        buffer.Assign(replacement, count);
        last = 0;
        return 1;
    }
    const typename UtilsBase<T>::Finder find(*this, pattern, patternCount, matchCase, length);
    const std::size_t at = find(text, length, 0);
    if (at == scan::none || (which == Replacing::next && at == last)) {
        return 0;
    }
    if (which == Replacing::all) {
        GapText<T> edited(text, length);
        last = static_cast<DWORD>(ReplaceEach(edited, at, find, patternCount, replacement, count));
        edited.MoveTo(0);
        buffer.Assign(edited.Rest(), static_cast<DWORD>(edited.Size()));
    } else {
        buffer.Splice(static_cast<DWORD>(at), patternCount, replacement, count);
        last = static_cast<DWORD>(at);
    }
    return 1;
}

}  // namespace UTILS
