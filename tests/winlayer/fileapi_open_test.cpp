#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "support/expect_fails.h"
#include "support/open_path.h"
#include "support/temp_folder.h"

namespace {

// What each disposition does with a file that is there and with one that is not: result, last error and the
// size the file then has.
TEST(CreateFile, followsItsDisposition) {
    struct Row {
        DWORD disposition;
        bool there;
        bool opens;
        DWORD lastError;
        std::string content;
    };
    const Row rows[] = {
        {CREATE_NEW, false, true, 0, ""},
        {CREATE_NEW, true, false, ERROR_FILE_EXISTS, "old"},
        {CREATE_ALWAYS, false, true, 0, ""},
        {CREATE_ALWAYS, true, true, ERROR_ALREADY_EXISTS, ""},
        {OPEN_EXISTING, false, false, ERROR_FILE_NOT_FOUND, ""},
        {OPEN_EXISTING, true, true, 0, "old"},
        {OPEN_ALWAYS, false, true, 0, ""},
        {OPEN_ALWAYS, true, true, ERROR_ALREADY_EXISTS, "old"},
        {TRUNCATE_EXISTING, false, false, ERROR_FILE_NOT_FOUND, ""},
        {TRUNCATE_EXISTING, true, true, 0, ""},
        {0, true, false, ERROR_INVALID_PARAMETER, "old"},
        {6, true, false, ERROR_INVALID_PARAMETER, "old"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.disposition) + (row.there ? " there" : " missing"));
        const TempFolder folder;
        const std::string path = row.there ? folder.file("a.txt", "old") : folder / "a.txt";
        SetLastError(0xBAD);
        const HANDLE file = openPath(path, GENERIC_READ | GENERIC_WRITE, row.disposition);
        EXPECT_EQ(GetLastError(), row.lastError);
        EXPECT_EQ(file != INVALID_HANDLE_VALUE, row.opens);
        if (file != INVALID_HANDLE_VALUE) {
            CloseHandle(file);
        }
        EXPECT_EQ(exists(path), row.there || row.opens);
        if (exists(path)) {
            EXPECT_EQ(readFile(path), row.content);
        }
    }
}

TEST(CreateFile, tellsAMissingFileFromAMissingDirectory) {
    const TempFolder folder;
    folder.file("plain");
    EXPECT_FAILS(openPath(folder / "none"), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(openPath(folder / "none\\a"), ERROR_PATH_NOT_FOUND);
    EXPECT_FAILS(openPath(folder / "none\\a", GENERIC_WRITE, CREATE_ALWAYS), ERROR_PATH_NOT_FOUND);
    EXPECT_FAILS(openPath(folder / "plain\\a", GENERIC_WRITE, CREATE_ALWAYS), ERROR_PATH_NOT_FOUND);
    EXPECT_FAILS(openPath(""), ERROR_PATH_NOT_FOUND);
}

TEST(CreateFile, refusesDirectoriesAndImpossibleNames) {
    const TempFolder folder;
    EXPECT_FAILS(openPath(folder.path()), ERROR_ACCESS_DENIED);
    EXPECT_FAILS(openPath(folder.path(), GENERIC_WRITE, CREATE_ALWAYS), ERROR_ACCESS_DENIED);
    for (const std::string name : {"a?", "a*b", "a<b", "a>b", "a|b", "a\"b", "a\001b"}) {
        EXPECT_FAILS(openPath(folder / name, GENERIC_WRITE, CREATE_ALWAYS), ERROR_INVALID_NAME) << name;
    }
    WIN32_FIND_DATAA data;
    EXPECT_EQ(FindFirstFileA((folder / "a*").c_str(), &data), INVALID_HANDLE_VALUE);
}

TEST(CreateFile, keepsToTheSharingOfEarlierOpens) {
    struct Row {
        DWORD firstAccess, firstSharing, access, sharing;
        bool opens;
    };
    constexpr DWORD read = GENERIC_READ;
    constexpr DWORD write = GENERIC_WRITE;
    constexpr DWORD shareRead = FILE_SHARE_READ;
    constexpr DWORD shareWrite = FILE_SHARE_WRITE;
    constexpr DWORD shareBoth = shareRead | shareWrite;
    const Row rows[] = {
        {read, shareRead, read, shareRead, true},
        {read, 0, read, shareBoth, false},
        {read, shareRead, write, shareBoth, false},
        {read, shareBoth, write, shareRead, true},
        {write, shareRead, read, shareRead, false},
        {write, shareRead, read, shareBoth, true},
        {write, shareWrite, read, shareBoth, false},
        {write, shareBoth, write, shareBoth, true},
        {write, shareBoth, write, 0, false},
        {0, 0, read | write, 0, true},
        {write, 0, 0, 0, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << std::hex << row.firstAccess << "/" << row.firstSharing << " then "
                                        << row.access << "/" << row.sharing);
        const TempFolder folder;
        const std::string path = folder.file("a.txt", "x");
        const HANDLE first = openPath(path, row.firstAccess, OPEN_EXISTING, 0, row.firstSharing);
        ASSERT_NE(first, INVALID_HANDLE_VALUE);
        const DWORD error = errorOfOpen(path, row.access, OPEN_EXISTING, 0, row.sharing);
        EXPECT_EQ(error, row.opens ? DWORD{0} : DWORD{ERROR_SHARING_VIOLATION});
        CloseHandle(first);
        EXPECT_EQ(errorOfOpen(path, row.access, OPEN_EXISTING, 0, row.sharing), DWORD{0})
            << "after the close";
    }
}

TEST(CreateFile, countsTheOpenThatMadeTheFile) {
    const TempFolder folder;
    const std::string path = folder / "a.txt";
    const HANDLE maker = openPath(path, GENERIC_WRITE, CREATE_NEW, 0, FILE_SHARE_READ);
    ASSERT_NE(maker, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(writeTo(maker, "kept"));
    EXPECT_FAILS(openPath(path, GENERIC_READ, OPEN_EXISTING, 0, FILE_SHARE_READ), ERROR_SHARING_VIOLATION);
    EXPECT_FAILS(openPath(path, GENERIC_WRITE, CREATE_ALWAYS), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(readFile(path), "kept") << "a refused open truncates nothing";
    EXPECT_FAILS(DeleteFileA(path.c_str()), ERROR_SHARING_VIOLATION);
    CloseHandle(maker);
    EXPECT_EQ(errorOfOpen(path, GENERIC_WRITE, CREATE_ALWAYS, 0, 0), DWORD{0});
}

// A file that is made read-only can be written through the handle that made it.
TEST(CreateFile, givesANewFileItsAttributes) {
    const TempFolder folder;
    for (const DWORD attributes : {DWORD{FILE_ATTRIBUTE_NORMAL}, DWORD{FILE_ATTRIBUTE_READONLY}, DWORD{0x06},
                                   DWORD{0x07}, DWORD{0x20}, DWORD{0x22}}) {
        SCOPED_TRACE(attributes);
        const std::string path = folder / std::to_string(attributes);
        const HANDLE file =
            openPath(path, GENERIC_WRITE, CREATE_ALWAYS, attributes | FILE_FLAG_SEQUENTIAL_SCAN);
        ASSERT_NE(file, INVALID_HANDLE_VALUE);
        EXPECT_TRUE(writeTo(file, "abc"));
        CloseHandle(file);
        EXPECT_EQ(readFile(path), "abc");
        EXPECT_EQ(GetFileAttributesA(path.c_str()), (attributes & 0x07) | FILE_ATTRIBUTE_ARCHIVE);
    }
}

// The same file is meant whatever the case of its name, also by a call that would make one.
TEST(CreateFile, findsNamesWithoutCase) {
    const TempFolder folder;
    folder.directory("Sub");
    folder.file("Sub\\ReadMe.TXT", "old");
    EXPECT_EQ(readFile(folder / "SUB\\readme.txt"), "old");
    EXPECT_FAILS(openPath(folder / "sub\\README.txt", GENERIC_WRITE, CREATE_NEW), ERROR_FILE_EXISTS);
    writeFile(folder / "sub\\README.txt", "new");
    EXPECT_EQ(readFile(folder / "Sub\\ReadMe.TXT"), "new");
    writeFile(folder / "sUB\\Other", "");
    EXPECT_TRUE(exists(folder / "Sub\\Other"));
    EXPECT_FAILS(CreateDirectoryA((folder / "SUB").c_str(), nullptr), ERROR_ALREADY_EXISTS);
}

TEST(CreateFile, deletesOnTheLastClose) {
    const TempFolder folder;
    const std::string path = folder / "a.txt";
    const HANDLE file =
        openPath(path, GENERIC_WRITE, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, FILE_SHARE_DELETE);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    HANDLE copy = nullptr;
    ASSERT_TRUE(DuplicateHandle(GetCurrentProcess(), file, GetCurrentProcess(), &copy, 0, TRUE,
                                DUPLICATE_SAME_ACCESS));
    CloseHandle(file);
    EXPECT_TRUE(exists(path));
    CloseHandle(copy);
    EXPECT_FALSE(exists(path));
}

TEST(CreateFile, refusesTheRawDeviceThatIsNotThere) {
    EXPECT_FAILS(openPath("\\\\.\\PHYSICALDRIVE99"), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(openPath("\\\\.\\VWIN32"), ERROR_FILE_NOT_FOUND);
}

}  // namespace
