#include "zar_extract.h"

#include "out_of_memory.h"
#include "zar_name.h"

using UTILS::CUtilsPath;
using UTILS::DiskIO;
using UTILS::UtilsString;

namespace {

constexpr const char* sourceFile = "zarlib\\zarlibsource\\zar_extract";
constexpr DWORD extractionFailure = 170;

[[noreturn]] void RaiseExtractionError(int line = __builtin_LINE()) {
    throw UTILS::std_exception("Extraction Error!  Operation did not complete.", sourceFile,
                               extractionFailure, static_cast<DWORD>(line), 0, 0);
}

constexpr const char* extracting = "Extrahiert die Datei:  ";
constexpr const char* failing = "Fehler bei der Extrahierung der Datei:  ";

bool StaysBelowTarget(const std::string& name) {
    return zar::JudgeName(name) == zar::NameDanger::None;
}

std::string TextOf(const UtilsString& text) {
    return std::string(text.c_str(), text.length());
}

// The result of `read`; false if it fails. An archive has no end marker: any failure while looking for the
// next record counts as its end, except lack of memory, because the archive continues.
template <class Read>
bool BeforeTheEnd(Read read) {
    try {
        return read();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const UTILS::DiskIoException& failure) {
        UTILS::RequireMemory(failure.m_error_number);
        return false;
    } catch (...) {
        return false;
    }
}

}  // namespace

Extract_ZAR::Extract_ZAR() {
    Init();
}

Extract_ZAR::Extract_ZAR(const char* archiveDir, const char* archiveName, const char* targetDir,
                         const char* onlyFile, int autoExtract, int subDirAsRoot) {
    Init();
    Extract(archiveDir, archiveName, targetDir, onlyFile, autoExtract, subDirAsRoot);
}

Extract_ZAR::Extract_ZAR(const Extract_ZAR& other) : UTILS::Utils<DiskIO, int>(), ZAR_Common(other) {
    Copy(other);
}

Extract_ZAR& Extract_ZAR::operator=(const Extract_ZAR& other) {
    if (this != &other) {
        ZAR_Common::operator=(other);
        Copy(other);
    }
    return *this;
}

void Extract_ZAR::Init() {
    targetPath_ = CUtilsPath();
    archivePath_ = CUtilsPath();
    autoExtract_ = 0;
    subDirAsRoot_ = 0;
}

void Extract_ZAR::Copy(const Extract_ZAR& other) {
    targetPath_ = other.targetPath_;
    archivePath_ = other.archivePath_;
    autoExtract_ = other.autoExtract_;
    subDirAsRoot_ = other.subDirAsRoot_;
}

void Extract_ZAR::MoveSlider(int, int) {}
void Extract_ZAR::UPDATE_WINDOW(const char*, int) {}
void Extract_ZAR::GET_MESSAGE_WND(HWND&) {}

void Extract_ZAR::Extract(const char* archiveDir, const char* archiveName, const char* targetDir,
                          const char* onlyFile, int autoExtract, int subDirAsRoot) {
    autoExtract_ = autoExtract != 0 ? 1 : 0;
    subDirAsRoot_ = subDirAsRoot != 0 ? 1 : 0;
    GET_MESSAGE_WND(messageWindow_);
    MakeFiles(archiveDir, archiveName, targetDir, onlyFile);
    ResetCancelState();
    try {
        OpenInput(archivePath_.GetPath());
        Finish(ExtractRecords(onlyFile));
    } catch (...) {
        ioStarted_ = 0;
        CloseQuietly(inputIndex);
        CloseQuietly(outputIndex);
        throw;
    }
}

void Extract_ZAR::MakeFiles(const char* archiveDir, const char* archiveName, const char* targetDir,
                            const char* onlyFile) {
    targetPath_ = CUtilsPath(UtilsString(targetDir));
    lastDirectory_.reset();
    if (onlyFile != nullptr && autoExtract_ == 0) targetPath_ += UtilsString(onlyFile);
    archivePath_ = CUtilsPath(UtilsString(archiveDir));
    if (archiveName != nullptr) archivePath_ += UtilsString(archiveName);
}

int Extract_ZAR::ExtractRecords(const char* onlyFile) {
    switch (ReadInputFileField()) {
        case ZAR_OLD_RECORD:
            return DoOldExtraction(onlyFile);
        case ZAR_RECORD:
            return DoNewExtraction(onlyFile);
        default:
            RaiseExtractionError();
    }
}

void Extract_ZAR::Finish(int result) {
    Input().Close();
    if (result == 1) return;
    if (ioStarted_ == 0) RaiseExtractionError();
    throw ZAR_CommonException(extractionFailure, ZAR_CANCELLED, __builtin_LINE(), sourceFile,
                              ZAR_CANCEL_CONDITION);
}

int Extract_ZAR::DoNewExtraction(const char* onlyFile) {
    for (;;) {
        if (!Find(ZAR_NAME)) return 1;
        const UtilsString name = ReadStoredName();
        if (autoExtract_ != 0) {
            if (!Find(ZAR_SIZE)) return 1;
            if (ExtractNew(name, true) == 0) return 0;
            MoveSlider(0, 0);
        } else if (name.FriendCompare(onlyFile) == 0) {
            ReadUntil(ZAR_SIZE);
            return ExtractNew(name, false);
        } else {
            m_archive_fields field = ZAR_SKIP_FROM_NAME;
            if (MoveToNextRecord(field) == 0) return 0;
        }
    }
}

bool Extract_ZAR::Find(m_archive_fields marker) {
    return BeforeTheEnd([&] {
        ReadUntil(marker);
        return true;
    });
}

UtilsString Extract_ZAR::ReadStoredName() {
    UtilsString name;
    ReadInputStringData(name, ReadInputFileField(), 1);
    if (subDirAsRoot_ != 0) name = zar::WithoutFirstElement(TextOf(name));
    return name;
}

bool Extract_ZAR::ReducedStaysBelow(const UtilsString& name) const {
    std::string text = TextOf(name);
    // A reduced name keeps the backslash that followed the removed element.
    if (subDirAsRoot_ != 0 && text.starts_with('\\')) text.erase(0, 1);
    return StaysBelowTarget(text);
}

int Extract_ZAR::ExtractNew(const UtilsString& name, bool report) {
    if (!ReducedStaysBelow(name)) return 0;
    const std::string path = OutputPath(name);
    const DWORD size = ReadInputFileField();
    ReadUntil(ZAR_ATTRIBUTES);
    const DWORD attributes = ReadInputFileField();
    ReadUntil(ZAR_DATA);
    // The other bits would be flags of CreateFile, which an archive must not choose.
    Output().SetFileAttributes(attributes & zar::creationAttributes);
    MakeDirectories(path);
    OpenOutput(path);
    if (report) ShowStatus(extracting, path);
    const int copied = WriteOutputFileData(size);
    if (report && copied == 0 && ioStarted_ == 0) ShowStatus(failing, path);
    Output().Close();
    return copied;
}

// For a single file the target path already includes the name.
std::string Extract_ZAR::OutputPath(const UtilsString& name) const {
    const std::string target = targetPath_.GetPath();
    return autoExtract_ != 0 ? zar::JoinPath(target, TextOf(name)) : target;
}

void Extract_ZAR::MakeDirectories(const std::string& path) {
    std::string parent = path.substr(0, path.find_last_of('\\') + 1);
    if (parent == lastDirectory_) return;
    CUtilsPath directory{UtilsString(path.c_str())};
    directory.CreateDirectory(1);
    lastDirectory_ = std::move(parent);
}

void Extract_ZAR::ShowStatus(const char* what, const std::string& path) {
    UPDATE_WINDOW((what + path).c_str(), 1);
}

void Extract_ZAR::OpenOutput(const std::string& path) {
    Output().Open(path.c_str(), GENERIC_WRITE, FILE_SHARE_WRITE, CREATE_ALWAYS, 0);
}

int Extract_ZAR::DoOldExtraction(const char* onlyFile) {
    while (GetMag() == ZAR_OLD_RECORD) {
        UtilsString name;
        if (!ReadOldName(name)) return 1;
        if (autoExtract_ == 0 && name.Compare(onlyFile) != 0) {
            if (!SkipOld()) return 1;
            continue;
        }
        if (!StaysBelowTarget(TextOf(name))) return 0;
        const std::string path = OutputPath(name);
        if (autoExtract_ != 0) {
            MoveSlider(0, 0);
            ShowStatus(extracting, path);
        }
        if (ExtractOld(path) == 0) return 0;
        if (autoExtract_ == 0 || !ReadSignature()) return 1;
    }
    return 0;
}

bool Extract_ZAR::ReadOldName(UtilsString& name) {
    return BeforeTheEnd([&] {
        ReadInputStringData(name, zar::oldNameSize, 1);
        // Names are padded with zeros, which may have been scrambled with the rest.
        name = UtilsString(name.c_str());
        return true;
    });
}

bool Extract_ZAR::SkipOld() {
    return BeforeTheEnd([&] {
        const DWORD size = ReadInputFileField();
        if (!SkipInput(size, size)) return false;
        ReadInputFileField();
        return true;
    });
}

bool Extract_ZAR::ReadSignature() {
    return BeforeTheEnd([&] {
        ReadInputFileField();
        return true;
    });
}

int Extract_ZAR::ExtractOld(const std::string& path) {
    const DWORD size = ReadInputFileField();
    OpenOutput(path);
    const int copied = WriteOutputFileData(size);
    if (copied == 1) ioStarted_ = 0;
    Output().Close();
    return copied;
}
