#pragma once
#include <windows.h>

#include <array>
#include <cstring>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

#include "RuntimeClassName.h"
#include "StandardFailure.h"
#include "UtilsScan.h"

namespace UTILS {

// The position that a search reports if it finds nothing.
inline constexpr DWORD not_found = 0xEFFFFFFF;

// The common base of strings, buffers, lists, maps and files: classification of elements, comparison, search,
// parsing and sorting. Texts are passed as a pointer and a count of elements and may contain zeros; nothing
// is allocated for the caller or retained. T may be any type: for a class (UtilsString, DiskIO) only the
// classification exists, which returns 0 or the element unchanged. Thread rule: the operations are const and
// keep no state.
template <class T>
class UtilsBase {
public:
    static constexpr bool is_text = std::is_same_v<T, char> || std::is_same_v<T, unsigned short>;
    // Small elements are passed and returned by value, classes by reference.
    using Element = std::conditional_t<std::is_scalar_v<T>, T, const T&>;
    // The 16-bit unit of the second set of classification functions; if T is such a unit, the first set
    // handles it.
    using WideUnit = std::conditional_t<std::is_same_v<T, unsigned short>, char16_t, unsigned short>;

    UtilsBase() noexcept = default;
    UtilsBase(const UtilsBase&) noexcept = default;
    UtilsBase& operator=(const UtilsBase&) noexcept = default;

    // 1 for the letters A to Z (a to z) of an 8-bit element, else 0. A 16-bit unit gives 0.
    virtual int isupper(Element element) const { return InRange(element, 'A', 'Z'); }
    virtual int islower(Element element) const { return InRange(element, 'a', 'z'); }
    virtual int isupper(WideUnit) const { return 0; }
    virtual int islower(WideUnit) const { return 0; }

    // An 8-bit element minus (plus) 0x20, modulo 256, even if it is no letter; a 16-bit unit unchanged.
    virtual Element utoupper(Element element) const { return Shifted(element, -0x20); }
    virtual Element utolower(Element element) const { return Shifted(element, 0x20); }
    virtual WideUnit utoupper(WideUnit unit) const { return unit; }
    virtual WideUnit utolower(WideUnit unit) const { return unit; }

    // The name of the object's run-time class; the text is valid for the life of the program.
    virtual const char* derived_class() const { return RuntimeClassName(typeid(*this)); }

    virtual ~UtilsBase() = default;

    // 1 if the elements are characters (8 or 16 bits); as many zeros terminate every buffer.
    int IsText() const noexcept { return text_; }
    DWORD GetTerminatorCount() const noexcept { return terminators_; }

    // Compares two texts. matchCase: 0 ignores case (A to Z stay, any other element counts 0x20 less), else
    // exact; matchStyle: 1 treats texts as equal if one contains the other. Result: 0 equal, 1 left greater,
    // -1 left less; null equals null and is less than any text. The shorter text counts as continued by
    // zeros; without terminators, a prefix is less than the longer one. Signed for char. With matchStyle 1
    // throws as search does.
    int compare(const T* left, DWORD leftCount, const T* right, DWORD rightCount, int matchCase,
                int matchStyle = 0) const;

    // Finds occurrence number `occurrence` (from 0, not overlapping) of `pattern` in `text`. Result: 1 with
    // its offset in `position`; 0 with not_found there, or with 0 if the text is shorter than the pattern. An
    // empty pattern never occurs. Otherwise a matchCase other than 0 and 1 throws std::invalid_argument.
    int search(const T* pattern, DWORD patternCount, const T* text, DWORD textCount, DWORD& position,
               int matchCase, DWORD occurrence = 0) const;

    // Finds field number `field` (from 0) of `text` between delimiters. Result: 1 with its offset and length;
    // 0, and both unchanged, when there is no such field, or `text` or `delimiter` is empty. A text without
    // delimiter is field 0 only when wholeText is not 0. Throws as search does.
    int parse(const T* delimiter, DWORD delimiterCount, const T* text, DWORD textCount, DWORD& start,
              DWORD& length, int matchCase, DWORD field, int wholeText = 0) const;

    // Sorts ascending in place: the smallest remaining element is swapped to each position in turn. char
    // sorts signed, texts (char*) by strcmp.
    template <class E>
    static void selection_sort(E* elements, DWORD count);

protected:
    // Folds case for comparisons: uppercase letters stay, any other element becomes its utoupper.
    class Folding {
    public:
        // `work`: roughly how many elements will be folded; for many, a table of all bytes pays off.
        Folding(const UtilsBase& base, std::size_t work);
        T operator()(T element) const;

    private:
        const UtilsBase& base_;
        bool tabled_ = false;
        std::array<T, scan::is_byte<T> ? 256 : 1> table_;
    };

    // Searches repeatedly for one pattern, which must outlive it.
    class Finder {
    public:
        // `work`: roughly how many elements will be examined. Throws as search does.
        Finder(const UtilsBase& base, const T* pattern, DWORD count, int matchCase, std::size_t work);
        // The first occurrence at or after `from`; scan::none when there is none.
        std::size_t operator()(const T* text, std::size_t count, std::size_t from) const;

    private:
        const T* pattern_;
        std::size_t count_;
        bool exact_;
        Folding folding_;
        std::vector<T> folded_;  // the pattern, when case is ignored
    };

private:
    static int InRange(Element element, char low, char high) {
        if constexpr (scan::is_byte<T>) {
            return element >= static_cast<T>(low) && element <= static_cast<T>(high) ? 1 : 0;
        } else {
            return 0;
        }
    }
    static Element Shifted(Element element, int by) {
        if constexpr (scan::is_byte<T>) {
            return static_cast<T>(element + by);
        } else {
            return element;
        }
    }

    int CompareTail(const T* tail, DWORD count, bool exact) const;
    static int Sign(T left, T right);

    int text_ = is_text ? 1 : 0;
    DWORD terminators_ = is_text ? 1 : 0;
};

}  // namespace UTILS

#include "UtilsBaseAlgorithms.h"
