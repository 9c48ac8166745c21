#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

#include "support/expect_fails.h"
#include "support/open_path.h"
#include "support/temp_folder.h"

namespace {

class FileTransfer : public testing::Test {
protected:
    ~FileTransfer() override { close(); }

    void open(DWORD access, DWORD disposition, DWORD flags = FILE_ATTRIBUTE_NORMAL) {
        close();
        file_ = openPath(folder_ / "a.bin", access, disposition, flags);
        ASSERT_NE(file_, INVALID_HANDLE_VALUE);
    }
    void close() { CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE)); }
    const TempFolder folder_;
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

TEST_F(FileTransfer, readsUpToTheEndAndThenNothing) {
    folder_.file("a.bin", "abcdef");
    open(GENERIC_READ, OPEN_EXISTING);
    EXPECT_EQ(readFrom(file_, 4), "abcd");
    EXPECT_EQ(readFrom(file_, 4), "ef");
    SetLastError(0xBAD);
    EXPECT_EQ(readFrom(file_, 4), "");
    EXPECT_EQ(GetLastError(), DWORD{0xBAD}) << "a call that succeeds leaves the last error alone";
}

TEST_F(FileTransfer, needsTheAccessOfItsOpen) {
    DWORD moved = 0xBAD;
    std::array<char, 4> buffer{};
    open(GENERIC_WRITE, CREATE_ALWAYS);
    EXPECT_FAILS(ReadFile(file_, buffer.data(), 4, &moved, nullptr), ERROR_ACCESS_DENIED);
    EXPECT_EQ(moved, DWORD{0});
    open(GENERIC_READ, OPEN_EXISTING);
    EXPECT_FAILS(WriteFile(file_, "abcd", 4, &moved, nullptr), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(SetEndOfFile(file_));
    EXPECT_FAILS(FlushFileBuffers(file_), ERROR_ACCESS_DENIED);
}

TEST_F(FileTransfer, movesItsPositionAsAskedAndNoFurther) {
    open(GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
    EXPECT_TRUE(writeTo(file_, "0123456789"));
    EXPECT_EQ(SetFilePointer(file_, 2, nullptr, FILE_BEGIN), DWORD{2});
    EXPECT_EQ(SetFilePointer(file_, 3, nullptr, FILE_CURRENT), DWORD{5});
    EXPECT_EQ(readFrom(file_, 1), "5");
    EXPECT_EQ(SetFilePointer(file_, -2, nullptr, FILE_END), DWORD{8});
    EXPECT_EQ(readFrom(file_, 9), "89");
    EXPECT_FAILS(SetFilePointer(file_, -11, nullptr, FILE_END), ERROR_NEGATIVE_SEEK);
    EXPECT_EQ(SetFilePointer(file_, 0, nullptr, FILE_CURRENT), DWORD{10}) << "a failed move moves nothing";
    EXPECT_FAILS(SetFilePointer(file_, 0, nullptr, 3), ERROR_INVALID_PARAMETER);
}

TEST_F(FileTransfer, countsPositionsIn64Bits) {
    open(GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
    LONG high = 1;
    SetLastError(0xBAD);
    EXPECT_EQ(SetFilePointer(file_, -1, &high, FILE_BEGIN), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), DWORD{NO_ERROR}) << "a position whose low half looks like the failure value";
    EXPECT_EQ(high, 1);
    high = 0;
    EXPECT_EQ(SetFilePointer(file_, 1, &high, FILE_CURRENT), DWORD{0});
    EXPECT_EQ(high, 2);
    EXPECT_TRUE(writeTo(file_, "x"));
    DWORD sizeHigh = 0;
    EXPECT_EQ(GetFileSize(file_, &sizeHigh), DWORD{1});
    EXPECT_EQ(sizeHigh, DWORD{2});
    high = 0;
    EXPECT_EQ(SetFilePointer(file_, 1, &high, FILE_BEGIN), DWORD{1});
    EXPECT_TRUE(SetEndOfFile(file_));
}

TEST_F(FileTransfer, cutsAndStretchesAtThePosition) {
    open(GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS);
    EXPECT_TRUE(writeTo(file_, "abcdef"));
    SetFilePointer(file_, 2, nullptr, FILE_BEGIN);
    EXPECT_TRUE(SetEndOfFile(file_));
    EXPECT_EQ(GetFileSize(file_, nullptr), DWORD{2});
    SetFilePointer(file_, 4, nullptr, FILE_BEGIN);
    EXPECT_TRUE(writeTo(file_, "z"));
    EXPECT_TRUE(FlushFileBuffers(file_));
    close();
    EXPECT_EQ(readFile(folder_ / "a.bin"), std::string("ab\0\0z", 5));
}

// With an OVERLAPPED block the offset comes from the block, whatever came before. A finished transfer signals
// the block's event, once for an automatic one.
TEST_F(FileTransfer, takesItsOffsetFromTheBlockAndSignalsItsEvent) {
    open(GENERIC_READ | GENERIC_WRITE, CREATE_ALWAYS, FILE_FLAG_OVERLAPPED);
    OVERLAPPED block{};
    block.hEvent = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    const auto done = [&](BOOL result) {
        DWORD moved = 0;
        EXPECT_TRUE(result != 0 || GetLastError() == ERROR_IO_PENDING);
        EXPECT_TRUE(GetOverlappedResult(file_, &block, &moved, TRUE));
        EXPECT_EQ(WaitForSingleObject(file_, 5000), WAIT_OBJECT_0);
        return moved;
    };
    block.Offset = 3;
    EXPECT_EQ(done(WriteFile(file_, "xyz", 3, nullptr, &block)), DWORD{3});
    block.Offset = 2;
    std::array<char, 8> buffer{};
    EXPECT_EQ(done(ReadFile(file_, buffer.data(), 8, nullptr, &block)), DWORD{4});
    EXPECT_EQ(std::string(buffer.data(), 4), std::string("\0xyz", 4));
    block.Offset = 6;
    DWORD moved = 0xBAD;
    EXPECT_FALSE(ReadFile(file_, buffer.data(), 8, nullptr, &block));
    if (GetLastError() == ERROR_IO_PENDING) {
        EXPECT_FALSE(GetOverlappedResult(file_, &block, &moved, TRUE));
    }
    EXPECT_EQ(GetLastError(), DWORD{ERROR_HANDLE_EOF});
    EXPECT_FAILS(ReadFile(file_, buffer.data(), 8, &moved, nullptr), ERROR_INVALID_PARAMETER)
        << "such a file has no position";

    ResetEvent(block.hEvent);
    WriteFile(file_, "x", 1, nullptr, &block);
    EXPECT_EQ(WaitForSingleObject(block.hEvent, 5000), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(block.hEvent, 0), DWORD{WAIT_TIMEOUT});
    CloseHandle(block.hEvent);
}

}  // namespace
