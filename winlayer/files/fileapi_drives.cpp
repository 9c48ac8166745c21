#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"
#include "winlayer/include/winbase.h"

namespace {

using winlayer::Drive;

// The drive of a root directory such as "A:\"; of the current directory if null.
DWORD driveOfRoot(LPCSTR root, const Drive*& drive) {
    winlayer::ResolvedPath resolved;
    const std::string path = root != nullptr ? root : "\\";
    if (const DWORD error = resolvePath(path, winlayer::Drives::current().currentDirectory(), resolved);
        error != 0) {
        return error;
    }
    drive = winlayer::Drives::current().find(resolved.letter);
    return drive == nullptr ? ERROR_PATH_NOT_FOUND : resolved.below.empty() ? 0 : ERROR_DIR_NOT_ROOT;
}

// The file system of a root that ends in a separator; otherwise an error code.
DWORD volumeOf(LPCSTR root, std::shared_ptr<winlayer::FileSystem>& files) {
    if (root != nullptr && !winlayer::endsWithSeparator(root)) {
        return ERROR_INVALID_NAME;
    }
    const Drive* drive = nullptr;
    if (const DWORD error = driveOfRoot(root, drive); error != 0) {
        return error;
    }
    files = drive->files;
    return files == nullptr ? ERROR_NOT_READY : 0;
}

bool fits(const std::string& text, LPCSTR buffer, DWORD size) {
    return buffer == nullptr || text.size() < size;
}

void copyIfWanted(const std::string& text, LPSTR buffer) {
    if (buffer != nullptr) {
        std::memcpy(buffer, text.c_str(), text.size() + 1);
    }
}

}  // namespace

DWORD WINAPI GetLogicalDrives() {
    return winlayer::denied(__func__) ? 0 : winlayer::Drives::current().letters();
}

UINT WINAPI GetDriveTypeA(LPCSTR root) try {
    winlayer::entered(__func__);
    const Drive* drive = nullptr;
    return driveOfRoot(root, drive) == 0 ? drive->type : DRIVE_NO_ROOT_DIR;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(DRIVE_NO_ROOT_DIR);
}

BOOL WINAPI GetVolumeInformationA(LPCSTR root, LPSTR label, DWORD labelSize, LPDWORD serial,
                                  LPDWORD maximumComponent, LPDWORD flags, LPSTR fileSystem,
                                  DWORD fileSystemSize) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    std::shared_ptr<winlayer::FileSystem> files;
    winlayer::VolumeFacts facts;
    DWORD error = volumeOf(root, files);
    if (error == 0) {
        error = files->volume(facts);
    }
    if (error == 0 &&
        !(fits(facts.label, label, labelSize) && fits(facts.fileSystem, fileSystem, fileSystemSize))) {
        error = ERROR_MORE_DATA;
    }
    if (!winlayer::succeeded(error)) {
        return FALSE;
    }
    copyIfWanted(facts.label, label);
    copyIfWanted(facts.fileSystem, fileSystem);
    const auto put = [](LPDWORD place, DWORD value) {
        if (place != nullptr) {
            *place = value;
        }
    };
    put(serial, facts.serial);
    put(maximumComponent, facts.longestName);
    put(flags, 0);
    return TRUE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI SetVolumeLabelA(LPCSTR root, LPCSTR label) try {
    if (winlayer::denied(__func__)) {
        return FALSE;
    }
    std::shared_ptr<winlayer::FileSystem> files;
    DWORD error = volumeOf(root, files);
    if (error == 0) {
        error = files->setLabel(label == nullptr ? "" : label);
    }
    return winlayer::succeeded(error) ? TRUE : FALSE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}
