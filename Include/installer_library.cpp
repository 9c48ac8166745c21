#include "installer_library.h"

#include <array>
#include <cstring>

namespace UTILS {
namespace {

// A text from a package or the installer, with its zero.
class InstallerText {
public:
    char* data() { return text_.data(); }
    DWORD* size() { return &size_; }
    std::string text() const { return text_.data(); }

private:
    std::array<char, 2048> text_{};
    DWORD size_ = static_cast<DWORD>(text_.size());
};

using CloseFunction = decltype(&::MsiCloseHandle);

class InstallerHandle {
public:
    explicit InstallerHandle(CloseFunction close) : close_(close) {}
    InstallerHandle(const InstallerHandle&) = delete;
    InstallerHandle& operator=(const InstallerHandle&) = delete;
    ~InstallerHandle() {
        if (handle_ != 0) {
            close_(handle_);
        }
    }

    MSIHANDLE get() const { return handle_; }
    MSIHANDLE* Receive() { return &handle_; }

private:
    CloseFunction close_;
    MSIHANDLE handle_ = 0;
};

bool Succeeded(UINT result) {
    return result == static_cast<UINT>(ERROR_SUCCESS);
}

bool CopyCode(const std::string& code, char (&to)[MAX_GUID_CHARS + 1]) {
    if (code.size() >= sizeof to) {
        return false;
    }
    std::memcpy(to, code.c_str(), code.size() + 1);
    return true;
}

}  // namespace

InstallerLibrary::InstallerLibrary() : module_(::LoadLibraryA("MSI.DLL")) {
    if (module_ == nullptr) {
        return;
    }
    Find(decomposeDescriptor_, "MsiDecomposeDescriptorA");
    available_ = Find(openDatabase_, "MsiOpenDatabaseA") && Find(openView_, "MsiDatabaseOpenViewA") &&
                 Find(execute_, "MsiViewExecute") && Find(fetch_, "MsiViewFetch") &&
                 Find(getString_, "MsiRecordGetStringA") && Find(getComponentPath_, "MsiGetComponentPathA") &&
                 Find(getProductInfo_, "MsiGetProductInfoA") && Find(closeHandle_, "MsiCloseHandle") &&
                 Find(getShortcutTarget_, "MsiGetShortcutTargetA");
}

InstallerLibrary::~InstallerLibrary() {
    if (module_ != nullptr) {
        ::FreeLibrary(module_);
    }
}

template <class Function>
bool InstallerLibrary::Find(Function*& function, const char* name) const {
    function = reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(::GetProcAddress(module_, name)));
    return function != nullptr;
}

InstallerCodes InstallerLibrary::ShortcutTarget(const std::string& linkFile) const {
    InstallerCodes codes;
    char feature[MAX_FEATURE_CHARS + 1] = {};
    const bool told = available_ && Succeeded(getShortcutTarget_(linkFile.c_str(), codes.product, feature,
                                                                 codes.component));
    return told ? codes : InstallerCodes();
}

InstallerCodes InstallerLibrary::Decompose(const char* descriptor) const {
    InstallerCodes codes;
    char feature[MAX_FEATURE_CHARS + 1] = {};
    DWORD used = 0;
    const bool told =
        available_ && decomposeDescriptor_ != nullptr &&
        Succeeded(decomposeDescriptor_(descriptor, codes.product, feature, codes.component, &used));
    return told ? codes : InstallerCodes();
}

std::string InstallerLibrary::LocalPackage(const std::string& product) const {
    InstallerText package;
    const bool told = available_ && Succeeded(getProductInfo_(product.c_str(), INSTALLPROPERTY_LOCALPACKAGE,
                                                              package.data(), package.size()));
    return told ? package.text() : std::string();
}

// The path of a registry key begins with the number of its root instead of a drive.
std::string InstallerLibrary::InstalledFile(const InstallerCodes& codes) const {
    InstallerText path;
    const bool installed = available_ && codes.AreWhole() &&
                           getComponentPath_(codes.product, codes.component, path.data(), path.size()) > 0;
    return installed && *path.data() != '0' ? path.text() : std::string();
}

InstallerCodes InstallerLibrary::FirstInstalled(const std::string& package, const std::string& product,
                                                const std::string& icon) const {
    InstallerCodes codes;
    if (!available_ || !CopyCode(product, codes.product)) {
        return {};
    }
    const std::string query =
        "SELECT `Component`.`ComponentId` FROM `Component`, `Shortcut` WHERE "
        "`Component`.`Component` = `Shortcut`.`Component_` AND `Shortcut`.`Icon_` = '" +
        icon + "'";
    InstallerHandle database(closeHandle_);
    InstallerHandle view(closeHandle_);
    if (!Succeeded(openDatabase_(package.c_str(), MSIDBOPEN_READONLY, database.Receive())) ||
        !Succeeded(openView_(database.get(), query.c_str(), view.Receive())) ||
        !Succeeded(execute_(view.get(), 0))) {
        return {};
    }
    for (;;) {
        InstallerHandle record(closeHandle_);
        InstallerText component;
        if (!Succeeded(fetch_(view.get(), record.Receive()))) {
            return {};
        }
        if (Succeeded(getString_(record.get(), 1, component.data(), component.size())) &&
            CopyCode(component.text(), codes.component) && !InstalledFile(codes).empty()) {
            return codes;
        }
    }
}

}  // namespace UTILS
