#pragma once
#include <windows.h>

#include <compare>
#include <concepts>
#include <list>
#include <type_traits>
#include <utility>

#include "UtilsListObject.h"
#include "UtilsString.h"
#include "UtilsVector.h"

namespace UTILS {

// A list that owns copies of the values added; one of them is current. Positions count from the first value
// appended. A position not below the size throws std::out_of_range and changes nothing. Thread rule: as for
// ListObject; the current position is not protected.
template <typename T>
class IOList : public virtual Utils<T, int> {
public:
    IOList() = default;
    // Copied, never moved: a move would move the virtual base once per class derived from it.
    IOList(const IOList&) = default;
    IOList& operator=(const IOList&) = default;

    // Adds a copy of the value at the end; the current value stays the same. Result: the list.
    IOList& AddData(const T& value) {
        list_.Append(value);
        return *this;
    }
    IOList& operator+=(const T& value) { return AddData(value); }

    // Makes the value at the position the current one. Result: the list.
    IOList& SetCurrentData(DWORD position) {
        RetrieveData(position);
        return *this;
    }
    IOList& operator[](DWORD position) { return SetCurrentData(position); }
    DWORD GetCurrentData() const { return current_; }

    // The current value, or the one at the position, which becomes current. The list owns it until it is
    // removed.
    T& RetrieveData() { return list_.Retrieve(current_); }
    const T& RetrieveData() const { return list_.Retrieve(current_); }
    T& RetrieveData(DWORD position) {
        T& value = list_.Retrieve(position);
        current_ = position;
        return value;
    }

    // Remove the current value, the one at the position, or all. A current position beyond the new end moves
    // to the last value. Result: the list.
    IOList& RemoveData() { return RemoveData(current_); }
    IOList& RemoveData(DWORD position) {
        list_.Remove(position);
        if (current_ >= list_.Size() && current_ > 0) {
            current_ = list_.Size() - 1;
        }
        return *this;
    }
    IOList& RemoveAllData() {
        list_.RemoveAll();
        current_ = 0;
        return *this;
    }

    // 1 counts positions from the last value, any other value from the first.
    void SetSearchDirection(int direction) { list_.SetSearchDirection(direction); }
    DWORD size() const { return list_.Size(); }

private:
    ListObject<T> list_;
    DWORD current_ = 0;
};

// A list of strings, one of which is current. Positions count from the first string appended, with search
// direction 1 from the last; a position not below the size throws std::out_of_range (detail position ":"
// size) and changes nothing. Every string has the list's case and match style. A text is anything that
// UtilsString accepts as one; a UtilsString is stored with all its strings and fields. Operations that return
// a reference return the list. Thread rule: as for ListObject; the current position is not protected.
//
//   UTILS::UtilsStringList names;
//   names.AddString("b").AddString("a");
//   names.Sort(0);
//   const char* first = names.Retrieve(0);  // "a"
class UtilsStringList : public Utils<UtilsString, int> {
    template <typename Text>
    static constexpr bool is_text = TextSource<Text> && !std::is_base_of_v<UtilsStringList, Text>;
    template <typename Text>
    static constexpr bool is_value =
        std::is_constructible_v<UtilsString, const Text&> && !std::is_arithmetic_v<Text>;

public:
    UtilsStringList() = default;
    // One string. A copy of a list has its strings, current position, case, match style and search direction.
    UtilsStringList(const UtilsString& text) { AddString(text); }

    // Replace the list with one string per element, the first of them current; case, match style and search
    // direction stay. Elements are char*, std::string, UtilsString or 16-bit texts.
    UtilsStringList& operator=(const UtilsString& text);
    template <typename Text>
    requires is_value<Text> UtilsStringList& operator=(const std::list<Text>& texts) {
        ListObject<UtilsString> strings = EmptyList();
        for (const Text& text : texts) {
            strings.Append(UtilsString(text));
        }
        return Assign(std::move(strings));
    }

    // Append a string: a text, a number (a char as one character, a double as "%.15g"), or every string of a
    // list, which may be this one. The current string stays current.
    template <typename Text>
    requires is_text<Text> UtilsStringList& AddString(const Text& text) { return AddValue(AsString(text)); }
    template <typename Number>
    requires std::is_arithmetic_v<Number> UtilsStringList& AddString(Number number) {
        UtilsString text;
        text.Append(number);
        return AddValue(text);
    }
    UtilsStringList& AddString(const UtilsStringList& strings);
    template <typename What>
    UtilsStringList& Append(const What& what) {
        return AddString(what);
    }
    template <typename What>
    UtilsStringList& operator+=(const What& what) {
        return AddString(what);
    }
    // Inserts a string in ascending order, after its equals; a list not known to be sorted is sorted first.
    UtilsStringList& AddStringSorted(const UtilsString& text);

    // Append a text or number to the string at `index`, insert a text before, or overwrite from, a position
    // (in characters) of the current string or the one at `index`, as UtilsString does.
    template <typename What>
    UtilsStringList& Append(DWORD index, const What& what) {
        Change(index).Append(what);
        return *this;
    }
    UtilsStringList& Insert(const TextArgument& text, DWORD position) {
        return Insert(current_, text, position);
    }
    UtilsStringList& Insert(DWORD index, const TextArgument& text, DWORD position);
    UtilsStringList& Replace(const TextArgument& text, DWORD position) {
        return Replace(current_, text, position);
    }
    UtilsStringList& Replace(DWORD index, const TextArgument& text, DWORD position);

    // Make the string at a position current.
    UtilsStringList& SetCurrentString(DWORD index);
    template <std::integral Index>
    UtilsStringList& operator[](Index index) {
        return SetCurrentString(std::in_range<DWORD>(index) ? static_cast<DWORD>(index) : not_found);
    }
    DWORD GetCurrentString() const { return current_; }

    // The text of the current string, or of the one at `index`, which becomes current. The list owns it.
    const char* Retrieve() const { return RetrieveString()->c_str(); }
    const char* Retrieve(DWORD index) { return SetCurrentString(index).Retrieve(); }
    operator const char*() const { return Retrieve(); }
    // The string itself, owned by the list, at the same address until it is removed. Changing it this way
    // leaves a sorted list marked as sorted.
    UtilsString* RetrieveString() { return RetrieveString(current_); }
    const UtilsString* RetrieveString() const { return RetrieveString(current_); }
    UtilsString* RetrieveString(DWORD index) { return &list_.Retrieve(index); }
    const UtilsString* RetrieveString(DWORD index) const { return &list_.Retrieve(index); }
    // A copy of it.
    UtilsString RetrieveUString() const { return RetrieveUString(current_); }
    UtilsString RetrieveUString(DWORD index) const { return list_.RetrieveCopy(index); }

    // Remove the current string, the one at `index`, or all. A current position beyond the new end moves back
    // by one.
    UtilsStringList& RemoveString() { return RemoveString(current_); }
    UtilsStringList& RemoveString(DWORD index);
    UtilsStringList& RemoveAllStrings();

    // The number of strings; the length of the current one or the one at `index`, in characters.
    DWORD GetNumberOfStrings() const { return list_.Size(); }
    DWORD size() const { return list_.Size(); }
    DWORD length() const { return RetrieveString()->length(); }
    DWORD length(DWORD index) const { return RetrieveString(index)->length(); }
    DWORD strlen() const { return length(); }
    DWORD strlen(DWORD index) const { return length(index); }
    // 1 when the list is empty.
    int operator!() const { return size() == 0 ? 1 : 0; }

    // The first position at or after `start` whose string equals the text (match style 0) or contains it,
    // under the list's case; not_found (0xEFFFFFFF) when there is none. method 1 sorts the list first and
    // uses binary search, any other searches linearly. Like all text searches, throws std::invalid_argument
    // for a case other than 0 and 1.
    DWORD SearchList(const UtilsString& text, int method = 0, DWORD start = 0) {
        return list_.SearchList(text, method, start);
    }
    // The offset of an occurrence (numbered from 0) of a text in the current string or in the one at `index`,
    // in characters; not_found when there is none.
    DWORD SearchListItem(const TextArgument& text, DWORD occurrence = 0) const {
        return RetrieveString()->Search(text, occurrence);
    }
    DWORD SearchListItem(DWORD index, const TextArgument& text, DWORD occurrence = 0) const {
        return RetrieveString(index)->Search(text, occurrence);
    }

    // Sorts ascending under case and match style. method: 0 chooses by the size, 1 exchange sort, 2 Shell
    // sort, 3 and 4 quicksort; any other does nothing. An empty list, or one known to be sorted, is left
    // alone.
    UtilsStringList& Sort(int method = 0);
    // 1 counts positions, and searches, from the last string; any other value from the first.
    UtilsStringList& SetSearchDirection(int direction);

    // Match style 0 compares whole strings, any other treats strings as equal if one contains the other; case
    // 1 is exact, 0 ignores case. Both are also set in every string of the list.
    UtilsStringList& SetMatchStyle(int style);
    UtilsStringList& SetCase(int exact);
    int GetMatchStyle() const { return list_.GetMatchStyle(); }
    int GetCase() const { return list_.GetCase(); }

    // Compares the current string with a text or with another list's current string, as UtilsString does. An
    // empty list is less than any text and equal to a null one.
    template <TextSource Text>
    int Compare(const Text& text) const {
        if constexpr (std::is_base_of_v<UtilsStringList, Text>) {
            return text.size() == 0 ? CompareText(NoText()) : CompareText(*text.RetrieveString());
        } else {
            return CompareText(text);
        }
    }
    // All six relational operators, in both directions, test the result of Compare.
    template <TextSource Text>
    bool operator==(const Text& text) const {
        return Compare(text) == 0;
    }
    template <TextSource Text>
    std::strong_ordering operator<=>(const Text& text) const {
        return Compare(text) <=> 0;
    }

    // Replace every occurrence of a text in the current string, or in all, under the given case: 1 if any was
    // replaced, else 0.
    int ReplaceAllInCurrentString(const TextArgument& text, const TextArgument& replacement, int exact = 1);
    int ReplaceAllInList(const TextArgument& text, const TextArgument& replacement, int exact = 1);

    // Replaces the list with the fields of a text between delimiters, including empty ones; a text without
    // delimiter is one field, an empty text none. The delimiter is matched under the list's case. The numbers
    // have no effect.
    UtilsStringList& SplitData(const TextArgument& text, const TextArgument& delimiter, int = 0, int = 0,
                               int = 0);

private:
    static const UtilsString& AsString(const UtilsString& text) { return text; }
    template <typename Text>
    requires(!std::is_base_of_v<UtilsString, Text>) static UtilsString AsString(const Text& text) {
        return UtilsString(text, 1);
    }

    static const char* NoText() { return nullptr; }
    int CompareText(const TextArgument& text) const;

    UtilsStringList& AddValue(const UtilsString& text);
    // The string at a position, to be changed: the list no longer counts as sorted.
    UtilsString& Change(DWORD index);
    // An empty list with this one's settings.
    ListObject<UtilsString> EmptyList() const;
    UtilsStringList& Assign(ListObject<UtilsString>&& strings);

    ListObject<UtilsString> list_;
    DWORD current_ = 0;
};

}  // namespace UTILS
