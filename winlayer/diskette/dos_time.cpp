#include "winlayer/diskette/dos_time.h"

#include <algorithm>
#include <cstdint>

namespace winlayer {
namespace {

constexpr int firstYear = 1980;
constexpr int lastYear = 2107;
constexpr DosTime earliest{0x0021, 0};     // 1 January 1980
constexpr DosTime latest{0xFF9F, 0xBF7D};  // 31 December 2107, 23:59:58

constexpr std::int64_t secondsFrom1601To1970 = 11644473600;
constexpr std::int64_t stepsPerSecond = 10000000;

}  // namespace

DosTime toDosTime(std::time_t moment) {
    std::tm local{};
    if (localtime_r(&moment, &local) == nullptr || local.tm_year + 1900 > lastYear) {
        return latest;
    }
    const int year = local.tm_year + 1900 - firstYear;
    if (year < 0) {
        return earliest;
    }
    const int second = std::min(local.tm_sec, 59);  // no leap seconds in FAT times
    return {static_cast<WORD>(year << 9 | (local.tm_mon + 1) << 5 | local.tm_mday),
            static_cast<WORD>(local.tm_hour << 11 | local.tm_min << 5 | second / 2)};
}

FILETIME toFileTime(const DosTime& dos) {
    std::tm local{};
    local.tm_year = (dos.date >> 9) + firstYear - 1900;
    local.tm_mon = ((dos.date >> 5) & 0x0F) - 1;
    local.tm_mday = dos.date & 0x1F;
    local.tm_hour = dos.time >> 11;
    local.tm_min = (dos.time >> 5) & 0x3F;
    local.tm_sec = (dos.time & 0x1F) * 2;
    local.tm_isdst = -1;
    if (local.tm_mon < 0 || local.tm_mon > 11 || local.tm_mday == 0) {
        return {};
    }
    const std::int64_t seconds = std::mktime(&local) + secondsFrom1601To1970;
    const auto steps = static_cast<std::uint64_t>(seconds * stepsPerSecond);
    return {static_cast<DWORD>(steps), static_cast<DWORD>(steps >> 32)};
}

}  // namespace winlayer
