#include "winlayer/gdi/surface_drawing.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "winlayer/include/wingdi.h"

namespace winlayer {

namespace {

struct Range {
    int first;
    int end;
};

// One dimension of a stretch: maps a target pixel to its source pixels.
class Axis {
public:
    Axis(int from, int fromSize, int to, int toSize)
        : from_(fromSize < 0 ? from + fromSize + 1 : from),
          fromSize_(std::abs(fromSize)),
          to_(toSize < 0 ? to + toSize + 1 : to),
          toSize_(std::abs(toSize)),
          mirrored_((fromSize < 0) != (toSize < 0)) {}

    // Target pixels within the surface.
    Range targets(int size) const { return {std::max(0, to_), std::min<int>(size, to_ + toSize_)}; }

    // Source pixels of a target pixel: at least one, then clipped to a surface of `size`.
    Range sources(int target, int size) const {
        const std::int64_t step = mirrored_ ? toSize_ - 1 - (target - to_) : target - to_;
        const std::int64_t first = step * fromSize_ / toSize_;
        const std::int64_t end = std::max((step + 1) * fromSize_ / toSize_, first + 1);
        return {static_cast<int>(std::max<std::int64_t>(0, from_ + first)),
                static_cast<int>(std::min<std::int64_t>(size, from_ + end))};
    }

private:
    int from_;
    int fromSize_;
    int to_;
    int toSize_;
    bool mirrored_;
};

std::uint32_t mean(const Surface& from, Range columns, Range rows) {
    std::uint64_t sums[4] = {};
    for (int y = rows.first; y < rows.end; ++y) {
        for (int x = columns.first; x < columns.end; ++x) {
            const std::uint32_t pixel = pixelAt(from, x, y);
            for (unsigned channel = 0; channel < 4; ++channel) {
                sums[channel] += (pixel >> (8 * channel)) & 0xFF;
            }
        }
    }
    const auto count = static_cast<std::uint64_t>(columns.end - columns.first) *
                       static_cast<std::uint64_t>(rows.end - rows.first);
    std::uint32_t pixel = 0;
    for (unsigned channel = 0; channel < 4; ++channel) {
        pixel |= static_cast<std::uint32_t>((sums[channel] + count / 2) / count) << (8 * channel);
    }
    return pixel;
}

std::uint32_t merged(const Surface& from, Range columns, Range rows, int mode) {
    if (columns.end - columns.first == 1 && rows.end - rows.first == 1) {
        return pixelAt(from, columns.first, rows.first);
    }
    if (mode == HALFTONE) {
        return mean(from, columns, rows);
    }
    std::uint32_t pixel = pixelAt(from, columns.first, rows.first);
    for (int y = rows.first; mode != COLORONCOLOR && y < rows.end; ++y) {
        for (int x = columns.first; x < columns.end; ++x) {
            const std::uint32_t other = pixelAt(from, x, y);
            pixel = mode == BLACKONWHITE ? pixel & other : pixel | other;
        }
    }
    return pixel;
}

}  // namespace

Surface makeSurface(int width, int height, std::uint32_t pixel) {
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    return {width, height, std::vector<std::uint32_t>(count, pixel)};
}

bool contains(const Surface& surface, int x, int y) {
    return x >= 0 && y >= 0 && x < surface.width && y < surface.height;
}

void fill(Surface& surface, const RECT& area, std::uint32_t pixel) {
    const LONG left = std::max<LONG>(area.left, 0);
    const LONG right = std::min<LONG>(area.right, surface.width);
    for (LONG y = std::max<LONG>(area.top, 0);
         left < right && y < std::min<LONG>(area.bottom, surface.height); ++y) {
        const auto row = surface.pixels.begin() + static_cast<std::ptrdiff_t>(indexOf(surface, 0, y));
        std::fill(row + left, row + right, pixel);
    }
}

void stretch(const Surface& from, const Placement& source, Surface& to, const Placement& target, int mode) {
    if (source.width == 0 || source.height == 0 || target.width == 0 || target.height == 0) {
        return;
    }
    if (&from == &to) {
        // From a copy, because drawing overwrites the source.
        const auto before = std::make_unique<Surface>(from);
        stretch(*before, source, to, target, mode);
        return;
    }
    const Axis across(source.x, source.width, target.x, target.width);
    const Axis down(source.y, source.height, target.y, target.height);
    const Range rows = down.targets(to.height);
    const Range columns = across.targets(to.width);
    std::vector<Range> fromColumns;  // the same for each row
    for (int x = columns.first; x < columns.end; ++x) {
        fromColumns.push_back(across.sources(x, from.width));
    }
    for (int y = rows.first; y < rows.end; ++y) {
        const Range fromRows = down.sources(y, from.height);
        for (int x = columns.first; fromRows.first < fromRows.end && x < columns.end; ++x) {
            const Range each = fromColumns[static_cast<std::size_t>(x - columns.first)];
            if (each.first < each.end) {
                pixelAt(to, x, y) = merged(from, each, fromRows, mode);
            }
        }
    }
}

}  // namespace winlayer
