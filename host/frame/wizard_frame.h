#pragma once
#include <string>

#include "host/frame/button_state.h"
#include "host/frame/frame_layout.h"

namespace host {

// Events of the frame, for a recorder. Called on the frame's thread, also while a page works. Texts are
// 8-bit.
class FrameEvents {
public:
    virtual ~FrameEvents() = default;
    virtual void pageShown(HWND /*page*/, WPARAM /*argument*/) {}
    virtual void buttonsChanged() {}
    virtual void progressRange(int /*low*/, int /*high*/) {}  // 0, 0: hides the progress
    virtual void progress(int /*position*/) {}
    virtual void status(const std::string& /*text*/) {}
    virtual void leaving() {}
};

// The wizard frame: a window with the buttons Home, Back, Next, Finish, Cancel and Help, a status line, a
// progress bar, and an area for a component's page, which it lays out. It handles the messages of
// host/protocol.h and sends button commands to the current page. Created and used on one thread.
class WizardFrame {
public:
    // Creates the hidden window; `instance` holds its resources. Throws Failure. `events` outlives the frame.
    WizardFrame(HINSTANCE instance, FrameEvents& events);
    ~WizardFrame();
    WizardFrame(const WizardFrame&) = delete;
    WizardFrame& operator=(const WizardFrame&) = delete;

    void show();
    HWND window() const { return window_; }
    // Null while there is none.
    HWND page() const { return page_; }
    const ButtonState& buttons() const { return buttons_; }
    // Whether the component is to be left: at its own request, by Home, or by closing a frame without a page.
    // It must then be destroyed, but not before its page has returned.
    bool left() const { return left_; }

    // Clicks a button; false when the page does not offer it or it is disabled.
    bool press(Button button);
    // Handles a message from the thread's queue.
    void dispatch(MSG& message);
    // Handles all waiting messages of the thread's queue.
    void dispatchWaiting();

private:
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR onMessage(UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR answer(LRESULT result);
    void initialise();
    void onActivate(bool active);
    void onCommand(WORD id);
    void command(Button button);
    void sendToPage(Button button);
    void leave();
    void setCurrentPage(HWND page, WPARAM argument);
    void layOutPage(HWND page);
    void setProgressRange(LPARAM range);
    void setStatus(const char* text);
    void showButtons(const ButtonState& before);
    void keepFocus();
    bool focusCanStay() const;
    void giveFocus(HWND control) const;
    HWND control(Button button) const;

    HWND window_ = nullptr;
    HWND page_ = nullptr;
    HWND lastFocus_ = nullptr;  // while another window is active
    HFONT headingFont_ = nullptr;
    POINT leastSize_{};
    FrameLayout layout_;
    ButtonState buttons_;
    FrameEvents& events_;
    int commandsUnderWay_ = 0;  // commands of the page on the stack
    bool pageArrives_ = false;  // the current page has not yet had the focus
    bool left_ = false;
};

}  // namespace host
