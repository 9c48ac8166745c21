#include "tools/common/control_characters.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace tools {

namespace {

struct Character {
    std::uint32_t code = 0;
    std::size_t length = 1;  // bytes
    bool valid = false;
};

bool isTrailing(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The first character of a text, which must not be empty; a byte that starts none counts as invalid.
Character firstOf(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {lead, 1, true};
    const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    const bool whole =
        length != 0 && text.size() >= length &&
        std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length), isTrailing);
    if (!whole) return {lead, 1, false};
    std::uint32_t code = lead & (0x7Fu >> length);
    for (std::size_t at = 1; at < length; ++at)
        code = code << 6 | (static_cast<unsigned char>(text[at]) & 0x3F);
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (code < smallest[length]) return {lead, 1, false};
    return {code, length, true};
}

bool isControl(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

// The text with the characters for which `replaced` is true written in the given form.
template <class Replaced>
std::string rewritten(std::string_view text, const char* form, Replaced replaced) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Character first = firstOf(text);
        if (replaced(first)) {
            char number[16];
            std::snprintf(number, sizeof number, form, static_cast<unsigned>(first.code));
            result += number;
        } else {
            result += text.substr(0, first.length);
        }
        text.remove_prefix(first.length);
    }
    return result;
}

}  // namespace

std::string withVisibleControls(std::string_view text) {
    return rewritten(text, "<%02X>", [](const Character& c) { return !c.valid || isControl(c.code); });
}

std::string withEscapedControls(std::string_view json) {
    return rewritten(json, "\\u%04x", [](const Character& c) { return c.code >= 0x7F && isControl(c.code); });
}

}  // namespace tools
