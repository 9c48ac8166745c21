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

// Where an answer goes: a string, a path (which is set to the answer), or a caller's buffer, which must hold
// the whole text and its zero. Made by the call itself: path.GetParentDir(text).
class PathOutput {
public:
    PathOutput(UtilsString& text) : target_(&text) {}
    PathOutput(CUtilsPath& path) : target_(&path) {}
    PathOutput(char* buffer) : target_(buffer) {}

    // Hands the text over; a string or path also takes the case flag.
    void Put(std::string_view text, int caseFlag) const;

private:
    std::variant<UtilsString*, CUtilsPath*, char*> target_;
};

// One path: of the file system ("C:\a"), of the network ("\\server\share\a") or of the registry
// ("HKLM\Software"). It is kept absolute, without a backslash at its end ("C:\" is kept as "C:"; joins and
// system calls put the backslash of a root back), together with its form through the computer's name.
// A relative text is completed with the current directory, and every text is resolved element by element: "."
// goes, ".." takes the element before it along ("x\..\y" is "y") but never climbs above the drive or share,
// and what only begins with dots (".hidden", "..foo") is a name like any other. Only the backslash separates.
// Texts are 8-bit, of any length.
//
// Most operations return 1, or 0 for a failure. With the exception flag set an empty path and a failed search
// throw UTILS::std_exception of type 173 instead of returning 0.
// Thread rule: one thread at a time; what returns a process-wide buffer, for the whole process.
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
    // The copy carries everything: path, lists, cursors, totals and flags.
    CUtilsPath(const CUtilsPath& other) = default;
    CUtilsPath& operator=(const CUtilsPath& other) = default;
    CUtilsPath& operator=(const UtilsString& path) {
        SetPath(path);
        return *this;
    }
    virtual ~CUtilsPath() = default;

    // ---- Setting the path

    // Makes the text the path: classifies it (a registry root is compared under the text's case flag), makes
    // it absolute, and asks the system whether it is a file (file flag, size). A changed path forgets the
    // walk and the parent search. With the automate flag the tree is then walked with "*.*".
    // Returns 1, or the walk's result; 0 for an empty or blank text, or when the current directory is needed
    // and unknown, and nothing is changed then. Throws for the empty text with the exception flag.
    int SetPath(const UtilsString& text);
    int SetDir(const UtilsString& text) { return SetPath(text); }
    int SetKey(const UtilsString& text) { return SetPath(text); }

    // Appends one or more components with one backslash between, whatever the component begins with; an empty
    // path becomes the component. Result and failure as SetPath; an empty component fails.
    int AddToPath(const UtilsString& component);
    int AddDirToPath(const UtilsString& component) { return AddToPath(component); }
    CUtilsPath& operator+=(const UtilsString& component) {
        AddToPath(component);
        return *this;
    }
    // Appends the other path without its drive, share or root key.
    CUtilsPath& operator+=(const CUtilsPath& other);

    // Set the path to a directory of the system. 0, and nothing changed, when the system cannot tell.
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
    // The directory of a loaded module's file; null stands for the process's own module.
    int SetDirToModuleName(HMODULE module);
    int SetPathToModuleName(HMODULE module) { return SetDirToModuleName(module); }
    // Descends to the directory (subkey) at the directory cursor; 0 when the walk has none there.
    int SetPathToSubDir();
    int SetPathToSubKey() { return SetPathToSubDir(); }

    // ---- Asking

    const char* GetPath() const { return path_.c_str(); }
    const char* GetDir() const { return GetPath(); }
    const char* GetFullPath() const { return GetPath(); }
    UtilsString UGetPath() const { return path_; }
    operator const char*() const { return GetPath(); }
    operator UtilsString() const { return path_; }

    // The path through the computer's network name: "\\PC1\Temp" for "C:\Temp"; a network path itself; empty
    // when the system does not tell the name.
    const char* GetPathUNC() const { return network_.c_str(); }
    const char* GetDirUNC() const { return GetPathUNC(); }
    UtilsString UGetPathUNC() const { return network_; }
    UtilsString UGetDirUNC() const { return network_; }

    // What the system says now; 0 for a registry path. `found` receives the file's record when it is one.
    int IsAFile(WIN32_FIND_DATAA* found = nullptr) const;
    int IsADir() const;
    int DirExists() const { return IsADir(); }
    // Bytes of the file now; 0 when the path is none.
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

    // Known since the path was set.
    int GetFileFlag() const { return fileFlag_; }
    int GetRegFlag() const { return registryFlag_; }
    int IsARegEntry() const { return registryFlag_; }

    // ---- Parts

    // "C:", "\\server\share" or the root key. 0 for an empty path.
    int GetDrive(PathOutput drive) const;
    int GetRootKey(PathOutput root) const { return GetDrive(root); }
    UtilsString UGetDrive() const;
    UtilsString UGetRootKey() const { return UGetDrive(); }

    // The ancestor at the parent depth (0 = the parent), without a backslash at its end. GetNextParentDir
    // goes one level up first, at most one above the root; GetPrevParentDir one level down. 0 when there is
    // no such ancestor.
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

    // The entry's path below this one, without a backslash in front: "DOS\IO.SYS". The first form takes the
    // entry at the file cursor. 0 when there is none, or it does not lie below this path.
    int GetSubDirFolder(PathOutput below) const;
    int GetSubDirFolder(const UtilsString& entry, PathOutput below) const;

    // The name under which a file can be stored so that extraction rebuilds its tree inside any target: the
    // path without drive or network share, "." and ".." worked out, never beginning with a backslash or a
    // parent step. The first form takes this path, the second a path as a user wrote it, where a relative one
    // stays relative. 0 when nothing is left, and for a registry path.
    int UpperDirParse(PathOutput stored) const;
    static int UpperDirParse(const UtilsString& listed, PathOutput stored);

    // Splits the last component of a path at its last dot, or at its first with a flag other than 0; the dot
    // goes to neither. Without a dot all is base and the extension empty. 0 when there is no last component.
    static int GetFileNameFromPath(const UtilsString& path, PathOutput base, PathOutput extension, int flag);

    // ---- Walking the tree

    // Lists what lies below the path: every directory's entries that match the pattern, a directory followed
    // by its own entries. Read-only, hidden and system entries only with the read-only scan flag; what is
    // skipped is not entered. Of a registry path all values and subkeys, whatever the pattern. 0 when the
    // path is neither, or when a search fails (thrown with the exception flag); what was found so far stays
    // listed.
    int Search(const UtilsString& pattern = "*.*");
    int SearchTree(const UtilsString& pattern = "*.*") { return Search(pattern); }
    // Forgets what the walk found.
    void CloseTreeSearch();
    // Sets both cursors to the first entry.
    void ResetTreeSearch();

    // The full path at the file cursor; the Next form moves on first. 0 past the last entry. Reading all
    // entries in order costs one step each.
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
    // Bytes of the files that the walk listed (the low 32 bits of each), or of the file set as path. Registry
    // values count nothing.
    DWORD64 GetDirSize() const { return totalSize_; }

    // ---- Changing what the path names

    // Creates the directory with all missing parents: the path's own with flag 0, unless it is a file;
    // otherwise the folder that holds it. Creates the key of a registry path. 1 also when the directory is
    // there already or the system refuses it for a reason other than a missing parent; 0 when a parent cannot
    // be made. Throws the registry's report with the exception flag.
    int CreateDirectory(int flag = 0);
    int Create(int flag = 0) { return CreateDirectory(flag); }
    int CreatePath(int flag = 0) { return CreateDirectory(flag); }

    // Deletes the file, the directory with what the walk lists, or the key with all below it. Of a directory
    // or key the path becomes the parent. A tree not walked yet is walked first; read-only, hidden and system
    // entries go only with the read-only scan flag. A link goes as the entry that it is: nothing behind it is
    // deleted, even if an earlier walk has listed it. 0 when there is nothing of that name or the walk or the
    // registry fails. Throws DiskIoException types 6 and 12, whatever the flag; what is deleted stays
    // deleted.
    int DeleteDir();
    int Delete() { return DeleteDir(); }
    int DeletePath() { return DeleteDir(); }
    int DeleteDirectory() { return DeleteDir(); }

    // Makes the path the process's current directory.
    int SetCurrentDir() const;
    int SetCurrentDirectory() const { return SetCurrentDir(); }

    // ---- Well-known directories

    // As the system gives them, each in a buffer that lives as long as the process and is overwritten by the
    // next call; null when the system fails or the text is longer than 259 characters. UGet: a copy, empty
    // after a failure.
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
    // Null for a registry path, a name that does not exist or a form that does not fit.
    const char* GetShortPathName() const;
    static const char* GetShortPathName(const UtilsString& text);
    // The long form, in a process-wide text. A path without a parent comes back as it is. Null for a registry
    // path and for a name that does not exist. Works also on a Windows that has no such function.
    const char* GetLongPathName() const;
    static const char* GetLongPathName(const UtilsString& text);

    // ---- Shortcuts

    // Writes a shell shortcut that points to `target`, over an older one. 1 when it is written, else 0.
    static int CreateLinkFile(const UtilsString& target, const UtilsString& linkFile,
                              const UtilsString& description);
    // Finds the file or directory that a shortcut points to: 1 with its path in `target` (a buffer must hold
    // it and its zero), otherwise 0 and an empty text. A shortcut of the Windows Installer points to what is
    // installed for it, given in its 8.3 form with a `form` other than 0 and else in its long form; the path
    // in an ordinary shortcut comes as the shell tells it. Without a link file the path itself is the
    // shortcut; the last form then becomes the target. Where the system has the installer, throws
    // DiskIoException when the shortcut cannot be read.
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
    // The path as system calls take it: a drive alone gets its backslash, because "C:" means something else.
    std::string SystemName() const;
    void Store(const std::string& path, bool registry, int caseFlag);
    int SetToKnown(const char* directory);
    static UtilsString Copied(const char* directory);
    // 0, or with the exception flag a throw.
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
    // Give the codes behind a shortcut of the installer, into buffers of 39 characters each, when the
    // installer itself cannot: from the shortcut's own data block, or from the icon that its bytes name and
    // the package of its product. 0 without codes; the second throws when the file cannot be read.
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
