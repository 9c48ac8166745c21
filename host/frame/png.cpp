#include "host/frame/png.h"

#include <algorithm>
#include <string_view>

namespace host {

namespace {

void put32(std::string& bytes, std::uint32_t value) {
    for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(value >> shift & 0xFF);
}

std::uint32_t crc32(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

std::uint32_t adler32(std::string_view bytes) {
    constexpr std::uint32_t modulus = 65521;
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char byte : bytes) {
        low = (low + static_cast<unsigned char>(byte)) % modulus;
        high = (high + low) % modulus;
    }
    return high << 16 | low;
}

// A zlib stream of stored blocks.
std::string stored(std::string_view bytes) {
    constexpr std::size_t longest = 0xFFFF;
    std::string stream = "\x78\x01";
    for (std::size_t at = 0; at < bytes.size(); at += longest) {
        const std::string_view block = bytes.substr(at, longest);
        const auto size = static_cast<unsigned>(block.size());
        stream += at + longest >= bytes.size() ? '\1' : '\0';
        for (const unsigned half : {size, ~size}) {
            stream += static_cast<char>(half & 0xFF);
            stream += static_cast<char>(half >> 8 & 0xFF);
        }
        stream += block;
    }
    put32(stream, adler32(bytes));
    return stream;
}

void putChunk(std::string& file, const std::string& typeAndData) {
    put32(file, static_cast<std::uint32_t>(typeAndData.size() - 4));
    file += typeAndData;
    put32(file, crc32(typeAndData));
}

}  // namespace

std::string png(const Picture& picture) {
    std::string header = "IHDR";
    put32(header, picture.width);
    put32(header, static_cast<std::uint32_t>(picture.pixels.size() / picture.width));
    header += {8, 2, 0, 0, 0};  // bit depth, RGB, and the standard methods
    std::string rows;
    for (std::size_t at = 0; at < picture.pixels.size(); ++at) {
        if (at % picture.width == 0) rows += '\0';  // no filter for this row
        for (const int shift : {16, 8, 0}) rows += static_cast<char>(picture.pixels[at] >> shift & 0xFF);
    }
    std::string file = "\x89PNG\r\n\x1A\n";
    putChunk(file, header);
    putChunk(file, "IDAT" + stored(rows));
    putChunk(file, "IEND");
    return file;
}

}  // namespace host
