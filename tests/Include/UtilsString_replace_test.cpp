#include <gtest/gtest.h>

#include "UtilsByte.h"
#include "UtilsString.h"
#include "support/files.h"
#include "support/text_model.h"

namespace {

using test::model::Found;
using test::model::Replaced;
using UTILS::UtilsByte;
using UTILS::UtilsString;

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
        SCOPED_TRACE(text + ": " + pattern + " by " + replacement);
        ASSERT_TRUE(!expected || got == *expected) << got.text << ", not " << expected->text;
        ASSERT_EQ(string.GetBuffer().GetAllocatedCount(), string.length() + 1);

        UtilsByte bytes(elements(text));
        bytes.SetCase(matchCase);
        ASSERT_EQ(bytes.ReplaceAll(elements(pattern), elements(replacement)), got.result);
        ASSERT_EQ(bytes, elements(got.text));

        const Found first = test::model::findOccurrence(pattern, text, matchCase, 0);
        UtilsString once(text);
        once.SetCase(matchCase);
        if (!pattern.empty()) {
            ASSERT_EQ(once.ReplaceFirst(pattern, replacement), first.result);
            ASSERT_EQ(once.GetSTLString(),
                      first.result == 0
                          ? text
                          : std::string(text).replace(first.position, pattern.size(), replacement));
        }
    }
    EXPECT_GT(ended, 15000);
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
