#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/text_result.h"
#include "winlayer/include/msiquery.h"
#include "winlayer/shell/installer.h"
#include "winlayer/shell/shell_link.h"

namespace winlayer {
namespace {

Installer& installer() {
    return winlayer::Installer::current();
}

std::string textOf(LPCSTR text) {
    return text != nullptr ? text : "";
}

// A code that is too long for the caller's buffer cannot be a valid one.
void giveCode(const std::string& code, LPSTR buffer) {
    if (buffer != nullptr) {
        giveText(code.size() <= MAX_GUID_CHARS ? code : "", buffer, MAX_GUID_CHARS + 1);
    }
}

// Stores the text and its length if requested; a buffer needs a size.
DWORD giveSized(const std::string& text, LPSTR buffer, LPDWORD size) {
    if (size == nullptr) {
        return buffer == nullptr ? NO_ERROR : ERROR_INVALID_PARAMETER;
    }
    const bool fits = buffer == nullptr || giveText(text, buffer, *size) == text.size();
    *size = static_cast<DWORD>(text.size());
    return fits ? NO_ERROR : ERROR_MORE_DATA;
}

DWORD giveCodes(const std::string& descriptor, LPSTR product, LPSTR feature, LPSTR component) {
    const auto found = installer().descriptors.find(descriptor);
    if (found == installer().descriptors.end()) {
        return ERROR_INVALID_PARAMETER;
    }
    giveCode(found->second.product, product);
    giveCode(found->second.feature, feature);
    giveCode(found->second.component, component);
    return NO_ERROR;
}

// Empty for a shortcut that has none.
std::string descriptorOf(const ShellLinkFile& link) {
    for (const std::vector<BYTE>& block : link.blocks) {
        if (blockSignature(block) == EXP_DARWIN_ID_SIG && block.size() >= sizeof(EXP_DARWIN_LINK)) {
            const char* const text =
                reinterpret_cast<const char*>(block.data()) + offsetof(EXP_DARWIN_LINK, szDarwinID);
            return {text, ::strnlen(text, MAX_PATH)};
        }
    }
    return {};
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

UINT WINAPI MsiGetShortcutTargetA(LPCSTR shortcut, LPSTR product, LPSTR feature, LPSTR component) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return error;
    }
    ShellLinkFile link;
    if (readShellLink(textOf(shortcut), link) != NO_ERROR) {
        return ERROR_FUNCTION_FAILED;
    }
    const bool given = giveCodes(descriptorOf(link), product, feature, component) == NO_ERROR;
    return given ? NO_ERROR : ERROR_FUNCTION_FAILED;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

UINT WINAPI MsiDecomposeDescriptorA(LPCSTR descriptor, LPSTR product, LPSTR feature, LPSTR component,
                                    LPDWORD used) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return error;
    }
    const std::string text = textOf(descriptor);
    const DWORD error = giveCodes(text, product, feature, component);
    if (error == NO_ERROR && used != nullptr) {
        *used = static_cast<DWORD>(text.size());
    }
    return error;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

INSTALLSTATE WINAPI MsiGetComponentPathA(LPCSTR product, LPCSTR component, LPSTR path, LPDWORD size) try {
    if (deniedCode(__func__) != 0) {
        return INSTALLSTATE_UNKNOWN;
    }
    const auto found = installer().products.find(textOf(product));
    if (found == installer().products.end()) {
        return INSTALLSTATE_UNKNOWN;
    }
    const auto part = found->second.components.find(textOf(component));
    if (part == found->second.components.end()) {
        return INSTALLSTATE_UNKNOWN;
    }
    const DWORD error = giveSized(part->second.path, path, size);
    return error == NO_ERROR          ? part->second.state
           : error == ERROR_MORE_DATA ? INSTALLSTATE_MOREDATA
                                      : INSTALLSTATE_INVALIDARG;
} catch (const std::bad_alloc&) {
    return INSTALLSTATE_UNKNOWN;
}

UINT WINAPI MsiGetProductInfoA(LPCSTR product, LPCSTR property, LPSTR value, LPDWORD size) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return error;
    }
    const auto found = installer().products.find(textOf(product));
    if (found == installer().products.end()) {
        return ERROR_UNKNOWN_PRODUCT;
    }
    return textOf(property) == INSTALLPROPERTY_LOCALPACKAGE ? giveSized(found->second.package, value, size)
                                                            : ERROR_UNKNOWN_PROPERTY;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

UINT WINAPI MsiOpenDatabaseA(LPCSTR package, LPCSTR mode, MSIHANDLE* database) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return error;
    }
    if (database == nullptr || mode != MSIDBOPEN_READONLY) {
        return ERROR_INVALID_PARAMETER;
    }
    return installer().openPackage(textOf(package), *database);
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

UINT WINAPI MsiDatabaseOpenViewA(MSIHANDLE database, LPCSTR query, MSIHANDLE* view) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return error;
    }
    return view != nullptr ? installer().openView(database, textOf(query), *view) : ERROR_INVALID_PARAMETER;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

UINT WINAPI MsiViewExecute(MSIHANDLE view, MSIHANDLE /*parameters*/) try {
    const DWORD error = deniedCode(__func__);
    return error != 0 ? error : installer().execute(view);
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

UINT WINAPI MsiViewFetch(MSIHANDLE view, MSIHANDLE* record) try {
    if (const DWORD error = deniedCode(__func__); error != 0) {
        return error;
    }
    return record != nullptr ? installer().fetch(view, *record) : ERROR_INVALID_PARAMETER;
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

UINT WINAPI MsiRecordGetStringA(MSIHANDLE record, UINT field, LPSTR value, LPDWORD size) try {
    std::string text;
    DWORD error = deniedCode(__func__);
    if (error == 0) {
        error = installer().field(record, field, text);
    }
    return error != 0 ? error : giveSized(text, value, size);
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

// As with CloseHandle, the handle is closed even when the fault plan fails the call.
UINT WINAPI MsiCloseHandle(MSIHANDLE handle) {
    const DWORD planned = deniedCode(__func__);
    const DWORD error = installer().close(handle);
    return planned != 0 ? planned : error;
}
