#include "tools/emergency_disk/problems.h"

#include "tools/common/reasons.h"

namespace tools::emergency_disk {

namespace {

std::string sentence(DWORD error, ExitCode code, std::optional<DWORD> sector) {
    const std::string which = sector ? "sector " + std::to_string(*sector) : "a sector";
    switch (code) {
        case ExitCode::writeProtected:
            return "the diskette is write-protected";
        case ExitCode::noDiskette:
            return "there is no diskette in the drive";
        case ExitCode::refused:
            return "the diskette is not formatted as a 1.44 MB FAT12 diskette";
        case ExitCode::mediumError:
            return which + " of the diskette is bad: " + errorText(error);
        default:
            return which + " of the diskette cannot be accessed: " + errorText(error);
    }
}

}  // namespace

// The name of a Windows drive already ends in a colon.
std::string about(const Target& target, const std::string& text) {
    const std::string& name = target.path().string();
    return name + (name.ends_with(':') ? " " : ": ") + text;
}

ExitCode codeOf(DWORD error, ExitCode otherwise) {
    switch (error) {
        case ERROR_WRITE_PROTECT:
            return ExitCode::writeProtected;
        case ERROR_NOT_READY:
            return ExitCode::noDiskette;
        case ERROR_UNRECOGNIZED_MEDIA:
        case ERROR_UNRECOGNIZED_VOLUME:
            return ExitCode::refused;
        case ERROR_CRC:
        case ERROR_SEEK:
        case ERROR_SECTOR_NOT_FOUND:
        case ERROR_READ_FAULT:
        case ERROR_WRITE_FAULT:
        case ERROR_GEN_FAILURE:
        case ERROR_IO_DEVICE:
            return ExitCode::mediumError;
        default:
            return otherwise;
    }
}

Problem transferProblem(DWORD error, std::optional<DWORD> sector) {
    const ExitCode code = codeOf(error, ExitCode::failure);
    return {code, sentence(error, code, sector)};
}

}  // namespace tools::emergency_disk
