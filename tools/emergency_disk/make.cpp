#include "boot_files.h"
#include "tools/common/names.h"
#include "tools/emergency_disk/commands.h"
#include "tools/emergency_disk/disk_maker.h"
#include "tools/emergency_disk/diskette.h"
#include "tools/emergency_disk/inspection.h"

namespace tools::emergency_disk {

namespace {

constexpr std::size_t longestLabel = 11;

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
    const std::string& name = options.target.path().string();
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
    const WindowsFile archive = windowsFile(options.archive);
    maker.SetArchiveDirectory(UTILS::UtilsString(archive.folder.c_str()));
    maker.SetArchiveName(UTILS::UtilsString(archive.name.c_str()));
    maker.SetVolumeLabel(UTILS::UtilsString(label.c_str()));
    maker.SetProgressEnd(100);
    for (const BootFile& file : bootFiles)
        maker.AddDiskFile(UTILS::UtilsString(file.name), static_cast<int>(file.attributes));
}

// The maker takes the first drive that it finds, which must be the one that the user agreed to.
void findDrive(DiskMaker& maker, const MakeOptions& options, const Diskette& diskette) {
    const std::string& name = options.target.path().string();
    if (maker.FindFloppyDrive() != 1) throw Problem(ExitCode::noDiskette, name + ": " + maker.shownError());
    if (maker.GetDriveRoot() == diskette.root().c_str()) return;
    throw Problem(ExitCode::refused, std::string("the diskette would be made in ") +
                                         maker.GetDriveRoot().c_str() +
                                         ", the first drive that takes 1.44 MB, "
                                         "and not in " +
                                         name + "; nothing was changed");
}

// Runs the library's two steps.
void runMaker(const MakeOptions& options, const std::string& label, Diskette& diskette, Console& console,
              Cancellation& cancellation) {
    DiskMaker maker(console);
    setUp(maker, options, label);
    const Cancellation::Scope scope(cancellation, [&maker] { maker.SendCancelCommand(); });
    findDrive(maker, options, diskette);
    cancellation.check();
    const bool made = maker.MakeDisk() == 1;
    cancellation.check();
    if (made && maker.shownError().empty()) return;
    const Problem cause = diskette.diagnose();
    const std::string& shown = maker.shownError().empty() ? maker.lastStatus() : maker.shownError();
    throw Problem(cause.code(), options.target.path().string() + ": " + cause.what() + " (" + shown + ")");
}

void verify(const MakeOptions& options, DisketteView& diskette, const DiskPlan& plan,
            const std::string& label, Session& session) {
    session.console.status("Reading the diskette back ...");
    const Inspection inspection = inspect(diskette, {&plan, &label});
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
    requireTarget(options.target);
    const std::unique_ptr<Workplace> workplace = workplaceFor(options);
    const std::string label = checkedLabel(options.label);
    const DiskPlan plan = readPlan(options.archive);
    windowsPath(options.archive);  // by which the maker reads what was checked
    confirm(options, examine(options.target), session.console);
    if (!options.dryRun) {
        Cancellation cancellation;
        const std::unique_ptr<Diskette> diskette = workplace->insert(options);
        runMaker(options, label, *diskette, session.console, cancellation);
        if (options.verify) verify(options, diskette->view(), plan, label, session);
        cancellation.check();
        diskette->commit();
    }
    report(options, plan, label, session);
}

}  // namespace tools::emergency_disk
