#include <algorithm>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/base/text_result.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"
#include "winlayer/include/sysinfoapi.h"
#include "winlayer/include/winbase.h"

namespace {

using winlayer::FileFacts;
using winlayer::giveText;
using winlayer::isSeparator;

// Replaces each element of a path by the result of `rewrite` for its facts; drive, separators, "." and ".."
// stay as they are.
template <class Rewrite>
DWORD rewriteElements(const std::string& path, const Rewrite& rewrite, std::string& rewritten) {
    const winlayer::Drives& drives = winlayer::Drives::current();
    std::size_t start = path.size() >= 2 && path[1] == ':' ? 2 : 0;
    rewritten = path.substr(0, start);
    while (start < path.size()) {
        if (isSeparator(path[start])) {
            rewritten += '\\';
            ++start;
            continue;
        }
        const std::size_t end = std::min(path.find_first_of("\\/", start), path.size());
        const std::string element = path.substr(start, end - start);
        std::shared_ptr<winlayer::FileSystem> files;
        std::string below;
        FileFacts facts;
        DWORD error = drives.resolve(path.substr(0, end), files, below);
        if (error == 0) {
            error = files->facts(below, facts);
        }
        if (error != 0) {
            return error;
        }
        rewritten += element == "." || element == ".." || below.empty() ? element : rewrite(facts);
        start = end;
    }
    return 0;
}

template <class Rewrite>
DWORD giveRewritten(LPCSTR path, LPSTR buffer, DWORD size, const Rewrite& rewrite) {
    std::string rewritten;
    const DWORD error = path == nullptr ? ERROR_INVALID_PARAMETER : rewriteElements(path, rewrite, rewritten);
    return winlayer::succeeded(error) ? giveText(rewritten, buffer, size) : 0;
}

}  // namespace

DWORD WINAPI GetLongPathNameA(LPCSTR path, LPSTR buffer, DWORD size) try {
    if (winlayer::denied(__func__)) {
        return 0;
    }
    return giveRewritten(path, buffer, size, [](const FileFacts& facts) { return facts.name; });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(0U);
}

DWORD WINAPI GetShortPathNameA(LPCSTR path, LPSTR buffer, DWORD size) try {
    if (winlayer::denied(__func__)) {
        return 0;
    }
    return giveRewritten(path, buffer, size, [](const FileFacts& facts) {
        return facts.shortName.empty() ? facts.name : facts.shortName;
    });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(0U);
}

DWORD WINAPI GetCurrentDirectoryA(DWORD size, LPSTR buffer) try {
    return winlayer::denied(__func__)
               ? 0
               : giveText(winlayer::Drives::current().currentDirectory(), buffer, size);
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(0U);
}

BOOL WINAPI SetCurrentDirectoryA(LPCSTR path) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    const DWORD error =
        path == nullptr ? ERROR_INVALID_PARAMETER : winlayer::Drives::current().setCurrentDirectory(path);
    return winlayer::succeeded(error) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

UINT WINAPI GetWindowsDirectoryA(LPSTR buffer, UINT size) try {
    return winlayer::denied(__func__)
               ? 0
               : giveText(winlayer::SystemSettings::current().windowsDirectory(), buffer, size);
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(0U);
}

UINT WINAPI GetSystemDirectoryA(LPSTR buffer, UINT size) try {
    return winlayer::denied(__func__)
               ? 0
               : giveText(winlayer::SystemSettings::current().systemDirectory(), buffer, size);
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(0U);
}

DWORD WINAPI GetTempPathA(DWORD size, LPSTR buffer) try {
    return winlayer::denied(__func__)
               ? 0
               : giveText(winlayer::SystemSettings::current().windowsDirectory() + "\\TEMP\\", buffer, size);
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(0U);
}
