#include "tools/emergency_disk/diskette.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <chrono>

#include "tools/common/exit_code.h"
#include "tools/common/reasons.h"
#include "winlayer/diskette/host_store.h"

namespace tools::emergency_disk {

namespace fs = std::filesystem;
using winlayer::DisketteDrive;
using winlayer::SectorStore;

namespace {

Problem deviceProblem(const fs::path& device, DWORD error) {
    const std::string name = device.string();
    switch (error) {
        case ERROR_BAD_DEVICE:
            return {ExitCode::refused, name + " is not a block device"};
        case ERROR_UNRECOGNIZED_MEDIA:
            return {ExitCode::refused, name + " does not have exactly 2,880 sectors of 512 bytes"};
        case ERROR_BUSY:
            return {ExitCode::refused, name + " is in use (mounted?)"};
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return {ExitCode::noDiskette, "there is no drive " + name};
        case ERROR_NOT_READY:
            return {ExitCode::noDiskette, "there is no diskette in " + name};
        default:
            return {ExitCode::failure, "cannot open " + name + ": " + errorText(error)};
    }
}

std::unique_ptr<SectorStore> openTarget(const Target& target) {
    std::unique_ptr<SectorStore> store;
    if (target.isDevice()) {
        if (const DWORD error = winlayer::openBlockDevice(target.device, store))
            throw deviceProblem(target.device, error);
        return store;
    }
    std::error_code ignored;
    const fs::file_status status = fs::status(target.image, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Problem(ExitCode::refused,
                      target.image.string() + " is not an image file (--device names a drive)");
    }
    const DWORD error = winlayer::openImage(target.image, store);
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        throw Problem(ExitCode::noDiskette, "there is no image " + target.image.string());
    }
    if (error == ERROR_UNRECOGNIZED_MEDIA) {
        throw Problem(ExitCode::refused,
                      target.image.string() + " is not a 1.44 MB diskette image (1,474,560 bytes)");
    }
    if (error != 0) {
        throw Problem(ExitCode::failure, "cannot open " + target.image.string() + ": " + errorText(error));
    }
    return store;
}

// Gives an image file its size and its room on the host's disk, so that a full disk is not taken for a bad
// sector.
void reserve(const fs::path& file, const fs::path& target) {
    const int opened = open(file.c_str(), O_RDWR | O_CLOEXEC);
    int error = opened < 0 ? errno : 0;
    if (opened >= 0) {
        error = posix_fallocate(opened, 0, off_t{winlayer::sectors1440} * off_t{winlayer::sectorSize});
        close(opened);
    }
    if (error != 0) {
        throw Problem(ExitCode::failure,
                      "cannot write " + target.string() + ": " + std::generic_category().message(error));
    }
}

// The copy has the image's permissions too: an image that nobody may write is a protected diskette.
void copyImage(const fs::path& image, const fs::path& copy) {
    std::error_code error;
    fs::copy_file(image, copy, fs::copy_options::overwrite_existing, error);
    if (error) throw Problem(ExitCode::failure, "cannot copy " + image.string() + ": " + error.message());
}

DWORD freshSerial() {
    return static_cast<DWORD>(std::chrono::system_clock::now().time_since_epoch().count());
}

// Sets what --simulate asks for.
void setState(DisketteDrive& drive, const std::string& name) {
    if (name.empty()) return;
    winlayer::DisketteState state;
    if (!winlayer::parseState(name, state)) {
        throw Problem(ExitCode::usage,
                      "--simulate does not know '" + name + "'; it knows " + simulationNames());
    }
    drive.setState(state);
}

bool isBadSector(DWORD error) {
    return error != 0 && error != ERROR_WRITE_PROTECT && error != ERROR_NOT_READY;
}

}  // namespace

std::string simulationNames() {
    std::string names;
    for (const std::string_view name : winlayer::stateNames()) {
        names += (names.empty() ? "" : ", ") + std::string(name);
    }
    return names;
}

TargetFacts examine(const Target& target) {
    TargetFacts facts;
    std::error_code ignored;
    if (!target.isDevice() && !fs::exists(target.image, ignored)) return facts;
    facts.exists = true;
    const auto drive = DisketteDrive::make(openTarget(target));
    winlayer::VolumeFacts volume;
    winlayer::DiskGeometry geometry;
    facts.isDiskette = drive->mediumGeometry(geometry) == 0 && geometry.sectors() == winlayer::sectors1440 &&
                       drive->volume(volume) == 0;
    facts.label = volume.label;
    return facts;
}

void makeBlankImage(const StagedFile& file) {
    reserve(file.path(), file.target());
    if (const DWORD error = winlayer::formatDiskette(*openTarget({file.path(), {}}), freshSerial())) {
        throw Problem(ExitCode::failure, "cannot write " + file.target().string() + ": " + errorText(error));
    }
}

Diskette::Diskette(const Target& target, const std::string& state) {
    std::unique_ptr<SectorStore> store;
    if (target.isDevice()) {
        store = openTarget(target);
    } else {
        staged_ = std::make_unique<StagedFile>(target.image);
        if (fs::exists(target.image)) {
            copyImage(target.image, staged_->path());
        } else {
            makeBlankImage(*staged_);
        }
        store = openTarget({staged_->path(), {}});
    }
    drive_ = DisketteDrive::make(std::move(store));
    setState(*drive_, state);
}

void Diskette::commit() {
    drive_->setState({});
    if (const DWORD error = drive_->settle()) {
        throw Problem(ExitCode::mediumError, "the diskette could not be finished: " + errorText(error));
    }
    drive_->eject();
    if (staged_) staged_->commit();
}

std::shared_ptr<DisketteDrive> openForReading(const Target& target) {
    return DisketteDrive::make(openTarget(target));
}

Problem diagnose(DisketteDrive& drive) {
    std::array<std::byte, winlayer::sectorSize> sector{};
    DWORD error = 0;
    for (DWORD number = 0; number < winlayer::sectors1440; ++number) {
        error = drive.readSectors(number, sector);
        if (error == 0) error = drive.writeSectors(number, sector);
        if (error == ERROR_WRITE_PROTECT)
            return {ExitCode::writeProtected, "the diskette is write-protected"};
        if (error == ERROR_NOT_READY) return {ExitCode::noDiskette, "there is no diskette in the drive"};
        if (isBadSector(error)) {
            return {ExitCode::mediumError,
                    "sector " + std::to_string(number) + " of the diskette is bad: " + errorText(error)};
        }
    }
    return {ExitCode::failure, "the diskette could not be made"};
}

}  // namespace tools::emergency_disk
