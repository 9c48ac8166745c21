#include <unistd.h>

#include "boot_files.h"
#include "tools/common/names.h"
#include "tools/emergency_disk/commands.h"
#include "tools/emergency_disk/disk_maker.h"
#include "tools/emergency_disk/diskette.h"
#include "tools/emergency_disk/inspection.h"
#include "winlayer/machine.h"

namespace tools::emergency_disk {

namespace fs = std::filesystem;
using winlayer::WindowsVersion;

namespace {

constexpr std::size_t longestLabel = 11;

WindowsVersion windowsVersion(const std::string& name) {
    if (name == "95") return WindowsVersion::Windows95;
    if (name == "98") return WindowsVersion::Windows98;
    if (name == "me") return WindowsVersion::WindowsMe;
    if (name == "nt4") return WindowsVersion::NT4;
    if (name == "2000") return WindowsVersion::Windows2000;
    return WindowsVersion::XP;
}

// A label as DOS keeps it: up to 11 characters, upper case, none of those that DOS refuses.
std::string checkedLabel(const std::string& text) {
    std::string label = ansi(text);
    if (label.empty() || label.size() > longestLabel) {
        throw Problem(ExitCode::usage, "the label '" + text + "' does not have 1 to 11 characters");
    }
    if (label.find_first_of("\"*+,./:;<=>?[\\]|") != std::string::npos || label.front() == ' ' ||
        label.back() == ' ') {
        throw Problem(ExitCode::usage, "the label '" + text + "' has a character that a label cannot have");
    }
    for (char& letter : label) {
        if (static_cast<unsigned char>(letter) < 0x20)
            throw Problem(ExitCode::usage, "the label has a control character");
        if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    }
    return label;
}

// What would be lost must be a diskette, and its owner must agree.
void confirm(const MakeOptions& options, const TargetFacts& facts, Console& console) {
    if (!facts.exists) return;
    const std::string name = options.target.path().string();
    if (!facts.isDiskette) {
        throw Problem(ExitCode::refused,
                      name + " does not hold a formatted 1.44 MB FAT12 diskette; nothing was changed" +
                          (options.target.isDevice() ? "" : " (emergency-disk format makes it one)"));
    }
    if (options.yes || options.dryRun) return;
    const std::string label = facts.label.empty() ? "" : " (label " + utf8(facts.label) + ")";
    if (!console.confirm("Erase everything on the diskette " + name + label + "?")) {
        throw Problem(ExitCode::refused,
                      name + ": not confirmed; nothing was changed (--yes replaces without asking)");
    }
}

void setUp(DiskMaker& maker, const MakeOptions& options, const std::string& label) {
    const fs::path archive = fs::absolute(options.archive);
    maker.SetArchiveDirectory(UTILS::UtilsString(windowsPath(archive.parent_path()).c_str()));
    maker.SetArchiveName(UTILS::UtilsString(ansi(archive.filename().string()).c_str()));
    maker.SetVolumeLabel(UTILS::UtilsString(label.c_str()));
    maker.SetProgressEnd(100);
    for (const BootFile& file : bootFiles)
        maker.AddDiskFile(UTILS::UtilsString(file.name), static_cast<int>(file.attributes));
}

// Runs the library's two steps on drive A:.
void runMaker(const MakeOptions& options, const std::string& label, winlayer::DisketteDrive& drive,
              Console& console, Cancellation& cancellation) {
    DiskMaker maker(console);
    setUp(maker, options, label);
    const Cancellation::Scope scope(cancellation, [&maker] { maker.SendCancelCommand(); });
    const bool found = maker.FindFloppyDrive() == 1;
    cancellation.check();
    if (!found) {
        throw Problem(ExitCode::noDiskette, options.target.path().string() + ": " + maker.shownError());
    }
    const bool made = maker.MakeDisk() == 1;
    cancellation.check();
    if (made && maker.shownError().empty()) return;
    const Problem cause = diagnose(drive);
    const std::string& shown = maker.shownError().empty() ? maker.lastStatus() : maker.shownError();
    throw Problem(cause.code(), options.target.path().string() + ": " + cause.what() + " (" + shown + ")");
}

void verify(const MakeOptions& options, winlayer::DisketteDrive& drive, const DiskPlan& plan,
            const std::string& label, Session& session) {
    session.console.status("Reading the diskette back ...");
    const Inspection inspection = inspect(drive, {&plan, &label});
    session.result["verified"] = inspection.passed();
    if (!inspection.passed()) {
        const Check* fault = inspection.firstFault();
        throw Problem(ExitCode::verificationFailed, options.target.path().string() + ": not right: " +
                                                        (fault ? fault->sentence : "it would not boot"));
    }
}

void report(const MakeOptions& options, const DiskPlan& plan, const std::string& label, Session& session) {
    std::uintmax_t bytes = 0;
    for (const PlannedFile& file : plan) bytes += file.contents.size();
    session.result["target"] = options.target.path().string();
    session.result["label"] = utf8(label);
    session.result["files"] = plan.size();
    session.result["bytes"] = bytes;
    session.result["dry_run"] = options.dryRun;
    if (session.json) return;
    session.console.result(options.target.path().string() + (options.dryRun ? ": would hold " : ": ") +
                           std::to_string(plan.size()) + " files, " + std::to_string(bytes) + " bytes" +
                           (options.verify && !options.dryRun ? ", read back and compared" : ""));
}

}  // namespace

void make(const MakeOptions& options, Session& session) {
    options.target.require();
    winlayer::ScopedMachine machine(windowsVersion(options.windows));
    machine->drives.mountFolder('Z', "/");
    const std::string label = checkedLabel(options.label);
    const DiskPlan plan = readPlan(options.archive);
    confirm(options, examine(options.target), session.console);
    if (!options.dryRun) {
        Cancellation cancellation;
        Diskette diskette(options.target, options.simulate);
        machine->drives.mount('A', diskette.sharedDrive(), DRIVE_REMOVABLE);
        runMaker(options, label, diskette.drive(), session.console, cancellation);
        if (options.verify) verify(options, diskette.drive(), plan, label, session);
        cancellation.check();
        diskette.commit();
    }
    report(options, plan, label, session);
}

}  // namespace tools::emergency_disk
