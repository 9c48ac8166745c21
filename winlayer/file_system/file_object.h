#pragma once
#include <memory>
#include <mutex>
#include <string>

#include "winlayer/file_system/file_system.h"

namespace winlayer {

// What the handles of one CreateFileA share: the open file, its position and the access granted.
class FileObject final : public KernelObject {
public:
    FileObject(std::unique_ptr<OpenFile> opened, DWORD granted, bool isOverlapped)
        : file(std::move(opened)), access(granted), overlapped(isOverlapped) {}
    ~FileObject() override {
        file.reset();
        if (deleteFrom != nullptr) {
            deleteFrom->removeFile(deletePath);
        }
    }

    std::unique_ptr<OpenFile> file;
    const DWORD access;
    const bool overlapped;

    // Held during a complete transfer at the position, so that such transfers of one file do not overlap.
    std::mutex mutex;
    std::uint64_t position = 0;

    // With FILE_FLAG_DELETE_ON_CLOSE: the file to delete with the last handle.
    std::shared_ptr<FileSystem> deleteFrom;
    std::string deletePath;
};

}  // namespace winlayer
