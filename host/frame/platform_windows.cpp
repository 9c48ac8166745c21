#include <vector>

#include "host/frame/failure.h"
#include "host/frame/platform.h"
#include "host/frame/text.h"

namespace host {

namespace {

// Windows is there already: its drives, settings and clock are the user's.
class WindowsPlatform : public Platform {
public:
    std::string windowsPath(const std::string& name) const override {
        std::vector<char> path(MAX_PATH + 1);
        const DWORD length =
            GetFullPathNameA(name.c_str(), static_cast<DWORD>(path.size()), path.data(), nullptr);
        if (length == 0 || length >= path.size()) {
            throw Failure(ExitCode::usage, utf8(name) + " is no usable name");
        }
        return path.data();
    }
    void setMedium(const std::string&) override {
        throw Failure(ExitCode::usage, "the state of the diskette cannot be chosen here");
    }
    void screenshot(HWND, const std::string&) override {
        throw Failure(ExitCode::failure, "pictures are not made here");
    }
    void save() override {}
};

}  // namespace

std::unique_ptr<Platform> makePlatform(const Platform::Options& options) {
    if (options.pictures) throw Failure(ExitCode::noDisplay, "no pictures of the frame can be made here");
    if (!options.image.empty() || !options.windows.empty() || !options.stateFolder.empty() ||
        options.noPauses) {
        throw Failure(ExitCode::usage, "--image, --windows, --state and --no-pauses are not known here");
    }
    return std::make_unique<WindowsPlatform>();
}

const char* platformHelp() {
    return "";
}

}  // namespace host
