#pragma once
#include "windef.h"

// Drawing objects and device contexts. The caller frees handles that it has created or obtained; stock
// objects, and those that a context has selected initially, need no freeing.

constexpr COLORREF RGB(BYTE red, BYTE green, BYTE blue) {
    return static_cast<COLORREF>(red | (green << 8) | (blue << 16));
}

inline constexpr DWORD SRCCOPY = 0x00CC0020;

// How pixels are combined when a picture shrinks: dark ones win, bright ones win, surplus ones are dropped,
// or they are averaged.
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
    LONG lfHeight;  // pixels; negative: of the characters without internal leading
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
// A BITMAP, LOGBRUSH or LOGFONTA. Returns the bytes stored or, without a buffer, those needed.
int WINAPI GetObjectA(HGDIOBJ object, int size, LPVOID description);

// Initially black.
HBITMAP WINAPI CreateCompatibleBitmap(HDC context, int width, int height);
HBRUSH WINAPI CreateSolidBrush(COLORREF color);
HFONT WINAPI CreateFontIndirectA(const LOGFONTA* description);

int WINAPI SetStretchBltMode(HDC context, int mode);
// Pixels outside either context are skipped; a negative width or height mirrors. The operation is SRCCOPY.
BOOL WINAPI BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY,
                   DWORD operation);
BOOL WINAPI StretchBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY,
                       int fromWidth, int fromHeight, DWORD operation);
// 0xFFFFFFFF outside the context.
COLORREF WINAPI GetPixel(HDC context, int x, int y);
COLORREF WINAPI SetPixel(HDC context, int x, int y, COLORREF color);

// The bitmap resource of a name or number: uncompressed, with 1, 4, 8, 24 or 32 bits per pixel.
HBITMAP WINAPI LoadBitmapA(HINSTANCE module, LPCSTR name);
// The brush may be a system colour number plus one.
int WINAPI FillRect(HDC context, const RECT* area, HBRUSH brush);
DWORD WINAPI GetSysColor(int index);
// Owned by the system; not to be deleted.
HBRUSH WINAPI GetSysColorBrush(int index);
