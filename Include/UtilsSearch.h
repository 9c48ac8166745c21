#pragma once
#include <windows.h>

#include "UtilsBase.h"

// Searches of lists and maps in terms of positions. `compare` is below, equal to or above 0 as the element at
// a position sorts before, with or after the value; `matches` is whether the element is the wanted one.
// Neither is called for a position at or beyond the count.

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

// The same by binary search in ascending order: finds one of the equal elements, which are adjacent, then
// steps back to the first.
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

// Where to insert a value in ascending order, after its equals: at the end if it is greater than the last
// element, at the front if it is less than the first, else by binary search.
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
