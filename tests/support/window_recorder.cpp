#include "support/window_recorder.h"

#include <algorithm>
#include <map>

WindowRecorder* WindowRecorder::current = nullptr;

WindowRecorder::WindowRecorder(const char* className) : className_(className) {
    WNDCLASSA wanted{};
    wanted.lpfnWndProc = procedure;
    wanted.hInstance = GetModuleHandleA(nullptr);
    wanted.lpszClassName = className_.c_str();
    RegisterClassA(&wanted);
    current = this;
}

WindowRecorder::~WindowRecorder() {
    current = nullptr;
    UnregisterClassA(className_.c_str(), GetModuleHandleA(nullptr));
}

HWND WindowRecorder::create(DWORD style, const RECT& place, HWND parent, int id, DWORD exStyle) {
    return CreateWindowExA(exStyle, className_.c_str(), "", style, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr),
                           nullptr);
}

LRESULT CALLBACK WindowRecorder::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (current != nullptr) {
        current->entries_.push_back({window, message, wParam, lParam});
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

std::string WindowRecorder::take(const std::vector<UINT>& wanted, HWND window) {
    static const std::map<UINT, std::string> names = {
        {WM_NCCREATE, "nccreate"},
        {WM_CREATE, "create"},
        {WM_SIZE, "size"},
        {WM_MOVE, "move"},
        {WM_SHOWWINDOW, "show"},
        {WM_DESTROY, "destroy"},
        {WM_NCDESTROY, "ncdestroy"},
        {WM_SETFOCUS, "focus"},
        {WM_KILLFOCUS, "nofocus"},
        {WM_ENABLE, "enable"},
        {WM_ERASEBKGND, "erase"},
        {WM_PAINT, "paint"},
        {WM_SETTEXT, "text"},
        {WM_COMMAND, "command"},
        {WM_WINDOWPOSCHANGED, "changed"},
        {WM_WINDOWPOSCHANGING, "changing"},
        {WM_ACTIVATE, "activate"},
    };
    std::string text;
    for (const Entry& entry : entries_) {
        const bool asked = std::find(wanted.begin(), wanted.end(), entry.message) != wanted.end();
        if (asked && (window == nullptr || entry.window == window)) {
            text += (text.empty() ? "" : " ") + names.at(entry.message);
        }
    }
    entries_.clear();
    return text;
}

void pumpMessages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}
