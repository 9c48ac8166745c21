#include "winlayer/gdi/bitmap_data.h"

#include "winlayer/gdi/surface_drawing.h"

namespace winlayer {

namespace {

constexpr DWORD coreHeaderSize = 12;
constexpr DWORD infoHeaderSize = 40;
constexpr std::uint32_t opaque = 0xFF000000;
constexpr std::uint32_t black = 0xFF000000;
constexpr std::uint32_t white = 0xFFFFFFFF;

struct Header {
    DWORD size = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
    bool fromTop = false;
    unsigned bits = 0;
    DWORD compression = 0;
    DWORD colors = 0;
    unsigned colorSize = 4;  // bytes per entry of the table
};

WORD wordAt(std::span<const BYTE> data, std::size_t offset) {
    return static_cast<WORD>(data[offset] | (data[offset + 1] << 8));
}

DWORD dwordAt(std::span<const BYTE> data, std::size_t offset) {
    return wordAt(data, offset) | (DWORD{wordAt(data, offset + 2)} << 16);
}

std::uint32_t colorAt(std::span<const BYTE> data, std::size_t offset) {
    return opaque | (static_cast<std::uint32_t>(data[offset + 2]) << 16) |
           (static_cast<std::uint32_t>(data[offset + 1]) << 8) | data[offset];
}

std::optional<Header> readHeader(std::span<const BYTE> data) {
    Header header;
    header.size = data.size() < 4 ? 0 : dwordAt(data, 0);
    if (header.size > data.size()) {
        return {};
    }
    if (header.size == coreHeaderSize) {
        header.width = wordAt(data, 4);
        header.height = wordAt(data, 6);
        header.bits = wordAt(data, 10);
        header.colorSize = 3;
    } else if (header.size >= infoHeaderSize) {
        const std::int64_t height = static_cast<LONG>(dwordAt(data, 8));
        header.width = static_cast<LONG>(dwordAt(data, 4));
        header.height = height < 0 ? -height : height;
        header.fromTop = height < 0;
        header.bits = wordAt(data, 14);
        header.compression = dwordAt(data, 16);
        header.colors = dwordAt(data, 32);
    } else {
        return {};
    }
    return header;
}

bool isReadable(const Header& header) {
    const unsigned bits = header.bits;
    const bool known = bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32;
    return known && header.compression == 0 && header.width > 0 && header.height > 0;
}

// The colours of pixel values. Values beyond the colours in the file are black.
std::vector<std::uint32_t> readColors(std::span<const BYTE> table, const Header& header) {
    std::vector<std::uint32_t> colors(std::size_t{1} << header.bits, black);
    for (std::size_t i = 0; i < colors.size() && (i + 1) * header.colorSize <= table.size(); ++i) {
        colors[i] = colorAt(table, i * header.colorSize);
    }
    return colors;
}

std::uint32_t pixelIn(std::span<const BYTE> row, unsigned bits, std::size_t x,
                      const std::vector<std::uint32_t>& colors) {
    if (bits >= 24) {
        return colorAt(row, x * (bits / 8));
    }
    const unsigned shift = 8 - bits - static_cast<unsigned>(x * bits % 8);
    return colors[(row[x * bits / 8] >> shift) & ((1u << bits) - 1)];
}

}  // namespace

std::optional<DecodedBitmap> decodeBitmap(std::span<const BYTE> data) {
    const std::optional<Header> header = readHeader(data);
    if (!header || !isReadable(*header)) {
        return {};
    }
    const bool hasTable = header->bits <= 8;
    const std::size_t most = hasTable ? std::size_t{1} << header->bits : 0;
    const std::size_t count = header->colors != 0 || !hasTable ? header->colors : most;
    const std::size_t start = header->size + count * header->colorSize;
    const auto width = static_cast<std::uint64_t>(header->width);
    const auto height = static_cast<std::uint64_t>(header->height);
    const std::uint64_t rowSize = (width * header->bits + 31) / 32 * 4;
    if (start > data.size() || rowSize > (data.size() - start) / height) {
        return {};
    }
    std::vector<std::uint32_t> colors;
    if (hasTable) {
        colors = readColors(data.subspan(header->size, count * header->colorSize), *header);
    }
    DecodedBitmap bitmap;
    bitmap.surface = makeSurface(static_cast<int>(width), static_cast<int>(height), black);
    bitmap.monochrome = header->bits == 1 && colors[0] == black && colors[1] == white;
    for (std::uint64_t y = 0; y < height; ++y) {
        const auto row = data.subspan(start + rowSize * (header->fromTop ? y : height - 1 - y), rowSize);
        for (std::uint64_t x = 0; x < width; ++x) {
            pixelAt(bitmap.surface, static_cast<int>(x), static_cast<int>(y)) =
                pixelIn(row, header->bits, x, colors);
        }
    }
    return bitmap;
}

}  // namespace winlayer
