#pragma once
#include <windows.h>

#include <string>
#include <vector>

// Writes dialog templates byte by byte, in the classic and in the extended form, from one description.
struct ControlDescription {
    WORD windowClass;  // 0x80 button, 0x82 static; 0: className
    const char* className;
    const char* title;
    DWORD style;
    SHORT x, y, width, height;
    WORD id;
};

struct DialogDescription {
    DWORD style;
    DWORD exStyle;
    SHORT x, y, width, height;
    const char* title;
    std::vector<ControlDescription> controls;
};

// With the font "MS Sans Serif" of 8 points when the style has DS_SETFONT.
std::vector<BYTE> dialogBytes(const DialogDescription& dialog, bool extended);

inline LPCDLGTEMPLATEA asTemplate(const std::vector<BYTE>& bytes) {
    return reinterpret_cast<LPCDLGTEMPLATEA>(bytes.data());
}
