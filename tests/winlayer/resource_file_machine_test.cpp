#include "winlayer/modules/resource_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/expect_fails.h"
#include "winlayer/machine.h"

namespace {

using namespace winlayer;

using Bytes = std::vector<BYTE>;

// What the resource compiler made of resources.rc.
Bytes compiled() {
    std::ifstream file(BUILD_DIRECTORY "/tests/test_winlayer.res", std::ios::binary);
    EXPECT_TRUE(file.is_open());
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

// An entry of type 10 with one byte of data; `sizes` are those that its header states.
Bytes entryOf(DWORD dataSize, DWORD headerSize, Bytes ids) {
    Bytes bytes;
    for (const DWORD value : {dataSize, headerSize}) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<BYTE>(value >> shift));
        }
    }
    bytes.insert(bytes.end(), ids.begin(), ids.end());
    bytes.insert(bytes.end(), 16, BYTE{0});
    bytes.push_back(0xAB);
    return bytes;
}

const Bytes numbers = {0xFF, 0xFF, 10, 0, 0xFF, 0xFF, 1, 0};

TEST(ResourceFile, EntriesStandInOrderAtAlignedPlaces) {
    const Bytes file = compiled();
    const std::vector<Resource> entries = parseResourceFile(file);
    std::size_t strings = 0;
    std::size_t texts = 0;
    for (const Resource& entry : entries) {
        EXPECT_EQ((entry.data.data() - file.data()) % 4, 0);
        EXPECT_EQ(entry.language, 0x0407);
        strings += entry.type == ResourceId(WORD{6}) ? 1 : 0;
        texts += entry.type == ResourceId(u"rtf") ? 1 : 0;
    }
    EXPECT_EQ(strings, 4u);
    EXPECT_EQ(texts, 3u);
    EXPECT_EQ(entries.size(), 13u);
}

TEST(ResourceFile, AFileThatEndsEarlyIsRefusedOrShorter) {
    const Bytes file = compiled();
    const std::size_t whole = parseResourceFile(file).size();
    std::size_t refused = 0;
    for (std::size_t size = 0; size < file.size(); ++size) {
        try {
            EXPECT_LE(parseResourceFile(Bytes(file.begin(), file.begin() + static_cast<long>(size))).size(),
                      whole);
        } catch (const std::invalid_argument&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, file.size() * 9 / 10);
}

TEST(ResourceFile, HeadersThatLieAreRefused) {
    EXPECT_EQ(parseResourceFile(entryOf(1, 32, numbers)).size(), 1u);
    EXPECT_EQ(parseResourceFile({}).size(), 0u);
    const std::pair<const char*, Bytes> cases[] = {
        {"data beyond the end", entryOf(2, 32, numbers)},
        {"huge data", entryOf(0xFFFFFFFF, 32, numbers)},
        {"huge header", entryOf(1, 0xFFFFFFFF, numbers)},
        {"header without room for the sizes", entryOf(1, 7, numbers)},
        {"header without room for the names", entryOf(1, 12, numbers)},
        {"header without room for the language", entryOf(1, 24, numbers)},
        {"name without an end", entryOf(1, 32, Bytes(24, BYTE{'A'}))},
        {"empty name", entryOf(1, 32, {0, 0, 0, 0, 0xFF, 0xFF, 1, 0})},
    };
    for (const auto& [name, bytes] : cases) {
        EXPECT_THROW(parseResourceFile(bytes), std::invalid_argument) << name;
    }
}

TEST(ResourceFile, ABlockOfStringsThatEndsEarlyGivesNone) {
    const Bytes block = {0, 0, 2, 0, 'a', 0, 'b', 0, 9, 0, 'c', 0};
    std::u16string text = u"before";
    EXPECT_TRUE(stringInBlock(block, 0, text));
    EXPECT_EQ(text, u"");
    EXPECT_TRUE(stringInBlock(block, 16 * 3 + 1, text));
    EXPECT_EQ(text, u"ab");
    EXPECT_FALSE(stringInBlock(block, 2, text));
    EXPECT_FALSE(stringInBlock(block, 3, text));
    EXPECT_FALSE(stringInBlock({}, 0, text));
}

TEST(ResourceFile, AModuleTakesSeveralFiles) {
    ScopedMachine machine;
    const HMODULE module = machine->modules.add("picture.dll", "C:\\picture.dll");
    EXPECT_FAILS(FindResourceA(module, "x", "RTF"), ERROR_RESOURCE_DATA_NOT_FOUND);
    machine->modules.addResources(module, compiled());
    const std::span<const BYTE> first = machine->modules.resource(module, ResourceId(WORD{10}), {WORD{9}});
    machine->modules.addResources(module, entryOf(1, 32, numbers));
    EXPECT_THROW(machine->modules.addResources(module, Bytes(5)), std::invalid_argument);
    EXPECT_EQ(first.data(), machine->modules.resource(module, ResourceId(WORD{10}), {WORD{9}}).data());
    EXPECT_EQ(machine->modules.resource(module, {WORD{10}}, {WORD{1}})[0], 0xAB);
    EXPECT_TRUE(machine->modules.resource(module, {WORD{10}}, {WORD{2}}).empty());

    char buffer[64];
    machine->ansiCodePage = CP_UTF8;
    EXPECT_GT(LoadStringA(module, 1, buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "Öffnen – 10 €");
}

}  // namespace
