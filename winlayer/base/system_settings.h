#pragma once
#include <string>

#include "winlayer/include/minwindef.h"

namespace winlayer {

enum class WindowsVersion { Windows95, Windows98, WindowsMe, NT351, NT4, Windows2000, XP, Later };

// Windows NT and its successors reach drives by disk IOCTLs, the others through VWIN32.
constexpr bool isNt(WindowsVersion version) {
    return version >= WindowsVersion::NT351;
}

// The Windows that the layer simulates.
struct SystemSettings {
    // The current machine's.
    static SystemSettings& current();

    // "C:\\WINDOWS" or, before XP on NT, "C:\\WINNT", and the system directory in it.
    std::string windowsDirectory() const;
    std::string systemDirectory() const;

    WindowsVersion version = WindowsVersion::XP;
    std::string computerName = "WORKSTATION";  // ANSI
    UINT ansiCodePage = 1252;                  // as code_pages.h supports: 1252, 65001 ...
    WORD language = 0x0407;                    // of system messages: 0x0407 German, 0x0409 English
    UINT errorMode = 0;                        // as set by SetErrorMode
};

}  // namespace winlayer
