#pragma once
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "winlayer/host_files/host_file.h"

namespace winlayer {

// A host file in exclusive mode, with the caching that the Windows kernel does: small reads are served from a
// piece read ahead, small writes are gathered into larger ones, and the size is remembered. Caching ends when
// the file is opened a second time. Flushes hand everything to the host but do not wait for the medium.
class CachedFile : public OpenFile, private FileCache {
public:
    // `size` is the file's current size.
    CachedFile(std::unique_ptr<HostFile> file, std::uint64_t size);
    ~CachedFile() override;

    Transfer read(std::uint64_t offset, std::span<std::byte> buffer) override;
    Transfer write(std::uint64_t offset, std::span<const std::byte> data) override;
    DWORD flush() override { return settle(); }
    DWORD size(std::uint64_t& bytes) override;
    DWORD resize(std::uint64_t bytes) override;
    DWORD settle() override;

private:
    // Bytes and their position in the file.
    struct Piece {
        std::uint64_t offset = 0;
        std::vector<std::byte> bytes;

        std::uint64_t end() const { return offset + bytes.size(); }
    };

    DWORD passOn() override { return settle(); }
    DWORD end() override;

    DWORD passOnLocked();
    Transfer readThrough(std::uint64_t offset, std::span<std::byte> buffer);
    Transfer writeThrough(std::uint64_t offset, std::span<const std::byte> data);
    bool gathers(std::uint64_t offset, std::size_t count) const;
    bool holds(std::uint64_t offset, std::size_t count) const;
    bool readAhead(std::uint64_t offset);

    const std::unique_ptr<HostFile> file_;
    std::mutex mutex_;
    bool caching_ = true;
    std::uint64_t size_;
    Piece ahead_;
    std::size_t reach_ = 0;  // length of the last read-ahead
    Piece behind_;           // written, but not yet passed to the host
    bool stuck_ = false;     // the host refused to write behind_
};

}  // namespace winlayer
