#include "boot_sector.h"

#include <algorithm>
#include <ctime>
#include <string_view>

namespace boot_sector {
namespace {

constexpr std::array<unsigned char, templateSize> assembledTemplate = {
#include "boot_code.inc"
};

constexpr unsigned char assembled(std::size_t sectorOffset) {
    return assembledTemplate[sectorOffset - templateAt];
}

constexpr bool assembledText(std::size_t sectorOffset, std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (assembled(sectorOffset + i) != static_cast<unsigned char>(text[i])) {
            return false;
        }
    }
    return true;
}

// boot_sector.h and boot_code.S both state the layout and must agree.
static_assert(codeSize == 384);
static_assert(assembled(restartAt) == 0xE9 && assembled(restartAt + 1) == 0x7B &&
              assembled(restartAt + 2) == 0xFD);
static_assert(assembledText(messageAt, {"Disk Error, Press Ctrl-Alt-Del...\0", 34}));
static_assert(assembledText(loaderNameAt, "QZLOADERBIN"));
static_assert(assembled(signatureAt) == 0x55 && assembled(signatureAt + 1) == 0xAA);

void put(Image& image, std::size_t offset, std::size_t bytes, DWORD value) {
    for (std::size_t i = 0; i < bytes; ++i) {
        image[offset + i] = static_cast<unsigned char>(value >> (8 * i));
    }
}

void put(Image& image, std::size_t offset, std::string_view text) {
    std::transform(text.begin(), text.end(), image.begin() + static_cast<std::ptrdiff_t>(offset),
                   [](char letter) { return static_cast<unsigned char>(letter); });
}

}  // namespace

const std::array<unsigned char, templateSize>& Template() {
    return assembledTemplate;
}

Image Build(DWORD serialNumber) {
    Image image{};
    image[jumpAt] = 0xEB;  // short jump, relative to the byte after the offset
    image[jumpAt + 1] = static_cast<unsigned char>(codeAt - (jumpAt + 2));
    image[jumpAt + 2] = 0x90;
    put(image, oemNameAt, ")GWmRIHC");
    put(image, bytesPerSectorAt, 2, static_cast<DWORD>(size));
    put(image, sectorsPerClusterAt, 1, 1);
    put(image, reservedSectorsAt, 2, fatStart);
    put(image, fatCountAt, 1, fatCount);
    put(image, rootEntriesAt, 2, rootEntries);
    put(image, totalSectorsAt, 2, totalSectors);
    put(image, mediaDescriptorAt, 1, 0xF0);
    put(image, sectorsPerFatAt, 2, fatSize);
    put(image, sectorsPerTrackAt, 2, sectorsPerTrack);
    put(image, headsAt, 2, heads);
    put(image, extendedSignatureAt, 1, 0x29);
    put(image, serialNumberAt, 4, serialNumber);
    put(image, volumeLabelAt, "NO NAME    ");
    put(image, fileSystemTypeAt, "FAT12   ");
    std::copy(assembledTemplate.begin(), assembledTemplate.end(), image.begin() + templateAt);
    return image;
}

DWORD DrawSerialNumber() {
    return static_cast<DWORD>(RandomInRange(0xAAAAFFFF, 0x00AAAAAA));
}

}  // namespace boot_sector

namespace {

DWORD elapsedMilliseconds() {
    LARGE_INTEGER frequency{};
    LARGE_INTEGER counter{};
    if (QueryPerformanceFrequency(&frequency) && frequency.QuadPart > 0 &&
        QueryPerformanceCounter(&counter)) {
        const auto seconds = counter.QuadPart / frequency.QuadPart;
        const auto rest = counter.QuadPart % frequency.QuadPart;
        return static_cast<DWORD>(seconds * 1000 + rest * 1000 / frequency.QuadPart);
    }
    return static_cast<DWORD>(static_cast<DWORD64>(std::clock()) * 1000 / CLOCKS_PER_SEC);
}

}  // namespace

DWORD RandomSource::Step() {
    shift_ = shift_ == 16 ? 8 : shift_ + 1;
    state_ = state_ * 21401335 + 253101144;
    return state_ >> shift_;
}

// The rejection count keeps the generator moving if the clock does not advance.
void RandomSource::Reseed() {
    state_ += elapsedMilliseconds() + ++rejected_;
}

DWORD64 RandomSource::Draw(DWORD64 mask, DWORD64 lowerBound) {
    constexpr DWORD64 reachable = 0x00FFFFFF;  // every candidate is shifted right by 8 or more
    if ((mask & reachable) < lowerBound) {
        return 0;
    }
    for (;;) {
        const DWORD64 candidate = Step() & mask;
        if (candidate >= lowerBound) {
            ++state_;
            return candidate;
        }
        Reseed();
    }
}

DWORD64 RandomInRange(DWORD64 mask, DWORD64 lowerBound) {
    static RandomSource source;
    return source.Draw(mask, lowerBound);
}
