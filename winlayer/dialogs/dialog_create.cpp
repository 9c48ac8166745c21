#include <cstring>

#include "winlayer/base/last_error.h"
#include "winlayer/dialogs/dialog.h"
#include "winlayer/dialogs/dialog_navigation.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_create.h"
#include "winlayer/windows/window_focus.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_paint.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

constexpr char dialogClass[] = "#32770";
constexpr int useDefaultPlace = static_cast<SHORT>(0x8000);

// value * units / per, rounded to the nearest.
LONG scale(LONG value, LONG units, LONG per) {
    const LONG product = value * units;
    return (product + (product < 0 ? -per / 2 : per / 2)) / per;
}

void settleStyle(DialogTemplate& dialog) {
    if ((dialog.style & DS_CONTROL) != 0) {
        dialog.style &= ~(WS_CAPTION | WS_SYSMENU);
        dialog.exStyle |= WS_EX_CONTROLPARENT;
    }
    if ((dialog.style & DS_MODALFRAME) != 0) {
        dialog.exStyle |= WS_EX_DLGMODALFRAME;
    }
}

POINT placeOf(const DialogTemplate& dialog, const SIZE& units, const SIZE& size, HWND parent) {
    const RECT place = fromDialogUnits(units, {dialog.x, dialog.y, 0, 0});
    const auto parentWindow = findWindow(parent);
    const bool child = (dialog.style & WS_CHILD) != 0;
    if ((dialog.style & DS_CENTER) != 0 && !child) {
        const RECT screen = windows().peer().workArea();
        return {(screen.left + screen.right - size.cx) / 2, (screen.top + screen.bottom - size.cy) / 2};
    }
    const bool relative = (dialog.style & (WS_CHILD | DS_ABSALIGN)) == 0 && parentWindow != nullptr;
    const POINT base = relative ? clientOrigin(*parentWindow) : POINT{};
    if (dialog.x == useDefaultPlace) {
        return base;
    }
    return {base.x + place.left, base.y + place.top};
}

HWND createDialogWindow(const DialogTemplate& dialog, const DialogRequest& request, const SIZE& units) {
    const RECT inner = fromDialogUnits(units, {0, 0, dialog.width, dialog.height});
    const RECT border =
        borders(dialog.style, dialog.exStyle, dialog.menu.number != 0 || !dialog.menu.text.empty());
    const SIZE size{inner.right + border.left + border.right, inner.bottom + border.top + border.bottom};
    const POINT place = placeOf(dialog, units, size, request.parent);
    const bool named = dialog.windowClass.number != 0 || !dialog.windowClass.text.empty();
    return createWindow({nullptr, request.instance, nullptr, request.parent, static_cast<int>(size.cy),
                         static_cast<int>(size.cx), static_cast<int>(place.y), static_cast<int>(place.x),
                         static_cast<LONG>(dialog.style & ~WS_VISIBLE), dialog.title.c_str(),
                         named ? dialog.windowClass.asParameter() : dialogClass, dialog.exStyle});
}

// The title "#number" names a resource that a control shows.
std::string titleOf(const DialogItem& item) {
    return item.title.number != 0 ? '#' + std::to_string(item.title.number) : item.title.text;
}

HWND createControl(HWND dialog, const DialogItem& item, const DialogRequest& request, const SIZE& units) {
    const RECT corners = fromDialogUnits(units, {item.x, item.y, item.width, item.height});
    const std::string title = titleOf(item);
    const auto data = item.creationData.empty() ? nullptr : const_cast<BYTE*>(item.creationData.data());
    return createWindow({data, request.instance, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(item.id)),
                         dialog, static_cast<int>(corners.bottom), static_cast<int>(corners.right),
                         static_cast<int>(corners.top), static_cast<int>(corners.left),
                         static_cast<LONG>(item.style | WS_CHILD), title.c_str(),
                         item.windowClass.asParameter(), item.exStyle | WS_EX_NOPARENTNOTIFY});
}

bool createControls(Window& dialog, const DialogTemplate& source, const DialogRequest& request) {
    for (const DialogItem& item : source.items) {
        const HWND control = createControl(dialog.handle, item, request, dialog.dialog->baseUnits);
        if (control == nullptr) {
            if ((source.style & DS_NOFAILCREATE) != 0) {
                continue;
            }
            return false;
        }
        if (dialog.font != nullptr) {
            sendMessage(control, WM_SETFONT, reinterpret_cast<WPARAM>(dialog.font), FALSE);
        }
        if (dialog.dialog->defaultId == 0 &&
            (sendMessage(control, WM_GETDLGCODE) & DLGC_DEFPUSHBUTTON) != 0) {
            dialog.dialog->defaultId = static_cast<WORD>(item.id);
        }
    }
    return true;
}

bool attach(Window& window, const DialogTemplate& source, const DialogRequest& request, const SIZE& units) {
    if (window.extra.size() < DLGWINDOWEXTRA) {
        SetLastError(ERROR_WINDOW_NOT_DIALOG);
        return false;
    }
    std::memcpy(window.extra.data() + DWLP_DLGPROC, &request.procedure, sizeof request.procedure);
    window.dialog = std::make_unique<DialogState>();
    window.dialog->baseUnits = units;
    window.dialog->font = source.font;
    if (source.font) {
        giveDialogFont(window);
    }
    return true;
}

void initialise(const Window& dialog, const DialogTemplate& source, LPARAM parameter) {
    const HWND handle = dialog.handle;
    HWND first = nextTabItem(dialog, nullptr, false);
    const bool takesFocus =
        sendMessage(handle, WM_INITDIALOG, reinterpret_cast<WPARAM>(first), parameter) != 0;
    const bool ofItsOwn = (source.style & DS_CONTROL) == 0 || (source.style & WS_VISIBLE) != 0;
    if (!takesFocus || !ofItsOwn || findWindow(handle) == nullptr) {
        return;
    }
    first = nextTabItem(dialog, nullptr, false);
    if (first != nullptr) {
        setFocus(first);
    } else if (!dialog.isChild()) {
        setFocus(handle);
    }
}

bool finishDialog(Window& dialog, const DialogTemplate& source, const DialogRequest& request,
                  const SIZE& units) {
    if (!attach(dialog, source, request, units) || !createControls(dialog, source, request)) {
        return false;
    }
    initialise(dialog, source, request.parameter);
    const HWND handle = dialog.handle;
    if (findWindow(handle) != nullptr && (source.style & WS_VISIBLE) != 0 && !dialog.has(WS_VISIBLE) &&
        !dialog.dialog->ended) {
        showWindow(handle, SW_SHOW);
        updateWindow(handle);
    }
    return true;
}

}  // namespace

RECT fromDialogUnits(const SIZE& units, const RECT& rectangle) {
    return {scale(rectangle.left, units.cx, 4), scale(rectangle.top, units.cy, 8),
            scale(rectangle.right, units.cx, 4), scale(rectangle.bottom, units.cy, 8)};
}

// Dialog fonts of 8 points have a mean width of 6 pixels and a height of 13 at 96 dots per inch; other sizes
// are scaled from that.
SIZE baseUnitsOf(const std::optional<DialogFont>& font) {
    if (!font || font->points <= 0) {
        return {8, 16};
    }
    return {scale(6, font->points, 8), scale(13, font->points, 8)};
}

HWND createDialog(const DialogTemplate& wanted, const DialogRequest& request) try {
    DialogTemplate source = wanted;
    settleStyle(source);
    const SIZE units = baseUnitsOf(source.font);
    const HWND handle = createDialogWindow(source, request, units);
    const auto window = findWindow(handle);
    if (window == nullptr) {
        return nullptr;
    }
    bool made = false;
    try {
        made = finishDialog(*window, source, request, units);
    } catch (const std::bad_alloc&) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    }
    if (!made && findWindow(handle) != nullptr) {
        destroyUnfinished(handle);
    }
    return findWindow(handle) != nullptr ? handle : nullptr;
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}

}  // namespace winlayer
