#include "winlayer/include/winnls.h"

#include <cstring>
#include <ctime>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/text/code_pages.h"
#include "winlayer/text/locale.h"

namespace winlayer {
namespace {

// Stores a text including its zero, or only counts it when the size is 0.
int give(const std::string& text, LPSTR buffer, int size) {
    const auto needed = static_cast<int>(text.size()) + 1;
    if (size < 0 || (size > 0 && buffer == nullptr)) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if (size == 0) {
        return needed;
    }
    if (size < needed) {
        return failed(ERROR_INSUFFICIENT_BUFFER);
    }
    std::memcpy(buffer, text.c_str(), static_cast<std::size_t>(needed));
    return needed;
}

int giveUtf8(const std::string& utf8, LPSTR buffer, int size) {
    std::string text;
    const bool fits = fromUtf8(winlayer::SystemSettings::current(), utf8, text);
    return fits ? give(text, buffer, size) : failed(ERROR_NO_UNICODE_TRANSLATION);
}

// Null for an unknown type.
const char* info(const Locale& locale, LCTYPE type) {
    switch (type) {
        case LOCALE_SDECIMAL:
            return locale.decimal;
        case LOCALE_STHOUSAND:
            return locale.thousand;
        case LOCALE_SGROUPING:
            return "3;0";
        case LOCALE_IDIGITS:
            return "2";
        case LOCALE_ILZERO:
        case LOCALE_INEGNUMBER:
            return "1";
        case LOCALE_SSHORTDATE:
            return locale.shortDate;
        case LOCALE_STIMEFORMAT:
            return locale.time;
        case LOCALE_S1159:
            return locale.morning;
        case LOCALE_S2359:
            return locale.afternoon;
        default:
            return nullptr;
    }
}

SYSTEMTIME presentTime() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::localtime_r(&now, &parts);
    return {static_cast<WORD>(parts.tm_year + 1900), static_cast<WORD>(parts.tm_mon + 1),
            static_cast<WORD>(parts.tm_wday),        static_cast<WORD>(parts.tm_mday),
            static_cast<WORD>(parts.tm_hour),        static_cast<WORD>(parts.tm_min),
            static_cast<WORD>(parts.tm_sec),         0};
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

UINT WINAPI GetACP() {
    entered(__func__);
    return winlayer::SystemSettings::current().ansiCodePage;
}

int WINAPI GetLocaleInfoA(LCID id, LCTYPE type, LPSTR buffer, int size) try {
    if (denied(__func__)) {
        return 0;
    }
    const Locale* const locale = findLocale(winlayer::SystemSettings::current(), id);
    if (locale == nullptr) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    const char* const text = info(*locale, type & ~LOCALE_NOUSEROVERRIDE);
    return text == nullptr ? failed(ERROR_INVALID_FLAGS) : giveUtf8(text, buffer, size);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}

int WINAPI GetNumberFormatA(LCID id, DWORD flags, LPCSTR value, const NUMBERFMTA* format, LPSTR buffer,
                            int size) try {
    if (denied(__func__)) {
        return 0;
    }
    const Locale* const locale = findLocale(winlayer::SystemSettings::current(), id);
    if (locale == nullptr || value == nullptr) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~LOCALE_NOUSEROVERRIDE) != 0 || (flags != 0 && format != nullptr)) {
        return failed(ERROR_INVALID_FLAGS);
    }
    std::string decimal = locale->decimal;
    std::string thousand = locale->thousand;
    const NUMBERFMTA own = {2, 1, 3, decimal.data(), thousand.data(), 1};
    const std::optional<std::string> text = formatNumber(value, format != nullptr ? *format : own);
    return text ? give(*text, buffer, size) : failed(ERROR_INVALID_PARAMETER);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}

int WINAPI GetDateFormatA(LCID id, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR buffer,
                          int size) try {
    if (denied(__func__)) {
        return 0;
    }
    const Locale* const locale = findLocale(SystemSettings::current(), id);
    const SYSTEMTIME moment = time != nullptr ? *time : presentTime();
    if (locale == nullptr || !isDate(moment)) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~(LOCALE_NOUSEROVERRIDE | DATE_SHORTDATE)) != 0 || (flags != 0 && picture != nullptr)) {
        return failed(ERROR_INVALID_FLAGS);
    }
    const std::string form =
        picture != nullptr ? toUtf8(SystemSettings::current(), picture) : locale->shortDate;
    return giveUtf8(formatDate(*locale, moment, form), buffer, size);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}

int WINAPI GetTimeFormatA(LCID id, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR buffer,
                          int size) try {
    if (denied(__func__)) {
        return 0;
    }
    constexpr DWORD known = LOCALE_NOUSEROVERRIDE | TIME_NOMINUTESORSECONDS | TIME_NOSECONDS |
                            TIME_NOTIMEMARKER | TIME_FORCE24HOURFORMAT;
    const Locale* const locale = findLocale(SystemSettings::current(), id);
    const SYSTEMTIME moment = time != nullptr ? *time : presentTime();
    if (locale == nullptr || !isTimeOfDay(moment)) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~known) != 0 || ((flags & LOCALE_NOUSEROVERRIDE) != 0 && picture != nullptr)) {
        return failed(ERROR_INVALID_FLAGS);
    }
    const std::string form = picture != nullptr ? toUtf8(SystemSettings::current(), picture) : locale->time;
    return giveUtf8(formatTime(*locale, moment, form, flags), buffer, size);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}
