#pragma once
#include <string>

#include "winlayer/include/windows.h"

namespace winlayer {

// A display backend, which shows windows to a user. This one is headless; one that draws derives from it and
// is set with Machine::windows.setPeer. It is notified of changes after they happen and asks the layer for
// details (Windows::find, GetWindowRect, ...); it has no behaviour of its own, but passes the user's input on
// through input.h. Every call is on the windows' thread, except wake().
class Peer {
public:
    Peer() = default;
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    virtual ~Peer() = default;

    // The window exists, with its class, parent, position and text; the first call for it.
    virtual void created(HWND /*window*/) {}
    // The last call for this window; its children are destroyed already.
    virtual void destroyed(HWND /*window*/) {}
    // The position or size (relative to the parent's client area) has changed.
    virtual void moved(HWND /*window*/) {}
    // The order among its siblings has changed.
    virtual void restacked(HWND /*window*/) {}
    // The window's own visibility; the user sees it only while all its parents are visible.
    virtual void shown(HWND /*window*/, bool /*visible*/) {}
    virtual void enabled(HWND /*window*/, bool /*enabled*/) {}
    virtual void textChanged(HWND /*window*/) {}
    virtual void fontChanged(HWND /*window*/) {}
    // The style or a control's own state: checked, pushed, default button, icon, progress, rich text.
    virtual void stateChanged(HWND /*window*/) {}
    // Null: none of our windows has the focus.
    virtual void focused(HWND /*window*/) {}
    // The window's surface was drawn on.
    virtual void painted(HWND /*window*/) {}

    // The part of the screen that windows may cover, in pixels.
    virtual RECT workArea() const { return {0, 0, 1024, 768}; }
    // The size in pixels of a text whose lines are broken between words to `width`; wider if a single word
    // is. This one estimates it from the mean width of the font's letters.
    virtual SIZE textExtent(const std::string& text, const LOGFONTA& font, int width) const;

    // Writes a screenshot of a window to a PNG file of the host; false if nothing is shown or it cannot be
    // written.
    virtual bool capture(HWND /*window*/, const std::string& /*file*/) { return false; }

    // Called whenever the queue is checked: passes on pending input without waiting.
    virtual void poll() {}
    // Waits until the calling thread's queue may have something: a message, input that the backend passes on
    // itself, or wake(). May return early.
    virtual void wait();
    // Ends a wait(); from any thread.
    virtual void wake() {}
};

}  // namespace winlayer
