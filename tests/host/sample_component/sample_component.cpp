#include <windows.h>

#include <memory>
#include <string>

#include "host/frame/property_store.h"
#include "pages.h"

namespace {

HINSTANCE module = nullptr;

std::string path() {
    char text[MAX_PATH + 1]{};
    GetModuleFileNameA(module, text, MAX_PATH);
    return text;
}

host::PropertyStore store() {
    const std::string self = path();
    return host::PropertyStore(self.substr(0, self.rfind('\\') + 1) + "QXPM.dll");
}

}  // namespace

extern "C" DWORD_PTR WINAPI CreateComponentUI(HWND frame, DWORD) {
    auto pages = std::make_unique<Pages>();
    pages->module = module;
    pages->frame = frame;
    pages->show(nullptr);
    return reinterpret_cast<DWORD_PTR>(pages.release());
}

extern "C" DWORD_PTR WINAPI DestroyComponentUI(DWORD_PTR component, DWORD) {
    const std::unique_ptr<Pages> pages(reinterpret_cast<Pages*>(component));
    pages->destroy();
    return 1;
}

extern "C" HRESULT WINAPI DllRegisterServer() {
    const std::string self = path();
    store().setValue("Modules", "QXSample",
                     "5,1,0,30," + self + "," + self.substr(0, self.size() - 3) + "bmp");
    return S_OK;
}

extern "C" HRESULT WINAPI DllUnregisterServer() {
    store().deleteValue("Modules", "QXSample");
    return S_OK;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE self, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) module = self;
    return TRUE;
}
