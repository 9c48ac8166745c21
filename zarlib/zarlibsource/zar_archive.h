#pragma once
#include <string>

#include "zar_common.h"

// Writes an archive of the new layout from the files below a folder or from those named in a list file, one
// per line.
//
//   Archive_ZAR archiver("C:\\Disk", "C:\\mwdisk1.dat", 1);
class Archive_ZAR : public ZAR_Common {
public:
    Archive_ZAR();
    // Takes a folder, whose tree is searched immediately (read-only, hidden and system files included), or a
    // list file, and the archive to write; archives if archiveNow is not 0.
    Archive_ZAR(const UTILS::UtilsString& source, const UTILS::UtilsString& archiveFile, int archiveNow);
    // Copy the source path with its search results and the archive file; the rest as ZAR_Common does.
    Archive_ZAR(const Archive_ZAR& other);
    Archive_ZAR& operator=(const Archive_ZAR& other);
    ~Archive_ZAR() override = default;

    void SetArchiveFile(const UTILS::UtilsString& archiveFile) { archiveFile_ = archiveFile; }

    // Writes the archive, replacing an existing one, in the order of the search or the list.
    // Throws UTILS::std_exception type 171 if no archive file is set, the source was not found or not
    // completely searched, or a file is 4 GiB or larger or shrank while it was read; ZAR_CommonException with
    // error number 1000 after a cancel; DiskIoException for a file that fails or is empty, which the layout
    // cannot store. All files are then closed and the archive is incomplete.
    void Archive();

    // For a user interface: (0, 0) after each file; a status line and 1. GET_MESSAGE_WND is never called.
    virtual void MoveSlider(int absolute, int value);
    virtual void UPDATE_WINDOW(const char* text, int flag);
    virtual void GET_MESSAGE_WND(HWND& window);

protected:
    void Init();
    void Copy(const Archive_ZAR& other);

    UTILS::CUtilsPath sourcePath_;
    UTILS::UtilsString archiveFile_;

private:
    UTILS::DiskIO& ListFile();
    void OpenArchive();
    void ArchiveTree();
    void ArchiveList();
    std::string ReadListFile();
    void ArchiveListed(const std::string& line);
    void ArchiveFile(const char* path, UTILS::UtilsString& stored);
    DWORD ReportedAttributes();
    void WriteHeader(UTILS::UtilsString& stored, DWORD size, DWORD attributes);
    void CopyData(DWORD size);

    bool treeFound_ = true;  // false: the source could not be walked completely
};
