#pragma once
#include <cstddef>

// "Öffnen"_ansi: a UTF-8 literal as a zero-terminated text in code page 1252, converted at compile time.
// Letters outside Latin-1 do not compile. The result is valid for the life of the program.

namespace UTILS {

template <std::size_t N>
struct AnsiText {
    char text[N] = {};

    consteval AnsiText(const char (&utf8)[N]) {
        std::size_t length = 0;
        for (std::size_t i = 0; i + 1 < N; ++i) {
            const auto lead = static_cast<unsigned char>(utf8[i]);
            if (lead < 0x80) {
                text[length++] = utf8[i];
            } else if (lead == 0xC2 || lead == 0xC3) {
                const auto low = static_cast<unsigned char>(utf8[++i]);
                text[length++] = static_cast<char>(((lead & 0x03) << 6) | (low & 0x3F));
            } else {
                throw "only letters of Latin-1 can be converted";
            }
        }
    }
};

inline namespace literals {
template <AnsiText Text>
consteval const char* operator""_ansi() {
    return Text.text;
}
}  // namespace literals

}  // namespace UTILS
