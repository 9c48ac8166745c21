#include <gtest/gtest.h>

#include <stdexcept>

#include "UtilsByte.h"
#include "UtilsString.h"
#include "support/files.h"
#include "support/text_model.h"
#include "thrown_message.h"

namespace {

using test::model::Found;
using UTILS::not_found;
using UTILS::UtilsByte;
using UTILS::UtilsString;

TEST(Find, CountsOccurrencesUntilItIsSetBack) {
    UtilsString text("xabab");
    unsigned long position = 0;
    EXPECT_EQ(text.FindFirst("ab", position), 1);
    EXPECT_EQ(text.FindNext("ab", position), 1);
    EXPECT_EQ(text.FindAll("ab"), 1);
    EXPECT_EQ(text.FindNext("ab", position), 1) << "FindAll set the counter back";
    EXPECT_EQ(position, 3u);
    text.FindReset();
    EXPECT_EQ(text.FindNext("ab", position), 1);
    EXPECT_EQ(text.Search("ab"), 1u);
}

TEST(Find, RefusesAnUnknownCase) {
    UtilsString text("abc");
    text.SetCase(7);
    EXPECT_EQ(thrownMessage<std::invalid_argument>([&] { text.Search("b"); }),
              R"(Inavlid Argument Passed - 7; File:  ..\..\Include\UtilsBase)");
    UtilsString field("kept");
    EXPECT_THROW(text.ParseFirstString("b", field), std::invalid_argument);
    EXPECT_THROW(text.ReplaceAll("b", "x"), std::invalid_argument);
    text.SetMatchStyle(1);
    EXPECT_THROW(text.Compare("b"), std::invalid_argument);
    EXPECT_EQ(text.Search("abcd"), not_found) << "a shorter text is not looked at";
    EXPECT_STREQ(text.c_str(), "abc");
    EXPECT_STREQ(field.c_str(), "kept");
}

TEST(Find, AgreesWithTheElementWalk) {
    test::model::RandomText random(test::randomSeed());
    for (int round = 0; round < 20000; ++round) {
        const std::string text = random(round % 50 == 0 ? 3000 : 20);
        const std::string pattern = random(round % 50 == 0 ? 9 : 4);
        const int matchCase = static_cast<int>(random.below(2));
        UtilsString string(text);
        string.SetCase(matchCase);
        UtilsByte bytes(reinterpret_cast<const unsigned char*>(text.data()), static_cast<DWORD>(text.size()));
        if (text.empty()) {
            bytes.Erase();
        }
        bytes.SetCase(matchCase);
        const UTILS::MemObject<unsigned char> patternBytes = UTILS::MemObject<unsigned char>().AppendExactly(
            reinterpret_cast<const unsigned char*>(pattern.data()), static_cast<DWORD>(pattern.size()));
        DWORD position = 7;
        int result = string.FindFirst(pattern, position);
        int byteResult = 0;
        DWORD bytePosition = 7;
        for (DWORD occurrence = 0;; ++occurrence) {
            const Found expected = test::model::findOccurrence(pattern, text, matchCase, occurrence);
            byteResult = occurrence == 0 ? bytes.FindFirst(patternBytes, bytePosition)
                                         : bytes.FindNext(patternBytes, bytePosition);
            ASSERT_EQ((Found{result, position}), expected)
                << text << " | " << pattern << " case " << matchCase;
            ASSERT_EQ((Found{byteResult, bytePosition}), expected)
                << text << " | " << pattern << " case " << matchCase;
            ASSERT_EQ(string.Search(pattern, occurrence),
                      expected.result == 1 ? expected.position : not_found);
            if (result == 0) {
                break;
            }
            result = string.FindNext(pattern, position);
        }
        ASSERT_EQ(string.FindAll(pattern), test::model::findOccurrence(pattern, text, matchCase, 0).result);
    }
}

std::string repeated(const std::string& text, std::size_t length) {
    std::string whole;
    while (whole.size() < length) {
        whole += text;
    }
    whole.resize(length);
    return whole;
}

// The only occurrence at every place of a long text whose other places look much like it: they miss one
// character, or end or begin as it does.
TEST(Find, SeesAnOccurrenceAnywhere) {
    struct Case {
        std::string pattern;
        std::string filling;
        std::size_t after;  // a pattern is long only in a text of some thousand characters
    };
    const std::string wide = "a long needle that has many pairs";
    const Case cases[] = {
        {"needle", "neeedle nedle ", 70},
        {wide, wide.substr(1) + wide.substr(0, wide.size() - 1), 5000},
        {std::string(30, 'a') + "b", std::string(29, 'a') + "b" + std::string(40, 'a') + 'c', 5000},
    };
    for (const auto& [pattern, filling, after] : cases) {
        for (std::size_t at = 0; at < 600; ++at) {
            const std::string text = repeated(filling, at) + '-' + pattern + '-' + repeated(filling, after);
            ASSERT_EQ(UtilsString(text).Search(pattern), at + 1) << pattern;
            ASSERT_EQ(UtilsString(text).Search(pattern, 1), not_found) << pattern;
        }
    }
}

TEST(Parse, GivesFieldsIntoBuffersAndStartsAgain) {
    UtilsString text("a,bb,ccc,d");
    UtilsString field;
    char buffer[8] = "filled!";
    EXPECT_EQ(text.ParseFirstString(",", buffer), 1);
    EXPECT_EQ(text.ParseNextString(",", buffer), 1);
    EXPECT_STREQ(buffer, "bb");
    EXPECT_EQ(text.ParseString(",", buffer, 3, 1), 1);
    EXPECT_STREQ(buffer, "d");
    text.ParseReset();
    EXPECT_EQ(text.ParseNextString(",", field), 1);
    EXPECT_STREQ(field.c_str(), "bb");

    EXPECT_EQ(text.ParseFirstStringFast(",", buffer), 1);
    EXPECT_EQ(text.ParseNextStringFast(",", buffer), 1);
    EXPECT_STREQ(buffer, "bb");
    EXPECT_EQ(text.ParseStringFast(",", field, 1), 1);
    EXPECT_STREQ(field.c_str(), "ccc") << "counted from the cursor";
    EXPECT_EQ(text.ParseStringFast(",", field, 3), 0);
    text.ParseFastReset();
    EXPECT_EQ(text.ParseStringFast(",", buffer, 2), 1);
    EXPECT_STREQ(buffer, "ccc");
    EXPECT_EQ(text.ParseFirstStringFast(nullptr, buffer), 0);
}

TEST(Parse, WritesIntoTheParsedStringItself) {
    UtilsString text("first,second");
    EXPECT_EQ(text.ParseString(",", text, 1), 1);
    EXPECT_STREQ(text.c_str(), "second");
    text = "one,two";
    EXPECT_EQ(text.ParseString(",", text.GetString(), 1), 1);
    EXPECT_STREQ(text.c_str(), "two");
}

TEST(Parse, AgreesWithCuttingByHand) {
    test::model::RandomText random(test::randomSeed());
    for (int round = 0; round < 10000; ++round) {
        const std::string text = random(round % 50 == 0 ? 400 : 16);
        const std::string delimiter = random(2);
        const int matchCase = static_cast<int>(random.below(2));
        UtilsString string(text);
        string.SetCase(matchCase);
        const std::vector<std::string> plain = test::model::fields(delimiter, text, matchCase, false);
        const std::vector<std::string> whole = test::model::fields(delimiter, text, matchCase, true);
        SCOPED_TRACE(text + " | " + delimiter);
        UtilsString field("kept");
        std::string expected = "kept";
        for (std::size_t i = 0; i <= plain.size(); ++i) {
            const int result =
                i == 0 ? string.ParseFirstString(delimiter, field) : string.ParseNextString(delimiter, field);
            expected = i < plain.size() ? plain[i] : expected;
            ASSERT_EQ(result, i < plain.size() ? 1 : 0);
            ASSERT_EQ(field.GetSTLString(), expected) << "no field leaves the output";
            ASSERT_EQ(string.ParseString(delimiter, field, static_cast<DWORD>(i)), result);
        }
        for (std::size_t i = 0; i < (whole.empty() ? 1 : whole.size() + 4); ++i) {
            const int result = i == 0 ? string.ParseFirstStringFast(delimiter, field)
                                      : string.ParseNextStringFast(delimiter, field);
            if (!whole.empty()) {
                expected = i < whole.size() ? whole[i] : "";
            }
            ASSERT_EQ(result, i < whole.size() ? 1 : 0);
            ASSERT_EQ(field.GetSTLString(), expected) << "a cursor beyond the end empties the output";
        }
    }
}

TEST(Parse, CutsBytes) {
    const unsigned char text[] = {1, 0, 2, 0, 0, 3};
    const unsigned char zero[] = {0};
    UtilsByte bytes(text, 6);
    UtilsByte field;
    EXPECT_EQ(bytes.ParseFirstByteString(zero, 1, field), 1);
    EXPECT_EQ(field, UtilsByte(text, 1));
    EXPECT_EQ(bytes.ParseNextByteString(zero, 0, field), 1) << "a length of 0 is one byte";
    EXPECT_EQ(field[0], 2);
    EXPECT_EQ(bytes.ParseNextByteString(0, field), 1);
    EXPECT_EQ(field.length(), 0u);
    EXPECT_EQ(bytes.ParseByteString(zero, 1, field, 3), 1);
    EXPECT_EQ(field[0], 3);
    EXPECT_EQ(bytes.ParseByteString(0, field, 4), 0);
    bytes.ParseReset();
    unsigned long position = 0;
    EXPECT_EQ(bytes.FindNext(0, position), 1);
    EXPECT_EQ(position, 3u) << "one counter for both families";
    EXPECT_EQ(bytes.ParseByteString(9, field, 0), 0);
}

}  // namespace
