#pragma once
// The styles in the suite's resource scripts, by their Windows names. Only resource scripts include this
// file, so that they compile where the resource compiler comes without Windows' headers.
#define WS_POPUP 0x80000000L
#define WS_VISIBLE 0x10000000L
#define WS_CLIPCHILDREN 0x02000000L
#define WS_CAPTION 0x00C00000L
#define WS_SYSMENU 0x00080000L
#define WS_THICKFRAME 0x00040000L
#define WS_MINIMIZEBOX 0x00020000L
#define WS_MAXIMIZEBOX 0x00010000L
#define DS_3DLOOK 0x0004L
#define DS_SETFONT 0x0040L
#define DS_MODALFRAME 0x0080L
#define DS_CENTER 0x0800L
#define SS_LEFT 0x0000L
#define SS_ETCHEDHORZ 0x0010L
#define SS_NOPREFIX 0x0080L
#define IDCANCEL 2
#define GERMAN 0x07
#define GERMAN_STANDARD 0x01
