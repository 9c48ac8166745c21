#pragma once
#include <ctime>

#include "winlayer/include/windows.h"

namespace winlayer {

// Date and time as in FAT: local time in steps of two seconds, from 1980 to 2107.
struct DosTime {
    WORD date = 0;
    WORD time = 0;
};

// Times outside the range become its first or last.
DosTime toDosTime(std::time_t moment);
// Zero for an invalid date.
FILETIME toFileTime(const DosTime& dos);

}  // namespace winlayer
