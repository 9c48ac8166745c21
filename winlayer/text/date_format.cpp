#include <algorithm>
#include <chrono>

#include "winlayer/text/locale.h"

namespace winlayer {

namespace {

std::string decimal(unsigned value, std::size_t width) {
    const std::string digits = std::to_string(value);
    return std::string(width - std::min(width, digits.size()), '0') + digits;
}

std::chrono::year_month_day dayOf(const SYSTEMTIME& time) {
    return {std::chrono::year(time.wYear), std::chrono::month(time.wMonth), std::chrono::day(time.wDay)};
}

// The value of `count` equal letters of a picture; nothing for a letter that is literal.
std::optional<std::string> datePart(const Locale& locale, const SYSTEMTIME& time, char letter,
                                    std::size_t count) {
    if (letter == 'd' && count > 2) {
        const std::chrono::weekday day{std::chrono::sys_days(dayOf(time))};
        return (count == 3 ? locale.shortDays : locale.days)[day.c_encoding()];
    }
    if (letter == 'M' && count > 2) {
        return (count == 3 ? locale.shortMonths : locale.months)[time.wMonth - 1u];
    }
    switch (letter) {
        case 'd':
            return decimal(time.wDay, count);
        case 'M':
            return decimal(time.wMonth, count);
        case 'y':
            return count > 2 ? decimal(time.wYear, 4) : decimal(time.wYear % 100u, count);
        default:
            return {};
    }
}

std::optional<std::string> timePart(const Locale& locale, const SYSTEMTIME& time, char letter,
                                    std::size_t count) {
    const std::size_t width = std::min<std::size_t>(count, 2);
    switch (letter) {
        case 'h':
            return decimal(time.wHour % 12 == 0 ? 12u : time.wHour % 12u, width);
        case 'H':
            return decimal(time.wHour, width);
        case 'm':
            return decimal(time.wMinute, width);
        case 's':
            return decimal(time.wSecond, width);
        case 't': {
            const std::string marker = time.wHour < 12 ? locale.morning : locale.afternoon;
            return count == 1 ? marker.substr(0, 1) : marker;
        }
        default:
            return {};
    }
}

// The quoted text that starts at `begin`; a doubled quote in it is one quote. Moves `begin` past it.
std::string quoted(std::string_view picture, std::size_t& begin) {
    std::string text;
    for (++begin; begin < picture.size(); ++begin) {
        if (picture[begin] == '\'') {
            if (begin + 1 == picture.size() || picture[begin + 1] != '\'') {
                ++begin;
                return text;
            }
            ++begin;
        }
        text += picture[begin];
    }
    return text;
}

bool isPartLeftOut(char letter, DWORD flags) {
    const bool seconds = letter == 's' && (flags & (TIME_NOSECONDS | TIME_NOMINUTESORSECONDS)) != 0;
    const bool minutes = letter == 'm' && (flags & TIME_NOMINUTESORSECONDS) != 0;
    const bool marker = letter == 't' && (flags & TIME_NOTIMEMARKER) != 0;
    return seconds || minutes || marker;
}

std::size_t runLength(std::string_view picture, std::size_t begin) {
    const std::size_t end = picture.find_first_not_of(picture[begin], begin);
    return std::min(end, picture.size()) - begin;
}

}  // namespace

bool isDate(const SYSTEMTIME& time) {
    return time.wYear >= 1601 && time.wYear <= 30827 && dayOf(time).ok();
}

bool isTimeOfDay(const SYSTEMTIME& time) {
    return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60 && time.wMilliseconds < 1000;
}

std::string formatDate(const Locale& locale, const SYSTEMTIME& time, std::string_view picture) {
    std::string text;
    for (std::size_t i = 0; i < picture.size();) {
        if (picture[i] == '\'') {
            text += quoted(picture, i);
            continue;
        }
        const std::size_t count = runLength(picture, i);
        const std::optional<std::string> part = datePart(locale, time, picture[i], count);
        text += part ? *part : std::string(picture.substr(i, count));
        i += count;
    }
    return text;
}

// Omitting a part also omits the characters between it and the part before it.
std::string formatTime(const Locale& locale, const SYSTEMTIME& time, std::string_view picture, DWORD flags) {
    std::string text;
    std::string between;
    for (std::size_t i = 0; i < picture.size();) {
        if (picture[i] == '\'') {
            between += quoted(picture, i);
            continue;
        }
        const std::size_t count = runLength(picture, i);
        const bool forced = picture[i] == 'h' && (flags & TIME_FORCE24HOURFORMAT) != 0;
        const std::optional<std::string> part = timePart(locale, time, forced ? 'H' : picture[i], count);
        if (!part) {
            between += picture.substr(i, count);
        } else if (isPartLeftOut(picture[i], flags)) {
            between.clear();
        } else {
            text += between + *part;
            between.clear();
        }
        i += count;
    }
    return text + between;
}

}  // namespace winlayer
