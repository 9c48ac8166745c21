#pragma once
#include "component/host_objects.h"
#include "host/qxpm/com_object.h"

namespace qxpm {

// Shows rich text in the control to which it is attached and which it outlives.
class RichText final : public ComObject<RichText, IHostRichText, CLSID_HostRichText> {
public:
    // E_INVALIDARG when it is not a window or already has an object; E_UNEXPECTED when this object is
    // attached. The caller then keeps its reference.
    HRESULT WINAPI AttachRichEdit(HWND control, HINSTANCE instance) override;
    HRESULT WINAPI StreamRichText(int format, const char* text, DWORD* result) override;

private:
    static LRESULT CALLBACK controlProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam);
    void detach();

    HWND control_ = nullptr;
    WNDPROC former_ = nullptr;
};

}  // namespace qxpm
