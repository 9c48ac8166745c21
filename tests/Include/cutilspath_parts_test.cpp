#include <gtest/gtest.h>

#include "CUtilsPath.h"
#include "path_cases.h"

namespace {

using UTILS::CUtilsPath;
using UTILS::PathOutput;
using UTILS::UtilsString;

TEST(CUtilsPathParts, ClimbsAndDescendsTheAncestors) {
    CUtilsPath named = path("C:\\a\\b\\c");
    const auto parent = [&] { return answered([&](PathOutput out) { return named.GetParentDir(out); }); };
    const auto next = [&] { return answered([&](PathOutput out) { return named.GetNextParentDir(out); }); };
    const auto previous = [&] {
        return answered([&](PathOutput out) { return named.GetPrevParentKey(out); });
    };
    EXPECT_EQ(parent(), "C:\\a\\b");
    EXPECT_EQ(next(), "C:\\a");
    EXPECT_EQ(parent(), "C:\\a");
    EXPECT_EQ(next(), "C:");
    EXPECT_EQ(next(), "(none)");
    EXPECT_EQ(next(), "(none)");
    EXPECT_EQ(previous(), "C:");
    EXPECT_EQ(previous(), "C:\\a");
    EXPECT_EQ(previous(), "C:\\a\\b");
    EXPECT_EQ(previous(), "(none)");
    next();
    named.ResetParentSearch();
    EXPECT_EQ(parent(), "C:\\a\\b");
}

TEST(CUtilsPathParts, GivesEachAnswerAsTextPathAndBuffer) {
    CUtilsPath named = path("C:\\a\\b");
    UtilsString text;
    CUtilsPath parent;
    char buffer[8] = "xxxxxxx";
    EXPECT_EQ(named.GetParentDir(text), 1);
    EXPECT_EQ(named.GetParentDir(parent), 1);
    EXPECT_EQ(named.GetParentDir(buffer), 1);
    EXPECT_STREQ(text.c_str(), "C:\\a");
    EXPECT_STREQ(parent.GetPath(), "C:\\a");
    EXPECT_STREQ(buffer, "C:\\a");
    EXPECT_EQ(named.GetParentDir(named), 1);
    EXPECT_STREQ(named.GetPath(), "C:\\a") << "into itself";
    EXPECT_STREQ(named.UGetDrive().c_str(), "C:");
}

TEST(CUtilsPathParts, SplitsFileNamesAtTheFirstOrLastDot) {
    const struct {
        const char* path;
        int flag;
        int result;
        const char* base;
        const char* extension;
    } cases[] = {
        {"C:\\x.y\\a.tar.gz", 0, 1, "a.tar", "gz"},
        {"C:\\x.y\\a.tar.gz", 1, 1, "a", "tar.gz"},
        {"C:\\x.y\\README", 0, 1, "README", ""},
        {"C:\\x.y\\README", 1, 1, "README", ""},
        {"name.", 0, 1, "name", ""},
        {".profile", 1, 1, "", "profile"},
        {"C:\\x\\", 0, 0, "old", "old"},
        {"", 0, 0, "old", "old"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.path);
        UtilsString input(row.path);
        input.SetCase(0);
        UtilsString base("old");
        UtilsString extension("old");
        EXPECT_EQ(CUtilsPath::GetFileNameFromPath(input, base, extension, row.flag), row.result);
        EXPECT_STREQ(base.c_str(), row.base);
        EXPECT_STREQ(extension.c_str(), row.extension);
        EXPECT_EQ(base.GetCase(), row.result ? 0 : 1);
        EXPECT_EQ(extension.GetCase(), row.result ? 0 : 1);
    }
}

TEST(CUtilsPathParts, StoredNamesAreRelativeAndStayInsideTheirTarget) {
    const struct {
        const char* listed;
        const char* stored;
    } cases[] = {
        {"C:\\a.txt", "a.txt"},
        {" C:\\dir\\\\sub\\a.txt ", "dir\\sub\\a.txt"},
        {"\\\\server\\share\\dir\\a.txt", "dir\\a.txt"},
        {"dir\\a.txt", "dir\\a.txt"},
        {".\\dir\\a.txt", "dir\\a.txt"},
        {"..\\..\\a.txt", "a.txt"},
        {"dir\\..\\..\\a.txt", "a.txt"},
        {"C:a.txt", "a.txt"},
        {"C:\\", "(none)"},
        {"..", "(none)"},
        {"", "(none)"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(answered([&](PathOutput out) { return CUtilsPath::UpperDirParse(row.listed, out); }),
                  row.stored)
            << row.listed;
    }
    EXPECT_EQ(answered([](PathOutput out) { return path("C:\\dir\\a.txt").UpperDirParse(out); }),
              "dir\\a.txt");
    EXPECT_EQ(answered([](PathOutput out) { return path("HKLM\\a").UpperDirParse(out); }), "(none)");
}

TEST(CUtilsPathParts, GivesThePartOfAnEntryBelowItself) {
    const CUtilsPath folder = path("C:\\src");
    const auto below = [](const CUtilsPath& source, const char* entry) {
        return answered([&](PathOutput out) { return source.GetSubDirFolder(entry, out); });
    };
    EXPECT_EQ(below(folder, "C:\\src\\DOS\\IO.SYS"), "DOS\\IO.SYS");
    EXPECT_EQ(below(folder, "C:\\src2\\IO.SYS"), "(none)");
    EXPECT_EQ(below(folder, "C:\\src"), "(none)");
    EXPECT_EQ(below(folder, "C:\\src\\"), "(none)");
    EXPECT_EQ(below(path("A:\\"), "A:\\IO.SYS"), "IO.SYS");
}

TEST(CUtilsPathParts, ComparesAsTextWithPathsAndTexts) {
    const CUtilsPath lower = path("C:\\a");
    const CUtilsPath higher = path("C:\\b");
    EXPECT_TRUE(lower == path("C:\\a\\") && lower != higher && lower < higher && higher >= lower);
    EXPECT_TRUE(lower == "C:\\a" && "C:\\b" > lower && UtilsString("C:\\a") == lower);
    EXPECT_TRUE(lower != "C:\\A");
    const char* text = lower;
    const UtilsString copy = lower;
    EXPECT_STREQ(text, copy.c_str());
    UtilsString assigned("before");
    assigned = lower;
    EXPECT_STREQ(assigned.c_str(), "C:\\a");
}

}  // namespace
