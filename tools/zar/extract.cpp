#include <algorithm>
#include <stdexcept>

#include "tools/common/archive_names.h"
#include "tools/common/archive_reading.h"
#include "tools/common/host_files.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"
#include "tools/common/staging.h"
#include "tools/zar/commands.h"
#include "zar_extract.h"
#include "zar_file.h"
#include "zar_name.h"

namespace tools::zar {

namespace {

// The extractor with its status lines on the console, which name a file's final location, not the staged one.
class Unpacker : public Extract_ZAR {
public:
    Unpacker(const StagedFolder& staged, const Path& folder, Console& console)
        : waiting_(utf8(windowsPath(staged.path()))), final_(utf8(windowsPath(folder))), console_(console) {}

    void UPDATE_WINDOW(const char* text, int) override { console_.status(inFinalPlace(utf8(text))); }

    // A text (UTF-8) with staged names replaced by the final ones.
    std::string inFinalPlace(std::string text) const {
        const std::size_t at = text.find(waiting_);
        if (at != std::string::npos) text.replace(at, waiting_.size(), final_);
        return text;
    }

    // Extracts the named file from the record at an offset. Throws like Extract.
    void extractFrom(std::uint64_t offset, const WindowsFile& archive, const std::string& target,
                     const char* name, bool stripFirst) {
        autoExtract_ = 0;
        subDirAsRoot_ = stripFirst ? 1 : 0;
        MakeFiles(archive.folder.c_str(), archive.name.c_str(), target.c_str(), name);
        try {
            OpenInput(archivePath_.GetPath());
            ::zar::MoveTo(Input(), offset);
            const bool old = ReadInputFileField() == ZAR_OLD_RECORD;
            const int extracted = old ? DoOldExtraction(name) : DoNewExtraction(name);
            if (extracted == 0) throw std::runtime_error("the file could not be copied");
            Input().Close();
        } catch (...) {
            ioStarted_ = 0;
            CloseQuietly(inputIndex);
            CloseQuietly(outputIndex);
            throw;
        }
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

    // Unpacks everything, or one file starting at a record, below a folder.
    void run(const Path& folder, const char* onlyName, std::uint64_t from = 0) const {
        const WindowsFile archive = windowsFile(options.archive);
        const std::string target = windowsPath(folder);
        try {
            if (from != 0) {
                unpacker.extractFrom(from, archive, target, onlyName, options.stripFirst);
            } else {
                unpacker.Extract(archive.folder.c_str(), archive.name.c_str(), target.c_str(), onlyName,
                                 onlyName == nullptr, options.stripFirst);
            }
        } catch (const std::exception& fault) {
            cancellation.check();
            // An archive without files lacks even the first field, which the extractor treats as a failure.
            if (countSoundArchive(options.archive) == 0) return;
            blameFullDisk(options.folder);
            throw Problem(ExitCode::failure, "cannot unpack " + options.archive.string() + ": " +
                                                 unpacker.inFinalPlace(reasonOf(fault)));
        }
        cancellation.check();
    }
};

std::string engineName(const std::string& name, bool stripFirst) {
    std::string text = ansi(name);
    std::replace(text.begin(), text.end(), '/', '\\');
    // A name without its first element keeps the backslash after it.
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

// The offset of the last record with a name. The extractor would take the first, while unpacking everything
// leaves the last.
std::uint64_t lastRecord(const ExtractOptions& options, const std::string& name, const Warn& warn) {
    std::uint64_t offset = 0;
    std::size_t count = 0;
    walkArchive(options.archive, [&](const ::zar::Entry& record) {
        const bool reduced = options.stripFirst && !record.oldLayout;
        if ((reduced ? ::zar::WithoutFirstElement(record.name) : record.name) != name) return;
        offset = record.offset;
        ++count;
    });
    if (count > 1) {
        warn("the archive holds " + utf8(name) + " " + std::to_string(count) + " times; the last one wins");
    }
    return offset;
}

// All unpacked files must be in the folder before it is moved to its final location.
void refuseOtherCount(const ExtractOptions& options, std::size_t unpacked, std::size_t staged) {
    if (unpacked == staged) return;
    throw Problem(ExitCode::failure, "cannot unpack " + options.archive.string() + ": " +
                                         std::to_string(staged) + " of " + std::to_string(unpacked) +
                                         " files were written; nothing was changed");
}

// The extractor does not report whether the archive contains the name, so each file is extracted to a
// separate folder and looked for there. Returns the number of files added.
std::size_t extractNamed(const Extraction& extraction, const Path& work, const Path& whole,
                         const std::string& name, const Warn& warn) {
    if (name.empty()) throw Problem(ExitCode::usage, "an empty name names no file");
    const Path folder = work / "one";
    NewFolders(folder).keep();
    const std::string stored = engineName(name, extraction.options.stripFirst);
    extraction.run(folder, stored.c_str(), lastRecord(extraction.options, stored, warn));
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
        countSoundArchive(options.archive);
        unpacked = reviewNames(options.archive, options.stripFirst, session.warnings());
        extraction.run(staged.path(), nullptr);
    }
    for (const std::string& name : options.names) {
        unpacked += extractNamed(extraction, staged.path(), staged.path() / below, name, session.warnings());
    }
    const std::size_t files = staged.files(below);
    refuseOtherCount(options, unpacked, files);
    staged.commit(below);
    session.member("files", files);
    session.member("directory", options.folder.string());
    if (session.json) return;
    session.console.result(options.folder.string() + ": " + fileCount(files));
}

}  // namespace tools::zar
