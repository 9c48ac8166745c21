#pragma once
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "component/CDlgFloppy.h"
#include "component/ComponentUI.h"
#include "component/wizard_protocol.h"
#include "qxdlgsup_recorder.h"

// A window that speaks the frame's side of the protocol: it writes every private message into hostLog and
// gives the page that becomes current all of its client area.
class FakeFrame {
public:
    FakeFrame(int width, int height);
    ~FakeFrame();

    HWND window() const { return window_; }
    HWND page() const { return page_; }
    void resize(int width, int height);

    HFONT headingFont = nullptr;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT receive(UINT message, WPARAM wParam, LPARAM lParam);
    void placePage() const;

    HWND window_ = nullptr;
    HWND page_ = nullptr;
};

// The component in a fake frame, the product page shown.
class WizardTest : public testing::Test {
protected:
    WizardTest();
    ~WizardTest() override;

    void open();
    void close();
    // Presses a button of the frame, or a control, on the current page.
    void press(WORD command) { send(WM_COMMAND, command, 0); }
    LRESULT send(UINT message, WPARAM wParam, LPARAM lParam) {
        return SendMessageA(frame.page(), message, wParam, lParam);
    }
    // Dispatches what waits in the thread's queue.
    static void pump();
    HWND control(int id) const { return GetDlgItem(frame.page(), id); }
    std::string text(int control) const;
    // Of a control in the page's client area, as "left,top widthxheight".
    std::string place(int control) const;
    void goToOptions();
    void goToFloppy();
    CDlgFloppy& floppy() const { return static_cast<CDlgFloppy&>(*ui->Page(ComponentUI::floppyPage)); }

    FakeFrame frame{500, 300};
    ComponentUI* ui = nullptr;
};

using Lines = std::vector<std::string>;
