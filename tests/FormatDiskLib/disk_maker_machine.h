#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FormatDiskLib/recording_disk_maker.h"
#include "FormatDiskLib/test_diskette.h"
#include "boot_check.h"
#include "support/diskette_machine.h"
#include "support/temp_folder.h"

inline std::string familyName(const testing::TestParamInfo<winlayer::WindowsVersion>& family) {
    return winlayer::isNt(family.param) ? "NT" : "Windows98";
}

// A machine with a blank diskette in A: and a disk archive on C:, and a judge of finished diskettes.
class DiskMakerMachine : public DisketteMachine {
public:
    explicit DiskMakerMachine(winlayer::WindowsVersion version,
                              const std::vector<test::ZarFile>& files = emergencyFiles())
        : DisketteMachine(version) {
        writeArchive(files);
    }

    void writeArchive(const std::vector<test::ZarFile>& files) {
        writeFile(archiveFolder() + "\\mwdisk1.dat", test::newArchive(files));
    }
    const std::string& archiveFolder() const { return folder_.path(); }

    // A read-only system file and a tree of three levels with files in it.
    void putOldFiles() {
        writeFile("A:\\IO.SYS", std::string(3000, 'o'));
        SetFileAttributesA("A:\\IO.SYS", 7);
        for (const char* directory : {"A:\\OLD", "A:\\OLD\\B", "A:\\OLD\\B\\C"}) {
            CreateDirectoryA(directory, nullptr);
            writeFile(std::string(directory) + "\\README.TXT", "old");
        }
        SetFileAttributesA("A:\\OLD\\B\\README.TXT", 1);
    }

    std::vector<std::byte> snapshot() { return {image().begin(), image().end()}; }
    void restore(const std::vector<std::byte>& bytes) {
        std::copy(bytes.begin(), bytes.end(), image().begin());
        EXPECT_EQ(drive().settle(), DWORD{NO_ERROR});
    }
    void insertBlank() {
        format();
        EXPECT_EQ(drive().settle(), DWORD{NO_ERROR});
    }

    DWORD serialNumber() {
        DWORD number = 0;
        std::memcpy(&number, image().data() + boot_sector::serialNumberAt, 4);
        return number;
    }

    std::vector<std::string> rootNames() {
        std::vector<std::string> names;
        WIN32_FIND_DATAA entry;
        const HANDLE search = FindFirstFileA("A:\\*", &entry);
        for (BOOL more = search != INVALID_HANDLE_VALUE; more != 0; more = FindNextFileA(search, &entry)) {
            names.push_back(entry.cFileName);
        }
        FindClose(search);
        return names;
    }

    // The first thing that a finished diskette lacks, judged by its files in order with their contents and
    // attributes, its label, its boot sector and whether it starts; empty when all is well.
    std::string faultOfDiskette(const std::vector<test::ZarFile>& files = emergencyFiles()) {
        drive().settle();
        for (const test::ZarFile& file : files) {
            const std::string path = "A:\\" + file.name;
            if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return file.name + " is missing";
            if (readFile(path) != file.data) return file.name + " has another content";
        }
        if (rootNames().size() != files.size()) return "other files are left";
        for (const BootFile& file : bootFiles) {
            const std::string path = std::string("A:\\") + file.name;
            if (GetFileAttributesA(path.c_str()) != file.attributes)
                return "attributes of " + std::string(file.name);
        }
        char label[12] = {};
        GetVolumeInformationA("A:\\", label, sizeof label, nullptr, nullptr, nullptr, nullptr, 0);
        if (std::string(label) != "QUARVEL") return "label " + std::string(label);
        const auto sector = boot_sector::Build(serialNumber());
        if (std::memcmp(image().data(), sector.data(), sector.size()) != 0) return "boot sector";
        const auto report = boot_check::CheckDiskette([&](DWORD number, boot_check::Sector target) {
            std::memcpy(target.data(), image().data() + number * 512, 512);
            return true;
        });
        return report.passed() && report.loaderStarts ? "" : report.findings.back().sentence;
    }

private:
    TempFolder folder_;
};
