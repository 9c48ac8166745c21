#pragma once
#include <string>
#include <string_view>

#include "winlayer/include/windows.h"

namespace winlayer {

struct SystemSettings;

// Conversion between ANSI code pages and Unicode. Code pages 1250, 1251 and 1252 (undefined bytes map to the
// control characters of the same number, as on Windows) and 65001 (UTF-8).

bool isCodePage(UINT codePage);
// CP_ACP becomes the machine's own code page; others are returned unchanged.
UINT actualCodePage(const SystemSettings& settings, UINT codePage);

// Converts text from a code page to UTF-16; `valid` reports whether it was well-formed. Malformed parts
// become U+FFFD (UTF-8 only; in the other pages every byte is valid).
std::u16string widen(UINT codePage, std::string_view text, bool& valid);

struct Narrowing {
    std::string_view replacement = "?";  // for what the page lacks
    bool compose = false;                // a letter followed by an accent may become one character
    bool replaced = false;               // out: whether a replacement was used
};
std::string narrow(UINT codePage, std::u16string_view wide, Narrowing& how);

// Conversion between the machine's ANSI code page and the host's UTF-8.
std::string toUtf8(const SystemSettings& settings, std::string_view ansi);
// False when the machine's code page lacks a character or the text is not UTF-8; `ansi` is then left alone.
bool fromUtf8(const SystemSettings& settings, std::string_view utf8, std::string& ansi);

}  // namespace winlayer
