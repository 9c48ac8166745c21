#pragma once
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

// Fast versions of the comparison and search of UtilsBase, for elements that are compared exactly.

namespace UTILS::scan {

inline constexpr std::size_t none = static_cast<std::size_t>(-1);

template <class T>
inline constexpr bool is_byte = std::is_same_v<T, char> || std::is_same_v<T, unsigned char>;

inline std::uint64_t Word(const void* at) noexcept {
    std::uint64_t word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

// The index of the first differing byte of two texts of `count` bytes; `count` when they are equal.
inline std::size_t FirstByteMismatch(const void* leftText, const void* rightText,
                                     std::size_t count) noexcept {
    const auto* const left = static_cast<const unsigned char*>(leftText);
    const auto* const right = static_cast<const unsigned char*>(rightText);
    constexpr std::size_t block = 4096;
    std::size_t at = 0;
    while (count - at >= block && std::memcmp(left + at, right + at, block) == 0) {
        at += block;
    }
    while (count - at >= 8 && Word(left + at) == Word(right + at)) {
        at += 8;
    }
    while (at < count && left[at] == right[at]) {
        ++at;
    }
    return at;
}

template <class T>
std::size_t FirstMismatch(const T* left, const T* right, std::size_t count) {
    if constexpr (is_byte<T>) {
        return FirstByteMismatch(left, right, count);
    } else {
        return static_cast<std::size_t>(std::mismatch(left, left + count, right).first - left);
    }
}

// Whether the pattern's first and last byte match at any start position of the block. Branchless, so that the
// compiler can vectorise it.
inline constexpr std::size_t filter_block = 128;
template <class T>
bool AnyCandidate(const T* starts, const T* ends, T first, T last) noexcept {
    unsigned char any = 0;
    for (std::size_t i = 0; i < filter_block; ++i) {
        any = static_cast<unsigned char>(any | ((starts[i] == first) & (ends[i] == last)));
    }
    return any != 0;
}

// Maps a pair of bytes, by its hash, to the last position in a pattern where the pair may occur.
template <class T>
class PairPlaces {
public:
    PairPlaces(const T* pattern, std::size_t count) {
        for (std::size_t i = 1; i < count; ++i) {
            afterEnd_ = i - std::exchange(places_[Hash(pattern + i)], i);
        }
    }

    // The last index at which the pair last[-1], last[0] may end; 0 if there is none.
    std::size_t operator()(const T* last) const noexcept { return places_[Hash(last)]; }
    // How far the pattern can be shifted after a mismatch where its own last pair matched.
    std::size_t AfterEnd() const noexcept { return afterEnd_; }

private:
    static unsigned char Hash(const T* last) noexcept {
        return static_cast<unsigned char>(last[0] + 8 * last[-1]);
    }

    std::array<std::size_t, 256> places_{};
    std::size_t afterEnd_ = 1;
};

// Find for long patterns, which skips most of a text unread. The inner loop advances by a constant, so the
// processor does not wait for the step.
template <class T>
std::size_t FindLong(const T* text, std::size_t starts, std::size_t from, const T* pattern,
                     std::size_t patternCount) {
    const PairPlaces<T> places(pattern, patternCount);
    const std::size_t lastOffset = patternCount - 1;
    for (std::size_t at = from; at < starts;) {
        std::size_t place = 0;
        do {
            at += lastOffset;
            place = places(text + at);
        } while (place == 0 && at < starts);
        at -= place;
        if (place == lastOffset) {
            if (std::equal(pattern, pattern + patternCount, text + at)) {
                return at;
            }
            at += places.AfterEnd();
        }
    }
    return none;
}

// From these sizes on, the table of pairs saves more than it costs.
inline constexpr std::size_t long_pattern = 24;
inline constexpr std::size_t long_text = 4096;

// The first occurrence in text[from, count) of the pattern (at least 1 element); `none` if there is none.
template <class T>
std::size_t Find(const T* text, std::size_t count, std::size_t from, const T* pattern,
                 std::size_t patternCount) {
    if (count < patternCount || from > count - patternCount) {
        return none;
    }
    if constexpr (is_byte<T>) {
        if (patternCount == 1) {
            const void* const found =
                std::memchr(text + from, static_cast<unsigned char>(pattern[0]), count - from);
            return found == nullptr ? none : static_cast<std::size_t>(static_cast<const T*>(found) - text);
        }
    }
    const std::size_t starts = count - patternCount + 1;
    const std::size_t lastOffset = patternCount - 1;
    if constexpr (is_byte<T>) {
        if (patternCount >= long_pattern && starts - from >= long_text) {
            return FindLong(text, starts, from, pattern, patternCount);
        }
    }
    std::size_t at = from;
    while (at < starts) {
        if constexpr (is_byte<T>) {
            if (starts - at >= filter_block &&
                !AnyCandidate(text + at, text + at + lastOffset, pattern[0], pattern[lastOffset])) {
                at += filter_block;
                continue;
            }
        }
        const std::size_t end = std::min(starts, at + filter_block);
        for (; at < end; ++at) {
            if (text[at] == pattern[0] && text[at + lastOffset] == pattern[lastOffset] &&
                std::equal(pattern, pattern + patternCount, text + at)) {
                return at;
            }
        }
    }
    return none;
}

}  // namespace UTILS::scan
