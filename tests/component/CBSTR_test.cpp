#include "component/CBSTR.h"

#include <gtest/gtest.h>

#include <string>

#include "Include/ansi_literal.h"

namespace {

using namespace UTILS::literals;

template <class... Arguments>
std::string formatted(const char* pattern, Arguments... arguments) {
    CBSTR text;
    EXPECT_TRUE(text.Format(pattern, arguments...)) << pattern;
    return text.Text();
}

// What a failing Format leaves behind.
template <class... Arguments>
std::string refused(const char* pattern, Arguments... arguments) {
    CBSTR text("before");
    EXPECT_FALSE(text.Format(pattern, arguments...)) << pattern;
    return text.Text();
}

TEST(CBSTR, KeepsATextInBothForms) {
    CBSTR text("Grüße"_ansi);
    EXPECT_STREQ(text.Narrow(), "Grüße"_ansi);
    EXPECT_EQ(text.Status(), S_OK);
    ASSERT_EQ(SysStringLen(text.Wide()), 5U);
    EXPECT_EQ(text.Wide()[2], 0xFC);
    EXPECT_EQ(text.Narrow(), text.Narrow()) << "the copy is made once";
}

TEST(CBSTR, TellsNoTextFromNullAndEmptyOnes) {
    CBSTR none;
    EXPECT_EQ(none.Status(), E_FAIL);
    EXPECT_EQ(none.Narrow(), nullptr);
    CBSTR null(nullptr);
    EXPECT_EQ(null.Status(), S_OK);
    EXPECT_EQ(null.Narrow(), nullptr);
    EXPECT_STREQ(null.Text(), "");
    CBSTR empty("");
    EXPECT_STREQ(empty.Narrow(), "") << "not null";
}

TEST(CBSTR, CopiesShareTheirTextUntilTheLastLetsGo) {
    CBSTR first("geteilt");
    const char* narrow = first.Narrow();
    CBSTR second(first);
    CBSTR third;
    third = second;
    first.Release();
    EXPECT_EQ(first.Status(), E_FAIL);
    EXPECT_EQ(second.Narrow(), narrow);
    second = CBSTR("anders");
    EXPECT_STREQ(third.Narrow(), "geteilt");
    third += third;
    EXPECT_STREQ(third.Narrow(), "geteiltgeteilt");
    CBSTR& same = third;
    third = same;
    EXPECT_STREQ(third.Narrow(), "geteiltgeteilt");
}

TEST(CBSTR, JoinsTextsOfWhichOneMayBeMissing) {
    EXPECT_STREQ((CBSTR("A:") + CBSTR("\\")).Narrow(), "A:\\");
    EXPECT_STREQ((CBSTR() + CBSTR("b")).Narrow(), "b");
    EXPECT_STREQ((CBSTR("a") + CBSTR(nullptr)).Narrow(), "a");
    EXPECT_STREQ((CBSTR() + CBSTR()).Narrow(), "");
}

TEST(CBSTRFormat, CopiesOrdinaryCharactersAndEscapes) {
    EXPECT_EQ(formatted("a\tb\r\nc!"), "a\tb\r\nc!");
    EXPECT_EQ(formatted(R"(\\ \' \")"), R"(\ ' ")");
    EXPECT_EQ(formatted("1\\\t2\\\r3\\\n4"), "1\t2\r3\n4");
    EXPECT_EQ(formatted(R"(a\nb\%1c)"), "ab1c") << "an unknown escape goes with its character";
    EXPECT_EQ(formatted("100%% wahr%"), "100 wahr") << "a lone percent sign goes with its character";
    EXPECT_EQ(formatted("Ende\\"), "Ende");
    EXPECT_EQ(formatted(""), "");
}

TEST(CBSTRFormat, NamesAProductThatNoHostNames) {
    EXPECT_EQ(formatted("[\\@]"), "[CBSTR DEFAULT PRODUCT NAME]");
}

TEST(CBSTRFormat, InsertsTextsByTheirNumber) {
    EXPECT_EQ(formatted("%1 und %2", "eins", "zwei"), "eins und zwei");
    EXPECT_EQ(formatted("%2 vor %1", "eins", "zwei"), "zwei vor eins");
    const char* none = nullptr;
    EXPECT_EQ(formatted("<%1>", none), "< >");
    EXPECT_EQ(formatted("<%1!9s!>", none), "< >");
    EXPECT_EQ(formatted("%012", "zwölf Zeichen"_ansi), "zwölf Zeichen2"_ansi) << "two digits make a number";
}

TEST(CBSTRFormat, ConvertsByTheTypeLetter) {
    EXPECT_EQ(formatted("%1!5s!|%2!-5s!|%3!.2s!", "ab", "cd", "efgh"), "   ab|cd   |ef");
    EXPECT_EQ(formatted("%1!c!%2!3c!", 'x', 0x70000 | 'y'), "x  y");
    EXPECT_EQ(formatted("%1!d! %2!+d! %3!05d!", -7, 7, 7), "-7 +7 00007");
    EXPECT_EQ(formatted("%1!o! %2!#o! %3!u!", 8, 8, -1), "10 010 4294967295");
    EXPECT_EQ(formatted("%1!x! %2!X! %3!#6.4x!", 0xBEEF, 0xBEEF, 0x1F), "beef BEEF 0x001f");
    EXPECT_EQ(formatted("%1!b! %2!b!", 5, 0x1FF), "00000101 11111111");
    EXPECT_EQ(formatted("%1!i!", 7), "7");
    const std::string address = formatted("%1!p!", reinterpret_cast<void*>(0xABCDEF));
    EXPECT_EQ(address, std::string(2 * sizeof(void*) - 6, '0') + "ABCDEF");
}

TEST(CBSTRFormat, TakesStarsFromTheArgumentsThatFollow) {
    EXPECT_EQ(formatted("%1!*d!|", 42, 5), "   42|");
    EXPECT_EQ(formatted("%1!*d!|", 42, -5), "42   |");
    EXPECT_EQ(formatted("%1!*.*s!|%4", "abcdef", 5, 2, "end"), "   ab|end");
    EXPECT_EQ(formatted("%2!.*s!%1", "!", "abcdef", 3), "abc!");
    EXPECT_EQ(formatted("%1!.*s!", "abc", -1), "abc") << "a negative precision is none";
}

TEST(CBSTRFormat, ReadsEachArgumentWithItsOwnSize) {
    // Floating point between pointers and integers, referenced out of order.
    EXPECT_EQ(formatted("%4|%1!d!|%3!X!|%2!e!", 1, 2.5, 0xA, "text"), "text|1|A|")
        << "an exponent is no number for the locale";
}

TEST(CBSTRFormat, RefusesNumbersThatMakeNoSense) {
    EXPECT_EQ(refused("%2", "a", "b"), "");
    EXPECT_EQ(refused("%1 %3", "a", "b", "c"), "");
    EXPECT_EQ(refused("%0", "a"), "");
    EXPECT_EQ(refused("%1!d! %1!d!", 1), "");
    EXPECT_EQ(refused("%1 %1", "a"), "");
    EXPECT_EQ(refused("%1!*d! %2!d!", 1, 2), "") << "the width is argument 2";
    EXPECT_EQ(refused("%99!*d!", 1), "") << "argument 100";
    CBSTR text("before");
    EXPECT_FALSE(text.Format(nullptr));
    EXPECT_STREQ(text.Text(), "");
}

TEST(CBSTRFormat, EndsAtAnInvalidSpecification) {
    EXPECT_EQ(refused("%1: %2!5-d! und %3", "a", 1, "c"), "a: !5-d! und %3");
    EXPECT_EQ(refused("%1!*5d!x", 1, 2), "!*5d!x");
    EXPECT_EQ(refused("%1!5*d!x", 1, 2), "!5*d!x");
    EXPECT_EQ(refused("%1!.3.3d!x", 1), "!.3.3d!x");
    EXPECT_EQ(refused("%1!q!", 1), "!q!");
    EXPECT_EQ(refused("<%1!", 1), "<!");
}

TEST(CBSTRFormat, SkipsOneCharacterBehindTheLetter) {
    EXPECT_EQ(formatted("%1!d?x", 3), "3x");
    EXPECT_EQ(formatted("%1!d", 3), "3");
}

TEST(CBSTRFormat, TakesItsOwnTextAsAnArgument) {
    CBSTR text("Laufwerk");
    ASSERT_TRUE(text.Format("%1 A:", text.Narrow()));
    EXPECT_STREQ(text.Text(), "Laufwerk A:");
}

TEST(CBSTRFormat, GivesDatesAndTimesOrABlank) {
    const SYSTEMTIME* none = nullptr;
    EXPECT_EQ(formatted("<%1!D!><%2!T!>", none, none), "< >< >");
    SYSTEMTIME time{};
    time.wYear = 1999;
    time.wMonth = 7;
    time.wDay = 13;
    time.wHour = 15;
    time.wMinute = 4;
    time.wSecond = 58;
    const auto shows = [&](const char* pattern, const char* part) {
        return formatted(pattern, &time).find(part) != std::string::npos;
    };
    EXPECT_TRUE(shows("%1!D!", "13"));
    EXPECT_FALSE(shows("%1!T!", "58"));
    EXPECT_FALSE(shows("%1!5T!", "58"));
    EXPECT_TRUE(shows("%1!6T!", "58"));
    EXPECT_TRUE(shows("%1!9T!", "58"));
    EXPECT_FALSE(shows("%1!1T!", "PM"));
    EXPECT_FALSE(shows("%1!8T!", "PM"));
}

TEST(CBSTRFormat, KeepsLongTextsWhole) {
    const std::string longText(5000, 'x');
    EXPECT_EQ(formatted("%1%2!s!", longText.c_str(), longText.c_str()), longText + longText);
}

}  // namespace
