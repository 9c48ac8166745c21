#include "winlayer/dialogs/message_box.h"

#include <algorithm>
#include <limits>
#include <map>

#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/dialogs/dialog.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_system.h"
#include "winlayer/windows/window_tree.h"

namespace winlayer {
namespace {

constexpr WORD buttonClass = 0x80;
constexpr WORD staticClass = 0x82;
constexpr DWORD textId = 0xFFFF;
constexpr DWORD iconId = 20;

// In dialog units.
constexpr int margin = 7;
constexpr int buttonWidth = 50;
constexpr int buttonHeight = 14;
constexpr int buttonGap = 4;
constexpr int iconSize = 21;
constexpr int widestText = 240;
constexpr int captionMargins = 24;  // around the caption, including the close button

std::vector<int> buttonsOf(UINT style) {
    static const std::map<UINT, std::vector<int>> buttons = {
        {MB_OK, {IDOK}},
        {MB_OKCANCEL, {IDOK, IDCANCEL}},
        {MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE}},
        {MB_YESNOCANCEL, {IDYES, IDNO, IDCANCEL}},
        {MB_YESNO, {IDYES, IDNO}},
        {MB_RETRYCANCEL, {IDRETRY, IDCANCEL}},
    };
    const auto found = buttons.find(style & MB_TYPEMASK);
    return found != buttons.end() ? found->second : std::vector<int>{};
}

const char* captionOf(int button) {
    struct Captions {
        const char* german;
        const char* english;
    };
    static const std::map<int, Captions> captions = {
        {IDOK, {"OK", "OK"}},
        {IDCANCEL, {"Abbrechen", "Cancel"}},
        {IDABORT, {"&Abbrechen", "&Abort"}},
        {IDRETRY, {"&Wiederholen", "&Retry"}},
        {IDIGNORE, {"&Ignorieren", "&Ignore"}},
        {IDYES, {"&Ja", "&Yes"}},
        {IDNO, {"&Nein", "&No"}},
    };
    constexpr WORD german = 0x07;
    const bool isGerman = (SystemSettings::current().language & 0x3FF) == german;
    return isGerman ? captions.at(button).german : captions.at(button).english;
}

LPCSTR iconOf(UINT style) {
    switch (style & MB_ICONMASK) {
        case MB_ICONHAND:
            return IDI_HAND;
        case MB_ICONQUESTION:
            return IDI_QUESTION;
        case MB_ICONEXCLAMATION:
            return IDI_EXCLAMATION;
        case MB_ICONASTERISK:
            return IDI_ASTERISK;
        default:
            return nullptr;
    }
}

// The size in dialog units, rounded up, of a text drawn in lines of `width` pixels.
SIZE roomFor(const char* text, const LOGFONTA& font, const SIZE& units, int width) {
    const SIZE drawn = windows().peer().textExtent(text, font, width);
    return {(drawn.cx * 4 + units.cx - 1) / units.cx, (drawn.cy * 8 + units.cy - 1) / units.cy};
}

// Captions are bold and in one line; one wider than the screen is cut off.
int captionWidth(const char* caption, LOGFONTA font, const SIZE& units) {
    font.lfWeight = FW_BOLD;
    const RECT screen = windows().peer().workArea();
    const auto widest = static_cast<int>((screen.right - screen.left) * 4 / units.cx) - 2 * margin;
    const auto width = static_cast<int>(roomFor(caption, font, units, std::numeric_limits<int>::max()).cx);
    return std::min(width + captionMargins, widest);
}

DialogItem makeItem(WORD windowClass, DWORD style, DWORD id, const RECT& place, std::string title) {
    DialogItem item;
    item.windowClass.number = windowClass;
    item.style = style | WS_CHILD | WS_VISIBLE;
    item.id = id;
    item.x = place.left;
    item.y = place.top;
    item.width = place.right - place.left;
    item.height = place.bottom - place.top;
    item.title.text = std::move(title);
    return item;
}

void addButtons(DialogTemplate& box, UINT style, const std::vector<int>& buttons, int top) {
    const auto count = static_cast<int>(buttons.size());
    const auto chosen = static_cast<int>((style & MB_DEFMASK) / MB_DEFBUTTON2);
    const int first = chosen < count ? chosen : 0;
    int left = (box.width - count * buttonWidth - (count - 1) * buttonGap) / 2;
    for (int i = 0; i < count; ++i) {
        const int id = buttons[static_cast<std::size_t>(i)];
        const DWORD type = i == first ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
        box.items.push_back(makeItem(buttonClass, type | WS_TABSTOP | (i == 0 ? WS_GROUP : 0),
                                     static_cast<DWORD>(id),
                                     {left, top, left + buttonWidth, top + buttonHeight}, captionOf(id)));
        left += buttonWidth + buttonGap;
    }
}

DialogTemplate design(const char* text, const char* caption, UINT style, const std::vector<int>& buttons) {
    const DialogFont font{8, 400, false, "MS Sans Serif"};
    const SIZE units = baseUnitsOf(font);
    const SIZE room = roomFor(text, describe(font), units, static_cast<int>(widestText * units.cx / 4));
    const bool hasIcon = iconOf(style) != nullptr;
    const int textLeft = margin + (hasIcon ? iconSize + margin : 0);
    const int bodyHeight = std::max(static_cast<int>(room.cy), hasIcon ? iconSize : 0);
    const auto count = static_cast<int>(buttons.size());
    DialogTemplate box;
    box.style = WS_POPUP | WS_VISIBLE | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT | DS_CENTER;
    box.title = caption;
    box.font = font;
    box.width = std::max({textLeft + static_cast<int>(room.cx) + margin,
                          margin + count * (buttonWidth + buttonGap) + margin,
                          captionWidth(caption, describe(font), units)});
    box.height = margin + bodyHeight + margin + buttonHeight + margin;
    if (hasIcon) {
        box.items.push_back(makeItem(staticClass, SS_ICON, iconId,
                                     {margin, margin, margin + iconSize, margin + iconSize}, ""));
    }
    box.items.push_back(makeItem(staticClass, SS_LEFT | SS_NOPREFIX, textId,
                                 {textLeft, margin, textLeft + room.cx, margin + room.cy}, text));
    addButtons(box, style, buttons, margin + bodyHeight + margin);
    return box;
}

void initialise(const Window& box, UINT style) {
    if (const auto icon = childById(box, iconId)) {
        sendMessage(icon->handle, STM_SETICON, reinterpret_cast<WPARAM>(iconOf(style)));
    }
    const auto button = childById(box, box.dialog->defaultId);
    if (button != nullptr) {
        focusControl(box, button->handle);
    }
}

// Escape and closing mean Cancel, or OK if that is the only button; otherwise they do nothing.
void finish(const Window& box, int id) {
    if (id == IDCANCEL && childById(box, IDCANCEL) == nullptr && box.children.size() > 0 &&
        box.dialog->defaultId == IDOK) {
        id = IDOK;
    }
    if (childById(box, id) != nullptr) {
        endDialog(box.handle, id);
    }
}

INT_PTR CALLBACK boxProcedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto box = findWindow(handle);
    switch (message) {
        case WM_INITDIALOG:
            initialise(*box, static_cast<UINT>(lParam));
            return FALSE;
        case WM_COMMAND:
            finish(*box, LOWORD(wParam));
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

int showMessageBox(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
    const std::vector<int> buttons = buttonsOf(style);
    if (buttons.empty()) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    const char* const untitled = (SystemSettings::current().language & 0x3FF) == 0x07 ? "Fehler" : "Error";
    const DialogTemplate box =
        design(text != nullptr ? text : "", caption != nullptr ? caption : untitled, style, buttons);
    const INT_PTR pressed = runDialog(box, {nullptr, owner, boxProcedure, static_cast<LPARAM>(style)});
    return pressed > 0 ? static_cast<int>(pressed) : 0;
}

}  // namespace winlayer
