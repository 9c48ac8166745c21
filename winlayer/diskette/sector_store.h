#pragma once
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

inline constexpr DWORD sectorSize = 512;
inline constexpr DWORD sectors1440 = 2880;  // of a 1.44 MB diskette: 80 cylinders, 2 heads, 18 sectors
inline constexpr DWORD sectors720 = 1440;   // of a 720 KB diskette: 80 cylinders, 2 heads, 9 sectors

// The sectors of a medium. Buffers are complete sectors; each operation returns a Windows error code (0 =
// success). After a failed transfer it is undefined what was moved. Thread rule: one thread at a time.
class SectorStore {
public:
    virtual ~SectorStore() = default;
    virtual DWORD sectors() const = 0;
    virtual DWORD read(DWORD first, std::span<std::byte> buffer) = 0;
    virtual DWORD write(DWORD first, std::span<const std::byte> data) = 0;
    // Syncs everything written to the medium; later reads come from the medium itself.
    virtual DWORD settle() = 0;
    virtual bool writeProtected() const = 0;

    // Whether this many bytes from a sector on lie on the medium.
    bool onMedium(DWORD first, std::size_t bytes) const {
        return first <= sectors() && bytes / sectorSize <= sectors() - first;
    }
};

// A medium in memory, blank (all zero) or with given bytes; an incomplete last sector is ignored.
class MemoryStore : public SectorStore {
public:
    explicit MemoryStore(DWORD sectorCount = sectors1440);
    explicit MemoryStore(std::vector<std::byte> image);

    std::span<std::byte> bytes() { return bytes_; }

    DWORD sectors() const override;
    DWORD read(DWORD first, std::span<std::byte> buffer) override;
    DWORD write(DWORD first, std::span<const std::byte> data) override;
    DWORD settle() override;
    bool writeProtected() const override;

private:
    std::vector<std::byte> bytes_;
};

}  // namespace winlayer
