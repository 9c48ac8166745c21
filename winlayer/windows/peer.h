#pragma once
#include <string>

#include "winlayer/include/windows.h"

namespace winlayer {

// What shows windows to a user. This one shows nothing (headless); a peer that draws derives from it and is
// set with Machine::windows.setPeer. It is told of changes after they happened and asks the layer for details
// (Windows::find, GetWindowRect, ...); it holds no behaviour of its own, but passes the user's input on
// through the operations of input.h. Every call comes on the thread of the windows, except wake().
class Peer {
public:
    Peer() = default;
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    virtual ~Peer() = default;

    // The window exists, with its class, parent, place and text; nothing was told of it before.
    virtual void created(HWND /*window*/) {}
    // The last call for this window; its children have gone before.
    virtual void destroyed(HWND /*window*/) {}
    // Place or size (relative to the parent's client area) is another.
    virtual void moved(HWND /*window*/) {}
    // The order among its siblings is another.
    virtual void restacked(HWND /*window*/) {}
    // The window's own visibility; it is seen only while all its parents are shown.
    virtual void shown(HWND /*window*/, bool /*visible*/) {}
    virtual void enabled(HWND /*window*/, bool /*enabled*/) {}
    virtual void textChanged(HWND /*window*/) {}
    virtual void fontChanged(HWND /*window*/) {}
    // The style or a control's own state: checked, pushed, default button, icon, progress, rich text.
    virtual void stateChanged(HWND /*window*/) {}
    // Null: no window of ours has the focus.
    virtual void focused(HWND /*window*/) {}
    // The window's surface was drawn on.
    virtual void painted(HWND /*window*/) {}

    // The part of the screen that windows may cover, in pixels.
    virtual RECT workArea() const { return {0, 0, 1024, 768}; }
    // The room in pixels that a text takes when it is drawn with its lines broken between words to `width`;
    // wider where a single word is. This one estimates, by the mean width of the font's letters.
    virtual SIZE textExtent(const std::string& text, const LOGFONTA& font, int width) const;

    // Writes what a window shows to a PNG file of the host; false when nothing is shown or it cannot be
    // written.
    virtual bool capture(HWND /*window*/, const std::string& /*file*/) { return false; }

    // Called at each look at the queue: passes input on that has come, without waiting.
    virtual void poll() {}
    // Waits until something may have come for the calling thread's queue: a message, input that the peer
    // passes on itself, or wake(). May return early.
    virtual void wait();
    // Ends a wait(); from any thread.
    virtual void wake() {}
};

}  // namespace winlayer
