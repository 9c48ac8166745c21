#pragma once
#include <string>
#include <string_view>

#include "winlayer/include/windows.h"

namespace winlayer {

struct SystemSettings;

// Text in an ANSI code page and what it means. Code pages 1250, 1251 and 1252 (the bytes they leave open
// stand for the control characters of the same number, as on Windows) and 65001 (UTF-8).

bool isCodePage(UINT codePage);
// CP_ACP becomes the machine's own code page; others stay.
UINT actualCodePage(const SystemSettings& settings, UINT codePage);

// Units of UTF-16 for text in a code page; `valid` tells whether the text was well-formed. What is not
// becomes U+FFFD (UTF-8 only; every byte means something in the other pages).
std::u16string widen(UINT codePage, std::string_view text, bool& valid);

struct Narrowing {
    std::string_view replacement = "?";  // for what the page lacks
    bool compose = false;                // a letter followed by an accent may become one character
    bool replaced = false;               // out: whether a replacement was used
};
std::string narrow(UINT codePage, std::u16string_view wide, Narrowing& how);

// Between the machine's ANSI code page and the host, which speaks UTF-8.
std::string toUtf8(const SystemSettings& settings, std::string_view ansi);
// False when a character has no place in the machine's code page, or the text is not UTF-8; `ansi` is then
// left alone.
bool fromUtf8(const SystemSettings& settings, std::string_view utf8, std::string& ansi);

}  // namespace winlayer
