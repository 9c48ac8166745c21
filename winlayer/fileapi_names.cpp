#include "winlayer/last_error.h"
#include "winlayer/machine.h"

namespace {

using winlayer::FileFacts;
using winlayer::FileSystem;
using winlayer::Machine;

// Does the work on the file system that a path leads to; true on success, otherwise the last error is set.
template <class Work>
bool onPath(LPCSTR path, const Work& work) {
    std::shared_ptr<FileSystem> files;
    std::string below;
    DWORD error =
        path == nullptr ? ERROR_PATH_NOT_FOUND : Machine::current().drives.resolve(path, files, below);
    if (error == 0) {
        error = work(*files, below);
    }
    return winlayer::succeeded(error);
}

// The current directory must stay: Windows NT has it open, the others refuse by rule.
DWORD refuseCurrentDirectory(const std::string& path) {
    const Machine& machine = Machine::current();
    std::shared_ptr<FileSystem> files;
    std::shared_ptr<FileSystem> currentFiles;
    std::string below;
    std::string currentBelow;
    if (machine.drives.resolve(path, files, below) != 0 ||
        machine.drives.resolve(".", currentFiles, currentBelow) != 0 || files != currentFiles ||
        below != currentBelow) {
        return 0;
    }
    return isNt(machine.version) ? ERROR_SHARING_VIOLATION : ERROR_CURRENT_DIRECTORY;
}

}  // namespace

BOOL WINAPI DeleteFileA(LPCSTR name) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [](FileSystem& files, const std::string& below) { return files.removeFile(below); });
}

BOOL WINAPI CreateDirectoryA(LPCSTR name, LPSECURITY_ATTRIBUTES /*security*/) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [](FileSystem& files, const std::string& below) {
        return below.empty() ? ERROR_ACCESS_DENIED : files.createDirectory(below);
    });
}

BOOL WINAPI RemoveDirectoryA(LPCSTR name) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [&](FileSystem& files, const std::string& below) {
        const DWORD error = refuseCurrentDirectory(name);
        return error != 0 ? error : files.removeDirectory(below);
    });
}

DWORD WINAPI GetFileAttributesA(LPCSTR name) {
    if (winlayer::denied(__func__)) {
        return INVALID_FILE_ATTRIBUTES;
    }
    FileFacts facts;
    const bool found =
        onPath(name, [&](FileSystem& files, const std::string& below) { return files.facts(below, facts); });
    return found ? facts.attributes : INVALID_FILE_ATTRIBUTES;
}

BOOL WINAPI SetFileAttributesA(LPCSTR name, DWORD attributes) {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    return onPath(name, [&](FileSystem& files, const std::string& below) {
        return files.setAttributes(below, attributes);
    });
}
