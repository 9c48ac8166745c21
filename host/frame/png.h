#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace host {

// A picture of `width` pixels (at least 1), row by row from the top; a pixel is 0x00RRGGBB.
struct Picture {
    std::uint32_t width;
    std::vector<std::uint32_t> pixels;
};

// The picture as the bytes of an uncompressed PNG file.
std::string png(const Picture& picture);

}  // namespace host
