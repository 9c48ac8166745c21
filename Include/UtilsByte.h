#pragma once
#include <windows.h>

#include <compare>
#include <concepts>

#include "UtilsNumber.h"
#include "UtilsVector.h"

namespace UTILS {

class UtilsByte;

// A byte argument of a UtilsByte operation: a UtilsByte, a MemObject<unsigned char> or one byte. It refers to
// the caller's bytes and is valid only during the call.
class ByteArgument {
public:
    ByteArgument(const UtilsByte& bytes);
    ByteArgument(const MemObject<unsigned char>& bytes) : ByteArgument(bytes.c_str(), bytes.Readable()) {}
    template <std::integral Number>
    ByteArgument(Number byte) : one_(static_cast<unsigned char>(byte)), data_(&one_), length_(1) {}
    ByteArgument(const unsigned char* bytes, DWORD length)
        : data_(bytes), length_(bytes == nullptr ? 0 : length) {}

    // A pointer and a length, where 0 means one byte.
    static ByteArgument Measured(const unsigned char* bytes, DWORD length) {
        return ByteArgument(bytes, length == 0 ? 1 : length);
    }

    ByteArgument(const ByteArgument&) = delete;
    ByteArgument& operator=(const ByteArgument&) = delete;

    const unsigned char* Data() const noexcept { return data_; }
    DWORD Length() const noexcept { return length_; }

private:
    unsigned char one_ = 0;
    const unsigned char* data_ = nullptr;
    DWORD length_ = 0;
};

template <class Source>
concept ByteSource =
    std::is_convertible_v<const Source&, const ByteArgument&> && !std::is_null_pointer_v<Source>;

// A byte string: one buffer without terminator, compared unsigned. Operations take bytes as a pointer and a
// length (0 means one byte, a null pointer none), a UtilsByte, a MemObject<unsigned char> or one byte; they
// may point into the object itself. Positions and counts are in bytes; the position not_found means not
// found. Failures: see MemObject; a search with a case other than 0 and 1 throws std::invalid_argument.
// Thread rule: see MemObject.
//
//   UTILS::UtilsByte bytes(record, 20);
//   bytes.XORData(0x93);
class UtilsByte : public Utils<unsigned char, int> {
public:
    UtilsByte() = default;
    // A copy of `length` bytes (0 means one).
    UtilsByte(const unsigned char* bytes, DWORD length = 0) { Append(bytes, length); }
    UtilsByte(const MemObject<unsigned char>& bytes) { *this = bytes; }
    UtilsByte(const UtilsByte&) = default;
    // Moving leaves the other object empty.
    UtilsByte(UtilsByte&& other) noexcept = default;
    ~UtilsByte() override = default;

    // Assigning a UtilsByte also copies its counter and flags; a MemObject or a block replaces only the
    // bytes. An uninitialised block makes a byte string that refuses every change.
    const UtilsByte& operator=(const UtilsByte& other);
    const UtilsByte& operator=(UtilsByte&& other) noexcept;
    const UtilsByte& operator=(const MemObject<unsigned char>& bytes);
    const UtilsByte& operator=(const UtilsAllocator<unsigned char>& block);

    // Append bytes.
    const UtilsByte& Append(const unsigned char* bytes, DWORD length = 0) {
        return AppendBytes(ByteArgument::Measured(bytes, length));
    }
    template <ByteSource Bytes>
    const UtilsByte& Append(const Bytes& bytes) {
        return AppendBytes(bytes);
    }
    template <ByteSource Bytes>
    const UtilsByte& operator+=(const Bytes& bytes) {
        return AppendBytes(bytes);
    }
    // One byte, as for a pointer without a length.
    const UtilsByte& operator+=(const unsigned char* bytes) { return Append(bytes); }

    // Insert before `position` (at most the length, else std::out_of_range).
    const UtilsByte& Insert(const unsigned char* bytes, DWORD length, DWORD position) {
        return InsertBytes(ByteArgument::Measured(bytes, length), position);
    }
    template <ByteSource Bytes>
    const UtilsByte& Insert(const Bytes& bytes, DWORD position) {
        return InsertBytes(bytes, position);
    }

    // Overwrite from `position` on; bytes past the end are dropped.
    const UtilsByte& Replace(const unsigned char* bytes, DWORD length, DWORD position) {
        return OverwriteBytes(ByteArgument::Measured(bytes, length), position);
    }
    template <ByteSource Bytes>
    const UtilsByte& Replace(const Bytes& bytes, DWORD position) {
        return OverwriteBytes(bytes, position);
    }

    // Remove `count` bytes from the end, or at `position`; a range beyond the length throws
    // std::out_of_range.
    const UtilsByte& TruncateString(DWORD count);
    const UtilsByte& TruncateStringAtPosition(DWORD count, DWORD position);
    const UtilsByte& operator--() { return TruncateString(1); }
    const UtilsByte& operator--(int) { return TruncateString(1); }
    // Remove all bytes.
    const UtilsByte& Erase();
    const UtilsByte& EraseData() { return Erase(); }
    // Sets the length; new bytes are zero. For callers that write through GetString.
    const UtilsByte& Resize(DWORD length);

    // The bytes, owned by the object and valid until its length changes.
    const unsigned char* c_str() const noexcept { return Bytes().c_str(); }
    const unsigned char* GetString() const noexcept { return Bytes().c_str(); }
    unsigned char* GetString() noexcept { return Bytes().GetBuffer(); }
    const unsigned char* Retrieve() const noexcept { return Bytes().c_str(); }
    unsigned char* Retrieve() noexcept { return Bytes().GetBuffer(); }
    // The byte at `index`; throws std::out_of_range when it is not below the length.
    unsigned char& RetrieveByte(DWORD index) { return Bytes().Retrieve(index); }
    const unsigned char& RetrieveByte(DWORD index) const { return Bytes().Retrieve(index); }
    unsigned char& operator[](DWORD index) { return RetrieveByte(index); }
    const unsigned char& operator[](DWORD index) const { return RetrieveByte(index); }
    DWORD length() const noexcept { return Bytes().length(); }
    DWORD size() const noexcept { return length(); }
    DWORD strlen() const noexcept { return length(); }
    // The buffer itself, for operations that take a MemObject.
    const MemObject<unsigned char>& GetBuffer() const noexcept { return Bytes(); }

    // Compares these bytes with the argument: 0 equal, 1 these greater, -1 less; a null pointer gives 1.
    // FriendCompare compares the argument with these bytes.
    int Compare(const unsigned char* bytes, DWORD length = 0) const {
        return CompareBytes(ByteArgument::Measured(bytes, length));
    }
    int FriendCompare(const unsigned char* bytes, DWORD length = 0) const {
        return FriendCompareBytes(ByteArgument::Measured(bytes, length));
    }
    template <ByteSource Other>
    int Compare(const Other& bytes) const {
        return CompareBytes(bytes);
    }
    template <ByteSource Other>
    int FriendCompare(const Other& bytes) const {
        return FriendCompareBytes(bytes);
    }
    // All six relational operators, in both directions, test the result of Compare.
    template <ByteSource Other>
    bool operator==(const Other& bytes) const {
        return CompareBytes(bytes) == 0;
    }
    template <ByteSource Other>
    std::strong_ordering operator<=>(const Other& bytes) const {
        return CompareBytes(bytes) <=> 0;
    }

    // The offset of an occurrence (numbered from 0, not overlapping), or not_found.
    DWORD Search(const unsigned char* pattern, DWORD length, DWORD occurrence = 0) const {
        return SearchBytes(ByteArgument::Measured(pattern, length), occurrence);
    }
    template <ByteSource Pattern>
    DWORD Search(const Pattern& pattern, DWORD occurrence = 0) const {
        return SearchBytes(pattern, occurrence);
    }

    // Iterate over the occurrences: 1 with the offset in `position`; 0 with not_found there if there is none
    // (with 0 if the pattern is longer than these bytes). Parsing and replacing use the same counter.
    int FindFirst(const unsigned char* pattern, DWORD length, DWORD& position) {
        return FindFirstBytes(ByteArgument::Measured(pattern, length), position);
    }
    int FindNext(const unsigned char* pattern, DWORD length, DWORD& position) {
        return FindNextBytes(ByteArgument::Measured(pattern, length), position);
    }
    template <ByteSource Pattern>
    int FindFirst(const Pattern& pattern, DWORD& position) {
        return FindFirstBytes(pattern, position);
    }
    template <ByteSource Pattern>
    int FindNext(const Pattern& pattern, DWORD& position) {
        return FindNextBytes(pattern, position);
    }
    template <UnsignedLong Position>
    int FindFirst(const unsigned char* pattern, DWORD length, Position& position) {
        return WithDword(position, [&](DWORD& found) { return FindFirst(pattern, length, found); });
    }
    template <UnsignedLong Position>
    int FindNext(const unsigned char* pattern, DWORD length, Position& position) {
        return WithDword(position, [&](DWORD& found) { return FindNext(pattern, length, found); });
    }
    template <ByteSource Pattern, UnsignedLong Position>
    int FindFirst(const Pattern& pattern, Position& position) {
        return WithDword(position, [&](DWORD& found) { return FindFirst(pattern, found); });
    }
    template <ByteSource Pattern, UnsignedLong Position>
    int FindNext(const Pattern& pattern, Position& position) {
        return WithDword(position, [&](DWORD& found) { return FindNext(pattern, found); });
    }
    // 1 if there is an occurrence, else 0; sets the counter to 0.
    int FindAll(const unsigned char* pattern, DWORD length) {
        return FindAllBytes(ByteArgument::Measured(pattern, length));
    }
    template <ByteSource Pattern>
    int FindAll(const Pattern& pattern) {
        return FindAllBytes(pattern);
    }
    const UtilsByte& FindReset() { return ResetCounter(); }

    // Split the bytes at a delimiter: 1 with the field in `output`; 0, and `output` unchanged, if there is no
    // such field or no delimiter at all.
    int ParseByteString(const unsigned char* delimiter, DWORD length, UtilsByte& output, DWORD field) const {
        return ParseBytes(ByteArgument::Measured(delimiter, length), output, field);
    }
    int ParseFirstByteString(const unsigned char* delimiter, DWORD length, UtilsByte& output) {
        return ParseFirstBytes(ByteArgument::Measured(delimiter, length), output);
    }
    int ParseNextByteString(const unsigned char* delimiter, DWORD length, UtilsByte& output) {
        return ParseNextBytes(ByteArgument::Measured(delimiter, length), output);
    }
    template <ByteSource Delimiter>
    int ParseByteString(const Delimiter& delimiter, UtilsByte& output, DWORD field) const {
        return ParseBytes(delimiter, output, field);
    }
    template <ByteSource Delimiter>
    int ParseFirstByteString(const Delimiter& delimiter, UtilsByte& output) {
        return ParseFirstBytes(delimiter, output);
    }
    template <ByteSource Delimiter>
    int ParseNextByteString(const Delimiter& delimiter, UtilsByte& output) {
        return ParseNextBytes(delimiter, output);
    }
    const UtilsByte& ParseReset() { return ResetCounter(); }

    // Replace occurrences: 1 if any was replaced. ReplaceFirst and ReplaceNext record the position in the
    // counter; ReplaceNext does not replace at that position. ReplaceAll stops at an occurrence where it has
    // just replaced one.
    int ReplaceFirst(const unsigned char* pattern, DWORD patternLength, const unsigned char* replacement,
                     DWORD replacementLength) {
        return ReplaceFirstBytes(ByteArgument::Measured(pattern, patternLength),
                                 ByteArgument::Measured(replacement, replacementLength));
    }
    int ReplaceNext(const unsigned char* pattern, DWORD patternLength, const unsigned char* replacement,
                    DWORD replacementLength) {
        return ReplaceNextBytes(ByteArgument::Measured(pattern, patternLength),
                                ByteArgument::Measured(replacement, replacementLength));
    }
    int ReplaceAll(const unsigned char* pattern, DWORD patternLength, const unsigned char* replacement,
                   DWORD replacementLength) {
        return ReplaceAllBytes(ByteArgument::Measured(pattern, patternLength),
                               ByteArgument::Measured(replacement, replacementLength));
    }
    template <ByteSource Pattern, ByteSource Replacement>
    int ReplaceFirst(const Pattern& pattern, const Replacement& replacement) {
        return ReplaceFirstBytes(pattern, replacement);
    }
    template <ByteSource Pattern, ByteSource Replacement>
    int ReplaceNext(const Pattern& pattern, const Replacement& replacement) {
        return ReplaceNextBytes(pattern, replacement);
    }
    template <ByteSource Pattern, ByteSource Replacement>
    int ReplaceAll(const Pattern& pattern, const Replacement& replacement) {
        return ReplaceAllBytes(pattern, replacement);
    }
    const UtilsByte& ReplaceReset() { return ResetCounter(); }

    // Sort ascending; reverse (an empty string throws std::bad_alloc).
    const UtilsByte& Sort();
    const UtilsByte& Reverse();
    // XOR every byte with one byte, or with the key's bytes in turn (an empty key throws std::out_of_range).
    const UtilsByte& XORData(unsigned char byte);
    const UtilsByte& EncryptData(const UtilsByte& key);

    // Match style: 1 treats bytes as equal if one contains the other. Case: 1 exact, 0 ignores case.
    const UtilsByte& SetMatchStyle(int style);
    int GetMatchStyle() const noexcept { return matchStyle_; }
    const UtilsByte& SetCase(int matchCase);
    int GetCase() const noexcept { return case_; }

private:
    MemObject<unsigned char>& Bytes() noexcept { return Buffer(0); }
    const MemObject<unsigned char>& Bytes() const noexcept { return Buffer(0); }
    const UtilsByte& ResetCounter();

    const UtilsByte& AppendBytes(const ByteArgument& bytes);
    const UtilsByte& InsertBytes(const ByteArgument& bytes, DWORD position);
    const UtilsByte& OverwriteBytes(const ByteArgument& bytes, DWORD position);
    int CompareBytes(const ByteArgument& bytes) const;
    int FriendCompareBytes(const ByteArgument& bytes) const;
    DWORD SearchBytes(const ByteArgument& pattern, DWORD occurrence) const;
    int FindBytes(const ByteArgument& pattern, DWORD& position, DWORD occurrence) const;
    int FindFirstBytes(const ByteArgument& pattern, DWORD& position);
    int FindNextBytes(const ByteArgument& pattern, DWORD& position);
    int FindAllBytes(const ByteArgument& pattern);
    int ParseBytes(const ByteArgument& delimiter, UtilsByte& output, DWORD field) const;
    int ParseFirstBytes(const ByteArgument& delimiter, UtilsByte& output);
    int ParseNextBytes(const ByteArgument& delimiter, UtilsByte& output);
    int ReplaceFirstBytes(const ByteArgument& pattern, const ByteArgument& replacement);
    int ReplaceNextBytes(const ByteArgument& pattern, const ByteArgument& replacement);
    int ReplaceAllBytes(const ByteArgument& pattern, const ByteArgument& replacement);

    DWORD position_ = 0;
    int matchStyle_ = 0;
    int case_ = 1;
};

inline ByteArgument::ByteArgument(const UtilsByte& bytes) : ByteArgument(bytes.GetBuffer()) {}

}  // namespace UTILS
