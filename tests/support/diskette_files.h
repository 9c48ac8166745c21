#pragma once
#include <string>
#include <vector>

#include "winlayer/file_system/file_system.h"

// Whole files through a file system of the Windows layer, without a machine around it. Results are Windows
// error codes.

inline std::span<const std::byte> bytesOf(const std::string& text) {
    return std::as_bytes(std::span(text));
}

struct TestFile {
    std::unique_ptr<winlayer::OpenFile> file;
    DWORD error = NO_ERROR;
    bool existed = false;

    winlayer::OpenFile* operator->() const { return file.get(); }
};

inline TestFile openFile(winlayer::FileSystem& files, const std::string& path, DWORD disposition,
                         DWORD access = GENERIC_READ | GENERIC_WRITE, DWORD sharing = 0,
                         DWORD attributes = 0) {
    TestFile opened;
    winlayer::OpenRequest request;
    request.access = access;
    request.sharing = sharing;
    request.disposition = disposition;
    request.attributes = attributes;
    opened.error = files.open(path, request, opened.file, opened.existed);
    return opened;
}

inline DWORD writeWhole(winlayer::FileSystem& files, const std::string& path, const std::string& content) {
    const TestFile file = openFile(files, path, CREATE_ALWAYS);
    return file.error != NO_ERROR ? file.error : file->write(0, bytesOf(content)).error;
}

inline DWORD readWhole(winlayer::FileSystem& files, const std::string& path, std::string& content) {
    const TestFile file = openFile(files, path, OPEN_EXISTING, GENERIC_READ);
    if (file.error != NO_ERROR) {
        return file.error;
    }
    std::uint64_t size = 0;
    const DWORD error = file->size(size);
    if (error != NO_ERROR || size > 0xFFFFFF) {
        return error != NO_ERROR ? error : ERROR_FILE_CORRUPT;  // no diskette holds so much
    }
    content.assign(static_cast<std::size_t>(size) + 1, '\0');  // one more than can be read
    const winlayer::Transfer read = file->read(0, std::as_writable_bytes(std::span(content)));
    content.resize(read.count);
    return read.error;
}

// What the path's file holds; an unreadable one reads as its error.
inline std::string contentOf(winlayer::FileSystem& files, const std::string& path) {
    std::string content;
    const DWORD error = readWhole(files, path, content);
    return error == NO_ERROR ? content : "error " + std::to_string(error);
}

inline std::vector<std::string> namesIn(winlayer::FileSystem& files, const std::string& directory) {
    std::vector<winlayer::FileFacts> entries;
    std::vector<std::string> names;
    if (const DWORD error = files.list(directory, entries); error != NO_ERROR) {
        return {"error " + std::to_string(error)};
    }
    for (const winlayer::FileFacts& entry : entries) {
        names.push_back(entry.name);
    }
    return names;
}
