#pragma once
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "winlayer/include/winnls.h"

namespace winlayer {

struct SystemSettings;

// How a language writes numbers, dates and times. Texts are UTF-8.
struct Locale {
    const char* decimal;
    const char* thousand;
    const char* shortDate;  // pictures, as GetDateFormatA and GetTimeFormatA take them
    const char* time;
    const char* morning;
    const char* afternoon;
    std::array<const char*, 7> days;  // from Sunday
    std::array<const char*, 7> shortDays;
    std::array<const char*, 12> months;
    std::array<const char*, 12> shortMonths;
};

// Null for an unknown locale.
const Locale* findLocale(const SystemSettings& settings, LCID id);

// Formats a number that GetNumberFormatA accepts ("-12.50"); nothing when the number or the format is
// invalid. Texts of the format and the result are in the same code page.
std::optional<std::string> formatNumber(std::string_view value, const NUMBERFMTA& format);

// Whether the date, or the time of day, exists.
bool isDate(const SYSTEMTIME& time);
bool isTimeOfDay(const SYSTEMTIME& time);
// Replaces the picture's letters with parts of the time; quoted text and other characters are copied. UTF-8.
std::string formatDate(const Locale& locale, const SYSTEMTIME& time, std::string_view picture);
std::string formatTime(const Locale& locale, const SYSTEMTIME& time, std::string_view picture, DWORD flags);

}  // namespace winlayer
