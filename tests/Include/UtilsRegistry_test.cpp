#include "Include/UtilsRegistry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Include/std_exception.h"
#include "support/registry_folder.h"
#include "thrown_message.h"

// Run against the layer's registry and against Windows' own, below one key that each case gets fresh.

namespace {

using UTILS::UtilsRegistry;
using UTILS::UtilsString;

std::string text(const UtilsString& string) {
    return string.c_str();
}

std::string reportOf(const std::string& path, int create) {
    try {
        const UtilsRegistry key(path, create);
    } catch (const UTILS::std_exception& report) {
        return report.what();
    }
    return "no report";
}

class UtilsRegistryTest : public ::testing::Test {
protected:
    // Writes a value as it is, which the class itself would not do.
    void put(const std::string& name, DWORD type, const std::string& bytes) {
        folder_.put(name, type, bytes);
    }

    RegistryFolder folder_;
    const std::string path_ = "HKCU\\" + folder_.path();
};

TEST_F(UtilsRegistryTest, EveryRootIsKnownByBothNames) {
    const std::pair<const char*, const char*> names[] = {{"HKLM", "HKEY_LOCAL_MACHINE"},
                                                         {"HKCU", "HKEY_CURRENT_USER"},
                                                         {"HKCR", "HKEY_CLASSES_ROOT"},
                                                         {"HKU", "HKEY_USERS"},
                                                         {"HKCC", "HKEY_CURRENT_CONFIG"}};
    for (const auto& [brief, full] : names) {
        const UtilsRegistry key(std::string(brief) + "\\");
        const UtilsRegistry same(std::string(full) + "\\");
        EXPECT_EQ(text(key.GetRootPath(0)), brief);
        EXPECT_EQ(text(same.GetRootPath(0)), full);
        for (const UtilsRegistry& either : {key, same}) {
            EXPECT_EQ(text(either.GetRootPath(1)), brief);
            EXPECT_EQ(text(either.GetRootPath(2)), full);
        }
        EXPECT_EQ(text(key.GetRegistryPath(1)), std::string(brief) + "\\");
        EXPECT_EQ(text(same.GetRegistryPath(1)), std::string(full) + "\\");
    }
    EXPECT_NO_THROW(UtilsRegistry("HKEY_CURRENT_USER\\" + folder_.path()));
    EXPECT_EQ(text(UtilsRegistry(folder_.key(), "").GetRootPath(2)), "");
}

TEST_F(UtilsRegistryTest, ARootGivenOpenIsTheStartOfTheKeyPath) {
    UtilsRegistry key(HKEY_CURRENT_USER, folder_.path() + "\\\\A\\B", 1);
    EXPECT_EQ(text(key.GetRegistryPath(1)), "HKCU\\" + folder_.path() + "\\A\\B\\");
    UtilsRegistry below(folder_.key(), "A");
    UtilsString name;
    EXPECT_EQ(below.EnumKey(0, name), 1);
    EXPECT_EQ(text(name), "B");
    EXPECT_THROW(UtilsRegistry(static_cast<HKEY>(nullptr), "A"), std::invalid_argument);
}

TEST_F(UtilsRegistryTest, ConstructionSaysWhatIsWrong) {
    EXPECT_EQ(thrownMessage<std::invalid_argument>([] { UtilsRegistry(""); }),
              R"(Inavlid Argument Passed - Parameter 1 is NULL; File:  ..\..\Include\UtilsRegistry)");
    for (const std::string path : {"hklm\\Software", "Software\\Vendor", "HKLM", "HKDD\\Software", "\\\\"}) {
        const std::string report = reportOf(path, 1);
        EXPECT_EQ(report.find("File:  ..\\..\\Include\\UtilsRegistry; Line Number:  "), 0u) << report;
        EXPECT_NE(report.find("; Type:  204; "), std::string::npos) << report;
        const std::string end =
            "Error Condition:  The registry path is invalid.  No Root Key designation; value:  " + path;
        EXPECT_EQ(report.substr(report.size() - end.size()), end);
    }
    const std::string missing = path_ + "\\Missing";
    const std::string report = reportOf(missing, 0);
    EXPECT_NE(report.find("; Type:  204; Error Number: 2; WinError Description: "), std::string::npos)
        << report;
    const std::string end = "Error Condition:  Cannot Open Registry Entry:  ; value:  " + missing;
    EXPECT_EQ(report.substr(report.size() - end.size()), end);
}

TEST_F(UtilsRegistryTest, ACaseFlagOfZeroTakesRootsInAnyCase) {
    UtilsString path("hkcu\\" + folder_.path());
    path.SetCase(0);
    EXPECT_EQ(text(UtilsRegistry(path).GetRootPath(0)), "HKCU");
}

TEST_F(UtilsRegistryTest, NumbersAndTextsComeBack) {
    UtilsRegistry key(path_);
    EXPECT_EQ(key.SetValue("Number", 0xFEDCBA98), 1);
    EXPECT_EQ(key.GetSetSize(), 4u);
    EXPECT_EQ(key.SetValue("Text",
                           "\xD6"
                           "ffnen"),
              1);
    EXPECT_EQ(key.GetSetSize(), 7u);
    EXPECT_EQ(key.SetValue("Nothing", ""), 1);

    DWORD number = 0;
    UtilsString data("before");
    EXPECT_EQ(key.QueryValue("Number", number), 1);
    EXPECT_EQ(number, 0xFEDCBA98u);
    EXPECT_EQ(key.GetValueType(), DWORD{REG_DWORD});
    EXPECT_EQ(key.QueryValue("Number", data), 1);
    EXPECT_EQ(text(data), "4275878552");
    EXPECT_EQ(key.RegQueryValue("Text", data), 1);
    EXPECT_EQ(text(data),
              "\xD6"
              "ffnen");
    EXPECT_EQ(key.GetQuerySize(), 7u);
    EXPECT_EQ(key.GetValueType(), DWORD{REG_SZ});
    EXPECT_EQ(key.GetValue("Nothing", data), 1);
    EXPECT_EQ(text(data), "");

    EXPECT_EQ(key.DeleteValue("Text"), 1);
    EXPECT_EQ(key.DeleteValue("Text"), 0);
    EXPECT_EQ(key.GetLastResult(), LONG{ERROR_FILE_NOT_FOUND});
}

TEST_F(UtilsRegistryTest, TextsOfAnyLengthAreReadWhole) {
    UtilsRegistry key(path_);
    for (const std::size_t length : {253u, 254u, 255u, 256u, 5000u}) {
        std::string stored(length, 'a');
        stored.back() = 'z';
        ASSERT_EQ(key.SetValue("V", stored), 1);
        UtilsString name;
        UtilsString data;
        ASSERT_EQ(key.GetValue("V", data), 1);
        EXPECT_EQ(text(data), stored) << length;
        ASSERT_EQ(key.EnumValue(0, name, data), 1);
        EXPECT_EQ(text(data), stored) << length;
        EXPECT_EQ(text(name), "V");
    }
}

struct StoredValue {
    DWORD type;
    std::string bytes;
    std::string text;
};

// Whatever lies in the registry: numbers that are too short or too long, texts without an end.
TEST_F(UtilsRegistryTest, ForeignDataAreConvertedByTheirType) {
    const StoredValue values[] = {
        {REG_DWORD, std::string("\x2A\0\0\0", 4), "42"},
        {REG_DWORD_BIG_ENDIAN, std::string("\0\0\0\x2A", 4), "42"},
        {REG_BINARY, std::string("\x2A\0\0\0\x01", 5), "42"},
        {REG_BINARY, std::string("\x01\x02", 2), "513"},
        {REG_BINARY, "", "0"},
        {REG_EXPAND_SZ, std::string("%TEMP%", 7), "%TEMP%"},
        {REG_MULTI_SZ, std::string("one\0two\0", 9), "one"},
        {REG_NONE, "abc", "abc"},
    };
    UtilsRegistry key(path_);
    for (const StoredValue& stored : values) {
        put("V", stored.type, stored.bytes);
        UtilsString data("before");
        ASSERT_EQ(key.GetValue("V", data), 1) << stored.text;
        EXPECT_EQ(text(data), stored.text) << "type " << stored.type;
        EXPECT_EQ(key.GetQuerySize(), stored.bytes.size());
        EXPECT_EQ(key.GetValueType(), stored.type);
        UtilsString name;
        ASSERT_EQ(key.EnumValue(0, name, data), 1);
        EXPECT_EQ(text(data), stored.text) << "type " << stored.type;

        const int isNumber = stored.bytes.size() == 4 ? 1 : 0;
        const unsigned long before = ~0UL;
        unsigned long number = before;
        EXPECT_EQ(key.GetValue("V", number), isNumber);
        EXPECT_EQ(number, isNumber != 0 ? 42u : before);
        number = before;
        EXPECT_EQ(key.EnumValue(0, name, number), isNumber);
        EXPECT_EQ(number, isNumber != 0 ? 42u : before);
    }
}

TEST_F(UtilsRegistryTest, EnumerationNamesEverythingOnce) {
    UtilsRegistry key(path_);
    const std::string longName(200, 'n');
    for (const std::string& name : {std::string("a"), longName}) {
        ASSERT_EQ(key.SetValue(name, "data of " + name), 1);
        const UtilsRegistry subkey(path_ + "\\" + name, 1);
    }
    for (const DWORD size : {0u, 1u, 1000u}) {
        std::vector<std::string> keys;
        UtilsString name;
        UtilsString data;
        for (DWORD index = 0; key.EnumKey(index, name, size) == 1; ++index) {
            keys.push_back(text(name));
        }
        EXPECT_EQ(keys, std::vector<std::string>({"a", longName}));
        EXPECT_EQ(key.GetLastResult(), LONG{ERROR_NO_MORE_ITEMS});
        std::vector<std::string> values;
        for (DWORD index = 0; key.EnumValue(index, name, data, size) == 1; ++index) {
            EXPECT_EQ(text(data), "data of " + text(name));
            values.push_back(text(name));
        }
        EXPECT_EQ(values, std::vector<std::string>({"a", longName}));
        EXPECT_EQ(text(name), longName) << "changed by the failing call";
    }
}

TEST_F(UtilsRegistryTest, SubkeysAreEnteredAndKeepTheirPath) {
    UtilsRegistry key(path_);
    EXPECT_EQ(key.OpenSubKey("Vendor"), 0);
    EXPECT_EQ(text(key.GetRegistryPath(1)), path_ + "\\");
    EXPECT_EQ(key.CreateSubKey("Vendor\\Product", 1), 1);
    EXPECT_EQ(text(key.GetRegistryPath(1)), path_ + "\\Vendor\\Product\\");
    EXPECT_EQ(key.SetValue("Deep", 1), 1);
    EXPECT_EQ(key.OpenKey(path_ + "\\Vendor"), 1);
    EXPECT_EQ(key.OpenSubKey("Product\\"), 1);
    DWORD number = 0;
    EXPECT_EQ(key.GetValue("Deep", number), 1);
    EXPECT_EQ(key.CreateKey(path_ + "\\Other"), 1);
    EXPECT_EQ(text(key.GetRegistryPath(0)), folder_.path() + "\\Other\\");
    EXPECT_EQ(key.GetValue("Deep", number), 0);
}

TEST_F(UtilsRegistryTest, WhatFailsLeavesTheObjectAsItWas) {
    UtilsRegistry key(path_);
    ASSERT_EQ(key.SetValue("V", 1), 1);
    for (const std::string& path : {std::string(), std::string("hkcu\\X"), path_ + "\\Missing"}) {
        EXPECT_EQ(key.OpenKey(path), 0);
    }
    EXPECT_EQ(key.CreateKey("Software"), 0);
    EXPECT_EQ(key.OpenSubKey(""), 0);
    EXPECT_EQ(key.CreateSubKey("\\"), 0);
    EXPECT_EQ(text(key.GetRegistryPath(1)), path_ + "\\");
    DWORD number = 0;
    EXPECT_EQ(key.GetValue("V", number), 1);
    UtilsString name("before");
    UtilsString data("before");
    EXPECT_EQ(key.GetValue("Missing", data), 0);
    EXPECT_EQ(key.EnumValue(9, name, data), 0);
    EXPECT_EQ(text(name) + text(data), "beforebefore");
}

TEST_F(UtilsRegistryTest, TheDefaultValueIsEnumeratedUnderAnEmptyName) {
    put("", REG_SZ, std::string("default", 8));
    UtilsString name("before");
    UtilsString data;
    ASSERT_EQ(UtilsRegistry(path_).EnumValue(0, name, data), 1);
    EXPECT_EQ(text(name), "");
    EXPECT_EQ(text(data), "default");
}

TEST_F(UtilsRegistryTest, CopiesHoldTheKeyForThemselves) {
    UtilsRegistry first(path_);
    UtilsRegistry second("HKEY_CURRENT_USER\\");
    {
        UtilsRegistry original(path_ + "\\A", 1);
        ASSERT_EQ(original.SetValue("V", 5), 1);
        first = original;
        second = UtilsRegistry(original);
    }
    for (UtilsRegistry* copy : {&first, &second}) {
        DWORD number = 0;
        EXPECT_EQ(copy->GetValue("V", number), 1);
        EXPECT_EQ(text(copy->GetRegistryPath(1)), path_ + "\\A\\");
    }
    first = *&first;
    EXPECT_EQ(first.DeleteKey(1), 1);
    EXPECT_THROW(UtilsRegistry{second}, UTILS::std_exception);
    UtilsRegistry third(path_);
    EXPECT_THROW(third = second, UTILS::std_exception);
    EXPECT_EQ(third.SetValue("still", 1), 1);
    const UtilsRegistry closed(first);
    EXPECT_EQ(text(closed.GetRegistryPath(1)), path_ + "\\A\\");
}

TEST_F(UtilsRegistryTest, ATreeGoesWithEverythingBelowIt) {
    for (const char* below : {"T\\a\\b\\c", "T\\a\\d", "T\\e", "U"}) {
        UtilsRegistry key(path_ + "\\" + below, 1);
        ASSERT_EQ(key.SetValue("one", 1), 1);
        ASSERT_EQ(key.SetValue(std::string(250, 'v'), 2), 1);
    }
    UtilsRegistry tree(path_ + "\\T");
    EXPECT_EQ(tree.DeleteKey(1), 1);
    UtilsString name("before");
    UtilsRegistry parent(path_);
    ASSERT_EQ(parent.EnumKey(0, name), 1);
    EXPECT_EQ(text(name), "U");
    EXPECT_EQ(parent.EnumKey(1, name), 0);
    EXPECT_EQ(tree.OpenKey(path_ + "\\U"), 1) << "the object can open another key";
}

TEST_F(UtilsRegistryTest, ANamedSubkeyGoesAloneUnlessAskedOtherwise) {
    UtilsRegistry key(path_);
    const UtilsRegistry deep(path_ + "\\A\\B\\C", 1);
    EXPECT_EQ(key.DeleteKey("A\\B", 0), 0);
    EXPECT_EQ(key.GetLastResult(), LONG{ERROR_ACCESS_DENIED});
    EXPECT_EQ(key.DeleteKey("A\\B\\C", 0), 1);
    EXPECT_EQ(key.DeleteKey("A\\B\\C", 0), 0);
    EXPECT_EQ(key.DeleteKey("A", 1), 1);
    UtilsString name;
    EXPECT_EQ(key.EnumKey(0, name), 0);
}

TEST_F(UtilsRegistryTest, ARootIsNeverDeleted) {
    const UtilsRegistry below(path_ + "\\A", 1);
    UtilsRegistry root(folder_.key(), "");
    EXPECT_EQ(root.DeleteKey(1), 0);
    UtilsString name;
    EXPECT_EQ(root.EnumKey(0, name), 1);
    EXPECT_EQ(text(name), "A");
}

}  // namespace
