#include "UtilsMap.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "thrown_message.h"

namespace {

using UTILS::UtilsString;
using UTILS::UtilsStringMap;
constexpr DWORD missing = 0xEFFFFFFF;

UtilsStringMap MapOf(const std::vector<std::pair<int, std::string>>& pairs) {
    UtilsStringMap map;
    for (const auto& [key, value] : pairs) {
        map.AddData(key, value);
    }
    return map;
}

std::string Read(const UtilsStringMap& map) {
    std::string text;
    for (DWORD i = 0; i < map.size(); ++i) {
        text += std::to_string(map.GetKey(i)) + map.GetValue(i) + " ";
    }
    return text;
}

TEST(UtilsStringMap, OneOfThePairsIsCurrent) {
    UtilsStringMap map(1, "one");
    map.AddData(2, "two").AddData(3, "three");
    EXPECT_EQ(map.GetKey(), 1);
    EXPECT_STREQ(map.SetCurrentData(2), "three");
    EXPECT_EQ(map.RetrieveDataKey(), 3);
    EXPECT_EQ(map.lengthVal(), 5U);
    EXPECT_EQ(map.strlenVal(0), 3U);
    EXPECT_EQ(map[1].GetValueAsUString(), "two");
    EXPECT_STREQ(map.RetrieveDataValue(), "two");
    EXPECT_STREQ(map.SetCurrentString(0).GetValue(), "one");
    EXPECT_EQ(map.SearchMapItemVal("n"), 1U);
    EXPECT_EQ(map.SearchMapItemVal(2, "e", 1), 4U);
    EXPECT_THROW(map[3], std::out_of_range);
    EXPECT_STREQ(map, "one");
}

TEST(UtilsStringMap, RemovingKeepsACurrentPairThatExists) {
    UtilsStringMap map = MapOf({{1, "a"}, {2, "b"}, {3, "c"}, {2, "d"}});
    EXPECT_EQ(map.RemoveDataUsingKey(2), 1);
    EXPECT_EQ(Read(map), "1a 3c 2d ");
    map.RemoveData(2);
    EXPECT_EQ(map.GetKey(), 3);
    map.RemoveData();
    EXPECT_EQ(Read(map), "1a ");
    EXPECT_THROW(map.RemoveData(1), std::out_of_range);
    EXPECT_EQ(map.RemoveConnection(UtilsString("a")), 1);
    EXPECT_EQ(map.size(), 0U);
    EXPECT_THROW(map.RemoveData(), std::out_of_range);
    EXPECT_THROW(map.GetValue(), std::out_of_range);
    EXPECT_EQ(map.SearchMapForKey(1), missing);
    EXPECT_EQ(map.SearchMapForVal("a", 1), missing);
}

TEST(UtilsStringMap, CopiesAreIndependent) {
    UtilsStringMap map = MapOf({{2, "b"}, {1, "a"}});
    map.SetCase(0);
    map[1];
    UtilsStringMap copy(map);
    map = *&map;
    map.RemoveAllData();
    EXPECT_EQ(Read(copy), "2b 1a ");
    EXPECT_STREQ(copy, "a");
    EXPECT_EQ(copy.GetCase(), 0);
    copy = map;
    EXPECT_EQ(copy.size(), 0U);
}

TEST(UtilsStringMap, CaseAndMatchStyleReachTheValues) {
    UtilsStringMap map = MapOf({{1, "Program Files"}});
    map.SetMatchStyle(1);
    map.SetCase(0);
    map.AddData(2, "GRAMMAR");
    EXPECT_EQ(map.SearchMapForVal("gram"), 0U);
    EXPECT_EQ(map.SearchMapForVal("gram", 0, 1), 1U);
    EXPECT_EQ(map.GetValueAsUString(0).GetMatchStyle(), 1);
    EXPECT_EQ(map.GetValueAsUString(1).GetCase(), 0);
    EXPECT_EQ(map.SearchMapItemVal(1, "mar"), 4U);
    UtilsString value;
    EXPECT_EQ(map.RetrieveVal("MAR", value), 1U);
    EXPECT_STREQ(value.c_str(), "GRAMMAR");
    map.AddConnection(3, "exact", 0, 1);
    EXPECT_EQ(map.SearchMapForVal("EXACT"), missing);
    EXPECT_EQ(map.GetValueAsUString(0).GetCase(), 1);
}

TEST(UtilsStringMap, ReplacesInOneOrAllValues) {
    UtilsStringMap map = MapOf({{1, "aXa"}, {2, "xx"}});
    map.Sort(0, 0);
    EXPECT_EQ(map.ReplaceAllInCurrentDataVal("x", "z", 1), 0);
    EXPECT_EQ(map.ReplaceAllInMapVal("x", "z", 0), 1);
    EXPECT_EQ(Read(map), "1aza 2zz ");
    EXPECT_EQ(map.ReplaceAllInCurrentDataVal("aza", "zzz"), 1);
    EXPECT_EQ(Read(map.Sort(0, 0)), "2zz 1zzz ") << "a changed value is no longer in order";
}

TEST(IOMap, AMissingKeyOrValueIsReportedOrThrown) {
    for (const int sorted : {0, 1}) {
        UtilsStringMap map = MapOf({{1, "a"}});
        map.SetMode(1, sorted);
        UtilsString value("kept");
        int key = 42;
        const struct {
            std::string name;
            DWORD result;
            std::function<DWORD()> run;
        } operations[] = {
            {"RemoveConnectionK", 0, [&] { return static_cast<DWORD>(map.RemoveConnectionK(2)); }},
            {"RemoveConnection", 0,
             [&] { return static_cast<DWORD>(map.RemoveConnection(UtilsString("b"))); }},
            {"RetrieveValK", missing, [&] { return map.RetrieveValK(2, value); }},
            {"RetrieveVal", missing, [&] { return map.RetrieveVal("b", value); }},
            {"RetrieveKeyV", missing, [&] { return map.RetrieveKeyV("b", key); }},
            {"RetrieveKey", missing, [&] { return map.RetrieveKey(2, key); }},
        };
        for (const auto& [name, result, run] : operations) {
            map.SetThrowIfMissing(0);
            EXPECT_EQ(run(), result) << name;
            map.SetThrowIfMissing(1);
            EXPECT_EQ(thrownMessage<std::range_error>(run),
                      "Range Error - IOMap<T,K>::" + name + "; File:  ..\\..\\Include\\IOMap");
        }
        EXPECT_EQ(Read(map), "1a ");
        EXPECT_EQ(value, "kept");
        EXPECT_EQ(key, 42);
    }
    UtilsStringMap unsorted = MapOf({{1, "a"}});
    EXPECT_EQ(unsorted.GetThrowIfMissing(), 0);
    EXPECT_EQ(unsorted.RemoveDataUsingKey(2), 0);
}

TEST(IOMap, AnIndexBeyondTheEndNamesTheMap) {
    const UtilsStringMap map = MapOf({{1, "a"}});
    EXPECT_EQ(thrownMessage<std::out_of_range>([&] { map.GetKey(1); }),
              "Out Of Range Error - 1:1; File:  ..\\..\\Include\\UtilsMap");
}

// A class that replaces an operation is asked by the operations of the map itself.
TEST(IOMap, ItsOperationsMayBeReplaced) {
    struct Counting : UtilsStringMap {
        int added = 0;
        const IOMap& AddConnection(const int& key, const UtilsString& value) override {
            ++added;
            return IOMap::AddConnection(key, value);
        }
    };
    Counting map;
    map.AddData(1, "a").AddDataSorted(0, "b");
    EXPECT_EQ(map.added, 2);
    EXPECT_EQ(Read(map), "0b 1a ");
}

}  // namespace
