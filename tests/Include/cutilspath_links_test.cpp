#include <gtest/gtest.h>

#include <array>
#include <string>

#include "CUtilsPath.h"
#include "diskio.h"
#include "path_cases.h"
#include "shortcut_bytes.h"
#include "support/temp_folder.h"

namespace {

using UTILS::CUtilsPath;
using UTILS::UtilsString;

template <std::size_t size>
std::string textOf(const unsigned char (&bytes)[size]) {
    return {reinterpret_cast<const char*>(bytes), size};
}

// The result and the target. Where the system has an installer, a file that cannot be opened is thrown.
std::string resolved(const std::string& link) {
    UtilsString target("before");
    int result = 0;
    try {
        result = CUtilsPath().ResolveLinkFile(link, target, 0);
    } catch (const UTILS::DiskIoException&) {
    }
    EXPECT_EQ(result, *target.c_str() != 0 ? 1 : 0);
    return target.c_str();
}

TEST(CUtilsPathLinks, AShortcutLeadsToWhatItWasMadeFor) {
    const TempFolder folder;
    const std::string target = folder.file("Start \xFC.exe", "x");
    const std::string link = folder / "Verkn\xFCpfung.lnk";
    ASSERT_EQ(CUtilsPath::CreateLinkFile(target, link, "Diskette f\xFCr Notf\xE4lle"), 1);
    EXPECT_EQ(resolved(link), target);

    CUtilsPath named = path(link);
    UtilsString text;
    std::array<char, 4096> buffer{};
    EXPECT_EQ(named.ResolveLinkFile(link, buffer.data(), 1), 1);
    EXPECT_EQ(buffer.data(), target);
    EXPECT_EQ(named.ResolveLinkFile(text, 0), 1);
    EXPECT_EQ(text.c_str(), target);
    buffer.fill('x');
    EXPECT_EQ(named.ResolveLinkFile(buffer.data(), 0), 1);
    EXPECT_EQ(buffer.data(), target);

    UtilsString both(link);
    EXPECT_EQ(named.ResolveLinkFile(both, both, 0), 1);
    EXPECT_EQ(both.c_str(), target) << "one text gives the link and takes the target";

    EXPECT_EQ(named.ResolveLinkFile(0), 1);
    EXPECT_EQ(named.GetPath(), target);
    EXPECT_EQ(named.GetFileFlag(), 1);
}

TEST(CUtilsPathLinks, AnOlderShortcutIsReplacedAndADirectoryCanBeTheTarget) {
    const TempFolder folder;
    const std::string link = folder / "a.lnk";
    ASSERT_EQ(CUtilsPath::CreateLinkFile(folder.file("a-long-name.txt"), link, ""), 1);
    ASSERT_EQ(CUtilsPath::CreateLinkFile(folder.directory("d"), link, ""), 1);
    EXPECT_EQ(resolved(link), folder / "d");
}

TEST(CUtilsPathLinks, WhatCannotBeWrittenIsNoShortcut) {
    const TempFolder folder;
    EXPECT_EQ(CUtilsPath::CreateLinkFile(folder.file("a"), folder / "missing\\a.lnk", ""), 0);
    EXPECT_FALSE(exists(folder / "missing"));
    EXPECT_EQ(CUtilsPath::CreateLinkFile(folder / "a", "", ""), 0);
}

TEST(CUtilsPathLinks, WhatIsNoShortcutHasNoTarget) {
    const TempFolder folder;
    EXPECT_EQ(resolved(folder / "missing.lnk"), "");
    EXPECT_EQ(resolved(folder.file("text.lnk", "no shortcut")), "");
    EXPECT_EQ(resolved(folder.file("empty.lnk")), "");
    EXPECT_EQ(resolved(""), "");
    std::string cut = textOf(shortcutOfTheLayer);
    cut.resize(60);
    EXPECT_EQ(resolved(folder.file("cut.lnk", cut)), "");

    CUtilsPath key = path("HKEY_LOCAL_MACHINE\\Software");
    char buffer[] = "before";
    EXPECT_EQ(key.ResolveLinkFile(buffer, 0), 0);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(key.ResolveLinkFile(0), 0);
    EXPECT_STREQ(key.GetPath(), "HKEY_LOCAL_MACHINE\\Software");
    EXPECT_EQ(CUtilsPath().ResolveLinkFile(0), 0);
}

// Each side reads what the other has written: this runs over the layer and on Windows' own shell.
TEST(CUtilsPathLinks, ShortcutsOfBothShellsAreUnderstood) {
    const TempFolder folder;
    EXPECT_EQ(resolved(folder.file("layer.lnk", textOf(shortcutOfTheLayer))), "C:\\Rettung\\Start.exe");
    EXPECT_EQ(resolved(folder.file("wine.lnk", textOf(shortcutOfWine))), "C:\\Rettung\\Start.exe");
}

TEST(CUtilsPathLinks, CopiesResolveOnTheirOwn) {
    const TempFolder folder;
    const std::string target = folder.file("t");
    ASSERT_EQ(CUtilsPath::CreateLinkFile(target, folder / "a.lnk", ""), 1);
    CUtilsPath copy;
    {
        CUtilsPath original = path(folder / "a.lnk");
        UtilsString found;
        ASSERT_EQ(original.ResolveLinkFile(found, 0), 1);
        copy = original;
    }
    EXPECT_EQ(copy.ResolveLinkFile(0), 1);
    EXPECT_EQ(copy.GetPath(), target);
}

}  // namespace
