#include "winlayer/diskette/diskette_state.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace winlayer {
namespace {

struct PlainState {
    std::string_view name;
    bool DisketteState::*member;
};

struct FaultState {
    std::string_view name;  // followed by the sector number
    SectorFault::Kind kind;
    DWORD error;
};

constexpr PlainState plainStates[] = {{"no-medium", &DisketteState::noMedium},
                                      {"write-protected", &DisketteState::writeProtected},
                                      {"720k", &DisketteState::lowDensityDrive},
                                      {"unformatted", &DisketteState::unformatted}};

constexpr FaultState faultStates[] = {{"bad-sector=", SectorFault::Kind::AccessFails, ERROR_CRC},
                                      {"bad-write=", SectorFault::Kind::WriteFails, ERROR_SECTOR_NOT_FOUND},
                                      {"lost-write=", SectorFault::Kind::WriteLost, NO_ERROR}};

bool parseSector(std::string_view text, DWORD& sector) {
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, sector);
    return result.ec == std::errc() && result.ptr == end && sector < sectors1440;
}

bool concerns(const SectorFault& fault, bool writing) {
    switch (fault.kind) {
        case SectorFault::Kind::ReadFails:
            return !writing;
        case SectorFault::Kind::AccessFails:
            return true;
        case SectorFault::Kind::WriteFails:
        case SectorFault::Kind::WriteLost:
            return writing;
    }
    return false;
}

}  // namespace

DWORD DisketteState::obstacle(DWORD sectors) const {
    if (noMedium) {
        return ERROR_NOT_READY;
    }
    const bool known = sectors == sectors720 || (sectors == sectors1440 && !lowDensityDrive);
    return known && !unformatted ? NO_ERROR : ERROR_UNRECOGNIZED_MEDIA;
}

bool parseState(std::string_view text, DisketteState& state) {
    for (const PlainState& plain : plainStates) {
        if (text == plain.name) {
            state.*plain.member = true;
            return true;
        }
    }
    for (const FaultState& known : faultStates) {
        DWORD sector = 0;
        if (text.substr(0, known.name.size()) == known.name &&
            parseSector(text.substr(known.name.size()), sector)) {
            state.faults.push_back({sector, known.kind, known.error, SectorFault::always});
            return true;
        }
    }
    return false;
}

std::vector<std::string_view> stateNames() {
    return {"no-medium",    "write-protected", "720k",        "unformatted",
            "bad-sector=N", "bad-write=N",     "lost-write=N"};
}

ConditionedStore::ConditionedStore(std::unique_ptr<SectorStore> medium, DisketteState& state)
    : medium_(std::move(medium)), state_(state) {}

ConditionedStore::~ConditionedStore() = default;

std::unique_ptr<SectorStore> ConditionedStore::take() {
    return std::move(medium_);
}

DWORD ConditionedStore::sectors() const {
    return medium_->sectors();
}

bool ConditionedStore::faultIn(DWORD first, std::size_t count) const {
    return std::any_of(state_.faults.begin(), state_.faults.end(), [&](const SectorFault& fault) {
        return fault.sector >= first && fault.sector - first < count;
    });
}

const SectorFault* ConditionedStore::meet(DWORD sector, bool writing) {
    for (SectorFault& fault : state_.faults) {
        if (fault.sector == sector && fault.times > 0 && concerns(fault, writing)) {
            if (fault.times != SectorFault::always) {
                --fault.times;
            }
            return &fault;
        }
    }
    return nullptr;
}

DWORD ConditionedStore::read(DWORD first, std::span<std::byte> buffer) {
    const DWORD obstacle = state_.obstacle(sectors());
    if (obstacle != NO_ERROR) {
        return obstacle;
    }
    if (!faultIn(first, buffer.size() / sectorSize)) {
        return medium_->read(first, buffer);
    }
    for (DWORD sector = first; !buffer.empty(); ++sector, buffer = buffer.subspan(sectorSize)) {
        const SectorFault* const fault = meet(sector, false);
        const DWORD error = fault ? fault->error : medium_->read(sector, buffer.first(sectorSize));
        if (error != NO_ERROR) {
            return error;
        }
    }
    return NO_ERROR;
}

DWORD ConditionedStore::write(DWORD first, std::span<const std::byte> data) {
    const DWORD obstacle = state_.obstacle(sectors());
    if (obstacle != NO_ERROR) {
        return obstacle;
    }
    if (state_.writeProtected) {
        return ERROR_WRITE_PROTECT;
    }
    if (!faultIn(first, data.size() / sectorSize)) {
        return medium_->write(first, data);
    }
    for (DWORD sector = first; !data.empty(); ++sector, data = data.subspan(sectorSize)) {
        const SectorFault* const fault = meet(sector, true);
        const bool lost = fault && fault->kind == SectorFault::Kind::WriteLost;
        const DWORD error =
            fault ? (lost ? NO_ERROR : fault->error) : medium_->write(sector, data.first(sectorSize));
        if (error != NO_ERROR) {
            return error;
        }
    }
    return NO_ERROR;
}

DWORD ConditionedStore::settle() {
    const DWORD obstacle = state_.obstacle(sectors());
    return obstacle != NO_ERROR ? obstacle : medium_->settle();
}

bool ConditionedStore::writeProtected() const {
    return state_.writeProtected || medium_->writeProtected();
}

}  // namespace winlayer
