#include "winlayer/dialogs/control_rich_edit.h"

#include <algorithm>
#include <array>

#include "winlayer/base/system_settings.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {

namespace {

// Everything that the caller's callback provides; nothing if it fails.
std::string readAll(EDITSTREAM& stream) {
    std::string bytes;
    std::array<BYTE, 4096> buffer;
    for (;;) {
        LONG given = 0;
        stream.dwError =
            stream.pfnCallback(stream.dwCookie, buffer.data(), static_cast<LONG>(buffer.size()), &given);
        if (stream.dwError != 0) {
            return {};
        }
        if (given <= 0) {
            return bytes;
        }
        bytes.append(reinterpret_cast<const char*>(buffer.data()),
                     std::min(static_cast<std::size_t>(given), buffer.size()));
    }
}

}  // namespace

void RichEditControl::show(RichText content) {
    content_ = std::move(content);
    window_.text = content_.text;
    Peer& peer = windows().peer();
    peer.textChanged(window_.handle);
    peer.stateChanged(window_.handle);
}

LRESULT RichEditControl::streamIn(WPARAM format, EDITSTREAM& stream) {
    std::string bytes = readAll(stream);
    if (stream.dwError != 0) {
        return 0;
    }
    if (format == SF_TEXT) {
        show(plainText(std::move(bytes)));
    } else if (auto content = readRtf(bytes, SystemSettings::current().ansiCodePage);
               format == SF_RTF && content.has_value()) {
        show(std::move(*content));
    } else {
        stream.dwError = ERROR_INVALID_DATA;
        return 0;
    }
    return static_cast<LRESULT>(content_.text.size());
}

LRESULT RichEditControl::message(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_HASSETSEL;
        case WM_NCCREATE: {
            const LRESULT result = defaultControlMessage(window_, message, wParam, lParam);
            content_ = plainText(window_.text);
            return result;
        }
        case WM_SETTEXT:
            show(plainText(lParam != 0 ? reinterpret_cast<const char*>(lParam) : ""));
            return TRUE;
        case EM_STREAMIN:
            return streamIn(wParam, *reinterpret_cast<EDITSTREAM*>(lParam));
        case EM_SETREADONLY:
            window_.style = wParam != 0 ? window_.style | ES_READONLY : window_.style & ~ES_READONLY;
            return TRUE;
        default:
            return defaultControlMessage(window_, message, wParam, lParam);
    }
}

}  // namespace winlayer
