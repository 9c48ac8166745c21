#include <windows.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "CUtilsPath.h"
#include "directory_search.h"
#include "path_text.h"
#include "std_exception.h"

namespace UTILS {
namespace {

bool NamesRegistryRoot(std::string_view path, int caseFlag) {
    static constexpr const char* roots[] = {"HKLM", "HKEY_LOCAL_MACHINE", "HKCU", "HKEY_CURRENT_USER",
                                            "HKCR", "HKEY_CLASSES_ROOT",  "HKU",  "HKEY_USERS",
                                            "HKCC", "HKEY_CURRENT_CONFIG"};
    if (!path.starts_with('H') && caseFlag != 0) {
        return false;  // avoids the comparisons for nearly every file path
    }
    UtilsString first(std::string(path.substr(0, path.find('\\'))));
    first.SetCase(caseFlag);
    return std::any_of(std::begin(roots), std::end(roots),
                       [&first](const char* root) { return first.Compare(root) == 0; });
}

// Empty if the system does not report it.
std::string ComputerName() {
    std::array<char, 512> buffer;
    auto size = static_cast<DWORD>(buffer.size());
    return ::GetComputerNameA(buffer.data(), &size) ? std::string(buffer.data()) : std::string();
}

// Of any length, unlike GetCurrentDir. Empty if the system does not report it.
std::string CurrentDirectory() {
    std::string directory(MAX_PATH, '\0');
    DWORD length = ::GetCurrentDirectoryA(MAX_PATH, directory.data());
    if (length > directory.size()) {
        directory.resize(length);
        length = ::GetCurrentDirectoryA(length, directory.data());
    }
    directory.resize(std::min<std::size_t>(length, directory.size()));
    return path_text::Normalised(directory);
}

// Empty if the current directory is needed but unknown.
std::string Absolute(const std::string& path) {
    if (path_text::IsNetwork(path) || path.find(':') != std::string::npos) {
        return path;
    }
    const std::string base = CurrentDirectory();
    return base.empty() ? std::string() : path_text::Normalised(path_text::Resolved(base, path));
}

DWORD64 SizeOf(const WIN32_FIND_DATAA& found) {
    return static_cast<DWORD64>(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
}

std::string NetworkForm(const std::string& path, bool registry) {
    const std::string computer = ComputerName();
    if (computer.empty()) {
        return {};
    }
    const std::string_view drive = registry ? std::string_view() : std::string_view(path).substr(0, 3);
    return path_text::Normalised(path_text::OnComputer(computer, path, drive));
}

}  // namespace

CUtilsPath::CUtilsPath(const UtilsString& path, int automate, int scanReadOnly, int exceptions)
    : automate_(automate != 0), exceptions_(exceptions != 0), scanReadOnly_(scanReadOnly != 0) {
    SetPath(path);
}

int CUtilsPath::SetPath(const UtilsString& text) {
    const std::string_view given(text.c_str());
    if (path_text::IsBlank(given)) {
        return Refuse(null_path);
    }
    std::string path = path_text::Normalised(given);
    const bool registry = NamesRegistryRoot(path, text.GetCase());
    if (!registry) {
        path = Absolute(path);
    }
    if (path.empty()) {
        return 0;
    }
    if (given != Text()) {
        CloseTreeSearch();
        ResetParentSearch();
    }
    Store(path, registry, text.GetCase());
    return automate_ ? Search() : 1;
}

void CUtilsPath::Store(const std::string& path, bool registry, int caseFlag) {
    path_ = path;
    path_.SetCase(caseFlag);
    registryFlag_ = registry;
    networkFlag_ = path_text::IsNetwork(path);
    network_ = networkFlag_ ? path : NetworkForm(path, registry);
    WIN32_FIND_DATAA found;
    const int wasFile = fileFlag_;
    fileFlag_ = IsAFile(&found);
    if (fileFlag_ || wasFile) {
        totalSize_ = fileFlag_ ? SizeOf(found) : 0;
    }
}

int CUtilsPath::AddToPath(const UtilsString& component) {
    const std::string_view given(component.c_str());
    if (given.find_first_not_of("\\ ") == std::string_view::npos) {
        return Refuse(null_path);
    }
    if (!*this) {
        return SetPath(component);
    }
    UtilsString joined(path_text::Joined(Text(), given));
    joined.SetCase(path_.GetCase());
    return SetPath(joined);
}

CUtilsPath& CUtilsPath::operator+=(const CUtilsPath& other) {
    const std::string_view path = other.Text();
    AddToPath(std::string(path.substr(path_text::Root(path).size())));
    return *this;
}

int CUtilsPath::SetToKnown(const char* directory) {
    return directory != nullptr ? SetPath(directory) : 0;
}

int CUtilsPath::SetDirToModuleName(HMODULE module) {
    std::string file(MAX_PATH, '\0');
    DWORD length = 0;
    while ((length = ::GetModuleFileNameA(module, file.data(), static_cast<DWORD>(file.size()))) ==
           file.size()) {
        file.resize(file.size() * 2);
    }
    const std::string_view folder = path_text::Parent(std::string_view(file).substr(0, length));
    return folder.empty() ? 0 : SetPath(std::string(folder));
}

int CUtilsPath::SetPathToSubDir() {
    UtilsString directory;
    return RetrieveFirstDir(directory) ? SetPath(directory) : 0;
}

std::string CUtilsPath::SystemName() const {
    return path_text::ForSystem(Text());
}

int CUtilsPath::IsAFile(WIN32_FIND_DATAA* found) const {
    if (registryFlag_ || path_text::Root(Text()) == Text() || path_text::HasWildcard(Text())) {
        return 0;
    }
    DirectorySearch search(path_.c_str());
    if (!search.Advance() || (search.Entry().dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return 0;
    }
    if (found != nullptr) {
        *found = search.Entry();
    }
    return 1;
}

int CUtilsPath::IsADir() const {
    if (registryFlag_ || !*this) {
        return 0;
    }
    const DWORD attributes = ::GetFileAttributesA(SystemName().c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? 1 : 0;
}

DWORD64 CUtilsPath::GetFileSize() const {
    WIN32_FIND_DATAA found;
    return IsAFile(&found) ? SizeOf(found) : 0;
}

int CUtilsPath::Refuse(const char* condition, DWORD line) const {
    if (exceptions_) {
        throw std_exception(condition, "..\\..\\Include\\CUtilsPath", 173, line, ::GetLastError(), 1);
    }
    return 0;
}

}  // namespace UTILS
