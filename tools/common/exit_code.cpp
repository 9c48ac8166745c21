#include "tools/common/exit_code.h"

#include <array>

namespace tools {

namespace {

constexpr std::array<ExitCodeRow, 12> rows{{
    {ExitCode::success, "success", "success"},
    {ExitCode::failure, "failure", "any other failure"},
    {ExitCode::usage, "usage", "wrong usage"},
    {ExitCode::verificationFailed, "verification_failed", "verification failed"},
    {ExitCode::noDiskette, "no_diskette", "no drive or no diskette"},
    {ExitCode::writeProtected, "write_protected", "the diskette is write-protected"},
    {ExitCode::refused, "refused", "refused for safety, or not confirmed"},
    {ExitCode::mediumError, "medium_error", "medium error (bad sector)"},
    {ExitCode::invalidArchive, "invalid_archive", "the archive or the loader in it is invalid"},
    {ExitCode::doesNotFit, "does_not_fit", "the files do not fit"},
    {ExitCode::unsuitableDrive, "unsuitable_drive", "the drive takes no 1.44 MB diskettes"},
    {ExitCode::cancelled, "cancelled", "cancelled"},
}};

}  // namespace

std::span<const ExitCodeRow> exitCodes() {
    return rows;
}

const ExitCodeRow& describe(ExitCode code) {
    for (const ExitCodeRow& row : rows) {
        if (row.code == code) return row;
    }
    return rows[1];
}

std::string exitCodeHelp() {
    std::string text = "Exit codes:\n";
    for (const ExitCodeRow& row : rows) {
        std::string number = std::to_string(static_cast<int>(row.code));
        number.insert(0, 5 - number.size(), ' ');
        text += number + "  " + row.meaning + "\n";
    }
    return text;
}

}  // namespace tools
