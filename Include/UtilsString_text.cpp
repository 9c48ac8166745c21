#include <cstdio>
#include <limits>

#include "UtilsString.h"

namespace UTILS {

namespace {
DWORD Measured(std::size_t count) {
    if (count >= std::numeric_limits<DWORD>::max()) {
        ThrowBadAlloc(condition::incorrectParameter, count, header::string);
    }
    return static_cast<DWORD>(count);
}
}  // namespace

TextArgument::TextArgument(const char* text)
    : text_(text), length_(text == nullptr ? 0 : Measured(std::strlen(text))) {}

TextArgument::TextArgument(const UtilsString& text) : TextArgument(text.GetBuffer()) {}

TextArgument::TextArgument(const std::string& text) : text_(text.c_str()), length_(Measured(text.size())) {}

UtilsString::UtilsString(const TextArgument& text, DWORD strings) : Utils(TableSize(strings)) {
    for (int i = 0; i < BufferCount(); ++i) {
        Buffer(i).AppendExactly(text.Text(), text.Length());
    }
}

int UtilsString::TableSize(DWORD strings) {
    if (strings > static_cast<DWORD>(std::numeric_limits<int>::max())) {
        ThrowBadAlloc(condition::incorrectParameter, strings, header::string);
    }
    return static_cast<int>(strings);
}

const UtilsString& UtilsString::operator=(const UtilsString& other) {
    if (this != &other) {
        UtilsString copy(other);
        Swap(copy);
    }
    return *this;
}

const UtilsString& UtilsString::operator=(UtilsString&& other) noexcept {
    if (this != &other) {
        UtilsString taken(std::move(other));
        Swap(taken);
    }
    return *this;
}

void UtilsString::Swap(UtilsString& other) noexcept {
    if (this == &other) {
        return;
    }
    if (BufferCount() == 1 && other.BufferCount() == 1) {
        Current().Swap(other.Current());
    } else {
        SwapTable(other);
    }
    std::swap(findCounter_, other.findCounter_);
    std::swap(parseCounter_, other.parseCounter_);
    std::swap(fastLength_, other.fastLength_);
    std::swap(fastCursor_, other.fastCursor_);
    std::swap(lastReplaced_, other.lastReplaced_);
    std::swap(current_, other.current_);
    std::swap(matchStyle_, other.matchStyle_);
    std::swap(case_, other.case_);
}

const UtilsString& UtilsString::AssignText(const TextArgument& text) {
    Current().Assign(text.Text(), text.Length());
    return *this;
}

const UtilsString& UtilsString::AppendText(const TextArgument& text) {
    Current().AppendExactly(text.Text(), text.Length());
    return *this;
}

const UtilsString& UtilsString::Append(const char* text, DWORD length) {
    Current().Append(text, length);
    return *this;
}

const UtilsString& UtilsString::Append(char character) {
    Current().AppendExactly(&character, 1);
    return *this;
}

const UtilsString& UtilsString::AppendSigned(long long number) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%lld", number);
    return AppendText(digits);
}

const UtilsString& UtilsString::AppendUnsigned(unsigned long long number) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%llu", number);
    return AppendText(digits);
}

const UtilsString& UtilsString::Append(double number) {
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.15g", number);
    return AppendText(digits);
}

const UtilsString& UtilsString::Insert(const TextArgument& text, DWORD position) {
    Current().Splice(position, 0, text.Text(), text.Length());
    return *this;
}

const UtilsString& UtilsString::Replace(const TextArgument& text, DWORD position) {
    Current().Overwrite(text.Text(), text.Length(), position);
    return *this;
}

const UtilsString& UtilsString::TruncateString(DWORD count) {
    Current().Truncate(count);
    return *this;
}

const UtilsString& UtilsString::TruncateStringAtPosition(DWORD count, DWORD position) {
    Current().TruncateAtPosition(count, position);
    return *this;
}

const UtilsString& UtilsString::Erase() {
    Current().Erase();
    return *this;
}

const UtilsString& UtilsString::Resize(DWORD length) {
    Current().Resize(length);
    return *this;
}

int UtilsString::Compare(const TextArgument& text) const {
    return compare(c_str(), Current().Readable(), text.Text(), text.Length(), case_, matchStyle_);
}

int UtilsString::FriendCompare(const TextArgument& text) const {
    return compare(text.Text(), text.Length(), c_str(), Current().Readable(), case_, matchStyle_);
}

const UtilsString& UtilsString::Sort() {
    Current().Sort();
    return *this;
}

const UtilsString& UtilsString::Reverse() {
    Current().Reverse();
    return *this;
}

const UtilsString& UtilsString::XORString(unsigned char byte) {
    const char key = static_cast<char>(byte);
    Current().Xor(&key, 1);
    return *this;
}

const UtilsString& UtilsString::EncryptString(const UtilsByte& key) {
    Current().Xor(reinterpret_cast<const char*>(key.c_str()), key.GetBuffer().Readable());
    return *this;
}

const UtilsString& UtilsString::EncryptString(const UtilsString& key) {
    Current().Xor(key.c_str(), key.Current().Readable());
    return *this;
}

const UtilsString& UtilsString::SetMatchStyle(int style) {
    matchStyle_ = style;
    return *this;
}

const UtilsString& UtilsString::SetCase(int matchCase) {
    case_ = matchCase;
    return *this;
}

}  // namespace UTILS
