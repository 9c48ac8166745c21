#pragma once
#include <windows.h>

#include <compare>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "UtilsList.h"
#include "UtilsString.h"

namespace UTILS {

class CUtilsPath;
class InstallerLibrary;

// Receives a result: a string, a path (which is set to the result), or the caller's buffer, which must hold
// the text and its zero. Constructed by the call itself: path.GetParentDir(text).
class PathOutput {
public:
    PathOutput(UtilsString& text) : target_(&text) {}
    PathOutput(CUtilsPath& path) : target_(&path) {}
    PathOutput(char* buffer) : target_(buffer) {}

    // Stores the text; a string or path also receives the case flag.
    void Put(std::string_view text, int caseFlag) const;

private:
    std::variant<UtilsString*, CUtilsPath*, char*> target_;
};

// One path: in the file system ("C:\a"), on the network ("\\server\share\a") or in the registry
// ("HKLM\Software"). It is stored absolute and without a trailing backslash ("C:\" as "C:"; joins and system
// calls restore the backslash of a root), together with its UNC form through the computer's name. A relative
// text is resolved against the current directory: "." is dropped, ".." removes the element before it
// ("x\..\y" is "y") but never climbs above the drive or share, and names that only begin with dots
// (".hidden", "..foo") are ordinary. An absolute text keeps "." and "..". Only the backslash separates. Texts
// are 8-bit, of any length.
//
// Most operations return 1, or 0 on failure. With the exception flag set, an empty path and a failed search
// throw UTILS::std_exception of type 173 instead of returning 0.
// Thread rule: one thread at a time; for operations that return a process-wide buffer, in the whole process.
//
//   UTILS::CUtilsPath disk("A:\\");
//   disk += "DOS";                          // A:\DOS
//   disk.CreateDirectory();
class CUtilsPath {
public:
    // Sets the switches (0 or not 0) and then the path, as SetPath does. An empty path leaves the object
    // empty, or throws with `exceptions`.
    explicit CUtilsPath(const UtilsString& path = UtilsString(), int automate = 0, int scanReadOnly = 0,
                        int exceptions = 0);
    // Copies everything: path, lists, cursors, totals and flags.
    CUtilsPath(const CUtilsPath& other) = default;
    CUtilsPath& operator=(const CUtilsPath& other) = default;
    CUtilsPath& operator=(const UtilsString& path) {
        SetPath(path);
        return *this;
    }
    virtual ~CUtilsPath() = default;

    // ---- Setting the path

    // Sets the path: classifies the text (a registry root is compared under the text's case flag), makes it
    // absolute, and asks the system whether it is a file (file flag, size). A changed path discards the walk
    // and the parent search. With the automate flag the tree is then walked with "*.*".
    // Returns 1, or the walk's result; 0, and nothing changed, for an empty or blank text or if the current
    // directory is needed but unknown. An empty or blank text throws with the exception flag.
    int SetPath(const UtilsString& text);
    int SetDir(const UtilsString& text) { return SetPath(text); }
    int SetKey(const UtilsString& text) { return SetPath(text); }

    // Appends one or more components joined by exactly one backslash; an empty path becomes the component.
    // Result and failure as SetPath; an empty component fails.
    int AddToPath(const UtilsString& component);
    int AddDirToPath(const UtilsString& component) { return AddToPath(component); }
    CUtilsPath& operator+=(const UtilsString& component) {
        AddToPath(component);
        return *this;
    }
    // Appends the other path without its drive, share or root key.
    CUtilsPath& operator+=(const CUtilsPath& other);

    // Set the path to a system directory. 0, and nothing changed, if the system does not report it.
    int SetDirToTemp() { return SetToKnown(GetTempDir()); }
    int SetPathToTemp() { return SetDirToTemp(); }
    int SetDirToWindowsDir() { return SetToKnown(GetWindowsDir()); }
    int SetPathToWindowsDir() { return SetDirToWindowsDir(); }
    int SetPathToWindowsDirectory() { return SetDirToWindowsDir(); }
    int SetDirToWindowsDirectory() { return SetDirToWindowsDir(); }
    int SetDirToSystemDir() { return SetToKnown(GetSystemDir()); }
    int SetPathToSystemDir() { return SetDirToSystemDir(); }
    int SetPathToSystemDirectory() { return SetDirToSystemDir(); }
    int SetDirToSystemDirectory() { return SetDirToSystemDir(); }
    // The directory of a loaded module's file; null means the process's own module.
    int SetDirToModuleName(HMODULE module);
    int SetPathToModuleName(HMODULE module) { return SetDirToModuleName(module); }
    // Descends to the directory (subkey) at the directory cursor; 0 if there is none.
    int SetPathToSubDir();
    int SetPathToSubKey() { return SetPathToSubDir(); }

    // ---- Queries

    const char* GetPath() const { return path_.c_str(); }
    const char* GetDir() const { return GetPath(); }
    const char* GetFullPath() const { return GetPath(); }
    UtilsString UGetPath() const { return path_; }
    operator const char*() const { return GetPath(); }
    operator UtilsString() const { return path_; }

    // The UNC form through the computer's name: "\\PC1\Temp" for "C:\Temp"; a network path itself; empty if
    // the system does not report the name.
    const char* GetPathUNC() const { return network_.c_str(); }
    const char* GetDirUNC() const { return GetPathUNC(); }
    UtilsString UGetPathUNC() const { return network_; }
    UtilsString UGetDirUNC() const { return network_; }

    // What the system reports now; 0 for a registry path. `found` receives the record of a file.
    int IsAFile(WIN32_FIND_DATAA* found = nullptr) const;
    int IsADir() const;
    int DirExists() const { return IsADir(); }
    // The current size of the file in bytes; 0 if the path is not a file.
    DWORD64 GetFileSize() const;

    // 1 when the path is empty.
    int operator!() const { return path_.length() == 0 ? 1 : 0; }
    // Compares the paths as texts, under this path's case flag: -1, 0 or 1.
    int Compare(const TextArgument& other) const { return path_.Compare(other); }
    // All six relational operators, against a path or any text, test the result of Compare.
    template <TextSource Text>
    bool operator==(const Text& other) const {
        return Compare(other) == 0;
    }
    template <TextSource Text>
    std::strong_ordering operator<=>(const Text& other) const {
        return Compare(other) <=> 0;
    }

    // As determined when the path was set.
    int GetFileFlag() const { return fileFlag_; }
    int GetRegFlag() const { return registryFlag_; }
    int IsARegEntry() const { return registryFlag_; }

    // ---- Parts

    // "C:", "\\server\share" or the root key. 0 for an empty path.
    int GetDrive(PathOutput drive) const;
    int GetRootKey(PathOutput root) const { return GetDrive(root); }
    UtilsString UGetDrive() const;
    UtilsString UGetRootKey() const { return UGetDrive(); }

    // The ancestor at the parent depth (0 = the parent), without a trailing backslash. GetNextParentDir first
    // goes one level up (at most one above the root), GetPrevParentDir one level down. 0 if there is no such
    // ancestor.
    int GetParentDir(PathOutput parent) const;
    int GetParentKey(PathOutput parent) const { return GetParentDir(parent); }
    int GetNextParentDir(PathOutput parent);
    int GetNextParentKey(PathOutput parent) { return GetNextParentDir(parent); }
    int GetPrevParentDir(PathOutput parent);
    int GetPrevParentKey(PathOutput parent) { return GetPrevParentDir(parent); }
    void ResetParentSearch() { parentDepth_ = 0; }
    void CloseParentSearch() { ResetParentSearch(); }

    // The last component; 0 for a path without a backslash.
    int GetDirFolder(PathOutput folder) const;
    int GetKeyFolder(PathOutput folder) const { return GetDirFolder(folder); }

    // The entry's path relative to this one, without a leading backslash: "DOS\IO.SYS". The first form uses
    // the entry at the file cursor. 0 if there is none or it is not below this path.
    int GetSubDirFolder(PathOutput below) const;
    int GetSubDirFolder(const UtilsString& entry, PathOutput below) const;

    // The name to store a file under, so that extraction rebuilds its tree inside any target: the path
    // without drive or network share, with "." and ".." resolved, never beginning with a backslash or "..".
    // The first form uses this path, the second a path as a user wrote it; a relative one stays relative. 0
    // if nothing is left, and for a registry path.
    int UpperDirParse(PathOutput stored) const;
    static int UpperDirParse(const UtilsString& listed, PathOutput stored);

    // Splits the last component of a path at its last dot, or at its first if flag is not 0; neither part
    // includes the dot. Without a dot the extension is empty. 0 if there is no last component.
    static int GetFileNameFromPath(const UtilsString& path, PathOutput base, PathOutput extension, int flag);

    // ---- Walking the tree

    // Lists the tree below the path, depth first: the entries of each directory that match the pattern, a
    // directory followed by its own entries. Read-only, hidden and system entries only with the read-only
    // scan flag; skipped directories are not entered. For a registry path lists all values and subkeys,
    // whatever the pattern. 0 if the path is neither, or if a search fails (thrown with the exception flag);
    // what was found before stays listed.
    int Search(const UtilsString& pattern = "*.*");
    int SearchTree(const UtilsString& pattern = "*.*") { return Search(pattern); }
    // Discards the results of the walk.
    void CloseTreeSearch();
    // Sets both cursors to the first entry.
    void ResetTreeSearch();

    // The full path at the file cursor; the Next form advances first. 0 past the last entry. Reading the
    // entries in order takes constant time each.
    int RetrieveFirstFile(PathOutput file) const;
    int RetrieveNextFile(PathOutput file);
    int RetrieveFirstValue(PathOutput value) const { return RetrieveFirstFile(value); }
    int RetrieveNextValue(PathOutput value) { return RetrieveNextFile(value); }
    // Moves the file cursor to the next entry without reading it.
    void AdvanceFileCursor();
    // The same, with the name split as GetFileNameFromPath does.
    int RetrieveFirstFileExpanded(PathOutput file, PathOutput base, PathOutput extension, int flag) const;
    int RetrieveNextFileExpanded(PathOutput file, PathOutput base, PathOutput extension, int flag);
    int RetrieveFirstDir(PathOutput directory) const;
    int RetrieveNextDir(PathOutput directory);
    int RetrieveFirstKey(PathOutput key) const { return RetrieveFirstDir(key); }
    int RetrieveNextKey(PathOutput key) { return RetrieveNextDir(key); }

    // Sort the lists ascending.
    void SortFiles();
    void SortValues() { SortFiles(); }
    void SortDirs();
    void SortKeys() { SortDirs(); }

    DWORD GetTotalFiles() const { return totalFiles_; }
    DWORD GetTotalValues() const { return totalFiles_; }
    DWORD GetTotalSubDirs() const { return totalSubDirs_; }
    DWORD GetTotalSubKeys() const { return totalSubDirs_; }
    // Total bytes of the files that the walk listed (the low 32 bits of each), or of the file set as path.
    // Registry values count as 0.
    DWORD64 GetDirSize() const { return totalSize_; }

    // ---- Changing the file, directory or key

    // Creates a directory with all missing parents: with flag 0 the path itself, unless it is a file;
    // otherwise its parent. Creates the key of a registry path. 1 even if the directory exists or the system
    // refuses it for a reason other than a missing parent; 0 if a parent cannot be created. With the
    // exception flag, a registry failure throws.
    int CreateDirectory(int flag = 0);
    int Create(int flag = 0) { return CreateDirectory(flag); }
    int CreatePath(int flag = 0) { return CreateDirectory(flag); }

    // Deletes the file, the directory with the entries that the walk listed, or the key with everything below
    // it. After a directory or key is deleted, the path is its parent. A tree not walked yet is walked first;
    // read-only, hidden and system entries are deleted only with the read-only scan flag. A link is deleted,
    // never its target, even if an earlier walk listed entries through it. 0 if nothing has that name or the
    // walk or the registry fails. Throws DiskIoException types 6 and 12, whatever the flag; what was deleted
    // stays deleted.
    int DeleteDir();
    int Delete() { return DeleteDir(); }
    int DeletePath() { return DeleteDir(); }
    int DeleteDirectory() { return DeleteDir(); }

    // Makes the path the process's current directory.
    int SetCurrentDir() const;
    int SetCurrentDirectory() const { return SetCurrentDir(); }

    // ---- Well-known directories

    // As the system reports them, each in a static buffer that the next call overwrites; null if the system
    // fails or the text is longer than 259 characters. UGet: a copy, empty on failure.
    static const char* GetTempDir();
    static const char* GetTempDirectory() { return GetTempDir(); }
    static const char* GetWindowsDir();
    static const char* GetWindowsDirectory() { return GetWindowsDir(); }
    static const char* GetSystemDir();
    static const char* GetSystemDirectory() { return GetSystemDir(); }
    static const char* GetCurrentDir();
    static const char* GetCurrentDirectory() { return GetCurrentDir(); }
    static UtilsString UGetTempDir() { return Copied(GetTempDir()); }
    static UtilsString UGetTempDirectory() { return UGetTempDir(); }
    static UtilsString UGetWindowsDir() { return Copied(GetWindowsDir()); }
    static UtilsString UGetWindowsDirectory() { return UGetWindowsDir(); }
    static UtilsString UGetSystemDir() { return Copied(GetSystemDir()); }
    static UtilsString UGetSystemDirectory() { return UGetSystemDir(); }
    static UtilsString UGetCurrentDir() { return Copied(GetCurrentDir()); }
    static UtilsString UGetCurrentDirectory() { return UGetCurrentDir(); }

    // ---- Name forms

    // The system's 8.3 form of the path or of a text, in a process-wide buffer (260 characters and a zero).
    // Null for a registry path, a name that does not exist or a result that does not fit.
    const char* GetShortPathName() const;
    static const char* GetShortPathName(const UtilsString& text);
    // The long form, in a process-wide buffer. A path without a parent is returned unchanged. Null for a
    // registry path and for a name that does not exist. Also works on a Windows without GetLongPathName.
    const char* GetLongPathName() const;
    static const char* GetLongPathName(const UtilsString& text);

    // ---- Shortcuts

    // Writes a shell shortcut to `target`, replacing an existing one. 1 if it was written, else 0.
    static int CreateLinkFile(const UtilsString& target, const UtilsString& linkFile,
                              const UtilsString& description);
    // Resolves a shortcut: 1 with the path of its file or directory in `target` (a buffer must hold it and
    // its zero), otherwise 0 and an empty text. A Windows Installer shortcut resolves to the installed file,
    // in 8.3 form if `form` is not 0, else in long form; the path of an ordinary shortcut is as the shell
    // reports it. Without a link file the path itself is the shortcut; the last form then becomes the target.
    // If the system has the installer, throws DiskIoException when the shortcut cannot be read.
    int ResolveLinkFile(const UtilsString& linkFile, UtilsString& target, int form) const;
    int ResolveLinkFile(const UtilsString& linkFile, char* target, int form) const;
    int ResolveLinkFile(UtilsString& target, int form) const;
    int ResolveLinkFile(char* target, int form) const;
    int ResolveLinkFile(int form);

    // ---- Switches

    void SetAutomate() { automate_ = 1; }
    void ClearAutomate() { automate_ = 0; }
    void ResetAutomate() { ClearAutomate(); }
    void SetExceptionHandling() { exceptions_ = 1; }
    void ClearExceptionHandling() { exceptions_ = 0; }
    void ResetExceptionHandling() { ClearExceptionHandling(); }
    void SetScanRO() { scanReadOnly_ = 1; }
    void SetScanROKO() { SetScanRO(); }
    void ClearScanRO() { scanReadOnly_ = 0; }
    void ClearScanROKO() { ClearScanRO(); }
    void ReSetScanRO() { ClearScanRO(); }
    void ReSetScanROKO() { ClearScanRO(); }

private:
    static constexpr const char* null_path = "The input pathname is NULL";
    static constexpr const char* failed_search = "Error in the FindFile Command";

    std::string_view Text() const { return path_.c_str(); }
    // The path for system calls: a bare drive gets its backslash, because "C:" means its current directory.
    std::string SystemName() const;
    void Store(const std::string& path, bool registry, int caseFlag);
    int SetToKnown(const char* directory);
    static UtilsString Copied(const char* directory);
    // Throws with the exception flag, else returns 0.
    int Refuse(const char* condition, DWORD line = __builtin_LINE()) const;

    enum class Links { AreFollowed, AreLeaves };
    int WalkFiles(const std::string& pattern, Links links);
    bool Takes(const WIN32_FIND_DATAA& entry) const;
    bool List(const WIN32_FIND_DATAA& entry, const std::string& path);
    int WalkKeys();
    int ListTree();
    bool ListKey(const std::string& path, std::vector<std::string>& subkeys);
    UtilsString KeyName(std::string_view path) const;
    void DeleteListed();
    void LeaveToParent();
    int CreateKey() const;
    int DeleteKey();

    const InstallerLibrary& Installer() const;
    std::string LinkTarget(const UtilsString& linkFile, int form) const;
    // Find the codes of an installer shortcut (in buffers of 39 characters each) when the installer itself
    // cannot: from the shortcut's data block, or from the icon path in its bytes and the package of its
    // product. 0 without codes; the second throws if the file cannot be read.
    int GetUnsupportedShortcutTargetUndocumented(const UtilsString& linkFile, char* product,
                                                 char* component) const;
    int GetUnsupportedShortcutTarget(const UtilsString& linkFile, char* product, char* component) const;
    // The product's cached package; 0 when there is none.
    int InternalGetLocalPackagePath(const UtilsString& productCode, UtilsString& packagePath) const;

    int automate_ = 0;
    int exceptions_ = 0;
    DWORD64 totalSize_ = 0;
    DWORD totalFiles_ = 0;
    DWORD totalSubDirs_ = 0;
    UtilsString path_;
    UtilsString network_;
    UtilsStringList files_;
    UtilsStringList directories_;
    DWORD parentDepth_ = 0;
    DWORD fileCursor_ = 0;
    DWORD directoryCursor_ = 0;
    int fileFlag_ = 0;
    int registryFlag_ = 0;
    int scanReadOnly_ = 0;
    int networkFlag_ = 0;
    // Shared by copies.
    mutable std::shared_ptr<const InstallerLibrary> installer_;
};

}  // namespace UTILS
