#pragma once
#include <windows.h>

#include <vector>

// The five sorting methods of lists and maps, for any sequence of positions that has
//   DWORD Count() const              how many elements there are
//   int Compare(DWORD, DWORD) const  below, equal to or above 0 as the first sorts before, with or after
//   void Exchange(DWORD, DWORD)      exchanges two elements
//   bool IsTotal() const             whether Compare is a total order (not if containment counts as equal)

namespace UTILS {

enum SortMethod : int {
    SortAutomatic = 0,
    SortExchange = 1,
    SortShell = 2,
    SortQuick = 3,
    SortQuickLarge = 4
};

// The method that the automatic one chooses.
inline int AutomaticMethod(DWORD count) {
    if (count <= 512) {
        return SortExchange;
    }
    return count <= 1024 ? SortQuick : SortQuickLarge;
}

template <typename Sequence>
void ExchangeSort(Sequence& sequence) {
    const DWORD count = sequence.Count();
    for (DWORD place = 0; place < count; ++place) {
        for (DWORD later = place + 1; later < count; ++later) {
            if (sequence.Compare(later, place) < 0) {
                sequence.Exchange(later, place);
            }
        }
    }
}

// The largest of 1, 4, 13, 40, ... below the count; 1 for up to 13 elements.
inline DWORD FirstShellGap(DWORD count) {
    DWORD gap = 1;
    while (count > 13 && gap * 3ULL + 1 < count) {
        gap = gap * 3 + 1;
    }
    return gap;
}

template <typename Sequence>
void ShellSort(Sequence& sequence) {
    const DWORD count = sequence.Count();
    for (DWORD gap = FirstShellGap(count); gap > 0; gap /= 3) {
        for (DWORD next = gap; next < count; ++next) {
            for (DWORD at = next; at >= gap && sequence.Compare(at, at - gap) < 0; at -= gap) {
                sequence.Exchange(at, at - gap);
            }
        }
    }
}

struct SortRange {
    DWORD begin;
    DWORD end;  // one past the last
};

// Moves the pivot, the last element of a range of at least two, to its final position and returns that
// position. If all elements equal the pivot, finishes the whole range at once (with the exchanges that
// repeated passes would make) and returns its end: otherwise a range of equal elements would take quadratic
// time.
template <typename Sequence>
DWORD Partition(Sequence& sequence, SortRange range) {
    const DWORD pivot = range.end - 1;
    DWORD left = range.begin;
    DWORD right = pivot;
    int differences = 0;
    const auto order = [&](DWORD at) {
        const int result = sequence.Compare(at, pivot);
        differences |= result;
        return result;
    };
    for (;;) {
        while (left < pivot && order(left) < 0) {
            ++left;
        }
        while (right > left && (right == pivot || order(right) >= 0)) {
            --right;
        }
        if (left >= right) {
            break;
        }
        sequence.Exchange(left++, right--);
    }
    if (differences == 0 && sequence.IsTotal()) {
        for (DWORD at = range.begin; at < pivot; ++at) {
            sequence.Exchange(at, pivot);
        }
        return range.end;
    }
    sequence.Exchange(left, pivot);
    return left;
}

// Left part first, then the right one, as recursion would; the pending parts are kept in a vector, so that no
// input can exhaust the thread's stack.
template <typename Sequence>
void QuickSort(Sequence& sequence) {
    std::vector<SortRange> waiting{{0, sequence.Count()}};
    while (!waiting.empty()) {
        SortRange range = waiting.back();
        waiting.pop_back();
        while (range.end - range.begin > 1) {
            const DWORD place = Partition(sequence, range);
            if (place == range.end) {
                break;
            }
            if (range.end - place > 2) {
                waiting.push_back({place + 1, range.end});
            }
            range.end = place;
        }
    }
}

// Sorts a sequence that is already strictly ascending or descending. Every method would give the same order,
// but quicksort would take quadratic time.
template <typename Sequence>
bool SortStraightRun(Sequence& sequence) {
    const DWORD count = sequence.Count();
    if (count < 2 || !sequence.IsTotal()) {
        return count < 2;
    }
    const int direction = sequence.Compare(0, 1) < 0 ? -1 : 1;
    for (DWORD at = 1; at < count; ++at) {
        const int order = sequence.Compare(at - 1, at);
        if (order == 0 || (order < 0) != (direction < 0)) {
            return false;
        }
    }
    for (DWORD front = 0; direction > 0 && front < count / 2; ++front) {
        sequence.Exchange(front, count - 1 - front);
    }
    return true;
}

inline bool IsSortMethod(int method) {
    return method >= SortAutomatic && method <= SortQuickLarge;
}

// Sorts ascending by one of the five methods; the caller has checked it with IsSortMethod.
template <typename Sequence>
void SortSequence(Sequence& sequence, int method) {
    if (SortStraightRun(sequence)) {
        return;
    }
    switch (method == SortAutomatic ? AutomaticMethod(sequence.Count()) : method) {
        case SortExchange:
            return ExchangeSort(sequence);
        case SortShell:
            return ShellSort(sequence);
        default:  // both quicksorts exchange the same elements in the same order
            return QuickSort(sequence);
    }
}

}  // namespace UTILS
