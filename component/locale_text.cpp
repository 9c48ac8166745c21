#include "locale_text.h"

#include <cstdlib>

namespace locale_text {

namespace {

constexpr int longest = 100;  // including the zero

std::string taken(const char* buffer, int length) {
    return length > 0 ? std::string(buffer) : std::string();
}

std::string localeInfo(LCTYPE what) {
    char buffer[longest] = {};
    return taken(buffer, ::GetLocaleInfoA(LOCALE_USER_DEFAULT, what, buffer, longest));
}

UINT localeNumber(LCTYPE what) {
    return static_cast<UINT>(std::atoi(localeInfo(what).c_str()));  // "3;0": the first group counts
}

std::string format(const std::string& digits, const NUMBERFMTA* form) {
    char buffer[longest] = {};
    return taken(buffer, ::GetNumberFormatA(LOCALE_USER_DEFAULT, 0, digits.c_str(), form, buffer, longest));
}

}  // namespace

std::string Number(const std::string& digits) {
    return format(digits, nullptr);
}

std::string Integer(int value) {
    std::string decimal = localeInfo(LOCALE_SDECIMAL);
    std::string thousand = localeInfo(LOCALE_STHOUSAND);
    NUMBERFMTA form{};
    form.NumDigits = 0;
    form.LeadingZero = localeNumber(LOCALE_ILZERO);
    form.Grouping = localeNumber(LOCALE_SGROUPING);
    form.lpDecimalSep = decimal.data();
    form.lpThousandSep = thousand.data();
    form.NegativeOrder = localeNumber(LOCALE_INEGNUMBER);
    return format(std::to_string(value), &form);
}

std::string Date(const SYSTEMTIME& time) {
    char buffer[longest] = {};
    return taken(buffer,
                 ::GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &time, nullptr, buffer, longest));
}

std::string Time(const SYSTEMTIME& time, DWORD flags) {
    char buffer[longest] = {};
    return taken(buffer, ::GetTimeFormatA(LOCALE_USER_DEFAULT, flags, &time, nullptr, buffer, longest));
}

}  // namespace locale_text
