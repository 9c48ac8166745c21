#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "support/expect_fails.h"

// Run against the layer and against Windows itself. Locales are named, and what their users and later
// editions of Windows change is asked for in so many words.

namespace {

constexpr LCID german = 0x0407;
constexpr LCID english = 0x0409;
constexpr SYSTEMTIME morning = {2003, 3, 3, 5, 9, 7, 2, 500};
constexpr SYSTEMTIME midnight = {2004, 2, 0, 29, 0, 30, 0, 0};

// What a call wrote into its last two arguments, a buffer and its size.
template <class Function, class... Arguments>
std::string written(Function function, Arguments... arguments) {
    char text[64];
    SetLastError(0);
    const int length = function(arguments..., text, static_cast<int>(sizeof text));
    return length > 0 ? std::string(text, static_cast<std::size_t>(length) - 1) : "failed";
}

std::string info(LCID locale, LCTYPE type) {
    return written(GetLocaleInfoA, locale, type | LOCALE_NOUSEROVERRIDE);
}

NUMBERFMTA plain() {
    static char decimal[] = ",";
    static char thousand[] = ".";
    return {2, 1, 3, decimal, thousand, 1};
}

std::string number(const char* value, const NUMBERFMTA& format) {
    return written(GetNumberFormatA, german, DWORD{0}, value, &format);
}

std::string date(LCID locale, const SYSTEMTIME& time, const char* picture) {
    return written(GetDateFormatA, locale, DWORD{0}, &time, picture);
}

std::string timeOfDay(LCID locale, DWORD flags, const SYSTEMTIME& time, const char* picture) {
    return written(GetTimeFormatA, locale, flags, &time, picture);
}

TEST(Locales, SayHowTheyWriteNumbers) {
    EXPECT_EQ(info(german, LOCALE_SDECIMAL), ",");
    EXPECT_EQ(info(german, LOCALE_STHOUSAND), ".");
    EXPECT_EQ(info(english, LOCALE_SDECIMAL), ".");
    EXPECT_EQ(info(english, LOCALE_STHOUSAND), ",");
    for (const LCID locale : {german, english}) {
        EXPECT_EQ(info(locale, LOCALE_SGROUPING), "3;0");
        EXPECT_EQ(info(locale, LOCALE_IDIGITS), "2");
        EXPECT_EQ(info(locale, LOCALE_ILZERO), "1");
        EXPECT_EQ(info(locale, LOCALE_INEGNUMBER), "1");
    }
    char small[2] = "#";
    EXPECT_FAILS(GetLocaleInfoA(german, LOCALE_SGROUPING, small, sizeof small), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(GetLocaleInfoA(german, LOCALE_SGROUPING, nullptr, 0), 4);
    EXPECT_FAILS(GetLocaleInfoA(0x12345, LOCALE_SGROUPING, nullptr, 0), ERROR_INVALID_PARAMETER);
    EXPECT_FAILS(GetLocaleInfoA(german, 0x7777, nullptr, 0), ERROR_INVALID_FLAGS);
}

TEST(Numbers, AreRoundedAndGrouped) {
    const std::pair<const char*, const char*> cases[] = {
        {"0", "0,00"},     {"5.", "5,00"},    {".5", "0,50"},        {"007", "7,00"},
        {"1.005", "1,01"}, {"0.004", "0,00"}, {"999.994", "999,99"}, {"1234567.891", "1.234.567,89"},
        {"-5", "-5,00"}};
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(number(value, plain()), text) << value;
    }
    for (const char* const value : {"1e5", "+5", " 5", "--5", "1.2.3", "0x1", "1,5", "5 "}) {
        EXPECT_EQ(number(value, plain()), "failed") << value;
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER}) << value;
    }
}

TEST(Numbers, FollowTheFormat) {
    NUMBERFMTA format = plain();
    const char* const negative[] = {"(1.234,00)", "-1.234,00", "- 1.234,00", "1.234,00-", "1.234,00 -"};
    for (format.NegativeOrder = 0; format.NegativeOrder < 5; ++format.NegativeOrder) {
        EXPECT_EQ(number("-1234", format), negative[format.NegativeOrder]);
    }
    EXPECT_EQ(number("-1", format), "failed");

    format = plain();
    format.NumDigits = 0;
    const std::pair<UINT, const char*> groups[] = {{0, "12345678901"},      {1, "1.2.3.4.5.6.7.8.9.0.1"},
                                                   {2, "1.23.45.67.89.01"}, {3, "12.345.678.901"},
                                                   {9, "12.345678901"},     {32, "12.34.56.78.901"}};
    for (const auto& [size, text] : groups) {
        format.Grouping = size;
        EXPECT_EQ(number("12345678901", format), text) << size;
    }
    EXPECT_EQ(number("1.5", format), "2");

    format = plain();
    format.LeadingZero = 0;
    EXPECT_EQ(number("0.25", format), ",25");
    EXPECT_EQ(number("-0.25", format), "-,25");
    char two[] = "::";
    format.lpThousandSep = two;
    format.NumDigits = 9;
    EXPECT_EQ(number("1234567.1", format), "1::234::567,100000000");
    format.lpDecimalSep = nullptr;
    EXPECT_EQ(number("1", format), "failed");
}

TEST(Numbers, LengthsCountTheZero) {
    const NUMBERFMTA format = plain();
    char text[8];
    EXPECT_EQ(GetNumberFormatA(german, 0, "123", &format, text, 7), 7);
    EXPECT_STREQ(text, "123,00");
    EXPECT_FAILS(GetNumberFormatA(german, 0, "123", &format, text, 6), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_FAILS(GetNumberFormatA(german, LOCALE_NOUSEROVERRIDE, "1", &format, text, 8), ERROR_INVALID_FLAGS);
    EXPECT_EQ(GetNumberFormatA(english, LOCALE_NOUSEROVERRIDE, "12.5", nullptr, text, 8), 6);
    EXPECT_STREQ(text, "12.50");
}

TEST(Dates, FollowThePicture) {
    EXPECT_EQ(date(german, morning, "dd.MM.yyyy"), "05.03.2003");
    EXPECT_EQ(date(german, morning, "d.M.yy"), "5.3.03");
    EXPECT_EQ(date(german, morning, "dddd, d. MMMM yy"), "Mittwoch, 5. M\xE4rz 03");
    EXPECT_EQ(date(english, morning, "ddd, MMM d; dddd MMMM"), "Wed, Mar 5; Wednesday March");
    EXPECT_EQ(date(english, morning, "'d' d 'x''y' h"), "d 5 x'y h");
    EXPECT_EQ(date(english, midnight, "dddd"), "Sunday") << "whatever day of the week the time states";
    EXPECT_EQ(date(english, morning, nullptr), "3/5/2003");
    for (const SYSTEMTIME& none :
         {SYSTEMTIME{2003, 13, 0, 1, 0, 0, 0, 0}, SYSTEMTIME{1600, 1, 0, 1, 0, 0, 0, 0}}) {
        EXPECT_EQ(date(german, none, nullptr), "failed");
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    }
    char text[16];
    EXPECT_EQ(GetDateFormatA(english, DATE_SHORTDATE, &morning, nullptr, text, 16), 9);
    EXPECT_EQ(GetDateFormatA(english, DATE_SHORTDATE, &morning, nullptr, nullptr, 0), 9);
    EXPECT_FAILS(GetDateFormatA(english, DATE_SHORTDATE, &morning, "d", text, 16), ERROR_INVALID_FLAGS);
}

TEST(TimesOfDay, LeaveOutWhatTheFlagsSay) {
    struct Row {
        DWORD flags;
        const char* german;
        const char* english;
    };
    const Row rows[] = {{0, "09:07:02", "9:07:02 AM"},
                        {TIME_NOSECONDS, "09:07", "9:07 AM"},
                        {TIME_NOMINUTESORSECONDS, "09", "9 AM"},
                        {TIME_NOTIMEMARKER, "09:07:02", "9:07:02"},
                        {TIME_NOSECONDS | TIME_NOTIMEMARKER, "09:07", "9:07"}};
    for (const Row& row : rows) {
        EXPECT_EQ(timeOfDay(german, row.flags, morning, nullptr), row.german) << row.flags;
        EXPECT_EQ(timeOfDay(english, row.flags, morning, nullptr), row.english) << row.flags;
    }
}

TEST(TimesOfDay, FollowThePicture) {
    EXPECT_EQ(timeOfDay(english, 0, midnight, "hh:mm:ss tt"), "12:30:00 AM");
    EXPECT_EQ(timeOfDay(english, 0, midnight, "H 'Uhr' m 'o''clock' t"), "0 Uhr 30 o'clock A");
    EXPECT_EQ(timeOfDay(english, TIME_FORCE24HOURFORMAT, midnight, "hh:mm"), "00:30");
    EXPECT_EQ(timeOfDay(english, TIME_NOSECONDS, morning, "h:mm:ss tt 'sharp'"), "9:07 AM sharp");
    SYSTEMTIME none = morning;
    none.wHour = 24;
    EXPECT_EQ(timeOfDay(english, 0, none, nullptr), "failed");
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

}  // namespace
