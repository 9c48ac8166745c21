#include <gtest/gtest.h>

#include <numeric>

#include "UtilsString.h"

namespace {

using UTILS::UtilsString;
using UTILS::WideText;

TEST(SystemTexts, ErrorMessageIsAppended) {
    UtilsString plain("> ");
    const DWORD length = plain.SetErrorMsg(5);
    ASSERT_GT(length, 0u);
    EXPECT_EQ(plain.length(), length + 2);
    UtilsString numbered;
    EXPECT_EQ(numbered.SetErrorMsg(5, 1), length);
    EXPECT_EQ(numbered.GetSTLString(), "Error Number:  5 - " + plain.GetSTLString().substr(2));
}

TEST(SystemTexts, UnknownErrorGivesNoText) {
    UtilsString text("kept");
    EXPECT_EQ(text.SetErrorMsg(0xE0001234), 0u);
    EXPECT_STREQ(text.c_str(), "kept");
    EXPECT_EQ(text.SetErrorMsg(0xE0001234, 1), 0u);
    EXPECT_STREQ(text.c_str(), "keptError Number:  3758101044 - ");
}

TEST(SystemTexts, FormatsArguments) {
    UtilsString text("> ");
    EXPECT_EQ(text.FormatMessage("%1 of %2!u! in %3", "one", 7u, "all"), 15u);
    EXPECT_STREQ(text.c_str(), "> one of 7 in all");
    UtilsString format("%2 before %1");
    EXPECT_EQ(text.FormatMessage(format, "b", "a"), 10u);
    EXPECT_STREQ(text.c_str(), "> one of 7 in alla before b");
    EXPECT_EQ(format.FormatCurrentString("x", "a result that is longer than its format"), 48u);
    EXPECT_STREQ(format.c_str(), "a result that is longer than its format before x");
    EXPECT_EQ(format.FormatMessage(static_cast<const char*>(nullptr)), 0u);
}

TEST(WideTexts, ConvertBothWays) {
    const WideText wide = {'a', 0xE4, 0x20AC, 'z'};
    UtilsString text(wide);
    EXPECT_EQ(text.GetSTLString(), "a\xE4\x80z");
    EXPECT_EQ(text.GetSTLWString(), wide);
    EXPECT_EQ(WideText(text.w_str()), wide);
    EXPECT_EQ(WideText(text.ReturnWideChar()), wide);
    const unsigned short* const converted = static_cast<const UtilsString&>(text);
    EXPECT_EQ(converted[2], 0x20AC);
    text.ConvertFromWideChar(wide.c_str(), 1);
    EXPECT_EQ(text.GetSTLString(), "a\xE4\x80za\xE4\x80z");
    text.ConvertFromWideChar(wide);
    text += wide;
    EXPECT_EQ(text.GetSTLString(), "a\xE4\x80za\xE4\x80z");
    EXPECT_EQ(text.ReturnStringFromWideString(wide.c_str() + 3).GetSTLString(), "z");
    EXPECT_EQ(UtilsString(wide.c_str()).GetSTLString(), "a\xE4\x80z");
    text.ConvertFromWideChar(static_cast<const unsigned short*>(nullptr));
    EXPECT_STREQ(text.c_str(), "z") << "a conversion that fails leaves the text";
    text.ConvertFromWideChar(WideText());
    EXPECT_EQ(text.length(), 0u);
    EXPECT_EQ(text.w_str()[0], 0);
    EXPECT_EQ(text.ConvertToSTL(), "");
}

TEST(WideTexts, SharedBufferGrowsAsNeeded) {
    for (const std::size_t size : {3u, 5000u, 1u, 20000u}) {
        const std::string text(size, 'x');
        EXPECT_EQ(UtilsString(text).GetSTLWString(), WideText(text.begin(), text.end()));
    }
    const std::string zeros("a\0b", 3);
    EXPECT_EQ(UtilsString(zeros).GetSTLWString(), WideText(zeros.begin(), zeros.end()));
}

TEST(WideTexts, ByteStringIsShiftedByHalfTheRange) {
    std::string every(256, '\0');
    std::iota(every.begin(), every.end(), '\0');
    const UtilsString text(every);
    const unsigned char* const bytes = text.ReturnByteStr();
    for (std::size_t i = 0; i < every.size(); ++i) {
        EXPECT_EQ(bytes[i], (i + 128) % 256);
    }
    EXPECT_NE(UtilsString().ReturnByteStr(), nullptr);
}

}  // namespace
