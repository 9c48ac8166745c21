#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Run against the layer and against Windows itself; code page 1252 is named, so that the system's own does
// not matter.

namespace {

constexpr UINT western = 1252;
constexpr DWORD untouched = 7777;

std::vector<WCHAR> units(const char16_t* text) {
    const std::u16string source(text);
    return {source.begin(), source.end()};
}

struct NarrowResult {
    std::string text;
    BOOL replaced = FALSE;
};

NarrowResult narrow(const char16_t* text, DWORD flags, const char* replacement = nullptr) {
    const std::vector<WCHAR> wide = units(text);
    NarrowResult result;
    char buffer[64];
    const int length = ::WideCharToMultiByte(western, flags, wide.data(), static_cast<int>(wide.size()),
                                             buffer, sizeof buffer, replacement, &result.replaced);
    result.text.assign(buffer, static_cast<std::size_t>(length));
    return result;
}

TEST(StringApiSet, LengthsAndSizesCountAsDocumented) {
    WCHAR wide[8];
    char text[8];
    ::SetLastError(untouched);
    EXPECT_EQ(::MultiByteToWideChar(western, 0, "abc", -1, nullptr, 0), 4);
    EXPECT_EQ(::MultiByteToWideChar(western, 0, "abc", 3, nullptr, 0), 3);
    EXPECT_EQ(::MultiByteToWideChar(western, 0, "abc", -1, wide, 4), 4);
    EXPECT_EQ(wide[3], 0);
    EXPECT_EQ(::WideCharToMultiByte(western, 0, wide, -1, nullptr, 0, nullptr, nullptr), 4);
    EXPECT_EQ(::WideCharToMultiByte(western, 0, wide, -1, text, 4, nullptr, nullptr), 4);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(::GetLastError(), untouched);
}

TEST(StringApiSet, RefusalsSayWhy) {
    WCHAR wide[8] = {'a', 'b', 0};
    char text[8];
    const auto widening = [&](UINT page, DWORD flags, const char* source, int length, LPWSTR out, int size) {
        ::SetLastError(untouched);
        EXPECT_EQ(::MultiByteToWideChar(page, flags, source, length, out, size), 0);
        return ::GetLastError();
    };
    const auto narrowing = [&](UINT page, DWORD flags, LPCWSTR source, int length, char* out, int size) {
        ::SetLastError(untouched);
        EXPECT_EQ(::WideCharToMultiByte(page, flags, source, length, out, size, nullptr, nullptr), 0);
        return ::GetLastError();
    };
    EXPECT_EQ(widening(western, 0, "abc", -1, wide, 3), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(narrowing(western, 0, wide, -1, text, 2), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(widening(western, 0x8000, "abc", -1, wide, 8), DWORD{ERROR_INVALID_FLAGS});
    EXPECT_EQ(narrowing(western, 0x0001, wide, -1, text, 8), DWORD{ERROR_INVALID_FLAGS});
    EXPECT_EQ(widening(999, 0, "abc", -1, wide, 8), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(narrowing(999, 0, wide, -1, text, 8), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(widening(western, 0, "abc", 0, wide, 8), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(narrowing(western, 0, wide, 0, text, 8), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(widening(western, 0, "abc", 3, nullptr, 8), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(widening(western, 0, nullptr, -1, wide, 8), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(widening(CP_UTF8, MB_ERR_INVALID_CHARS, "a\xFF", -1, wide, 8),
              DWORD{ERROR_NO_UNICODE_TRANSLATION});
}

TEST(StringApiSet, WhatThePageLacksIsReplaced) {
    EXPECT_EQ(narrow(u"a\u4E00z", 0).text, "a?z");
    const NarrowResult result = narrow(u"a\u4E00\u20AC", 0, "#");
    EXPECT_EQ(result.text, "a#\x80");
    EXPECT_TRUE(result.replaced);
    EXPECT_FALSE(narrow(u"\u20AC", 0, "#").replaced);
}

TEST(StringApiSet, ALetterAndItsAccentBecomeOneCharacterOnRequest) {
    const DWORD compose = WC_COMPOSITECHECK | WC_SEPCHARS;
    EXPECT_EQ(narrow(u"a\u0308o\u0302S\u030CU\u0301", compose).text, "\xE4\xF4\x8A\xDA");
    EXPECT_EQ(narrow(u"a\u0308", 0).text.size(), 2u);
}

TEST(StringApiSet, Utf8IsReadStrictlyAndBrokenPartsAreMarked) {
    WCHAR wide[16];
    const char broken[] = "a\xE2\x82\xAC\xFF\xE2\x82z\xF0\x9F\x98\x80";
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, broken, -1, wide, 16);
    ASSERT_GT(length, 0);
    EXPECT_EQ(std::vector<WCHAR>(wide, wide + length),
              std::vector<WCHAR>({'a', 0x20AC, 0xFFFD, 0xFFFD, 'z', 0xD83D, 0xDE00, 0}));
    char text[16];
    const std::vector<WCHAR> lone = units(u"\u20AC");
    EXPECT_EQ(::WideCharToMultiByte(CP_UTF8, 0, lone.data(), 1, text, 16, nullptr, nullptr), 3);
    EXPECT_EQ(std::string(text, 3), "\xE2\x82\xAC");
}

}  // namespace
