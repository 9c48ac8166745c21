#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "CUtilsPath.h"
#include "path_cases.h"
#include "std_exception.h"
#include "support/temp_folder.h"

namespace {

using UTILS::CUtilsPath;
using UTILS::PathOutput;
using UTILS::UtilsString;

constexpr const char* none = "(none)";

struct AbsoluteCase {
    const char* text;
    const char* path;
    const char* drive;
    const char* folder;
    const char* parent;
};

constexpr AbsoluteCase absoluteCases[] = {
    {"C:\\Temp", "C:\\Temp", "C:", "Temp", "C:"},
    {"C:\\Temp\\", "C:\\Temp", "C:", "Temp", "C:"},
    {"  C:\\Temp  ", "C:\\Temp", "C:", "Temp", "C:"},
    {" C:\\Temp\\ ", "C:\\Temp", "C:", "Temp", "C:"},
    {"A:\\", "A:", "A:", none, none},
    {"A:", "A:", "A:", none, none},
    {"C:\\\\a\\\\\\b\\\\c", "C:\\a\\b\\c", "C:", "c", "C:\\a\\b"},
    {"C:\\a\\b\\\\", "C:\\a\\b", "C:", "b", "C:\\a"},
    {"C:\\my files\\a.tar.gz", "C:\\my files\\a.tar.gz", "C:", "a.tar.gz", "C:\\my files"},
    {"\\:x", "\\:x", none, ":x", none},
    {"C:\\a/b", "C:\\a/b", "C:", "a/b", "C:"},
    {"C:\\a\\..\\b", "C:\\a\\..\\b", "C:", "b", "C:\\a\\.."},
    {"\\\\server\\share", "\\\\server\\share", "\\\\server\\share", "share", none},
    {"\\\\server\\share\\", "\\\\server\\share", "\\\\server\\share", "share", none},
    {"\\\\server\\share\\a\\b", "\\\\server\\share\\a\\b", "\\\\server\\share", "b", "\\\\server\\share\\a"},
    {"\\\\server\\share\\a\\\\b", "\\\\server\\share\\a\\\\b", "\\\\server\\share", "b",
     "\\\\server\\share\\a\\"},
    {"\\\\", "\\\\", "\\\\", none, none},
    {"HKLM\\Software\\", "HKLM\\Software", "HKLM", "Software", "HKLM"},
    {"HKEY_CURRENT_CONFIG\\a\\\\b", "HKEY_CURRENT_CONFIG\\a\\b", "HKEY_CURRENT_CONFIG", "b",
     "HKEY_CURRENT_CONFIG\\a"},
    {"HKU", "HKU", "HKU", none, none},
};

TEST(CUtilsPathSet, KeepsAbsolutePathsNormalisedAndTakesThemApart) {
    for (const AbsoluteCase& row : absoluteCases) {
        SCOPED_TRACE(row.text);
        const CUtilsPath named = path(row.text);
        EXPECT_STREQ(named.GetPath(), row.path);
        EXPECT_EQ(answered([&](PathOutput out) { return named.GetDrive(out); }), row.drive);
        EXPECT_EQ(answered([&](PathOutput out) { return named.GetDirFolder(out); }), row.folder);
        EXPECT_EQ(answered([&](PathOutput out) { return named.GetParentDir(out); }), row.parent);
        EXPECT_STREQ(path(named.GetPath()).GetPath(), row.path) << "set again";
    }
}

TEST(CUtilsPathSet, CompletesRelativePathsWithTheCurrentDirectory) {
    const TempFolder folder;
    folder.directory("a");
    folder.directory("a\\b");
    const InDirectory inside(folder / "a\\b");
    const std::string here = InDirectory::now();
    const std::string above = here.substr(0, here.size() - 2);
    const std::string top = above.substr(0, above.size() - 2);
    const struct {
        const char* text;
        std::string path;
    } cases[] = {
        {"x", here + "\\x"},
        {"\\x", here + "\\x"},
        {".", here},
        {"\\", here},
        {"..", above},
        {"..\\x", above + "\\x"},
        {"..\\..\\x", top + "\\x"},
        {".hidden", here + "\\.hidden"},
        {"two..dots", here + "\\two..dots"},
        {"hklm\\Software", here + "\\hklm\\Software"},
        {"HKLMX\\Software", here + "\\HKLMX\\Software"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(row.path, path(row.text).GetPath()) << row.text;
    }
}

TEST(CUtilsPathSet, ClimbsNoHigherThanTheDrive) {
    std::string many;
    for (int i = 0; i < 500; ++i) {
        many += "..\\";
    }
    const std::string drive = InDirectory::now().substr(0, 2);
    EXPECT_EQ(drive + "\\x", path(many + "x").GetPath());
    EXPECT_EQ(drive, path(many).GetPath());
}

TEST(CUtilsPathSet, TellsRegistryPathsUnderTheCaseFlagOfTheText) {
    EXPECT_EQ(path("HKEY_LOCAL_MACHINE\\Software").GetRegFlag(), 1);
    EXPECT_EQ(path("hklm\\Software").GetRegFlag(), 0);
    UtilsString text("hklm\\Software");
    text.SetCase(0);
    CUtilsPath key(text, 0, 0, 0);
    EXPECT_EQ(key.IsARegEntry(), 1);
    EXPECT_STREQ(key.GetPath(), "hklm\\Software");
    key += "Vendor";
    EXPECT_EQ(key.IsARegEntry(), 1) << "the case flag stays with the path";
    EXPECT_TRUE(key == "HKLM\\SOFTWARE\\VENDOR");
    EXPECT_EQ(key.IsAFile() + key.IsADir(), 0);
    EXPECT_EQ(key.GetFileSize(), 0u);
    key.SetPath("C:\\x");
    EXPECT_EQ(key.GetRegFlag(), 0);
}

TEST(CUtilsPathSet, JoinsWithOneBackslash) {
    const struct {
        const char* path;
        const char* component;
        const char* joined;
    } cases[] = {
        {"A:\\", "X", "A:\\X"},
        {"C:\\t", "DOS\\IO.SYS", "C:\\t\\DOS\\IO.SYS"},
        {"C:\\t", "\\DOS\\IO.SYS", "C:\\t\\DOS\\IO.SYS"},
        {"C:\\t", "\\\\DOS\\\\IO.SYS\\", "C:\\t\\DOS\\IO.SYS"},
        {"\\\\s\\h", "\\x", "\\\\s\\h\\x"},
        {"HKLM", "Software", "HKLM\\Software"},
        {"", "C:\\x", "C:\\x"},
    };
    for (const auto& row : cases) {
        CUtilsPath added = path(row.path);
        EXPECT_EQ(added.AddToPath(row.component), 1);
        EXPECT_STREQ(added.GetPath(), row.joined);
        CUtilsPath plus = path(row.path);
        plus += row.component;
        EXPECT_TRUE(plus == added);
    }
    CUtilsPath below = path("C:\\t");
    below += path("D:\\DOS\\IO.SYS");
    EXPECT_STREQ(below.GetPath(), "C:\\t\\DOS\\IO.SYS");
    EXPECT_EQ(below.AddToPath("\\"), 0);
    EXPECT_STREQ(below.GetPath(), "C:\\t\\DOS\\IO.SYS");
}

template <class Operation>
std::string reportOf(Operation operation) {
    SetLastError(ERROR_FILE_NOT_FOUND);
    try {
        operation();
    } catch (const UTILS::std_exception& report) {
        return report.what();
    }
    return "nothing thrown";
}

TEST(CUtilsPathSet, AnEmptyPathChangesNothingAndThrowsOnlyWithTheExceptionFlag) {
    CUtilsPath named = path("C:\\x");
    EXPECT_EQ(named.SetPath(""), 0);
    EXPECT_EQ(named.SetDir("   "), 0);
    EXPECT_STREQ(named.GetPath(), "C:\\x");
    EXPECT_EQ(!named, 0);

    CUtilsPath empty;
    EXPECT_EQ(!empty, 1);
    EXPECT_EQ(empty.Search() + empty.DeleteDir() + empty.CreateDirectory(), 0);

    empty.SetExceptionHandling();
    for (const std::string& report :
         {reportOf([&] { empty.SetPath(""); }), reportOf([&] { empty.Search(); }),
          reportOf([&] { empty.DeleteDir(); }), reportOf([] { CUtilsPath("", 0, 0, 7); })}) {
        EXPECT_EQ(report.find("File:  ..\\..\\Include\\CUtilsPath; Line Number:  "), 0u) << report;
        EXPECT_NE(report.find("; Type:  173; Error Number: 2; WinError Description: "), std::string::npos)
            << report;
        EXPECT_TRUE(report.ends_with("; Error Condition:  The input pathname is NULL")) << report;
    }
    empty.ResetExceptionHandling();
    EXPECT_EQ(reportOf([&] { empty.SetPath(""); }), "nothing thrown");
}

TEST(CUtilsPathSet, NamesTheSamePlaceThroughTheComputer) {
    std::array<char, 512> name{};
    auto size = static_cast<DWORD>(name.size());
    ASSERT_TRUE(GetComputerNameA(name.data(), &size));
    const std::string computer = std::string("\\\\") + name.data();
    EXPECT_EQ(computer + "\\Temp\\a.txt", path("C:\\Temp\\a.txt").GetPathUNC());
    EXPECT_EQ(computer, path("C:\\").GetPathUNC());
    EXPECT_EQ(computer + "\\HKLM\\Software", path("HKLM\\Software").UGetDirUNC().c_str());
    EXPECT_STREQ(path("\\\\server\\share\\x").GetPathUNC(), "\\\\server\\share\\x");
}

TEST(CUtilsPathSet, NoticesAFileAndItsSize) {
    const TempFolder folder;
    CUtilsPath named = path(folder.file("a.txt", "12345"));
    EXPECT_EQ(named.GetFileFlag(), 1);
    EXPECT_EQ(named.GetDirSize(), 5u);
    EXPECT_EQ(named.GetFileSize(), 5u);
    WIN32_FIND_DATAA found{};
    EXPECT_EQ(named.IsAFile(&found), 1);
    EXPECT_STREQ(found.cFileName, "a.txt");
    EXPECT_EQ(named.IsADir(), 0);

    named = UtilsString(folder.path());
    EXPECT_EQ(named.GetFileFlag() + named.IsAFile(), 0);
    EXPECT_EQ(named.DirExists(), 1);
    EXPECT_EQ(named.GetDirSize() + named.GetFileSize(), 0u);

    EXPECT_EQ(path(folder / "a.*").IsAFile(), 0) << "a pattern names no file";
    EXPECT_EQ(path(folder / "b.txt").GetFileFlag(), 0);
    EXPECT_EQ(path(folder.path().substr(0, 3)).IsADir(), 1) << "a drive's root";
    EXPECT_EQ(path(folder.path().substr(0, 3)).IsAFile(), 0);
}

std::vector<std::string> components(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\\', start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

// Climbing and descending on generated texts, against a walk over a list of components.
TEST(CUtilsPathSet, RandomRelativePathsEndWhereTheComponentsLead) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::vector<std::string> base = components(InDirectory::now());
    static constexpr const char* pieces[] = {"..", ".", "a", "b c", "d.e", "..f", "\x84", "..."};
    for (int round = 0; round < 500; ++round) {
        std::vector<std::string> expected = base;
        std::string text;
        for (auto count = 1 + random() % 12; count > 0; --count) {
            const std::string piece = pieces[random() % std::size(pieces)];
            text += piece + std::string(1 + random() % 2, '\\');
            if (piece == "..") {
                expected.resize(std::max<std::size_t>(1, expected.size() - 1));
            } else if (piece != ".") {
                expected.push_back(piece);
            }
        }
        std::string joined = expected[0];
        for (std::size_t i = 1; i < expected.size(); ++i) {
            joined += "\\" + expected[i];
        }
        ASSERT_EQ(joined, path(text).GetPath()) << text;
    }
}

TEST(CUtilsPathSet, TakesTextsLongerThanAnyBuffer) {
    const std::string longName(5000, 'x');
    CUtilsPath named = path("C:\\" + longName);
    for (int i = 0; i < 20; ++i) {
        named += longName;
    }
    EXPECT_EQ(named.UGetPath().length(), 3u + 5000u + 20u * 5001u);
    EXPECT_EQ(named.IsAFile() + named.IsADir() + named.Search(), 0);
    EXPECT_EQ(named.GetShortPathName(), nullptr);
    EXPECT_EQ(named.GetLongPathName(), nullptr);
    std::string buffer(longName.size() + 1, '\0');
    EXPECT_EQ(named.GetDirFolder(buffer.data()), 1);
    EXPECT_EQ(longName, buffer.c_str());
}

}  // namespace
