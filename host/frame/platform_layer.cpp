// On the Windows layer the program sets up the machine on which it runs.
#include <cstdlib>
#include <filesystem>

#include "host/frame/failure.h"
#include "host/frame/platform.h"
#include "host/frame/settings_file.h"
#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/diskette/host_store.h"
#include "winlayer/display/display.h"
#include "winlayer/machine.h"

namespace host {

namespace fs = std::filesystem;
using winlayer::DisketteDrive;
using winlayer::WindowsVersion;

namespace {

struct VersionRow {
    const char* name;
    WindowsVersion version;
};
constexpr VersionRow versions[] = {
    {"95", WindowsVersion::Windows95},     {"98", WindowsVersion::Windows98},
    {"me", WindowsVersion::WindowsMe},     {"nt4", WindowsVersion::NT4},
    {"2000", WindowsVersion::Windows2000}, {"xp", WindowsVersion::XP},
    {"later", WindowsVersion::Later},
};

WindowsVersion versionOf(const std::string& name) {
    if (name.empty()) return WindowsVersion::XP;
    for (const VersionRow& row : versions) {
        if (name == row.name) return row.version;
    }
    throw Failure(ExitCode::usage, "there is no Windows '" + name + "' (95, 98, me, nt4, 2000, xp, later)");
}

std::shared_ptr<DisketteDrive> driveWith(const std::string& image) {
    std::unique_ptr<winlayer::SectorStore> medium;
    if (!image.empty() && winlayer::openImage(image, medium) != 0) {
        throw Failure(ExitCode::failure, image + " is no 1.44 MB diskette image that can be opened");
    }
    return DisketteDrive::make(std::move(medium));
}

fs::path settingsFile(const std::string& stateFolder) {
    if (!stateFolder.empty()) return fs::path(stateFolder) / "settings";
    if (const char* state = std::getenv("XDG_STATE_HOME"); state && *state)
        return fs::path(state) / "kelvaro-host" / "settings";
    const char* home = std::getenv("HOME");
    if (!home || !*home)
        throw Failure(ExitCode::usage, "HOME is not set; --state names a folder for the settings");
    return fs::path(home) / ".local" / "state" / "kelvaro-host" / "settings";
}

std::string stateNames() {
    std::string names;
    for (const std::string_view name : winlayer::stateNames()) names += std::string(name) + ", ";
    return names + "normal";
}

// Drive A: has the image, is empty or does not exist, Z: is all of the host's files, C: a folder for this
// run. The settings are kept in a file between runs.
class LayerPlatform : public Platform {
public:
    explicit LayerPlatform(const Options& options)
        : machine_(versionOf(options.windows)),
          drive_(driveWith(options.image)),
          settings_(settingsFile(options.stateFolder)),
          kept_(readSettingsFile(settings_)) {
        machine_->drives.mountFolder('Z', "/");
        if (!options.noDrive) machine_->drives.mount('A', drive_, DRIVE_REMOVABLE);
        if (options.noPauses) machine_->clock.stop();
        setSettings(kept_);
        if (options.window) showWindows(winlayer::DisplayKind::Screen);
        if (options.pictures) showWindows(winlayer::DisplayKind::Memory);
    }
    ~LayerPlatform() override { machine_->windows.setPeer(nullptr); }

    std::string windowsPath(const std::string& name) const override {
        try {
            return winlayer::Machine::current().drives.fromHost(name);
        } catch (const std::invalid_argument&) {
            throw Failure(ExitCode::usage, "no Windows path leads to '" + name + "'");
        }
    }

    void setMedium(const std::string& name) override {
        winlayer::DisketteState state;
        if (name != "normal" && !winlayer::parseState(name, state)) {
            throw Failure(ExitCode::usage, "a diskette is never '" + name + "' (" + stateNames() + ")");
        }
        drive_->setState(state);
    }

    void screenshot(HWND window, const std::string& file) override {
        std::error_code ignored;  // a failure shows in the capture
        fs::create_directories(fs::path(file).parent_path(), ignored);
        if (!display_->capture(window, file)) throw Failure(ExitCode::failure, "cannot write " + file);
    }

    // Unchanged settings are not written: another run may have changed them meanwhile.
    void save() override {
        const std::string now = settingsText();
        if (now != kept_) writeSettingsFile(settings_, now);
        kept_ = now;
    }

private:
    void showWindows(winlayer::DisplayKind kind) {
        std::string reason;
        display_ = winlayer::openDisplay(kind, reason);
        if (!display_) {
            throw Failure(ExitCode::noDisplay, "no window can be shown here: " + reason +
                                                   " (--script runs the wizard without one)");
        }
        machine_->windows.setPeer(display_.get());
    }

    winlayer::ScopedMachine machine_;
    std::shared_ptr<DisketteDrive> drive_;
    fs::path settings_;
    std::string kept_;
    std::unique_ptr<winlayer::Peer> display_;
};

}  // namespace

std::unique_ptr<Platform> makePlatform(const Platform::Options& options) {
    return std::make_unique<LayerPlatform>(options);
}

std::string mediumHelp() {
    std::string lines;
    for (const std::string_view name : winlayer::stateNames()) lines += "  " + std::string(name) + '\n';
    return lines + "  normal\nN is a sector from 0 to 2879.\n";
}

const char* platformHelp() {
    return "  --image FILE         the diskette image in drive A: (without it the drive is empty)\n"
           "  --no-drive           there is no drive A:\n"
           "  --windows VERSION    the Windows to run as: 95, 98, me, nt4, 2000, xp (usual), later\n"
           "  --state DIR          where the settings are kept (usual: ~/.local/state/kelvaro-host)\n"
           "  --no-pauses          pauses cost no time\n";
}

}  // namespace host
