#pragma once
#include "windef.h"
#include "winuser_values.h"

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
};

struct CREATESTRUCTA {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCSTR lpszName;
    LPCSTR lpszClass;
    DWORD dwExStyle;
};

struct WINDOWPOS {
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};

// Sizes of windows, in pixels; WM_GETMINMAXINFO lets a window change them.
struct MINMAXINFO {
    POINT ptReserved;
    POINT ptMaxSize;
    POINT ptMaxPosition;
    POINT ptMinTrackSize;
    POINT ptMaxTrackSize;
};

struct STYLESTRUCT {
    DWORD styleOld;
    DWORD styleNew;
};

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};

// The header of a dialog template; the arrays after it are read from memory as they are.
#pragma pack(push, 2)
struct DLGTEMPLATE {
    DWORD style;
    DWORD dwExtendedStyle;
    WORD cdit;
    SHORT x;
    SHORT y;
    SHORT cx;
    SHORT cy;
};
#pragma pack(pop)
static_assert(sizeof(DLGTEMPLATE) == 18);
using LPCDLGTEMPLATEA = const DLGTEMPLATE*;

inline const HWND HWND_TOP = nullptr;
inline const HWND HWND_BOTTOM = reinterpret_cast<HWND>(1);
inline const HWND HWND_TOPMOST = reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1));

template <class Low, class High>
constexpr LONG MAKELONG(Low low, High high) {
    return static_cast<LONG>(LOWORD(low) | static_cast<DWORD>(LOWORD(high)) << 16);
}
template <class Low, class High>
constexpr WPARAM MAKEWPARAM(Low low, High high) {
    return static_cast<DWORD>(MAKELONG(low, high));
}
template <class Low, class High>
constexpr LPARAM MAKELPARAM(Low low, High high) {
    return static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
// A number in place of the name of a resource.
inline LPSTR MAKEINTRESOURCEA(WORD id) {
    return reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(id));
}
inline bool IS_INTRESOURCE(const void* name) {
    return reinterpret_cast<ULONG_PTR>(name) >> 16 == 0;
}
inline const LPSTR RT_BITMAP = MAKEINTRESOURCEA(2);
inline const LPSTR RT_DIALOG = MAKEINTRESOURCEA(5);
inline const LPSTR RT_STRING = MAKEINTRESOURCEA(6);
inline const LPSTR IDI_HAND = MAKEINTRESOURCEA(32513);
inline const LPSTR IDI_QUESTION = MAKEINTRESOURCEA(32514);
inline const LPSTR IDI_EXCLAMATION = MAKEINTRESOURCEA(32515);
inline const LPSTR IDI_ASTERISK = MAKEINTRESOURCEA(32516);

// Window classes.
ATOM WINAPI RegisterClassA(const WNDCLASSA* windowClass);
BOOL WINAPI UnregisterClassA(LPCSTR name, HINSTANCE instance);
int WINAPI GetClassNameA(HWND window, LPSTR buffer, int size);

// Windows and their tree.
HWND WINAPI CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y,
                            int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                            LPVOID parameter);
BOOL WINAPI DestroyWindow(HWND window);
BOOL WINAPI IsWindow(HWND window);
HWND WINAPI GetParent(HWND window);
HWND WINAPI GetWindow(HWND window, UINT which);
HWND WINAPI GetDlgItem(HWND dialog, int id);
int WINAPI GetDlgCtrlID(HWND window);
BOOL WINAPI IsChild(HWND parent, HWND window);

// Window data.
LONG WINAPI GetWindowLongA(HWND window, int index);
LONG_PTR WINAPI GetWindowLongPtrA(HWND window, int index);
LONG_PTR WINAPI SetWindowLongPtrA(HWND window, int index, LONG_PTR value);
BOOL WINAPI SetPropA(HWND window, LPCSTR name, HANDLE value);
HANDLE WINAPI GetPropA(HWND window, LPCSTR name);
HANDLE WINAPI RemovePropA(HWND window, LPCSTR name);
BOOL WINAPI SetWindowTextA(HWND window, LPCSTR text);
int WINAPI GetWindowTextA(HWND window, LPSTR buffer, int size);
int WINAPI GetWindowTextLengthA(HWND window);

// Visibility, input focus.
BOOL WINAPI ShowWindow(HWND window, int command);
BOOL WINAPI IsWindowVisible(HWND window);
BOOL WINAPI EnableWindow(HWND window, BOOL enable);
BOOL WINAPI IsWindowEnabled(HWND window);
HWND WINAPI SetFocus(HWND window);
HWND WINAPI GetFocus();
HWND WINAPI SetActiveWindow(HWND window);
HWND WINAPI GetActiveWindow();

// Geometry, in pixels.
BOOL WINAPI MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
BOOL WINAPI SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
BOOL WINAPI GetClientRect(HWND window, LPRECT rectangle);
BOOL WINAPI GetWindowRect(HWND window, LPRECT rectangle);
BOOL WINAPI ScreenToClient(HWND window, LPPOINT point);
int WINAPI MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);

// Painting.
BOOL WINAPI InvalidateRect(HWND window, const RECT* rectangle, BOOL erase);
BOOL WINAPI UpdateWindow(HWND window);
HDC WINAPI BeginPaint(HWND window, PAINTSTRUCT* paint);
BOOL WINAPI EndPaint(HWND window, const PAINTSTRUCT* paint);
HDC WINAPI GetDC(HWND window);
int WINAPI ReleaseDC(HWND window, HDC context);
// Only with DT_CALCRECT, which measures; the display backend draws text.
int WINAPI DrawTextA(HDC context, LPCSTR text, int length, LPRECT place, UINT format);

// Messages. PeekMessageA and GetMessageA first deliver the calling thread's pending sent messages. A null
// window means any, otherwise that window and its children.
LRESULT WINAPI SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI PostThreadMessageA(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI PeekMessageA(LPMSG message, HWND window, UINT first, UINT last, UINT flags);
BOOL WINAPI GetMessageA(LPMSG message, HWND window, UINT first, UINT last);
BOOL WINAPI TranslateMessage(const MSG* message);
LRESULT WINAPI DispatchMessageA(const MSG* message);
void WINAPI PostQuitMessage(int exitCode);
LRESULT WINAPI CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT WINAPI DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Dialogs.
HWND WINAPI CreateDialogParamA(HINSTANCE instance, LPCSTR templateName, HWND parent, DLGPROC procedure,
                               LPARAM parameter);
HWND WINAPI CreateDialogIndirectParamA(HINSTANCE instance, LPCDLGTEMPLATEA dialogTemplate, HWND parent,
                                       DLGPROC procedure, LPARAM parameter);
INT_PTR WINAPI DialogBoxParamA(HINSTANCE instance, LPCSTR templateName, HWND parent, DLGPROC procedure,
                               LPARAM parameter);
INT_PTR WINAPI DialogBoxIndirectParamA(HINSTANCE instance, LPCDLGTEMPLATEA dialogTemplate, HWND parent,
                                       DLGPROC procedure, LPARAM parameter);
BOOL WINAPI EndDialog(HWND dialog, INT_PTR result);
LRESULT WINAPI DefDlgProcA(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
BOOL WINAPI IsDialogMessageA(HWND dialog, LPMSG message);
BOOL WINAPI MapDialogRect(HWND dialog, LPRECT rectangle);
HWND WINAPI GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous);
UINT WINAPI GetDlgItemTextA(HWND dialog, int id, LPSTR buffer, int size);
BOOL WINAPI CheckDlgButton(HWND dialog, int id, UINT check);
UINT WINAPI IsDlgButtonChecked(HWND dialog, int id);
int WINAPI MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style);

// Resources.
int WINAPI LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int size);
