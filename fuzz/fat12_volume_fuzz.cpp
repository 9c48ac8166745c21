// A FAT12 volume whose system area holds anything. The input is a list of edits, three bytes each (where, 16
// bits; what), of the first 64 KB of a sound diskette, on which everything is then done that a program does
// with one.
#include <cstdint>
#include <vector>

#include "support/diskette_exercise.h"
#include "winlayer/diskette/diskette_drive.h"
#include "winlayer/diskette/little_endian.h"

namespace {

using winlayer::DisketteDrive;
using winlayer::MemoryStore;

// Clusters 2 to 7 F, 8 D, 9 D\G, 10 D\E, 11 D\E\H; in the root also a deleted entry and a label.
std::vector<std::byte> soundImage() {
    auto medium = std::make_unique<MemoryStore>();
    MemoryStore& raw = *medium;
    formatDiskette(raw, 1);
    const auto drive = DisketteDrive::make(std::move(medium));
    drive->setClock([] { return std::time_t{1'000'000'000}; });
    writeWhole(*drive, "F", std::string(3000, 'f'));
    writeWhole(*drive, "GONE", "");
    drive->createDirectory("D");
    writeWhole(*drive, "D\\G", "g");
    drive->createDirectory("D\\E");
    writeWhole(*drive, "D\\E\\H", "h");
    drive->setLabel("LABEL");
    drive->removeFile("GONE");
    return {raw.bytes().begin(), raw.bytes().end()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<std::byte> sound = soundImage();
    // One medium serves every run, because memory of this size is costly to ask for.
    static std::unique_ptr<winlayer::SectorStore> medium = std::make_unique<MemoryStore>();
    medium->write(0, sound);
    const std::span<const std::byte> edits = std::as_bytes(std::span(data, size));
    const std::span<std::byte> bytes = static_cast<MemoryStore&>(*medium).bytes();
    for (std::size_t at = 0; at + 3 <= edits.size(); at += 3) {
        bytes[winlayer::get16(edits, at)] = edits[at + 2];
    }
    const auto drive = DisketteDrive::make(std::move(medium));
    DisketteExercise(*drive).run();
    medium = drive->eject();
    return 0;
}
