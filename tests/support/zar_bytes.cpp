#include "support/zar_bytes.h"

namespace test {

std::string number(std::uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

std::string scrambled(std::string bytes) {
    for (char& c : bytes) c = static_cast<char>(c ^ '\x93');
    return bytes;
}

std::string newRecord(const ZarFile& file) {
    return number(0xEFB04FA7) + number(0xEFB036CD) + number(static_cast<std::uint32_t>(file.name.size())) +
           scrambled(file.name) + number(0xEFB143CD) + number(0xEFB232CD) +
           number(static_cast<std::uint32_t>(file.data.size())) + number(0xEFB323CD) + number(0xEFB000CD) +
           number(file.attributes) + number(0xEFB111CD) + number(0xEFBFDFCD) + scrambled(file.data) +
           number(0xEFBDFDCD);
}

std::string newArchive(const std::vector<ZarFile>& files) {
    std::string archive;
    for (const ZarFile& file : files) archive += newRecord(file);
    return archive;
}

std::string oldRecord(const ZarFile& file, Padding padding) {
    std::string name = scrambled(file.name);
    name.resize(16, padding == Padding::Stored ? '\0' : '\x93');
    return number(0xE63D4FA8) + name + number(static_cast<std::uint32_t>(file.data.size())) +
           scrambled(file.data);
}

std::string oldArchive(const std::vector<ZarFile>& files, Padding padding) {
    std::string archive;
    for (const ZarFile& file : files) archive += oldRecord(file, padding);
    return archive;
}

std::string pattern(std::size_t size, std::uint32_t salt) {
    std::string bytes(size, '\0');
    std::uint32_t state = salt * 2654435761U + 12345;
    for (char& c : bytes) {
        state = state * 1664525U + 1013904223U;
        c = static_cast<char>(state >> 24);
    }
    return bytes;
}

}  // namespace test
