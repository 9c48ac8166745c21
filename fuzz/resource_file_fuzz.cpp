#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "winlayer/modules/resource_file.h"

// Input: a compiled resource file. Every entry lies in it, one behind the other, and every block of strings
// can be read.

namespace {

using namespace winlayer;

void require(bool holds, const char* rule) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", rule);
        std::abort();
    }
}

void checkStrings(const Resource& block) {
    std::size_t units = 0;
    for (UINT id = 0; id < 16; ++id) {
        std::u16string text;
        units += stringInBlock(block.data, id, text) ? text.size() + 1 : 0;
    }
    require(units * 2 <= block.data.size(), "strings of a block do not overlap");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const BYTE* end = data;
        for (const Resource& entry : parseResourceFile({data, size})) {
            require(entry.data.data() >= end, "entries do not overlap");
            end = entry.data.data() + entry.data.size();
            require(end <= data + size, "an entry lies in the file");
            checkStrings(entry);
        }
    } catch (const std::invalid_argument&) {
        return 0;  // refused in words
    }
    return 0;
}
