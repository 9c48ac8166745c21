#include <gtest/gtest.h>

#include "UtilsByte.h"
#include "UtilsString.h"
#include "support/files.h"
#include "support/text_model.h"

namespace {

using test::model::Elements;
using UTILS::UtilsByte;
using UTILS::UtilsString;

UtilsByte bytes(const std::string& text) {
    UtilsByte made;
    for (const char element : text) {
        made.Append(element);
    }
    return made;
}

TEST(Compare, TextIsSignedAndBytesAreNot) {
    EXPECT_EQ(bytes("\xE9").Compare('A'), 1);
    EXPECT_EQ(bytes("ab").Compare(bytes(std::string("ab\0", 3))), -1) << "no terminator takes part";
    EXPECT_EQ(UtilsString("ab").Compare(std::string("ab\0", 3)), 0) << "the terminator does";
    const unsigned char* const null = nullptr;
    EXPECT_EQ(bytes("a").Compare(null, 0), 1);
    EXPECT_EQ(bytes("a").FriendCompare(null, 0), -1);
    const unsigned char text[] = {'a', 'b'};
    EXPECT_EQ(bytes("a").Compare(text), 0) << "one byte without a length";
    EXPECT_EQ(bytes("a").Compare(text, 2), -1);
    EXPECT_TRUE(bytes("b") > bytes("a") && bytes("a") != 'b' && 'a' == bytes("a"));
}

TEST(Compare, AgreesWithTheElementWalk) {
    test::model::RandomText text(test::randomSeed());
    for (int round = 0; round < 20000; ++round) {
        const std::string left = text(round % 100 == 0 ? 9000 : 12);
        std::string right = text.below(2) == 0 ? text(12) : left;
        if (!right.empty() && text.below(2) == 0) {
            right[text.below(right.size())] = 'b';
        }
        const int matchCase = static_cast<int>(text.below(2));
        const int style = static_cast<int>(text.below(2));
        UtilsString string(left);
        string.SetCase(matchCase);
        string.SetMatchStyle(style);
        const int order = compare(left, right, matchCase, style, Elements::signedText);
        SCOPED_TRACE(left + " | " + right + " case " + std::to_string(matchCase) + " style " +
                     std::to_string(style));
        EXPECT_EQ(string.Compare(right), order);
        EXPECT_EQ(string.FriendCompare(right), -order);
        EXPECT_EQ(string == right, order == 0);
        EXPECT_EQ(string < right, order < 0);
        EXPECT_EQ(right<string, order> 0);
        EXPECT_EQ(string >= right, order >= 0);
        UtilsByte byteString = bytes(left);
        byteString.SetCase(matchCase);
        byteString.SetMatchStyle(style);
        EXPECT_EQ(byteString.Compare(bytes(right)), compare(left, right, matchCase, style, Elements::bytes));
    }
}

// The first difference at every place of a long text, around the widths that are compared at once.
TEST(Compare, SeesADifferenceAnywhere) {
    const std::string text(9000, 'm');
    const UtilsString left(text);
    for (std::size_t at = 0; at < text.size(); at += at < 40 || at > 8150 ? 1 : 37) {
        std::string other = text;
        other[at] = 'n';
        EXPECT_EQ(left.Compare(other), -1) << at;
        other[at] = '\xE9';
        EXPECT_EQ(left.Compare(other), 1) << at;
    }
}

TEST(Compare, AsksTheObjectHowItsElementsFold) {
    class Shouting : public UtilsString {
    public:
        using UtilsString::UtilsString;
        int isupper(char element) const override {
            return element == '!' ? 1 : UtilsString::isupper(element);
        }
        char utoupper(char element) const override {
            return element == '1' ? '!' : UtilsString::utoupper(element);
        }
    };
    for (const std::size_t size : {1u, 5000u}) {
        Shouting text(std::string(size, '1'));
        text.SetCase(0);
        EXPECT_EQ(text.Compare(std::string(size, '!')), 0);
        EXPECT_EQ(text.Search("!"), 0u);
        EXPECT_EQ(UtilsString(text).SetCase(0).Search("!"), UTILS::not_found);
    }
}

TEST(Classification, KnowsTheEnglishLettersAlone) {
    const UtilsString text;
    const UtilsByte byteString;
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<unsigned char>(value);
        const char element = static_cast<char>(byte);
        const int upper = value >= 'A' && value <= 'Z' ? 1 : 0;
        const int lower = value >= 'a' && value <= 'z' ? 1 : 0;
        EXPECT_EQ(text.isupper(element) * 2 + text.islower(element), upper * 2 + lower) << value;
        EXPECT_EQ(byteString.isupper(byte) * 2 + byteString.islower(byte), upper * 2 + lower) << value;
        EXPECT_EQ(text.utoupper(element), static_cast<char>(value - 0x20)) << value;
        EXPECT_EQ(byteString.utolower(byte), static_cast<unsigned char>(value + 0x20)) << value;
    }
    const unsigned short unit = 'A';
    EXPECT_EQ(text.isupper(unit) + text.islower(unit), 0);
    EXPECT_EQ(text.utolower(unit), unit);
    EXPECT_EQ(text.IsText() + static_cast<int>(text.GetTerminatorCount()), 2);
    EXPECT_EQ(byteString.IsText() + static_cast<int>(byteString.GetTerminatorCount()), 0);
    EXPECT_STREQ(text.derived_class(), "class UTILS::UtilsString");
    EXPECT_STREQ(UTILS::MemObject<char>().derived_class(), "class UTILS::MemObject<char>");
}

}  // namespace
