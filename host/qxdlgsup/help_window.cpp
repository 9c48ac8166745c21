#include "host/qxdlgsup/help_window.h"

#include "host/qxdlgsup/help_resources.h"
#include "host/qxdlgsup/instance.h"

namespace qxdlgsup {

namespace {

constexpr int longestString = 4098;  // a resource string has up to 4097 characters

std::string loadString(UINT id) {
    std::string text(longestString, '\0');
    text.resize(static_cast<std::size_t>(LoadStringA(instance(), id, text.data(), longestString)));
    return text;
}

INT_PTR CALLBACK helpProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            SetWindowTextA(GetDlgItem(dialog, CONTROL_HELP_TEXT),
                           reinterpret_cast<const std::string*>(lParam)->c_str());
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDCANCEL || LOWORD(wParam) == IDOK) EndDialog(dialog, 0);
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

std::string helpText(DWORD topic) {
    const std::string text = loadString(topic);
    return text.empty() ? loadString(STRING_NO_TOPIC) : text;
}

void showHelp(HWND owner, const std::string& text) {
    DialogBoxParamA(instance(), MAKEINTRESOURCEA(DIALOG_HELP), owner, helpProcedure,
                    reinterpret_cast<LPARAM>(&text));
}

}  // namespace qxdlgsup
