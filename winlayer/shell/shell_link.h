#pragma once
#include <atomic>
#include <string>

#include "winlayer/include/shlobj.h"
#include "winlayer/shell/com.h"
#include "winlayer/shell/shell_link_file.h"

namespace winlayer {

// The shell's object for one shortcut. It starts with one reference and deletes itself when the last is
// released. Thread rule: one thread at a time, except for counting references.
class ShellLink final : public IShellLinkA, public IPersistFile, public IShellLinkDataList {
public:
    explicit ShellLink(Com& com) : com_(com) { com_.objectMade(); }
    ShellLink(const ShellLink&) = delete;
    ShellLink& operator=(const ShellLink&) = delete;

    // QueryInterface for use within the layer.
    HRESULT give(REFIID interfaceId, void** object);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetPath(LPSTR path, int size, WIN32_FIND_DATAA* found, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE GetDescription(LPSTR text, int size) override;
    HRESULT STDMETHODCALLTYPE SetDescription(LPCSTR text) override;
    HRESULT STDMETHODCALLTYPE Resolve(HWND window, DWORD flags) override;
    HRESULT STDMETHODCALLTYPE SetPath(LPCSTR path) override;

    // A failed Load leaves the link as it was.
    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR fileName, DWORD mode) override;
    HRESULT STDMETHODCALLTYPE Save(LPCOLESTR fileName, BOOL remember) override;

    HRESULT STDMETHODCALLTYPE AddDataBlock(void* block) override;
    HRESULT STDMETHODCALLTYPE CopyDataBlock(DWORD signature, void** block) override;
    HRESULT STDMETHODCALLTYPE GetFlags(DWORD* flags) override;
    HRESULT STDMETHODCALLTYPE SetFlags(DWORD flags) override;

private:
    ~ShellLink() { com_.objectGone(); }

    Com& com_;
    std::atomic<ULONG> references_{1};
    ShellLinkFile link_;
    std::string fileName_;  // of the last Load or remembered Save
};

// Reads a shortcut file; returns a Windows error code, ERROR_INVALID_DATA if it is not one.
DWORD readShellLink(const std::string& fileName, ShellLinkFile& link);

}  // namespace winlayer
