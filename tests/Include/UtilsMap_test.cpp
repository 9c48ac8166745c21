#include "UtilsMap.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

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

TEST(UtilsStringMap, KeepsPairsInTheOrderAddedWithRepeatedKeys) {
    UtilsStringMap map(7, "IBMBIO.COM");
    map.AddData(7, "IBMDOS.COM").AddData(0, "AUTOEXEC.BAT");
    map.SetSearchDirection(0);
    EXPECT_EQ(Read(map), "7IBMBIO.COM 7IBMDOS.COM 0AUTOEXEC.BAT ");
    map.SetSearchDirection(1);
    EXPECT_EQ(Read(map), "0AUTOEXEC.BAT 7IBMDOS.COM 7IBMBIO.COM ");
    EXPECT_EQ(map.SearchMapForKey(7), 1U);
}

TEST(UtilsStringMap, OneOfThePairsIsCurrent) {
    UtilsStringMap map = MapOf({{1, "one"}, {2, "two"}, {3, "three"}});
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

TEST(UtilsStringMap, SortedModeKeepsTheOrderOfKeys) {
    UtilsStringMap map = MapOf({{5, "e"}, {1, "a"}});
    map.AddDataSorted(3, "c");
    EXPECT_EQ(Read(map), "1a 3c 5e ");
    map.AddData(3, "d").AddData(-4, "z").AddData(9, "x");
    EXPECT_EQ(Read(map), "-4z 1a 3c 3d 5e 9x ");
    map.SetMode(0, 1);
    map.AddData(0, "b");
    EXPECT_EQ(Read(map), "1a 0b 3c 3d 5e 9x -4z ");
    map.SetMode(0, 0);
    map.AddData(7, "a");
    EXPECT_EQ(Read(map), "1a 0b 3c 3d 5e 9x -4z 7a ");
}

TEST(UtilsStringMap, SortsByKeyOrValueUnlessTheMethodIsNone) {
    UtilsStringMap map = MapOf({{2, "b"}, {1, "c"}, {3, "a"}});
    map.Sort(1, 7);
    EXPECT_EQ(Read(map), "2b 1c 3a ");
    for (int method = 0; method <= 4; ++method) {
        EXPECT_EQ(Read(map.Sort(1, method)), "1c 2b 3a ");
        EXPECT_EQ(Read(map.Sort(0, method)), "3a 2b 1c ");
    }
    EXPECT_EQ(map.SearchMapForKey(3, 1), 2U);
    EXPECT_EQ(Read(map), "1c 2b 3a ");
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
        const auto run = [&](const char* operation) {
            const std::string name = operation;
            if (name == "RemoveConnectionK") return static_cast<DWORD>(map.RemoveConnectionK(2));
            if (name == "RemoveConnection") return static_cast<DWORD>(map.RemoveConnection(UtilsString("b")));
            if (name == "RetrieveValK") return map.RetrieveValK(2, value);
            if (name == "RetrieveVal") return map.RetrieveVal("b", value);
            if (name == "RetrieveKeyV") return map.RetrieveKeyV("b", key);
            return map.RetrieveKey(2, key);
        };
        for (const char* operation : {"RemoveConnectionK", "RemoveConnection", "RetrieveValK", "RetrieveVal",
                                      "RetrieveKeyV", "RetrieveKey"}) {
            map.SetThrowIfMissing(0);
            EXPECT_EQ(run(operation), std::string(operation).substr(0, 6) == "Remove" ? 0 : missing)
                << operation;
            map.SetThrowIfMissing(1);
            try {
                run(operation);
                ADD_FAILURE() << operation << " did not throw";
            } catch (const std::range_error& error) {
                const std::string expected = std::string("Range Error - IOMap<T,K>::") + operation +
                                             "; File:  ..\\..\\Include\\IOMap; Line:  ";
                EXPECT_EQ(std::string(error.what()).substr(0, expected.size()), expected);
            }
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
    try {
        map.GetKey(1);
        ADD_FAILURE();
    } catch (const std::out_of_range& error) {
        const std::string expected = "Out Of Range Error - 1:1; File:  ..\\..\\Include\\UtilsMap; Line:  ";
        EXPECT_EQ(std::string(error.what()).substr(0, expected.size()), expected);
    }
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
