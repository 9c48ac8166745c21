// The component as the library that a host loads: its exports, its host beside it, and what is left when it
// goes.
#include <gtest/gtest.h>

#include "component/registration.h"
#include "host_modules.h"
#include "support/temp_folder.h"

namespace {

using RegisterFunction = HRESULT(WINAPI*)();
using CreateFunction = DWORD_PTR(WINAPI*)(HWND, DWORD);
using DestroyFunction = BOOL(WINAPI*)(DWORD_PTR, DWORD);

template <class Function>
Function lookUp(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

std::string pathOf(HMODULE module) {
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module, path, sizeof path);
    return path;
}

std::string builtModule(const std::string& name) {
    const std::string program = pathOf(nullptr);
    const std::string tests = program.substr(0, program.rfind('\\'));
    return tests.substr(0, tests.rfind('\\')) + "\\host\\" + name;
}

class InstalledComponent : public testing::Test {
protected:
    InstalledComponent() {
        for (const char* name : {"QXCMendwell.dll", "qxdlgsup.dll"}) {
            writeFile(suite.path() + "\\" + name, readFile(builtModule(name)));
        }
        writeFile(suite.path() + "\\QXPM.DLL", readFile(HostModule::Path("whole")));
        // In the way of a search: in a host the modules of the program's folder would be.
        writeFile(other.path() + "\\QXPM.DLL", readFile(HostModule::Path("empty")));
        char before[MAX_PATH] = {};
        GetCurrentDirectoryA(sizeof before, before);
        directoryBefore = before;
        SetCurrentDirectoryA(other.path().c_str());
        support = LoadLibraryA((suite.path() + "\\qxdlgsup.dll").c_str());
        component = LoadLibraryA((suite.path() + "\\QXCMendwell.dll").c_str());
    }
    ~InstalledComponent() override {
        FreeLibrary(component);
        FreeLibrary(support);
        EXPECT_EQ(GetModuleHandleA("QXPM.dll"), nullptr);
        EXPECT_EQ(GetModuleHandleA("QXCMendwell.dll"), nullptr);
        SetCurrentDirectoryA(directoryBefore.c_str());
    }

    TempFolder suite;
    TempFolder other;
    std::string directoryBefore;
    HMODULE support = nullptr;
    HMODULE component = nullptr;
};

TEST_F(InstalledComponent, RegistersWithTheHostInItsOwnFolder) {
    ASSERT_NE(component, nullptr) << GetLastError();
    ASSERT_EQ(lookUp<RegisterFunction>(component, "DllRegisterServer")(), S_OK);
    const HMODULE host = GetModuleHandleA("QXPM.dll");
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(pathOf(host), suite.path() + "\\QXPM.DLL");
    const std::string log = lookUp<TestHostStateFunction>(host, "TestHostState")()->log;
    EXPECT_EQ(log, "open Modules 1\nset Modules/Mendwell=" + registration::Listing(pathOf(component)) +
                       "\nopen Translations 1\nset Translations/Mendwell:1=Mendwell Ostrel\n");
    EXPECT_EQ(lookUp<RegisterFunction>(component, "DllUnregisterServer")(), S_OK);
}

TEST_F(InstalledComponent, OpensAndClosesItsUserInterface) {
    ASSERT_NE(component, nullptr) << GetLastError();
    const HWND frame =
        CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 500, 300, nullptr, nullptr, nullptr, nullptr);
    const DWORD_PTR ui = lookUp<CreateFunction>(component, "CreateComponentUI")(frame, 0);
    ASSERT_NE(ui, 0U);
    const HWND page = GetWindow(frame, GW_CHILD);
    EXPECT_NE(GetDlgItem(page, 1029), nullptr) << "the product page";
    EXPECT_EQ(lookUp<CreateFunction>(component, "CreateConfigUI")(frame, 0), 0U);
    EXPECT_EQ(lookUp<DestroyFunction>(component, "DestroyComponentUI")(ui, 0), 1);
    EXPECT_FALSE(IsWindow(page));
    DestroyWindow(frame);
}

}  // namespace
