#include "winlayer/files/file_openers.h"

#include <string_view>

#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"
#include "winlayer/files/vwin32.h"

namespace winlayer {

namespace {

constexpr std::string_view devicePrefix = "\\\\.\\";

bool equalsWithoutCase(std::string_view text, std::string_view upperCase) {
    if (text.size() != upperCase.size()) {
        return false;
    }
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != upperCase[at]) {
            return false;
        }
    }
    return true;
}

// Drives of Windows 95, 98 and Me have no raw devices; VWIN32 replaces them.
DWORD openDrive(std::string_view device, const OpenRequest& request, OpenedFile& opened) {
    const Drive* drive =
        isNt(SystemSettings::current().version) ? Drives::current().find(device[0]) : nullptr;
    if (drive == nullptr || drive->files == nullptr) {
        return ERROR_FILE_NOT_FOUND;
    }
    return drive->files->openDevice(request, opened.file);
}

DWORD openVirtualDevice(OpenedFile& opened) {
    if (isNt(SystemSettings::current().version)) {
        return ERROR_FILE_NOT_FOUND;
    }
    opened.file = openVwin32(Drives::current());
    return 0;
}

DWORD openDevice(std::string_view device, const OpenRequest& request, OpenedFile& opened) {
    if (request.disposition != OPEN_EXISTING) {
        return ERROR_INVALID_PARAMETER;
    }
    opened.existed = true;
    if (device.size() == 2 && device[1] == ':') {
        return openDrive(device, request, opened);
    }
    if (equalsWithoutCase(device, "VWIN32") || equalsWithoutCase(device, "VWIN32.VXD")) {
        return openVirtualDevice(opened);
    }
    return ERROR_FILE_NOT_FOUND;
}

}  // namespace

DWORD openByName(const std::string& name, const OpenRequest& request, OpenedFile& opened) {
    if (std::string_view(name).substr(0, devicePrefix.size()) == devicePrefix) {
        return openDevice(std::string_view(name).substr(devicePrefix.size()), request, opened);
    }
    if (const DWORD error = findTarget(name.c_str(), opened.target); error != 0) {
        return error;
    }
    // The name of a new file must not end in a separator.
    const bool creates = request.disposition != OPEN_EXISTING && request.disposition != TRUNCATE_EXISTING;
    if (creates && endsWithSeparator(name)) {
        return ERROR_INVALID_NAME;
    }
    return opened.target.files->open(opened.target.below, request, opened.file, opened.existed);
}

}  // namespace winlayer
