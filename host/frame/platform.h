#pragma once
#include <windows.h>

#include <memory>
#include <string>

namespace host {

// What the program needs from its system beyond Windows' calls. Each system has its own source file; on
// Windows itself most of this is not for the program to choose.
class Platform {
public:
    struct Options {
        std::string image;        // diskette image in drive A:; empty for none
        bool noDrive = false;     // there is no drive A:, so no diskette can be made
        std::string windows;      // short name of the Windows version; empty for the default
        std::string stateFolder;  // where settings are kept; empty for the user's default folder
        bool noPauses = false;    // pauses take no time
        bool window = false;      // show a window to the user
        bool pictures = false;    // screenshot() will be called
    };

    virtual ~Platform() = default;
    // The absolute Windows path (8-bit) of a file or folder named by the user. Throws Failure.
    virtual std::string windowsPath(const std::string& name) const = 0;
    // Sets the state of the diskette in drive A: by name; "normal" clears it. Throws Failure.
    virtual void setMedium(const std::string& state) = 0;
    // Writes the window's current appearance to a PNG file; on the layer also creates its folder. Only when
    // the options asked for pictures. Throws Failure.
    virtual void screenshot(HWND window, const std::string& file) = 0;
    // Saves the settings for later runs. Throws Failure.
    virtual void save() = 0;
};

// Throws Failure for an option that this system does not support.
std::unique_ptr<Platform> makePlatform(const Platform::Options& options);
// For the program's help: the options that only this system has, and the possible states of a diskette.
const char* platformHelp();
std::string mediumHelp();

}  // namespace host
