#pragma once
#include <cstdint>
#include <string>
#include <vector>

// Archives put together byte by byte, without any of the product's code or constants.

namespace test {

struct ZarFile {
    std::string name;
    std::string data;
    std::uint32_t attributes = 32;
};

std::string number(std::uint32_t value);
std::string scrambled(std::string bytes);

std::string newRecord(const ZarFile& file);
std::string newArchive(const std::vector<ZarFile>& files);

// How an old-layout writer may pad a name: with zeros among the stored bytes, or scrambled along with the
// name.
enum class Padding { Stored, Scrambled };
std::string oldRecord(const ZarFile& file, Padding padding = Padding::Stored);
std::string oldArchive(const std::vector<ZarFile>& files, Padding padding = Padding::Stored);

// Bytes that differ from their neighbours and from record to record.
std::string pattern(std::size_t size, std::uint32_t salt = 0);

}  // namespace test
