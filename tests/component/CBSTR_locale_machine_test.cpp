// Numbers, dates and times in the locales of two languages, and texts in two code pages.
#include <gtest/gtest.h>

#include "Include/ansi_literal.h"
#include "component/CBSTR.h"
#include "winlayer/machine.h"

namespace {

using namespace UTILS::literals;

template <class... Arguments>
std::string formatted(const char* pattern, Arguments... arguments) {
    CBSTR text;
    EXPECT_TRUE(text.Format(pattern, arguments...)) << pattern;
    return text.Text();
}

constexpr WORD german = 0x0407;
constexpr WORD english = 0x0409;

class LocaleTest : public testing::Test {
protected:
    void speak(WORD language) { machine->language = language; }

    winlayer::ScopedMachine machine;
    SYSTEMTIME time{1999, 7, 2, 13, 15, 4, 58, 0};
};

TEST_F(LocaleTest, NumbersAreGroupedAndRounded) {
    speak(german);
    EXPECT_EQ(formatted("%1!i! %2!i! %3!i!", 1234567, -1234, 0), "1.234.567 -1.234 0");
    EXPECT_EQ(formatted("%1!f! %2!.1f! %3!g!", 1234567.891, -0.5, 12.0), "1.234.567,89 -0,50 12,00");
    speak(english);
    EXPECT_EQ(formatted("%1!i! %2!i!", 1234567, -1234), "1,234,567 -1,234");
    EXPECT_EQ(formatted("%1!f!", 1234567.891), "1,234,567.89");
}

TEST_F(LocaleTest, WhatIsNoNumberForTheLocaleIsLeftOut) {
    speak(german);
    EXPECT_EQ(formatted("<%1!e!>", 2.5), "<>") << "an exponent";
    EXPECT_EQ(formatted("<%1!200f!>", 2.5), "<>") << "blanks before it";
    EXPECT_EQ(formatted("<%1!.0f!>", 1e90), "<>") << "more than fits";
}

TEST_F(LocaleTest, DatesAndTimesFollowTheLanguage) {
    speak(german);
    EXPECT_EQ(formatted("%1!D! %2!T! %3!9T!", &time, &time, &time), "13.07.1999 15:04 15:04:58");
    speak(english);
    EXPECT_EQ(formatted("%1!D!", &time), "7/13/1999");
    EXPECT_EQ(formatted("%1!T!", &time), "3:04 PM");
    EXPECT_EQ(formatted("%1!1T! %2!5T!", &time, &time), "3:04 3:04");
    EXPECT_EQ(formatted("%1!6T! %2!8T!", &time, &time), "3:04:58 3:04:58");
    EXPECT_EQ(formatted("%1!9T! %2!*T!", &time, &time, 12), "3:04:58 PM 3:04:58 PM");
}

TEST_F(LocaleTest, TextsSurviveTheirWideForm) {
    std::string all;
    for (int c = 1; c < 256; ++c) {
        all += static_cast<char>(c);
    }
    EXPECT_EQ(CBSTR(all.c_str()).Text(), all);
}

TEST_F(LocaleTest, FailingCallsLeaveEmptyTexts) {
    const auto failing = [this](const char* function, auto use) {
        machine->gate.failFunction(function, ERROR_NOT_ENOUGH_MEMORY);
        CBSTR text = use();
        const std::string left = text.Text();
        machine->gate.reset();
        EXPECT_EQ(left, "") << function;
        return text.Status();
    };
    EXPECT_EQ(failing("SysAllocString", [] { return CBSTR("x"); }), E_OUTOFMEMORY);
    EXPECT_EQ(failing("SysAllocStringByteLen", [] { return CBSTR("x") + CBSTR("y"); }), E_OUTOFMEMORY);
    failing("MultiByteToWideChar", [] { return CBSTR("x"); });
    failing("WideCharToMultiByte", [] { return CBSTR("x"); });
    failing("GetNumberFormatA", [] {
        CBSTR text;
        EXPECT_TRUE(text.Format("%1!i!", 5));
        return text;
    });
}

}  // namespace
