#include "winlayer/text/code_pages.h"

#include <algorithm>

#include "winlayer/base/system_settings.h"
#include "winlayer/text/code_page_tables.h"

namespace winlayer {
namespace {

constexpr char16_t unreadable = 0xFFFD;

const char16_t* highHalf(UINT codePage) {
    switch (codePage) {
        case 1250:
            return page1250;
        case 1251:
            return page1251;
        default:
            return page1252;
    }
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::u16string widenBytes(const char16_t* table, std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        wide.push_back(byte < 0x80 ? char16_t{byte} : table[byte - 0x80]);
    }
    return wide;
}

void appendCodePoint(std::u16string& wide, char32_t point) {
    if (point < 0x10000) {
        wide.push_back(static_cast<char16_t>(point));
        return;
    }
    wide.push_back(static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)));
    wide.push_back(static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF)));
}

// What may follow a lead byte: the number of bytes, and the range of the first of them, which excludes
// overlong forms, surrogates and numbers beyond the last character.
struct Utf8Form {
    std::size_t following = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    char32_t bits = 0;
};

Utf8Form formOf(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {1, 0x80, 0xBF, lead & 0x1Fu};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        const unsigned char low = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned char high = lead == 0xED ? 0x9F : 0xBF;
        return {2, low, high, lead & 0x0Fu};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const unsigned char low = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned char high = lead == 0xF4 ? 0x8F : 0xBF;
        return {3, low, high, lead & 0x07u};
    }
    return {};
}

// Takes one character, at least one byte, from the start of `text`; false when it is not well-formed.
bool takeUtf8(std::string_view& text, char32_t& point) {
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80) {
        point = lead;
        return true;
    }
    Utf8Form form = formOf(lead);
    if (form.following == 0) {
        return false;
    }
    for (; form.following > 0; --form.following) {
        const unsigned char next = text.empty() ? 0 : static_cast<unsigned char>(text.front());
        if (next < form.low || next > form.high) {
            return false;
        }
        form.bits = (form.bits << 6) | (next & 0x3Fu);
        form.low = 0x80;
        form.high = 0xBF;
        text.remove_prefix(1);
    }
    point = form.bits;
    return true;
}

std::u16string widenUtf8(std::string_view text, bool& valid) {
    std::u16string wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        char32_t point = unreadable;
        if (!takeUtf8(text, point)) {
            valid = false;
            point = unreadable;
        }
        appendCodePoint(wide, point);
    }
    return wide;
}

void appendUtf8(std::string& text, char32_t point) {
    const auto tail = [&](int shift) { text.push_back(static_cast<char>(0x80 | ((point >> shift) & 0x3F))); };
    if (point < 0x80) {
        text.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (point >> 6)));
        tail(0);
    } else if (point < 0x10000) {
        text.push_back(static_cast<char>(0xE0 | (point >> 12)));
        tail(6);
        tail(0);
    } else {
        text.push_back(static_cast<char>(0xF0 | (point >> 18)));
        tail(12);
        tail(6);
        tail(0);
    }
}

std::string narrowUtf8(std::u16string_view wide) {
    std::string text;
    text.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t point = wide[i];
        const bool pair = point >= 0xD800 && point < 0xDC00 && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
                          wide[i + 1] < 0xE000;
        if (pair) {
            point = 0x10000 + ((point - 0xD800) << 10) + (wide[++i] - 0xDC00u);
        } else if (point >= 0xD800 && point < 0xE000) {
            point = unreadable;
        }
        appendUtf8(text, point);
    }
    return text;
}

// The byte of a unit; false when the page has none.
bool byteFor(const char16_t* table, char16_t unit, char& byte) {
    if (unit < 0x80) {
        byte = static_cast<char>(unit);
        return true;
    }
    const char16_t* end = table + 0x80;
    const char16_t* found = std::find(table, end, unit);
    byte = static_cast<char>(0x80 + (found - table));
    return found != end;
}

// The letter composed of `plain` and the accent `mark`; 0 when there is none.
char16_t accented(char16_t plain, char16_t mark) {
    for (const Accent& accent : accents) {
        for (const char16_t* pair = accent.pairs; accent.mark == mark && *pair != 0; pair += 2) {
            if (pair[0] == plain) {
                return pair[1];
            }
        }
    }
    return 0;
}

std::string narrowBytes(const char16_t* table, std::u16string_view wide, Narrowing& how) {
    std::string text;
    text.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char byte = 0;
        const char16_t composed =
            how.compose && i + 1 < wide.size() ? accented(wide[i], wide[i + 1]) : char16_t{0};
        if (composed != 0 && byteFor(table, composed, byte)) {
            text.push_back(byte);
            ++i;
        } else if (byteFor(table, wide[i], byte)) {
            text.push_back(byte);
        } else {
            text.append(how.replacement);
            how.replaced = true;
        }
    }
    return text;
}

}  // namespace

bool isCodePage(UINT codePage) {
    return (codePage >= 1250 && codePage <= 1252) || codePage == CP_UTF8;
}

UINT actualCodePage(const SystemSettings& settings, UINT codePage) {
    return codePage == CP_ACP ? settings.ansiCodePage : codePage;
}

std::u16string widen(UINT codePage, std::string_view text, bool& valid) {
    valid = true;
    return codePage == CP_UTF8 ? widenUtf8(text, valid) : widenBytes(highHalf(codePage), text);
}

std::string narrow(UINT codePage, std::u16string_view wide, Narrowing& how) {
    how.replaced = false;
    return codePage == CP_UTF8 ? narrowUtf8(wide) : narrowBytes(highHalf(codePage), wide, how);
}

std::string toUtf8(const SystemSettings& settings, std::string_view ansi) {
    if (isAscii(ansi)) {
        return std::string(ansi);
    }
    bool valid = true;
    return narrowUtf8(widen(settings.ansiCodePage, ansi, valid));
}

bool fromUtf8(const SystemSettings& settings, std::string_view utf8, std::string& ansi) {
    if (isAscii(utf8)) {
        ansi = utf8;
        return true;
    }
    bool valid = true;
    const std::u16string wide = widenUtf8(utf8, valid);
    Narrowing how;
    std::string text = narrow(settings.ansiCodePage, wide, how);
    if (!valid || how.replaced) {
        return false;
    }
    ansi = std::move(text);
    return true;
}

}  // namespace winlayer
