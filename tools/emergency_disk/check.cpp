#include "tools/emergency_disk/command_line.h"
#include "tools/emergency_disk/commands.h"
#include "tools/emergency_disk/diskette.h"
#include "tools/emergency_disk/inspection.h"

namespace tools::emergency_disk {

namespace {

void print(const Inspection& inspection, Session& session) {
    for (const Check& check : inspection.checks) {
        session.console.result((check.passed ? "ok    " : "FAIL  ") + check.sentence);
    }
    session.console.result(inspection.boots ? "This diskette will boot." : "This diskette will not boot.");
}

void addToResult(const Inspection& inspection, Session& session) {
    session.object.member("boots", inspection.boots);
    session.object.beginArray("checks");
    for (const Check& check : inspection.checks) {
        session.object.element(std::vector<JsonMember>{
            {"name", check.name}, {"passed", check.passed}, {"text", check.sentence}});
    }
}

}  // namespace

void requireTarget(const Target& target) {
    if (target.path().empty()) throw Problem(ExitCode::usage, helpTexts().targetMissing);
}

void check(const CheckOptions& options, Session& session) {
    requireTarget(options.target);
    DiskPlan plan;
    if (!options.archive.empty()) plan = readPlan(options.archive, session.warnings());
    const auto diskette = openForReading(options.target);
    const Inspection inspection = inspect(*diskette, {options.archive.empty() ? nullptr : &plan, nullptr});
    if (session.json) {
        addToResult(inspection, session);
    } else {
        print(inspection, session);
    }
    if (!inspection.passed()) {
        throw Problem(
            inspection.fault()->code,
            options.target.path().string() +
                (inspection.boots ? " boots, but differs from what it should hold" : " will not boot"));
    }
}

}  // namespace tools::emergency_disk
