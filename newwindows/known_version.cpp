#include "newwindows/known_version.h"

namespace newwindows {

bool isKnown(const OSVERSIONINFOA& version) {
    const DWORD major = version.dwMajorVersion;
    switch (version.dwPlatformId) {
        case VER_PLATFORM_WIN32_WINDOWS:
            return true;  // an unlisted edition may be treated as Windows 95
        case VER_PLATFORM_WIN32_NT:
            return major == 3 || major == 4 || (major == 5 && version.dwMinorVersion <= 1);
        default:
            return false;
    }
}

bool runsOnKnownWindows() {
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    return !GetVersionExA(&version) || isKnown(version);
}

}  // namespace newwindows
