#include "winlayer/shell/shell.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"
#include "winlayer/include/shellapi.h"
#include "winlayer/kernel/host_process.h"
#include "winlayer/text/case_folding.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {

namespace {

constexpr INT_PTR opened = 42;

bool isWebAddress(const std::string& file) {
    const std::string folded = foldCase(file);
    return folded.starts_with("HTTP://") || folded.starts_with("HTTPS://");
}

bool isProgram(const std::string& path) {
    return foldCase(path).ends_with(".EXE");
}

enum class Kind { Nothing, File, Folder };

Kind kindOf(const std::string& path) {
    std::shared_ptr<FileSystem> files;
    std::string below;
    FileFacts facts;
    if (Drives::current().resolve(path, files, below) != 0 || files->facts(below, facts) != 0) {
        return Kind::Nothing;
    }
    return (facts.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::Folder : Kind::File;
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder.empty() || endsWithSeparator(folder) ? folder + name : folder + "\\" + name;
}

// The paths that a file name may mean, the most likely first.
std::vector<std::string> candidates(const ShellRequest& request) {
    std::vector<std::string> folders = {""};
    const bool absolute = request.file.find(':') != std::string::npos ||
                          (!request.file.empty() && isSeparator(request.file[0]));
    if (!absolute && !request.directory.empty()) {
        folders.insert(folders.begin(), request.directory);
    }
    if (request.file.find_first_of("\\/:") == std::string::npos) {
        folders.push_back(SystemSettings::current().systemDirectory());
        folders.push_back(SystemSettings::current().windowsDirectory());
    }
    std::vector<std::string> names;
    for (const std::string& folder : folders) {
        names.push_back(joined(folder, request.file));
        names.push_back(joined(folder, request.file) + ".exe");
    }
    return names;
}

// The error for a missing file: its folder is missing, or only the file.
INT_PTR missing(const std::string& file) {
    const std::size_t separator = file.find_last_of("\\/");
    const bool inFolder = separator != std::string::npos && separator > 0;
    const std::string folder = inFolder ? file.substr(0, separator + 1) : "";
    return inFolder && kindOf(folder) != Kind::Folder ? SE_ERR_PNF : SE_ERR_FNF;
}

INT_PTR resultOf(int hostError) {
    switch (hostError) {
        case 0:
            return opened;
        case ENOENT:
            return SE_ERR_FNF;
        case ENOTDIR:
            return SE_ERR_PNF;
        case EACCES:
        case EPERM:
            return SE_ERR_ACCESSDENIED;
        case ENOEXEC:
            return ERROR_BAD_FORMAT;
        default:
            return SE_ERR_OOM;
    }
}

// Arguments are separated by blanks; those in double quotes may contain blanks.
std::vector<std::string> split(const std::string& parameters) {
    std::vector<std::string> arguments;
    bool inQuotes = false;
    bool inArgument = false;
    for (const char c : parameters) {
        if (!inQuotes && (c == ' ' || c == '\t')) {
            inArgument = false;
            continue;
        }
        if (!inArgument) {
            arguments.emplace_back();
            inArgument = true;
        }
        if (c == '"') {
            inQuotes = !inQuotes;
        } else {
            arguments.back() += c;
        }
    }
    return arguments;
}

INT_PTR openOnHost(const std::string& what, const std::filesystem::path& folder) {
    const std::filesystem::path opener = findHostProgram("xdg-open");
    return opener.empty() ? SE_ERR_NOASSOC : resultOf(startDetached(opener, {opener.string(), what}, folder));
}

// Throws std::invalid_argument for a path that is not on the host.
INT_PTR openFile(const std::string& path, const ShellRequest& request) {
    const std::filesystem::path file = Drives::current().toHost(path);
    const std::filesystem::path folder = Drives::current().toHost(
        request.directory.empty() ? Drives::current().currentDirectory() : request.directory);
    if (!isProgram(path)) {
        return openOnHost(file.string(), folder);
    }
    std::vector<std::string> arguments = split(toUtf8(SystemSettings::current(), request.parameters));
    arguments.insert(arguments.begin(), file.string());
    return resultOf(startDetached(file, arguments, folder));
}

INT_PTR open(const ShellRequest& request) {
    if (!request.operation.empty() && foldCase(request.operation) != "OPEN") {
        return SE_ERR_NOASSOC;
    }
    if (isWebAddress(request.file)) {
        return openOnHost(toUtf8(SystemSettings::current(), request.file), "");
    }
    for (const std::string& name : candidates(request)) {
        if (!request.file.empty() && kindOf(name) == Kind::File) {
            try {
                return openFile(name, request);
            } catch (const std::invalid_argument&) {
                return SE_ERR_ACCESSDENIED;
            }
        }
    }
    return missing(request.file);
}

}  // namespace

INT_PTR Shell::execute(const ShellRequest& request) {
    if (!answer_) {
        return open(request);
    }
    requests_.push_back(request);
    return *answer_;
}

}  // namespace winlayer
