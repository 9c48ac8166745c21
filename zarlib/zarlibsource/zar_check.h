#pragma once
#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "diskio.h"
#include "zar_format.h"

// Reads archives of both layouts without extracting them: for programs that list, test or compare. Stricter
// than the extractor, which looks only for the markers that it needs and skips everything else.

namespace zar {

enum class FaultKind {
    UnknownSignature,  // a record does not begin with the archive's signature
    MissingMarker,     // a field of a record is not the expected marker
    Truncated,         // the archive ends inside a record's fields
    NamePastEnd,
    DataPastEnd,
    NameLength,  // 0, or 65535 or more
    NameByte,    // the name contains a zero byte or the key byte and does not survive a round trip
    NameLeavesTarget,
    EmptyFile,  // a record without data, which the extractor cannot copy
    ReadFailure,
};

struct Fault {
    FaultKind kind;
    std::uint64_t offset;  // of the byte or field in question, from the start of the archive
    std::string reason;    // one English sentence, lower case, without the offset
};

struct Entry {
    std::string name;              // unscrambled, ANSI, as stored
    DWORD size = 0;                // bytes of data
    DWORD attributes = 0;          // 0 in the old layout, which stores none
    std::uint64_t offset = 0;      // of the record
    std::uint64_t dataOffset = 0;  // of the first byte of data
    bool oldLayout = false;
};

// Reads up to `count` bytes at `offset` into the buffer and returns how many; fewer only at the end of the
// file or after a failure.
using ReadAt = std::function<std::size_t(std::uint64_t offset, unsigned char* buffer, std::size_t count)>;

// Receives the next piece of a file's data; false stops reading.
using TakeData = std::function<bool(const unsigned char* data, std::size_t count)>;

// Iterates over an archive's records.
//
//   zar::Checker checker(file);
//   for (zar::Entry entry; checker.Next(entry);) std::cout << entry.name << '\n';
//   if (checker.FirstFault()) ...
class Checker {
public:
    // `size` is the archive's size in bytes.
    Checker(ReadAt read, std::uint64_t size);
    // The file must be open for reading and outlive the checker, which moves its file pointer.
    explicit Checker(UTILS::DiskIO& file);

    // Returns the next record; false at the end of the archive, or if a fault hides where the next record
    // begins. A record with another fault (its name, an empty file) is still returned. Throws std::bad_alloc.
    bool Next(Entry& entry);
    // The first fault found so far.
    const std::optional<Fault>& FirstFault() const { return fault_; }

    // Reads a record's data, unscrambled, piece by piece. True if all of it was taken; false if `take`
    // stopped or the data could not be read, which is then a fault. Does not affect the iteration.
    bool ReadData(const Entry& entry, const TakeData& take);

private:
    bool NextNew(Entry& entry);
    bool NextOld(Entry& entry);
    bool ReadName(Entry& entry, DWORD length);
    void JudgeStoredName(const Entry& entry, std::uint64_t offset);
    bool ReadFields(std::uint64_t offset, unsigned char* fields, std::size_t count);
    bool Expect(const unsigned char* field, std::uint64_t offset, DWORD marker, const char* what);
    bool AcceptData(Entry& entry, DWORD behind);
    bool Fetch(std::uint64_t offset, unsigned char* bytes, std::size_t count);
    bool Fail(FaultKind kind, std::uint64_t offset, std::string reason);
    void Note(FaultKind kind, std::uint64_t offset, std::string reason);

    ReadAt read_;
    std::uint64_t size_ = 0;
    std::uint64_t next_ = 0;  // where the next record begins
    bool ended_ = false;
    bool oldLayout_ = false;
    std::optional<Fault> fault_;
    std::vector<unsigned char> window_;  // part of the archive, from windowOffset_ on
    std::uint64_t windowOffset_ = 0;
};

}  // namespace zar
