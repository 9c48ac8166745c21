#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "winlayer/shell/shell_link_file.h"

// Input: a shortcut file. What can be read of it and written again reads back the same.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace winlayer;
    constexpr UINT codePage = 1252;
    const auto link = parseShellLink({data, size}, codePage);
    const auto bytes = link ? shellLinkBytes(*link, codePage) : std::nullopt;
    if (!bytes) {
        return 0;
    }
    auto again = parseShellLink(*bytes, codePage);
    if (again) {
        again->flags = link->flags;  // they tell which parts a file has and how its texts are stored
    }
    if (again != link) {
        std::fprintf(stderr, "what was written reads back otherwise\n");
        std::abort();
    }
    return 0;
}
