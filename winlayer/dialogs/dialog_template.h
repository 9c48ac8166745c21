#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "winlayer/windows/dialog_state.h"

namespace winlayer {

// A number (of a class, a menu, a resource) or a text.
struct TemplateName {
    WORD number = 0;   // 0: a text
    std::string text;  // ANSI

    // As an API parameter: the text's address, or the number in place of an address.
    LPCSTR asParameter() const { return number != 0 ? MAKEINTRESOURCEA(number) : text.c_str(); }
};

// Positions and sizes are in dialog units.
struct DialogItem {
    DWORD style = 0;
    DWORD exStyle = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    DWORD id = 0;
    TemplateName windowClass;
    TemplateName title;
    std::vector<BYTE> creationData;
};

struct DialogTemplate {
    DWORD style = 0;
    DWORD exStyle = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    TemplateName menu;
    TemplateName windowClass;  // empty: the dialog class
    std::string title;
    std::optional<DialogFont> font;  // with DS_SETFONT
    std::vector<DialogItem> items;
};

// Reads a classic (DLGTEMPLATE) or extended template (DLGTEMPLATEEX), and no byte beyond its own end. Nothing
// if the bytes are truncated.
std::optional<DialogTemplate> readDialogTemplate(std::span<const BYTE> bytes, UINT codePage);

}  // namespace winlayer
