#include <limits>
#include <vector>

#include "UtilsString.h"

namespace UTILS {

namespace {
// The layer's wide character is unsigned short; on Windows it is a distinct type of the same size.
static_assert(sizeof(WCHAR) == sizeof(unsigned short));
LPCWSTR System(const unsigned short* text) {
    return reinterpret_cast<LPCWSTR>(text);
}
LPWSTR System(unsigned short* text) {
    return reinterpret_cast<LPWSTR>(text);
}

// Converts `count` units and the terminating zero after them; null if the system cannot.
std::unique_ptr<char[]> Narrowed(const unsigned short* text, std::size_t count, DWORD& length) {
    constexpr DWORD flags = WC_COMPOSITECHECK | WC_SEPCHARS;
    length = 0;
    if (text == nullptr || count >= static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return nullptr;
    }
    const int units = static_cast<int>(count) + 1;
    const int size = WideCharToMultiByte(CP_ACP, flags, System(text), units, nullptr, 0, nullptr, nullptr);
    if (size <= 0) {
        return nullptr;
    }
    auto narrow = std::make_unique<char[]>(static_cast<std::size_t>(size));
    const int written =
        WideCharToMultiByte(CP_ACP, flags, System(text), units, narrow.get(), size, nullptr, nullptr);
    if (written <= 0) {
        return nullptr;
    }
    length = static_cast<DWORD>(written) - 1;
    return narrow;
}

// Shared by the whole process, as the callers of ReturnWideChar and ReturnByteStr expect.
std::vector<unsigned short> wideBuffer;
std::vector<unsigned char> byteBuffer;

// Converts the text and its zero into the shared buffer; returns the units written, 0 for failure.
int Widen(const char* text, DWORD length) {
    constexpr DWORD flags = MB_PRECOMPOSED | MB_USEGLYPHCHARS;
    if (length >= static_cast<DWORD>(std::numeric_limits<int>::max())) {
        return 0;
    }
    const int count = static_cast<int>(length) + 1;
    const auto convert = [&](LPWSTR to, std::size_t size) {
        return MultiByteToWideChar(CP_ACP, flags, text, count, to, static_cast<int>(size));
    };
    if (wideBuffer.empty()) {
        wideBuffer.resize(
            std::min<std::size_t>(std::size_t{2} * length + 2, std::numeric_limits<int>::max()));
    }
    int written = convert(System(wideBuffer.data()), wideBuffer.size());
    if (written == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        const int needed = convert(nullptr, 0);
        if (needed > 0) {
            wideBuffer.resize(static_cast<std::size_t>(needed));
            written = convert(System(wideBuffer.data()), wideBuffer.size());
        }
    }
    return written;
}
}  // namespace

TextArgument::TextArgument(const WideText& text) {
    converted_ = Narrowed(text.c_str(), text.size(), length_);
    text_ = converted_.get();
}

UtilsString::UtilsString(const unsigned short* text) {
    ConvertFromWideChar(text, 1);
}

const UtilsString& UtilsString::ConvertFromWideChar(const unsigned short* text, int append) {
    std::size_t count = 0;
    while (text != nullptr && text[count] != 0) {
        ++count;
    }
    return ConvertUnits(text, count, append);
}

const UtilsString& UtilsString::ConvertFromWideChar(const WideText& text, int append) {
    return ConvertUnits(text.c_str(), text.size(), append);
}

const UtilsString& UtilsString::ConvertUnits(const unsigned short* text, std::size_t count, int append) {
    DWORD length = 0;
    if (const auto narrow = Narrowed(text, count, length)) {
        Current().Splice(append != 0 ? this->length() : 0, append != 0 ? 0 : this->length(), narrow.get(),
                         length);
    }
    return *this;
}

unsigned short* UtilsString::ReturnWideChar() const {
    if (Widen(c_str(), Current().Readable()) == 0) {
        wideBuffer.assign(std::max<std::size_t>(wideBuffer.size(), 1), 0);
    }
    return wideBuffer.data();
}

WideText UtilsString::GetSTLWString() const {
    const int written = Widen(c_str(), Current().Readable());
    return written == 0 ? WideText() : WideText(wideBuffer.data(), static_cast<std::size_t>(written) - 1);
}

std::string UtilsString::GetSTLString() const {
    return std::string(c_str(), Current().Readable());
}

unsigned char* UtilsString::ReturnByteStr() const {
    const std::size_t count = Current().Readable();
    byteBuffer.resize(std::max<std::size_t>(count, 1));
    for (std::size_t i = 0; i < count; ++i) {
        byteBuffer[i] = static_cast<unsigned char>(static_cast<unsigned char>(c_str()[i]) + 128);
    }
    return byteBuffer.data();
}

}  // namespace UTILS
