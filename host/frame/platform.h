#pragma once
#include <windows.h>

#include <memory>
#include <string>

namespace host {

// What the program asks of the system it runs on beyond Windows' calls. One source for each system implements
// it: where Windows itself is there, most of it is not the program's to choose.
class Platform {
public:
    struct Options {
        std::string image;        // diskette image in drive A:; empty: none
        bool noDrive = false;     // there is no drive A:, for want of which nothing can be made
        std::string windows;      // Windows version by its short name; empty: the usual one
        std::string stateFolder;  // where settings are kept; empty: the user's own place
        bool noPauses = false;    // pauses cost no time
        bool window = false;      // a window that the user sees is wanted
        bool pictures = false;    // screenshot() will be called
    };

    virtual ~Platform() = default;
    // The absolute Windows path (8-bit) of a file or folder as the user names it. Throws Failure.
    virtual std::string windowsPath(const std::string& name) const = 0;
    // Puts the diskette in drive A: into a state by its name, "normal" into none. Throws Failure.
    virtual void setMedium(const std::string& state) = 0;
    // Writes the window as it looks now to a PNG file, whose folder is made; only when the options asked for
    // pictures. Throws Failure.
    virtual void screenshot(HWND window, const std::string& file) = 0;
    // Keeps the settings for later runs. Throws Failure.
    virtual void save() = 0;
};

// Throws Failure for an option that this system cannot follow.
std::unique_ptr<Platform> makePlatform(const Platform::Options& options);
// For the program's help: the options that only this system has, and the states that a diskette can be put
// into.
const char* platformHelp();
std::string mediumHelp();

}  // namespace host
