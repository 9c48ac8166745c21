#include <limits>

#include "UtilsString.h"

namespace UTILS {

int UtilsString::Find(const TextArgument& pattern, DWORD& position, DWORD occurrence) const {
    return search(pattern.Text(), pattern.Length(), c_str(), Current().Readable(), position, case_,
                  occurrence);
}

DWORD UtilsString::Search(const TextArgument& pattern, DWORD occurrence) const {
    DWORD position = not_found;
    return Find(pattern, position, occurrence) == 1 ? position : not_found;
}

int UtilsString::FindFirst(const TextArgument& pattern, DWORD& position) {
    findCounter_ = 0;
    return Find(pattern, position, findCounter_);
}

int UtilsString::FindNext(const TextArgument& pattern, DWORD& position) {
    return Find(pattern, position, ++findCounter_);
}

int UtilsString::FindFirst(const TextArgument& pattern) {
    DWORD position = 0;
    return FindFirst(pattern, position);
}

int UtilsString::FindNext(const TextArgument& pattern) {
    DWORD position = 0;
    return FindNext(pattern, position);
}

int UtilsString::FindAll(const TextArgument& pattern) {
    return FindFirst(pattern);
}

const UtilsString& UtilsString::FindReset() {
    findCounter_ = 0;
    return *this;
}

void UtilsString::Deliver(UtilsString& output, const char* field, DWORD length) {
    output.Current().Assign(field, length);
}

void UtilsString::Deliver(char* output, const char* field, DWORD length) {
    if (output != nullptr) {
        std::memmove(output, field, length);
        output[length] = 0;
    }
}

template <class Output>
int UtilsString::ParseInto(const TextArgument& delimiter, Output&& output, DWORD field) const {
    DWORD start = 0;
    DWORD length = 0;
    if (parse(delimiter.Text(), delimiter.Length(), c_str(), Current().Readable(), start, length, case_,
              field) == 0) {
        return 0;
    }
    Deliver(output, c_str() + start, length);
    return 1;
}

int UtilsString::ParseString(const TextArgument& delimiter, UtilsString& output, DWORD field, int) const {
    return ParseInto(delimiter, output, field);
}

int UtilsString::ParseString(const TextArgument& delimiter, char* output, DWORD field, int) const {
    return ParseInto(delimiter, output, field);
}

int UtilsString::ParseFirstString(const TextArgument& delimiter, UtilsString& output) {
    parseCounter_ = 0;
    return ParseInto(delimiter, output, parseCounter_);
}

int UtilsString::ParseFirstString(const TextArgument& delimiter, char* output) {
    parseCounter_ = 0;
    return ParseInto(delimiter, output, parseCounter_);
}

int UtilsString::ParseNextString(const TextArgument& delimiter, UtilsString& output, int) {
    return ParseInto(delimiter, output, ++parseCounter_);
}

int UtilsString::ParseNextString(const TextArgument& delimiter, char* output, int) {
    return ParseInto(delimiter, output, ++parseCounter_);
}

const UtilsString& UtilsString::ParseReset() {
    parseCounter_ = 0;
    return *this;
}

template <class Output>
int UtilsString::ParseFastInto(const TextArgument& delimiter, Output&& output, DWORD field) {
    const DWORD length = Current().Readable();
    fastLength_ = 0;
    if (fastCursor_ > length) {
        Deliver(output, "", 0);
        return 0;
    }
    DWORD start = 0;
    DWORD found = 0;
    // The empty rest after a trailing delimiter is a field; an empty string has none.
    const bool emptyRest = fastCursor_ == length && length != 0 && field == 0 && delimiter.Length() != 0;
    if (!emptyRest && parse(delimiter.Text(), delimiter.Length(), c_str() + fastCursor_, length - fastCursor_,
                            start, found, case_, field, 1) == 0) {
        return 0;
    }
    fastLength_ = found;
    Deliver(output, c_str() + fastCursor_ + start, found);
    return 1;
}

int UtilsString::ParseStringFast(const TextArgument& delimiter, UtilsString& output, DWORD field) {
    return ParseFastInto(delimiter, output, field);
}

int UtilsString::ParseStringFast(const TextArgument& delimiter, char* output, DWORD field) {
    return ParseFastInto(delimiter, output, field);
}

int UtilsString::ParseFirstStringFast(const TextArgument& delimiter, UtilsString& output) {
    ParseFastReset();
    return ParseFastInto(delimiter, output, 0);
}

int UtilsString::ParseFirstStringFast(const TextArgument& delimiter, char* output) {
    ParseFastReset();
    return ParseFastInto(delimiter, output, 0);
}

int UtilsString::ParseNextStringFast(const TextArgument& delimiter, UtilsString& output) {
    AdvanceFastCursor(delimiter.Length());
    return ParseFastInto(delimiter, output, 0);
}

int UtilsString::ParseNextStringFast(const TextArgument& delimiter, char* output) {
    AdvanceFastCursor(delimiter.Length());
    return ParseFastInto(delimiter, output, 0);
}

// A cursor beyond the end of the string stays there, however often it is advanced.
void UtilsString::AdvanceFastCursor(DWORD delimiterLength) {
    const std::uint64_t next = std::uint64_t{fastCursor_} + fastLength_ + delimiterLength;
    fastCursor_ = static_cast<DWORD>(std::min<std::uint64_t>(next, std::numeric_limits<DWORD>::max()));
}

const UtilsString& UtilsString::ParseFastReset() {
    fastCursor_ = 0;
    fastLength_ = 0;
    return *this;
}

}  // namespace UTILS
