#pragma once
#include <string>

#include "tools/common/host_path.h"
#include "tools/common/program.h"

namespace tools::emergency_disk {

// Where the diskette is; one of the two is set.
struct Target {
    Path image;
    Path device;

    bool isDevice() const { return !device.empty(); }
    const Path& path() const { return isDevice() ? device : image; }
};

struct MakeOptions {
    Target target;
    Path archive;
    std::string label = "QUARVEL";
    std::string windows = "xp";
    std::string simulate;
    bool verify = true;
    bool yes = false;
    bool dryRun = false;
};
struct CheckOptions {
    Target target;
    Path archive;  // empty: contents are not compared
};
struct FormatOptions {
    Path image;
    bool yes = false;
};

// Each runs one command and throws Problem on failure.
void make(const MakeOptions& options, Session& session);
void check(const CheckOptions& options, Session& session);

// Throws Problem(usage) when no diskette is named.
void requireTarget(const Target& target);

}  // namespace tools::emergency_disk
