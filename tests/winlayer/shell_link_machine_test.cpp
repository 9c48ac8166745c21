#include "winlayer/shell/shell_link.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/temp_folder.h"
#include "winlayer/machine.h"

namespace {

using namespace winlayer;

constexpr UINT codePage = 1252;

std::vector<BYTE> seed(const std::string& name) {
    std::ifstream file(SOURCE_DIRECTORY "/fuzz/seeds/shell_link_file/" + name, std::ios::binary);
    EXPECT_TRUE(file.good()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

ShellLinkFile parsed(const std::vector<BYTE>& bytes) {
    const auto link = parseShellLink(bytes, codePage);
    EXPECT_TRUE(link.has_value());
    return link.value_or(ShellLinkFile());
}

ShellLinkFile written(const ShellLinkFile& link) {
    const auto bytes = shellLinkBytes(link, codePage);
    EXPECT_TRUE(bytes.has_value());
    return bytes ? parsed(*bytes) : ShellLinkFile();
}

TEST(ShellLinkFileMachine, ReadsPathsTextsAndBlocks) {
    EXPECT_EQ(parsed(seed("layer")).path, u"C:\\Rettung\\Start.exe");
    const ShellLinkFile wine = parsed(seed("wine"));
    EXPECT_EQ(wine.path, u"C:\\Rettung\\Start.exe");
    EXPECT_EQ(wine.items.size(), 0xADu);
    EXPECT_EQ(parsed(seed("unicode_path")).path, u"C:\\\u017D.exe");

    const ShellLinkFile link = parsed(seed("network_advertised"));
    EXPECT_EQ(link.path, u"\\\\SERVER\\share\\a\\b.exe");
    EXPECT_EQ(link.attributes, 0x20u);
    EXPECT_EQ(link.size, 77u);
    EXPECT_EQ(link.texts[ShellLinkFile::description], u"name");
    EXPECT_EQ(link.texts[ShellLinkFile::relativePath], u".\\rel");
    EXPECT_EQ(link.texts[ShellLinkFile::workingDirectory], u"dir");
    EXPECT_EQ(link.texts[ShellLinkFile::arguments], u"/x");
    EXPECT_EQ(link.texts[ShellLinkFile::icon], u"icon.ico");
    ASSERT_EQ(link.blocks.size(), 1u);
    EXPECT_EQ(blockSignature(link.blocks[0]), EXP_DARWIN_ID_SIG);
    EXPECT_EQ(link.blocks[0].size(), sizeof(EXP_DARWIN_LINK));
}

TEST(ShellLinkFileMachine, WritesWhatReadsBackTheSame) {
    for (const char* const name : {"layer", "wine", "network_advertised", "unicode_path"}) {
        SCOPED_TRACE(name);
        const ShellLinkFile link = parsed(seed(name));
        ShellLinkFile again = written(link);
        again.flags = link.flags;
        EXPECT_EQ(again, link);
    }
    for (const char16_t* const path : {u"C:\\", u"\\\\server\\share", u"\\\\server", u"\\\\s\\t\\"}) {
        ShellLinkFile link;
        link.path = path;
        EXPECT_EQ(written(link).path, path);
    }
}

TEST(ShellLinkFileMachine, RefusesWhatTheFormatCannotSay) {
    ShellLinkFile link;
    link.texts[ShellLinkFile::arguments] = std::u16string(0x10000, 'x');
    EXPECT_FALSE(shellLinkBytes(link, codePage));
    link.texts[ShellLinkFile::arguments]->pop_back();
    EXPECT_EQ(written(link).texts, link.texts);
    link.path = u"C:\\\u0416";
    EXPECT_FALSE(shellLinkBytes(link, codePage)) << "no such letter in the code page";
    link.path = u"C:\\a";
    link.blocks = {{9, 0, 0, 0, 1, 0, 0, 0}};
    EXPECT_FALSE(shellLinkBytes(link, codePage)) << "a size that is not the block's";
}

TEST(ShellLinkFileMachine, EveryTruncationIsRefused) {
    for (const char* const name : {"layer", "wine", "network_advertised", "unicode_path"}) {
        const std::vector<BYTE> whole = seed(name);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            // A copy of its own size, so that a read behind its end is seen.
            const std::vector<BYTE> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            ASSERT_FALSE(parseShellLink(cut, codePage)) << name << ' ' << length;
        }
    }
}

TEST(ShellLinkFileMachine, OffsetsAndSizesBeyondTheFileAreRefused) {
    const std::vector<BYTE> whole = seed("layer");
    // Class, size of the path's part, its offsets of the path and of the rest, and the length of the text.
    const std::size_t text = whole.size() - 4 - 2 * 7 - 2;
    for (const std::size_t place :
         {std::size_t{4}, std::size_t{79}, std::size_t{95}, std::size_t{103}, text + 1}) {
        std::vector<BYTE> bytes = whole;
        bytes[place] = 0xFF;
        EXPECT_FALSE(parseShellLink(bytes, codePage)) << place;
    }
    for (const BYTE size : {BYTE{4}, BYTE{7}}) {
        std::vector<BYTE> bytes = whole;
        bytes[bytes.size() - 4] = size;
        EXPECT_FALSE(parseShellLink(bytes, codePage)) << "a block without room for its signature";
    }
}

class ShellLinkMachine : public testing::Test {
protected:
    ShellLinkMachine() { machine->com.addUse(); }

    ScopedMachine machine;
};

TEST_F(ShellLinkMachine, BlocksAndFlagsAreKept) {
    auto* const link = new ShellLink(machine->com);
    const DWORD small[] = {12, 0xA0000001, 77};
    DWORD bad[] = {7, 1};
    EXPECT_EQ(link->AddDataBlock(const_cast<DWORD*>(small)), S_OK);
    EXPECT_EQ(link->AddDataBlock(bad), E_INVALIDARG);
    EXPECT_EQ(link->SetFlags(SLDF_HAS_DARWINID), S_OK);
    const WCHAR name[] = {'C', ':', '\\', 'a', 0};
    EXPECT_EQ(link->Save(nullptr, TRUE), E_INVALIDARG) << "under no name yet";
    EXPECT_EQ(link->Save(name, TRUE), S_OK);
    EXPECT_EQ(link->Save(nullptr, FALSE), S_OK);

    auto* const loaded = new ShellLink(machine->com);
    EXPECT_EQ(loaded->Load(name, STGM_READ), S_OK);
    DWORD flags = 0;
    EXPECT_EQ(loaded->GetFlags(&flags), S_OK);
    EXPECT_EQ(flags, SLDF_HAS_DARWINID | SLDF_UNICODE);
    void* block = nullptr;
    EXPECT_EQ(loaded->CopyDataBlock(0xA0000002, &block), E_FAIL);
    EXPECT_EQ(block, nullptr);
    ASSERT_EQ(loaded->CopyDataBlock(0xA0000001, &block), S_OK);
    EXPECT_EQ(std::memcmp(block, small, sizeof small), 0);
    EXPECT_EQ(LocalFree(block), nullptr);
    EXPECT_EQ(machine->com.objects(), 2u);
    EXPECT_EQ(loaded->Release() + link->Release(), 0u);
    EXPECT_EQ(machine->com.objects(), 0u);
}

TEST_F(ShellLinkMachine, APathIsCompletedAndCutToTheBuffer) {
    auto* const link = new ShellLink(machine->com);
    ASSERT_TRUE(CreateDirectoryA("C:\\d", nullptr));
    ASSERT_TRUE(SetCurrentDirectoryA("C:\\d"));
    writeFile("C:\\f", "12345");
    EXPECT_EQ(link->SetPath("..\\f"), S_OK);
    char text[4] = "xxx";
    WIN32_FIND_DATAA found;
    EXPECT_EQ(link->GetPath(text, sizeof text, &found, 0), S_OK);
    EXPECT_STREQ(text, "C:\\");
    EXPECT_STREQ(found.cFileName, "f");
    EXPECT_EQ(found.nFileSizeLow, 5u);
    EXPECT_EQ(link->GetPath(text, 0, nullptr, 0), E_INVALIDARG);
    EXPECT_EQ(link->Resolve(nullptr, SLR_NO_UI), S_OK);
    EXPECT_EQ(link->SetPath("C:\\gone"), S_OK);
    EXPECT_EQ(link->Resolve(nullptr, SLR_NO_UI), S_FALSE);
    EXPECT_EQ(link->SetPath(""), S_OK);
    EXPECT_EQ(link->GetPath(text, sizeof text, nullptr, 0), S_FALSE);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(link->Release(), 0u);
}

}  // namespace
