#pragma once
#include <windows.h>

#include "UtilsBase.h"

// Searches of lists and maps, stated once over positions. Each takes functions of a position: `compare` is
// below, equal to or above 0 as the element there sorts before, with or after the value in question;
// `matches` says whether it is what was looked for. Neither is asked about a position at or beyond the count.

namespace UTILS {

// The first position at or after `start` whose element matches, or not_found.
template <typename Matches>
DWORD FindLinear(DWORD count, DWORD start, const Matches& matches) {
    for (DWORD at = start; at < count; ++at) {
        if (matches(at)) {
            return at;
        }
    }
    return not_found;
}

// The same in ascending order, where equal elements lie side by side: halves the range down to one of them,
// then walks back to the first.
template <typename Compare>
DWORD FindBinary(DWORD count, DWORD start, const Compare& compare) {
    DWORD low = 0;
    DWORD high = count;
    while (low < high) {
        DWORD middle = low + (high - low) / 2;
        const int order = compare(middle);
        if (order < 0) {
            low = middle + 1;
        } else if (order > 0) {
            high = middle;
        } else {
            while (middle > 0 && compare(middle - 1) == 0) {
                --middle;
            }
            if (middle >= start) {
                return middle;
            }
            return start < count && compare(start) == 0 ? start : not_found;
        }
    }
    return not_found;
}

// Where a value goes in ascending order, behind its equals: at the end when it is greater than the last
// element, at the front when it is smaller than the first, else where halving the range leads.
template <typename Compare>
DWORD InsertionPosition(DWORD count, const Compare& compare) {
    if (count == 0 || compare(count - 1) < 0) {
        return count;
    }
    if (compare(0) > 0) {
        return 0;
    }
    DWORD low = 0;
    DWORD high = count;
    while (low < high) {
        const DWORD middle = low + (high - low) / 2;
        if (compare(middle) <= 0) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

}  // namespace UTILS
