#include "DIOList.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/temp_folder.h"
#include "thrown_message.h"

namespace {

using UTILS::DIOList;
using UTILS::DiskIO;

TEST(DIOList, SelectsAndReturnsItsFiles) {
    TempFolder folder;
    const std::string name = folder.file("a.txt", "content");
    DIOList list;
    list.AddData(DiskIO()).AddData(DiskIO());
    ASSERT_EQ(list.size(), 2U);
    list.GetIO(1).Open(name.c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, 0);
    EXPECT_TRUE(list.GetIO().IsOpen());
    EXPECT_FALSE(list.GetIO(0).IsOpen());
    list[1];
    EXPECT_EQ(list.GetIO().GetFileName(), name);
    EXPECT_EQ(thrownMessage<std::out_of_range>([&] { list.GetIO(5); }).substr(0, 24),
              "Out Of Range Error - 5:2");
    EXPECT_EQ(&list.GetIO(), &list.GetIO(1)) << "a failed selection leaves the current one";
    EXPECT_THROW(DIOList().GetIO(), std::out_of_range);
}

TEST(DIOList, OwnsItsFilesAndCopiesEachWithAHandleOfItsOwn) {
    TempFolder folder;  // fails when a handle keeps a file from being removed
    const std::string name = folder.file("a.txt", "content");
    DIOList list;
    list += DiskIO(name.c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, 0);
    list += DiskIO();
    DIOList copy(list);
    EXPECT_TRUE(copy.GetIO(0).IsOpen());
    EXPECT_TRUE(copy.GetIO(0) != list.GetIO(0));
    list.RemoveAllData();
    char text[8] = {};
    copy.GetIO(0).Read(text, 7);
    EXPECT_STREQ(text, "content");
    list = copy;
    copy.RemoveData(0);
    EXPECT_FALSE(copy.GetIO().IsOpen());
    EXPECT_EQ(list.size(), 2U);
    list.GetIO(0).Close();
    list[1].RemoveData();
    EXPECT_EQ(list.size(), 1U);
    EXPECT_FALSE(list.GetIO().IsOpen());
}

// The list is the base of classes that meet again further down; its own base must be there once.
TEST(DIOList, ItsBaseIsVirtual) {
    struct Left : virtual DIOList {};
    struct Right : virtual UTILS::Utils<DiskIO, int> {};
    struct Both : Left, Right {};
    Both both;
    both.AddData(DiskIO());
    const UTILS::Utils<DiskIO, int>& base = both;
    EXPECT_NE(std::string(base.derived_class()), "");
}

}  // namespace
