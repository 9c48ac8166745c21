#pragma once
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tools/zar/commands.h"

// A folder of its own that holds the archive of the sample diskette, and is removed at the end.
class SampleDisk {
public:
    SampleDisk() {
        // Images are put on the medium many times over, which a RAM disk makes cheap.
        const std::filesystem::path ram = "/dev/shm";
        const bool hasRam = access(ram.c_str(), W_OK) == 0;
        std::string name =
            ((hasRam ? ram : std::filesystem::temp_directory_path()) / "sample-disk-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for a test");
        folder_ = name;
        std::filesystem::copy(BUILD_DIRECTORY "/samples/disk", files());
        pack();
    }
    ~SampleDisk() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    SampleDisk(const SampleDisk&) = delete;
    SampleDisk& operator=(const SampleDisk&) = delete;

    const std::filesystem::path& folder() const { return folder_; }
    std::filesystem::path archive() const { return folder_ / "mwdisk1.dat"; }
    // The packed files; a test that changes them calls pack() afterwards.
    std::filesystem::path files() const { return folder_ / "files"; }

    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(files() / name, std::ios::binary) << contents;
    }

    void pack() const {
        tools::Console console("test", true);
        tools::JsonWriter result;
        tools::Session session{console, true, result};
        tools::zar::create({archive().string(), files().string(), {}}, session);
    }

private:
    std::filesystem::path folder_;
};
