#include <windows.h>
#include <winioctl.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <string>

#include "support/expect_fails.h"
#include "support/open_path.h"
#include "support/temp_folder_machine.h"

// What Windows enforces although the host would not, least of all for its superuser, and how it is kept
// there.

namespace {

class FileRules : public testing::Test {
protected:
    ~FileRules() override { EXPECT_EQ(machine_->handles.openCount(), 0u); }

    std::string stored(const std::string& name) const {
        std::array<char, 64> text{};
        const ssize_t size =
            ::getxattr((hostPath(folder_) / name).c_str(), "user.DOSATTRIB", text.data(), text.size());
        return size < 0 ? "none" : std::string(text.data(), static_cast<std::size_t>(size));
    }
    void store(const std::string& name, const std::string& text) const {
        ASSERT_EQ(
            ::setxattr((hostPath(folder_) / name).c_str(), "user.DOSATTRIB", text.data(), text.size(), 0), 0);
    }
    mode_t mode(const std::string& name) const {
        struct stat facts;
        EXPECT_EQ(::stat((hostPath(folder_) / name).c_str(), &facts), 0);
        return facts.st_mode & 0777;
    }

    winlayer::ScopedMachine machine_;
    const TempFolder folder_;
};

TEST_F(FileRules, refuseToWriteAReadOnlyFile) {
    const std::string path = folder_.file("a.txt", "kept");
    ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
    for (const DWORD disposition : {OPEN_EXISTING, OPEN_ALWAYS, CREATE_ALWAYS, TRUNCATE_EXISTING}) {
        EXPECT_FAILS(openPath(path, GENERIC_WRITE, disposition), ERROR_ACCESS_DENIED) << disposition;
    }
    EXPECT_EQ(errorOfOpen(path), DWORD{0});
    EXPECT_EQ(readFile(path), "kept");
}

// To overwrite a hidden or system file the caller must name that attribute.
TEST_F(FileRules, letAHiddenFileBeOverwrittenOnlyByName) {
    const std::string path = folder_.file("a.txt", "kept");
    ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM));
    for (const DWORD named : {FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_HIDDEN}) {
        EXPECT_FAILS(openPath(path, GENERIC_WRITE, CREATE_ALWAYS, named), ERROR_ACCESS_DENIED);
    }
    EXPECT_EQ(readFile(path), "kept");
    EXPECT_EQ(errorOfOpen(path, GENERIC_WRITE, CREATE_ALWAYS, FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM),
              DWORD{0});
    EXPECT_EQ(readFile(path), "");
    EXPECT_EQ(GetFileAttributesA(path.c_str()),
              DWORD{FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE});
}

TEST_F(FileRules, keepAttributes) {
    const std::string file = folder_.file(".profile");
    const std::string directory = folder_.directory("d");
    EXPECT_EQ(GetFileAttributesA(file.c_str()), FILE_ATTRIBUTE_ARCHIVE) << "a dot in front tells nothing";
    EXPECT_EQ(GetFileAttributesA(directory.c_str()), FILE_ATTRIBUTE_DIRECTORY);
    for (DWORD bits = 0; bits < 0x40; ++bits) {
        const DWORD kept = bits & 0x27;
        SCOPED_TRACE(kept);
        EXPECT_TRUE(SetFileAttributesA(file.c_str(), kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept));
        EXPECT_EQ(GetFileAttributesA(file.c_str()), kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept);
        EXPECT_TRUE(SetFileAttributesA(directory.c_str(), kept));
        EXPECT_EQ(GetFileAttributesA(directory.c_str()), FILE_ATTRIBUTE_DIRECTORY | kept);
    }
    SetFileAttributesA(directory.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// Other programs read and write the same text, and whether nobody may write a file is the host's own
// knowledge.
TEST_F(FileRules, keepAttributesWhereOthersFindThem) {
    const std::string path = folder_.file("a.txt");
    EXPECT_EQ(stored("a.txt"), "none");
    SetFileAttributesA(path.c_str(), 0x21);
    EXPECT_EQ(stored("a.txt"), "none");
    EXPECT_EQ(mode("a.txt") & 0222, 0u);
    SetFileAttributesA(path.c_str(), 0x06);
    EXPECT_EQ(stored("a.txt"), "0x6");
    EXPECT_EQ(mode("a.txt") & 0200, 0200u);
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_ARCHIVE);
    EXPECT_EQ(stored("a.txt"), "none");

    store("a.txt", "0x22");
    EXPECT_EQ(GetFileAttributesA(path.c_str()), DWORD{0x22});
    store("a.txt", std::string("0x21\0", 5));
    EXPECT_EQ(GetFileAttributesA(path.c_str()), DWORD{0x21});
    EXPECT_FAILS(openPath(path, GENERIC_WRITE, OPEN_EXISTING), ERROR_ACCESS_DENIED);
    for (const char* foreign : {"", "rubbish", "0x", "22"}) {
        store("a.txt", foreign);
        EXPECT_EQ(GetFileAttributesA(path.c_str()), FILE_ATTRIBUTE_ARCHIVE) << foreign;
    }
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(GetFileAttributesA(path.c_str()), FILE_ATTRIBUTE_NORMAL);
}

// The null file system of the kernel keeps no extended attributes: /proc serves as one that cannot be written
// at all.
TEST_F(FileRules, claimOnlyWhatIsKept) {
    machine_->drives.mountFolder('P', "/proc");
    EXPECT_EQ(GetFileAttributesA("P:\\version") & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
    EXPECT_NE(errorOf(SetFileAttributesA("P:\\self\\status", FILE_ATTRIBUTE_HIDDEN)), DWORD{0});
}

TEST_F(FileRules, refuseAFilesNameThatEndsLikeADirectorys) {
    folder_.file("a");
    EXPECT_FAILS(openPath(folder_ / "a\\"), ERROR_INVALID_NAME);
    EXPECT_FAILS(openPath(folder_ / "b\\", GENERIC_WRITE, CREATE_NEW), ERROR_INVALID_NAME);
    EXPECT_FAILS(DeleteFileA((folder_ / "a/").c_str()), ERROR_INVALID_NAME);
    EXPECT_TRUE(exists(folder_ / "a"));
    WIN32_FIND_DATAA data;
    EXPECT_FAILS(FindFirstFileA((folder_ / "a\\*").c_str(), &data), ERROR_DIRECTORY);
}

TEST_F(FileRules, giveAFileNoDeviceCommandsAndNoPositionThatCannotBeReported) {
    const HANDLE file = openPath(folder_ / "a", GENERIC_WRITE, CREATE_NEW);
    DWORD count = 0xBAD;
    const auto askGeometry = [&] {
        return DeviceIoControl(file, IOCTL_DISK_GET_DRIVE_GEOMETRY, nullptr, 0, nullptr, 0, &count, nullptr);
    };
    EXPECT_FAILS(askGeometry(), ERROR_INVALID_FUNCTION);
    EXPECT_EQ(count, DWORD{0});
    LONG high = 1;
    EXPECT_EQ(SetFilePointer(file, -1, &high, FILE_BEGIN), INVALID_SET_FILE_POINTER);
    EXPECT_FAILS(SetFilePointer(file, 1, nullptr, FILE_CURRENT), ERROR_INVALID_PARAMETER);
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_FAILS(askGeometry(), ERROR_INVALID_HANDLE);
}

// A deletion that waits for the close is an access that others must share, like any other.
TEST_F(FileRules, countDeletionAsAnAccess) {
    const std::string path = folder_.file("a");
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE;
    HANDLE file = openPath(path);
    EXPECT_FAILS(openPath(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE),
                 ERROR_SHARING_VIOLATION);
    CloseHandle(file);
    file = openPath(path, GENERIC_READ, OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, share | FILE_SHARE_DELETE);
    EXPECT_FAILS(openPath(path), ERROR_SHARING_VIOLATION);
    CloseHandle(file);
    EXPECT_FALSE(exists(path));
}

std::string pathName(DWORD(WINAPI* function)(LPCSTR, LPSTR, DWORD), const std::string& path) {
    std::array<char, 300> buffer{};
    return {buffer.data(), function(path.c_str(), buffer.data(), static_cast<DWORD>(buffer.size()))};
}

// Each component as it is spelt on the disk, the rest of the path as it was given. 8.3 names are a
// diskette's: a file of a host folder has one name.
TEST_F(FileRules, spellEachElementOfALongNameAsItIsStored) {
    folder_.directory("A Long Directory Name");
    const std::string path = folder_.file("A Long Directory Name\\Some File.text");
    const std::string given = folder_ / "a long directory name\\SOME file.TEXT";
    const std::string longName = pathName(GetLongPathNameA, given);
    EXPECT_TRUE(longName.ends_with("\\A Long Directory Name\\Some File.text")) << longName;
    EXPECT_EQ(pathName(GetShortPathNameA, path), path);
    EXPECT_EQ(pathName(GetLongPathNameA, pathName(GetShortPathNameA, given)), longName) << "the same file";
    EXPECT_EQ(pathName(GetLongPathNameA, folder_ / "none"), "");
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    char small = '#';
    EXPECT_EQ(GetLongPathNameA(given.c_str(), &small, 1), longName.size() + 1);
    EXPECT_EQ(small, '#');
    WIN32_FIND_DATAA data;
    FindClose(FindFirstFileA((folder_ / "A*").c_str(), &data));
    EXPECT_STREQ(data.cAlternateFileName, "");
}

}  // namespace
