#include "tools/emergency_disk/inspection.h"

#include <algorithm>

#include "boot_check.h"
#include "boot_files.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"

namespace tools::emergency_disk {

namespace {

constexpr DWORD attributeBits =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

void checkStart(DisketteView& diskette, Inspection& inspection) {
    const boot_check::Report report = boot_check::CheckDiskette([&](DWORD number, boot_check::Sector sector) {
        return diskette.readSectors(number, std::as_writable_bytes(sector)) == 0;
    });
    for (const boot_check::Finding& finding : report.findings) {
        inspection.checks.push_back({finding.name, finding.passed, finding.sentence});
    }
    inspection.boots = report.passed();
}

Check checkFats(DisketteView& diskette) {
    const std::string name = "fats-agree";
    DisketteView::Fats fats;
    if (const DWORD error = diskette.fats(fats))
        return {name, false, "There is no FAT12 volume: " + errorText(error) + "."};
    const std::size_t bytes = std::size_t{fats.sectorsEach} * boot_sector::size;
    std::vector<std::byte> first(bytes);
    std::vector<std::byte> other(bytes);
    DWORD error = diskette.readSectors(fats.first, first);
    for (DWORD fat = 1; fat < fats.count && error == 0; ++fat) {
        error = diskette.readSectors(fats.first + fat * fats.sectorsEach, other);
        if (error == 0 && other != first) return {name, false, "The two file allocation tables differ."};
    }
    if (error != 0)
        return {name, false, "The file allocation tables cannot be read: " + errorText(error) + "."};
    return {name, true, "The two file allocation tables agree."};
}

Check checkLabel(DisketteView& diskette, const std::string* expected) {
    std::string label;
    if (const DWORD error = diskette.label(label))
        return {"label", false, "The label cannot be read: " + errorText(error) + "."};
    const bool passed = expected == nullptr || label == *expected;
    std::string sentence = label.empty() ? "The diskette has no label" : "The label is " + utf8(label);
    if (!passed) sentence += "; it should be " + utf8(*expected);
    return {"label", passed, sentence + "."};
}

std::string contentsFault(DisketteView& diskette, const PlannedFile& planned, std::uint64_t size) {
    if (size != planned.contents.size()) {
        return "has " + std::to_string(size) + " bytes; it should have " +
               std::to_string(planned.contents.size());
    }
    std::vector<unsigned char> contents(planned.contents.size());
    if (const DWORD error = diskette.readFile(planned.name, contents)) {
        return "cannot be read: " + errorText(error);
    }
    if (contents == planned.contents) return {};
    const auto differing =
        std::mismatch(contents.begin(), contents.end(), planned.contents.begin(), planned.contents.end());
    return "differs from the archive at byte " + std::to_string(differing.first - contents.begin());
}

// What is wrong with a file; empty when nothing is.
std::string fileFault(DisketteView& diskette, const BootFile& file, const PlannedFile* planned) {
    DisketteView::File facts;
    const DWORD error = diskette.file(file.name, facts);
    if (error == ERROR_FILE_NOT_FOUND) return "is missing";
    if (error != 0) return "cannot be looked up: " + errorText(error);
    if (facts.size == 0) return "is empty";
    if (planned != nullptr) {
        std::string fault = contentsFault(diskette, *planned, facts.size);
        if (!fault.empty()) return fault;
    }
    if ((facts.attributes & attributeBits) != (file.attributes & attributeBits)) {
        return "has the attributes " + std::to_string(facts.attributes & attributeBits) +
               "; it should have " + std::to_string(file.attributes & attributeBits);
    }
    return {};
}

Check checkFile(DisketteView& diskette, const BootFile& file, const PlannedFile* planned) {
    const std::string fault = fileFault(diskette, file, planned);
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

Inspection inspect(DisketteView& diskette, const Expectation& expected) {
    Inspection inspection;
    if (const DWORD error = diskette.settle()) {
        inspection.checks.push_back(
            {"medium", false, "The diskette cannot be finished: " + errorText(error) + "."});
        return inspection;
    }
    checkStart(diskette, inspection);
    inspection.checks.push_back(checkFats(diskette));
    inspection.checks.push_back(checkLabel(diskette, expected.label));
    for (std::size_t i = 0; i < bootFiles.size(); ++i) {
        const PlannedFile* planned = expected.plan == nullptr ? nullptr : &(*expected.plan)[i];
        inspection.checks.push_back(checkFile(diskette, bootFiles[i], planned));
    }
    return inspection;
}

}  // namespace tools::emergency_disk
