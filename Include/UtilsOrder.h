#pragma once
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "UtilsBase.h"
#include "UtilsString.h"

// How lists and maps compare their elements. An order makes a view of each value once and compares views as
// often as needed; a view is valid until its value changes.

namespace UTILS {

// Numbers, such as the keys of a map.
template <typename K>
class ScalarOrder {
public:
    using ViewType = K;

    ViewType View(K value) const { return value; }
    int Compare(K a, K b) const { return a < b ? -1 : (b < a ? 1 : 0); }
    bool Matches(K element, K wanted) const { return element == wanted; }
    bool IsTotal() const { return true; }
    template <typename Entries>
    void SkipCommon(Entries&) const {}
};

// Single characters or bytes under a case (1 exact, 0 ignores case). They contain each other only if they are
// equal.
template <typename T>
class CharacterOrder : public ScalarOrder<int> {
public:
    CharacterOrder(int exact, int) : fold_(exact == 0) {}

    ViewType View(T value) const {
        const T folded = fold_ && base_.isupper(value) != 1 ? base_.utoupper(value) : value;
        if constexpr (std::is_same_v<T, char>) {
            return static_cast<signed char>(folded);
        } else {
            return folded;
        }
    }

private:
    bool fold_;
    UtilsBase<T> base_;
};

// Texts under a case and a match style (0 whole texts, otherwise containment).
class TextOrder {
public:
    // Eight characters, as a number that sorts like them, decide most comparisons without reading the text.
    // They are the first ones, or the first after the common prefix of the texts to compare.
    struct ViewType {
        std::uint64_t beginning;
        const char* text;
        DWORD length;
    };

    TextOrder(int exact, int style) : case_(exact), containment_(style != 0) {}

    ViewType View(const UtilsString& value) const {
        const char* const text = value.c_str();
        const DWORD length = value.length();
        return {Beginning(text, length, 0), text, length};
    }
    // Skips the common prefix of entries (each with a `view`) that are compared only with each other.
    template <typename Entries>
    void SkipCommon(Entries& entries) const {
        DWORD common = containment_ || entries.empty() ? 0 : entries.front().view.length;
        for (auto entry = entries.begin(); common > 0 && entry != entries.end(); ++entry) {
            const char* const text = entry->view.text;
            const char* const end = text + std::min(common, entry->view.length);
            common = static_cast<DWORD>(std::mismatch(text, end, entries.front().view.text).first - text);
        }
        for (auto entry = entries.begin(); common > 0 && entry != entries.end(); ++entry) {
            entry->view.beginning = Beginning(entry->view.text, entry->view.length, common);
        }
    }
    int Compare(const ViewType& a, const ViewType& b) const {
        if (!containment_ && a.beginning != b.beginning) {
            return a.beginning < b.beginning ? -1 : 1;
        }
        return base_.compare(a.text, a.length, b.text, b.length, case_, containment_ ? 1 : 0);
    }
    bool Matches(const ViewType& element, const ViewType& wanted) const {
        DWORD position = 0;
        return containment_ ? base_.search(wanted.text, wanted.length, element.text, element.length, position,
                                           case_) == 1
                            : Compare(element, wanted) == 0;
    }
    bool IsTotal() const { return !containment_; }

private:
    std::uint64_t Beginning(const char* text, DWORD length, DWORD start) const {
        std::uint64_t beginning = 0;
        for (DWORD at = start; at < start + 8; ++at) {
            const char element = at < length ? text[at] : '\0';
            beginning = beginning << 8 | (static_cast<unsigned char>(Fold(element)) ^ 0x80U);
        }
        return beginning;
    }
    char Fold(char element) const {
        return case_ != 0 || base_.isupper(element) == 1 ? element : base_.utoupper(element);
    }

    int case_;
    bool containment_;
    UtilsBase<char> base_;
};

template <typename T>
using ValueOrder = std::conditional_t<std::is_same_v<T, UtilsString>, TextOrder, CharacterOrder<T>>;

// Sets the case and match style of a value in a list or map, if it has such settings.
template <typename T>
void CopyStyle(T& value, int exact, int style) {
    if constexpr (requires { value.SetCase(exact), value.SetMatchStyle(style); }) {
        value.SetCase(exact);
        value.SetMatchStyle(style);
    }
}

}  // namespace UTILS
