#include "UtilsByte.h"

#include "UtilsReplace.h"

namespace UTILS {

const UtilsByte& UtilsByte::operator=(const UtilsByte& other) {
    if (this != &other) {
        Utils::operator=(other);
        position_ = other.position_;
        matchStyle_ = other.matchStyle_;
        case_ = other.case_;
    }
    return *this;
}

const UtilsByte& UtilsByte::operator=(UtilsByte&& other) noexcept {
    if (this != &other) {
        position_ = other.position_;
        matchStyle_ = other.matchStyle_;
        case_ = other.case_;
        Utils::operator=(std::move(other));
    }
    return *this;
}

const UtilsByte& UtilsByte::operator=(const MemObject<unsigned char>& bytes) {
    Bytes().Assign(bytes.c_str(), bytes.Readable());
    return *this;
}

const UtilsByte& UtilsByte::operator=(const UtilsAllocator<unsigned char>& block) {
    Bytes() = block;
    return *this;
}

const UtilsByte& UtilsByte::AppendBytes(const ByteArgument& bytes) {
    Bytes().AppendExactly(bytes.Data(), bytes.Length());
    return *this;
}

const UtilsByte& UtilsByte::InsertBytes(const ByteArgument& bytes, DWORD position) {
    Bytes().Splice(position, 0, bytes.Data(), bytes.Length());
    return *this;
}

const UtilsByte& UtilsByte::OverwriteBytes(const ByteArgument& bytes, DWORD position) {
    Bytes().Overwrite(bytes.Data(), bytes.Length(), position);
    return *this;
}

const UtilsByte& UtilsByte::TruncateString(DWORD count) {
    Bytes().Truncate(count);
    return *this;
}

const UtilsByte& UtilsByte::TruncateStringAtPosition(DWORD count, DWORD position) {
    Bytes().TruncateAtPosition(count, position);
    return *this;
}

const UtilsByte& UtilsByte::Erase() {
    Bytes().Erase();
    return *this;
}

const UtilsByte& UtilsByte::Resize(DWORD length) {
    Bytes().Resize(length);
    return *this;
}

int UtilsByte::CompareBytes(const ByteArgument& bytes) const {
    return compare(c_str(), Bytes().Readable(), bytes.Data(), bytes.Length(), case_, matchStyle_);
}

int UtilsByte::FriendCompareBytes(const ByteArgument& bytes) const {
    return compare(bytes.Data(), bytes.Length(), c_str(), Bytes().Readable(), case_, matchStyle_);
}

int UtilsByte::FindBytes(const ByteArgument& pattern, DWORD& position, DWORD occurrence) const {
    return search(pattern.Data(), pattern.Length(), c_str(), Bytes().Readable(), position, case_, occurrence);
}

DWORD UtilsByte::SearchBytes(const ByteArgument& pattern, DWORD occurrence) const {
    DWORD position = not_found;
    return FindBytes(pattern, position, occurrence) == 1 ? position : not_found;
}

int UtilsByte::FindFirstBytes(const ByteArgument& pattern, DWORD& position) {
    position_ = 0;
    return FindBytes(pattern, position, position_);
}

int UtilsByte::FindNextBytes(const ByteArgument& pattern, DWORD& position) {
    return FindBytes(pattern, position, ++position_);
}

int UtilsByte::FindAllBytes(const ByteArgument& pattern) {
    DWORD position = 0;
    return FindFirstBytes(pattern, position);
}

int UtilsByte::ParseBytes(const ByteArgument& delimiter, UtilsByte& output, DWORD field) const {
    DWORD start = 0;
    DWORD length = 0;
    if (parse(delimiter.Data(), delimiter.Length(), c_str(), Bytes().Readable(), start, length, case_,
              field) == 0) {
        return 0;
    }
    output.Bytes().Assign(c_str() + start, length);
    return 1;
}

int UtilsByte::ParseFirstBytes(const ByteArgument& delimiter, UtilsByte& output) {
    position_ = 0;
    return ParseBytes(delimiter, output, position_);
}

int UtilsByte::ParseNextBytes(const ByteArgument& delimiter, UtilsByte& output) {
    return ParseBytes(delimiter, output, ++position_);
}

int UtilsByte::ReplaceFirstBytes(const ByteArgument& pattern, const ByteArgument& replacement) {
    position_ = 0;
    return ReplaceIn(Bytes(), Replacing::first, pattern.Data(), pattern.Length(), replacement.Data(),
                     replacement.Length(), case_, position_);
}

int UtilsByte::ReplaceNextBytes(const ByteArgument& pattern, const ByteArgument& replacement) {
    return ReplaceIn(Bytes(), Replacing::next, pattern.Data(), pattern.Length(), replacement.Data(),
                     replacement.Length(), case_, position_);
}

int UtilsByte::ReplaceAllBytes(const ByteArgument& pattern, const ByteArgument& replacement) {
    DWORD last = 0;
    position_ = 0;
    return ReplaceIn(Bytes(), Replacing::all, pattern.Data(), pattern.Length(), replacement.Data(),
                     replacement.Length(), case_, last);
}

const UtilsByte& UtilsByte::ResetCounter() {
    position_ = 0;
    return *this;
}

const UtilsByte& UtilsByte::Sort() {
    Bytes().Sort();
    return *this;
}

const UtilsByte& UtilsByte::Reverse() {
    Bytes().Reverse();
    return *this;
}

const UtilsByte& UtilsByte::XORData(unsigned char byte) {
    Bytes().Xor(&byte, 1);
    return *this;
}

const UtilsByte& UtilsByte::EncryptData(const UtilsByte& key) {
    Bytes().Xor(key.c_str(), key.Bytes().Readable());
    return *this;
}

const UtilsByte& UtilsByte::SetMatchStyle(int style) {
    matchStyle_ = style;
    return *this;
}

const UtilsByte& UtilsByte::SetCase(int matchCase) {
    case_ = matchCase;
    return *this;
}

}  // namespace UTILS
