// Windows' files, by the 8-bit functions, which older versions have, too.
#include <windows.h>

#include <algorithm>
#include <functional>
#include <limits>

#include "tools/common/host_files.h"
#include "tools/common/names.h"
#include "tools/common/reasons.h"

namespace tools {

const char* const pathSeparators = "\\/:";

namespace host_files {

namespace {

// Names tried before giving up.
constexpr DWORD attempts = 1000;
// Added to the name of a hidden entry for its lock.
constexpr std::string_view lockEnding = ".held";

std::string native(const Path& path) {
    return ansi(path.string());
}

HostError failure(const Path& file) {
    return {file, errorText(GetLastError())};
}

void check(const Path& file, BOOL done) {
    if (!done) throw failure(file);
}

class Handle {
public:
    Handle(const Path& file, DWORD access, DWORD disposition, DWORD attributes = FILE_ATTRIBUTE_NORMAL)
        : handle_(CreateFileA(native(file).c_str(), access, FILE_SHARE_READ, nullptr, disposition, attributes,
                              nullptr)) {}
    ~Handle() {
        if (good()) CloseHandle(handle_);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool good() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle_; }

private:
    HANDLE handle_;
};

class Search {
public:
    explicit Search(const Path& pattern) : handle_(FindFirstFileA(native(pattern).c_str(), &facts)) {}
    ~Search() {
        if (good()) FindClose(handle_);
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    bool good() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool next() { return FindNextFileA(handle_, &facts) != 0; }

    WIN32_FIND_DATAA facts{};

private:
    HANDLE handle_;
};

// A link in Windows (such as a junction) stands for another name. Other reparse points are ordinary entries.
bool isLink(const WIN32_FIND_DATAA& facts) {
    constexpr DWORD standsForAName = 0x20000000;
    return (facts.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           (facts.dwReserved0 & standsForAName) != 0;
}

Kind kindFrom(const WIN32_FIND_DATAA& facts) {
    if (isLink(facts)) return Kind::link;
    return (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::folder : Kind::file;
}

// The canonical spelling of a path; missing parts stay as they are.
std::string uniquePath(const Path& path) {
    std::string whole = windowsPath(path);
    char shortened[MAX_PATH + 1];
    const DWORD size = GetShortPathNameA(whole.c_str(), shortened, sizeof shortened);
    if (size > 0 && size < sizeof shortened) whole.assign(shortened, size);
    CharUpperA(whole.data());
    return whole;
}

std::string hiddenPrefix(const std::string& like) {
    return "." + like + ".part-";
}

// Creates an entry with a hidden name; `make` returns whether it succeeded.
template <class Make>
Path makeHidden(const Path& folder, const std::string& like, Make make) {
    const DWORD start = GetTickCount();
    for (DWORD i = 0; i < attempts; ++i) {
        Path name = folder / (hiddenPrefix(like) + std::to_string(start + i));
        if (make(name)) return name;
        if (GetLastError() != ERROR_FILE_EXISTS && GetLastError() != ERROR_ALREADY_EXISTS) break;
    }
    throw failure(folder);
}

bool moveFile(const Path& from, const Path& to) {
    return MoveFileA(native(from).c_str(), native(to).c_str()) != 0;
}

// Makes a write-protected file replaceable. If it is not replaced, the protection is restored.
class Writable {
public:
    explicit Writable(const Path& file) : name_(native(file)), before_(GetFileAttributesA(name_.c_str())) {
        SetFileAttributesA(name_.c_str(), before_ & ~DWORD{FILE_ATTRIBUTE_READONLY});
    }
    // Call when the file has been replaced.
    void forget() { name_.clear(); }
    ~Writable() {
        if (!name_.empty()) SetFileAttributesA(name_.c_str(), before_);
    }
    Writable(const Writable&) = delete;
    Writable& operator=(const Writable&) = delete;

private:
    std::string name_;
    DWORD before_;
};

// For Windows versions that cannot replace a file in one step; the old one is renamed meanwhile.
void replaceInSteps(const Path& from, const Path& to) {
    const Path aside = makeHidden(to.parent(), to.filename().string() + ".old",
                                  [&](const Path& name) { return moveFile(to, name); });
    if (!moveFile(from, to)) {
        const HostError why = failure(to);
        moveFile(aside, to);
        throw why;
    }
    removeFile(aside);
}

void forEachFile(const Folder& folder, const std::function<void(const Path&)>& work) {
    for (const Folder::Entry& entry : folder.entries()) {
        if (entry.kind == Kind::folder) {
            forEachFile(folder.below(entry.name), work);
        } else {
            work(folder.path() / entry.name);
        }
    }
}

// The lock of an entry is a file that Windows deletes when its process ends, for whatever reason.
Path lockOf(const Path& entry) {
    return entry.string() + std::string(lockEnding);
}

bool isHeld(const Path& entry) {
    return !DeleteFileA(native(lockOf(entry)).c_str()) && GetLastError() != ERROR_FILE_NOT_FOUND;
}

void removeEntry(const Path& entry) {
    if (kindOf(entry) == Kind::folder) {
        removeTree(entry);
    } else {
        removeFile(entry);
    }
}

}  // namespace

Kind kindOf(const Path& name, std::string* why) {
    const DWORD attributes = GetFileAttributesA(native(name).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        if (why) *why = errorText(GetLastError());
        return Kind::missing;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::folder : Kind::file;
}

std::uint64_t sizeOf(const Path& file) {
    const Search search(file);
    if (!search.good()) throw failure(file);
    return std::uint64_t{search.facts.nFileSizeHigh} << 32 | search.facts.nFileSizeLow;
}

std::vector<Path> entries(const Path& folder) {
    std::vector<Path> found;
    for (const Folder::Entry& entry : Folder(folder).entries()) found.push_back(folder / entry.name);
    return found;
}

bool liesIn(const Path& file, const Path& folder) {
    const Path holder = file.parent().empty() ? Path(".") : file.parent();
    return (uniquePath(holder) + '\\').starts_with(uniquePath(folder) + '\\');
}

// Older Windows has no links.
Path behindLink(const Path& file) {
    return file;
}

std::uint64_t freeBytes(const Path& folder) {
    const std::string whole = windowsPath(folder) + '\\';
    const std::size_t share = whole.starts_with("\\\\") ? whole.find('\\', whole.find('\\', 2) + 1) : 2;
    DWORD sectors = 0, bytes = 0, available = 0, all = 0;
    if (!GetDiskFreeSpaceA(whole.substr(0, share + 1).c_str(), &sectors, &bytes, &available, &all)) {
        return std::numeric_limits<std::uint64_t>::max();
    }
    return std::uint64_t{sectors} * bytes * available;
}

void makeFolder(const Path& folder) {
    check(folder, CreateDirectoryA(native(folder).c_str(), nullptr));
}

void move(const Path& from, const Path& to) {
    if (moveFile(from, to)) return;
    if (GetLastError() != ERROR_FILE_EXISTS && GetLastError() != ERROR_ALREADY_EXISTS) throw failure(to);
    Writable old(to);
    if (!MoveFileExA(native(from).c_str(), native(to).c_str(), MOVEFILE_REPLACE_EXISTING)) {
        if (GetLastError() != ERROR_CALL_NOT_IMPLEMENTED) throw failure(to);
        replaceInSteps(from, to);
    }
    old.forget();
}

void removeFile(const Path& file) {
    SetFileAttributesA(native(file).c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileA(native(file).c_str());
}

// A link is removed, its target is not.
void removeTree(const Path& folder) {
    try {
        for (const Folder::Entry& entry : Folder(folder).entries()) {
            const Path path = folder / entry.name;
            if (entry.kind == Kind::folder) removeTree(path);
            if (entry.kind == Kind::link) removeEmptyFolder(path);
            if (entry.kind != Kind::folder) removeFile(path);
        }
    } catch (const std::exception&) {  // the folder is not empty and remains
    }
    removeEmptyFolder(folder);
}

void removeEmptyFolder(const Path& folder) {
    RemoveDirectoryA(native(folder).c_str());
}

// A write-protected file has already been closed by its writer, and Windows offers no other way.
void synchronise(const Path& file) {
    const DWORD attributes = GetFileAttributesA(native(file).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) return;
    const Handle opened(file, GENERIC_WRITE, OPEN_EXISTING);
    check(file, opened.good() && FlushFileBuffers(opened.get()));
}

// Older Windows cannot open folders.
Folder::Folder(const Path& path) : path_(path) {}

Folder::Folder(const Folder& above, const std::string& name) : path_(above.path_ / name) {
    if (above.kindOf(name) != Kind::folder) throw HostError(path_, errorText(ERROR_DIRECTORY));
}

Folder::~Folder() = default;

std::vector<Folder::Entry> Folder::entries() const {
    Search search(path_ / "*");
    if (!search.good()) throw failure(path_);
    std::vector<Entry> found;
    do {
        const std::string name = utf8(search.facts.cFileName);
        if (name != "." && name != "..") found.push_back({name, kindFrom(search.facts)});
    } while (search.next());
    if (GetLastError() != ERROR_NO_MORE_FILES) throw failure(path_);
    return found;
}

Kind Folder::kindOf(const std::string& name) const {
    const Search search(path_ / name);
    return search.good() ? kindFrom(search.facts) : Kind::missing;
}

// A disk mounted in a folder counts as a link here.
bool Folder::movesReach(const std::string&) const {
    return true;
}

Folder Folder::below(const std::string& name) const {
    return {*this, name};
}

void Folder::move(const std::string& name, const Folder& to) const {
    host_files::move(path_ / name, to.path_ / name);
}

void Folder::synchronise() const {
    forEachFile(*this, [](const Path& file) { host_files::synchronise(file); });
}

struct HiddenEntry::Lock {
    explicit Lock(const Path& entry)
        : file(CreateFileA(native(lockOf(entry)).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                           FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr)) {}
    ~Lock() {
        if (good()) CloseHandle(file);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    bool good() const { return file != INVALID_HANDLE_VALUE; }

    HANDLE file;
};

// The lock is created before the entry and removed after it.
HiddenEntry::HiddenEntry(const Path& folder, const std::string& like, Kind kind)
    : path_(makeHidden(folder, like, [&](const Path& name) {
          lock_ = std::make_unique<Lock>(name);
          if (!lock_->good()) return false;
          return kind == Kind::folder ? CreateDirectoryA(native(name).c_str(), nullptr) != 0
                                      : Handle(name, GENERIC_WRITE, CREATE_NEW).good();
      })) {}

HiddenEntry::~HiddenEntry() {
    if (!moved_) removeEntry(path_);
}

void HiddenEntry::moveTo(const Path& place) {
    move(path_, place);
    moved_ = true;
}

void removeAbandoned(const Path& folder, const std::string& like, Kind kind) {
    const std::string prefix = hiddenPrefix(like);
    try {
        const Folder here(folder);
        for (const Folder::Entry& entry : here.entries()) {
            if (!entry.name.starts_with(prefix)) continue;
            std::string name = entry.name;
            if (name.ends_with(lockEnding)) name.resize(name.size() - lockEnding.size());
            if (name.find_first_not_of("0123456789", prefix.size()) != std::string::npos) continue;
            const Kind there = here.kindOf(name);
            if ((there == kind || there == Kind::missing) && !isHeld(folder / name)) {
                removeEntry(folder / name);
            }
        }
    } catch (const std::exception&) {  // they remain
    }
}

std::string readText(const Path& file) {
    const InputFile input(file);
    std::string text(static_cast<std::size_t>(input.size()), '\0');
    text.resize(input.readAt(0, reinterpret_cast<unsigned char*>(text.data()), text.size()));
    return utf8(text);
}

void write(const Path& file, const std::string& bytes) {
    const Handle opened(file, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    const DWORD size = static_cast<DWORD>(bytes.size());
    check(file, opened.good() && WriteFile(opened.get(), bytes.data(), size, &written, nullptr));
    if (written != size) throw HostError(file, errorText(ERROR_DISK_FULL));
}

struct InputFile::Opened {
    Handle handle;
    std::uint64_t size;
};

InputFile::InputFile(const Path& file) : opened_(new Opened{{file, GENERIC_READ, OPEN_EXISTING}, 0}) {
    if (!opened_->handle.good()) throw failure(file);
    opened_->size = sizeOf(file);
}

InputFile::~InputFile() = default;

std::uint64_t InputFile::size() const {
    return opened_->size;
}

std::size_t InputFile::readAt(std::uint64_t offset, unsigned char* buffer, std::size_t count) const {
    LONG high = static_cast<LONG>(offset >> 32);
    SetLastError(NO_ERROR);
    const DWORD low =
        SetFilePointer(opened_->handle.get(), static_cast<LONG>(offset & 0xFFFFFFFF), &high, FILE_BEGIN);
    if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR) return 0;
    DWORD got = 0;
    const DWORD wanted = static_cast<DWORD>(std::min<std::size_t>(count, 0x10000000));
    return ReadFile(opened_->handle.get(), buffer, wanted, &got, nullptr) ? got : 0;
}

}  // namespace host_files

}  // namespace tools
