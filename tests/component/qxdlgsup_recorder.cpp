#include "qxdlgsup_recorder.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "component/qxdlgsup.h"
#include "component/wizard_protocol.h"

HostLog hostLog;

std::vector<std::string> HostLog::take() {
    return std::exchange(lines, {});
}

int HostLog::count(const std::string& beginning) const {
    return static_cast<int>(std::count_if(lines.begin(), lines.end(),
                                          [&](const auto& line) { return line.starts_with(beginning); }));
}

std::string utf8(const std::string& ansi) {
    std::string text;
    for (const char c : ansi) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0 | byte >> 6);
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return text;
}

namespace {

std::string hex(DWORD value) {
    char text[16];
    std::snprintf(text, sizeof text, "%X", static_cast<unsigned>(value));
    return text;
}

WNDPROC dialogProcedure = nullptr;

// Sees a page's messages before the page does.
LRESULT CALLBACK subclassed(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == wizard::beforeShowMessage) {
        hostLog.add("before show");
    }
    return CallWindowProcA(dialogProcedure, window, message, wParam, lParam);
}

}  // namespace

void WINAPI QXSubclassDialog(HWND page) {
    hostLog.add("subclass");
    if (const LONG_PTR before =
            SetWindowLongPtrA(page, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&subclassed))) {
        dialogProcedure = reinterpret_cast<WNDPROC>(before);
    }
}

void WINAPI QXSetWizButtons(HWND, DWORD mask) {
    hostLog.offered = mask;
    hostLog.add("buttons " + hex(mask));
}

void WINAPI QXEnableWizButtons(HWND, DWORD enable, DWORD disable) {
    hostLog.enabled = (hostLog.enabled | enable) & ~disable;
    hostLog.add("enable " + hex(enable) + " disable " + hex(disable));
}

void WINAPI QXEnableHomeButton(HWND, BOOL enable) {
    hostLog.home = enable != FALSE;
    hostLog.add(enable ? "home 1" : "home 0");
}

int WINAPI QXMessageBox(HWND, const char* text, const char* caption, UINT style) {
    hostLog.add("box " + utf8(caption) + " [" + hex(style) + "] " + utf8(text));
    if (hostLog.duringBox) {
        hostLog.duringBox();
    }
    if (hostLog.answers.empty()) {
        return IDOK;
    }
    const int answer = hostLog.answers.front();
    hostLog.answers.pop_front();
    return answer;
}

void WINAPI QXHelp(HWND, DWORD topic) {
    hostLog.add("help " + std::to_string(topic));
}
