// The object module QXPM.dll, used as a component uses it: loaded by path, entered by its exports.
#include <gtest/gtest.h>
#include <richedit.h>

#include <memory>

#include "component/host_objects.h"
#include "host/frame/loaded_module.h"
#include "host/frame/text.h"
#include "host/suite.h"

namespace {

using host::LoadedModule;

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using Held = std::unique_ptr<Interface, Releaser>;

class Suite {
public:
    template <class Interface>
    Held<Interface> make(const GUID& classId, const GUID& interfaceId) const {
        void* object = nullptr;
        create(&classId, &interfaceId, &object);
        return Held<Interface>(static_cast<Interface*>(object));
    }
    Held<IHostPropertyStore> store() const {
        return make<IHostPropertyStore>(CLSID_HostPropertyStore, IID_IHostPropertyStore);
    }
    Held<IHostManager> manager() const { return make<IHostManager>(CLSID_HostManager, IID_IHostManager); }
    DWORD objects() const {
        DWORD count = 0;
        manager()->CountObjects(&count);
        return count - 1;
    }

    LoadedModule module{suiteFolder() + "QXPM.dll", host::ExitCode::failure};
    HRESULT(WINAPI* create)
    (const GUID*, const GUID*,
     void**) = module.require<HRESULT WINAPI(const GUID*, const GUID*, void**)>("DllCreateObject");
};

std::string valueOf(IHostPropertyStore& store, const char* name, DWORD size = 256) {
    std::string buffer(size, '?');
    const HRESULT result = store.GetValue(name, buffer.data(), &size);
    return result < 0 ? "failed: " + std::string(buffer.c_str()) : buffer.c_str();
}

TEST(PropertyStore, KeepsValuesBeyondTheModulesLife) {
    const TestSection section;
    {
        const Suite suite;
        const auto store = suite.store();
        ASSERT_GE(store->Open(section.name().c_str(), 1), 0);
        EXPECT_GE(store->SetValue("Pfad",
                                  "C:\\Gr\xFC\xDF"
                                  "e"),
                  0);
        EXPECT_GE(store->SetValue("Mendwell:1", ""), 0);
        EXPECT_GE(store->SetValue("gone", "x"), 0);
        EXPECT_GE(store->DeleteValue("gone"), 0);
        EXPECT_LT(store->DeleteValue("gone"), 0);
    }
    const Suite suite;
    const auto store = suite.store();
    ASSERT_GE(store->Open(section.name().c_str(), 0), 0);
    EXPECT_EQ(valueOf(*store, "Pfad"),
              "C:\\Gr\xFC\xDF"
              "e");
    EXPECT_EQ(valueOf(*store, "Mendwell:1"), "");
    EXPECT_EQ(valueOf(*store, "gone"), "failed: ");
}

TEST(PropertyStore, OpensAMissingSectionForWritingOnly) {
    const TestSection section;
    const Suite suite;
    const auto store = suite.store();
    EXPECT_LT(store->Open(section.name().c_str(), 0), 0);
    EXPECT_LT(store->SetValue("a", "b"), 0);
    EXPECT_EQ(valueOf(*store, "a"), "failed: ");
    EXPECT_GE(store->Open(section.name().c_str(), 1), 0);
    EXPECT_GE(store->SetValue("a", "b"), 0);
    for (const char* bad : {"", "Modules\\Mendwell", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(store->Open(bad, 1), E_INVALIDARG);
        EXPECT_LT(store->SetValue("a", "c"), 0) << "a refused opening leaves nothing open";
    }
}

TEST(PropertyStore, NeverWritesBeyondTheBuffer) {
    const TestSection section;
    const Suite suite;
    const auto store = suite.store();
    ASSERT_GE(store->Open(section.name().c_str(), 1), 0);
    ASSERT_GE(store->SetValue("name", "12345"), 0);
    for (DWORD room = 0; room <= 7; ++room) {
        std::string buffer(8, '?');
        DWORD size = room;
        const HRESULT result = store->GetValue("name", buffer.data(), &size);
        EXPECT_EQ(size, 6u);
        EXPECT_EQ(result >= 0, room >= 6) << room;
        const std::string expected = room == 0  ? ""
                                     : room < 6 ? std::string(1, '\0')
                                                : std::string("12345\0", 6);
        EXPECT_EQ(buffer, expected + std::string(8 - expected.size(), '?')) << room;
    }
    char text[3] = {'?', '?', '?'};
    DWORD size = 2;
    EXPECT_LT(store->EnumerateValue(0, text, &size), 0);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(text[2], '?');
    EXPECT_LT(store->EnumerateValue(1, text, &size), 0);
}

TEST(ObjectModule, MakesObjectsDirectlyAndThroughTheFactory) {
    const Suite suite;
    void* object = &object;
    EXPECT_EQ(suite.create(&IID_IUnknown, &IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(suite.create(&CLSID_HostManager, &IID_IHostPropertyStore, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);

    const auto getFactory =
        suite.module.require<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject");
    ASSERT_GE(getFactory(CLSID_HostPropertyStore, IID_IClassFactory, &object), 0);
    const Held<IClassFactory> factory(static_cast<IClassFactory*>(object));
    ASSERT_GE(factory->CreateInstance(nullptr, IID_IHostPropertyStore, &object), 0);
    const Held<IHostPropertyStore> store(static_cast<IHostPropertyStore*>(object));
    EXPECT_EQ(suite.objects(), 2u);
    EXPECT_EQ(factory->CreateInstance(store.get(), IID_IHostPropertyStore, &object), CLASS_E_NOAGGREGATION);
}

TEST(ObjectModule, SaysWhenItCanBeUnloaded) {
    const Suite suite;
    const auto canUnload = suite.module.require<HRESULT WINAPI()>("DllCanUnloadNow");
    EXPECT_EQ(canUnload(), S_OK);
    auto manager = suite.manager();
    EXPECT_EQ(manager->Shutdown(0), S_OK);
    auto store = suite.store();
    EXPECT_EQ(manager->Shutdown(0), S_FALSE);
    EXPECT_EQ(canUnload(), S_FALSE);
    store.reset();
    manager.reset();
    EXPECT_EQ(canUnload(), S_OK);
}

TEST(ObjectModule, IsReadyFromTheStart) {
    const Suite suite;
    HANDLE event = nullptr;
    ASSERT_GE(suite.module.require<HRESULT WINAPI(HANDLE*)>("DllGetEventHandle")(&event), 0);
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(event, 0), WAIT_OBJECT_0) << "the event stays signalled";
}

// A rich-edit control without a parent.
class RichEdit {
public:
    RichEdit()
        : library_("RICHED32.DLL", host::ExitCode::failure),
          window(CreateWindowExA(0, "RICHEDIT", "", WS_POPUP | ES_MULTILINE, 0, 0, 300, 200, nullptr, nullptr,
                                 nullptr, nullptr)) {}
    ~RichEdit() {
        if (IsWindow(window)) DestroyWindow(window);
    }
    RichEdit(const RichEdit&) = delete;
    RichEdit& operator=(const RichEdit&) = delete;

private:
    LoadedModule library_;

public:
    const HWND window;
};

TEST(RichText, ShowsRichTextAndGoesWithItsControl) {
    const Suite suite;
    const RichEdit control;
    ASSERT_TRUE(IsWindow(control.window));
    void* object = nullptr;
    ASSERT_GE(suite.manager()->CreateObject(&CLSID_HostRichText, nullptr, 5, &CLSID_HostRichText, &object),
              0);
    auto* const text = static_cast<IHostRichText*>(object);
    DWORD result = 77;
    EXPECT_LT(text->StreamRichText(2, "{\\rtf1 x}", &result), 0) << "not attached yet";
    ASSERT_GE(text->AttachRichEdit(control.window, nullptr), 0);
    EXPECT_NE(GetWindowLongA(control.window, GWL_STYLE) & LONG{ES_READONLY}, 0);

    // What follows the outermost group belongs to somebody else.
    constexpr const char* rtf =
        "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}}\\f0\\fs20 Gr\\'fc\\'dfe \\{\\b "
        "fett\\b0\\}}{\\rtf1 more}";
    EXPECT_GE(text->StreamRichText(2, rtf, &result), 0);
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(host::windowText(control.window),
              "Gr\xFC\xDF"
              "e {fett}");
    EXPECT_GE(text->StreamRichText(1, "schlicht", &result), 0);
    EXPECT_EQ(host::windowText(control.window), "schlicht");
    EXPECT_LT(text->StreamRichText(2, "no rich text", &result), 0);

    EXPECT_EQ(suite.objects(), 1u) << "the control holds it";
    DestroyWindow(control.window);
    EXPECT_EQ(suite.objects(), 0u);
}

TEST(RichText, LeavesTheReferenceWithTheCallerWhenItCannotAttach) {
    const Suite suite;
    const RichEdit control;
    const auto first = suite.make<IHostRichText>(CLSID_HostRichText, CLSID_HostRichText);
    const auto second = suite.make<IHostRichText>(CLSID_HostRichText, CLSID_HostRichText);
    EXPECT_LT(first->AttachRichEdit(nullptr, nullptr), 0);
    first->AddRef();  // for the control
    EXPECT_GE(first->AttachRichEdit(control.window, nullptr), 0);
    EXPECT_LT(first->AttachRichEdit(control.window, nullptr), 0);
    EXPECT_LT(second->AttachRichEdit(control.window, nullptr), 0);
    EXPECT_EQ(suite.objects(), 2u);
    DestroyWindow(control.window);
    EXPECT_EQ(suite.objects(), 2u) << "the callers hold both";
    DWORD result = 0;
    EXPECT_LT(first->StreamRichText(2, "{\\rtf1 x}", &result), 0) << "its control is gone";
}

}  // namespace
