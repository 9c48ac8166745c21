#pragma once
#include <filesystem>
#include <string>

#include "tools/common/program.h"

namespace tools::emergency_disk {

// Where the diskette is; one of the two is set.
struct Target {
    std::filesystem::path image;
    std::filesystem::path device;

    bool isDevice() const { return !device.empty(); }
    const std::filesystem::path& path() const { return isDevice() ? device : image; }
};

struct MakeOptions {
    Target target;
    std::filesystem::path archive;
    std::string label = "QUARVEL";
    std::string windows = "xp";
    std::string simulate;
    bool verify = true;
    bool yes = false;
    bool dryRun = false;
};
struct CheckOptions {
    Target target;
    std::filesystem::path archive;  // empty: contents are not compared
};
struct FormatOptions {
    std::filesystem::path image;
    bool yes = false;
};

// Each does one command and throws Problem when it fails.
void make(const MakeOptions& options, Session& session);
void check(const CheckOptions& options, Session& session);

// Throws Problem(usage) when no diskette is named.
void requireTarget(const Target& target);

}  // namespace tools::emergency_disk
