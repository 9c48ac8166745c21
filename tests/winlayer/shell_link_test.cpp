#include <windows.h>
// Not part of <windows.h>.
#include <shlobj.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace {

std::vector<OLECHAR> wideOf(const std::string& ascii) {
    std::vector<OLECHAR> wide(ascii.begin(), ascii.end());
    wide.push_back(0);
    return wide;
}

// Objects for one test; each test releases what it takes.
class ShellLinkTest : public testing::Test {
protected:
    ShellLinkTest() { EXPECT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
    ~ShellLinkTest() override { CoUninitialize(); }

    static IShellLinkA* newLink() {
        void* link = nullptr;
        EXPECT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA, &link),
                  S_OK);
        return static_cast<IShellLinkA*>(link);
    }
    template <class Interface>
    static Interface* ask(IUnknown* object, REFIID interfaceId) {
        void* other = nullptr;
        EXPECT_EQ(object->QueryInterface(interfaceId, &other), S_OK);
        return static_cast<Interface*>(other);
    }

    TempFolder folder;
};

TEST(ComTest, AThreadMustBeReadyAndReadinessIsCounted) {
    void* object = &object;
    EXPECT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA, &object),
              CO_E_NOTINITIALIZED);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
    CoUninitialize();
    EXPECT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA, &object),
              S_OK);
    EXPECT_EQ(static_cast<IUnknown*>(object)->Release(), 0u);
    EXPECT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IClassFactory, &object),
              E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(CoCreateInstance(IID_IClassFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, &object),
              REGDB_E_CLASSNOTREG);
    CoUninitialize();
}

TEST_F(ShellLinkTest, ItsInterfacesShareOneCountOfReferences) {
    IShellLinkA* const link = newLink();
    auto* const file = ask<IPersistFile>(link, IID_IPersistFile);
    auto* const data = ask<IShellLinkDataList>(file, IID_IShellLinkDataList);
    auto* const unknown = ask<IUnknown>(data, IID_IUnknown);
    auto* const again = ask<IUnknown>(file, IID_IUnknown);
    EXPECT_EQ(unknown, again) << "the identity of the object";
    EXPECT_EQ(again->Release(), 4u);
    EXPECT_EQ(unknown->Release(), 3u);
    EXPECT_EQ(link->AddRef(), 4u);
    EXPECT_EQ(link->Release(), 3u);
    EXPECT_EQ(link->Release(), 2u);
    EXPECT_EQ(data->Release(), 1u);
    EXPECT_EQ(file->Release(), 0u);
}

TEST_F(ShellLinkTest, WhatIsSavedIsLoadedAgain) {
    const std::string target = folder.file("t.txt", "12345");
    const auto name = wideOf(folder / "a.lnk");
    IShellLinkA* const link = newLink();
    auto* const file = ask<IPersistFile>(link, IID_IPersistFile);
    EXPECT_TRUE(SUCCEEDED(link->SetPath(target.c_str())));
    EXPECT_EQ(link->SetDescription("f\xFCr"), S_OK);
    EXPECT_EQ(file->Save(name.data(), TRUE), S_OK);
    EXPECT_EQ(file->Release(), 1u);
    EXPECT_EQ(link->Release(), 0u);

    IShellLinkA* const loaded = newLink();
    auto* const from = ask<IPersistFile>(loaded, IID_IPersistFile);
    EXPECT_EQ(from->Load(name.data(), STGM_READ), S_OK);
    EXPECT_EQ(loaded->Resolve(nullptr, SLR_NO_UI | SLR_NOSEARCH), S_OK);
    char text[MAX_PATH] = "";
    EXPECT_EQ(loaded->GetPath(text, MAX_PATH, nullptr, 0), S_OK);
    EXPECT_EQ(text, target);
    EXPECT_EQ(loaded->GetDescription(text, MAX_PATH), S_OK);
    EXPECT_STREQ(text, "f\xFCr");
    EXPECT_TRUE(FAILED(from->Load(wideOf(folder / "missing").data(), STGM_READ)));
    EXPECT_TRUE(FAILED(from->Load(wideOf(target).data(), STGM_READ))) << "no shortcut";
    EXPECT_TRUE(FAILED(from->Save(wideOf(folder / "missing\\a.lnk").data(), TRUE)));
    EXPECT_EQ(from->Release(), 1u);
    EXPECT_EQ(loaded->Release(), 0u);
}

}  // namespace
