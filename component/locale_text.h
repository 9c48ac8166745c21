#pragma once
#include <windows.h>

#include <string>

// Numbers, dates and times as the user's locale writes them. An empty text when the system cannot, or for
// more than 99 characters.
namespace locale_text {

// digits: an optional "-", digits, and an optional "." with more of them. The locale's own number of decimal
// places is used.
std::string Number(const std::string& digits);
// Without decimal places.
std::string Integer(int value);
std::string Date(const SYSTEMTIME& time);
// flags: as GetTimeFormatA.
std::string Time(const SYSTEMTIME& time, DWORD flags);

}  // namespace locale_text
