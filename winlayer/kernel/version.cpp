// The Windows version and the computer's name.

#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"

namespace winlayer {
namespace {

struct Release {
    DWORD major;
    DWORD minor;
    DWORD build;
};

Release releaseOf(WindowsVersion version) {
    switch (version) {
        case WindowsVersion::Windows95:
            return {4, 0, 950};
        case WindowsVersion::Windows98:
            return {4, 10, 1998};
        case WindowsVersion::WindowsMe:
            return {4, 90, 3000};
        case WindowsVersion::NT351:
            return {3, 51, 1057};
        case WindowsVersion::NT4:
            return {4, 0, 1381};
        case WindowsVersion::Windows2000:
            return {5, 0, 2195};
        case WindowsVersion::XP:
            return {5, 1, 2600};
        default:
            // Windows 8 and later report this to a program that does not declare support for a newer version.
            return {6, 2, 9200};
    }
}

constexpr DWORD longestComputerName = 15;

}  // namespace
}  // namespace winlayer

using namespace winlayer;

BOOL WINAPI GetVersionExA(LPOSVERSIONINFOA version) {
    if (denied(__func__)) {
        return FALSE;
    }
    if (version->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA)) {
        return failed(ERROR_INSUFFICIENT_BUFFER);
    }
    const WindowsVersion windows = winlayer::SystemSettings::current().version;
    const Release release = releaseOf(windows);
    version->dwMajorVersion = release.major;
    version->dwMinorVersion = release.minor;
    // Windows 95, 98 and Me repeat the version in the upper half of the build number.
    version->dwBuildNumber =
        isNt(windows) ? release.build : release.major << 24 | release.minor << 16 | release.build;
    version->dwPlatformId = isNt(windows) ? VER_PLATFORM_WIN32_NT : VER_PLATFORM_WIN32_WINDOWS;
    std::memset(version->szCSDVersion, 0, sizeof version->szCSDVersion);
    return TRUE;
}

// The size includes the zero on entry and when the buffer is too small, but not on success. Windows 95, 98
// and Me require a buffer for the longest possible name.
BOOL WINAPI GetComputerNameA(LPSTR buffer, LPDWORD size) try {
    if (denied(__func__)) {
        return FALSE;
    }
    const auto length = static_cast<DWORD>(winlayer::SystemSettings::current().computerName.size());
    const DWORD needed =
        isNt(winlayer::SystemSettings::current().version) ? length + 1 : longestComputerName + 1;
    if (*size < needed) {
        *size = needed;
        return failed(ERROR_BUFFER_OVERFLOW);
    }
    std::memcpy(buffer, winlayer::SystemSettings::current().computerName.c_str(), length + 1);
    *size = length;
    return TRUE;
} catch (const std::bad_alloc&) {
    return outOfMemory(FALSE);
}
