#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/expect_fails.h"

// The program that runs these tests carries tests/winlayer/resources.rc, on Windows and elsewhere.

namespace {

std::string dataOf(HRSRC resource, std::size_t size) {
    const HGLOBAL data = LoadResource(nullptr, resource);
    const void* const bytes = LockResource(data);
    return bytes == nullptr ? std::string() : std::string(static_cast<const char*>(bytes), size);
}

std::string loaded(UINT id) {
    char buffer[128];
    std::memset(buffer, '#', sizeof buffer);
    const int length = LoadStringA(nullptr, id, buffer, sizeof buffer);
    EXPECT_EQ(buffer[length], 0);
    return {buffer, static_cast<std::size_t>(length)};
}

TEST(Resources, AreFoundByNumberAndByNameWithoutCase) {
    const std::string rtf("{\\rtf1 text}\0", 13);
    EXPECT_EQ(dataOf(FindResourceA(nullptr, MAKEINTRESOURCEA(114), "RTF"), rtf.size()), rtf);
    EXPECT_EQ(dataOf(FindResourceA(GetModuleHandleA(nullptr), "#114", "rtf"), rtf.size()), rtf);
    EXPECT_EQ(dataOf(FindResourceA(nullptr, "PICTURE", "RTF"), 5), std::string("\1\2\3\4\5"));
    EXPECT_EQ(dataOf(FindResourceA(nullptr, "picture", "Rtf"), 5), std::string("\1\2\3\4\5"));
    const HRSRC raw = FindResourceA(nullptr, MAKEINTRESOURCEA(9), MAKEINTRESOURCEA(10));
    ASSERT_NE(raw, nullptr);
    EXPECT_EQ(dataOf(raw, 6), std::string("\1\0\2\0\3\0", 6));
    EXPECT_EQ(FindResourceA(nullptr, "#9", "#10"), raw);
}

TEST(Resources, WhatIsMissingIsNamed) {
    SetLastError(0);
    EXPECT_FAILS(FindResourceA(nullptr, MAKEINTRESOURCEA(8), "RTF"), ERROR_RESOURCE_NAME_NOT_FOUND);
    EXPECT_FAILS(FindResourceA(nullptr, MAKEINTRESOURCEA(114), "RTX"), ERROR_RESOURCE_TYPE_NOT_FOUND);
    EXPECT_EQ(LoadResource(nullptr, nullptr), nullptr);
    EXPECT_EQ(LockResource(nullptr), nullptr);
}

TEST(Resources, StringsComeFromTheirBlocks) {
    EXPECT_EQ(loaded(1), "\326ffnen \226 10 \200");
    EXPECT_EQ(loaded(15), "the last of the first block");
    EXPECT_EQ(loaded(16), "the first of the second");
    EXPECT_EQ(loaded(700), "ein Text, der l\xE4nger ist als der erste Puffer");
    EXPECT_EQ(loaded(65535), "the last of all");
    for (const UINT missing : {0u, 14u, 17u, 18u, 31u, 40u, 699u, 701u}) {
        EXPECT_EQ(loaded(missing), "") << missing;
    }
}

TEST(Resources, StringsAreCutToTheBuffer) {
    char buffer[8];
    EXPECT_EQ(LoadStringA(nullptr, 16, buffer, 8), 7);
    EXPECT_STREQ(buffer, "the fir");
    EXPECT_EQ(LoadStringA(nullptr, 16, buffer, 1), 0);
    EXPECT_STREQ(buffer, "");
}

}  // namespace
