#pragma once
#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

#include "UtilsVector.h"

namespace UTILS {

class UtilsString;

// 16-bit text for the system's wide functions.
using WideText = std::basic_string<unsigned short>;

// A text argument of a UtilsString operation: a zero-terminated text or null, the current string of a
// UtilsString, a MemObject<char>, a std::string, or 16-bit text, which is converted to the ANSI code page
// (one that cannot be converted is null). It refers to the caller's text and is valid only during the call.
class TextArgument {
public:
    TextArgument(const char* text);
    TextArgument(const char* text, DWORD length) : text_(text), length_(text == nullptr ? 0 : length) {}
    TextArgument(const UtilsString& text);
    TextArgument(const MemObject<char>& text) : TextArgument(text.c_str(), text.Readable()) {}
    TextArgument(const std::string& text);
    TextArgument(const WideText& text);

    // Any other class that converts to a text.
    template <class Source>
    requires(std::is_class_v<Source>&& std::is_convertible_v<const Source&, const char*> &&
             !std::is_base_of_v<UtilsString, Source>) TextArgument(const Source& source)
        : TextArgument(static_cast<const char*>(source)) {}

    TextArgument(const TextArgument&) = delete;
    TextArgument& operator=(const TextArgument&) = delete;

    const char* Text() const noexcept { return text_; }
    DWORD Length() const noexcept { return length_; }

private:
    const char* text_ = nullptr;
    DWORD length_ = 0;
    std::unique_ptr<const char[]> converted_;
};

template <class Source>
concept TextSource = std::is_convertible_v<const Source&, const TextArgument&>;

}  // namespace UTILS
