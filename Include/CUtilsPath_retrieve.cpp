#include <windows.h>

#include "CUtilsPath.h"

namespace UTILS {
namespace {

// A cursor stops one past the last entry.
void Advance(DWORD& cursor, const UtilsStringList& entries) {
    if (cursor < entries.GetNumberOfStrings()) {
        ++cursor;
    }
}

int GiveEntry(const UtilsStringList& entries, DWORD cursor, int caseFlag, PathOutput output) {
    if (cursor >= entries.GetNumberOfStrings()) {
        return 0;
    }
    output.Put(entries.RetrieveString(cursor)->c_str(), caseFlag);
    return 1;
}

void SortAscending(UtilsStringList& entries) {
    entries.SetSearchDirection(0);
    entries.Sort(0);
}

}  // namespace

void CUtilsPath::ResetTreeSearch() {
    fileCursor_ = 0;
    directoryCursor_ = 0;
}

int CUtilsPath::RetrieveFirstFile(PathOutput file) const {
    return GiveEntry(files_, fileCursor_, path_.GetCase(), file);
}

int CUtilsPath::RetrieveNextFile(PathOutput file) {
    AdvanceFileCursor();
    return RetrieveFirstFile(file);
}

void CUtilsPath::AdvanceFileCursor() {
    Advance(fileCursor_, files_);
}

int CUtilsPath::RetrieveFirstFileExpanded(PathOutput file, PathOutput base, PathOutput extension,
                                          int flag) const {
    UtilsString entry;
    if (!RetrieveFirstFile(entry) || !GetFileNameFromPath(entry, base, extension, flag)) {
        return 0;
    }
    file.Put(entry.c_str(), entry.GetCase());
    return 1;
}

int CUtilsPath::RetrieveNextFileExpanded(PathOutput file, PathOutput base, PathOutput extension, int flag) {
    AdvanceFileCursor();
    return RetrieveFirstFileExpanded(file, base, extension, flag);
}

int CUtilsPath::RetrieveFirstDir(PathOutput directory) const {
    return GiveEntry(directories_, directoryCursor_, path_.GetCase(), directory);
}

int CUtilsPath::RetrieveNextDir(PathOutput directory) {
    Advance(directoryCursor_, directories_);
    return RetrieveFirstDir(directory);
}

void CUtilsPath::SortFiles() {
    SortAscending(files_);
}

void CUtilsPath::SortDirs() {
    SortAscending(directories_);
}

}  // namespace UTILS
