#include "entry_points.h"

#include <commctrl.h>

#include "CDlgAd.h"
#include "CDlgFloppy.h"
#include "CDlgInit.h"
#include "ComponentUI.h"
#include "HostBroker.h"
#include "registration.h"

namespace {

HINSTANCE moduleInstance = nullptr;

template <class Page>
CWizardWindow* makePage() {
    return new Page;
}

constexpr ComponentUI::PageMakers pageMakers = {makePage<CDlgAd>, makePage<CDlgInit>, makePage<CDlgFloppy>};

}  // namespace

void AttachLibrary(HINSTANCE module) {
    moduleInstance = module;
    ::InitCommonControls();
    hostBroker.Start();
}

void DetachLibrary(bool processEnds) {
    if (!processEnds) {
        hostBroker.Stop();
    }
}

DWORD_PTR WINAPI CreateComponentUI(HWND frame, DWORD) {
    ComponentUI* ui = nullptr;
    try {
        ui = new ComponentUI(moduleInstance, frame, pageMakers);
        ui->ShowPage(ComponentUI::productPage, 0);
    } catch (...) {
        // The host gets the object even without its page; when memory runs out there is no object.
    }
    return reinterpret_cast<DWORD_PTR>(ui);
}

DWORD_PTR WINAPI CreateConfigUI(DWORD, DWORD) {
    return 0;
}

BOOL WINAPI DestroyComponentUI(ComponentUI* ui, DWORD) {
    if (ui != nullptr) {
        ui->Close();
    }
    return 1;
}

HRESULT WINAPI DllRegisterServer() {
    try {
        registration::Register(moduleInstance);
    } catch (...) {
        // Not reported, like all failures of the property store.
    }
    return S_OK;
}

HRESULT WINAPI DllUnregisterServer() {
    registration::Unregister();
    return S_OK;
}
