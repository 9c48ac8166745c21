#include <windows.h>

#include <cstring>
#include <string>

#include "CUtilsPath.h"
#include "path_text.h"

namespace UTILS {
namespace {

// 1 if the answer is not empty.
int Give(std::string_view answer, int caseFlag, PathOutput output) {
    if (answer.empty()) {
        return 0;
    }
    output.Put(answer, caseFlag);
    return 1;
}

std::string_view Ancestor(std::string_view path, DWORD depth) {
    std::string_view ancestor = path_text::Parent(path);
    for (DWORD level = 0; level < depth && !ancestor.empty(); ++level) {
        ancestor = path_text::Parent(ancestor);
    }
    return ancestor;
}

}  // namespace

// The answer may point into the object that receives it, so it is copied first.
void PathOutput::Put(std::string_view text, int caseFlag) const {
    const std::string copy(text);
    if (auto* const* buffer = std::get_if<char*>(&target_)) {
        std::memcpy(*buffer, copy.c_str(), copy.size() + 1);
        return;
    }
    UtilsString answer(copy);
    answer.SetCase(caseFlag);
    if (auto* const* path = std::get_if<CUtilsPath*>(&target_)) {
        (*path)->SetPath(answer);
    } else {
        *std::get<UtilsString*>(target_) = answer;
    }
}

int CUtilsPath::GetDrive(PathOutput drive) const {
    return Give(path_text::Root(Text()), path_.GetCase(), drive);
}

UtilsString CUtilsPath::UGetDrive() const {
    UtilsString drive;
    GetDrive(drive);
    return drive;
}

int CUtilsPath::GetParentDir(PathOutput parent) const {
    return Give(Ancestor(Text(), parentDepth_), path_.GetCase(), parent);
}

int CUtilsPath::GetNextParentDir(PathOutput parent) {
    if (!Ancestor(Text(), parentDepth_).empty()) {
        ++parentDepth_;
    }
    return GetParentDir(parent);
}

int CUtilsPath::GetPrevParentDir(PathOutput parent) {
    if (parentDepth_ == 0) {
        return 0;
    }
    --parentDepth_;
    return GetParentDir(parent);
}

int CUtilsPath::GetDirFolder(PathOutput folder) const {
    const std::string_view path = Text();
    return path.find('\\') == std::string_view::npos
               ? 0
               : Give(path_text::LastComponent(path), path_.GetCase(), folder);
}

int CUtilsPath::GetSubDirFolder(PathOutput below) const {
    UtilsString entry;
    return RetrieveFirstFile(entry) ? GetSubDirFolder(entry, below) : 0;
}

int CUtilsPath::GetSubDirFolder(const UtilsString& entry, PathOutput below) const {
    const std::string_view path = Text();
    const std::string_view whole(entry.c_str());
    if (path.empty() || !whole.starts_with(path) || whole.substr(path.size(), 1) != "\\") {
        return 0;
    }
    return Give(whole.substr(path.size() + 1), path_.GetCase(), below);
}

int CUtilsPath::UpperDirParse(PathOutput stored) const {
    return registryFlag_ ? 0 : UpperDirParse(path_, stored);
}

int CUtilsPath::UpperDirParse(const UtilsString& listed, PathOutput stored) {
    return Give(path_text::Relative(path_text::Normalised(listed.c_str())), listed.GetCase(), stored);
}

int CUtilsPath::GetFileNameFromPath(const UtilsString& path, PathOutput base, PathOutput extension,
                                    int flag) {
    const std::string_view name = path_text::LastComponent(path.c_str());
    if (name.empty()) {
        return 0;
    }
    const auto parts = path_text::SplitAtDot(name, flag != 0);
    base.Put(parts.base, path.GetCase());
    extension.Put(parts.extension, path.GetCase());
    return 1;
}

}  // namespace UTILS
