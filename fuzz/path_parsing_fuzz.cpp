#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "CUtilsPath.h"
#include "winlayer/machine.h"

// Input: a path, a zero byte and a component to append; more zero bytes belong to neither. What holds of
// every path is checked on both.

namespace {

using UTILS::CUtilsPath;
using UTILS::UtilsString;

void require(bool holds, const char* rule, const CUtilsPath& path) {
    if (!holds) {
        std::fprintf(stderr, "%s: [%s]\n", rule, path.GetPath());
        std::abort();
    }
}

void checkParts(const CUtilsPath& path) {
    const std::string text = path.GetPath();
    UtilsString drive;
    UtilsString parent;
    UtilsString folder;
    UtilsString base;
    UtilsString extension;
    // A colon anywhere makes a text absolute, so that one such as "\\a:b" has no drive.
    require(path.GetDrive(drive) == (text[0] != '\\' || text.starts_with("\\\\")), "has a drive", path);
    require(text.starts_with(drive.c_str()), "begins with its drive", path);
    if (path.GetDirFolder(folder)) {
        require(text.ends_with(std::string("\\") + folder.c_str()), "ends with its folder", path);
        require(folder.GetSTLString().find('\\') == std::string::npos, "the folder is one component", path);
    }
    if (path.GetParentDir(parent)) {
        require(text.starts_with(parent.c_str()) && text[parent.length()] == '\\', "below its parent", path);
        require(parent.length() >= drive.length(), "the parent is not above the drive", path);
    }
    for (const int flag : {0, 1}) {
        if (CUtilsPath::GetFileNameFromPath(text, base, extension, flag)) {
            const std::string whole = base.GetSTLString() + extension.GetSTLString();
            require(whole.size() + 1 >= folder.length() || !folder, "base and extension are the name", path);
        }
    }
}

void checkStoredName(const CUtilsPath& path) {
    UtilsString stored;
    if (!path.UpperDirParse(stored)) {
        return;
    }
    const std::string name = "\\" + stored.GetSTLString() + "\\";
    require(name.find("\\..\\") == std::string::npos && name.find("\\\\") == std::string::npos,
            "a stored name has no parent step and no empty component", path);
}

void checkPath(const CUtilsPath& path) {
    const std::string text = path.GetPath();
    const bool network = text.starts_with("\\\\");
    require(network || text.find("\\\\") == std::string::npos, "single backslashes", path);
    require(text == "\\\\" || (text.back() != '\\' && text.back() != ' ' && text.front() != ' '),
            "nothing to trim", path);
    require(network || path.GetRegFlag() || text.find(':') != std::string::npos, "absolute", path);
    require(CUtilsPath(text).UGetPath() == text, "the same when set again", path);
    checkParts(path);
    checkStoredName(path);
}

// A current directory and nothing behind it: only the text matters here.
struct MachineWithoutDisks {
    MachineWithoutDisks() {
        SetCurrentDirectoryA("C:\\WINDOWS\\system32");
        machine->drives.unmount('C');
        machine->drives.unmount('Z');
    }
    winlayer::ScopedMachine machine;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const MachineWithoutDisks machine;
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::string first = input.c_str();
    const std::string second = first.size() < size ? input.c_str() + first.size() + 1 : "";
    CUtilsPath path;
    if (!path.SetPath(first)) {
        return 0;
    }
    checkPath(path);
    const std::string before = path.GetPath();
    if (path.AddToPath(second)) {
        checkPath(path);
        require(before == "\\\\" || std::string(path.GetPath()).starts_with(before + "\\"),
                "below what it was added to", path);
    }
    return 0;
}
