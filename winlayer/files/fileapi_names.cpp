#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/files/path_target.h"
#include "winlayer/text/case_folding.h"
#include "winlayer/text/code_pages.h"

namespace {

using winlayer::FileFacts;
using winlayer::FileSystem;

// Runs the work on the file system of a path; true on success, otherwise the last error is set.
template <class Work>
bool onPath(LPCSTR path, const Work& work) {
    winlayer::PathTarget target;
    DWORD error = findTarget(path, target);
    if (error == 0) {
        error = work(*target.files, target.below);
    }
    return winlayer::succeeded(error);
}

// The current directory cannot be removed: Windows NT has it open, the others forbid it.
DWORD refuseCurrentDirectory(const FileSystem& files, const std::string& below) {
    winlayer::PathTarget current;
    if (findTarget(".", current) != 0 || current.files.get() != &files ||
        winlayer::foldCase(toUtf8(winlayer::SystemSettings::current(), current.below)) !=
            winlayer::foldCase(toUtf8(winlayer::SystemSettings::current(), below))) {
        return 0;
    }
    return isNt(winlayer::SystemSettings::current().version) ? ERROR_SHARING_VIOLATION
                                                             : ERROR_CURRENT_DIRECTORY;
}

}  // namespace

BOOL WINAPI DeleteFileA(LPCSTR name) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [](FileSystem& files, const std::string& below) { return files.removeFile(below); });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI CreateDirectoryA(LPCSTR name, LPSECURITY_ATTRIBUTES /*security*/) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [](FileSystem& files, const std::string& below) {
        return below.empty() ? ERROR_ACCESS_DENIED : files.createDirectory(below);
    });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI RemoveDirectoryA(LPCSTR name) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [](FileSystem& files, const std::string& below) {
        const DWORD error = refuseCurrentDirectory(files, below);
        return error != 0 ? error : files.removeDirectory(below);
    });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

DWORD WINAPI GetFileAttributesA(LPCSTR name) try {
    if (winlayer::denied(__func__)) {
        return INVALID_FILE_ATTRIBUTES;
    }
    FileFacts facts;
    const bool found =
        onPath(name, [&](FileSystem& files, const std::string& below) { return files.facts(below, facts); });
    return found ? facts.attributes : INVALID_FILE_ATTRIBUTES;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(INVALID_FILE_ATTRIBUTES);
}

BOOL WINAPI SetFileAttributesA(LPCSTR name, DWORD attributes) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [&](FileSystem& files, const std::string& below) {
        return files.setAttributes(below, attributes);
    });
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}
