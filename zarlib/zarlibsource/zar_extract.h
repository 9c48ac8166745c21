#pragma once
#include <optional>
#include <string>

#include "zar_common.h"

// Extracts an archive of either layout into a directory: every file, or one named file. Derive from it
// (virtually, if there are other bases) to show progress.
//
//   Extract_ZAR extractor;
//   extractor.Extract("C:\\Install", "mwdisk1.dat", "A:\\", "IO.SYS", 0, 0);
class Extract_ZAR : public ZAR_Common {
public:
    Extract_ZAR();
    // Builds an extractor and runs Extract with the arguments.
    Extract_ZAR(const char* archiveDir, const char* archiveName, const char* targetDir, const char* onlyFile,
                int autoExtract, int subDirAsRoot);
    // Copy both paths and both flags; the rest as ZAR_Common does.
    Extract_ZAR(const Extract_ZAR& other);
    Extract_ZAR& operator=(const Extract_ZAR& other);
    ~Extract_ZAR() override = default;

    // Extracts all files (autoExtract not 0) or the file stored as onlyFile into targetDir, dropping the
    // first element of every stored name if subDirAsRoot is not 0. archiveName may be null if archiveDir is
    // the archive's full path. A name that is not in the archive is not a failure, nor is an archive that
    // ends where the next record is expected. Throws UTILS::std_exception type 170 for a file that is not an
    // archive, a record that cannot be skipped or copied, and a stored name that would leave targetDir;
    // ZAR_CommonException with error number 1000 after a cancel; DiskIoException for a file that fails. Both
    // files are then closed; the one being written is incomplete.
    void Extract(const char* archiveDir, const char* archiveName, const char* targetDir, const char* onlyFile,
                 int autoExtract, int subDirAsRoot);

    // How the next record is handled; Extract sets both from its arguments.
    void SetAutoExtract() { autoExtract_ = 1; }
    void UnsetAutoExtract() { autoExtract_ = 0; }
    void ResetAutoExtract() { UnsetAutoExtract(); }
    void SetSubDirAsRoot() { subDirAsRoot_ = 1; }
    void UnsetSubDirAsRoot() { subDirAsRoot_ = 0; }
    void ResetSubDirAsRoot() { UnsetSubDirAsRoot(); }

    // For a user interface, called on the thread that runs Extract: (0, 0) after each file in all-files mode
    // (before it in the old layout); a status line and 1; once per run, to get the operation's window.
    virtual void MoveSlider(int absolute, int value);
    virtual void UPDATE_WINDOW(const char* text, int flag);
    virtual void GET_MESSAGE_WND(HWND& window);

protected:
    void Init();
    void Copy(const Extract_ZAR& other);
    // Sets both paths from the arguments of Extract.
    void MakeFiles(const char* archiveDir, const char* archiveName, const char* targetDir,
                   const char* onlyFile);
    // Extract from an open archive whose first field has been read. 1 done, 0 cancelled or failed.
    int DoNewExtraction(const char* onlyFile);
    int DoOldExtraction(const char* onlyFile);

    UTILS::CUtilsPath targetPath_;
    UTILS::CUtilsPath archivePath_;
    int autoExtract_ = 0;
    int subDirAsRoot_ = 0;

private:
    int ExtractRecords(const char* onlyFile);
    void Finish(int result);

    bool Find(m_archive_fields marker);
    UTILS::UtilsString ReadStoredName();
    bool ReducedStaysBelow(const UTILS::UtilsString& name) const;
    int ExtractNew(const UTILS::UtilsString& name, bool report);

    bool ReadOldName(UTILS::UtilsString& name);
    bool SkipOld();
    bool ReadSignature();
    int ExtractOld(const std::string& path);

    std::string OutputPath(const UTILS::UtilsString& name) const;
    void MakeDirectories(const std::string& path);
    void OpenOutput(const std::string& path);
    void ShowStatus(const char* what, const std::string& path);

    std::optional<std::string> lastDirectory_;  // created last, with its backslash: saves asking again
};
