#pragma once
#include <windows.h>

#include "CBaseDialog.h"
#include "PagePicture.h"

class ComponentUI;

// A wizard page: a modeless dialog within the host's frame window. The class does what all pages have in
// common; a page implements the steps below.
class CWizardWindow : public CBaseDialog {
public:
    LONG OnMessage(UINT message, WPARAM wParam, LPARAM lParam, BOOL* handled) override;

    // Creates the page's window in the owner's frame. Result: 0, or the system's error code.
    virtual int Create(ComponentUI* owner) = 0;
    // Closes the window and deletes the page.
    virtual void Destroy() = 0;
    // Shows the page as the frame's current one and passes `arg` to the frame; or hides it. Result: TRUE.
    virtual BOOL Show(BOOL show, DWORD arg);

    // Sends WM_CLOSE to the page's window and destroys it, if it exists; the page object remains.
    void CloseWindow();

protected:
    CWizardWindow() = default;
    ~CWizardWindow() = default;

    int CreatePage(ComponentUI* owner, WORD templateId);

    // The steps. The window exists in all of them; OnClose is called twice when WM_DESTROY follows WM_CLOSE.
    virtual void OnSetUp() = 0;
    virtual void OnActivate() = 0;
    virtual void OnLayOut(const RECT& client) = 0;
    // Handles a button of the frame or a control of the page. False for an unknown one.
    virtual bool OnCommand(WORD id) = 0;
    virtual void OnClose() {}

    // Arranges the controls for the window's size and repaints.
    void LayOut();
    HWND Control(int id) const { return ::GetDlgItem(Window(), id); }
    HWND Frame() const { return frameWindow_; }
    HINSTANCE Module() const;
    void OfferButtons(DWORD mask) const;  // and the home button
    // Hides this page and shows another.
    void SwitchTo(int index);
    // Notifies a page that it has been switched to.
    void ActivatePage(int index) const;
    // Whether the component shows this page; the second notifies the page shown, which may be another.
    bool IsCurrent() const;
    void ActivateCurrentPage() const;
    void LeaveComponent() const;

private:
    ComponentUI* component_ = nullptr;
    HWND frameWindow_ = nullptr;
    PagePicture picture_;
};
