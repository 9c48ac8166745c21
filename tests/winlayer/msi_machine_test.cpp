#include <msiquery.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "winlayer/machine.h"

namespace {

using winlayer::Installer;
using winlayer::ScopedMachine;

const std::string query =
    "SELECT `Component`.`ComponentId` FROM `Component`, `Shortcut` WHERE "
    "`Component`.`Component` = `Shortcut`.`Component_` AND `Shortcut`.`Icon_` = ";

// A machine with one package, opened.
class InstallerMachine : public testing::Test {
protected:
    InstallerMachine() {
        machine->installer.packages["C:\\p.msi"] = {{{"A", "{1}"}, {"B", "{2}"}, {"C", "{3}"}},
                                                    {{"C", "i"}, {"A", "i"}, {"B", "other"}}};
        machine->installer.products["{P}"] = {"C:\\p.msi", {{"{1}", {INSTALLSTATE_ABSENT, "D:\\a"}}}};
        EXPECT_EQ(MsiOpenDatabaseA("C:\\p.msi", MSIDBOPEN_READONLY, &package), NO_ERROR);
    }
    ~InstallerMachine() override {
        EXPECT_EQ(MsiCloseHandle(package), NO_ERROR);
        EXPECT_EQ(machine->installer.openHandles(), 0u);
    }

    // The codes of all records, each with a semicolon; "?" when the query is refused.
    std::string answerTo(const std::string& text) const {
        MSIHANDLE view = 0;
        if (MsiDatabaseOpenViewA(package, text.c_str(), &view) != NO_ERROR) {
            return "?";
        }
        MSIHANDLE record = 0;
        EXPECT_EQ(MsiViewFetch(view, &record), ERROR_INVALID_HANDLE_STATE);
        EXPECT_EQ(MsiViewExecute(view, 0), NO_ERROR);
        std::string answer;
        while (MsiViewFetch(view, &record) == NO_ERROR) {
            char value[16];
            DWORD size = sizeof value;
            EXPECT_EQ(MsiRecordGetStringA(record, 1, value, &size), NO_ERROR);
            answer += std::string(value, size) + ";";
            EXPECT_EQ(MsiCloseHandle(record), NO_ERROR);
        }
        EXPECT_EQ(MsiViewFetch(view, &record), ERROR_NO_MORE_ITEMS);
        EXPECT_EQ(MsiCloseHandle(view), NO_ERROR);
        return answer;
    }

    ScopedMachine machine;
    MSIHANDLE package = 0;
};

TEST_F(InstallerMachine, AnswersOneFormOfQuery) {
    EXPECT_EQ(answerTo(query + "'i'"), "{1};{3};");
    EXPECT_EQ(answerTo(query + "'other'"), "{2};");
    EXPECT_EQ(answerTo(query + "'none'"), "");
    for (const char* const end : {"", "'", "i", "'i", "i'", "'i' ", "'i''", "'i' OR 'i'"}) {
        EXPECT_EQ(answerTo(query + end), "?") << end;
    }
    EXPECT_EQ(answerTo("SELECT `Icon_` FROM `Shortcut`"), "?");
    EXPECT_EQ(answerTo(""), "?");
}

TEST_F(InstallerMachine, TellsWhatABufferLacksAndWhatIsUnknown) {
    char text[16];
    DWORD size = 3;
    EXPECT_EQ(MsiGetProductInfoA("{P}", INSTALLPROPERTY_LOCALPACKAGE, text, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 8u);
    size = 9;
    EXPECT_EQ(MsiGetProductInfoA("{P}", INSTALLPROPERTY_LOCALPACKAGE, text, &size), NO_ERROR);
    EXPECT_STREQ(text, "C:\\p.msi");
    EXPECT_EQ(MsiGetProductInfoA("{P}", "Other", text, &size), ERROR_UNKNOWN_PROPERTY);
    EXPECT_EQ(MsiGetProductInfoA("{Q}", INSTALLPROPERTY_LOCALPACKAGE, text, &size), ERROR_UNKNOWN_PRODUCT);
    size = 4;
    EXPECT_EQ(MsiGetComponentPathA("{P}", "{1}", text, &size), INSTALLSTATE_MOREDATA);
    size = 5;
    EXPECT_EQ(MsiGetComponentPathA("{P}", "{1}", text, &size), INSTALLSTATE_ABSENT);
    EXPECT_STREQ(text, "D:\\a");
    EXPECT_EQ(MsiGetComponentPathA("{P}", "{2}", text, &size), INSTALLSTATE_UNKNOWN);
    EXPECT_EQ(MsiGetShortcutTargetA("C:\\missing.lnk", text, nullptr, nullptr), ERROR_FUNCTION_FAILED);

    MSIHANDLE handle = 0;
    EXPECT_EQ(MsiOpenDatabaseA("C:\\q.msi", MSIDBOPEN_READONLY, &handle), ERROR_OPEN_FAILED);
    EXPECT_EQ(MsiOpenDatabaseA("C:\\p.msi", "x", &handle), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(MsiViewExecute(package, 0), ERROR_INVALID_HANDLE);
    EXPECT_EQ(MsiViewFetch(package, &handle), ERROR_INVALID_HANDLE);
    EXPECT_EQ(MsiDatabaseOpenViewA(package + 1, query.c_str(), &handle), ERROR_INVALID_HANDLE);
    EXPECT_EQ(MsiCloseHandle(package + 1), ERROR_INVALID_HANDLE);
}

TEST(InstallerLibraryMachine, IsThereOnlyWhereATestPutsIt) {
    ScopedMachine machine;
    EXPECT_EQ(LoadLibraryA("MSI.DLL"), nullptr);
    machine->addInstallerLibrary();
    EXPECT_EQ(GetModuleHandleA("msi.dll"), nullptr);
    const HMODULE library = LoadLibraryA("MSI.DLL");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(GetProcAddress(library, "MsiGetShortcutTargetA"), nullptr);
    EXPECT_TRUE(FreeLibrary(library));
    EXPECT_EQ(GetModuleHandleA("msi.dll"), nullptr);
}

}  // namespace
