#include "winlayer/text/code_pages.h"

#include <gtest/gtest.h>
#include <iconv.h>

#include <optional>
#include <random>

#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;

// The host's own converter as the oracle.
std::optional<std::string> convert(const char* to, const char* from, std::string text) {
    const iconv_t converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        throw std::runtime_error("no such converter");
    }
    std::string out(4 * text.size() + 8, '\0');
    char* source = text.data();
    char* target = out.data();
    std::size_t left = text.size();
    std::size_t room = out.size();
    const bool fine = iconv(converter, &source, &left, &target, &room) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    out.resize(out.size() - room);
    return fine ? std::optional(out) : std::nullopt;
}

TEST(CodePagesMachine, EveryByteMeansWhatTheHostSaysAndComesBack) {
    ScopedMachine machine;
    for (const UINT page : {1250u, 1251u, 1252u}) {
        machine->ansiCodePage = page;
        int open = 0;
        for (int byte = 0; byte < 256; ++byte) {
            const std::string ansi(1, static_cast<char>(byte));
            const std::string utf8 = winlayer::toUtf8(*machine, ansi);
            const auto expected = convert("UTF-8", ("CP" + std::to_string(page)).c_str(), ansi);
            if (expected) {
                EXPECT_EQ(utf8, *expected) << page << " byte " << byte;
            } else {
                ++open;
                EXPECT_EQ(utf8, *convert("UTF-8", "ISO-8859-1", ansi)) << page << " byte " << byte;
            }
            std::string back;
            EXPECT_TRUE(winlayer::fromUtf8(*machine, utf8, back));
            EXPECT_EQ(back, ansi) << page << " byte " << byte;
        }
        EXPECT_LE(open, 5) << page;
    }
}

TEST(CodePagesMachine, WhatHasNoPlaceIsRefusedAndLeavesTheTargetAlone) {
    ScopedMachine machine;
    for (const char* utf8 : {"\xE4\xB8\x80", "a\xCC\x88", "\xFF", "a\xE2\x82", "\xC0\xAF", "\xED\xA0\x80"}) {
        std::string ansi = "before";
        EXPECT_FALSE(winlayer::fromUtf8(*machine, utf8, ansi));
        EXPECT_EQ(ansi, "before");
    }
}

TEST(CodePagesMachine, RandomBytesAreUtf8ExactlyWhenTheHostSaysSo) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    ScopedMachine machine;
    machine->ansiCodePage = CP_UTF8;
    // Mostly the bytes where the rules change, so that whole sequences come about.
    const std::string alphabet = "a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF4\xF5";
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int i = 0; i < 4; ++i) {
            text += alphabet[letter(random)];
        }
        const auto expected = convert("UTF-16LE", "UTF-8", text);
        bool valid = false;
        const std::u16string wide = winlayer::widen(CP_UTF8, text, valid);
        ASSERT_EQ(valid, expected.has_value()) << testing::PrintToString(text);
        if (valid) {
            winlayer::Narrowing how;
            ASSERT_EQ(winlayer::narrow(CP_UTF8, wide, how), text);
            ASSERT_EQ(std::string(reinterpret_cast<const char*>(wide.data()), wide.size() * 2), *expected);
        }
    }
}

}  // namespace
