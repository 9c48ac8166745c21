#include <gtest/gtest.h>

#include "UtilsByte.h"
#include "UtilsString.h"
#include "support/files.h"
#include "support/text_model.h"

namespace {

using test::model::Replaced;
using UTILS::UtilsByte;
using UTILS::UtilsString;

TEST(Replace, ReplacesEveryOccurrence) {
    const struct {
        const char* text;
        const char* pattern;
        const char* replacement;
        int result;
        const char* expected;
    } rows[] = {
        {"banana", "a", "xy", 1, "bxynxynxy"},
        {"ban.an.", "an", "", 1, "b.."},
        {"banana", "q", "x", 0, "banana"},
        {"xyz", "abc", "x", 0, "xyz"},
        {"abc", "abc", "x", 1, "x"},
        {"a\\b\\c", "\\", "/", 1, "a/b/c"},
        // The text before an occurrence and what follows it may make a new one.
        {"aabbc", "ab", "", 1, "c"},
        {"aaabbb", "ab", "ba", 1, "bbbaaa"},
        // It stops where it has just replaced one.
        {"banana", "a", "ab", 1, "babnana"},
        {"aaaa.", "aa", "a", 1, "aaa."},
        {"banana", "an", "", 1, "bana"},
        // Replacement text that holds the pattern further right is passed over.
        {"banana", "a", "xa", 1, "bxanxanxa"},
        {"a-b-", "-", "<->", 1, "a<->b<->"},
    };
    for (const auto& row : rows) {
        UtilsString text(row.text);
        EXPECT_EQ(text.ReplaceAll(row.pattern, row.replacement), row.result) << row.text;
        EXPECT_STREQ(text.c_str(), row.expected) << row.pattern << " by " << row.replacement;
        EXPECT_EQ(text.GetBuffer().GetAllocatedCount(), text.length() + 1);
    }
}

TEST(Replace, FirstAndNextWalkWhatIsLeft) {
    UtilsString text("a-a-a");
    EXPECT_EQ(text.ReplaceFirst("a", "bb"), 1);
    EXPECT_STREQ(text.c_str(), "bb-a-a");
    EXPECT_EQ(text.ReplaceNext("a", "c"), 1);
    EXPECT_STREQ(text.c_str(), "bb-c-a");
    EXPECT_EQ(text.ReplaceNext("a", "aa"), 1);
    EXPECT_EQ(text.ReplaceNext("a", "x"), 0) << "it lies where the last one was replaced";
    text.ReplaceReset();
    EXPECT_EQ(text.ReplaceNext("a", "x"), 1);
    EXPECT_STREQ(text.c_str(), "bb-c-xa");
    EXPECT_EQ(text.ReplaceNext("q", "x"), 0);
    EXPECT_EQ(UtilsString("abc").ReplaceNext("abc", "x"), 0);
    EXPECT_EQ(UtilsString("abc").ReplaceNext("a", "x"), 0) << "nothing replaced yet counts as position 0";
    UtilsString whole("abc");
    whole.SetCase(0);
    EXPECT_EQ(whole.ReplaceFirst("ABC", "much longer than before"), 1);
    EXPECT_STREQ(whole.c_str(), "much longer than before");
    DWORD position = 0;
    whole.FindFirst("e", position);
    whole.FindNext("e", position);
    whole.ReplaceFirst("q", "");
    EXPECT_EQ(whole.FindNext("e", position), 1);
    EXPECT_EQ(position, 18u) << "the find counter went back to 0";
}

UTILS::MemObject<unsigned char> elements(const std::string& of) {
    return UTILS::MemObject<unsigned char>().AppendExactly(reinterpret_cast<const unsigned char*>(of.data()),
                                                           static_cast<DWORD>(of.size()));
}

TEST(Replace, AgreesWithTheWalkAndAlwaysEnds) {
    test::model::RandomText random(test::randomSeed());
    int ended = 0;
    for (int round = 0; round < 20000; ++round) {
        const std::string text = random(14);
        const std::string pattern = random(3);
        const std::string replacement = random(4);
        const int matchCase = static_cast<int>(random.below(2));
        UtilsString string(text);
        string.SetCase(matchCase);
        const Replaced got{string.ReplaceAll(pattern, replacement), string.GetSTLString()};
        const auto expected = test::model::replaceAll(pattern, replacement, text, matchCase);
        ended += expected ? 1 : 0;
        ASSERT_TRUE(!expected || got == *expected) << text << ": " << pattern << " by " << replacement
                                                   << " gives " << got.text << ", not " << expected->text;

        UtilsByte bytes(elements(text));
        bytes.SetCase(matchCase);
        ASSERT_EQ(bytes.ReplaceAll(elements(pattern), elements(replacement)), got.result);
        ASSERT_EQ(bytes, elements(got.text)) << text << ": " << pattern << " by " << replacement;
    }
    EXPECT_GT(ended, 15000);
}

TEST(Replace, FirstReplacesWhatFindFirstFinds) {
    test::model::RandomText random(test::randomSeed());
    for (int round = 0; round < 5000; ++round) {
        std::string text = random(14);
        const std::string pattern = random(2) + 'a';
        const std::string replacement = random(4);
        UtilsString string(text);
        string.SetCase(static_cast<int>(random.below(2)));
        DWORD position = 0;
        const int found = string.FindFirst(pattern, position);
        ASSERT_EQ(string.ReplaceFirst(pattern, replacement), found) << text << ": " << pattern;
        if (found == 1) {
            text.replace(position, pattern.size(), replacement);
        }
        ASSERT_EQ(string.GetSTLString(), text) << pattern << " by " << replacement;
    }
}

// Each step here makes a new occurrence further left, over and over.
TEST(Replace, GoesBackAsFarAsAWalkThatEndsNeeds) {
    UtilsString text("bbbbbbaaaaaa");
    EXPECT_EQ(text.ReplaceAll("ba", "abb"), 1);
    EXPECT_EQ(text.GetSTLString(), "aaaaaa" + std::string(6 * 64, 'b'));
}

TEST(Replace, TakesTimeInProportionToTheText) {
    std::string text;
    std::string expected;
    for (int i = 0; i < 200000; ++i) {
        text += "a,";
        expected += "a--";
    }
    UtilsString string(text);
    EXPECT_EQ(string.ReplaceAll(",", "--"), 1);
    EXPECT_EQ(string.GetSTLString(), expected);
    EXPECT_EQ(string.ReplaceAll("--", ""), 1);
    EXPECT_EQ(string.GetSTLString(), std::string(200000, 'a'));
}

TEST(Replace, BytesShareOneCounter) {
    UtilsByte bytes(reinterpret_cast<const unsigned char*>("xaxa"), 4);
    const unsigned char pattern[] = {'a'};
    const unsigned char replacement[] = {'b', 'b'};
    EXPECT_EQ(bytes.ReplaceFirst(pattern, 1, replacement, 2), 1);
    EXPECT_EQ(bytes, UtilsByte(reinterpret_cast<const unsigned char*>("xbbxa"), 5));
    EXPECT_EQ(bytes.ReplaceNext(pattern, 0, pattern, 0), 1) << "a length of 0 is one byte";
    EXPECT_EQ(bytes.ReplaceNext('a', 'c'), 0) << "at the position replaced last";
    bytes.ReplaceReset();
    EXPECT_EQ(bytes.ReplaceNext('a', 'c'), 1);
    EXPECT_EQ(bytes.ReplaceAll('b', 'd'), 1);
    EXPECT_EQ(bytes, UtilsByte(reinterpret_cast<const unsigned char*>("xddxc"), 5));
    DWORD position = 0;
    EXPECT_EQ(bytes.FindNext('d', position), 1);
    EXPECT_EQ(position, 2u) << "ReplaceAll set the counter back";
}

}  // namespace
