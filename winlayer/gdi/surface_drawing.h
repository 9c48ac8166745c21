#pragma once
#include "winlayer/gdi/surface.h"
#include "winlayer/include/minwindef.h"

namespace winlayer {

constexpr std::uint32_t toPixel(COLORREF color) {
    return 0xFF000000u | ((color & 0xFF) << 16) | (color & 0xFF00) | ((color >> 16) & 0xFF);
}
constexpr COLORREF toColor(std::uint32_t pixel) {
    return ((pixel & 0xFF) << 16) | (pixel & 0xFF00) | ((pixel >> 16) & 0xFF);
}

// All pixels in one colour. Width and height must not be negative.
Surface makeSurface(int width, int height, std::uint32_t pixel);
bool contains(const Surface& surface, int x, int y);
inline std::size_t indexOf(const Surface& surface, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(surface.width) +
           static_cast<std::size_t>(x);
}
inline std::uint32_t& pixelAt(Surface& surface, int x, int y) {
    return surface.pixels[indexOf(surface, x, y)];
}
inline std::uint32_t pixelAt(const Surface& surface, int x, int y) {
    return surface.pixels[indexOf(surface, x, y)];
}

// Clips the area to the surface.
void fill(Surface& surface, const RECT& area, std::uint32_t pixel);

// A rectangle with a direction: a negative width or height mirrors.
struct Placement {
    int x;
    int y;
    int width;
    int height;
};
// Copies one rectangle to another; `mode` is a mode of SetStretchBltMode. Pixels outside either surface are
// skipped. Both may be the same surface.
void stretch(const Surface& from, const Placement& source, Surface& to, const Placement& target, int mode);

}  // namespace winlayer
