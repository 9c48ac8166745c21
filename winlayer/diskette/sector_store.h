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

// Where the sectors of a medium live. Buffers are whole sectors; each operation returns a Windows error code
// (0 = done). What a failed transfer has moved is undefined. Not locked: one thread at a time.
class SectorStore {
public:
    virtual ~SectorStore() = default;
    virtual DWORD sectors() const = 0;
    virtual DWORD read(DWORD first, std::span<std::byte> buffer) = 0;
    virtual DWORD write(DWORD first, std::span<const std::byte> data) = 0;
    // Brings everything written onto the medium; what is read afterwards comes from the medium itself.
    virtual DWORD settle() = 0;
    virtual bool writeProtected() const = 0;

    // Whether so many bytes from a sector on lie on the medium.
    bool onMedium(DWORD first, std::size_t bytes) const {
        return first <= sectors() && bytes / sectorSize <= sectors() - first;
    }
};

// A medium in memory, blank (all zero) or of given bytes, of which whole sectors count.
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
