#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CUtilsPath.h"
#include "path_cases.h"
#include "std_exception.h"
#include "winlayer/machine.h"

namespace {

using UTILS::CUtilsPath;
using UTILS::UtilsString;

void setValue(const std::string& key, const char* name, const char* data) {
    HKEY opened = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, key.c_str(), 0, KEY_WRITE, &opened), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExA(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(data), 2), ERROR_SUCCESS);
    RegCloseKey(opened);
}

bool keyExists(const char* key) {
    HKEY opened = nullptr;
    const bool found = RegOpenKeyExA(HKEY_CURRENT_USER, key, 0, KEY_READ, &opened) == ERROR_SUCCESS;
    if (found) {
        RegCloseKey(opened);
    }
    return found;
}

class CUtilsPathRegistry : public testing::Test {
protected:
    CUtilsPathRegistry() {
        EXPECT_EQ(path("HKCU\\Suite\\a\\deep").CreateDirectory(), 1);
        EXPECT_EQ(path("HKEY_CURRENT_USER\\Suite\\b").Create(1), 1);
        setValue("Suite", "top", "1");
        setValue("Suite\\a\\deep", "low", "2");
        setValue("Suite\\b", "", "3");
        EXPECT_EQ(machine_->handles.openCount(), 0u);
    }

    winlayer::ScopedMachine machine_;
};

TEST_F(CUtilsPathRegistry, ListsValuesAndSubkeysOfTheWholeTree) {
    CUtilsPath key = path("HKCU\\Suite");
    EXPECT_EQ(key.Search("no pattern applies"), 1);
    key.SortKeys();
    key.SortValues();
    EXPECT_EQ(listed(key, &CUtilsPath::RetrieveFirstKey, &CUtilsPath::RetrieveNextKey),
              (std::vector<std::string>{"HKCU\\Suite\\a", "HKCU\\Suite\\a\\deep", "HKCU\\Suite\\b"}));
    EXPECT_EQ(
        listed(key, &CUtilsPath::RetrieveFirstValue, &CUtilsPath::RetrieveNextValue),
        (std::vector<std::string>{"HKCU\\Suite\\a\\deep\\low", "HKCU\\Suite\\b\\", "HKCU\\Suite\\top"}));
    EXPECT_EQ(key.GetTotalSubKeys(), 3u);
    EXPECT_EQ(key.GetTotalValues(), 3u);
    EXPECT_EQ(key.GetDirSize(), 0u);
    EXPECT_EQ(machine_->handles.openCount(), 0u);

    CUtilsPath root = path("HKCU");
    EXPECT_EQ(root.Search(), 1);
    EXPECT_EQ(root.GetTotalSubKeys(), 4u);
    EXPECT_EQ(root.SetPathToSubKey(), 1);
    EXPECT_STREQ(root.GetPath(), "HKCU\\Suite");
}

TEST_F(CUtilsPathRegistry, WalksUnderTheCaseFlag) {
    UtilsString text("hkcu\\suite");
    text.SetCase(0);
    EXPECT_EQ(CUtilsPath(text, 1, 0, 0).GetTotalSubKeys(), 3u);
}

TEST_F(CUtilsPathRegistry, DeletesAKeyWithAllBelowButNoRoot) {
    CUtilsPath key = path("HKCU\\Suite");
    EXPECT_EQ(key.DeleteDir(), 1);
    EXPECT_STREQ(key.GetPath(), "HKCU");
    EXPECT_FALSE(keyExists("Suite"));
    EXPECT_EQ(path("HKCU\\Suite").DeleteDir(), 0) << "gone";
    EXPECT_EQ(path("HKCU\\Other").Create(), 1);
    EXPECT_EQ(path("HKCU").DeleteDir(), 0);
    EXPECT_TRUE(keyExists("Other"));
    EXPECT_EQ(machine_->handles.openCount(), 0u);
}

TEST_F(CUtilsPathRegistry, ReportsOnlyWithTheExceptionFlag) {
    CUtilsPath missing = path("HKCU\\missing");
    EXPECT_EQ(missing.Search() + missing.DeleteDir(), 0);
    missing.SetExceptionHandling();
    EXPECT_THROW(missing.Search(), UTILS::std_exception);
    EXPECT_THROW(missing.DeleteDir(), UTILS::std_exception);
    machine_->gate.failFunction("RegCreateKeyExA", ERROR_ACCESS_DENIED);
    EXPECT_THROW(missing.CreateDirectory(), UTILS::std_exception);
    missing.ClearExceptionHandling();
    EXPECT_EQ(missing.CreateDirectory(), 0);
    machine_->gate.reset();
    machine_->gate.failFunction("RegOpenKeyExA", ERROR_ACCESS_DENIED, 2, 1);
    EXPECT_EQ(path("HKCU\\Suite").Search(), 0) << "a subkey that does not open ends the walk";
    for (const char* function : {"RegEnumKeyExA", "RegEnumValueA"}) {
        machine_->gate.reset();
        machine_->gate.failFunction(function, ERROR_BADKEY, 1, 1);
        EXPECT_EQ(path("HKCU\\Suite").Search(), 0) << function;
    }
    EXPECT_EQ(machine_->handles.openCount(), 0u);
}

}  // namespace
