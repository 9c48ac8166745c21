#include "host/qxpm/rich_text.h"

#include <richedit.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/qxpm/rtf_length.h"

namespace qxpm {

namespace {

// Window property that holds a control's object.
constexpr const char* objectProperty = "QXPM_RICHTEXT";

struct Source {
    const char* text;
    std::size_t left;
};

DWORD CALLBACK readSource(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* given) {
    Source& source = *reinterpret_cast<Source*>(cookie);
    const std::size_t count = std::min(source.left, static_cast<std::size_t>(std::max<LONG>(size, 0)));
    std::memcpy(buffer, source.text, count);
    source.text += count;
    source.left -= count;
    *given = static_cast<LONG>(count);
    return 0;
}

}  // namespace

HRESULT WINAPI RichText::AttachRichEdit(HWND control, HINSTANCE) {
    if (control_) return E_UNEXPECTED;
    if (!IsWindow(control) || GetPropA(control, objectProperty)) return E_INVALIDARG;
    if (!SetPropA(control, objectProperty, this)) return HRESULT_FROM_WIN32(GetLastError());
    control_ = control;
    former_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&RichText::controlProcedure)));
    SendMessageA(control, EM_SETREADONLY, TRUE, 0);  // users do not edit the product's text
    return S_OK;
}

HRESULT WINAPI RichText::StreamRichText(int format, const char* text, DWORD* result) {
    if (result) *result = 0;
    if (!text || (format != SF_RTF && format != SF_TEXT)) return E_INVALIDARG;
    if (!control_) return E_UNEXPECTED;
    Source source{text, format == SF_RTF ? rtfLength(text) : std::strlen(text)};
    if (source.left == 0 && *text != '\0') return E_INVALIDARG;
    EDITSTREAM stream{};
    stream.dwCookie = reinterpret_cast<DWORD_PTR>(&source);
    stream.pfnCallback = readSource;
    SendMessageA(control_, EM_STREAMIN, static_cast<WPARAM>(format), reinterpret_cast<LPARAM>(&stream));
    if (result) *result = stream.dwError;
    return stream.dwError == 0 ? S_OK : E_FAIL;
}

LRESULT CALLBACK RichText::controlProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto object = static_cast<RichText*>(GetPropA(control, objectProperty));
    const WNDPROC former = object->former_;
    if (message == WM_NCDESTROY) object->detach();
    return CallWindowProcA(former, control, message, wParam, lParam);
}

void RichText::detach() {
    const HWND control = std::exchange(control_, nullptr);
    SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_));
    RemovePropA(control, objectProperty);
    Release();
}

}  // namespace qxpm
