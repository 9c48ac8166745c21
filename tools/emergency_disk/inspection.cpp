#include "tools/emergency_disk/inspection.h"

#include <algorithm>
#include <array>
#include <map>

#include "boot_check.h"
#include "boot_files.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"

namespace tools::emergency_disk {

using winlayer::DisketteDrive;
using winlayer::FileFacts;
using winlayer::sectorSize;

namespace {

constexpr DWORD attributeBits =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

void checkStart(DisketteDrive& drive, Inspection& inspection) {
    const boot_check::Report report = boot_check::CheckDiskette([&](DWORD number, boot_check::Sector sector) {
        return drive.readSectors(number, std::as_writable_bytes(sector)) == 0;
    });
    for (const boot_check::Finding& finding : report.findings) {
        inspection.checks.push_back({finding.name, finding.passed, finding.sentence});
    }
    inspection.boots = report.passed();
}

Check checkFats(DisketteDrive& drive) {
    const std::string name = "fats-agree";
    winlayer::Fat12Layout layout;
    if (const DWORD error = drive.layout(layout))
        return {name, false, "There is no FAT12 volume: " + errorText(error) + "."};
    const std::size_t bytes = std::size_t{layout.sectorsPerFat} * sectorSize;
    std::vector<std::byte> first(bytes);
    std::vector<std::byte> other(bytes);
    DWORD error = drive.readSectors(layout.reservedSectors, first);
    for (DWORD fat = 1; fat < layout.fats && error == 0; ++fat) {
        error = drive.readSectors(layout.reservedSectors + fat * layout.sectorsPerFat, other);
        if (error == 0 && other != first) return {name, false, "The two file allocation tables differ."};
    }
    if (error != 0)
        return {name, false, "The file allocation tables cannot be read: " + errorText(error) + "."};
    return {name, true, "The two file allocation tables agree."};
}

Check checkLabel(DisketteDrive& drive, const std::string* expected) {
    winlayer::VolumeFacts facts;
    if (const DWORD error = drive.volume(facts))
        return {"label", false, "The label cannot be read: " + errorText(error) + "."};
    const bool passed = expected == nullptr || facts.label == *expected;
    std::string sentence =
        facts.label.empty() ? "The diskette has no label" : "The label is " + utf8(facts.label);
    if (!passed) sentence += "; it should be " + utf8(*expected);
    return {"label", passed, sentence + "."};
}

DWORD readWhole(DisketteDrive& drive, const std::string& name, std::size_t size,
                std::vector<unsigned char>& contents) {
    std::unique_ptr<winlayer::OpenFile> file;
    bool existed = false;
    const winlayer::OpenRequest request{GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, 0};
    if (const DWORD error = drive.open(name, request, file, existed)) return error;
    contents.resize(size);
    const winlayer::Transfer transfer = file->read(0, std::as_writable_bytes(std::span(contents)));
    contents.resize(transfer.count);
    return transfer.error;
}

std::string contentsFault(DisketteDrive& drive, const PlannedFile& planned, std::uint64_t size) {
    if (size != planned.contents.size()) {
        return "has " + std::to_string(size) + " bytes; it should have " +
               std::to_string(planned.contents.size());
    }
    std::vector<unsigned char> contents;
    if (const DWORD error = readWhole(drive, planned.name, planned.contents.size(), contents)) {
        return "cannot be read: " + errorText(error);
    }
    if (contents == planned.contents) return {};
    const auto differing =
        std::mismatch(contents.begin(), contents.end(), planned.contents.begin(), planned.contents.end());
    return "differs from the archive at byte " + std::to_string(differing.first - contents.begin());
}

// What is wrong with a file; empty when nothing is.
std::string fileFault(DisketteDrive& drive, const BootFile& file, const PlannedFile* planned) {
    FileFacts facts;
    const DWORD error = drive.facts(file.name, facts);
    if (error == ERROR_FILE_NOT_FOUND) return "is missing";
    if (error != 0) return "cannot be looked up: " + errorText(error);
    if (facts.size == 0) return "is empty";
    if (planned != nullptr) {
        std::string fault = contentsFault(drive, *planned, facts.size);
        if (!fault.empty()) return fault;
    }
    if ((facts.attributes & attributeBits) != (file.attributes & attributeBits)) {
        return "has the attributes " + std::to_string(facts.attributes & attributeBits) +
               "; it should have " + std::to_string(file.attributes & attributeBits);
    }
    return {};
}

Check checkFile(DisketteDrive& drive, const BootFile& file, const PlannedFile* planned) {
    const std::string fault = fileFault(drive, file, planned);
    const std::string good = planned != nullptr ? " holds what the archive holds, with its attributes."
                                                : " is there, with its attributes.";
    return {std::string("file-") + file.name, fault.empty(),
            file.name + (fault.empty() ? good : " " + fault + ".")};
}

}  // namespace

bool Inspection::passed() const {
    return boots && firstFault() == nullptr;
}

const Check* Inspection::firstFault() const {
    const auto fault =
        std::find_if(checks.begin(), checks.end(), [](const Check& check) { return !check.passed; });
    return fault == checks.end() ? nullptr : &*fault;
}

Inspection inspect(DisketteDrive& drive, const Expectation& expected) {
    Inspection inspection;
    if (const DWORD error = drive.settle()) {
        inspection.checks.push_back(
            {"medium", false, "The diskette cannot be finished: " + errorText(error) + "."});
        return inspection;
    }
    checkStart(drive, inspection);
    inspection.checks.push_back(checkFats(drive));
    inspection.checks.push_back(checkLabel(drive, expected.label));
    for (std::size_t i = 0; i < bootFiles.size(); ++i) {
        const PlannedFile* planned = expected.plan == nullptr ? nullptr : &(*expected.plan)[i];
        inspection.checks.push_back(checkFile(drive, bootFiles[i], planned));
    }
    return inspection;
}

}  // namespace tools::emergency_disk
