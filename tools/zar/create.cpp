#include <sstream>

#include "tools/common/archive_names.h"
#include "tools/common/archive_reading.h"
#include "tools/common/host_files.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"
#include "tools/common/staging.h"
#include "tools/zar/commands.h"
#include "zar_archive.h"
#include "zar_name.h"

namespace tools::zar {

namespace {

// The engine reads a list file in one transfer with a 16-bit length, in which 65535 means "whole".
constexpr std::size_t maximumListBytes = 65534;

// The archiver with its status lines on the console.
class Packer : public Archive_ZAR {
public:
    Packer(const std::string& source, const std::string& archive, Console& console)
        : Archive_ZAR(UTILS::UtilsString(source.c_str()), UTILS::UtilsString(archive.c_str()), 0),
          console_(console) {}

    void UPDATE_WINDOW(const char* text, int) override {
        ++files_;
        current_ = utf8(text);
        console_.status(current_);
    }

    // The number of packed files.
    std::size_t files() const { return files_; }

    // The status line of the last file packed.
    const std::string& current() const { return current_; }

private:
    Console& console_;
    std::string current_;
    std::size_t files_ = 0;
};

// The names in a list written by a user: one host path per line, with any line ends.
std::vector<std::string> namesIn(const Path& list) {
    std::istringstream lines;
    try {
        lines.str(host_files::readText(list));
    } catch (const HostError&) {
        throw Problem(ExitCode::failure, "cannot read the list " + list.string());
    }
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line); names.push_back(line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
    }
    return names;
}

// A list in the archiver's format: Windows paths in the ANSI code page, each line ended by CR LF.
std::string engineList(const Path& list) {
    std::string text;
    int number = 0;
    for (const std::string& name : namesIn(list)) {
        ++number;
        if (name.empty()) continue;
        if (host_files::kindOf(name) != host_files::Kind::file) {
            throw Problem(ExitCode::failure,
                          list.string() + ", line " + std::to_string(number) + ": no such file: " + name);
        }
        text += windowsSpelling(name) + "\r\n";
    }
    if (text.empty()) throw Problem(ExitCode::failure, "the list " + list.string() + " names no file");
    if (text.size() > maximumListBytes) {
        throw Problem(ExitCode::failure, "the list " + list.string() + " is longer than " +
                                             std::to_string(maximumListBytes) + " bytes");
    }
    return text;
}

// An archive in the folder to be packed would be packed into itself.
void refuseArchiveInside(const Path& archive, const Path& folder) {
    if (!host_files::liesIn(archive, folder)) return;
    throw Problem(ExitCode::refused,
                  archive.string() + " lies in the folder that is to be packed; write it elsewhere");
}

// Why the libraries cannot use a name; empty when they can.
std::string nameObstacle(const std::string& name) {
    try {
        const std::string stored = ansi(name);
        if (stored.find('\\') != std::string::npos) return "has a backslash in its name";
        const ::zar::NameDanger danger = ::zar::JudgeName(stored);
        if (danger != ::zar::NameDanger::None) return ::zar::Describe(danger);
        const char* obstacle = ::zar::NameObstacle(stored);
        return obstacle == nullptr ? "" : obstacle;
    } catch (const Problem&) {
        return "has a character outside the ANSI code page";
    }
}

// The first entry below a folder that the libraries cannot handle, with the reason; empty if none.
std::string obstacleBelow(const Path& folder) {
    try {
        for (const Path& entry : host_files::entries(folder)) {
            std::string obstacle = nameObstacle(entry.filename().string());
            if (!obstacle.empty()) return entry.string() + " " + obstacle;
            if (host_files::kindOf(entry) != host_files::Kind::folder) continue;
            if (host_files::liesIn(folder / "name", entry))
                return entry.string() + " leads back to a folder above it";
            obstacle = obstacleBelow(entry);
            if (!obstacle.empty()) return obstacle;
        }
    } catch (const HostError& error) {
        return folder.string() + " cannot be read: " + error.reason();
    }
    return {};
}

// A folder that cannot be traversed completely stops the engine before any file.
void refuseObstacle(const CreateOptions& options, const Packer& packer, const std::exception& fault) {
    const bool ofFile = dynamic_cast<const UTILS::DiskIoException*>(&fault) != nullptr;
    if (ofFile || !packer.current().empty() || options.folder.empty()) return;
    const std::string obstacle = obstacleBelow(options.folder);
    if (!obstacle.empty()) throw Problem(ExitCode::failure, "cannot pack: " + obstacle);
}

// Why the engine stopped. The exception itself names only a file that cannot be opened.
Problem explain(const CreateOptions& options, const Packer& packer, const std::exception& fault) {
    if (packer.current().empty() && !options.folder.empty()) {
        return {ExitCode::failure, "cannot pack " + options.folder.string() + ": " + reasonOf(fault)};
    }
    const auto* file = dynamic_cast<const UTILS::DiskIoException*>(&fault);
    const bool named = file != nullptr && file->m_type == UTILS::DISKIO_OPEN;
    const std::string at = named ? "" : " (" + packer.current() + ")";
    return {ExitCode::failure, "cannot pack: " + reasonOf(fault) + at};
}

void refuseEmptyFile(const Path& file) {
    if (host_files::kindOf(file) != host_files::Kind::file || host_files::sizeOf(file) != 0) return;
    throw Problem(ExitCode::failure, file.string() + " is empty; the archive format holds no empty files");
}

void refuseEmptyFilesBelow(const Path& folder) {
    for (const Path& entry : host_files::entries(folder)) {
        if (host_files::kindOf(entry) == host_files::Kind::folder) {
            refuseEmptyFilesBelow(entry);
        } else {
            refuseEmptyFile(entry);
        }
    }
}

void refuseEmptyFiles(const CreateOptions& options) {
    if (!options.folder.empty()) return refuseEmptyFilesBelow(options.folder);
    for (const std::string& name : namesIn(options.list)) refuseEmptyFile(name);
}

// Returns the number of files.
std::size_t pack(const CreateOptions& options, const std::string& source, const StagedFile& staged,
                 Session& session, Cancellation& cancellation) {
    Packer packer(source, windowsPath(staged.path()), session.console);
    const Cancellation::Scope scope(cancellation, [&packer] { packer.SendCancelCommand(); });
    try {
        packer.Archive();
    } catch (const std::exception& fault) {
        cancellation.check();
        refuseObstacle(options, packer, fault);
        refuseEmptyFiles(options);
        blameFullDisk(staged.path().parent());
        throw explain(options, packer, fault);
    }
    cancellation.check();
    return packer.files();
}

// The new archive must contain all packed files before it gets its name.
void refuseOtherCount(const CreateOptions& options, std::size_t packed, std::size_t found) {
    if (packed == found) return;
    throw Problem(ExitCode::failure, "cannot write " + options.archive.string() + ": it would hold " +
                                         std::to_string(found) + " of the " + std::to_string(packed) +
                                         " files that were packed; nothing was changed");
}

// The number of records. What the format cannot represent, such as a name, shows only now, before the archive
// is visible.
std::size_t countSound(const StagedFile& staged) {
    const ArchiveSummary summary = walkArchive(staged.path(), [](const ::zar::Entry&) {});
    if (!summary.fault) return summary.count;
    std::string name;
    walkArchive(staged.path(), [&](const ::zar::Entry& record) {
        if (record.offset <= summary.fault->offset) name = utf8(record.name);
    });
    throw Problem(ExitCode::failure, "cannot pack " + name + ": " + summary.fault->reason +
                                         ", and the archive could not be unpacked");
}

}  // namespace

void create(const CreateOptions& options, Session& session) {
    if (options.folder.empty() == options.list.empty()) {
        throw Problem(ExitCode::usage, "name a folder, or a list with --list");
    }
    requireWindowsPath(host_files::behindLink(options.archive));  // the engine sees the hidden name only
    Cancellation cancellation;
    std::unique_ptr<StagedFile> list;
    std::string source;
    if (options.list.empty()) {
        if (host_files::kindOf(options.folder) != host_files::Kind::folder) {
            throw Problem(ExitCode::failure, options.folder.string() + " is not a folder");
        }
        refuseArchiveInside(options.archive, options.folder);
        source = windowsPath(options.folder);
    } else {
        const std::string text = engineList(options.list);
        list = std::make_unique<StagedFile>(options.archive);  // never committed: for the engine only
        try {
            host_files::write(list->path(), text);
        } catch (const HostError&) {
            throw Problem(ExitCode::failure, "cannot write beside " + options.archive.string());
        }
        source = windowsPath(list->path());
    }
    StagedFile staged(options.archive);
    const std::size_t packed = pack(options, source, staged, session, cancellation);
    refuseOtherCount(options, packed, countSound(staged));
    const std::size_t files = reviewNames(staged.path(), false, session.warnings());
    cancellation.check();
    staged.commit();
    session.member("archive", options.archive.string());
    session.member("files", files);
    session.member("bytes", host_files::sizeOf(options.archive));
    if (session.json) return;
    session.console.result(options.archive.string() + ": " + fileCount(files));
}

}  // namespace tools::zar
