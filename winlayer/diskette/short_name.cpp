#include "winlayer/diskette/short_name.h"

#include <algorithm>
#include <cstdint>

namespace winlayer {
namespace {

constexpr std::size_t baseLength = 8;
constexpr std::size_t extensionLength = 3;
constexpr std::byte blank{' '};

// Code page 850 from 80h up in code page 1252. The box-drawing characters, which 1252 lacks, get the
// remaining values.
constexpr std::uint8_t ansiOfOem[128] = {
    0xC7, 0xFC, 0xE9, 0xE2, 0xE4, 0xE0, 0xE5, 0xE7, 0xEA, 0xEB, 0xE8, 0xEF, 0xEE, 0xEC, 0xC4, 0xC5,  //
    0xC9, 0xE6, 0xC6, 0xF4, 0xF6, 0xF2, 0xFB, 0xF9, 0xFF, 0xD6, 0xDC, 0xF8, 0xA3, 0xD8, 0xD7, 0x83,  //
    0xE1, 0xED, 0xF3, 0xFA, 0xF1, 0xD1, 0xAA, 0xBA, 0xBF, 0xAE, 0xAC, 0xBD, 0xBC, 0xA1, 0xAB, 0xBB,  //
    0x80, 0x81, 0x82, 0x84, 0x85, 0xC1, 0xC2, 0xC0, 0xA9, 0x86, 0x87, 0x88, 0x89, 0xA2, 0xA5, 0x8A,  //
    0x8B, 0x8C, 0x8D, 0x8E, 0x8F, 0x90, 0xE3, 0xC3, 0x91, 0x92, 0x93, 0x94, 0x95, 0x96, 0x97, 0xA4,  //
    0xF0, 0xD0, 0xCA, 0xCB, 0xC8, 0x98, 0xCD, 0xCE, 0xCF, 0x99, 0x9A, 0x9B, 0x9C, 0xA6, 0xCC, 0x9D,  //
    0xD3, 0xDF, 0xD4, 0xD2, 0xF5, 0xD5, 0xB5, 0xFE, 0xDE, 0xDA, 0xDB, 0xD9, 0xFD, 0xDD, 0xAF, 0xB4,  //
    0xAD, 0xB1, 0x9E, 0xBE, 0xB6, 0xA7, 0xF7, 0xB8, 0xB0, 0xA8, 0xB7, 0xB9, 0xB3, 0xB2, 0x9F, 0xA0,
};

char toAnsi(std::byte oem) {
    const auto value = std::to_integer<std::uint8_t>(oem);
    return static_cast<char>(value < 0x80 ? value : ansiOfOem[value - 0x80]);
}

std::byte toOem(char ansi) {
    const auto value = static_cast<std::uint8_t>(ansi);
    if (value < 0x80) {
        return std::byte{value};
    }
    const auto* const found = std::find(std::begin(ansiOfOem), std::end(ansiOfOem), value);
    return static_cast<std::byte>(0x80 + (found - std::begin(ansiOfOem)));
}

char upper(char c) {
    const auto value = static_cast<std::uint8_t>(c);
    const bool small = (value >= 'a' && value <= 'z') || (value >= 0xE0 && value <= 0xFE && value != 0xF7);
    return static_cast<char>(small ? value - 0x20 : value);
}

bool isControl(char c) {
    return static_cast<std::uint8_t>(c) < 0x20;
}

bool isForbidden(char c) {
    return isControl(c) || std::string_view("\"*+,./:;<=>?[\\]|").find(c) != std::string_view::npos;
}

// Characters of code page 1252 that code page 850 really has: from A0h up all, below just one.
bool hasOem(char c) {
    const auto value = static_cast<std::uint8_t>(c);
    return value < 0x80 || value >= 0xA0 || value == 0x83;
}

char shown(std::byte oem) {
    const char c = toAnsi(oem);
    return isControl(c) || std::string_view("\"*./:<>?\\|").find(c) != std::string_view::npos ? '_' : c;
}

// One part of a name without its padding.
std::string partText(const std::byte* first, std::size_t length) {
    while (length > 0 && first[length - 1] == blank) {
        --length;
    }
    std::string text(length, '\0');
    std::transform(first, first + length, text.begin(), shown);
    return text;
}

bool parsePart(std::string_view text, std::byte* place, std::size_t length) {
    if (text.size() > length || (!text.empty() && text.back() == ' ') ||
        std::any_of(text.begin(), text.end(), isForbidden)) {
        return false;
    }
    std::transform(text.begin(), text.end(), place, [](char c) { return toOem(upper(c)); });
    return true;
}

// E5h as the first byte would mark a deleted entry; 05h is stored instead.
constexpr std::byte deletedMark{0xE5};
constexpr std::byte deletedStandIn{0x05};

RawName fromDisk(RawName raw) {
    if (raw[0] == deletedStandIn) {
        raw[0] = deletedMark;
    }
    return raw;
}

RawName toDisk(RawName raw) {
    if (raw[0] == deletedMark) {
        raw[0] = deletedStandIn;
    }
    return raw;
}

}  // namespace

std::string nameText(const RawName& raw) {
    const RawName plain = fromDisk(raw);
    std::string text = partText(plain.data(), baseLength);
    if (text.empty()) {
        text = "_";
    }
    const std::string extension = partText(plain.data() + baseLength, extensionLength);
    return extension.empty() ? text : text + '.' + extension;
}

bool parseName(std::string_view text, RawName& raw) {
    const std::size_t dot = text.rfind('.');
    const std::string_view base = text.substr(0, dot);
    const std::string_view extension = dot == std::string_view::npos ? "" : text.substr(dot + 1);
    const bool danglingDot = dot != std::string_view::npos && extension.empty();
    RawName parsed;
    parsed.fill(blank);
    if (base.empty() || danglingDot || !parsePart(base, parsed.data(), baseLength) ||
        !parsePart(extension, parsed.data() + baseLength, extensionLength)) {
        return false;
    }
    raw = toDisk(parsed);
    return true;
}

std::string foldName(std::string_view text) {
    std::string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), upper);
    return folded;
}

std::string labelText(const RawName& raw) {
    const RawName plain = fromDisk(raw);
    std::string text(plain.size(), '\0');
    std::transform(plain.begin(), plain.end(), text.begin(), [](std::byte oem) {
        const char c = toAnsi(oem);
        return isControl(c) ? '_' : c;
    });
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

bool parseLabel(std::string_view text, RawName& raw) {
    if (text.size() > raw.size() || text.empty() || text.front() == ' ' ||
        std::any_of(text.begin(), text.end(), [](char c) { return isForbidden(c) || !hasOem(c); })) {
        return false;
    }
    RawName parsed;
    parsed.fill(blank);
    std::transform(text.begin(), text.end(), parsed.begin(), [](char c) { return toOem(upper(c)); });
    raw = toDisk(parsed);
    return true;
}

}  // namespace winlayer
