#pragma once
#include <string>

#include "zar_common.h"

// Writes an archive of the new layout from the files below a folder or from those that a list file names, one
// to a line.
//
//   Archive_ZAR archiver("C:\\Disk", "C:\\mwdisk1.dat", 1);
class Archive_ZAR : public ZAR_Common {
public:
    Archive_ZAR();
    // Takes a folder, whose tree is searched at once (read-only, hidden and system files included), or a list
    // file, and the archive to write; archives when archiveNow is not 0.
    Archive_ZAR(const UTILS::UtilsString& source, const UTILS::UtilsString& archiveFile, int archiveNow);
    // Copy the source path with what its search found and the archive file; the engine as ZAR_Common says.
    Archive_ZAR(const Archive_ZAR& other);
    Archive_ZAR& operator=(const Archive_ZAR& other);
    ~Archive_ZAR() override = default;

    void SetArchiveFile(const UTILS::UtilsString& archiveFile) { archiveFile_ = archiveFile; }

    // Writes the archive anew, in the order of the search or the list.
    // Throws UTILS::std_exception type 171 when no archive file is set, the source was not found or not
    // wholly searched, a file is of 4 GiB or more or changed while it was read; ZAR_CommonException with
    // error number 1000 after a cancel; DiskIoException for a failing file, an empty one included, which the
    // layout cannot carry. All files are closed then and the archive is incomplete.
    void Archive();

    // For a user interface: (0, 0) after each file; a status line and 1. The window is not asked for.
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

    bool treeFound_ = true;  // false: the source could not be walked, or not wholly
};
