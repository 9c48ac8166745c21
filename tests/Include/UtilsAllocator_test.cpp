#include "UtilsAllocator.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "UtilsByte.h"
#include "UtilsVector.h"
#include "thrown_message.h"

namespace {

using UTILS::MemObject;
using UTILS::UtilsAllocator;
using UTILS::UtilsByte;

const std::string incorrectCall = "The Function Call Is Incorrect Or Cannot Be Called As Such - ";
const std::string inAllocator = R"(; File:  ..\..\Include\UtilsAllocator)";
const std::string notInitialised =
    incorrectCall + "Cannot Allocate Memory Internally Without Constructor Initialization" + inAllocator;
const std::string refusesMemory = incorrectCall + "UtilsAllocator<T>::ReAllocateMemory" + inAllocator;
const std::string refusesMatrix = incorrectCall + "UtilsAllocator<T>::ReAllocateMatrix" + inAllocator;
const std::string emptyRequest = "Command Line Parameter Is Incorrect - 0" + inAllocator;
const std::string nullBlock = "Inavlid Argument Passed - 0" + inAllocator;

TEST(Allocator, HoldsExactlyWhatIsAskedAndKeepsContents) {
    UtilsAllocator<int> block(3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(block[static_cast<DWORD>(i)], 0);
        block[static_cast<DWORD>(i)] = i + 1;
    }
    for (const DWORD count : {100u, 101u, 2u, 50u}) {
        block.ReAllocateMemory(count);
        EXPECT_EQ(block.GetCount(), count);
        EXPECT_EQ(block[0], 1);
        EXPECT_EQ(block[1], 2);
    }
    EXPECT_EQ(block[2], 0) << "cut off, then new again";
    EXPECT_EQ(thrownMessage<std::out_of_range>([&] { block.Retrieve(50); }),
              "Out Of Range Error - 50:50" + inAllocator);
    block.Clear();
    EXPECT_EQ(block[0], 0);
}

TEST(Allocator, HoldsObjects) {
    UtilsAllocator<std::string> block(1);
    block[0] = std::string(100, 'x');
    block.ReAllocateMemory(5);
    block[4] = "last";
    const UtilsAllocator<std::string> copy(block);
    block.ReAllocateMemory(1);
    block[0] += 'y';
    EXPECT_EQ(copy[0], std::string(100, 'x'));
    EXPECT_EQ(copy[4], "last");
    EXPECT_EQ(block[0].size(), 101u);
}

TEST(Allocator, RefusesInOrder) {
    UtilsAllocator<char> none;
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { none.ReAllocateMemory(0); }), refusesMemory);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { none.ReAllocateMatrix(1); }), refusesMatrix);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { none.Clear(); }), notInitialised);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { none.ReleaseMemory(); }), nullBlock);

    UtilsAllocator<char> matrix(2, 1);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { matrix.ReAllocateMemory(0); }), emptyRequest);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { matrix.ReAllocateMemory(4); }), refusesMemory);
    matrix.ReAllocateMatrix(4);
    EXPECT_EQ(matrix.GetCount(), 4u);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { matrix.ReAllocateMatrix(0); }), emptyRequest);

    UtilsAllocator<char> block(2);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { block.ReAllocateMatrix(4); }), refusesMatrix);
    block.ReleaseMemory();
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { block.ReAllocateMemory(4); }), nullBlock);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { block.ReleaseMemory(); }), nullBlock);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([] { UtilsAllocator<char> empty(0); }), nullBlock);
}

TEST(MemObject, KeepsLengthPlusTerminator) {
    MemObject<char> text;
    EXPECT_EQ(text.GetAllocatedCount(), 1u);
    text.Append("abc");
    text.Append("defg", 2);
    EXPECT_EQ(text.GetAllocatedCount(), 6u);
    EXPECT_STREQ(text.c_str(), "abcde");
    text.Append(nullptr);
    text.Insert("--", 0, 5);
    text.Replace("XYZ", 0, 5);
    EXPECT_STREQ(text.c_str(), "abcdeXY");
    text.Truncate(6);
    EXPECT_EQ(text.GetAllocatedCount(), 2u);

    MemObject<unsigned char> bytes;
    const unsigned char some[] = {1, 2, 3};
    bytes.Append(some);
    bytes.Append(some, 3);
    EXPECT_EQ(bytes.length(), 4u);
    EXPECT_EQ(bytes.GetAllocatedCount(), 4u);
    EXPECT_EQ(thrownMessage<std::out_of_range>([&] { bytes.Retrieve(4); }),
              R"(Out Of Range Error - 4:4; File:  ..\..\Include\UtilsVector)");
}

TEST(MemObject, EraseReturnsToTheInitialSize) {
    MemObject<char> text(DWORD{8});
    text.Append("a text that is longer than that");
    text.Erase();
    EXPECT_EQ(text.length(), 0u);
    EXPECT_EQ(text.GetAllocatedCount(), 8u);
    EXPECT_EQ(std::string(text.c_str(), 8), std::string(8, '\0'));
}

TEST(MemObject, HoldsElementsOfAnyClass) {
    const std::string value(40, 'v');
    MemObject<std::string> node(&value, 1);
    MemObject<std::string> copy(node);
    node.Retrieve(0) = "changed";
    copy.Append(copy.c_str(), 1);
    EXPECT_EQ(copy.length(), 2u);
    EXPECT_EQ(copy.Retrieve(1), value);
    copy.Swap(node);
    EXPECT_EQ(copy.Retrieve(0), "changed");
    EXPECT_EQ(node.length(), 2u);
}

// Lengths near 2^32 must be refused before anything is read or reserved.
TEST(MemObject, RefusesLengthsThatDoNotFit) {
    MemObject<char> text("abc");
    for (const DWORD length : {0xFFFFFFFFu, 0xFFFFFFFCu}) {
        EXPECT_THROW(text.Append("x", length), std::bad_alloc);
        EXPECT_THROW(text.Insert("x", length, 1), std::bad_alloc);
    }
    EXPECT_THROW(text.Truncate(0xFFFFFFFF), std::out_of_range);
    EXPECT_THROW(text.TruncateAtPosition(1, 0xFFFFFFFF), std::out_of_range);
    EXPECT_THROW(text.TruncateAtPosition(0xFFFFFFFF, 1), std::out_of_range);
    EXPECT_THROW(text.Insert("x", 1, 0xFFFFFFFF), std::out_of_range);
    EXPECT_STREQ(text.c_str(), "abc");
    EXPECT_EQ(text.length(), 3u);
}

TEST(Bytes, RefuseChangesWithoutAnInitialisedBlock) {
    UtilsByte bytes;
    bytes = UtilsAllocator<unsigned char>();
    const unsigned char some[] = {1, 2, 3};
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { bytes.Append(some, 3); }), refusesMemory);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { bytes.Insert(some, 3, 0); }), notInitialised);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { bytes.Replace(some, 3, 0); }), notInitialised);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { bytes.Erase(); }), notInitialised);
    // The refused append has raised the length; nothing may follow it out of the block.
    EXPECT_THROW(bytes.RetrieveByte(0), std::out_of_range);
    EXPECT_EQ(bytes.Search(1), UTILS::not_found);
    EXPECT_EQ(bytes.Compare(some, 3), -1);
    bytes.XORData(1);
    UtilsByte copy(bytes);
    copy = UtilsAllocator<unsigned char>(2);
    copy.Append(some, 1);
    EXPECT_EQ(copy.length(), 3u);
    EXPECT_EQ(copy[2], 1);
}

TEST(Bytes, RefuseToGrowAMatrix) {
    UtilsByte bytes;
    bytes = UtilsAllocator<unsigned char>(4, 1);
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { bytes.Append(7); }), refusesMemory);
    EXPECT_THROW(bytes.RetrieveByte(4), std::out_of_range);
    bytes.Reverse();
    bytes.Sort();
}

TEST(Bytes, RefuseToReverseNothing) {
    UtilsByte bytes;
    EXPECT_EQ(thrownMessage<std::bad_alloc>([&] { bytes.Reverse(); }), nullBlock);
    bytes.Append(1);
    bytes.TruncateString(1);
    EXPECT_EQ(bytes.length(), 0u);
    EXPECT_THROW(bytes.Reverse(), std::bad_alloc);
    bytes.Erase();
    bytes.Append(5);
    EXPECT_EQ(bytes[0], 5);
}

TEST(Bytes, AreMovedWithTheirElements) {
    UtilsByte first;
    first.Append(5);
    UtilsByte second(std::move(first));
    EXPECT_EQ(second[0], 5);
    UtilsByte third;
    third = std::move(second);
    EXPECT_EQ(third.length(), 1u);
    EXPECT_EQ(third[0], 5);
}

}  // namespace
