#pragma once
#include <string>
#include <vector>

#include "tools/emergency_disk/disk_plan.h"
#include "tools/emergency_disk/diskette.h"

namespace tools::emergency_disk {

// One check of a diskette.
struct Check {
    std::string name;  // short and fixed, for --json
    bool passed;
    std::string sentence;  // plain English
    // The exit code when this is the check that failed.
    ExitCode code = ExitCode::verificationFailed;
};

struct Inspection {
    std::vector<Check> checks;
    bool boots = false;  // the boot code would start the loader

    bool passed() const;
    // The failed check; of several, the first about the medium. Null when all passed.
    const Check* fault() const;
};

// The expected contents of a finished diskette.
struct Expectation {
    const DiskPlan* plan = nullptr;      // null: only the names are known
    const std::string* label = nullptr;  // null: any label; ANSI
};

// Inspects a diskette: whether it boots, whether its two FATs agree, its label, and each of the fourteen
// files with its attributes and, given a plan, its contents. Everything is read from the medium. An
// unformatted diskette fails a single check that says so.
Inspection inspect(DisketteView& diskette, const Expectation& expected);

}  // namespace tools::emergency_disk
