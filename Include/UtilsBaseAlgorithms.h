#pragma once
// Definitions of UtilsBase; included only by UtilsBase.h.

namespace UTILS {

template <class T>
UtilsBase<T>::Folding::Folding(const UtilsBase& base, std::size_t work) : base_(base) {
    if constexpr (scan::is_byte<T>) {
        tabled_ = work > 1024;
        for (unsigned value = 0; tabled_ && value < table_.size(); ++value) {
            const T element = static_cast<T>(value);
            table_[value] = base_.isupper(element) == 1 ? element : base_.utoupper(element);
        }
    }
}

template <class T>
T UtilsBase<T>::Folding::operator()(T element) const {
    if constexpr (scan::is_byte<T>) {
        if (tabled_) {
            return table_[static_cast<unsigned char>(element)];
        }
    }
    return base_.isupper(element) == 1 ? element : base_.utoupper(element);
}

template <class T>
UtilsBase<T>::Finder::Finder(const UtilsBase& base, const T* pattern, DWORD count, int matchCase,
                             std::size_t work)
    : pattern_(pattern), count_(count), exact_(matchCase == 1), folding_(base, exact_ ? 0 : work) {
    if (matchCase != 0 && matchCase != 1) {
        ThrowInvalidArgument(matchCase, header::base);
    }
    if (!exact_) {
        folded_.resize(count_);
        std::transform(pattern, pattern + count_, folded_.begin(), std::cref(folding_));
    }
}

template <class T>
std::size_t UtilsBase<T>::Finder::operator()(const T* text, std::size_t count, std::size_t from) const {
    if (count_ == 0 || count < count_) {
        return scan::none;
    }
    if (exact_) {
        return scan::Find(text, count, from, pattern_, count_);
    }
    for (std::size_t at = from; at <= count - count_; ++at) {
        std::size_t matched = 0;
        while (matched < count_ && folding_(text[at + matched]) == folded_[matched]) {
            ++matched;
        }
        if (matched == count_) {
            return at;
        }
    }
    return scan::none;
}

template <class T>
int UtilsBase<T>::Sign(T left, T right) {
    if constexpr (std::is_same_v<T, char>) {
        return static_cast<signed char>(left) > static_cast<signed char>(right) ? 1 : -1;
    } else {
        return left > right ? 1 : -1;
    }
}

template <class T>
int UtilsBase<T>::compare(const T* left, DWORD leftCount, const T* right, DWORD rightCount, int matchCase,
                          int matchStyle) const {
    if (left == nullptr || right == nullptr) {
        return left == right ? 0 : (right == nullptr ? 1 : -1);
    }
    if (matchStyle == 1) {
        DWORD position = 0;
        const bool leftShorter = leftCount < rightCount;
        if (search(leftShorter ? left : right, std::min(leftCount, rightCount), leftShorter ? right : left,
                   std::max(leftCount, rightCount), position, matchCase) == 1) {
            return 0;
        }
    }
    const bool exact = matchCase != 0;
    const DWORD common = std::min(leftCount, rightCount);
    std::size_t at = scan::FirstMismatch(left, right, common);
    if (!exact) {
        const Folding fold(*this, common - at);
        while (at < common && (left[at] == right[at] || fold(left[at]) == fold(right[at]))) {
            ++at;
        }
        if (at < common) {
            return Sign(fold(left[at]), fold(right[at]));
        }
    } else if (at < common) {
        return Sign(left[at], right[at]);
    }
    return leftCount >= rightCount ? CompareTail(left + common, leftCount - common, exact)
                                   : -CompareTail(right + common, rightCount - common, exact);
}

// Compares the rest of the longer text with the terminator of the shorter one, which counts for every
// position beyond its end.
template <class T>
int UtilsBase<T>::CompareTail(const T* tail, DWORD count, bool exact) const {
    if (terminators_ == 0) {
        return count == 0 ? 0 : 1;
    }
    const T* const end = tail + count;
    const T* const differing = std::find_if(tail, end, [](const T& element) { return element != T(); });
    if (differing == end) {
        return 0;
    }
    const Folding fold(*this, 0);
    return exact ? Sign(*differing, T()) : Sign(fold(*differing), fold(T()));
}

template <class T>
int UtilsBase<T>::search(const T* pattern, DWORD patternCount, const T* text, DWORD textCount,
                         DWORD& position, int matchCase, DWORD occurrence) const {
    if (textCount < patternCount) {
        position = 0;
        return 0;
    }
    const Finder find(*this, pattern, patternCount, matchCase, textCount);
    std::size_t at = find(text, textCount, 0);
    for (DWORD number = 0; number < occurrence && at != scan::none; ++number) {
        at = find(text, textCount, at + patternCount);
    }
    position = at == scan::none ? not_found : static_cast<DWORD>(at);
    return at == scan::none ? 0 : 1;
}

template <class T>
int UtilsBase<T>::parse(const T* delimiter, DWORD delimiterCount, const T* text, DWORD textCount,
                        DWORD& start, DWORD& length, int matchCase, DWORD field, int wholeText) const {
    if (delimiterCount == 0 || textCount == 0) {
        return 0;
    }
    const Finder find(*this, delimiter, delimiterCount, matchCase, textCount);
    std::size_t from = 0;
    std::size_t end = find(text, textCount, 0);
    if (end == scan::none && wholeText == 0) {
        return 0;
    }
    for (DWORD number = 0; number < field; ++number) {
        if (end == scan::none) {
            return 0;
        }
        from = end + delimiterCount;
        end = find(text, textCount, from);
    }
    start = static_cast<DWORD>(from);
    length = static_cast<DWORD>((end == scan::none ? textCount : end) - from);
    return 1;
}

template <class T>
template <class E>
void UtilsBase<T>::selection_sort(E* elements, DWORD count) {
    if constexpr (std::is_same_v<E, char>) {
        // Equal characters are indistinguishable, so any sort gives the result of a selection sort.
        std::sort(elements, elements + count, [](char left, char right) {
            return static_cast<signed char>(left) < static_cast<signed char>(right);
        });
    } else if constexpr (std::is_integral_v<E>) {
        std::sort(elements, elements + count);
    } else {
        const auto less = [](const E& left, const E& right) {
            if constexpr (std::is_same_v<E, char*> || std::is_same_v<E, const char*>) {
                return std::strcmp(left, right) < 0;
            } else {
                return left < right;
            }
        };
        for (E* at = elements; count > 1 && at != elements + count - 1; ++at) {
            std::swap(*at, *std::min_element(at, elements + count, less));
        }
    }
}

}  // namespace UTILS
