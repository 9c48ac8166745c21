#include <windows.h>
// Not part of <windows.h>.
#include <shlobj.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "CUtilsPath.h"
#include "UtilsByte.h"
#include "com_pointer.h"
#include "diskio.h"
#include "installer_library.h"

namespace UTILS {
namespace {

constexpr int target_size = 261;
// No dialogs, no search of the disks, and at most 300 ms for a slow drive.
constexpr DWORD resolve_quietly = 300u << 16 | SLR_NOSEARCH | SLR_ANY_MATCH | SLR_NO_UI;

LPCOLESTR System(const WideText& text) {
    return reinterpret_cast<LPCOLESTR>(text.c_str());
}

// A data block copied by the shell.
class DataBlock {
public:
    DataBlock(const ComPointer<IShellLinkDataList>& link, DWORD signature) {
        if (FAILED(link->CopyDataBlock(signature, &block_))) {
            block_ = nullptr;
        }
    }
    DataBlock(const DataBlock&) = delete;
    DataBlock& operator=(const DataBlock&) = delete;
    ~DataBlock() { ::LocalFree(block_); }

    // The installer's text; empty if the block is too short for it.
    std::string Descriptor() const {
        DATABLOCK_HEADER header{};
        if (block_ != nullptr) {
            std::memcpy(&header, block_, sizeof header);
        }
        if (header.cbSize < sizeof(EXP_DARWIN_LINK)) {
            return {};
        }
        const auto* const text = static_cast<const EXP_DARWIN_LINK*>(block_)->szDarwinID;
        return {text, ::strnlen(text, MAX_PATH)};
    }

private:
    void* block_ = nullptr;
};

// Loads a shortcut file; false if it cannot be read.
template <class Interface>
bool Load(const ComPointer<Interface>& link, const UtilsString& linkFile) {
    const auto file = link.template As<IPersistFile>(IID_IPersistFile);
    const WideText name = linkFile.GetSTLWString();
    return file && !name.empty() && SUCCEEDED(file->Load(System(name), STGM_READ));
}

std::string ShellTarget(const UtilsString& linkFile) {
    const auto link = ComPointer<IShellLinkA>::Created(CLSID_ShellLink, IID_IShellLinkA);
    std::array<char, target_size> path{};
    const bool found = link && Load(link, linkFile) && SUCCEEDED(link->Resolve(nullptr, resolve_quietly)) &&
                       SUCCEEDED(link->GetPath(path.data(), target_size, nullptr, 0));
    return found ? path.data() : "";
}

std::string ReadWhole(const UtilsString& fileName) {
    DiskIO file(fileName.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, 0);
    UtilsByte content;
    if (file.GetFileSize() != 0) {
        file.SetReadWriteSize(DiskIO::wholeSize);
        file >> content;
    }
    return {reinterpret_cast<const char*>(content.c_str()), content.length()};
}

bool EndsText(char c) {
    return static_cast<unsigned char>(c) < 0x20;
}

// Removes and returns the text before the first byte for which `ends` is true.
template <class Ends>
std::string_view Taken(std::string_view& rest, Ends ends) {
    std::size_t length = 0;
    while (length < rest.size() && !ends(rest[length])) {
        ++length;
    }
    const std::string_view taken = rest.substr(0, length);
    rest.remove_prefix(length);
    return taken;
}

// The product and the icon file of an advertised shortcut, from the path of its icon:
// "...\Installer\{product}\icon".
struct IconPlace {
    std::string product;
    std::string icon;
};

IconPlace FindIcon(std::string_view content) {
    constexpr std::string_view folder = "Installer\\{";
    const std::size_t start = content.find(folder);
    if (start == std::string_view::npos) {
        return {};
    }
    content.remove_prefix(start + folder.size() - 1);
    const std::string_view product = Taken(content, [](char c) { return c == '\\' || EndsText(c); });
    if (!content.starts_with('\\')) {
        return {};
    }
    content.remove_prefix(1);
    return {std::string(product), std::string(Taken(content, EndsText))};
}

std::string NameForm(const std::string& path, int form) {
    const char* const name =
        form != 0 ? CUtilsPath::GetShortPathName(path) : CUtilsPath::GetLongPathName(path);
    return name != nullptr ? name : path;
}

int Give(const InstallerCodes& codes, char* product, char* component) {
    if (!codes.AreWhole()) {
        return 0;
    }
    std::memcpy(product, codes.product, sizeof codes.product);
    std::memcpy(component, codes.component, sizeof codes.component);
    return 1;
}

}  // namespace

int CUtilsPath::CreateLinkFile(const UtilsString& target, const UtilsString& linkFile,
                               const UtilsString& description) {
    const ComScope com;
    const auto link = ComPointer<IShellLinkA>::Created(CLSID_ShellLink, IID_IShellLinkA);
    const auto file = link.As<IPersistFile>(IID_IPersistFile);
    const WideText name = linkFile.GetSTLWString();
    const bool saved = file && !name.empty() && SUCCEEDED(link->SetPath(target.c_str())) &&
                       SUCCEEDED(link->SetDescription(description.c_str())) &&
                       SUCCEEDED(file->Save(System(name), TRUE));
    return saved ? 1 : 0;
}

int CUtilsPath::ResolveLinkFile(const UtilsString& linkFile, UtilsString& target, int form) const {
    const UtilsString link(linkFile.c_str());  // may be the same object as the target
    PathOutput(target).Put("", linkFile.GetCase());
    const std::string found = LinkTarget(link, form);
    PathOutput(target).Put(found, target.GetCase());
    return found.empty() ? 0 : 1;
}

int CUtilsPath::ResolveLinkFile(const UtilsString& linkFile, char* target, int form) const {
    *target = 0;
    UtilsString found;
    const int result = ResolveLinkFile(linkFile, found, form);
    PathOutput(target).Put(found.c_str(), 0);
    return result;
}

int CUtilsPath::ResolveLinkFile(UtilsString& target, int form) const {
    const UtilsString link = registryFlag_ ? UtilsString() : path_;
    return ResolveLinkFile(link, target, form);
}

int CUtilsPath::ResolveLinkFile(char* target, int form) const {
    const UtilsString link = registryFlag_ ? UtilsString() : path_;
    return ResolveLinkFile(link, target, form);
}

int CUtilsPath::ResolveLinkFile(int form) {
    UtilsString target;
    if (!ResolveLinkFile(target, form)) {
        return 0;
    }
    SetPath(target);
    return 1;
}

// Asks the installer first: for its shortcuts the shell knows only the path of the icon.
std::string CUtilsPath::LinkTarget(const UtilsString& linkFile, int form) const {
    if (linkFile.length() == 0) {
        return {};
    }
    const ComScope com;
    if (Installer().IsAvailable()) {
        InstallerCodes codes = Installer().ShortcutTarget(linkFile.c_str());
        if (codes.AreWhole() || GetUnsupportedShortcutTarget(linkFile, codes.product, codes.component) ||
            GetUnsupportedShortcutTargetUndocumented(linkFile, codes.product, codes.component)) {
            const std::string file = Installer().InstalledFile(codes);
            return file.empty() ? file : NameForm(file, form);
        }
    }
    return ShellTarget(linkFile);
}

int CUtilsPath::GetUnsupportedShortcutTargetUndocumented(const UtilsString& linkFile, char* product,
                                                         char* component) const {
    const auto link = ComPointer<IShellLinkDataList>::Created(CLSID_ShellLink, IID_IShellLinkDataList);
    DWORD flags = 0;
    if (!Installer().IsAvailable() || !link || !Load(link, linkFile) || FAILED(link->GetFlags(&flags)) ||
        (flags & SLDF_HAS_DARWINID) == 0) {
        return 0;
    }
    const DataBlock block(link, EXP_DARWIN_ID_SIG);
    return Give(Installer().Decompose(block.Descriptor().c_str()), product, component);
}

int CUtilsPath::GetUnsupportedShortcutTarget(const UtilsString& linkFile, char* product,
                                             char* component) const {
    if (!Installer().IsAvailable()) {
        return 0;
    }
    const IconPlace place = FindIcon(ReadWhole(linkFile));
    UtilsString package;
    if (place.icon.empty() || !InternalGetLocalPackagePath(place.product, package)) {
        return 0;
    }
    return Give(Installer().FirstInstalled(package.c_str(), place.product, place.icon), product, component);
}

int CUtilsPath::InternalGetLocalPackagePath(const UtilsString& productCode, UtilsString& packagePath) const {
    const std::string package = Installer().LocalPackage(productCode.c_str());
    if (package.empty()) {
        return 0;
    }
    packagePath = package;
    return 1;
}

// Loaded on first use: most paths never resolve a shortcut.
const InstallerLibrary& CUtilsPath::Installer() const {
    if (installer_ == nullptr) {
        installer_ = std::make_shared<const InstallerLibrary>();
    }
    return *installer_;
}

}  // namespace UTILS
