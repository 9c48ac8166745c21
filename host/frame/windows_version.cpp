#include "host/frame/windows_version.h"

#include "host/frame/frame_resources.h"
#include "host/frame/text.h"

namespace host {

bool isKnown(const OSVERSIONINFOA& version) {
    const DWORD major = version.dwMajorVersion;
    switch (version.dwPlatformId) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return true;  // an edition that is not listed is rightly taken for Windows 95
        case VER_PLATFORM_WIN32_NT:
            return major == 3 || major == 4 || (major == 5 && version.dwMinorVersion <= 1);
        default:
            return false;
    }
}

std::string warningOfUnknownWindows() {
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (!GetVersionExA(&version) || isKnown(version)) return {};
    const std::string number =
        std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion);
    std::string text = resourceString(STRING_UNKNOWN_WINDOWS);
    const std::size_t place = text.find("%s");
    if (place != std::string::npos) text.replace(place, 2, number);
    return text;
}

}  // namespace host
