#include <fstream>
#include <vector>

#include "host/frame/failure.h"
#include "host/frame/platform.h"
#include "host/frame/png.h"
#include "host/frame/text.h"

namespace host {

namespace {

// A bitmap in memory to draw on, with readable pixels.
class MemoryBitmap {
public:
    MemoryBitmap(LONG width, LONG height)
        : width_(width), height_(height), context_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(info.bmiHeader), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        bitmap_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
        if (bitmap_) former_ = SelectObject(context_, bitmap_);
    }
    ~MemoryBitmap() {
        if (bitmap_) {
            SelectObject(context_, former_);
            DeleteObject(bitmap_);
        }
        if (context_) DeleteDC(context_);
    }
    MemoryBitmap(const MemoryBitmap&) = delete;
    MemoryBitmap& operator=(const MemoryBitmap&) = delete;

    // Copies the client area of the window as displayed.
    bool copy(HWND window) {
        const HDC from = GetDC(window);
        const bool done = bitmap_ && from && BitBlt(context_, 0, 0, width_, height_, from, 0, 0, SRCCOPY);
        if (from) ReleaseDC(window, from);
        return done && GdiFlush();
    }
    Picture picture() const {
        const auto* const pixels = static_cast<const std::uint32_t*>(bits_);
        return {static_cast<std::uint32_t>(width_), {pixels, pixels + width_ * height_}};
    }

private:
    LONG width_;
    LONG height_;
    HDC context_;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ former_ = nullptr;
    void* bits_ = nullptr;
};

// On Windows itself, drives, settings and clock are the user's.
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
    void screenshot(HWND window, const std::string& file) override {
        RECT client{};
        GetClientRect(window, &client);
        if (client.right == 0 || client.bottom == 0)
            throw Failure(ExitCode::failure, "the frame has no area");
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        MemoryBitmap bitmap(client.right, client.bottom);
        if (!bitmap.copy(window))
            throw Failure(ExitCode::noDisplay, "no picture of the frame can be made here");
        std::ofstream out(file, std::ios::binary);
        out << png(bitmap.picture());
        out.close();
        if (!out) throw Failure(ExitCode::failure, "cannot write " + utf8(file));
    }
    void save() override {}
};

}  // namespace

std::unique_ptr<Platform> makePlatform(const Platform::Options& options) {
    if (!options.image.empty() || !options.windows.empty() || !options.stateFolder.empty() ||
        options.noPauses || options.noDrive) {
        throw Failure(ExitCode::usage,
                      "--image, --no-drive, --windows, --state and --no-pauses are not known here");
    }
    return std::make_unique<WindowsPlatform>();
}

const char* platformHelp() {
    return "";
}

std::string mediumHelp() {
    return "  none can be chosen here\n";
}

}  // namespace host
