#include "tools/emergency_disk/inspection.h"

#include <algorithm>

#include "boot_check.h"
#include "boot_files.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"
#include "tools/emergency_disk/problems.h"

namespace tools::emergency_disk {

namespace {

constexpr DWORD attributeBits =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

// A failed transfer is distinguished from contents that differ.
ExitCode faultCode(DWORD error) {
    const ExitCode code = codeOf(error, ExitCode::verificationFailed);
    return code == ExitCode::refused ? ExitCode::verificationFailed : code;
}

Check unreadable(const std::string& name, const std::string& what, DWORD error) {
    return {name, false, what + ": " + errorText(error) + ".", faultCode(error)};
}

void checkStart(DisketteView& diskette, Inspection& inspection) {
    DWORD error = NO_ERROR;
    const boot_check::Report report = boot_check::CheckDiskette([&](DWORD number, boot_check::Sector sector) {
        const DWORD result = diskette.readSectors(number, std::as_writable_bytes(sector));
        if (result != NO_ERROR) error = result;
        return result == NO_ERROR;
    });
    for (const boot_check::Finding& finding : report.findings) {
        inspection.checks.push_back({finding.name, finding.passed, finding.sentence,
                                     finding.unreadable ? faultCode(error) : ExitCode::verificationFailed});
    }
    inspection.boots = report.passed();
}

bool hasOwnBootCode(const Inspection& inspection) {
    return std::any_of(inspection.checks.begin(), inspection.checks.end(),
                       [](const Check& check) { return check.name == "boot-code" && check.passed; });
}

// Reports why there is no volume to inspect. The boot sector of a diskette that never was an emergency
// diskette is not described.
void checkVolume(DWORD error, Inspection& inspection) {
    if (codeOf(error, ExitCode::failure) != ExitCode::refused) {
        inspection.checks.push_back(unreadable("volume", "The volume cannot be read", error));
        return;
    }
    if (!hasOwnBootCode(inspection)) inspection.checks.clear();
    inspection.checks.push_back({"volume", false, "The diskette is not formatted: it has no FAT12 volume."});
}

Check checkFats(DisketteView& diskette, const DisketteView::Fats& fats) {
    const std::string name = "fats-agree";
    const std::size_t bytes = std::size_t{fats.sectorsEach} * boot_sector::size;
    std::vector<std::byte> first(bytes);
    std::vector<std::byte> other(bytes);
    DWORD error = diskette.readSectors(fats.first, first);
    for (DWORD fat = 1; fat < fats.count && error == 0; ++fat) {
        error = diskette.readSectors(fats.first + fat * fats.sectorsEach, other);
        if (error == 0 && other != first) return {name, false, "The two file allocation tables differ."};
    }
    if (error != 0) return unreadable(name, "The file allocation tables cannot be read", error);
    return {name, true, "The two file allocation tables agree."};
}

Check checkLabel(DisketteView& diskette, const std::string* expected) {
    std::string label;
    if (const DWORD error = diskette.label(label))
        return unreadable("label", "The label cannot be read", error);
    const bool passed = expected == nullptr || label == *expected;
    std::string sentence = label.empty() ? "The diskette has no label" : "The label is " + utf8(label);
    if (!passed) sentence += "; it should be " + utf8(*expected);
    return {"label", passed, sentence + "."};
}

Check wrongFile(const BootFile& file, const std::string& fault,
                ExitCode code = ExitCode::verificationFailed) {
    return {std::string("file-") + file.name, false, file.name + (" " + fault + "."), code};
}

Check checkContents(DisketteView& diskette, const BootFile& file, const PlannedFile& planned) {
    std::vector<unsigned char> contents(planned.contents.size());
    if (const DWORD error = diskette.readFile(planned.name, contents)) {
        return wrongFile(file, "cannot be read: " + errorText(error), faultCode(error));
    }
    const auto differing =
        std::mismatch(contents.begin(), contents.end(), planned.contents.begin(), planned.contents.end());
    if (differing.second != planned.contents.end()) {
        return wrongFile(
            file, "differs from the archive at byte " + std::to_string(differing.first - contents.begin()));
    }
    return {std::string("file-") + file.name, true,
            file.name + std::string(" holds what the archive holds, with its attributes.")};
}

Check checkFile(DisketteView& diskette, const BootFile& file, const PlannedFile* planned) {
    DisketteView::File facts;
    const DWORD error = diskette.file(file.name, facts);
    if (error == ERROR_FILE_NOT_FOUND) return wrongFile(file, "is missing");
    if (error != 0) return wrongFile(file, "cannot be looked up: " + errorText(error), faultCode(error));
    if (facts.size == 0) return wrongFile(file, "is empty");
    if (planned != nullptr && facts.size != planned->contents.size()) {
        return wrongFile(file, "has a size of " + std::to_string(facts.size) + ", not of " +
                                   std::to_string(planned->contents.size()) + " as in the archive");
    }
    const DWORD attributes = facts.attributes & attributeBits;
    if (attributes != (file.attributes & attributeBits)) {
        return wrongFile(file, "has the attributes " + std::to_string(attributes) + "; it should have " +
                                   std::to_string(file.attributes & attributeBits));
    }
    if (planned != nullptr) return checkContents(diskette, file, *planned);
    return {std::string("file-") + file.name, true,
            file.name + std::string(" is there, with its attributes.")};
}

}  // namespace

bool Inspection::passed() const {
    return boots && fault() == nullptr;
}

const Check* Inspection::fault() const {
    const auto find = [this](auto isMeant) {
        const auto found = std::find_if(checks.begin(), checks.end(), isMeant);
        return found == checks.end() ? nullptr : &*found;
    };
    const Check* medium =
        find([](const Check& check) { return !check.passed && check.code != ExitCode::verificationFailed; });
    return medium != nullptr ? medium : find([](const Check& check) { return !check.passed; });
}

Inspection inspect(DisketteView& diskette, const Expectation& expected) {
    Inspection inspection;
    if (const DWORD error = diskette.settle()) {
        inspection.checks.push_back(unreadable("medium", "The medium cannot be read", error));
        return inspection;
    }
    checkStart(diskette, inspection);
    DisketteView::Fats fats;
    if (const DWORD error = diskette.fats(fats)) {
        checkVolume(error, inspection);
        return inspection;
    }
    inspection.checks.push_back(checkFats(diskette, fats));
    inspection.checks.push_back(checkLabel(diskette, expected.label));
    for (std::size_t i = 0; i < bootFiles.size(); ++i) {
        const PlannedFile* planned = expected.plan == nullptr ? nullptr : &(*expected.plan)[i];
        inspection.checks.push_back(checkFile(diskette, bootFiles[i], planned));
    }
    return inspection;
}

}  // namespace tools::emergency_disk
