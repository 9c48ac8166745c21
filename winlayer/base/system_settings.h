#pragma once
#include <string>

#include "winlayer/include/minwindef.h"

namespace winlayer {

enum class WindowsVersion { Windows95, Windows98, WindowsMe, NT351, NT4, Windows2000, XP, Later };

// Windows NT and its successors: drives are reached by disk IOCTLs, others through VWIN32.
constexpr bool isNt(WindowsVersion version) {
    return version >= WindowsVersion::NT351;
}

// Which Windows the layer is.
struct SystemSettings {
    // The current machine's.
    static SystemSettings& current();

    // "C:\\WINDOWS" or, before XP on NT, "C:\\WINNT", and the system directory in it.
    std::string windowsDirectory() const;
    std::string systemDirectory() const;

    WindowsVersion version = WindowsVersion::XP;
    std::string computerName = "WORKSTATION";  // ANSI
    UINT ansiCodePage = 1252;                  // 1252 or 65001 ...: what code_pages.h supports
    WORD language = 0x0407;                    // German; 0x0409 English: language of system messages
    UINT errorMode = 0;                        // SetErrorMode's value
};

}  // namespace winlayer
