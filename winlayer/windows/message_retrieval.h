#pragma once
#include "winlayer/include/windows.h"

namespace winlayer {

// Selects messages of a window and its children (null: of all windows and the thread) in the range [first,
// last] (0, 0: any).
struct MessageFilter {
    HWND window = nullptr;
    UINT first = 0;
    UINT last = 0;

    bool passes(const MSG& message) const;
};

// Checks the calling thread's queue once, after delivering its pending sent messages: posted messages come
// first, then WM_QUIT, which passes every filter, then painting.
bool lookForMessage(const MessageFilter& filter, bool remove, MSG& message);
// Waits for a message and removes it from the queue.
void waitForMessage(const MessageFilter& filter, MSG& message);

// Posts WM_CHAR or WM_SYSCHAR for a key that has a character; false if it has none.
bool translateMessage(const MSG& message);
LRESULT dispatchMessage(const MSG& message);

}  // namespace winlayer
