#pragma once
#include <cstdint>
#include <vector>

namespace winlayer {

// Pixels in rows from the top, 0xAARRGGBB each.
struct Surface {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

}  // namespace winlayer
