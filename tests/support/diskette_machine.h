#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <memory>
#include <span>

#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/machine.h"

// A machine of its own whose drive A: holds a freshly formatted 1.44 MB diskette in memory. Times of files
// come from a stopped clock, so that equal runs leave equal diskettes.
class DisketteMachine {
public:
    static constexpr std::time_t moment = 1'000'000'000;  // 9 September 2001
    static constexpr DWORD serial = 0x12345678;
    static constexpr std::byte leftover{0xF6};  // fills the data area: nothing may take it for zeros

    explicit DisketteMachine(winlayer::WindowsVersion version = winlayer::WindowsVersion::XP,
                             DWORD sectors = winlayer::sectors1440)
        : machine_(version) {
        auto medium = std::make_unique<winlayer::MemoryStore>(sectors);
        medium_ = medium.get();
        format();
        drive_ = winlayer::DisketteDrive::make(std::move(medium));
        drive_->setClock([] { return moment; });
        machine_->drives.mount('A', drive_, DRIVE_REMOVABLE);
    }

    winlayer::Machine& machine() { return *machine_; }
    winlayer::DisketteDrive& drive() { return *drive_; }
    // What the diskette holds, byte by byte. After changing it, call drive().settle().
    std::span<std::byte> image() { return medium_->bytes(); }

protected:
    void format() {
        std::fill(image().begin(), image().end(), leftover);
        EXPECT_EQ(winlayer::formatDiskette(*medium_, serial), DWORD{NO_ERROR});
    }

private:
    winlayer::ScopedMachine machine_;
    winlayer::MemoryStore* medium_ = nullptr;  // the drive's, which this object never ejects
    std::shared_ptr<winlayer::DisketteDrive> drive_;
};
