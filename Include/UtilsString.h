#pragma once
#include <windows.h>

#include <compare>
#include <concepts>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "UtilsByte.h"
#include "UtilsNumber.h"
#include "UtilsTextArgument.h"
#include "UtilsVector.h"

namespace UTILS {

// Text in the ANSI code page, always zero-terminated and stored at its exact size. An object holds one or
// more strings; text operations act on the current one. It has a case flag (1 exact, 0 ignores case) and a
// match style (1: texts are equal if one contains the other).
//
// A text argument is a `const char*` (null is no text), a UtilsString (its current string), a
// MemObject<char>, a std::string, or 16-bit text (WideText), which is converted; it may point into the object
// itself. Lengths, positions and counts are in characters without the terminating zero; the position
// not_found means not found. Operations that return a reference return the object itself. Failures: see
// MemObject; changes made before a throw remain, and the object stays valid. Pointers into a string are valid
// until its next change. Thread rule: each operation on a buffer holds its lock, so that threads may append
// to one string; sequences are not atomic, and arguments must not change meanwhile. ReturnWideChar and
// ReturnByteStr use process-wide buffers without a lock.
//
//   UTILS::UtilsString path = "C:\\";
//   path += "temp";
//   path.ReplaceAll("\\", "/");
class UtilsString : public Utils<char, int> {
public:
    // One empty string, or `strings` of them (0 means 1).
    UtilsString() = default;
    template <std::integral Count>
    explicit UtilsString(Count strings) : UtilsString(nullptr, CheckedCount(strings)) {}
    // A copy of the text in each of `strings` strings.
    UtilsString(const char* text) { AppendText(text); }
    UtilsString(std::nullptr_t) {}
    UtilsString(const MemObject<char>& text) { AppendText(text); }
    UtilsString(const std::string& text) { AppendText(text); }
    UtilsString(const WideText& text) { AppendText(text); }
    UtilsString(const unsigned short* text);
    UtilsString(const TextArgument& text, DWORD strings);
    // A copy has the strings and all fields; moving leaves the other object empty.
    UtilsString(const UtilsString&) = default;
    UtilsString(UtilsString&& other) noexcept : UtilsString() { Swap(other); }
    ~UtilsString() override = default;

    // Assigning a UtilsString copies all strings and fields; any other text replaces the current string. A
    // vector makes one string per element (an empty vector one empty string), the first of them current.
    const UtilsString& operator=(const UtilsString& other);
    const UtilsString& operator=(UtilsString&& other) noexcept;
    const UtilsString& operator=(const char* text) { return AssignText(text); }
    const UtilsString& operator=(const MemObject<char>& text) { return AssignText(text); }
    const UtilsString& operator=(const std::string& text) { return AssignText(text); }
    // A class that converts to a UtilsString, even if it converts to a text as well.
    template <class Source>
    requires(std::is_class_v<Source> && !std::is_base_of_v<MemObject<char>, Source> &&
             std::is_convertible_v<const Source&, UtilsString>) const UtilsString&
    operator=(const Source& source) {
        UtilsString text = source;
        return *this = std::move(text);
    }
    // 16-bit text that cannot be converted leaves the string unchanged.
    const UtilsString& operator=(const WideText& text) { return ConvertFromWideChar(text); }
    const UtilsString& operator=(const unsigned short* text) { return ConvertFromWideChar(text); }
    const UtilsString& operator=(std::nullptr_t) { return AssignText(nullptr); }
    template <class Text>
    requires(TextSource<Text> && !std::is_same_v<Text, TextArgument>) const UtilsString& operator=(
        const std::vector<Text>& texts) {
        return AssignEach(texts);
    }
    const UtilsString& operator=(const std::vector<unsigned short*>& texts) { return AssignEach(texts); }
    const UtilsString& operator=(const std::vector<const unsigned short*>& texts) {
        return AssignEach(texts);
    }

    // Append text. A char is one character; numbers are written in decimal, a double as "%.15g".
    const UtilsString& Append(const TextArgument& text) { return AppendText(text); }
    const UtilsString& Append(char character);
    const UtilsString& Append(int number) { return AppendSigned(number); }
    const UtilsString& Append(DWORD number) { return AppendUnsigned(number); }
    const UtilsString& Append(double number);
    template <std::integral Number>
    const UtilsString& Append(Number number) {
        if constexpr (std::is_signed_v<Number>) {
            return AppendSigned(number);
        } else {
            return AppendUnsigned(number);
        }
    }
    // `length` characters; 0 means up to the terminating zero.
    const UtilsString& Append(const char* text, DWORD length);
    const UtilsString& operator+=(const TextArgument& text) { return AppendText(text); }
    template <class Number>
    requires std::is_arithmetic_v<Number>
    const UtilsString& operator+=(Number number) { return Append(number); }

    // Insert before `position` (at most the length, else std::out_of_range).
    const UtilsString& Insert(const TextArgument& text, DWORD position);
    // Overwrite from `position` on; characters past the end are dropped.
    const UtilsString& Replace(const TextArgument& text, DWORD position);

    // Remove `count` characters from the end, or at `position`; a range beyond the length throws
    // std::out_of_range.
    const UtilsString& TruncateString(DWORD count);
    const UtilsString& TruncateStringAtPosition(DWORD count, DWORD position);
    const UtilsString& operator--() { return TruncateString(1); }
    const UtilsString& operator--(int) { return TruncateString(1); }
    // Empty the current string.
    const UtilsString& Erase();
    const UtilsString& EraseString() { return Erase(); }
    // Sets the length; new characters are zero. For callers that write through GetString.
    const UtilsString& Resize(DWORD length);

    // The current string, owned by the object.
    const char* c_str() const noexcept { return Current().c_str(); }
    const char* GetString() const noexcept { return Current().c_str(); }
    char* GetString() noexcept { return Current().GetBuffer(); }
    const char* Retrieve() const noexcept { return Current().c_str(); }
    char* Retrieve() noexcept { return Current().GetBuffer(); }
    operator char*() noexcept { return Current().GetBuffer(); }
    operator const char*() const noexcept { return Current().c_str(); }
    operator unsigned char*() noexcept { return reinterpret_cast<unsigned char*>(Current().GetBuffer()); }
    // The character at `index`; throws std::out_of_range when it is not below the length.
    char& RetrieveChar(DWORD index) { return Current().Retrieve(index); }
    const char& RetrieveChar(DWORD index) const { return Current().Retrieve(index); }
    DWORD length() const noexcept { return Current().length(); }
    DWORD size() const noexcept { return length(); }
    DWORD strlen() const noexcept { return length(); }
    // 1 when the current string is empty.
    int operator!() const noexcept { return length() == 0 ? 1 : 0; }
    // The buffer of the current string, for operations that take a MemObject.
    const MemObject<char>& GetBuffer() const noexcept { return Current(); }

    // Compares the current string with the argument: 0 equal, 1 this greater, -1 less; characters compare
    // signed, a null argument gives 1. FriendCompare compares the argument with the current string.
    int Compare(const TextArgument& text) const;
    int FriendCompare(const TextArgument& text) const;
    // All six relational operators, in both directions, test the result of Compare.
    template <TextSource Text>
    bool operator==(const Text& text) const {
        return Compare(text) == 0;
    }
    template <TextSource Text>
    std::strong_ordering operator<=>(const Text& text) const {
        return Compare(text) <=> 0;
    }

    // The offset of an occurrence (numbered from 0, not overlapping), or not_found. An empty pattern never
    // occurs. Like all searches, throws std::invalid_argument for a case flag other than 0 and 1.
    DWORD Search(const TextArgument& pattern, DWORD occurrence = 0) const;

    // Iterate over the occurrences: 1 with the offset in `position`; 0 with not_found there if there is none
    // (with 0 if the string is shorter than the pattern). FindFirst finds the first, FindNext the next.
    int FindFirst(const TextArgument& pattern, DWORD& position);
    int FindNext(const TextArgument& pattern, DWORD& position);
    template <UnsignedLong Position>
    int FindFirst(const TextArgument& pattern, Position& position) {
        return WithDword(position, [&](DWORD& found) { return FindFirst(pattern, found); });
    }
    template <UnsignedLong Position>
    int FindNext(const TextArgument& pattern, Position& position) {
        return WithDword(position, [&](DWORD& found) { return FindNext(pattern, found); });
    }
    int FindFirst(const TextArgument& pattern);
    int FindNext(const TextArgument& pattern);
    // 1 if there is an occurrence, else 0; the next FindNext looks for occurrence 1.
    int FindAll(const TextArgument& pattern);
    const UtilsString& FindReset();

    // Split the current string at a delimiter. Result: 1 with field number `field` (from 0) in `output`; 0,
    // and `output` unchanged, if there is no such field, or no delimiter at all. An empty field counts. A
    // char buffer must hold the field and a zero. ParseFirstString gives field 0, ParseNextString the next
    // one. The last argument has no effect: a field is always counted from the start.
    int ParseString(const TextArgument& delimiter, UtilsString& output, DWORD field, int flag = 0) const;
    int ParseString(const TextArgument& delimiter, char* output, DWORD field, int flag = 0) const;
    int ParseFirstString(const TextArgument& delimiter, UtilsString& output);
    int ParseFirstString(const TextArgument& delimiter, char* output);
    int ParseNextString(const TextArgument& delimiter, UtilsString& output, int flag = 0);
    int ParseNextString(const TextArgument& delimiter, char* output, int flag = 0);
    const UtilsString& ParseReset();

    // The same with a cursor, so that reading all fields takes linear time: ParseFirstStringFast starts at
    // the beginning, ParseNextStringFast after the last field; ParseStringFast counts `field` from the cursor
    // without moving it. A string without delimiter is field 0. A cursor beyond the end gives 0 and an empty
    // output.
    int ParseStringFast(const TextArgument& delimiter, UtilsString& output, DWORD field);
    int ParseStringFast(const TextArgument& delimiter, char* output, DWORD field);
    int ParseFirstStringFast(const TextArgument& delimiter, UtilsString& output);
    int ParseFirstStringFast(const TextArgument& delimiter, char* output);
    int ParseNextStringFast(const TextArgument& delimiter, UtilsString& output);
    int ParseNextStringFast(const TextArgument& delimiter, char* output);
    const UtilsString& ParseFastReset();

    // Replace occurrences under the case flag: 1 if any was replaced, else 0. ReplaceNext replaces the first
    // occurrence in the text unless it is where the last one was replaced. ReplaceAll replaces the first one
    // repeatedly; it stops if that one is where it has just replaced, and skips an occurrence further right
    // inside the replacement.
    int ReplaceFirst(const TextArgument& pattern, const TextArgument& replacement);
    int ReplaceNext(const TextArgument& pattern, const TextArgument& replacement);
    int ReplaceAll(const TextArgument& pattern, const TextArgument& replacement);
    // Resets the counter and the position of the last replacement.
    const UtilsString& ReplaceReset();

    // Sort the characters ascending (signed); reverse the string.
    const UtilsString& Sort();
    const UtilsString& Reverse();
    // XOR every character with one byte, or with the key's bytes in turn; resulting zeros stay in the text.
    // An empty key throws std::out_of_range.
    const UtilsString& XORString(unsigned char byte);
    const UtilsString& EncryptString(const UtilsByte& key);
    const UtilsString& EncryptString(const UtilsString& key);

    // Multiple strings. AddString appends one; the current string stays current.
    const UtilsString& AddString(const TextArgument& text);
    // Make a string current; an index not below the number of strings throws std::out_of_range.
    const UtilsString& SetCurrentString(DWORD index);
    template <std::integral Index>
    const UtilsString& operator[](Index index) {
        return SetCurrentString(CheckedCount(index));
    }
    // The index of the current string.
    DWORD GetCurrentString() const noexcept { return current_; }
    DWORD GetNumberOfStrings() const noexcept { return static_cast<DWORD>(BufferCount()); }
    // Remove the current string or the one at `index` (not below the number: std::out_of_range). A current
    // index beyond the new end moves back by one; the only string is emptied instead.
    const UtilsString& RemoveString();
    const UtilsString& RemoveString(DWORD index);
    // The text of the string at `index`; throws std::out_of_range if there is none.
    const char* GetStringNumber(DWORD index) const;
    // Split the current string of the source (or of this object) at the delimiter: each field that is not
    // empty becomes one string. flag 0 replaces the strings; otherwise the fields are appended. A source
    // without delimiter has no fields.
    const UtilsString& SplitData(const UtilsString& source, const TextArgument& delimiter, int flag = 0);
    const UtilsString& SplitData(const TextArgument& delimiter, int flag = 0);

    // Append a string resource of `module` (null: the process's own). maximum: the most characters to load.
    // Result: the number loaded, 0 for none.
    int LoadString(HMODULE module, UINT id, int maximum);
    // Append the system's text for an error code; withNumber non-zero puts "Error Number:  n - " before it.
    // Result: the length of the system's text, 0 when it has none.
    DWORD SetErrorMsg(DWORD code, int withNumber = 0);
    // Append a text formatted by the system (%1, %2!u!, ...). Arguments: texts by pointer, numbers by value,
    // as the format specifies. Result: the length, 0 if the system cannot format.
    template <class... Arguments>
    DWORD FormatMessage(const TextArgument& format, Arguments... arguments) {
        return FormatText(Action::append, format.Text(), PassOn(arguments)...);
    }
    // The same with the format from a string resource.
    template <class... Arguments>
    DWORD FormatMessage(HMODULE module, std::integral auto id, Arguments... arguments) {
        return FormatText(Action::append, ResourceText(module, static_cast<UINT>(id)).c_str(),
                          PassOn(arguments)...);
    }
    // The same with the current string as the format; the result replaces it.
    template <class... Arguments>
    DWORD FormatCurrentString(Arguments... arguments) {
        return FormatText(Action::replace, std::string(c_str()).c_str(), PassOn(arguments)...);
    }

    // Conversion from 16-bit text (zero-terminated or with a length). append 0 replaces the current string. A
    // text that cannot be converted leaves it unchanged.
    const UtilsString& ConvertFromWideChar(const unsigned short* text, int append = 0);
    const UtilsString& ConvertFromWideChar(const WideText& text, int append = 0);
    const UtilsString& ReturnStringFromWideString(const unsigned short* text) {
        return ConvertFromWideChar(text);
    }
    const UtilsString& ReturnStringFromWideString(const WideText& text) { return ConvertFromWideChar(text); }
    // The current string as 16-bit text, in a process-wide buffer: valid until the next such call, by one
    // thread at a time.
    unsigned short* ReturnWideChar() const;
    const unsigned short* w_str() const { return ReturnWideChar(); }
    operator unsigned short*() { return ReturnWideChar(); }
    operator const unsigned short*() const { return ReturnWideChar(); }
    WideText GetSTLWString() const;
    std::string GetSTLString() const;
    std::string ConvertToSTL() const { return GetSTLString(); }
    // length() bytes, each the character plus 128 modulo 256, in a shared buffer as above.
    unsigned char* ReturnByteStr() const;

    const UtilsString& SetMatchStyle(int style);
    int GetMatchStyle() const noexcept { return matchStyle_; }
    const UtilsString& SetCase(int matchCase);
    int GetCase() const noexcept { return case_; }

    // Exchanges the complete contents without copying text.
    void Swap(UtilsString& other) noexcept;
    friend void swap(UtilsString& left, UtilsString& right) noexcept { left.Swap(right); }

private:
    enum class Action { append, replace };

    MemObject<char>& Current() noexcept { return Buffer(static_cast<int>(current_)); }
    const MemObject<char>& Current() const noexcept { return Buffer(static_cast<int>(current_)); }

    template <std::integral Count>
    static DWORD CheckedCount(Count count) {
        return std::in_range<DWORD>(count) ? static_cast<DWORD>(count) : not_found;
    }

    // A system format can take only scalars.
    template <class Argument>
    static Argument PassOn(Argument argument) {
        static_assert(std::is_scalar_v<Argument>, "pass texts as const char*");
        return argument;
    }

    const UtilsString& AppendText(const TextArgument& text);
    const UtilsString& AssignText(const TextArgument& text);
    const UtilsString& AppendSigned(long long number);
    const UtilsString& AppendUnsigned(unsigned long long number);
    template <class Texts>
    const UtilsString& AssignEach(const Texts& texts);

    int Find(const TextArgument& pattern, DWORD& position, DWORD occurrence) const;
    template <class Output>
    int ParseInto(const TextArgument& delimiter, Output&& output, DWORD field) const;
    template <class Output>
    int ParseFastInto(const TextArgument& delimiter, Output&& output, DWORD field);
    void AdvanceFastCursor(DWORD delimiterLength);
    static void Deliver(UtilsString& output, const char* field, DWORD length);
    static void Deliver(char* output, const char* field, DWORD length);

    static int TableSize(DWORD strings);
    void CheckStringIndex(DWORD index) const;
    void PutString(DWORD index, const char* text, DWORD length);
    const UtilsString& ConvertUnits(const unsigned short* text, std::size_t count, int append);
    DWORD FormatText(Action action, const char* format, ...);
    static std::string ResourceText(HMODULE module, UINT id);

    DWORD findCounter_ = 0;
    DWORD parseCounter_ = 0;
    DWORD fastLength_ = 0;
    DWORD fastCursor_ = 0;
    DWORD lastReplaced_ = 0;
    DWORD current_ = 0;
    int matchStyle_ = 0;
    int case_ = 1;
};

// The texts may point into the object itself, so the new strings are built separately.
template <class Texts>
const UtilsString& UtilsString::AssignEach(const Texts& texts) {
    UtilsString strings(texts.size());
    for (const auto& text : texts) {
        strings.Append(UtilsString(text));
        ++strings.current_;
    }
    current_ = 0;
    SwapTable(strings);
    return *this;
}

}  // namespace UTILS
