#pragma once
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/memory_drive_machine.h"
#include "zar_check.h"
#include "zar_extract.h"
#include "zar_name.h"

// Feeds bytes to the extractor and to the checker as an archive, and compares what they make of it.

namespace fuzz {

inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
}

struct Checked {
    std::vector<zar::Entry> entries;
    std::vector<std::string> contents;
    bool sound = false;
};

inline Checked check(const std::string& archive) {
    Checked result;
    zar::Checker checker(
        [&](std::uint64_t offset, unsigned char* buffer, std::size_t count) {
            require(offset <= archive.size() && count <= archive.size() - offset, "the checker reads inside");
            std::memcpy(buffer, archive.data() + offset, count);
            return count;
        },
        archive.size());
    for (zar::Entry entry; checker.Next(entry);) {
        require(entry.dataOffset + entry.size <= archive.size(), "data lies inside the archive");
        std::string content;
        checker.ReadData(entry, [&](const unsigned char* bytes, std::size_t count) {
            content.append(reinterpret_cast<const char*>(bytes), count);
            return true;
        });
        require(content.size() == entry.size, "all data is given");
        result.entries.push_back(entry);
        result.contents.push_back(std::move(content));
    }
    result.sound = !checker.FirstFault();
    if (checker.FirstFault()) {
        require(checker.FirstFault()->offset <= archive.size(), "a fault lies inside the archive");
    }
    return result;
}

enum class Outcome { Success, Error, OpenFailure };

inline Outcome extract(const char* only, bool firstDropped) {
    try {
        Extract_ZAR extractor;
        extractor.Extract("M:\\", "A.ZAR", "M:\\OUT", only, only == nullptr, firstDropped);
        return Outcome::Success;
    } catch (const UTILS::DiskIoException& thrown) {
        return thrown.m_type == UTILS::DISKIO_OPEN ? Outcome::OpenFailure : Outcome::Error;
    } catch (const UTILS::std_exception&) {
        return Outcome::Error;
    }
}

// What was made lies below the target, under names that are no danger.
inline void requireInside(const test::MemoryDrive& drive) {
    for (const auto& [path, node] : drive.nodes()) {
        if (path == "A.ZAR" || path == "OUT") continue;
        require(path.starts_with("OUT\\"), "nothing is made outside the target");
        require(zar::JudgeName(path.substr(4)) == zar::NameDanger::None, "no dangerous name is made");
    }
}

// A sound archive is extracted whole: the last record of a name is what the file holds. A name that stands
// for a file and for a directory, or that the system does not take, ends it with a failing open.
inline void requireAgreement(const Checked& checked, Outcome outcome, const test::MemoryDrive& drive) {
    if (!checked.sound) return;
    require(outcome != Outcome::Error, "a sound archive is no error");
    if (outcome != Outcome::Success) return;
    std::size_t files = 0;
    for (const auto& [path, node] : drive.nodes()) files += node->folder || path == "A.ZAR" ? 0 : 1;
    require(files <= checked.entries.size(), "no more files than records");
    require(files > 0 || checked.entries.empty(), "a record makes a file");
    if (checked.entries.size() == 1) {
        for (const auto& [path, node] : drive.nodes()) {
            require(node->folder || path == "A.ZAR" || node->content == checked.contents[0], "same content");
        }
    }
}

// The first byte chooses the way of extracting, the others are the archive behind its signature.
inline int runZar(const std::uint8_t* data, std::size_t size, std::uint32_t signature) {
    if (size == 0) return 0;
    std::string archive;
    for (int shift = 0; shift < 32; shift += 8) archive += static_cast<char>(signature >> shift & 0xFF);
    archive.append(reinterpret_cast<const char*>(data) + 1, size - 1);

    static winlayer::ScopedMachine machine;
    const auto drive = test::MemoryDrive::mount(*machine, 'M');
    drive->add("A.ZAR", archive);
    const char* only = (data[0] & 1) != 0 ? "A.TXT" : nullptr;
    const bool firstDropped = (data[0] & 2) != 0;
    const Checked checked = check(archive);
    const std::size_t open = machine->handles.openCount();
    const Outcome outcome = extract(only, firstDropped);
    require(machine->handles.openCount() == open, "no handle is left open");
    requireInside(*drive);
    if (only == nullptr && !firstDropped) requireAgreement(checked, outcome, *drive);
    return 0;
}

}  // namespace fuzz
