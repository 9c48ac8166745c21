#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "state.h"

namespace {

bool same(const GUID& a, const GUID& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Interface>
class Object : public Interface {
public:
    Object() { ++state().liveObjects; }
    virtual ~Object() { --state().liveObjects; }
    HRESULT WINAPI QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG WINAPI AddRef() override { return ++references_; }
    ULONG WINAPI Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

private:
    ULONG references_ = 1;
};

std::map<std::string, std::string>& values() {
    static std::map<std::string, std::string> all;  // by section and name
    return all;
}

class Store final : public Object<IHostPropertyStore> {
public:
    HRESULT WINAPI Open(const char* section, int flag) override {
        note("open " + std::string(section) + " " + std::to_string(flag));
        section_ = std::string(section) + "/";
        return state().openResult;
    }
    HRESULT WINAPI EnumerateValue(DWORD, char*, DWORD*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetValue(const char* name, char* buffer, DWORD* size) override {
        const auto found = values().find(section_ + name);
        std::memset(buffer, '#', *size);  // what is not written is not to be read
        if (found == values().end()) {
            return E_FAIL;
        }
        std::memcpy(buffer, found->second.c_str(), std::min<std::size_t>(*size, found->second.size() + 1));
        return S_OK;
    }
    HRESULT WINAPI SetValue(const char* name, const char* value) override {
        note("set " + section_ + name + "=" + value);
        values()[section_ + name] = value;
        return S_OK;
    }
    HRESULT WINAPI DeleteValue(const char* name) override {
        note("delete " + section_ + name);
        return values().erase(section_ + name) != 0 ? S_OK : E_FAIL;
    }

private:
    std::string section_;
};

class RichText final : public Object<IHostRichText> {
public:
    HRESULT WINAPI AttachRichEdit(HWND control, HINSTANCE) override {
        note("attach " + std::to_string(GetDlgCtrlID(control)));
        keep(this);
        return S_OK;
    }
    HRESULT WINAPI StreamRichText(int format, const char* text, DWORD* result) override {
        note("stream " + std::to_string(format) + " " + std::string(text, 6));
        *result = 0;
        keep(nullptr);
        return S_OK;
    }

private:
    // In the control's place: has the object that was attached last until it has been given its text. It is
    // no longer the page's, and so not counted.
    static void keep(RichText* object) {
        struct Release {
            void operator()(RichText* kept) const {
                ++state().liveObjects;
                kept->Release();
            }
        };
        static std::unique_ptr<RichText, Release> attached;
        attached.reset(object);
        state().liveObjects -= object != nullptr ? 1 : 0;
    }
};

class Manager final : public Object<IHostManager> {
public:
    HRESULT WINAPI CountObjects(DWORD*) override { return E_NOTIMPL; }
    HRESULT WINAPI CreateObject(const GUID* classId, IUnknown* outer, DWORD context, const GUID* interfaceId,
                                void** object) override {
        note("create " + std::string(outer == nullptr ? "alone " : "within another ") +
             std::to_string(context));
        return makeObject(*classId, *interfaceId, object);
    }
    HRESULT WINAPI Shutdown(int flag) override {
        note("shutdown " + std::to_string(flag));
        return state().shutdownResult;
    }
};

}  // namespace

HRESULT makeObject(const GUID& classId, const GUID& interfaceId, void** object) {
    if (same(classId, CLSID_HostPropertyStore) && same(interfaceId, IID_IHostPropertyStore)) {
        *object = static_cast<IHostPropertyStore*>(new Store);
    } else if (same(classId, CLSID_HostManager) && same(interfaceId, IID_IHostManager)) {
        *object = static_cast<IHostManager*>(new Manager);
    } else if (same(classId, CLSID_HostRichText) && same(interfaceId, CLSID_HostRichText)) {
        *object = static_cast<IHostRichText*>(new RichText);
    } else {
        return E_NOINTERFACE;
    }
    return S_OK;
}
