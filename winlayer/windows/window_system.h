#pragma once
#include <array>
#include <map>
#include <memory>

#include "winlayer/windows/peer.h"
#include "winlayer/windows/window_table.h"

namespace winlayer {

// A device context on a window's surface, which lives as long as the context.
struct WindowContext {
    HWND window = nullptr;
    std::shared_ptr<Surface> surface;
};

// The windows of a machine. A machine destroyed with open windows drops them without a message. Thread rule:
// windows, classes and focus belong to the thread that works with windows; other threads may post to it.
class Windows {
public:
    // The current machine's.
    static Windows& current();

    std::shared_ptr<Window> find(HWND window) const { return table.find(window); }
    // Existing windows, and device contexts on windows.
    std::size_t count() const { return table.count(); }
    std::size_t contextCount() const { return contexts.size(); }

    // Sets the display backend; null, the default, shows nothing. Not owned. Set it before the first window.
    void setPeer(Peer* peer) { peer_ = peer != nullptr ? peer : &headless_; }
    Peer& peer() const { return *peer_; }

    WindowTable table;
    WindowClasses classes;
    std::vector<HWND> topLevel;  // top-level windows, topmost first
    HWND focus = nullptr;
    HWND active = nullptr;
    HWND capture = nullptr;
    std::map<HDC, WindowContext> contexts;
    POINT cursor{};                    // last position of the mouse, on the screen
    std::array<bool, 256> keysDown{};  // by virtual key, as of the last message taken from the queue

private:
    Peer headless_;
    Peer* peer_ = &headless_;
};

inline Windows& windows() {
    return Windows::current();
}

}  // namespace winlayer
