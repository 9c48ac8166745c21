#include <algorithm>
#include <array>
#include <set>

#include "tools/common/archive_reading.h"
#include "tools/common/host_files.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"
#include "tools/common/staging.h"
#include "tools/zar/commands.h"
#include "zar_extract.h"
#include "zar_name.h"

namespace tools::zar {

namespace {

// The extractor with its status lines on the console. They tell where a file will be in the end, not where it
// waits.
class Unpacker : public Extract_ZAR {
public:
    Unpacker(const StagedFolder& staged, const Path& folder, Console& console)
        : waiting_(windowsPath(staged.path())), final_(windowsPath(folder)), console_(console) {}

    void UPDATE_WINDOW(const char* text, int) override {
        std::string line = text;
        const std::size_t at = line.find(waiting_);
        if (at != std::string::npos) line.replace(at, waiting_.size(), final_);
        console_.status(utf8(line));
    }

private:
    const std::string waiting_;
    const std::string final_;
    Console& console_;
};

struct Extraction {
    const ExtractOptions& options;
    Unpacker& unpacker;
    Cancellation& cancellation;

    // Unpacks everything, or one file, below a folder.
    void run(const Path& folder, const char* onlyName) const {
        const auto [archiveFolder, archiveName] = windowsFile(options.archive);
        try {
            unpacker.Extract(archiveFolder.c_str(), archiveName.c_str(), windowsPath(folder).c_str(),
                             onlyName, onlyName == nullptr, options.stripFirst);
        } catch (const std::exception& fault) {
            cancellation.check();
            // An archive of no files has not even a first field, which the extractor takes for a failure.
            if (countSoundArchive(options.archive) == 0) return;
            blameFullDisk(options.folder);
            throw Problem(ExitCode::failure,
                          "cannot unpack " + options.archive.string() + ": " + reasonOf(fault));
        }
        cancellation.check();
    }
};

std::string engineName(const std::string& name, bool stripFirst) {
    std::string text = ansi(name);
    std::replace(text.begin(), text.end(), '/', '\\');
    // A name that lost its first element keeps the backslash that followed it.
    if (stripFirst && text.front() != '\\') text.insert(text.begin(), '\\');
    return text;
}

// The one file below a folder; empty when there is none.
Path onlyFileBelow(const Path& folder) {
    for (const Path& entry : host_files::entries(folder)) {
        if (host_files::kindOf(entry) != host_files::Kind::folder) return entry;
        Path below = onlyFileBelow(entry);
        if (!below.empty()) return below;
    }
    return {};
}

constexpr DWORD longestPath = 4096;

// How many files an archive's records give below a folder, where they are. Names that Windows takes for one
// give one.
std::size_t filesGiven(const ExtractOptions& options, const Path& folder) {
    const std::string root = windowsPath(folder);
    std::set<std::string> paths;
    walkArchive(options.archive, [&](const ::zar::Entry& record) {
        const bool stripped = options.stripFirst && !record.oldLayout;
        const std::string name = stripped ? ::zar::WithoutFirstElement(record.name) : record.name;
        std::array<char, longestPath> path;
        const DWORD size = GetShortPathNameA(::zar::JoinPath(root, name).c_str(), path.data(), longestPath);
        paths.emplace(path.data(), size < longestPath ? size : 0);
    });
    return paths.size();
}

// What was unpacked must be in the folder that is about to be moved to its place.
void refuseOtherCount(const ExtractOptions& options, std::size_t unpacked, std::size_t staged) {
    if (unpacked == staged) return;
    throw Problem(ExitCode::failure, "cannot unpack " + options.archive.string() + ": " +
                                         std::to_string(staged) + " of " + std::to_string(unpacked) +
                                         " files were written; nothing was changed");
}

// The extractor does not tell whether the archive holds the name, so each file gets a folder of its own: what
// lies there afterwards is the answer. Gives how many files this added.
std::size_t extractNamed(const Extraction& extraction, const Path& work, const Path& whole,
                         const std::string& name) {
    if (name.empty()) throw Problem(ExitCode::usage, "an empty name names no file");
    const Path folder = work / "one";
    NewFolders(folder).keep();
    extraction.run(folder, engineName(name, extraction.options.stripFirst).c_str());
    const Path file = onlyFileBelow(folder);
    if (file.empty()) {
        countSoundArchive(extraction.options.archive);
        throw Problem(ExitCode::failure, extraction.options.archive.string() + " holds no file " + name);
    }
    const Path place = whole / file.string().substr(folder.string().size() + 1);
    NewFolders(place.parent()).keep();
    const bool again = host_files::kindOf(place) == host_files::Kind::file;
    host_files::move(file, place);
    host_files::removeTree(folder);
    return again ? 0 : 1;
}

}  // namespace

void extract(const ExtractOptions& options, Session& session) {
    requireArchive(options.archive);
    Cancellation cancellation;
    StagedFolder staged(options.folder);
    Unpacker unpacker(staged, options.folder, session.console);
    const Cancellation::Scope scope(cancellation, [&unpacker] { unpacker.SendCancelCommand(); });
    const Extraction extraction{options, unpacker, cancellation};
    const std::string below = options.names.empty() ? "." : "whole";
    std::size_t unpacked = 0;
    if (options.names.empty()) {
        unpacked = countSoundArchive(options.archive);
        extraction.run(staged.path(), nullptr);
    }
    for (const std::string& name : options.names) {
        unpacked += extractNamed(extraction, staged.path(), staged.path() / below, name);
    }
    const std::size_t files = staged.files(below);
    if (files != unpacked && options.names.empty()) unpacked = filesGiven(options, staged.path());
    refuseOtherCount(options, unpacked, files);
    staged.commit(below);
    session.result["files"] = files;
    session.result["directory"] = options.folder.string();
    if (session.json) return;
    session.console.result(options.folder.string() + ": " + std::to_string(files) + " files");
}

}  // namespace tools::zar
