#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "boot_sector.h"

// A 1.44 MB diskette as plain bytes, written field by field and so independent of any file system code.
class TestDiskette {
public:
    static constexpr std::size_t sectorSize = 512;
    static constexpr unsigned fatStart = 1, fatSectors = 9, rootStart = 19, rootSectors = 14, dataStart = 33;
    static constexpr unsigned rootEntries = 224, lastCluster = 2848;

    TestDiskette() : bytes(2880 * sectorSize) {
        const auto boot = boot_sector::Build(0x00AAABCD);
        std::copy(boot.begin(), boot.end(), bytes.begin());
        setFat(0, 0xFF0);
        setFat(1, 0xFFF);
    }

    unsigned char* sector(unsigned number) { return &bytes[number * sectorSize]; }
    unsigned char* entry(unsigned index) { return sector(rootStart) + 32 * index; }
    unsigned char* cluster(unsigned number) { return sector(dataStart + number - 2); }

    void setFat(unsigned cluster, unsigned value) {
        for (const unsigned fat : {fatStart, fatStart + fatSectors}) {
            unsigned char* at = sector(fat) + cluster + cluster / 2;
            const unsigned both = at[0] | at[1] * 256U;
            const unsigned put = cluster % 2 == 0 ? (both & 0xF000) | value : (both & 0x000F) | value << 4;
            at[0] = static_cast<unsigned char>(put);
            at[1] = static_cast<unsigned char>(put >> 8);
        }
    }

    void setEntry(unsigned index, const std::string& name11, unsigned firstCluster, std::size_t size) {
        unsigned char* at = entry(index);
        std::fill(at, at + 32, static_cast<unsigned char>(0));
        std::copy(name11.begin(), name11.end(), at);
        at[11] = 0x20;
        at[0x1A] = static_cast<unsigned char>(firstCluster);
        at[0x1B] = static_cast<unsigned char>(firstCluster >> 8);
        for (unsigned i = 0; i < 4; ++i) {
            at[0x1C + i] = static_cast<unsigned char>(size >> (8 * i));
        }
    }

    // Puts a file into the clusters, in their order.
    void putFile(unsigned index, const std::string& name11, const std::vector<unsigned char>& content,
                 const std::vector<unsigned>& clusters) {
        setEntry(index, name11, clusters.empty() ? 0 : clusters.front(), content.size());
        for (std::size_t i = 0; i < clusters.size(); ++i) {
            const auto from = content.begin() + static_cast<std::ptrdiff_t>(i * sectorSize);
            const auto count = std::min<std::ptrdiff_t>(sectorSize, content.end() - from);
            std::copy(from, from + count, cluster(clusters[i]));
            setFat(clusters[i], i + 1 < clusters.size() ? clusters[i + 1] : 0xFFF);
        }
    }

    // In one run from `firstCluster` on; earlier entries of the root directory get other names.
    void putLoader(const std::vector<unsigned char>& content, unsigned index = 0, unsigned firstCluster = 2) {
        for (unsigned i = 0; i < index; ++i) {
            setEntry(i, "FILLER  " + std::to_string(100 + i), 0, 0);
        }
        std::vector<unsigned> clusters((content.size() + sectorSize - 1) / sectorSize);
        for (std::size_t i = 0; i < clusters.size(); ++i) {
            clusters[i] = firstCluster + static_cast<unsigned>(i);
        }
        putFile(index, "QZLOADERBIN", content, clusters);
    }

    bool read(DWORD number, std::span<unsigned char, sectorSize> target) const {
        if (number >= 2880 || unreadable.count(number) != 0) {
            return false;
        }
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(number * sectorSize), sectorSize,
                    target.begin());
        return true;
    }

    std::vector<unsigned char> bytes;
    std::set<DWORD> unreadable;
};

// Makes the words of the first `blocks` blocks that a checksum can cover add up to 5555h, through the last
// one.
inline void sealLoader(std::vector<unsigned char>& loader, std::size_t blocks) {
    const std::size_t last = 0x200 + blocks * 512 - 2;
    unsigned sum = 0;
    for (std::size_t i = 0x200; i < last; i += 2) {
        sum += loader[i] + 256U * loader[i + 1];
    }
    loader[last] = static_cast<unsigned char>(0x5555 - sum);
    loader[last + 1] = static_cast<unsigned char>((0x5555 - sum) >> 8);
}

// A loader of `sectors` sectors that meets the contract, its code at the entry point, no two sectors alike.
inline std::vector<unsigned char> makeLoader(std::size_t sectors,
                                             const std::vector<unsigned char>& code = {0xF4}) {
    std::vector<unsigned char> loader(sectors * 512);
    auto state = static_cast<std::uint32_t>(sectors) + 1;
    for (auto& byte : loader) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<unsigned char>(state >> 24);
    }
    loader[0x1FE] = 0x55;
    loader[0x1FF] = 0xAA;
    const std::string signature = "QZOR";
    std::copy(signature.begin(), signature.end(), loader.begin() + 0x200);
    loader[0x204] = static_cast<unsigned char>(sectors - 1);
    std::copy(code.begin(), code.end(), loader.begin() + 0x205);
    sealLoader(loader, sectors - 1);
    return loader;
}

// A file that the build has made in its samples folder; empty when it is missing.
inline std::vector<unsigned char> builtSample(const std::string& name) {
    std::ifstream file(BUILD_DIRECTORY "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
