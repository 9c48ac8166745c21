#pragma once
#include <optional>
#include <string>

#include "winlayer/include/windows.h"

namespace winlayer {

struct DialogFont {
    int points = 0;
    int weight = 0;
    bool italic = false;
    std::string face;  // ANSI
};

// The dialog manager's data for a dialog.
struct DialogState {
    std::optional<DialogFont> font;
    HFONT ownFont = nullptr;  // created from `font`
    SIZE baseUnits{};         // pixels of 4 by 8 dialog units
    WORD defaultId = 0;
    bool ended = false;
    bool ownerWasEnabled = false;
    INT_PTR result = 0;
    HWND savedFocus = nullptr;  // the focus while the dialog is not active
};

}  // namespace winlayer
