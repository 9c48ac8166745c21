#pragma once
#include <limits>
#include <string_view>
#include <vector>

#include "winlayer/diskette/sector_store.h"

namespace winlayer {

// A fault in transfers of one sector.
struct SectorFault {
    static constexpr unsigned always = std::numeric_limits<unsigned>::max();

    enum class Kind { ReadFails, WriteFails, AccessFails, WriteLost };
    DWORD sector = 0;
    Kind kind = Kind::AccessFails;
    DWORD error = ERROR_CRC;  // not for WriteLost, which reports success
    unsigned times = always;  // transfers it affects, counted down
};

// The state of a drive and its medium, for tests and for trying out a program.
struct DisketteState {
    bool noMedium = false;         // ERROR_NOT_READY
    bool writeProtected = false;   // writing: ERROR_WRITE_PROTECT
    bool unformatted = false;      // no sector can be found: ERROR_UNRECOGNIZED_MEDIA
    bool lowDensityDrive = false;  // a 720 KB drive: the same error for a 1.44 MB medium
    std::vector<SectorFault> faults;

    // Why the drive cannot use a medium of this many sectors; 0 if it can.
    DWORD obstacle(DWORD sectors) const;
};

// Adds the state with this name to `state`: one of stateNames, where N is a sector number from 0 to 2879.
// False, and nothing changed, for any other text.
bool parseState(std::string_view text, DisketteState& state);

// The names that parseState accepts, for help texts, as in "bad-sector=N".
std::vector<std::string_view> stateNames();

// A store that applies a drive's state to a medium. It refers to the state, which its owner may change
// between calls.
class ConditionedStore : public SectorStore {
public:
    ConditionedStore(std::unique_ptr<SectorStore> medium, DisketteState& state);
    ~ConditionedStore() override;

    // Returns the medium and keeps none.
    std::unique_ptr<SectorStore> take();

    DWORD sectors() const override;
    DWORD read(DWORD first, std::span<std::byte> buffer) override;
    DWORD write(DWORD first, std::span<const std::byte> data) override;
    DWORD settle() override;
    bool writeProtected() const override;

private:
    // The fault for this transfer, which is counted; null if there is none.
    const SectorFault* meet(DWORD sector, bool writing);
    bool faultIn(DWORD first, std::size_t count) const;

    std::unique_ptr<SectorStore> medium_;
    DisketteState& state_;
};

}  // namespace winlayer
