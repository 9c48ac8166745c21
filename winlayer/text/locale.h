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

// Null for a locale that is not known here.
const Locale* findLocale(const SystemSettings& settings, LCID id);

// A number that GetNumberFormatA takes ("-12.50"), written as the format says; nothing when it is no such
// number or the format is none. Texts of the format and the result are in the same code page.
std::optional<std::string> formatNumber(std::string_view value, const NUMBERFMTA& format);

// Whether there is such a day, or time of day.
bool isDate(const SYSTEMTIME& time);
bool isTimeOfDay(const SYSTEMTIME& time);
// The pictures' letters replaced by the parts of the time; quoted text and other characters stay. UTF-8.
std::string formatDate(const Locale& locale, const SYSTEMTIME& time, std::string_view picture);
std::string formatTime(const Locale& locale, const SYSTEMTIME& time, std::string_view picture, DWORD flags);

}  // namespace winlayer
