#pragma once
#include "minwindef.h"

inline constexpr UINT CP_ACP = 0;
inline constexpr UINT CP_UTF8 = 65001;
inline constexpr DWORD MB_PRECOMPOSED = 0x01;
inline constexpr DWORD MB_USEGLYPHCHARS = 0x04;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x08;
inline constexpr DWORD WC_COMPOSITECHECK = 0x0200;
inline constexpr DWORD WC_SEPCHARS = 0x0020;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x0400;

UINT WINAPI GetACP();

// Locales: 0x0407 (German) and 0x0409 (English, United States), or the user's.
using LCID = DWORD;
using LCTYPE = DWORD;
inline constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;
inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;

inline constexpr LCTYPE LOCALE_NOUSEROVERRIDE = 0x80000000;
inline constexpr LCTYPE LOCALE_SDECIMAL = 0x000E;
inline constexpr LCTYPE LOCALE_STHOUSAND = 0x000F;
inline constexpr LCTYPE LOCALE_SGROUPING = 0x0010;
inline constexpr LCTYPE LOCALE_IDIGITS = 0x0011;
inline constexpr LCTYPE LOCALE_ILZERO = 0x0012;
inline constexpr LCTYPE LOCALE_SSHORTDATE = 0x001F;
inline constexpr LCTYPE LOCALE_S1159 = 0x0028;
inline constexpr LCTYPE LOCALE_S2359 = 0x0029;
inline constexpr LCTYPE LOCALE_INEGNUMBER = 0x1010;
inline constexpr LCTYPE LOCALE_STIMEFORMAT = 0x1003;

inline constexpr DWORD DATE_SHORTDATE = 0x01;
inline constexpr DWORD TIME_NOMINUTESORSECONDS = 0x01;
inline constexpr DWORD TIME_NOSECONDS = 0x02;
inline constexpr DWORD TIME_NOTIMEMARKER = 0x04;
inline constexpr DWORD TIME_FORCE24HOURFORMAT = 0x08;

struct NUMBERFMTA {
    UINT NumDigits;  // after the decimal separator, 0 to 9
    UINT LeadingZero;
    UINT Grouping;  // size of a group, 0 for none; 32: three, then twos
    LPSTR lpDecimalSep;
    LPSTR lpThousandSep;
    UINT NegativeOrder;  // 0 "(1)", 1 "-1", 2 "- 1", 3 "1-", 4 "1 -"
};

// These return the length of the text including its zero, even when `size` is 0 and nothing is stored, or 0.
int WINAPI GetLocaleInfoA(LCID locale, LCTYPE type, LPSTR buffer, int size);
// `value` is digits with at most one leading "-", which is kept before zeros too, and at most one ".";
// surplus decimals are rounded, halves away from zero. Without a format the locale's is used.
int WINAPI GetNumberFormatA(LCID locale, DWORD flags, LPCSTR value, const NUMBERFMTA* format, LPSTR buffer,
                            int size);
// A null time means the current one of the host's clock; a null picture the locale's.
int WINAPI GetDateFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR buffer,
                          int size);
int WINAPI GetTimeFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR buffer,
                          int size);
