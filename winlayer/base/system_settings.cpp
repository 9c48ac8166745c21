#include "winlayer/base/system_settings.h"

namespace winlayer {

std::string SystemSettings::windowsDirectory() const {
    return isNt(version) && version < WindowsVersion::XP ? "C:\\WINNT" : "C:\\WINDOWS";
}

std::string SystemSettings::systemDirectory() const {
    return windowsDirectory() + (isNt(version) ? "\\SYSTEM32" : "\\SYSTEM");
}

}  // namespace winlayer
