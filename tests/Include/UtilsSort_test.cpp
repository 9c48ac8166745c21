#include "UtilsSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "UtilsSearch.h"

namespace {

using UTILS::SortAutomatic;
using UTILS::SortExchange;
using UTILS::SortQuick;
using UTILS::SortQuickLarge;
using UTILS::SortShell;

// Elements that sort by key; the tag tells equal ones apart.
struct Item {
    int key;
    std::size_t tag;
    bool operator==(const Item& other) const { return key == other.key && tag == other.tag; }
};

struct Sequence {
    std::vector<Item> items;
    bool total = true;
    mutable std::uint64_t comparisons = 0;

    DWORD Count() const { return static_cast<DWORD>(items.size()); }
    int Compare(DWORD a, DWORD b) const {
        ++comparisons;
        return items.at(a).key - items.at(b).key;
    }
    void Exchange(DWORD a, DWORD b) { std::swap(items.at(a), items.at(b)); }
    bool IsTotal() const { return total; }
};

Sequence Keys(DWORD count, const std::function<int(DWORD)>& key) {
    Sequence sequence;
    for (DWORD i = 0; i < count; ++i) {
        sequence.items.push_back({key(i), i});
    }
    return sequence;
}

// The methods as they are described, on plain arrays, written without regard to time and stack.
void DescribedExchange(std::vector<Item>& items) {
    for (std::size_t place = 0; place < items.size(); ++place) {
        for (std::size_t later = place + 1; later < items.size(); ++later) {
            if (items[later].key < items[place].key) std::swap(items[later], items[place]);
        }
    }
}

void DescribedShell(std::vector<Item>& items) {
    std::size_t gap = 1;
    if (items.size() > 13) {
        while (3 * gap + 1 < items.size()) gap = 3 * gap + 1;
    }
    for (; gap > 0; gap /= 3) {
        for (std::size_t next = gap; next < items.size(); ++next) {
            const Item held = items[next];
            std::size_t at = next;
            for (; at >= gap && held.key < items[at - gap].key; at -= gap) items[at] = items[at - gap];
            items[at] = held;
        }
    }
}

void DescribedQuick(std::vector<Item>& items, std::ptrdiff_t first, std::ptrdiff_t last) {
    const auto key = [&](std::ptrdiff_t at) { return items[static_cast<std::size_t>(at)].key; };
    const auto exchange = [&](std::ptrdiff_t a, std::ptrdiff_t b) {
        std::swap(items[static_cast<std::size_t>(a)], items[static_cast<std::size_t>(b)]);
    };
    while (first < last) {
        std::ptrdiff_t left = first;
        std::ptrdiff_t right = last;
        for (;;) {
            while (key(left) < key(last)) ++left;
            while (right >= first && key(right) >= key(last)) --right;
            if (left >= right) break;
            exchange(left, right);
        }
        exchange(left, last);
        DescribedQuick(items, first, left - 1);
        first = left + 1;
    }
}

std::vector<Item> Described(std::vector<Item> items, int method) {
    if (method == SortAutomatic) {
        method = items.size() <= 512 ? SortExchange : SortQuick;
    }
    if (method == SortExchange) DescribedExchange(items);
    if (method == SortShell) DescribedShell(items);
    if (method >= SortQuick) DescribedQuick(items, 0, static_cast<std::ptrdiff_t>(items.size()) - 1);
    return items;
}

TEST(UtilsSort, EachMethodLeavesEqualElementsWhereItsDescriptionDoes) {
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    const auto compare = [&](DWORD count, int kinds) {
        const Sequence input =
            Keys(count, [&](DWORD) { return static_cast<int>(random() % unsigned(kinds)); });
        for (int method = SortAutomatic; method <= SortQuickLarge; ++method) {
            for (const bool total : {true, false}) {
                Sequence sorted = input;
                sorted.total = total;
                UTILS::SortSequence(sorted, method);
                EXPECT_EQ(sorted.items, Described(input.items, method))
                    << "method " << method << ", " << count << " elements of " << kinds << " kinds, seed "
                    << seed;
            }
        }
    };
    for (const DWORD count : {0u, 1u, 2u, 3u, 13u, 14u, 40u, 41u, 512u, 513u, 1024u, 1025u}) {
        for (const int kinds : {1, 2, 7, 100, 1000000}) {
            for (int round = count < 100 ? 20 : 1; round > 0; --round) compare(count, kinds);
        }
    }
}

TEST(UtilsSort, TheAutomaticMethodGoesByTheCount) {
    EXPECT_EQ(UTILS::AutomaticMethod(1), SortExchange);
    EXPECT_EQ(UTILS::AutomaticMethod(512), SortExchange);
    EXPECT_EQ(UTILS::AutomaticMethod(513), SortQuick);
    EXPECT_EQ(UTILS::AutomaticMethod(1024), SortQuick);
    EXPECT_EQ(UTILS::AutomaticMethod(1025), SortQuickLarge);
    EXPECT_FALSE(UTILS::IsSortMethod(5));
    EXPECT_FALSE(UTILS::IsSortMethod(-1));
}

// In order, in reverse order and all equal are what a quicksort with the last element as pivot likes least.
TEST(UtilsSort, StraightAndEqualInputCostsAFewPassesOnly) {
    const DWORD count = 100000;
    const std::vector<std::function<int(DWORD)>> inputs = {
        [](DWORD i) { return static_cast<int>(i); },
        [](DWORD i) { return -static_cast<int>(i); },
        [](DWORD) { return 5; },
    };
    for (std::size_t input = 0; input < inputs.size(); ++input) {
        for (const int method : {SortAutomatic, SortQuick, SortQuickLarge}) {
            Sequence sequence = Keys(count, inputs[input]);
            UTILS::SortSequence(sequence, method);
            EXPECT_TRUE(std::is_sorted(sequence.items.begin(), sequence.items.end(),
                                       [](const Item& a, const Item& b) { return a.key < b.key; }));
            EXPECT_LT(sequence.comparisons, 3U * count) << "input " << input << ", method " << method;
        }
    }
}

// Without a total order there is no short cut: of ascending elements every one becomes the pivot of those
// before it, which nested calls would answer with a stack as deep as the list is long.
TEST(UtilsSort, ADeepSplitDoesNotDeepenTheStack) {
    struct Watched : Sequence {
        mutable std::uintptr_t lowest = UINTPTR_MAX;
        mutable std::uintptr_t highest = 0;
        int Compare(DWORD a, DWORD b) const {
            const auto frame = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
            lowest = std::min(lowest, frame);
            highest = std::max(highest, frame);
            return Sequence::Compare(a, b);
        }
    };
    const DWORD count = 3000;
    for (const int method : {SortQuick, SortQuickLarge}) {
        Watched sequence;
        sequence.items = Keys(count, [](DWORD i) { return static_cast<int>(i); }).items;
        sequence.total = false;
        UTILS::SortSequence(sequence, method);
        EXPECT_GT(sequence.comparisons, std::uint64_t{count} * count / 3);
        EXPECT_LT(sequence.highest - sequence.lowest, 8192U);
    }
}

// Containment counts as equality: such a comparison says equal for two elements that both differ from a
// third.
TEST(UtilsSort, AComparisonThatIsNoOrderEndsWithinTheRange) {
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    struct Erratic : Sequence {
        std::mt19937* random = nullptr;
        int Compare(DWORD a, DWORD b) const {
            Sequence::Compare(a, b);
            return static_cast<int>((*random)() % 3) - 1;
        }
    };
    for (int method = SortAutomatic; method <= SortQuickLarge; ++method) {
        for (const DWORD count : {2u, 14u, 600u, 1100u}) {
            Erratic sequence;
            sequence.items = Keys(count, [](DWORD i) { return static_cast<int>(i); }).items;
            sequence.total = false;
            sequence.random = &random;
            UTILS::SortSequence(sequence, method);
            std::set<std::size_t> tags;
            for (const Item& item : sequence.items) tags.insert(item.tag);
            EXPECT_EQ(tags.size(), count) << "method " << method << ", seed " << seed;
        }
    }
}

TEST(UtilsSearch, InsertionAsksTheEndsFirst) {
    const std::vector<int> sorted = {10, 20, 20, 30};
    std::vector<DWORD> asked;
    const auto position = [&](int value) {
        asked.clear();
        return UTILS::InsertionPosition(static_cast<DWORD>(sorted.size()), [&](DWORD at) {
            asked.push_back(at);
            return sorted.at(at) - value;
        });
    };
    EXPECT_EQ(position(31), 4U);
    EXPECT_EQ(asked, (std::vector<DWORD>{3}));
    EXPECT_EQ(position(9), 0U);
    EXPECT_EQ(asked, (std::vector<DWORD>{3, 0}));
    EXPECT_EQ(position(10), 1U);
    EXPECT_EQ(position(20), 3U);
    EXPECT_EQ(position(25), 3U);
    EXPECT_EQ(position(30), 4U);
}

}  // namespace
