#include "make_zar_disks.h"

#include <string>
#include <vector>

#include "CUtilsPath.h"
#include "ansi_literal.h"
#include "disk_verification.h"
#include "out_of_memory.h"
#include "raw_diskette.h"

using namespace UTILS::literals;

namespace {

// The only medium for an emergency diskette.
constexpr MediaGeometry diskette144{80, 2, 18, 512, F3_1Pt44_512};

constexpr const char* noDriveText =
    "Kein geeignetes Diskettenlaufwerk gefunden. Sie benötigen ein Laufwerk für 1,44-MB-Disketten."_ansi;

constexpr const char* unknownErrorText = "Unbekannter Systemfehler";

// A search for files and directories, closed by the destructor.
class Search {
public:
    Search(const std::string& pattern, WIN32_FIND_DATAA& entry)
        : handle_(FindFirstFileA(pattern.c_str(), &entry)) {}
    ~Search() {
        if (found()) {
            FindClose(handle_);
        }
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    bool found() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool next(WIN32_FIND_DATAA& entry) { return FindNextFileA(handle_, &entry) != 0; }
    // After next() has failed: whether there were no more entries.
    static bool complete() { return GetLastError() == ERROR_NO_MORE_FILES; }

private:
    HANDLE handle_;
};

bool isDirectory(const WIN32_FIND_DATAA& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// A link to a directory elsewhere: only the link is on the diskette.
bool isLink(const WIN32_FIND_DATAA& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool isDotEntry(const std::string& name) {
    return name == "." || name == "..";
}

bool deleteFile(const std::string& name) {
    return SetFileAttributesA(name.c_str(), FILE_ATTRIBUTE_NORMAL) && DeleteFileA(name.c_str());
}

}  // namespace

MakeZARDisks::MakeZARDisks() : FormatDisk(0) {
    Reset();
    bootSector_ = boot_sector::Build(boot_sector::DrawSerialNumber());
}

int MakeZARDisks::GetSliderPos() {
    return 0;
}

void MakeZARDisks::Reset() {
    volumeLabel_ = "";
    archiveDirectory_ = "";
    archiveName_ = "";
    driveRoot_ = "";
    files_.RemoveAllData();
    progressEnd_ = 100;
}

void MakeZARDisks::AddDiskFile(const UTILS::UtilsString& name, int attributes) {
    files_.AddData(attributes, name);
}

void MakeZARDisks::ClearDiskFiles() {
    files_.RemoveAllData();
}

// Both bases have hooks of these names; these call FormatDisk's.
void MakeZARDisks::ShowStatus(const char* text) {
    FormatDisk& disk = *this;
    disk.UPDATE_WINDOW(text, 1);
}

void MakeZARDisks::Progress(int absolute, int value) {
    FormatDisk& disk = *this;
    disk.MoveSlider(absolute, value);
}

int MakeZARDisks::FindFloppyDrive() {
    try {
        ShowStatus("Diskettenlaufwerk wird gesucht...");
        driveRoot_ = GetFirstDriveOfType(diskette144);
        if (driveRoot_.length() != 0) {
            Progress(0, 0);
            return 1;
        }
    } catch (const FormatDiskException& failure) {
        SHOW_ERROR(static_cast<int>(failure.m_error_number), generalError, noDriveText);
        return 0;
    } catch (...) {
        SHOW_ERROR(0, generalError, unknownErrorText);
        return 0;
    }
    ShowNoDrive();
    return 0;
}

void MakeZARDisks::ShowNoDrive() {
    if (driveName_.length() == 0) {
        return SHOW_ERROR(0, generalError, noDriveText);
    }
    std::string text;
    try {
        text = std::string("Fehler beim Zugriff auf das Laufwerk: '") + driveName_.c_str() + "'\n";
    } catch (const std::bad_alloc&) {
        return SHOW_ERROR(0, generalError, unknownErrorText);
    }
    SHOW_ERROR(0, generalError, text.c_str());
}

int MakeZARDisks::MakeDisk() {
    files_.SetSearchDirection(0);
    const DWORD count = files_.size();
    if (count == 0) {
        return 0;
    }
    SetBootSectorImage(bootSector_.data(), boot_sector::size);
    Progress(0, 0);
    Progress(0, 0);
    if (!PrepareDiskette()) {
        return GiveUp();
    }
    ShowStatus("Vorbereiten auf Schreiben auf die Diskette...");
    for (DWORD i = 0; i < count; ++i) {
        if (!WriteDiskFile(i)) {
            return GiveUp();
        }
    }
    Progress(1, progressEnd_);
    ShowStatus("Die Diskette wurde erfolgreich erstellt.");
    return 1;
}

int MakeZARDisks::GiveUp() {
    Progress(1, 0);
    return 0;
}

bool MakeZARDisks::PrepareDiskette() {
    try {
        if (EraseTree(driveRoot_.c_str()) == 0) {
            return false;
        }
        ShowStatus("Datenträgerbezeichnung wird festgelegt..."_ansi);
        if (!::SetVolumeLabelA(driveRoot_.c_str(), volumeLabel_.c_str())) {
            UTILS::RequireMemory();
        }
        WriteBootSector();
        Progress(0, 0);
        return true;
    } catch (...) {
        ShowStatus("Fehler beim Schreiben auf die Diskette");
        return false;
    }
}

bool MakeZARDisks::WriteDiskFile(DWORD index) {
    try {
        ExtractDiskFile(index);
        return true;
    } catch (const ZAR_CommonException& failure) {
        if (failure.m_error_number != ZAR_CANCELLED) {
            ShowStatus("Fehler bei der Archiv-Extrahierung");
        }
    } catch (...) {
        ShowLostFile(index);
    }
    return false;
}

void MakeZARDisks::ExtractDiskFile(DWORD index) {
    const UTILS::UtilsString name = files_.GetValueAsUString(index);
    const std::string file = name.c_str();
    ShowStatus(("Die Datei " + file + " wird extrahiert...").c_str());
    Extract(archiveDirectory_.c_str(), archiveName_.c_str(), driveRoot_.c_str(), file.c_str(), 0, 0);
    Progress(0, 0);
    UTILS::CUtilsPath path(driveRoot_);
    path.AddToPath(name);
    if (!::SetFileAttributesA(path.GetPath(), static_cast<DWORD>(files_.GetKey(index)))) {
        UTILS::RequireMemory();
    }
}

void MakeZARDisks::ShowLostFile(DWORD index) {
    std::string text;
    try {
        const std::string file = files_.GetValueAsUString(index).c_str();
        text = "Fehler beim Extrahieren der Datei " + file + " zu " + driveRoot_.c_str();
    } catch (const std::bad_alloc&) {
        return ShowStatus("Fehler bei der Archiv-Extrahierung");
    }
    ShowStatus(text.c_str());
}

int MakeZARDisks::VerifyDisk(const std::function<bool(int percent)>& goOn) {
    if (driveRoot_.length() == 0) {
        return 0;
    }
    std::vector<std::string> names;
    for (DWORD i = 0; i < files_.size(); ++i) {
        names.emplace_back(files_.GetValueAsUString(i).c_str());
    }
    try {
        if (IsNT() && IsOpen()) {
            Flush();  // writes what NT has cached for the drive
        }
        RawDiskette diskette;
        diskette.OpenDrive(driveRoot_.c_str()[0]);
        diskette.DropCache();
        UTILS::CUtilsPath path(archiveDirectory_);
        path += archiveName_;
        UTILS::DiskIO file(path.GetPath(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        zar::Checker archive(file);
        const auto read = [&](DWORD first, std::span<std::byte> buffer) {
            try {
                diskette.ReadSectors(first, buffer);
                return true;
            } catch (const UTILS::DiskIoException&) {
                return false;
            }
        };
        return DiskVerification(read, goOn).Passes(names, archive) ? 1 : 0;
    } catch (const UTILS::DiskIoException&) {
        return 0;
    }
}

int MakeZARDisks::EraseTree(const char* directory) {
    std::string path = directory;
    if (path.empty()) {
        return 0;  // no drive was found; a lone backslash would name the current drive's root
    }
    if (path.back() != '\\') {
        path += '\\';
    }
    WIN32_FIND_DATAA entry{};
    Search search(path + "*.*", entry);
    if (!search.found()) {
        return GetLastError() == ERROR_NOT_ENOUGH_MEMORY ? 0 : 1;
    }
    do {
        const std::string name = path + entry.cFileName;
        if (!isDirectory(entry)) {
            if (!deleteFile(name)) {
                return 0;
            }
        } else if (!isDotEntry(entry.cFileName)) {
            const bool emptied = isLink(entry) || EraseTree(name.c_str()) != 0;
            if (!emptied || !RemoveDirectoryA(name.c_str())) {
                return 0;
            }
        }
    } while (search.next(entry));
    return Search::complete() ? 1 : 0;
}
