#include "component/qxdlgsup.h"

#include "host/protocol.h"
#include "host/qxdlgsup/handlers.h"
#include "host/qxdlgsup/help_window.h"
#include "host/qxdlgsup/page_subclass.h"

namespace {

QXHandlers handlers{};

LRESULT tellFrame(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND frame = GetParent(page);
    return frame ? SendMessageA(frame, message, wParam, lParam) : 0;
}

// A box owned by the page alone would leave the frame's buttons enabled while it waits.
HWND ownerOf(HWND page) {
    const HWND frame = GetParent(page);
    return frame ? frame : page;
}

}  // namespace

extern "C" {

void WINAPI QXInstallHandlers(const QXHandlers* replacements) {
    handlers = replacements ? *replacements : QXHandlers{};
}

void WINAPI QXSubclassDialog(HWND page) {
    qxdlgsup::subclassPage(page);
}

void WINAPI QXSetWizButtons(HWND page, DWORD mask) {
    tellFrame(page, host::messageSetButtons, mask, reinterpret_cast<LPARAM>(page));
}

void WINAPI QXEnableWizButtons(HWND page, DWORD enable, DWORD disable) {
    tellFrame(page, host::messageEnableButtons, enable, static_cast<LPARAM>(disable));
}

void WINAPI QXEnableHomeButton(HWND page, BOOL enable) {
    tellFrame(page, host::messageEnableHome, static_cast<WPARAM>(enable != 0),
              reinterpret_cast<LPARAM>(page));
}

int WINAPI QXMessageBox(HWND page, const char* text, const char* caption, UINT style) {
    if (handlers.messageBox) {
        return handlers.messageBox(handlers.context, page, text ? text : "", caption ? caption : "", style);
    }
    return MessageBoxA(ownerOf(page), text, caption, style);
}

void WINAPI QXHelp(HWND page, DWORD topic) {
    const std::string text = qxdlgsup::helpText(topic);
    if (handlers.help) {
        handlers.help(handlers.context, page, topic, text.c_str());
    } else {
        qxdlgsup::showHelp(ownerOf(page), text);
    }
}

}  // extern "C"
