#pragma once
#include <windows.h>
// Not part of <windows.h>.
#include <unknwn.h>

// The objects of the host suite's module "QXPM.DLL", each identified by a class and an interface identifier.
// They follow the COM layout and are used on one thread; results are not negative on success.

// The shared settings: named sections of named 8-bit texts.
inline constexpr GUID CLSID_HostPropertyStore{
    0x6d1c52a0, 0x3f4e, 0x4b0b, {0x9a, 0x51, 0x2e, 0x77, 0x10, 0xc4, 0x8d, 0x01}};
inline constexpr GUID IID_IHostPropertyStore{
    0x6d1c52a0, 0x3f4e, 0x4b0b, {0x9a, 0x51, 0x2e, 0x77, 0x10, 0xc4, 0x8d, 0x02}};

struct IHostPropertyStore : IUnknown {
    // flag 1: for reading and writing, creates a missing section; flag 0: for reading, fails when the section
    // is missing.
    virtual HRESULT WINAPI Open(const char* section, int flag) = 0;
    // The name of the value with this index (0 first), zero-terminated. *size: bytes of the buffer, then
    // bytes of the name with its zero.
    virtual HRESULT WINAPI EnumerateValue(DWORD index, char* name, DWORD* size) = 0;
    // The text of a value, zero-terminated. *size: bytes of the buffer, then bytes of the text with its zero.
    // After a failure the buffer holds an empty text.
    virtual HRESULT WINAPI GetValue(const char* name, char* buffer, DWORD* size) = 0;
    virtual HRESULT WINAPI SetValue(const char* name, const char* value) = 0;
    virtual HRESULT WINAPI DeleteValue(const char* name) = 0;
};

// Creates the other objects.
inline constexpr GUID CLSID_HostManager{
    0x6d1c52a0, 0x3f4e, 0x4b0b, {0x9a, 0x51, 0x2e, 0x77, 0x10, 0xc4, 0x8d, 0x03}};
inline constexpr GUID IID_IHostManager{
    0x6d1c52a0, 0x3f4e, 0x4b0b, {0x9a, 0x51, 0x2e, 0x77, 0x10, 0xc4, 0x8d, 0x04}};

struct IHostManager : IUnknown {
    // The number of live objects of the module, including this one.
    virtual HRESULT WINAPI CountObjects(DWORD* count) = 0;
    virtual HRESULT WINAPI CreateObject(const GUID* classId, IUnknown* outer, DWORD context,
                                        const GUID* interfaceId, void** object) = 0;
    // Called before the module is freed. S_OK when no object but this one is alive, S_FALSE otherwise.
    virtual HRESULT WINAPI Shutdown(int flag) = 0;
};

// Shows rich text in a rich-edit control. Its interface identifier is its class identifier.
inline constexpr GUID CLSID_HostRichText{
    0x6d1c52a0, 0x3f4e, 0x4b0b, {0x9a, 0x51, 0x2e, 0x77, 0x10, 0xc4, 0x8d, 0x05}};

struct IHostRichText : IUnknown {
    // Attaches to the control: the caller's reference passes to the control and is released when the
    // control's window is destroyed. A caller that uses the object for longer adds a reference.
    virtual HRESULT WINAPI AttachRichEdit(HWND control, HINSTANCE instance) = 0;
    // Replaces the control's text. format: SF_RTF (2; the text ends with its outermost group, or at a zero)
    // or SF_TEXT (1; ends at a zero). *result: 0, or the error that ended the text early.
    virtual HRESULT WINAPI StreamRichText(int format, const char* text, DWORD* result) = 0;
};
