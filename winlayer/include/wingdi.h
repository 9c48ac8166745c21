#pragma once
#include "windef.h"

// Drawing objects and device contexts. Handles that a function gives are freed by whoever asked for them;
// stock objects, and what a context had selected at the start, need no freeing.

constexpr COLORREF RGB(BYTE red, BYTE green, BYTE blue) {
    return static_cast<COLORREF>(red | (green << 8) | (blue << 16));
}

inline constexpr DWORD SRCCOPY = 0x00CC0020;

// What becomes of pixels that a smaller picture has no room for: all dark ones stay, all bright ones stay,
// they are dropped, or they are mixed.
inline constexpr int BLACKONWHITE = 1;
inline constexpr int WHITEONBLACK = 2;
inline constexpr int COLORONCOLOR = 3;
inline constexpr int HALFTONE = 4;

inline constexpr int WHITE_BRUSH = 0;
inline constexpr int BLACK_BRUSH = 4;
inline constexpr int DEFAULT_GUI_FONT = 17;

inline constexpr int LF_FACESIZE = 32;
inline constexpr LONG FW_NORMAL = 400;
inline constexpr LONG FW_BOLD = 700;
inline constexpr UINT BS_SOLID = 0;

struct BITMAP {
    LONG bmType;
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    LPVOID bmBits;
};

struct LOGBRUSH {
    UINT lbStyle;
    COLORREF lbColor;
    ULONG_PTR lbHatch;
};

struct LOGFONTA {
    LONG lfHeight;  // pixels; negative: of the characters without the room above them
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    CHAR lfFaceName[LF_FACESIZE];
};
static_assert(sizeof(LOGFONTA) == 60);

HDC WINAPI CreateCompatibleDC(HDC context);
BOOL WINAPI DeleteDC(HDC context);
// A bitmap can be selected into one memory context at a time.
HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ object);
// FALSE for an object that is selected into a context.
BOOL WINAPI DeleteObject(HGDIOBJ object);
HGDIOBJ WINAPI GetStockObject(int index);
// A BITMAP, LOGBRUSH or LOGFONTA. Gives the bytes stored, or needed without a buffer.
int WINAPI GetObjectA(HGDIOBJ object, int size, LPVOID description);

// Black at the start.
HBITMAP WINAPI CreateCompatibleBitmap(HDC context, int width, int height);
HBRUSH WINAPI CreateSolidBrush(COLORREF color);
HFONT WINAPI CreateFontIndirectA(const LOGFONTA* description);

int WINAPI SetStretchBltMode(HDC context, int mode);
// Pixels that one of the two contexts does not have are left alone; a negative width or height mirrors. The
// operation is SRCCOPY.
BOOL WINAPI BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY,
                   DWORD operation);
BOOL WINAPI StretchBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY,
                       int fromWidth, int fromHeight, DWORD operation);
// 0xFFFFFFFF outside the context.
COLORREF WINAPI GetPixel(HDC context, int x, int y);
COLORREF WINAPI SetPixel(HDC context, int x, int y, COLORREF color);

// The bitmap resource of a name or number: uncompressed, with 1, 4, 8, 24 or 32 bits to a pixel.
HBITMAP WINAPI LoadBitmapA(HINSTANCE module, LPCSTR name);
// The brush may be a system colour plus one.
int WINAPI FillRect(HDC context, const RECT* area, HBRUSH brush);
DWORD WINAPI GetSysColor(int index);
// The system's own; not to be deleted.
HBRUSH WINAPI GetSysColorBrush(int index);
