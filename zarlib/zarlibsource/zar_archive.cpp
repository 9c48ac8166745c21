#include "zar_archive.h"

using UTILS::CUtilsPath;
using UTILS::DiskIO;
using UTILS::UtilsString;

namespace {

constexpr const char* sourceFile = "zarlib\\zarlibsource\\zar_archive";
constexpr DWORD archiveFailure = 171;
constexpr const char* archiving = "Archiviert die Datei:  ";
constexpr std::string_view lineEnd = "\r\n";

[[noreturn]] void RaiseArchiveError(DWORD error = 0, int line = __builtin_LINE()) {
    throw UTILS::std_exception("Archive Error!  Operation did not complete.", sourceFile, archiveFailure,
                               static_cast<DWORD>(line), error, 0);
}

}  // namespace

Archive_ZAR::Archive_ZAR() {
    Init();
}

Archive_ZAR::Archive_ZAR(const UtilsString& source, const UtilsString& archiveFile, int archiveNow) {
    Init();
    sourcePath_.SetScanRO();
    // The tree is walked once, here; with the automate flag, setting the path would walk it again.
    sourcePath_ = source;
    sourcePath_.SetAutomate();
    if (sourcePath_.GetFileFlag() == 0) treeFound_ = sourcePath_.Search("*.*") != 0;
    SetArchiveFile(archiveFile);
    if (archiveNow != 0) Archive();
}

Archive_ZAR::Archive_ZAR(const Archive_ZAR& other) : UTILS::Utils<DiskIO, int>(), ZAR_Common(other) {
    Copy(other);
}

Archive_ZAR& Archive_ZAR::operator=(const Archive_ZAR& other) {
    if (this != &other) {
        ZAR_Common::operator=(other);
        Copy(other);
    }
    return *this;
}

void Archive_ZAR::Init() {
    archiveFile_ = UtilsString();
}

void Archive_ZAR::Copy(const Archive_ZAR& other) {
    sourcePath_ = other.sourcePath_;
    archiveFile_ = other.archiveFile_;
    treeFound_ = other.treeFound_;
}

void Archive_ZAR::MoveSlider(int, int) {}
void Archive_ZAR::UPDATE_WINDOW(const char*, int) {}
void Archive_ZAR::GET_MESSAGE_WND(HWND&) {}

void Archive_ZAR::Archive() {
    if (archiveFile_.length() == 0) RaiseArchiveError();
    ResetCancelState();
    try {
        if (sourcePath_.GetFileFlag() != 0) {
            ArchiveList();
        } else {
            ArchiveTree();
        }
        Output().Close();
    } catch (...) {
        ioStarted_ = 0;
        for (DWORD index = 0; index < size(); ++index) CloseQuietly(index);
        throw;
    }
}

DiskIO& Archive_ZAR::ListFile() {
    if (size() <= listFileIndex) AddData(DiskIO());
    return GetIO(listFileIndex);
}

void Archive_ZAR::OpenArchive() {
    Output().Open(archiveFile_.c_str(), GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS, 0);
}

void Archive_ZAR::ArchiveTree() {
    // An archive of nothing, or of half a tree, must not replace an existing one.
    if (!treeFound_) RaiseArchiveError();
    OpenArchive();
    sourcePath_.ResetTreeSearch();
    UtilsString file;
    for (; sourcePath_.RetrieveFirstFile(file) != 0; sourcePath_.AdvanceFileCursor()) {
        UtilsString stored;
        sourcePath_.GetSubDirFolder(file, stored);
        ArchiveFile(file.c_str(), stored);
    }
}

void Archive_ZAR::ArchiveList() {
    const std::string list = ReadListFile();
    OpenArchive();
    std::size_t begin = 0;
    while (begin < list.size()) {
        const std::size_t end = std::min(list.size(), list.find(lineEnd, begin));
        if (end != begin) ArchiveListed(list.substr(begin, end - begin));
        begin = end + lineEnd.size();
    }
    ListFile().Close();
}

// Reads the whole file in one transfer. An empty file lists no files.
std::string Archive_ZAR::ReadListFile() {
    DiskIO& file = ListFile();
    file.Open(sourcePath_.GetPath(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, 0);
    if (file.GetFileSize() == 0 && file.get_error() == NO_ERROR) return std::string();
    UtilsString text;
    file.SetReadWriteSize(DiskIO::wholeSize);
    file >> text;
    return std::string(text.c_str(), text.length());
}

void Archive_ZAR::ArchiveListed(const std::string& line) {
    const UtilsString listed(line.c_str());
    UtilsString stored;
    if (CUtilsPath::UpperDirParse(listed, stored) == 0 || stored.length() == 0) stored = listed;
    ArchiveFile(CUtilsPath(listed).GetPath(), stored);
}

void Archive_ZAR::ArchiveFile(const char* path, UtilsString& stored) {
    OpenInput(path);
    DiskIO& input = Input();
    // The layout stores sizes in 32 bits.
    if (input.GetFileSizeHigh() != 0) RaiseArchiveError(ERROR_NOT_SUPPORTED);
    UPDATE_WINDOW((std::string(archiving) + path).c_str(), 1);
    const DWORD size = input.GetFileSize();
    WriteHeader(stored, size, ReportedAttributes());
    CopyData(size);
    input.Close();
    MoveSlider(0, 0);
    WriteOutputFileField(ZAR_RECORD_END);
}

DWORD Archive_ZAR::ReportedAttributes() {
    const DWORD attributes = Input().GetFileAttributes();
    if (attributes == INVALID_FILE_ATTRIBUTES) RaiseArchiveError(::GetLastError());
    // A link is archived as its target.
    return attributes & ~FILE_ATTRIBUTE_REPARSE_POINT;
}

void Archive_ZAR::WriteHeader(UtilsString& stored, DWORD size, DWORD attributes) {
    const auto length = static_cast<DWORD>(stored.length());
    WriteOutputFileField(ZAR_RECORD);
    WriteOutputFileField(ZAR_NAME);
    WriteOutputFileField(length);
    WriteOutputStringData(stored, length, 1);
    WriteOutputFileField(ZAR_NAME_END);
    WriteOutputFileField(ZAR_SIZE);
    WriteOutputFileField(size);
    WriteOutputFileField(ZAR_SIZE_END);
    WriteOutputFileField(ZAR_ATTRIBUTES);
    WriteOutputFileField(attributes);
    WriteOutputFileField(ZAR_ATTRIBUTES_END);
    WriteOutputFileField(ZAR_DATA);
}

void Archive_ZAR::CopyData(DWORD size) {
    const int copied = WriteOutputFileData(size);
    if (copied == 0 && ioStarted_ != 0) {
        throw ZAR_CommonException(archiveFailure, ZAR_CANCELLED, __builtin_LINE(), sourceFile,
                                  ZAR_CANCEL_CONDITION);
    }
    // A file that shrank meanwhile would leave a record shorter than its size field says. After a failed copy
    // the output is closed, and writing the next field reports the failure.
    if (copied != 0 && bytesCopied_ != size) RaiseArchiveError();
}
