#pragma once
#include "objbase.h"

inline constexpr DWORD STGM_READ = 0;

// Loads and saves an object. Functions that the product does not call are left out.
struct IPersistFile : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Load(LPCOLESTR fileName, DWORD mode) = 0;
    // A null name saves to the file of the last Load or remembered Save.
    virtual HRESULT STDMETHODCALLTYPE Save(LPCOLESTR fileName, BOOL remember) = 0;
};

inline constexpr IID IID_IPersistFile = {0x0000010B, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
