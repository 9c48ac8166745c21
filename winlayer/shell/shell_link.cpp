#include "winlayer/shell/shell_link.h"

#include <algorithm>
#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/local_memory.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"
#include "winlayer/files/path_target.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

constexpr std::uint64_t largestFile = 0x1000000;  // far above any shortcut's size

std::u16string wideOf(LPCSTR text) {
    bool valid = true;
    return widen(SystemSettings::current().ansiCodePage, text, valid);
}

std::string narrowed(std::u16string_view text) {
    Narrowing how;
    return narrow(SystemSettings::current().ansiCodePage, text, how);
}

std::string fileNameOf(LPCOLESTR name) {
    std::u16string text;
    for (; *name != 0; ++name) {
        text.push_back(*name);
    }
    return narrowed(text);
}

// Truncated to the buffer, as on Windows.
HRESULT giveCut(const std::string& text, LPSTR buffer, int size) {
    if (buffer == nullptr || size <= 0) {
        return E_INVALIDARG;
    }
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = 0;
    return S_OK;
}

DWORD factsOf(const std::string& path, FileFacts& facts) {
    PathTarget target;
    const DWORD error = findTarget(path.c_str(), target);
    return error != 0 ? error : target.files->facts(target.below, facts);
}

// Makes a path absolute; network paths and invalid ones stay as they are.
std::string completed(const std::string& path) {
    ResolvedPath resolved;
    const DWORD error = resolvePath(path, Drives::current().currentDirectory(), resolved);
    return error == 0 ? std::string(1, resolved.letter) + ":\\" + resolved.below : path;
}

struct OpenedFile {
    std::unique_ptr<OpenFile> file;
    DWORD error = NO_ERROR;
};

OpenedFile openFile(const std::string& name, DWORD access, DWORD disposition) {
    OpenedFile opened;
    PathTarget target;
    opened.error = findTarget(name.c_str(), target);
    if (opened.error == NO_ERROR) {
        OpenRequest request;
        request.access = access;
        request.sharing = FILE_SHARE_READ;
        request.disposition = disposition;
        bool existed = false;
        opened.error = target.files->open(target.below, request, opened.file, existed);
    }
    return opened;
}

DWORD readWhole(const std::string& name, std::vector<BYTE>& bytes) {
    const OpenedFile opened = openFile(name, GENERIC_READ, OPEN_EXISTING);
    if (opened.error != NO_ERROR) {
        return opened.error;
    }
    std::uint64_t size = 0;
    if (const DWORD error = opened.file->size(size); error != NO_ERROR || size > largestFile) {
        return error != NO_ERROR ? error : ERROR_INVALID_DATA;
    }
    bytes.resize(static_cast<std::size_t>(size));
    const Transfer read = opened.file->read(0, std::as_writable_bytes(std::span(bytes)));
    bytes.resize(read.count);
    return read.error;
}

DWORD writeWhole(const std::string& name, std::span<const BYTE> bytes) {
    const OpenedFile opened = openFile(name, GENERIC_WRITE, CREATE_ALWAYS);
    if (opened.error != NO_ERROR) {
        return opened.error;
    }
    const Transfer written = opened.file->write(0, std::as_bytes(bytes));
    return written.error == NO_ERROR && written.count < bytes.size() ? ERROR_DISK_FULL : written.error;
}

// 0 to continue, or the failure that the fault plan sets.
HRESULT refusal(const char* function) {
    const DWORD error = deniedCode(function);
    return error != 0 ? HRESULT_FROM_WIN32(error) : S_OK;
}

}  // namespace

DWORD readShellLink(const std::string& fileName, ShellLinkFile& link) {
    std::vector<BYTE> bytes;
    if (const DWORD error = readWhole(fileName, bytes); error != NO_ERROR) {
        return error;
    }
    auto parsed = parseShellLink(bytes, SystemSettings::current().ansiCodePage);
    if (!parsed) {
        return ERROR_INVALID_DATA;
    }
    link = std::move(*parsed);
    return NO_ERROR;
}

HRESULT ShellLink::give(REFIID interfaceId, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (IsEqualIID(interfaceId, IID_IUnknown) || IsEqualIID(interfaceId, IID_IShellLinkA)) {
        *object = static_cast<IShellLinkA*>(this);
    } else if (IsEqualIID(interfaceId, IID_IPersistFile)) {
        *object = static_cast<IPersistFile*>(this);
    } else if (IsEqualIID(interfaceId, IID_IShellLinkDataList)) {
        *object = static_cast<IShellLinkDataList*>(this);
    } else {
        return E_NOINTERFACE;
    }
    ++references_;
    return S_OK;
}

HRESULT ShellLink::QueryInterface(REFIID interfaceId, void** object) {
    if (const HRESULT refused = refusal("IUnknown::QueryInterface"); FAILED(refused)) {
        if (object != nullptr) {
            *object = nullptr;
        }
        return refused;
    }
    return give(interfaceId, object);
}

ULONG ShellLink::AddRef() {
    return ++references_;
}

ULONG ShellLink::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

HRESULT ShellLink::GetPath(LPSTR path, int size, WIN32_FIND_DATAA* found, DWORD /*flags*/) try {
    if (const HRESULT refused = refusal("IShellLinkA::GetPath"); FAILED(refused)) {
        return refused;
    }
    const std::string text = narrowed(link_.path);
    if (found != nullptr) {
        *found = {};
        found->dwFileAttributes = link_.attributes;
        found->ftLastWriteTime = {static_cast<DWORD>(link_.written), static_cast<DWORD>(link_.written >> 32)};
        found->nFileSizeLow = link_.size;
        giveCut(text.substr(text.rfind('\\') + 1), found->cFileName, MAX_PATH);
    }
    const HRESULT result = giveCut(text, path, size);
    return result == S_OK && text.empty() ? S_FALSE : result;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::GetDescription(LPSTR text, int size) try {
    const HRESULT refused = refusal("IShellLinkA::GetDescription");
    return FAILED(refused)
               ? refused
               : giveCut(narrowed(link_.texts[ShellLinkFile::description].value_or(u"")), text, size);
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::SetDescription(LPCSTR text) try {
    if (const HRESULT refused = refusal("IShellLinkA::SetDescription"); FAILED(refused)) {
        return refused;
    }
    std::optional<std::u16string> description;
    if (text != nullptr && *text != 0) {
        description = wideOf(text);
    }
    link_.texts[ShellLinkFile::description] = std::move(description);
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::Resolve(HWND /*window*/, DWORD /*flags*/) try {
    if (const HRESULT refused = refusal("IShellLinkA::Resolve"); FAILED(refused)) {
        return refused;
    }
    FileFacts facts;
    return factsOf(narrowed(link_.path), facts) == NO_ERROR ? S_OK : S_FALSE;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::SetPath(LPCSTR path) try {
    if (const HRESULT refused = refusal("IShellLinkA::SetPath"); FAILED(refused)) {
        return refused;
    }
    if (path == nullptr) {
        return E_INVALIDARG;
    }
    const std::string target = completed(path);
    FileFacts facts;
    factsOf(target, facts);
    link_.path = wideOf(target.c_str());
    link_.items.clear();
    link_.attributes = facts.attributes;
    link_.size = static_cast<DWORD>(facts.size);
    link_.written = std::uint64_t{facts.written.dwHighDateTime} << 32 | facts.written.dwLowDateTime;
    link_.created = link_.accessed = 0;
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::Load(LPCOLESTR fileName, DWORD /*mode*/) try {
    if (const HRESULT refused = refusal("IPersistFile::Load"); FAILED(refused)) {
        return refused;
    }
    if (fileName == nullptr) {
        return E_INVALIDARG;
    }
    const std::string name = fileNameOf(fileName);
    if (const DWORD error = readShellLink(name, link_); error != NO_ERROR) {
        return error == ERROR_INVALID_DATA ? E_FAIL : HRESULT_FROM_WIN32(error);
    }
    fileName_ = name;
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::Save(LPCOLESTR fileName, BOOL remember) try {
    if (const HRESULT refused = refusal("IPersistFile::Save"); FAILED(refused)) {
        return refused;
    }
    const std::string name = fileName != nullptr ? fileNameOf(fileName) : fileName_;
    const auto bytes = shellLinkBytes(link_, SystemSettings::current().ansiCodePage);
    if (!bytes || name.empty()) {
        return E_INVALIDARG;
    }
    if (const DWORD error = writeWhole(name, *bytes); error != NO_ERROR) {
        return HRESULT_FROM_WIN32(error);
    }
    if (remember != FALSE) {
        fileName_ = name;
    }
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::AddDataBlock(void* block) try {
    if (const HRESULT refused = refusal("IShellLinkDataList::AddDataBlock"); FAILED(refused)) {
        return refused;
    }
    const auto* const bytes = static_cast<const BYTE*>(block);
    DATABLOCK_HEADER header{};
    if (block != nullptr) {
        std::memcpy(&header, bytes, sizeof header);
    }
    if (header.cbSize < sizeof header || header.cbSize > largestFile) {
        return E_INVALIDARG;
    }
    link_.blocks.emplace_back(bytes, bytes + header.cbSize);
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::CopyDataBlock(DWORD signature, void** block) try {
    if (block == nullptr) {
        return E_POINTER;
    }
    *block = nullptr;
    if (const HRESULT refused = refusal("IShellLinkDataList::CopyDataBlock"); FAILED(refused)) {
        return refused;
    }
    const auto found = std::find_if(link_.blocks.begin(), link_.blocks.end(),
                                    [&](const auto& each) { return blockSignature(each) == signature; });
    if (found == link_.blocks.end()) {
        return E_FAIL;
    }
    *block = LocalMemory::current().allocate(found->size());
    std::memcpy(*block, found->data(), found->size());
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ShellLink::GetFlags(DWORD* flags) {
    if (const HRESULT refused = refusal("IShellLinkDataList::GetFlags"); FAILED(refused)) {
        return refused;
    }
    if (flags == nullptr) {
        return E_POINTER;
    }
    *flags = link_.flags;
    return S_OK;
}

HRESULT ShellLink::SetFlags(DWORD flags) {
    const HRESULT refused = refusal("IShellLinkDataList::SetFlags");
    if (SUCCEEDED(refused)) {
        link_.flags = flags;
    }
    return refused;
}

}  // namespace winlayer
