#pragma once
#include "fileapi.h"
#include "objidl.h"

// Link flags that programs read or set.
inline constexpr DWORD SLDF_HAS_ID_LIST = 0x0001;
inline constexpr DWORD SLDF_HAS_LINK_INFO = 0x0002;
inline constexpr DWORD SLDF_HAS_NAME = 0x0004;
inline constexpr DWORD SLDF_UNICODE = 0x0080;
inline constexpr DWORD SLDF_FORCE_NO_LINKINFO = 0x0100;
inline constexpr DWORD SLDF_HAS_DARWINID = 0x1000;

// How a link is resolved. The high word of the flags is a limit in milliseconds.
inline constexpr DWORD SLR_NO_UI = 0x01;
inline constexpr DWORD SLR_ANY_MATCH = 0x02;
inline constexpr DWORD SLR_NOSEARCH = 0x10;

// A shortcut to a file or directory; texts in the ANSI code page. Functions that the product does not call
// are left out.
struct IShellLinkA : IUnknown {
    // Truncated to the buffer's size; S_FALSE and an empty text when the link has no path.
    virtual HRESULT STDMETHODCALLTYPE GetPath(LPSTR path, int size, WIN32_FIND_DATAA* found, DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDescription(LPSTR text, int size) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDescription(LPCSTR text) = 0;
    // S_FALSE when the link's target does not exist; no search is made.
    virtual HRESULT STDMETHODCALLTYPE Resolve(HWND window, DWORD flags) = 0;
    // Made absolute with the current directory; the target need not exist.
    virtual HRESULT STDMETHODCALLTYPE SetPath(LPCSTR path) = 0;
};

// The data blocks and flags of a link.
struct IShellLinkDataList : IUnknown {
    // Begins with its size and signature, as DATABLOCK_HEADER says.
    virtual HRESULT STDMETHODCALLTYPE AddDataBlock(void* block) = 0;
    // The copy is freed with LocalFree.
    virtual HRESULT STDMETHODCALLTYPE CopyDataBlock(DWORD signature, void** block) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFlags(DWORD* flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFlags(DWORD flags) = 0;
};

inline constexpr CLSID CLSID_ShellLink = {0x00021401, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IShellLinkA = {0x000214EE, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IShellLinkDataList = {
    0x45E2B4AE, 0xB1C3, 0x11D0, {0xB9, 0x2F, 0x00, 0xA0, 0xC9, 0x03, 0x12, 0xE1}};
