#include "winlayer/diskette/fat12_volume.h"

#include <algorithm>

#include "winlayer/diskette/disk_error.h"
#include "winlayer/diskette/file_content.h"

namespace winlayer {
namespace {

constexpr DWORD settableAttributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;

BYTE storedAttributes(DWORD attributes) {
    return static_cast<BYTE>(attributes & settableAttributes);
}

FileFacts factsOf(const FoundEntry& found) {
    const DWORD attributes = found.entry.attributes & (settableAttributes | FILE_ATTRIBUTE_DIRECTORY);
    FileFacts facts;
    facts.name = found.text;
    facts.attributes = attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
    facts.size = found.entry.isDirectory() ? 0 : found.entry.size;
    facts.written = toFileTime(found.entry.written);
    return facts;
}

std::vector<std::string> elements(const std::string& path) {
    std::vector<std::string> names;
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find('\\', start), path.size());
        names.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return names;
}

RawName dots(std::size_t count) {
    RawName name;
    name.fill(std::byte{' '});
    std::fill_n(name.begin(), count, std::byte{'.'});
    return name;
}

bool isDots(const FoundEntry& found) {
    return found.text == "." || found.text == "..";
}

}  // namespace

Fat12Volume::Fat12Volume(SectorStore& store, const std::function<std::time_t()>& clock)
    : store_(store), clock_(clock), parts_(store) {}

template <class Work>
void Fat12Volume::change(Work work) {
    requireWritable();
    try {
        work();
        parts_.cache.commit();
    } catch (...) {
        parts_.cache.discard();
        parts_.fat.forget();
        throw;
    }
}

// Checked even if there is nothing to write, as on Windows.
void Fat12Volume::requireWritable() const {
    if (store_.writeProtected()) {
        throw DiskError{ERROR_WRITE_PROTECT};
    }
}

// A directory that is its own ancestor would make paths endless.
Directory Fat12Volume::openDirectory(const std::string& path) {
    Directory directory(parts_, 0);
    std::vector<DWORD> ancestors{0};
    for (const std::string& name : elements(path)) {
        const auto found = directory.find(name);
        if (!found || !found->entry.isDirectory()) {
            throw DiskError{found ? ERROR_DIRECTORY : ERROR_PATH_NOT_FOUND};
        }
        const DWORD cluster = found->entry.firstCluster;
        if (std::find(ancestors.begin(), ancestors.end(), cluster) != ancestors.end()) {
            throw DiskError{ERROR_FILE_CORRUPT};
        }
        ancestors.push_back(cluster);
        directory = Directory(parts_, cluster);
    }
    return directory;
}

Fat12Volume::Parent Fat12Volume::openParent(const std::string& path) {
    if (path.empty()) {
        throw DiskError{ERROR_ACCESS_DENIED};
    }
    const std::size_t separator = path.rfind('\\');
    const bool inRoot = separator == std::string::npos;
    try {
        return {openDirectory(inRoot ? "" : path.substr(0, separator)),
                inRoot ? path : path.substr(separator + 1)};
    } catch (const DiskError& error) {
        throw DiskError{error.code == ERROR_DIRECTORY ? ERROR_PATH_NOT_FOUND : error.code};
    }
}

FoundEntry Fat12Volume::existing(const Parent& parent) const {
    auto found = parent.directory.find(parent.name);
    if (!found) {
        throw DiskError{ERROR_FILE_NOT_FOUND};
    }
    return std::move(*found);
}

std::optional<FoundEntry> Fat12Volume::find(const std::string& path) {
    const Parent parent = openParent(path);
    return parent.directory.find(parent.name);
}

std::optional<FileFacts> Fat12Volume::facts(const std::string& path) {
    if (path.empty()) {
        FileFacts root;
        root.attributes = FILE_ATTRIBUTE_DIRECTORY;
        return root;
    }
    const auto found = find(path);
    return found ? std::optional(factsOf(*found)) : std::nullopt;
}

std::vector<FileFacts> Fat12Volume::list(const std::string& path) {
    std::vector<FileFacts> listed;
    for (const FoundEntry& found : openDirectory(path).entries()) {
        listed.push_back(factsOf(found));
    }
    return listed;
}

DirectoryEntry Fat12Volume::newEntry(const std::string& name, DWORD attributes) const {
    DirectoryEntry entry;
    if (!parseName(name, entry.name)) {
        throw DiskError{ERROR_INVALID_NAME};
    }
    entry.attributes = static_cast<BYTE>(attributes);
    entry.written = now();
    return entry;
}

FoundEntry Fat12Volume::createFile(const std::string& path, DWORD attributes) {
    Parent parent = openParent(path);
    FoundEntry created;
    change([&] {
        created.entry = newEntry(parent.name, storedAttributes(attributes | FILE_ATTRIBUTE_ARCHIVE));
        created.place = parent.directory.add(created.entry);
        created.text = nameText(created.entry.name);
    });
    return created;
}

void Fat12Volume::replaceFile(const EntryPlace& place, DWORD attributes) {
    change([&] {
        DirectoryEntry emptied = entry(place);
        const DWORD chain = emptied.firstCluster;
        emptied.attributes = storedAttributes(attributes | FILE_ATTRIBUTE_ARCHIVE);
        emptied.written = now();
        emptied.firstCluster = 0;
        emptied.size = 0;
        changeEntry(parts_, place, emptied);
        parts_.fat.release(chain);
    });
}

void Fat12Volume::setAttributes(const std::string& path, DWORD attributes) {
    const FoundEntry found = existing(openParent(path));
    change([&] {
        DirectoryEntry changed = found.entry;
        changed.attributes =
            static_cast<BYTE>((changed.attributes & FILE_ATTRIBUTE_DIRECTORY) | storedAttributes(attributes));
        changeEntry(parts_, found.place, changed);
    });
}

void Fat12Volume::removeFile(const std::string& path) {
    Parent parent = openParent(path);
    const FoundEntry found = existing(parent);
    if (found.entry.isDirectory() || (found.entry.attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        throw DiskError{ERROR_ACCESS_DENIED};
    }
    if (openFiles_.isOpen(found.place)) {
        throw DiskError{ERROR_SHARING_VIOLATION};
    }
    change([&] {
        parent.directory.remove(found.place);
        parts_.fat.release(found.entry.firstCluster);
    });
}

void Fat12Volume::createDirectory(const std::string& path) {
    Parent parent = openParent(path);
    if (parent.directory.find(parent.name)) {
        throw DiskError{ERROR_ALREADY_EXISTS};
    }
    change([&] {
        DirectoryEntry made = newEntry(parent.name, FILE_ATTRIBUTE_DIRECTORY);
        std::vector<DWORD> chain;
        parts_.fat.extend(chain, 1);
        if (chain.empty()) {
            throw DiskError{ERROR_DISK_FULL};
        }
        made.firstCluster = chain.front();
        for (DWORD i = 0; i < parts_.layout.sectorsPerCluster; ++i) {
            parts_.cache.replace(parts_.layout.clusterSector(chain.front()) + i);
        }
        Directory content(parts_, made.firstCluster);
        DirectoryEntry link = made;
        link.name = dots(1);
        content.add(link);
        link.name = dots(2);
        link.firstCluster = parent.directory.firstCluster();
        content.add(link);
        parent.directory.add(made);
    });
}

void Fat12Volume::removeDirectory(const std::string& path) {
    Parent parent = openParent(path);
    const FoundEntry found = existing(parent);
    if (!found.entry.isDirectory()) {
        throw DiskError{ERROR_DIRECTORY};
    }
    if ((found.entry.attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        throw DiskError{ERROR_ACCESS_DENIED};
    }
    const auto entries = openDirectory(path).entries();
    if (!std::all_of(entries.begin(), entries.end(), isDots)) {
        throw DiskError{ERROR_DIR_NOT_EMPTY};
    }
    change([&] {
        parent.directory.remove(found.place);
        parts_.fat.release(found.entry.firstCluster);
    });
}

DirectoryEntry Fat12Volume::entry(const EntryPlace& place) {
    return readEntry(parts_, place);
}

DWORD Fat12Volume::read(const EntryPlace& place, std::uint64_t offset, std::span<std::byte> buffer) {
    return readContent(parts_, entry(place), offset, buffer);
}

DWORD Fat12Volume::write(const EntryPlace& place, std::uint64_t offset, std::span<const std::byte> data) {
    DWORD written = 0;
    change([&] {
        DirectoryEntry changed = entry(place);
        written = writeContent(parts_, changed, offset, data);
        if (written > 0) {
            changed.attributes |= FILE_ATTRIBUTE_ARCHIVE;
            changed.written = now();
            changeEntry(parts_, place, changed);
        }
    });
    return written;
}

void Fat12Volume::resize(const EntryPlace& place, std::uint64_t size) {
    change([&] {
        DirectoryEntry changed = entry(place);
        resizeContent(parts_, changed, size);
        changed.attributes |= FILE_ATTRIBUTE_ARCHIVE;
        changed.written = now();
        changeEntry(parts_, place, changed);
    });
}

std::string Fat12Volume::label() {
    const auto found = Directory(parts_, 0).label();
    return found ? found->text : "";
}

DWORD Fat12Volume::serial() {
    return volumeSerial(parts_.cache.read(0));
}

void Fat12Volume::setLabel(const std::string& label) {
    DirectoryEntry entry;
    if (label.size() > entry.name.size()) {
        throw DiskError{ERROR_LABEL_TOO_LONG};
    }
    if (!label.empty() && !parseLabel(label, entry.name)) {
        throw DiskError{ERROR_INVALID_NAME};
    }
    change([&] {
        Directory root(parts_, 0);
        const auto found = root.label();
        entry.attributes = DirectoryEntry::labelAttribute;
        entry.written = now();
        if (label.empty() && found) {
            root.remove(found->place);
        } else if (found) {
            changeEntry(parts_, found->place, entry);
        } else if (!label.empty()) {
            root.add(entry);
        }
    });
}

bool Fat12Volume::notice(DWORD first, std::size_t count) {
    parts_.cache.forget(first, count);
    parts_.fat.forget();
    Fat12Layout found;
    return first > 0 ||
           (readLayout(parts_.cache.read(0), store_.sectors(), found) == NO_ERROR && found == parts_.layout);
}

void Fat12Volume::forgetAll() {
    parts_.cache.forgetAll();
    parts_.fat.forget();
}

}  // namespace winlayer
