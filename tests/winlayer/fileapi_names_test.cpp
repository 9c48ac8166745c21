#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "support/expect_fails.h"
#include "support/open_path.h"
#include "support/temp_folder.h"

namespace {

using Names = std::vector<std::string>;

TEST(FileAttributes, failOnWhatIsMissing) {
    const TempFolder folder;
    EXPECT_FAILS(GetFileAttributesA((folder / "none").c_str()), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(GetFileAttributesA((folder / "none\\a").c_str()), ERROR_PATH_NOT_FOUND);
    EXPECT_FAILS(SetFileAttributesA((folder / "none").c_str(), 0x80), ERROR_FILE_NOT_FOUND);
}

TEST(DeleteFile, refusesWhatMustStay) {
    const TempFolder folder;
    const std::string file = folder.file("a.txt");
    EXPECT_FAILS(DeleteFileA((folder / "none").c_str()), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(DeleteFileA(folder.directory("d").c_str()), ERROR_ACCESS_DENIED);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_FAILS(DeleteFileA(file.c_str()), ERROR_ACCESS_DENIED);
    SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_HIDDEN);
    const HANDLE open = openPath(file);
    EXPECT_FAILS(DeleteFileA(file.c_str()), ERROR_SHARING_VIOLATION);
    CloseHandle(open);
    EXPECT_TRUE(DeleteFileA(file.c_str()));
    EXPECT_FALSE(exists(file));
}

TEST(Directories, areMadeAndRemovedOnlyWhereThatIsPossible) {
    const TempFolder folder;
    const std::string directory = folder.directory("d");
    const std::string file = folder.file("d\\a.txt");
    EXPECT_FAILS(CreateDirectoryA(directory.c_str(), nullptr), ERROR_ALREADY_EXISTS);
    EXPECT_FAILS(CreateDirectoryA(file.c_str(), nullptr), ERROR_ALREADY_EXISTS);
    EXPECT_FAILS(CreateDirectoryA((folder / "x\\y").c_str(), nullptr), ERROR_PATH_NOT_FOUND);
    EXPECT_TRUE(CreateDirectoryA((directory + "\\sub\\").c_str(), nullptr));
    EXPECT_FAILS(RemoveDirectoryA(directory.c_str()), ERROR_DIR_NOT_EMPTY);
    EXPECT_FAILS(RemoveDirectoryA(file.c_str()), ERROR_DIRECTORY);
    EXPECT_FAILS(RemoveDirectoryA((folder / "none").c_str()), ERROR_FILE_NOT_FOUND);
    EXPECT_TRUE(RemoveDirectoryA((directory + "\\sub").c_str()));
    SetFileAttributesA(directory.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(DeleteFileA(file.c_str())) << "a read-only directory's files may go";
}

std::string currentDirectory() {
    std::array<char, MAX_PATH> buffer{};
    const DWORD length = GetCurrentDirectoryA(static_cast<DWORD>(buffer.size()), buffer.data());
    return std::string(buffer.data(), length);
}

TEST(CurrentDirectory, isWhereRelativePathsStart) {
    const TempFolder folder;
    const std::string before = currentDirectory();
    folder.directory("d");
    folder.file("a.txt", "outer");
    folder.file("d\\a.txt", "inner");
    ASSERT_TRUE(SetCurrentDirectoryA((folder / "d").c_str()));
    EXPECT_EQ(currentDirectory(), folder / "d");
    EXPECT_EQ(readFile("a.txt"), "inner");
    EXPECT_EQ(readFile(".\\..\\a.txt"), "outer");
    EXPECT_EQ(readFile("../d/./a.txt"), "inner");
    EXPECT_EQ(readFile(folder.path().substr(0, 2) + "a.txt"), "inner") << "a drive without a root";
    EXPECT_FAILS(SetCurrentDirectoryA("none"), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(SetCurrentDirectoryA("a.txt"), ERROR_DIRECTORY);
    EXPECT_EQ(currentDirectory(), folder / "d");
    char small = '#';
    EXPECT_EQ(GetCurrentDirectoryA(1, &small), (folder / "d").size() + 1)
        << "what a large enough buffer needs";
    EXPECT_FALSE(RemoveDirectoryA((folder / "d").c_str()));
    ASSERT_TRUE(SetCurrentDirectoryA(before.c_str()));
}

// Windows drops dots and blanks at the end of a name.
TEST(Names, loseDotsAndBlanksAtTheEnd) {
    const TempFolder folder;
    folder.file("a.txt. ", "x");
    EXPECT_EQ(readFile(folder / "a.txt"), "x");
    EXPECT_EQ(readFile(folder / "a.txt..."), "x");
    EXPECT_TRUE(exists(folder.path() + "\\"));
}

// Sorted by their bytes.
Names find(const std::string& pattern) {
    Names names = namesFound(pattern);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_MORE_FILES});
    std::sort(names.begin(), names.end());
    return names;
}

TEST(FindFile, matchesWildcardsAsWindowsDoes) {
    const TempFolder folder;
    for (const char* name : {"a", "ab", "abc.txt", "B.TXT", "c.tar.gz", "d.htm"}) {
        folder.file(name);
    }
    const Names all = {".", "..", "B.TXT", "a", "ab", "abc.txt", "c.tar.gz", "d.htm"};
    EXPECT_EQ(find(folder / "*"), all);
    EXPECT_EQ(find(folder / "*.*"), all);
    EXPECT_EQ(find(folder / "*.txt"), (Names{"B.TXT", "abc.txt"}));
    EXPECT_EQ(find(folder / "A*"), (Names{"a", "ab", "abc.txt"}));
    EXPECT_EQ(find(folder / "?.*"), (Names{".", "..", "B.TXT", "a", "c.tar.gz", "d.htm"}));
    EXPECT_EQ(find(folder / "*.g?"), Names{"c.tar.gz"});
    EXPECT_EQ(find(folder / "*b*.t*"), (Names{"B.TXT", "abc.txt"}));
    EXPECT_EQ(find(folder / "b.txt"), Names{"B.TXT"}) << "as the file is spelt";
}

TEST(FindFile, tellsWhyThereIsNothing) {
    const TempFolder folder;
    folder.file("a.txt");
    WIN32_FIND_DATAA data{};
    const auto search = [&](const std::string& pattern) { return FindFirstFileA(pattern.c_str(), &data); };
    EXPECT_FAILS(search(folder / "*.none"), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(search(folder / "none"), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(search(folder / "none\\*"), ERROR_PATH_NOT_FOUND);
    EXPECT_FAILS(search(folder.path() + "\\"), ERROR_FILE_NOT_FOUND);
    EXPECT_FAILS(FindNextFileA(INVALID_HANDLE_VALUE, &data), ERROR_INVALID_HANDLE);
    EXPECT_FAILS(FindClose(INVALID_HANDLE_VALUE), ERROR_INVALID_HANDLE);
}

TEST(FindFile, reportsWhatTheFileIs) {
    const TempFolder folder;
    const std::string path = folder.file("a.txt", std::string(70'000, 'x'));
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    WIN32_FIND_DATAA data{};
    const HANDLE search = FindFirstFileA((folder / "A.*").c_str(), &data);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    EXPECT_STREQ(data.cFileName, "a.txt");
    EXPECT_EQ(data.nFileSizeLow, DWORD{70'000});
    EXPECT_EQ(data.nFileSizeHigh, DWORD{0});
    EXPECT_EQ(data.dwFileAttributes, DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE});
    // Later than the year 2001 and before 2200.
    EXPECT_GT(data.ftLastWriteTime.dwHighDateTime, DWORD{0x01C07000});
    EXPECT_LT(data.ftLastWriteTime.dwHighDateTime, DWORD{0x02A00000});
    FindClose(search);
}

// The way a tree is erased: each entry goes while the search that found it is still open.
TEST(FindFile, goesOnWhileItsEntriesAreDeleted) {
    const TempFolder folder;
    constexpr int count = 500;
    for (int i = 0; i < count; ++i) {
        folder.file("file" + std::to_string(i));
    }
    WIN32_FIND_DATAA data{};
    const HANDLE search = FindFirstFileA((folder / "file*").c_str(), &data);
    int deleted = 0;
    do {
        deleted += DeleteFileA((folder / data.cFileName).c_str());
    } while (FindNextFileA(search, &data) != 0);
    FindClose(search);
    EXPECT_EQ(deleted, count);
    EXPECT_EQ(find(folder / "*"), (Names{".", ".."}));
}

}  // namespace
