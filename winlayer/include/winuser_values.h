#pragma once
#include "windef.h"

// The numbers of winuser.h: styles, messages, notifications, keys.

// Window styles.
inline constexpr DWORD WS_OVERLAPPED = 0x00000000;
inline constexpr DWORD WS_POPUP = 0x80000000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD WS_DISABLED = 0x08000000;
inline constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
inline constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_BORDER = 0x00800000;
inline constexpr DWORD WS_DLGFRAME = 0x00400000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_THICKFRAME = 0x00040000;
inline constexpr DWORD WS_GROUP = 0x00020000;
inline constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
inline constexpr DWORD WS_TABSTOP = 0x00010000;
inline constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;
inline constexpr DWORD WS_OVERLAPPEDWINDOW =
    WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;

inline constexpr DWORD WS_EX_DLGMODALFRAME = 0x00000001;
inline constexpr DWORD WS_EX_NOPARENTNOTIFY = 0x00000004;
inline constexpr DWORD WS_EX_CLIENTEDGE = 0x00000200;
inline constexpr DWORD WS_EX_CONTROLPARENT = 0x00010000;
inline constexpr DWORD WS_EX_STATICEDGE = 0x00020000;

inline constexpr UINT CS_GLOBALCLASS = 0x4000;
inline constexpr int CW_USEDEFAULT = static_cast<int>(0x80000000);

// Dialog styles.
inline constexpr DWORD DS_ABSALIGN = 0x0001;
inline constexpr DWORD DS_3DLOOK = 0x0004;
inline constexpr DWORD DS_NOFAILCREATE = 0x0010;
inline constexpr DWORD DS_SETFONT = 0x0040;
inline constexpr DWORD DS_MODALFRAME = 0x0080;
inline constexpr DWORD DS_CONTROL = 0x0400;
inline constexpr DWORD DS_CENTER = 0x0800;

// Window data by offset.
inline constexpr int GWL_STYLE = -16;
inline constexpr int GWL_EXSTYLE = -20;
inline constexpr int GWLP_WNDPROC = -4;
inline constexpr int GWLP_HINSTANCE = -6;
inline constexpr int GWLP_HWNDPARENT = -8;
inline constexpr int GWLP_ID = -12;
inline constexpr int GWLP_USERDATA = -21;
inline constexpr int DLGWINDOWEXTRA = 30;
inline constexpr int DWLP_MSGRESULT = 0;
inline constexpr int DWLP_DLGPROC = sizeof(LRESULT);
inline constexpr int DWLP_USER = 2 * sizeof(LRESULT);

inline constexpr UINT GW_HWNDFIRST = 0;
inline constexpr UINT GW_HWNDLAST = 1;
inline constexpr UINT GW_HWNDNEXT = 2;
inline constexpr UINT GW_HWNDPREV = 3;
inline constexpr UINT GW_OWNER = 4;
inline constexpr UINT GW_CHILD = 5;

inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOWNOACTIVATE = 4;
inline constexpr int SW_SHOW = 5;
inline constexpr int SW_SHOWNA = 8;

inline constexpr UINT SWP_NOSIZE = 0x0001;
inline constexpr UINT SWP_NOMOVE = 0x0002;
inline constexpr UINT SWP_NOZORDER = 0x0004;
inline constexpr UINT SWP_NOREDRAW = 0x0008;
inline constexpr UINT SWP_NOACTIVATE = 0x0010;
inline constexpr UINT SWP_FRAMECHANGED = 0x0020;
inline constexpr UINT SWP_SHOWWINDOW = 0x0040;
inline constexpr UINT SWP_HIDEWINDOW = 0x0080;

inline constexpr WPARAM SIZE_RESTORED = 0;
inline constexpr WORD WA_INACTIVE = 0;
inline constexpr WORD WA_ACTIVE = 1;

// Messages.
inline constexpr UINT WM_NULL = 0x0000;
inline constexpr UINT WM_CREATE = 0x0001;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_MOVE = 0x0003;
inline constexpr UINT WM_SIZE = 0x0005;
inline constexpr UINT WM_ACTIVATE = 0x0006;
inline constexpr UINT WM_SETFOCUS = 0x0007;
inline constexpr UINT WM_KILLFOCUS = 0x0008;
inline constexpr UINT WM_ENABLE = 0x000A;
inline constexpr UINT WM_SETTEXT = 0x000C;
inline constexpr UINT WM_GETTEXT = 0x000D;
inline constexpr UINT WM_GETTEXTLENGTH = 0x000E;
inline constexpr UINT WM_PAINT = 0x000F;
inline constexpr UINT WM_CLOSE = 0x0010;
inline constexpr UINT WM_QUIT = 0x0012;
inline constexpr UINT WM_ERASEBKGND = 0x0014;
inline constexpr UINT WM_SHOWWINDOW = 0x0018;
inline constexpr UINT WM_CANCELMODE = 0x001F;
inline constexpr UINT WM_GETMINMAXINFO = 0x0024;
inline constexpr UINT WM_NEXTDLGCTL = 0x0028;
inline constexpr UINT WM_SETFONT = 0x0030;
inline constexpr UINT WM_GETFONT = 0x0031;
inline constexpr UINT WM_WINDOWPOSCHANGING = 0x0046;
inline constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
inline constexpr UINT WM_STYLECHANGING = 0x007C;
inline constexpr UINT WM_STYLECHANGED = 0x007D;
inline constexpr UINT WM_NCCREATE = 0x0081;
inline constexpr UINT WM_NCDESTROY = 0x0082;
inline constexpr UINT WM_GETDLGCODE = 0x0087;
inline constexpr UINT WM_KEYDOWN = 0x0100;
inline constexpr UINT WM_KEYUP = 0x0101;
inline constexpr UINT WM_CHAR = 0x0102;
inline constexpr UINT WM_SYSKEYDOWN = 0x0104;
inline constexpr UINT WM_SYSKEYUP = 0x0105;
inline constexpr UINT WM_SYSCHAR = 0x0106;
inline constexpr UINT WM_INITDIALOG = 0x0110;
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_CTLCOLORMSGBOX = 0x0132;
inline constexpr UINT WM_CTLCOLORSTATIC = 0x0138;
inline constexpr UINT WM_MOUSEMOVE = 0x0200;
inline constexpr UINT WM_LBUTTONDOWN = 0x0201;
inline constexpr UINT WM_LBUTTONUP = 0x0202;
inline constexpr UINT WM_CAPTURECHANGED = 0x0215;
inline constexpr UINT WM_USER = 0x0400;
inline constexpr UINT WM_APP = 0x8000;

inline constexpr UINT DM_GETDEFID = WM_USER + 0;
inline constexpr UINT DM_SETDEFID = WM_USER + 1;
inline constexpr WORD DC_HASDEFID = 0x534B;

inline constexpr UINT PM_NOREMOVE = 0;
inline constexpr UINT PM_REMOVE = 1;
inline constexpr WPARAM MK_LBUTTON = 0x0001;

inline constexpr LRESULT DLGC_WANTARROWS = 0x0001;
inline constexpr LRESULT DLGC_WANTTAB = 0x0002;
inline constexpr LRESULT DLGC_WANTALLKEYS = 0x0004;
inline constexpr LRESULT DLGC_HASSETSEL = 0x0008;
inline constexpr LRESULT DLGC_DEFPUSHBUTTON = 0x0010;
inline constexpr LRESULT DLGC_UNDEFPUSHBUTTON = 0x0020;
inline constexpr LRESULT DLGC_RADIOBUTTON = 0x0040;
inline constexpr LRESULT DLGC_WANTCHARS = 0x0080;
inline constexpr LRESULT DLGC_STATIC = 0x0100;
inline constexpr LRESULT DLGC_BUTTON = 0x2000;

// Buttons.
inline constexpr DWORD BS_PUSHBUTTON = 0x00;
inline constexpr DWORD BS_DEFPUSHBUTTON = 0x01;
inline constexpr DWORD BS_CHECKBOX = 0x02;
inline constexpr DWORD BS_AUTOCHECKBOX = 0x03;
inline constexpr DWORD BS_RADIOBUTTON = 0x04;
inline constexpr DWORD BS_GROUPBOX = 0x07;
inline constexpr DWORD BS_AUTORADIOBUTTON = 0x09;
inline constexpr DWORD BS_TYPEMASK = 0x0F;
inline constexpr DWORD BS_MULTILINE = 0x2000;
inline constexpr UINT BM_GETCHECK = 0x00F0;
inline constexpr UINT BM_SETCHECK = 0x00F1;
inline constexpr UINT BM_GETSTATE = 0x00F2;
inline constexpr UINT BM_SETSTATE = 0x00F3;
inline constexpr UINT BM_SETSTYLE = 0x00F4;
inline constexpr UINT BM_CLICK = 0x00F5;
inline constexpr UINT BST_UNCHECKED = 0;
inline constexpr UINT BST_CHECKED = 1;
inline constexpr UINT BST_PUSHED = 4;
inline constexpr UINT BST_FOCUS = 8;
inline constexpr WORD BN_CLICKED = 0;

// Static controls.
inline constexpr DWORD SS_LEFT = 0x00;
inline constexpr DWORD SS_CENTER = 0x01;
inline constexpr DWORD SS_RIGHT = 0x02;
inline constexpr DWORD SS_ICON = 0x03;
inline constexpr DWORD SS_ETCHEDHORZ = 0x10;
inline constexpr DWORD SS_ETCHEDVERT = 0x11;
inline constexpr DWORD SS_ETCHEDFRAME = 0x12;
inline constexpr DWORD SS_TYPEMASK = 0x1F;
inline constexpr DWORD SS_NOPREFIX = 0x80;
inline constexpr DWORD SS_NOTIFY = 0x0100;
inline constexpr DWORD SS_SUNKEN = 0x1000;
inline constexpr WORD STN_CLICKED = 0;
inline constexpr UINT STM_SETICON = 0x0170;
inline constexpr UINT STM_GETICON = 0x0171;

// Styles that rich-edit controls share with edit controls.
inline constexpr DWORD ES_MULTILINE = 0x0004;
inline constexpr DWORD ES_READONLY = 0x0800;
inline constexpr UINT EM_SETREADONLY = 0x00CF;

// Message boxes and the identifiers of their buttons.
inline constexpr UINT MB_OK = 0x00;
inline constexpr UINT MB_OKCANCEL = 0x01;
inline constexpr UINT MB_ABORTRETRYIGNORE = 0x02;
inline constexpr UINT MB_YESNOCANCEL = 0x03;
inline constexpr UINT MB_YESNO = 0x04;
inline constexpr UINT MB_RETRYCANCEL = 0x05;
inline constexpr UINT MB_TYPEMASK = 0x0F;
inline constexpr UINT MB_ICONHAND = 0x10;
inline constexpr UINT MB_ICONQUESTION = 0x20;
inline constexpr UINT MB_ICONEXCLAMATION = 0x30;
inline constexpr UINT MB_ICONASTERISK = 0x40;
inline constexpr UINT MB_ICONWARNING = MB_ICONEXCLAMATION;
inline constexpr UINT MB_ICONMASK = 0xF0;
inline constexpr UINT MB_DEFBUTTON2 = 0x100;
inline constexpr UINT MB_DEFMASK = 0xF00;
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDABORT = 3;
inline constexpr int IDRETRY = 4;
inline constexpr int IDIGNORE = 5;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;

inline constexpr int VK_BACK = 0x08;
inline constexpr int VK_TAB = 0x09;
inline constexpr int VK_RETURN = 0x0D;
inline constexpr int VK_SHIFT = 0x10;
inline constexpr int VK_CONTROL = 0x11;
inline constexpr int VK_ESCAPE = 0x1B;
inline constexpr int VK_SPACE = 0x20;
inline constexpr int VK_LEFT = 0x25;
inline constexpr int VK_UP = 0x26;
inline constexpr int VK_RIGHT = 0x27;
inline constexpr int VK_DOWN = 0x28;

// Formats of DrawTextA.
inline constexpr UINT DT_WORDBREAK = 0x0010;
inline constexpr UINT DT_EXPANDTABS = 0x0040;
inline constexpr UINT DT_CALCRECT = 0x0400;

// System colours (a class's background brush is one of them plus one).
inline constexpr int COLOR_WINDOW = 5;
inline constexpr int COLOR_BTNFACE = 15;
inline constexpr int COLOR_3DFACE = COLOR_BTNFACE;
