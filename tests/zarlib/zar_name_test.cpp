#include "zar_name.h"

#include <gtest/gtest.h>

namespace {

using zar::NameDanger;

TEST(ZarNameTest, JudgesWhatTheSystemWouldMakeOfAName) {
    struct Row {
        std::string name;
        NameDanger danger;
    };
    const Row rows[] = {
        {"IO.SYS", NameDanger::None},
        {"DOS\\SUB\\IO.SYS", NameDanger::None},
        {"a/b", NameDanger::None},
        {"a\\\\b", NameDanger::None},
        {"..a\\b..c\\.d", NameDanger::None},
        {" leading blank", NameDanger::None},
        {"NULL", NameDanger::None},
        {"XNUL", NameDanger::None},
        {"COM", NameDanger::None},
        {"COM0", NameDanger::None},
        {"COM10", NameDanger::None},
        {"A.NUL", NameDanger::None},
        {"COMMAND.COM", NameDanger::None},
        {"CONFIG.SYS", NameDanger::None},
        {"\xC4.TXT", NameDanger::None},

        {"", NameDanger::Empty},
        {"\\", NameDanger::Empty},
        {" ", NameDanger::Empty},
        {"a\\", NameDanger::Empty},
        {"a/", NameDanger::Empty},

        {".", NameDanger::ParentStep},
        {"..", NameDanger::ParentStep},
        {"..\\a", NameDanger::ParentStep},
        {"a\\..\\..\\b", NameDanger::ParentStep},
        {"a/../b", NameDanger::ParentStep},
        {"a\\.. \\b", NameDanger::ParentStep},
        {"a\\. .\\b", NameDanger::ParentStep},
        {"a\\...", NameDanger::ParentStep},
        {"a\\ \\b", NameDanger::ParentStep},

        {"\\a", NameDanger::Absolute},
        {"/a", NameDanger::Absolute},
        {"\\\\server\\share\\a", NameDanger::Absolute},
        {"\\\\.\\PHYSICALDRIVE0", NameDanger::Absolute},

        {"C:\\a", NameDanger::Drive},
        {"C:a", NameDanger::Drive},
        {"a:stream", NameDanger::Drive},
        {"dir\\a::$DATA", NameDanger::Drive},

        {"NUL", NameDanger::Device},
        {"nul.txt", NameDanger::Device},
        {"Con .txt", NameDanger::Device},
        {"dir\\AUX", NameDanger::Device},
        {"prn\\a", NameDanger::Device},
        {"NUL.", NameDanger::Device},
        {"NUL ", NameDanger::Device},
        {"com1.a.b", NameDanger::Device},
        {"LPT9", NameDanger::Device},
        {"COM\xB9", NameDanger::Device},
        {"CLOCK$", NameDanger::Device},
        {"conin$", NameDanger::Device},

        {std::string("a\0b", 3), NameDanger::ZeroByte},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(zar::JudgeName(row.name), row.danger) << '"' << row.name << '"';
    }
}

TEST(ZarNameTest, JoinsWithOneBackslash) {
    EXPECT_EQ(zar::JoinPath("C:\\t", "a"), "C:\\t\\a");
    EXPECT_EQ(zar::JoinPath("C:\\t\\", "\\DOS\\\\a"), "C:\\t\\DOS\\a");
    EXPECT_EQ(zar::JoinPath("C:", "a"), "C:\\a");
    EXPECT_EQ(zar::JoinPath("\\\\server\\share", "a"), "\\\\server\\share\\a");
    EXPECT_EQ(zar::JoinPath("", "a"), "a");
}

TEST(ZarNameTest, TakesTheFirstElementAway) {
    EXPECT_EQ(zar::WithoutFirstElement("Disk\\DOS\\IO.SYS"), "\\DOS\\IO.SYS");
    EXPECT_EQ(zar::WithoutFirstElement("\\Disk\\DOS\\IO.SYS"), "\\DOS\\IO.SYS");
    EXPECT_EQ(zar::WithoutFirstElement("DOS\\DOS\\DOS"), "\\DOS\\DOS");
    EXPECT_EQ(zar::WithoutFirstElement("Disk\\\\a"), "\\a");
    EXPECT_EQ(zar::WithoutFirstElement("IO.SYS"), "");
    EXPECT_EQ(zar::WithoutFirstElement("\\"), "\\");
    EXPECT_EQ(zar::WithoutFirstElement(""), "");
    EXPECT_EQ(zar::WithoutFirstElement("\\\\server\\a"), "\\\\server\\a") << "its first element is empty";
}

}  // namespace
