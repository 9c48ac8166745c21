#pragma once
#include <windows.h>
// Not part of <windows.h>.
#include <msi.h>
#include <msiquery.h>

#include <string>

namespace UTILS {

// Identifies an installed file: codes in braces, or empty texts.
struct InstallerCodes {
    char product[MAX_GUID_CHARS + 1] = {};
    char component[MAX_GUID_CHARS + 1] = {};

    bool AreWhole() const { return product[0] != 0 && component[0] != 0; }
};

// The Windows Installer, loaded at run time because not every Windows has it, and freed with the object.
// Throws only std::bad_alloc; what the installer does not report is empty. Texts are in the ANSI code page.
class InstallerLibrary {
public:
    InstallerLibrary();
    InstallerLibrary(const InstallerLibrary&) = delete;
    InstallerLibrary& operator=(const InstallerLibrary&) = delete;
    ~InstallerLibrary();

    // Whether the library has all functions that resolving needs. Without them every result below is empty.
    bool IsAvailable() const { return available_; }

    // The codes that the installer itself finds for a shortcut file.
    InstallerCodes ShortcutTarget(const std::string& linkFile) const;
    // The codes in the descriptor of an advertised shortcut; empty with old installers.
    InstallerCodes Decompose(const char* descriptor) const;
    // The product's cached package.
    std::string LocalPackage(const std::string& product) const;
    // The file that is installed for the codes; empty also for a component that is not a file, such as a
    // registry key.
    std::string InstalledFile(const InstallerCodes& codes) const;
    // Of the components of the package's shortcuts with this icon, the product's first that is installed as a
    // file.
    InstallerCodes FirstInstalled(const std::string& package, const std::string& product,
                                  const std::string& icon) const;

private:
    template <class Function>
    bool Find(Function*& function, const char* name) const;

    // Not declared in the system's headers.
    using DecomposeDescriptor = UINT WINAPI(LPCSTR descriptor, LPSTR product, LPSTR feature, LPSTR component,
                                            DWORD* used);

    HMODULE module_;
    DecomposeDescriptor* decomposeDescriptor_ = nullptr;
    decltype(&::MsiOpenDatabaseA) openDatabase_ = nullptr;
    decltype(&::MsiDatabaseOpenViewA) openView_ = nullptr;
    decltype(&::MsiViewExecute) execute_ = nullptr;
    decltype(&::MsiViewFetch) fetch_ = nullptr;
    decltype(&::MsiRecordGetStringA) getString_ = nullptr;
    decltype(&::MsiGetComponentPathA) getComponentPath_ = nullptr;
    decltype(&::MsiGetProductInfoA) getProductInfo_ = nullptr;
    decltype(&::MsiCloseHandle) closeHandle_ = nullptr;
    decltype(&::MsiGetShortcutTargetA) getShortcutTarget_ = nullptr;
    bool available_ = false;
};

}  // namespace UTILS
