#include "boot_files.h"
#include "tools/common/names.h"
#include "tools/emergency_disk/commands.h"
#include "tools/emergency_disk/disk_maker.h"
#include "tools/emergency_disk/diskette.h"
#include "tools/emergency_disk/erasing.h"
#include "tools/emergency_disk/fitness.h"
#include "tools/emergency_disk/inspection.h"
#include "tools/emergency_disk/problems.h"

namespace tools::emergency_disk {

namespace {

constexpr std::size_t longestLabel = 11;

std::string checkedLabel(const std::string& text) {
    const std::string label = ansi(text);
    if (label.empty() || label.size() > longestLabel) {
        throw Problem(ExitCode::usage, "the label '" + text + "' does not have 1 to 11 characters");
    }
    std::string stored = storedLabel(label);
    if (stored.empty()) {
        throw Problem(ExitCode::usage, "the label '" + text + "' has a character that a label cannot have");
    }
    return stored;
}

// The user must agree to lose the data on the diskette.
void confirm(const MakeOptions& options, Diskette& diskette, Console& console) {
    if (!diskette.exists() || options.yes) return;
    std::string label;
    if (diskette.view().label(label) == NO_ERROR && !label.empty()) label = " (label " + utf8(label) + ")";
    const std::string& name = options.target.path().string();
    if (!console.confirm("Erase everything on the diskette " + name + label + "?")) {
        throw Problem(
            ExitCode::refused,
            about(options.target, "not confirmed; nothing was changed (--yes replaces without asking)"));
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

// The maker takes the first drive that it finds, which must be the user's choice.
void findDrive(DiskMaker& maker, const Diskette& diskette) {
    if (maker.FindFloppyDrive() != 1) {
        throw Problem(ExitCode::unsuitableDrive, "this is no drive in which Windows takes 1.44 MB diskettes");
    }
    if (maker.GetDriveRoot() == diskette.root().c_str()) return;
    throw Problem(ExitCode::refused, std::string("the diskette would be made in ") +
                                         maker.GetDriveRoot().c_str() +
                                         ", the first drive that takes 1.44 MB diskettes");
}

constexpr const char* formatHint = " (emergency-disk format makes a blank diskette of it)";

// All checks that are possible before anything is changed; a dry run ends after them. Until then an interrupt
// may end the program at once.
void checkEverything(const MakeOptions& options, const DiskPlan& plan, Diskette& diskette, DiskMaker& maker,
                     Console& console) {
    console.status("Checking the diskette ...");
    try {
        diskette.requireWritable();
        requireFit(diskette.view(), plan);
        requireErasable(diskette.root());
        findDrive(maker, diskette);
    } catch (const Problem& cause) {
        const bool formatHelps = cause.code() == ExitCode::refused && !options.target.isDevice();
        throw Problem(cause.code(),
                      about(options.target, cause.what() + std::string("; nothing was changed") +
                                                (formatHelps ? formatHint : "")));
    }
}

Problem causeOfFailure(Diskette& diskette, bool whileErasing) {
    Problem cause = diskette.diagnose();
    if (cause.code() != ExitCode::failure || !whileErasing) return cause;
    const std::string entry = erasingStoppedAt(diskette.root());
    return entry.empty() ? cause : Problem(ExitCode::failure, entry);
}

// Erasing is the only step without a status line.
void runMaker(const MakeOptions& options, DiskMaker& maker, Diskette& diskette,
              const Cancellation& cancellation) {
    const Cancellation::Scope scope(cancellation, [&maker] { maker.SendCancelCommand(); });
    cancellation.check();
    const int linesBefore = maker.statusLines();
    const bool made = maker.MakeDisk() == 1;
    cancellation.check();
    if (made && !maker.hasFailed()) return;
    const Problem cause = causeOfFailure(diskette, maker.statusLines() == linesBefore);
    throw Problem(cause.code(), about(options.target, cause.what()));
}

void verify(const MakeOptions& options, DisketteView& diskette, const DiskPlan& plan,
            const std::string& label, Session& session) {
    session.console.status("Reading the diskette back ...");
    const Inspection inspection = inspect(diskette, {&plan, &label});
    session.member("verified", inspection.passed());
    if (inspection.passed()) return;
    const Check& fault = *inspection.fault();
    throw Problem(fault.code, about(options.target, "verification failed: " +
                                                        fault.sentence.substr(0, fault.sentence.size() - 1)));
}

void report(const MakeOptions& options, const DiskPlan& plan, const std::string& label, Session& session) {
    std::uintmax_t bytes = 0;
    for (const PlannedFile& file : plan) bytes += file.contents.size();
    session.member("target", options.target.path().string());
    session.member("label", utf8(label));
    session.member("files", plan.size());
    session.member("bytes", bytes);
    session.member("dry_run", options.dryRun);
    if (session.json) return;
    session.console.result(
        about(options.target, (options.dryRun ? "would hold " : "") + std::to_string(plan.size()) +
                                  " files, " + std::to_string(bytes) + " bytes" +
                                  (options.verify && !options.dryRun ? ", read back and compared" : "")));
}

}  // namespace

void make(const MakeOptions& options, Session& session) {
    requireTarget(options.target);
    const std::unique_ptr<Workplace> workplace = workplaceFor(options);
    const std::string label = checkedLabel(options.label);
    const DiskPlan plan = readPlan(options.archive, session.warnings());
    const std::unique_ptr<Diskette> diskette = workplace->insert(options);
    DiskMaker maker(session.console);
    setUp(maker, options, label);
    checkEverything(options, plan, *diskette, maker, session.console);
    if (!options.dryRun) {
        confirm(options, *diskette, session.console);
        const Cancellation cancellation;
        diskette->prepare();
        runMaker(options, maker, *diskette, cancellation);
        if (options.verify) verify(options, diskette->view(), plan, label, session);
        cancellation.check();
        diskette->commit();
    }
    report(options, plan, label, session);
}

}  // namespace tools::emergency_disk
