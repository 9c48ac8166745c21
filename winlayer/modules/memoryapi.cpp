#include "winlayer/include/memoryapi.h"
#include "winlayer/base/last_error.h"

#include <charconv>
#include <fstream>
#include <string>

#include "winlayer/base/gate.h"
#include "winlayer/modules/modules.h"

namespace winlayer {
namespace {

// Consecutive addresses with the same rights; a region without rights is free.
struct Region {
    ULONG_PTR start = 0;
    ULONG_PTR end = 0;
    std::string rights;  // as in "r-xp"
};

// Lines of the host's map: "start-end rights ...", in hexadecimal, lowest first.
Region regionAt(ULONG_PTR address) {
    std::ifstream map("/proc/self/maps");
    Region region;
    ULONG_PTR lastEnd = 0;
    for (std::string range, rest; map >> range >> region.rights && std::getline(map, rest);) {
        const char* const end = range.data() + range.size();
        const auto dash = std::from_chars(range.data(), end, region.start, 16).ptr;
        std::from_chars(dash + 1, end, region.end, 16);
        if (address < region.start) {
            return {lastEnd, region.start, ""};
        }
        if (address < region.end) {
            return region;
        }
        lastEnd = region.end;
    }
    return {lastEnd, ~ULONG_PTR{0}, ""};
}

DWORD protectionOf(const std::string& rights) {
    const bool reads = rights[0] == 'r';
    const bool writes = rights[1] == 'w';
    if (rights[2] == 'x') {
        return writes ? PAGE_EXECUTE_READWRITE : reads ? PAGE_EXECUTE_READ : PAGE_EXECUTE;
    }
    return writes ? PAGE_READWRITE : reads ? PAGE_READONLY : PAGE_NOACCESS;
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

SIZE_T WINAPI VirtualQuery(LPCVOID address, PMEMORY_BASIC_INFORMATION information, SIZE_T size) try {
    if (denied(__func__)) {
        return 0;
    }
    if (size < sizeof *information) {
        return failed(ERROR_BAD_LENGTH);
    }
    constexpr ULONG_PTR pageSize = 0x1000;
    const ULONG_PTR page = reinterpret_cast<ULONG_PTR>(address) & ~(pageSize - 1);
    const Region region = regionAt(page);
    *information = {};
    information->BaseAddress = reinterpret_cast<PVOID>(page);
    information->RegionSize = region.end - page;
    if (region.rights.empty()) {
        information->State = MEM_FREE;
        information->Protect = PAGE_NOACCESS;
        return sizeof *information;
    }
    const HMODULE module = winlayer::Modules::current().holding(address);
    information->AllocationBase = module != nullptr ? module : reinterpret_cast<PVOID>(region.start);
    information->State = MEM_COMMIT;
    information->Protect = protectionOf(region.rights);
    information->AllocationProtect = information->Protect;
    information->Type = module != nullptr ? MEM_IMAGE : MEM_PRIVATE;
    return sizeof *information;
} catch (const std::bad_alloc&) {
    return outOfMemory(0U);
}
