#pragma once
#include "winlayer/include/windows.h"

namespace winlayer {

// What a look at the queue asks for: messages of a window and its children (null: of any window and of the
// thread), in [first, last] (0, 0: any).
struct MessageFilter {
    HWND window = nullptr;
    UINT first = 0;
    UINT last = 0;

    bool passes(const MSG& message) const;
};

// One look at the calling thread's queue, after its pending sent messages were delivered: posted messages
// come first, then the end of the loop (WM_QUIT, which passes every filter), painting.
bool lookForMessage(const MessageFilter& filter, bool remove, MSG& message);
// Waits for a message and takes it.
void waitForMessage(const MessageFilter& filter, MSG& message);

// WM_CHAR or WM_SYSCHAR for a key that stands for a character; false when it stands for none.
bool translateMessage(const MSG& message);
LRESULT dispatchMessage(const MSG& message);

}  // namespace winlayer
