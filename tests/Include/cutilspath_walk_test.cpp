#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "CUtilsPath.h"
#include "path_cases.h"
#include "support/temp_folder.h"

namespace {

using UTILS::CUtilsPath;
using UTILS::PathOutput;
using UTILS::UtilsString;

std::set<std::string> setOf(const std::vector<std::string>& list) {
    return {list.begin(), list.end()};
}

void setAttributes(const std::string& entry, DWORD attributes) {
    ASSERT_TRUE(SetFileAttributesA(entry.c_str(), attributes)) << entry << ": " << GetLastError();
}

// a.txt (3 bytes), hidden.txt (10), sub\b.txt (5), sub\deep\c.dat (7), empty
class CUtilsPathWalk : public testing::Test {
protected:
    CUtilsPathWalk() {
        folder_.file("a.txt", "abc");
        setAttributes(folder_.file("hidden.txt", "0123456789"), FILE_ATTRIBUTE_HIDDEN);
        folder_.directory("sub");
        folder_.file("sub\\b.txt", "12345");
        folder_.directory("sub\\deep");
        folder_.file("sub\\deep\\c.dat", "1234567");
        folder_.directory("empty");
    }

    TempFolder folder_;
};

TEST_F(CUtilsPathWalk, ListsWhatIsNotGuardedAndCountsOnlyThat) {
    CUtilsPath walked = path(folder_.path());
    EXPECT_EQ(walked.Search("*.*"), 1);
    EXPECT_EQ(setOf(files(walked)),
              (std::set{folder_ / "a.txt", folder_ / "sub\\b.txt", folder_ / "sub\\deep\\c.dat"}));
    EXPECT_EQ(setOf(directories(walked)),
              (std::set{folder_ / "sub", folder_ / "sub\\deep", folder_ / "empty"}));
    EXPECT_EQ(walked.GetTotalFiles() * 10 + walked.GetTotalSubDirs(), 33u);
    EXPECT_EQ(walked.GetDirSize(), 15u);

    walked.SetScanRO();
    EXPECT_EQ(walked.SearchTree("*.*"), 1);
    EXPECT_EQ(walked.GetTotalValues(), 4u);
    EXPECT_EQ(walked.GetDirSize(), 25u);
    walked.ReSetScanROKO();
    EXPECT_EQ(walked.Search(), 1);
    EXPECT_EQ(walked.GetTotalFiles(), 3u);
}

TEST_F(CUtilsPathWalk, AppliesThePatternAtEveryLevel) {
    CUtilsPath walked = path(folder_.path());
    EXPECT_EQ(walked.Search("*.txt"), 1);
    EXPECT_EQ(files(walked), std::vector{folder_ / "a.txt"}) << "sub does not match";
    EXPECT_EQ(walked.GetTotalSubDirs(), 0u);
    EXPECT_EQ(walked.Search("s*"), 1);
    EXPECT_EQ(directories(walked), std::vector{folder_ / "sub"});
    EXPECT_EQ(walked.Search("nothing*"), 1) << "no entry at all is no failure";
    EXPECT_EQ(walked.GetTotalFiles() + walked.GetTotalSubDirs(), 0u);
}

TEST_F(CUtilsPathWalk, PutsADirectorysEntriesRightBehindIt) {
    folder_.directory("sub\\other");
    folder_.directory("zoo");
    folder_.directory("zoo\\a");
    CUtilsPath walked = path(folder_.path());
    ASSERT_EQ(walked.Search(), 1);
    const std::vector<std::string> found = directories(walked);
    for (std::size_t i = 1; i < found.size(); ++i) {
        const std::string parent = found[i].substr(0, found[i].rfind('\\'));
        if (parent != folder_.path()) {
            EXPECT_TRUE(found[i - 1].starts_with(parent)) << found[i] << " behind " << found[i - 1];
        }
    }
}

TEST_F(CUtilsPathWalk, CursorsMoveByOneAndStopBehindTheLastEntry) {
    CUtilsPath walked = path(folder_.path());
    UtilsString entry;
    EXPECT_EQ(walked.RetrieveFirstFile(entry) + walked.RetrieveNextFile(entry), 0) << "not walked";
    ASSERT_EQ(walked.Search(), 1);
    walked.SortFiles();
    UtilsString base;
    UtilsString extension;
    EXPECT_EQ(walked.RetrieveFirstFileExpanded(entry, base, extension, 0), 1);
    EXPECT_EQ(walked.RetrieveFirstFile(entry), 1);
    EXPECT_TRUE(entry == folder_ / "a.txt" && base == "a" && extension == "txt");
    EXPECT_EQ(walked.RetrieveNextFileExpanded(entry, base, extension, 0), 1);
    EXPECT_TRUE(entry == folder_ / "sub\\b.txt" && base == "b");
    EXPECT_EQ(answered([&](PathOutput out) { return walked.GetSubDirFolder(out); }), "sub\\b.txt");
    walked.AdvanceFileCursor();
    EXPECT_EQ(walked.RetrieveFirstFile(entry), 1);
    EXPECT_EQ(answered([&](PathOutput out) { return walked.GetSubDirFolder(out); }), "sub\\deep\\c.dat");
    EXPECT_EQ(walked.RetrieveNextFile(entry), 0);
    EXPECT_EQ(walked.RetrieveNextFile(entry), 0);
    EXPECT_EQ(walked.RetrieveFirstFile(entry), 0);
    EXPECT_EQ(answered([&](PathOutput out) { return walked.GetSubDirFolder(out); }), "(none)");
    EXPECT_TRUE(entry == folder_ / "sub\\deep\\c.dat") << "untouched by a failure";
    walked.ResetTreeSearch();
    EXPECT_EQ(walked.RetrieveFirstFile(entry), 1);
    walked.CloseTreeSearch();
    EXPECT_EQ(walked.RetrieveFirstFile(entry), 0);
    EXPECT_EQ(walked.GetDirSize(), 0u);
}

TEST_F(CUtilsPathWalk, WalksAtOnceWithTheAutomateFlagAndForgetsForAnotherPath) {
    CUtilsPath walked(folder_.path(), 1, 1, 0);
    EXPECT_EQ(walked.GetTotalFiles(), 4u);
    EXPECT_EQ(walked.SetDir(folder_ / "a.txt"), 0) << "a file has no tree";
    EXPECT_EQ(walked.SetDir(folder_ / "sub"), 1);
    EXPECT_EQ(walked.GetTotalFiles(), 2u);

    walked.ClearAutomate();
    const CUtilsPath copy = walked;
    EXPECT_EQ(walked.SetDir(folder_ / "sub"), 1) << "the same path keeps its walk";
    EXPECT_EQ(walked.GetTotalFiles(), 2u);
    EXPECT_EQ(walked.SetPathToSubDir(), 1);
    EXPECT_TRUE(walked == folder_ / "sub\\deep");
    EXPECT_EQ(walked.GetTotalFiles() + walked.GetTotalSubDirs() + walked.GetDirSize(), 0u);
    EXPECT_EQ(walked.SetPathToSubDir(), 0);

    EXPECT_EQ(files(copy).size(), 2u) << "a copy has lists of its own";
    EXPECT_EQ(copy.GetDirSize(), 12u);
    CUtilsPath assigned;
    assigned = copy;
    EXPECT_EQ(files(assigned), files(copy));
    EXPECT_EQ(assigned.Search(), 1);
}

TEST_F(CUtilsPathWalk, IsForExistingDirectoriesOnly) {
    EXPECT_EQ(path(folder_ / "a.txt").Search(), 0);
    EXPECT_EQ(path(folder_ / "missing").Search(), 0);
    CUtilsPath strict(folder_ / "missing", 0, 0, 1);
    EXPECT_EQ(strict.Search(), 0);
}

TEST(CUtilsPathChange, CreatesMissingParentsOfADirectoryAndOfAFile) {
    const TempFolder folder;
    CUtilsPath created = path(folder / "a\\b\\c");
    EXPECT_EQ(created.CreateDirectory(0), 1);
    EXPECT_EQ(created.IsADir(), 1);
    EXPECT_EQ(created.Create(), 1) << "there already";
    EXPECT_EQ(path(folder / "d\\e\\f.txt").CreatePath(1), 1);
    EXPECT_EQ(path(folder / "d\\e").IsADir(), 1);
    EXPECT_FALSE(exists(folder / "d\\e\\f.txt"));

    folder.file("d\\file");
    EXPECT_EQ(path(folder / "d\\file").CreateDirectory(0), 1) << "the folder of a file";
    EXPECT_EQ(path(folder / "d\\file\\below\\x").CreateDirectory(0), 0) << "a file is no parent";
    EXPECT_EQ(path(folder.path().substr(0, 2)).CreateDirectory(0), 1);
    EXPECT_EQ(path(folder.path().substr(0, 2)).CreateDirectory(1), 0);
}

TEST(CUtilsPathChange, DeletesTreesFilesAndGuardedEntriesOnlyWhenAsked) {
    const TempFolder folder;
    path(folder / "t\\a\\b").CreateDirectory();
    folder.file("t\\x");
    folder.file("t\\a\\y");
    setAttributes(folder.file("t\\a\\b\\z"), FILE_ATTRIBUTE_READONLY);
    CUtilsPath careful = path(folder / "t");
    EXPECT_ANY_THROW(careful.DeleteDir()) << "the read-only file keeps its directory";
    EXPECT_TRUE(exists(folder / "t\\a\\b\\z"));
    EXPECT_FALSE(exists(folder / "t\\x"));

    CUtilsPath tree(folder / "t", 0, 1, 0);
    EXPECT_EQ(tree.Search(), 1);
    tree.SortFiles();
    tree.SortDirs();
    EXPECT_EQ(tree.Delete(), 1);
    EXPECT_FALSE(exists(folder / "t"));
    EXPECT_TRUE(tree == folder.path());
    EXPECT_EQ(tree.GetTotalFiles(), 0u);

    CUtilsPath file = path(folder.file("single", "123"));
    setAttributes(folder / "single", FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(file.DeletePath(), 1);
    EXPECT_FALSE(exists(folder / "single"));
    EXPECT_EQ(file.GetFileFlag(), 0);
    EXPECT_EQ(file.DeleteDirectory(), 0) << "gone";
}

TEST(CUtilsPathChange, MovesTheProcess) {
    const TempFolder folder;
    const InDirectory back(InDirectory::now());
    EXPECT_EQ(path(folder.path()).SetCurrentDirectory(), 1);
    EXPECT_TRUE(path("x") == path(InDirectory::now() + "\\x"));
    EXPECT_EQ(path(folder.path().substr(0, 3)).SetCurrentDir(), 1);
    EXPECT_EQ(InDirectory::now().size(), 3u) << "the root, not what was current on its drive";
    EXPECT_EQ(path(folder / "missing").SetCurrentDir(), 0);
    EXPECT_EQ(path("HKLM").SetCurrentDir(), 0);
}

TEST(CUtilsPathNames, LongFormOfAShortFormIsTheNameItself) {
    const TempFolder folder;
    const std::string name = folder.file("a name that is long.text");
    const char* const shortForm = CUtilsPath::GetShortPathName(name);
    ASSERT_NE(shortForm, nullptr);
    const std::string shortName = shortForm;
    const std::string longName = path(shortName).GetLongPathName();
    EXPECT_TRUE(longName.ends_with("\\a name that is long.text")) << shortName << " gave " << longName;
    EXPECT_STREQ(CUtilsPath::GetLongPathName("\\"), "\\");
    EXPECT_STREQ(CUtilsPath::GetLongPathName("name"), "name");
    EXPECT_STREQ(path("C:\\").GetLongPathName(), "C:");
    EXPECT_EQ(path(folder / "missing").GetLongPathName(), nullptr);
    EXPECT_EQ(path(folder / "missing").GetShortPathName(), nullptr);
    EXPECT_EQ(path("HKLM\\Software").GetLongPathName(), nullptr);
    EXPECT_EQ(path("HKLM\\Software").GetShortPathName(), nullptr);
}

}  // namespace
