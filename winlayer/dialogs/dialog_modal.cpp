#include "winlayer/base/last_error.h"
#include "winlayer/dialogs/dialog.h"
#include "winlayer/windows/message_queue.h"
#include "winlayer/windows/message_retrieval.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_create.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

// A dialog without WS_VISIBLE is shown when its thread is idle.
void showWhenIdle(const Window& dialog) {
    if (!dialog.has(WS_VISIBLE) && !dialog.dialog->ended) {
        showWindow(dialog.handle, SW_SHOW);
        updateWindow(dialog.handle);
    }
}

// Runs until EndDialog, or until the dialog is destroyed or WM_QUIT arrives, which is posted again for the
// outer loop.
void runLoop(const Window& dialog, bool shownAtOnce) try {
    if (shownAtOnce) {
        showWhenIdle(dialog);
    }
    MSG message{};
    while (findWindow(dialog.handle) != nullptr && !dialog.dialog->ended) {
        if (!lookForMessage({}, true, message)) {
            showWhenIdle(dialog);
            waitForMessage({}, message);
        }
        if (message.message == WM_QUIT) {
            MessageQueues::current().postQuit(GetCurrentThreadId(), static_cast<int>(message.wParam));
            return;
        }
        if (!handleDialogMessage(dialog.handle, message)) {
            translateMessage(message);
            dispatchMessage(message);
        }
    }
} catch (const std::bad_alloc&) {
    dialog.dialog->result = outOfMemory(INT_PTR{-1});
}

void giveOwnerBack(HWND owner, bool wasEnabled) {
    if (wasEnabled && findWindow(owner) != nullptr) {
        enableWindow(owner, true);
    }
}

}  // namespace

INT_PTR runDialog(const DialogTemplate& source, const DialogRequest& request) {
    if (request.parent != nullptr && findWindowOrSetLastError(request.parent) == nullptr) {
        return 0;
    }
    const HWND owner = request.parent != nullptr ? rootOf(request.parent) : nullptr;
    const bool ownerWasEnabled = owner != nullptr && !findWindow(owner)->has(WS_DISABLED);
    DialogRequest own = request;
    own.parent = owner;
    DialogTemplate popup = source;
    popup.style &= ~WS_VISIBLE;
    if (ownerWasEnabled) {
        enableWindow(owner, false);
    }
    const HWND handle = createDialog(popup, own);
    const auto dialog = findWindow(handle);
    if (dialog == nullptr) {
        giveOwnerBack(owner, ownerWasEnabled);
        return -1;
    }
    dialog->dialog->ownerWasEnabled = ownerWasEnabled;
    runLoop(*dialog, (source.style & WS_VISIBLE) != 0);
    const INT_PTR result = dialog->dialog != nullptr ? dialog->dialog->result : -1;
    giveOwnerBack(owner, ownerWasEnabled);
    if (findWindow(handle) != nullptr) {
        destroyWindow(handle);
    }
    return result;
}

bool endDialog(HWND handle, INT_PTR result) {
    const auto window = findWindowOrSetLastError(handle);
    if (window == nullptr) {
        return false;
    }
    if (window->dialog == nullptr) {
        SetLastError(ERROR_WINDOW_NOT_DIALOG);
        return false;
    }
    window->dialog->ended = true;
    window->dialog->result = result;
    giveOwnerBack(window->owner, window->dialog->ownerWasEnabled);
    showWindow(handle, SW_HIDE);
    postMessage(handle, WM_NULL);  // wakes a waiting loop
    return true;
}

}  // namespace winlayer
