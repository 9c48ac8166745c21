#include <algorithm>
#include <cstring>

#include "winlayer/dialogs/dialog.h"
#include "winlayer/gdi/graphics.h"
#include "winlayer/windows/message_send.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {
namespace {

constexpr int dotsPerInch = 96;
constexpr int pointsPerInch = 72;

}  // namespace

LOGFONTA describe(const DialogFont& font) {
    LOGFONTA description{};
    description.lfHeight = -(font.points * dotsPerInch + pointsPerInch / 2) / pointsPerInch;
    description.lfWeight = font.weight;
    description.lfItalic = font.italic ? 1 : 0;
    const std::size_t length = std::min(font.face.size(), sizeof description.lfFaceName - 1);
    std::memcpy(description.lfFaceName, font.face.data(), length);
    return description;
}

void giveDialogFont(Window& dialog) {
    const HGDIOBJ font = graphics().add(Font{describe(*dialog.dialog->font)});
    dialog.dialog->ownFont = dialog.font = static_cast<HFONT>(font);
    windows().peer().fontChanged(dialog.handle);
    sendMessage(dialog.handle, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
}

}  // namespace winlayer
