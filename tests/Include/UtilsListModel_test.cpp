#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "UtilsList.h"
#include "UtilsMap.h"

// Random operations on lists and maps beside a plain vector that does the same.

namespace {

using UTILS::UtilsString;
using UTILS::UtilsStringList;
using UTILS::UtilsStringMap;
constexpr DWORD missing = 0xEFFFFFFF;

class RandomSource {
public:
    unsigned seed() const { return seed_; }
    DWORD below(std::size_t limit) { return static_cast<DWORD>(random_() % limit); }
    // Where a search among so many elements may start, also behind the last one.
    DWORD start(DWORD size) { return below(10) == 0 ? missing : below(size + 2U); }
    // The first and the last are none.
    int sortMethod() { return static_cast<int>(below(7)) - 1; }
    // Few different letters, so that equal texts, also but for case, are frequent.
    std::string text() {
        std::string text;
        for (DWORD length = below(4); length > 0; --length) text += "abAB\xE9"[below(5)];
        return text;
    }

private:
    unsigned seed_ = std::random_device{}();
    std::mt19937 random_{seed_};
};

bool IsMethod(int method) {
    return method >= 0 && method <= 4;
}

int Folded(char letter) {
    return letter >= 'A' && letter <= 'Z' ? letter : static_cast<signed char>(letter - 0x20);
}

bool Less(const std::string& a, const std::string& b, int exact) {
    for (std::size_t i = 0; i <= std::max(a.size(), b.size()); ++i) {
        const char left = i < a.size() ? a[i] : '\0';
        const char right = i < b.size() ? b[i] : '\0';
        const int x = exact != 0 ? static_cast<signed char>(left) : Folded(left);
        const int y = exact != 0 ? static_cast<signed char>(right) : Folded(right);
        if (x != y) return x < y;
    }
    return false;
}

bool Equal(const std::string& a, const std::string& b, int exact) {
    return !Less(a, b, exact) && !Less(b, a, exact);
}

struct Pair {
    int key = 0;
    std::string value;
    auto operator<=>(const Pair&) const = default;
    friend void PrintTo(const Pair& pair, std::ostream* out) { *out << pair.key << '=' << pair.value; }
};

// What a list (keys unused) or map should hold. Sorting may leave equal elements in any order, so the model
// adopts the order found after checking that it is one and that nothing was lost.
struct Model {
    std::vector<Pair> pairs;
    int exact = 1;
    int direction = 0;
    bool byKey = false;
    bool byValue = false;

    std::size_t index(std::size_t position) const {
        return direction == 1 ? pairs.size() - 1 - position : position;
    }
    bool less(const Pair& a, const Pair& b, bool key) const {
        return key ? a.key < b.key : Less(a.value, b.value, exact);
    }
    bool equal(const Pair& a, const Pair& b, bool key) const {
        return key ? a.key == b.key : Equal(a.value, b.value, exact);
    }
    void changed() { byKey = byValue = false; }
    void sorted(bool key) { (key ? byKey : byValue) = true, (key ? byValue : byKey) = false; }
    void erase(std::size_t position) {
        pairs.erase(pairs.begin() + static_cast<std::ptrdiff_t>(index(position)));
        changed();
    }
    // The pair that was added stands behind its equals; the others were in order before, or are now.
    void insertSorted(const Pair& pair, std::vector<Pair> found, bool key) {
        const auto behind = std::upper_bound(found.begin(), found.end(), pair,
                                             [&](const Pair& a, const Pair& b) { return less(a, b, key); });
        ASSERT_NE(behind, found.begin());
        EXPECT_EQ(*std::prev(behind), pair);
        const auto place = found.erase(std::prev(behind)) - found.begin();
        adopt(found, key);
        pairs.insert(pairs.begin() + place, pair);
    }
    DWORD find(const Pair& wanted, bool key, DWORD start) const {
        for (std::size_t position = start; position < pairs.size(); ++position) {
            if (equal(pairs[index(position)], wanted, key)) return static_cast<DWORD>(position);
        }
        return missing;
    }
    void adopt(const std::vector<Pair>& found, bool key) {
        if (key ? byKey : byValue) {
            EXPECT_EQ(found, pairs) << "in order already";
            return;
        }
        std::vector<Pair> before = pairs;
        std::vector<Pair> after = found;
        std::sort(before.begin(), before.end());
        std::sort(after.begin(), after.end());
        EXPECT_EQ(before, after);
        EXPECT_TRUE(std::is_sorted(found.begin(), found.end(),
                                   [&](const Pair& a, const Pair& b) { return less(a, b, key); }));
        pairs = found;
        sorted(key);
    }
};

std::vector<Pair> InOrder(const UtilsStringList& list, int direction) {
    std::vector<Pair> pairs;
    for (DWORD i = 0; i < list.size(); ++i) pairs.push_back({0, list.RetrieveString(i)->c_str()});
    if (direction == 1) std::reverse(pairs.begin(), pairs.end());
    return pairs;
}

std::vector<Pair> InOrder(const UtilsStringMap& map, int direction) {
    std::vector<Pair> pairs;
    for (DWORD i = 0; i < map.size(); ++i) pairs.push_back({map.GetKey(i), map.GetValue(i)});
    if (direction == 1) std::reverse(pairs.begin(), pairs.end());
    return pairs;
}

template <typename Container>
void CheckWhole(const Container& container, const Model& model, RandomSource& random) {
    ASSERT_EQ(container.size(), model.pairs.size());
    // From anywhere to anywhere, right after the change: each start of a walk must be the node it is taken
    // for.
    for (int i = 0; i < 5 && !model.pairs.empty(); ++i) {
        const DWORD position = random.below(model.pairs.size());
        const std::string& expected = model.pairs[model.index(position)].value;
        if constexpr (std::is_same_v<Container, UtilsStringMap>) {
            ASSERT_EQ(container.GetValue(position), expected);
        } else {
            ASSERT_EQ(container.RetrieveString(position)->c_str(), expected);
        }
    }
    ASSERT_EQ(InOrder(container, model.direction), model.pairs);
}

void ListStep(UtilsStringList& list, Model& model, RandomSource& random) {
    const Pair pair{0, random.text()};
    const DWORD size = list.size();
    switch (random.below(14)) {
        case 0:
        case 1:
        case 2:
        case 3:
            list.AddString(pair.value);
            model.pairs.push_back(pair);
            return model.changed();
        case 4:
            list.AddStringSorted(pair.value);
            return model.insertSorted(pair, InOrder(list, model.direction), false);
        case 5:
        case 6:
            if (size > 0) {
                const DWORD position = random.below(size);
                list.RemoveString(position);
                model.erase(position);
            }
            return;
        case 7: {
            const int method = random.sortMethod();
            list.Sort(method);
            if (IsMethod(method)) model.adopt(InOrder(list, model.direction), false);
            return;
        }
        case 8:
            if (size > 0) {
                const DWORD position = random.below(size);
                list.Append(position, pair.value);
                model.pairs[model.index(position)].value += pair.value;
                model.changed();
            }
            return;
        case 9:
            model.direction = static_cast<int>(random.below(3));
            list.SetSearchDirection(model.direction);
            return;
        case 10:
            model.exact = static_cast<int>(random.below(2));
            list.SetCase(model.exact);
            return model.changed();
        case 11: {
            const DWORD start = random.start(size);
            EXPECT_EQ(list.SearchList(pair.value, 0, start), model.find(pair, false, start));
            const DWORD found = list.SearchList(pair.value, 1, start);
            model.adopt(InOrder(list, model.direction), false);
            EXPECT_EQ(found, model.find(pair, false, start));
            return;
        }
        case 12:
            if (size < 40) {
                list += list;
                const std::vector<Pair> again = model.pairs;
                model.pairs.insert(model.pairs.end(), again.begin(), again.end());
                model.changed();
            } else {
                UtilsStringList copy(list);
                list = UtilsString("gone");
                list = copy;
            }
            return;
        default:
            if (size > 0) {
                const DWORD position = random.below(size);
                list.SetCurrentString(position).RemoveString();
                model.erase(position);
            }
    }
}

TEST(UtilsStringListModel, DoesWhatAVectorDoes) {
    RandomSource random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    UtilsStringList list;
    Model model;
    for (int step = 0; step < 5000 && !::testing::Test::HasFailure(); ++step) {
        ListStep(list, model, random);
        CheckWhole(list, model, random);
        if (list.size() > 80) {
            list.RemoveAllStrings();
            model.pairs.clear();
            model.changed();
        }
    }
}

struct MapUnderTest {
    UtilsStringMap map;
    Model model;
    int order = 1;
    bool sortedMode = false;

    void add(const Pair& pair) {
        map.AddData(pair.key, pair.value);
        if (sortedMode) {
            model.insertSorted(pair, InOrder(map, model.direction), order == 1);
        } else {
            model.pairs.push_back(pair);
            model.changed();
        }
    }
    // The pair that removals and lookups mean.
    DWORD lookUp(const Pair& pair, bool key) {
        if (sortedMode) {
            map.Sort(key ? 1 : 0, 0);
            model.adopt(InOrder(map, model.direction), key);
        }
        return model.find(pair, key, 0);
    }
    void remove(const Pair& pair, bool key) {
        const DWORD position = lookUp(pair, key);
        EXPECT_EQ(key ? map.RemoveDataUsingKey(pair.key) : map.RemoveConnection(UtilsString(pair.value)),
                  position != missing ? 1 : 0);
        if (position != missing) model.erase(position);
    }
    void retrieve(const Pair& pair) {
        UtilsString value("untouched");
        const DWORD byKey = lookUp(pair, true);
        EXPECT_EQ(map.RetrieveValK(pair.key, value), byKey);
        EXPECT_EQ(value, byKey == missing ? "untouched" : model.pairs[model.index(byKey)].value);
        int key = -1;
        const DWORD byValue = lookUp(pair, false);
        EXPECT_EQ(map.RetrieveKeyV(pair.value.c_str(), key), byValue);
        EXPECT_EQ(key, byValue == missing ? -1 : model.pairs[model.index(byValue)].key);
    }
    void search(const Pair& pair, bool key, DWORD start) {
        const auto found = [&](int method) {
            return key ? map.SearchMapForKey(pair.key, method, start)
                       : map.SearchMapForVal(pair.value, method, start);
        };
        EXPECT_EQ(found(0), model.find(pair, key, start));
        const DWORD halved = found(1);
        model.adopt(InOrder(map, model.direction), key);
        EXPECT_EQ(halved, model.find(pair, key, start));
    }
};

void MapStep(MapUnderTest& test, RandomSource& random) {
    const Pair pair{static_cast<int>(random.below(12)) - 6, random.text()};
    const DWORD size = test.map.size();
    switch (random.below(13)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return test.add(pair);
        case 4:
            test.order = 1;
            test.sortedMode = true;
            test.map.AddDataSorted(pair.key, pair.value);
            return test.model.insertSorted(pair, InOrder(test.map, test.model.direction), true);
        case 5:
            return test.remove(pair, random.below(2) == 0);
        case 6:
            if (size > 0) {
                const DWORD position = random.below(size);
                test.map.RemoveData(position);
                test.model.erase(position);
            }
            return;
        case 7: {
            const bool key = random.below(2) == 0;
            const int method = random.sortMethod();
            test.map.Sort(key ? 1 : 0, method);
            if (IsMethod(method)) test.model.adopt(InOrder(test.map, test.model.direction), key);
            return;
        }
        case 8:
            test.model.direction = static_cast<int>(random.below(3));
            return test.map.SetSearchDirection(test.model.direction);
        case 9:
            test.model.exact = static_cast<int>(random.below(2));
            test.model.byValue = false;
            return test.map.SetCase(test.model.exact);
        case 10:
            test.order = static_cast<int>(random.below(2));
            test.sortedMode = random.below(2) == 0;
            return test.map.SetMode(test.order, test.sortedMode ? 1 : 0);
        case 11:
            return test.search(pair, random.below(2) == 0, random.start(size));
        default:
            return test.retrieve(pair);
    }
}

TEST(UtilsStringMapModel, DoesWhatAVectorDoes) {
    RandomSource random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    MapUnderTest test;
    for (int step = 0; step < 5000 && !::testing::Test::HasFailure(); ++step) {
        MapStep(test, random);
        CheckWhole(test.map, test.model, random);
        if (test.map.size() > 60) {
            test.map.RemoveAllData();
            test.model.pairs.clear();
            test.model.changed();
        }
    }
}

TEST(UtilsStringListModel, EveryMethodSortsAroundItsThresholds) {
    RandomSource random;
    SCOPED_TRACE("seed " + std::to_string(random.seed()));
    for (const DWORD count : {13u, 14u, 41u, 512u, 513u, 1024u, 1025u}) {
        for (int method = 0; method <= 4; ++method) {
            UtilsStringList list;
            UtilsStringMap map;
            std::vector<std::string> texts;
            // What all texts begin with is no help in telling them apart.
            const std::string common = random.text() + (method % 2 == 0 ? "C:\\Common" : "");
            for (DWORD i = 0; i < count; ++i) {
                texts.push_back(common + random.text() + random.text() + random.text());
                list.AddString(texts.back());
                map.AddData(static_cast<int>(i), texts.back());
            }
            std::sort(texts.begin(), texts.end(),
                      [](const std::string& a, const std::string& b) { return Less(a, b, 1); });
            list.Sort(method);
            map.Sort(0, method);
            for (DWORD i = 0; i < count; ++i) {
                ASSERT_EQ(list.Retrieve(i), texts[i]) << count << " elements, method " << method;
                ASSERT_EQ(map.GetValue(i), texts[i]) << count << " elements, method " << method;
            }
            map.Sort(1, method);
            for (DWORD i = 0; i < count; ++i) ASSERT_EQ(map.GetKey(i), static_cast<int>(i));
        }
    }
}

}  // namespace
