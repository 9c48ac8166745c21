#pragma once
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "FormatDiskLib/test_diskette.h"
#include "boot_files.h"
#include "make_zar_disks.h"
#include "support/zar_bytes.h"

// A disk maker that writes down what its hooks are told, and shows its insides.
class RecordingDiskMaker : public MakeZARDisks {
public:
    using Events = std::vector<std::string>;

    void GET_MESSAGE_WND(HWND&) override {}
    void SHOW_ERROR(int errorNumber, int kind, const char* text) override {
        note("error " + std::to_string(errorNumber) + " " + std::to_string(kind) + " " + text);
    }
    void UPDATE_WINDOW(const char* text, int pause) override {
        EXPECT_EQ(pause, 1) << text;
        note(text);
    }
    void MoveSlider(int absolute, int value) override {
        note("slider " + std::to_string(absolute) + " " + std::to_string(value));
    }

    // Called with each event once it is written down; may throw, cancel or change the machine.
    std::function<void(const std::string&)> atEvent;
    Events events;

    Events takeEvents() { return std::exchange(events, {}); }
    // The fourteen files, and where the archive is.
    void configure(const std::string& directory) {
        SetArchiveDirectory(directory.c_str());
        SetArchiveName("mwdisk1.dat");
        SetVolumeLabel("QUARVEL");
        for (const BootFile& file : bootFiles) {
            AddDiskFile(file.name, static_cast<int>(file.attributes));
        }
    }

    using FormatDisk::bootSectorImage_;
    using FormatDisk::deviceParameters_;
    using FormatDisk::devicePath_;
    using FormatDisk::driveGeometry_;
    using FormatDisk::driveList_;
    using FormatDisk::driveName_;
    using FormatDisk::input_;
    using FormatDisk::physicalDrive_;
    using FormatDisk::reopen_;
    using FormatDisk::writeSize_;

private:
    void note(const std::string& event) {
        events.push_back(event);
        if (atEvent) {
            atEvent(event);
        }
    }
};

// Fourteen files that belong on an emergency diskette; the loader is a sound one.
inline std::vector<test::ZarFile> emergencyFiles() {
    std::vector<test::ZarFile> files;
    std::size_t size = 300;
    for (const BootFile& file : bootFiles) {
        std::string content;
        for (size += 777; content.size() < size;) {
            content += file.name + std::to_string(content.size());
        }
        files.push_back({file.name, content});
    }
    const auto loader = makeLoader(5);
    files[2].data.assign(loader.begin(), loader.end());
    files[12].data.resize(20000, '!');  // more than two steps of the extractor's copy
    return files;
}
