#include "zar_check.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "zar_file.h"
#include "zar_name.h"

namespace zar {

namespace {

constexpr std::size_t windowSize = 65536;

std::size_t ReadFrom(UTILS::DiskIO& file, std::uint64_t offset, unsigned char* buffer, std::size_t count) {
    try {
        MoveTo(file, offset);
        file.Read(buffer, static_cast<DWORD>(count));
        return file.GetBytesRead();
    } catch (const UTILS::DiskIoException&) {
        return 0;
    }
}

}  // namespace

Checker::Checker(ReadAt read, std::uint64_t size) : read_(std::move(read)), size_(size) {}

Checker::Checker(UTILS::DiskIO& file)
    : Checker([&file](std::uint64_t offset, unsigned char* buffer,
                      std::size_t count) { return ReadFrom(file, offset, buffer, count); },
              SizeOf(file)) {}

bool Checker::Next(Entry& entry) {
    if (ended_ || next_ == size_) return false;
    // Until the record proves sound, the next one cannot be found.
    ended_ = true;
    entry = Entry{};
    entry.offset = next_;
    unsigned char field[fieldSize];
    if (!ReadFields(next_, field, sizeof field)) return false;
    const DWORD signature = LoadField(field);
    if (next_ == 0) oldLayout_ = signature == ZAR_OLD_RECORD;
    const DWORD wanted = oldLayout_ ? ZAR_OLD_RECORD : ZAR_RECORD;
    if (signature != wanted) {
        return Fail(FaultKind::UnknownSignature, next_, "no record begins here: unknown signature");
    }
    if (!(oldLayout_ ? NextOld(entry) : NextNew(entry))) return false;
    ended_ = false;
    return true;
}

bool Checker::NextNew(Entry& entry) {
    unsigned char head[beforeName];
    if (!ReadFields(entry.offset, head, sizeof head)) return false;
    if (!Expect(head + 4, entry.offset + 4, ZAR_NAME, "name")) return false;
    const DWORD length = LoadField(head + 8);
    if (!ReadName(entry, length)) return false;

    std::uint64_t at = entry.offset + beforeName + length;
    unsigned char fields[fromNameToData];
    if (!ReadFields(at, fields, sizeof fields)) return false;
    static constexpr std::array<std::pair<std::size_t, const char*>, 6> places = {{{0, "name end"},
                                                                                   {4, "size"},
                                                                                   {12, "size end"},
                                                                                   {16, "attributes"},
                                                                                   {24, "attributes end"},
                                                                                   {28, "data"}}};
    static constexpr std::array<DWORD, 6> markers = {ZAR_NAME_END,   ZAR_SIZE,           ZAR_SIZE_END,
                                                     ZAR_ATTRIBUTES, ZAR_ATTRIBUTES_END, ZAR_DATA};
    for (std::size_t i = 0; i < markers.size(); ++i) {
        const auto& [place, what] = places[i];
        if (!Expect(fields + place, at + place, markers[i], what)) return false;
    }
    entry.size = LoadField(fields + 8);
    entry.attributes = LoadField(fields + 20);
    entry.dataOffset = at + fromNameToData;
    if (!AcceptData(entry, fieldSize)) return false;

    at = entry.dataOffset + entry.size;
    unsigned char end[fieldSize];
    return ReadFields(at, end, sizeof end) && Expect(end, at, ZAR_RECORD_END, "record end");
}

bool Checker::NextOld(Entry& entry) {
    unsigned char head[oldHeaderSize];
    if (!ReadFields(entry.offset, head, sizeof head)) return false;
    entry.oldLayout = true;
    const unsigned char* name = head + fieldSize;
    // Shorter names may be padded with zeros before or after scrambling.
    const unsigned char* end =
        std::find_if(name, name + oldNameSize, [](unsigned char c) { return c == 0 || c == key; });
    entry.name.assign(name, end);
    for (char& c : entry.name) c = static_cast<char>(static_cast<unsigned char>(c) ^ key);
    if (entry.name.empty()) Note(FaultKind::NameLength, entry.offset + fieldSize, "the name is empty");
    JudgeStoredName(entry, entry.offset + fieldSize);
    entry.size = LoadField(head + fieldSize + oldNameSize);
    entry.dataOffset = entry.offset + oldHeaderSize;
    return AcceptData(entry, 0);
}

bool Checker::ReadName(Entry& entry, DWORD length) {
    const std::uint64_t at = entry.offset + beforeName;
    if (length == 0) return Fail(FaultKind::NameLength, at - fieldSize, "the name is empty");
    if (length > size_ - at) {
        return Fail(FaultKind::NamePastEnd, at - fieldSize,
                    "the name of " + std::to_string(length) + " bytes goes past the end of the archive");
    }
    if (length >= nameLimit) {
        return Fail(FaultKind::NameLength, at - fieldSize,
                    "the name of " + std::to_string(length) + " bytes is too long");
    }
    std::vector<unsigned char> stored(length);
    if (!Fetch(at, stored.data(), length)) return false;
    const auto bad =
        std::find_if(stored.begin(), stored.end(), [](unsigned char c) { return c == 0 || c == key; });
    if (bad != stored.end()) {
        Note(FaultKind::NameByte, at + static_cast<std::uint64_t>(bad - stored.begin()),
             *bad == 0 ? "the name holds the key byte" : "the name holds a zero byte");
    }
    Scramble(stored.data(), stored.size());
    entry.name.assign(stored.begin(), stored.end());
    JudgeStoredName(entry, at);
    return true;
}

void Checker::JudgeStoredName(const Entry& entry, std::uint64_t offset) {
    const NameDanger danger = JudgeName(entry.name);
    if (danger != NameDanger::None) {
        Note(FaultKind::NameLeavesTarget, offset, std::string("the name ") + Describe(danger));
    }
}

bool Checker::AcceptData(Entry& entry, DWORD behind) {
    const std::uint64_t rest = size_ - entry.dataOffset;
    if (entry.size > rest) {
        return Fail(FaultKind::DataPastEnd, entry.dataOffset,
                    "the data of " + std::to_string(entry.size) + " bytes goes past the end of the archive");
    }
    if (entry.size == 0) Note(FaultKind::EmptyFile, entry.dataOffset, "the file is empty");
    next_ = entry.dataOffset + entry.size + behind;
    return true;
}

bool Checker::ReadFields(std::uint64_t offset, unsigned char* fields, std::size_t count) {
    const std::uint64_t rest = size_ - offset;
    if (rest >= count) return Fetch(offset, fields, count);
    return Fail(FaultKind::Truncated, offset + rest / fieldSize * fieldSize,
                "the archive ends inside a record's fields");
}

bool Checker::Expect(const unsigned char* field, std::uint64_t offset, DWORD marker, const char* what) {
    if (LoadField(field) == marker) return true;
    return Fail(FaultKind::MissingMarker, offset, std::string("the ") + what + " marker is missing");
}

bool Checker::Fetch(std::uint64_t offset, unsigned char* bytes, std::size_t count) {
    while (count != 0) {
        if (offset < windowOffset_ || offset >= windowOffset_ + window_.size()) {
            window_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(windowSize, size_ - offset)));
            window_.resize(read_(offset, window_.data(), window_.size()));
            windowOffset_ = offset;
            if (window_.empty()) return Fail(FaultKind::ReadFailure, offset, "the archive cannot be read");
        }
        const auto begin = static_cast<std::size_t>(offset - windowOffset_);
        const std::size_t piece = std::min(count, window_.size() - begin);
        std::memcpy(bytes, window_.data() + begin, piece);
        offset += piece;
        bytes += piece;
        count -= piece;
    }
    return true;
}

bool Checker::ReadData(const Entry& entry, const TakeData& take) {
    std::vector<unsigned char> piece(std::min<std::size_t>(windowSize, entry.size));
    for (DWORD done = 0; done < entry.size;) {
        const std::size_t count = std::min<std::size_t>(piece.size(), entry.size - done);
        if (!Fetch(entry.dataOffset + done, piece.data(), count)) return false;
        Scramble(piece.data(), count);
        if (!take(piece.data(), count)) return false;
        done += static_cast<DWORD>(count);
    }
    return true;
}

void Checker::Note(FaultKind kind, std::uint64_t offset, std::string reason) {
    if (!fault_) fault_ = Fault{kind, offset, std::move(reason)};
}

bool Checker::Fail(FaultKind kind, std::uint64_t offset, std::string reason) {
    Note(kind, offset, std::move(reason));
    return false;
}

}  // namespace zar
