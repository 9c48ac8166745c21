#include "tools/common/names.h"
#include "tools/emergency_disk/commands.h"
#include "tools/emergency_disk/diskette.h"
#include "tools/emergency_disk/inspection.h"
#include "winlayer/diskette/host_store.h"

namespace tools::emergency_disk {

namespace {

void print(const Inspection& inspection, Session& session) {
    for (const Check& check : inspection.checks) {
        session.console.result((check.passed ? "ok    " : "FAIL  ") + check.sentence);
    }
    session.console.result(inspection.boots ? "This diskette will boot." : "This diskette will not boot.");
}

void addToResult(const Inspection& inspection, Session& session) {
    session.result["boots"] = inspection.boots;
    session.result["checks"] = nlohmann::ordered_json::array();
    for (const Check& check : inspection.checks) {
        session.result["checks"].push_back(
            {{"name", check.name}, {"passed", check.passed}, {"text", check.sentence}});
    }
}

// Asks before an image is written over. What is no diskette image at all is never replaced.
void confirmReplacing(const FormatOptions& options, Console& console) {
    const TargetFacts facts = examine({options.image, {}});
    if (!facts.exists || options.yes) return;
    if (!console.confirm("Erase everything on the diskette image " + options.image.string() + "?")) {
        throw Problem(ExitCode::refused, options.image.string() +
                                             ": not confirmed; nothing was changed (--yes replaces without "
                                             "asking)");
    }
}

}  // namespace

void check(const CheckOptions& options, Session& session) {
    options.target.require();
    DiskPlan plan;
    if (!options.archive.empty()) plan = readPlan(options.archive);
    const auto drive = openForReading(options.target);
    const Inspection inspection = inspect(*drive, {options.archive.empty() ? nullptr : &plan, nullptr});
    if (session.json) {
        addToResult(inspection, session);
    } else {
        print(inspection, session);
    }
    if (!inspection.passed()) {
        throw Problem(
            ExitCode::verificationFailed,
            options.target.path().string() +
                (inspection.boots ? " is not an emergency diskette as it should be" : " will not boot"));
    }
}

void format(const FormatOptions& options, Session& session) {
    confirmReplacing(options, session.console);
    const Cancellation cancellation;
    StagedFile staged(options.image);
    makeBlankImage(staged);
    cancellation.check();
    staged.commit();
    session.result["image"] = options.image.string();
    if (!session.json) session.console.result(options.image.string() + ": a blank 1.44 MB diskette");
}

}  // namespace tools::emergency_disk
