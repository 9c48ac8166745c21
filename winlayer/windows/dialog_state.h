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

// What the dialog manager keeps for a dialog.
struct DialogState {
    std::optional<DialogFont> font;
    HFONT ownFont = nullptr;  // made from it
    SIZE baseUnits{};         // pixels of 4 by 8 dialog units
    WORD defaultId = 0;
    bool ended = false;
    bool ownerWasEnabled = false;
    INT_PTR result = 0;
    HWND savedFocus = nullptr;  // control that had the focus while the dialog was not active
};

}  // namespace winlayer
