#pragma once
#include <optional>
#include <span>

#include "winlayer/gdi/surface.h"
#include "winlayer/include/minwindef.h"

namespace winlayer {

struct DecodedBitmap {
    Surface surface;
    bool monochrome = false;  // one bit per pixel, black and white
};

// Decodes a bitmap resource: a header of 40 bytes (or the older one of 12), a colour table for up to 8 bits
// per pixel, and rows of pixels, each padded to 4 bytes, bottom-up or, with a negative height, top-down.
// Nothing if it is compressed, truncated, or has other than 1, 4, 8, 24 or 32 bits per pixel.
std::optional<DecodedBitmap> decodeBitmap(std::span<const BYTE> data);

}  // namespace winlayer
