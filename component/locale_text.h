#pragma once
#include <windows.h>

#include <string>

// Numbers, dates and times in the format of the user's locale. Empty when the system fails, or for more than
// 99 characters.
namespace locale_text {

// digits: an optional "-", digits, and an optional "." with more digits. The number of decimal places is the
// locale's.
std::string Number(const std::string& digits);
// Without decimal places.
std::string Integer(int value);
std::string Date(const SYSTEMTIME& time);
// flags: as for GetTimeFormatA.
std::string Time(const SYSTEMTIME& time, DWORD flags);

}  // namespace locale_text
