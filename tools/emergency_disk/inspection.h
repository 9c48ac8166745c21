#pragma once
#include <string>
#include <vector>

#include "tools/emergency_disk/disk_plan.h"
#include "tools/emergency_disk/diskette.h"

namespace tools::emergency_disk {

// One thing that was looked at on a diskette.
struct Check {
    std::string name;  // short and fixed, for --json
    bool passed;
    std::string sentence;  // plain English
    // How a program ends when this is the check that failed.
    ExitCode code = ExitCode::verificationFailed;
};

struct Inspection {
    std::vector<Check> checks;
    bool boots = false;  // the boot code would start the loader

    bool passed() const;
    // The check that failed, of several the first that tells of the medium; null when all passed.
    const Check* fault() const;
};

// What a finished diskette is compared with.
struct Expectation {
    const DiskPlan* plan = nullptr;      // null: only the names are known
    const std::string* label = nullptr;  // null: any label will do; ANSI
};

// Looks at a diskette: whether it starts, whether its two FATs agree, its label, and each of the
// fourteen files with its attributes and, given a plan, its contents. Everything is read from the medium. A
// diskette that is not formatted fails one check, which says so.
Inspection inspect(DisketteView& diskette, const Expectation& expected);

}  // namespace tools::emergency_disk
