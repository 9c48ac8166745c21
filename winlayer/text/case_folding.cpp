#include "winlayer/text/case_folding.h"

#include <locale.h>
#include <wctype.h>

#include <cstdint>

namespace winlayer {

namespace {

// The host's tables for all characters, independent of the locale that the program has set.
locale_t unicode() {
    static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

struct Character {
    std::uint32_t code;
    std::size_t length;  // 0: not UTF-8
};

Character decode(std::string_view text) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const std::size_t length = byte(0) < 0xC2   ? 0
                               : byte(0) < 0xE0 ? 2
                               : byte(0) < 0xF0 ? 3
                               : byte(0) < 0xF5 ? 4
                                                : 0;
    if (length == 0 || text.size() < length) {
        return {0, 0};
    }
    std::uint32_t code = byte(0) & (0x7Fu >> length);
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0) != 0x80) {
            return {0, 0};
        }
        code = code << 6 | (byte(at) & 0x3F);
    }
    return {code, length};
}

void encode(std::uint32_t code, std::string& out) {
    if (code < 0x80) {
        out += static_cast<char>(code);
        return;
    }
    const unsigned trailing = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    out += static_cast<char>((0xFF00u >> (trailing + 1) & 0xFF) | code >> (6 * trailing));
    for (unsigned left = trailing; left-- > 0;) {
        out += static_cast<char>(0x80 | (code >> (6 * left) & 0x3F));
    }
}

std::uint32_t upper(std::uint32_t code) {
    return unicode() == nullptr ? code : static_cast<std::uint32_t>(::towupper_l(code, unicode()));
}

}  // namespace

std::string foldCase(std::string_view utf8) {
    std::string folded;
    folded.reserve(utf8.size());
    while (!utf8.empty()) {
        const char first = utf8.front();
        const Character character = static_cast<unsigned char>(first) < 0x80 ? Character{0, 0} : decode(utf8);
        if (character.length == 0) {
            folded += first >= 'a' && first <= 'z' ? static_cast<char>(first - 'a' + 'A') : first;
            utf8.remove_prefix(1);
        } else {
            encode(upper(character.code), folded);
            utf8.remove_prefix(character.length);
        }
    }
    return folded;
}

}  // namespace winlayer
