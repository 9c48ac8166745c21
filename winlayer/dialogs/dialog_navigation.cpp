#include "winlayer/dialogs/dialog_navigation.h"

#include <algorithm>

#include "winlayer/base/system_settings.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

bool isUsable(const Window& window) {
    return window.has(WS_VISIBLE) && !window.has(WS_DISABLED);
}

bool hasStyle(HWND handle, DWORD style) {
    const auto window = findWindow(handle);
    return window != nullptr && window->has(style);
}

void collect(const Window& parent, std::vector<HWND>& controls) {
    for (const HWND handle : parent.children) {
        const auto child = findWindow(handle);
        if (child == nullptr || !child->has(WS_VISIBLE)) {
            continue;
        }
        if ((child->exStyle & WS_EX_CONTROLPARENT) == 0) {
            controls.push_back(handle);
        } else if (!child->has(WS_DISABLED)) {
            collect(*child, controls);
        }
    }
}

// The first control that passes the test, starting after (before) `from` and wrapping around.
template <class Test>
HWND walkRound(const std::vector<HWND>& controls, HWND from, bool backwards, Test test) {
    const std::size_t count = controls.size();
    const auto place = std::find(controls.begin(), controls.end(), from);
    const bool known = place != controls.end();
    std::size_t at = known ? static_cast<std::size_t>(place - controls.begin()) : (backwards ? 0 : count - 1);
    for (std::size_t i = 0; i < count; ++i) {
        at = backwards ? (at + count - 1) % count : (at + 1) % count;
        if (test(controls[at])) {
            return controls[at];
        }
    }
    return nullptr;
}

char lowerCase(char letter) {
    UINT codePage = SystemSettings::current().ansiCodePage;
    const auto byte = static_cast<unsigned char>(letter);
    const bool latin = codePage == 1252 && byte >= 0xC0 && byte <= 0xDE && byte != 0xD7;
    return (byte >= 'A' && byte <= 'Z') || latin ? static_cast<char>(byte + 0x20) : letter;
}

bool means(const Window& control, char mnemonic) {
    if (!isUsable(control)) {
        return false;
    }
    const LRESULT code = sendMessage(control.handle, WM_GETDLGCODE);
    const bool label = (code & (DLGC_STATIC | DLGC_BUTTON)) != 0;
    const bool plain = (code & DLGC_STATIC) != 0 && control.has(SS_NOPREFIX);
    return label && !plain && mnemonicOf(textOf(control.handle)) == mnemonic;
}

}  // namespace

std::vector<HWND> groupOf(const Window& control) {
    const std::vector<HWND>& siblings = siblingsOf(control);
    const auto place = std::find(siblings.begin(), siblings.end(), control.handle);
    auto first = place;
    while (first != siblings.begin() && !hasStyle(*first, WS_GROUP)) {
        --first;
    }
    const auto last =
        std::find_if(place + 1, siblings.end(), [](HWND handle) { return hasStyle(handle, WS_GROUP); });
    return {first, last};
}

HWND nextGroupItem(const Window& control, bool previous) {
    const HWND next = walkRound(groupOf(control), control.handle, previous, [](HWND handle) {
        const auto window = findWindow(handle);
        return window != nullptr && isUsable(*window);
    });
    return next != nullptr ? next : control.handle;
}

std::vector<HWND> controlsOf(const Window& dialog) {
    std::vector<HWND> controls;
    collect(dialog, controls);
    return controls;
}

HWND nextTabItem(const Window& dialog, HWND control, bool previous) {
    const HWND next = walkRound(controlsOf(dialog), control, previous, [](HWND handle) {
        const auto window = findWindow(handle);
        return window != nullptr && isUsable(*window) && window->has(WS_TABSTOP);
    });
    return next != nullptr ? next : control;
}

char mnemonicOf(const std::string& text) {
    for (std::size_t i = text.find('&'); i != std::string::npos && i + 1 < text.size();
         i = text.find('&', i + 2)) {
        if (text[i + 1] != '&') {
            return lowerCase(text[i + 1]);
        }
    }
    return 0;
}

// A label's mnemonic means the next control.
HWND controlWithMnemonic(const Window& dialog, HWND from, char mnemonic) {
    const char wanted = lowerCase(mnemonic);
    const HWND found = walkRound(controlsOf(dialog), from, false, [&](HWND handle) {
        const auto window = findWindow(handle);
        return window != nullptr && means(*window, wanted);
    });
    if (found == nullptr || (sendMessage(found, WM_GETDLGCODE) & DLGC_STATIC) == 0) {
        return found;
    }
    return nextTabItem(dialog, found, false);
}

}  // namespace winlayer
