#include "CWizardWindow.h"

#include "ComponentUI.h"
#include "qxdlgsup.h"
#include "resources/resource.h"
#include "wizard_protocol.h"

LONG CWizardWindow::OnMessage(UINT message, WPARAM wParam, LPARAM, BOOL* handled) {
    // A handler may dispatch messages, and one of them may close the component.
    const ComponentUI::InUse inUse(*component_);
    *handled = TRUE;
    switch (message) {
        case WM_INITDIALOG:
            QXSubclassDialog(Window());
            picture_.Load(Module());
            OnSetUp();
            break;
        case WM_ACTIVATE:
            OnActivate();
            break;
        case WM_SIZE:
            LayOut();
            break;
        case WM_PAINT:
            picture_.Paint(Window());
            break;
        case WM_CLOSE:
        case WM_DESTROY:
            OnClose();
            picture_.Release();
            ::EndDialog(Window(), 0);
            break;
        case WM_COMMAND:
            *handled = OnCommand(LOWORD(wParam)) ? TRUE : FALSE;
            break;
        default:
            *handled = FALSE;
    }
    return *handled ? 1 : 0;
}

int CWizardWindow::CreatePage(ComponentUI* owner, WORD templateId) {
    component_ = owner;
    frameWindow_ = owner->FrameWindow();
    return CreateDialogWindow(owner->ModuleInstance(), frameWindow_, templateId, FALSE);
}

BOOL CWizardWindow::Show(BOOL show, DWORD arg) {
    if (show) {
        ::SendMessageA(Window(), wizard::beforeShowMessage, 0, 0);
        ::SendMessageA(frameWindow_, wizard::currentPageMessage, arg, reinterpret_cast<LPARAM>(Window()));
    }
    ::ShowWindow(Window(), show ? SW_SHOW : SW_HIDE);
    return TRUE;
}

void CWizardWindow::LayOut() {
    RECT client{};
    ::GetClientRect(Window(), &client);
    OnLayOut(client);
    ::InvalidateRect(Window(), nullptr, TRUE);
}

void CWizardWindow::CloseWindow() {
    if (HasWindow()) {
        ::SendMessageA(Window(), WM_CLOSE, 0, 0);
    }
    if (HasWindow()) {
        ::DestroyWindow(Window());
    }
}

HINSTANCE CWizardWindow::Module() const {
    return component_->ModuleInstance();
}

void CWizardWindow::OfferButtons(DWORD mask) const {
    QXSetWizButtons(Window(), mask);
    QXEnableHomeButton(Window(), TRUE);
}

void CWizardWindow::SwitchTo(int index) {
    Show(FALSE, 0);
    component_->ShowPage(index, 0);
}

void CWizardWindow::ActivatePage(int index) const {
    if (const CWizardWindow* page = component_->Page(index)) {
        ::SendMessageA(page->Window(), WM_ACTIVATE, WA_ACTIVE, 0);
    }
}

bool CWizardWindow::IsCurrent() const {
    return component_->Page(component_->CurrentPage()) == this;
}

void CWizardWindow::ActivateCurrentPage() const {
    ActivatePage(component_->CurrentPage());
}

void CWizardWindow::LeaveComponent() const {
    ::PostMessageA(frameWindow_, wizard::leaveMessage, 0, 0);
}
