#pragma once
#include <optional>
#include <span>

#include "winlayer/gdi/surface.h"
#include "winlayer/include/minwindef.h"

namespace winlayer {

struct DecodedBitmap {
    Surface surface;
    bool monochrome = false;  // one bit to a pixel, black and white
};

// The picture in a bitmap resource: a header of 40 bytes (or the older one of 12), the colours of pictures of
// up to 8 bits, and rows of pixels, each filled up to 4 bytes, from the bottom, or with a negative height
// from the top. Nothing when it is compressed, has another number of bits than 1, 4, 8, 24 or 32, or ends
// early.
std::optional<DecodedBitmap> decodeBitmap(std::span<const BYTE> data);

}  // namespace winlayer
