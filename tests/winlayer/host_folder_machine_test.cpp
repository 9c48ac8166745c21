#include <windows.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Include/ansi_literal.h"
#include "support/expect_fails.h"
#include "support/host_directory_machine.h"
#include "support/open_path.h"
#include "support/size_limit_machine.h"
#include "support/temp_folder_machine.h"
#include "winlayer/host_files/host_folder.h"
#include "winlayer/host_files/name_index.h"

// What a host folder may hold that Windows could not: names that differ only in case, other characters,
// links, pipes. The folder is made and removed on the host.

namespace {

using namespace UTILS::literals;

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class HostFolderTest : public testing::Test {
protected:
    HostFolderTest() { machine_->drives.mountFolder('H', host_.path()); }
    ~HostFolderTest() override { EXPECT_EQ(machine_->handles.openCount(), 0u); }

    void put(const std::string& name, const std::string& content = "") const {
        std::ofstream(host_ / name, std::ios::binary) << content;
    }
    static DWORD errorOfFind(const std::string& pattern) {
        namesFound(pattern);
        return GetLastError();
    }

    winlayer::ScopedMachine machine_;
    const HostDirectory host_;
};

TEST_F(HostFolderTest, prefersTheExactCase) {
    put("name", "lower");
    put("NAME", "upper");
    EXPECT_EQ(readFile("H:\\name"), "lower");
    EXPECT_EQ(readFile("H:\\NAME"), "upper");
    DeleteFileA("H:\\name");
    EXPECT_EQ(readFile("H:\\name"), "upper");
}

// A file that another program puts there is seen at once, also by the call that would have made one.
TEST_F(HostFolderTest, seesWhatOthersDoBetweenTwoCalls) {
    for (int round = 0; round < 50; ++round) {
        const std::string number = std::to_string(round);
        writeFile("H:\\own" + number, "");
        put("Other" + number, "theirs");
        EXPECT_FAILS(openPath("H:\\OTHER" + number, GENERIC_WRITE, CREATE_NEW), ERROR_FILE_EXISTS);
        fs::rename(host_ / ("Other" + number), host_ / ("Moved" + number));
        EXPECT_EQ(readFile("H:\\MOVED" + number), "theirs");
        fs::remove(host_ / ("Moved" + number));
        EXPECT_EQ(errorOfOpen("H:\\MOVED" + number, GENERIC_WRITE, CREATE_NEW), DWORD{0});
        EXPECT_TRUE(fs::exists(host_ / ("MOVED" + number)));
    }
    fs::remove_all(host_.path());
    EXPECT_FAILS(openPath("H:\\new", GENERIC_WRITE, CREATE_NEW), ERROR_PATH_NOT_FOUND);
    fs::create_directory(host_.path());
    put("New");
    EXPECT_FAILS(openPath("H:\\new", GENERIC_WRITE, CREATE_NEW), ERROR_FILE_EXISTS);
}

TEST_F(HostFolderTest, speaksTheCodePageOnTheWindowsSide) {
    put("Äpfel.txt", "utf-8");
    EXPECT_EQ(readFile("H:\\Äpfel.txt"_ansi), "utf-8");
    EXPECT_EQ(readFile("H:\\äPFEL.TXT"_ansi), "utf-8") << "without case";
    writeFile("H:\\straße"_ansi, "");
    EXPECT_TRUE(fs::exists(host_ / "straße"));
    EXPECT_EQ(namesFound("H:\\*"), (Names{"straße"_ansi, "Äpfel.txt"_ansi}));
    EXPECT_EQ(namesFound("H:\\?PFEL.*"), (Names{"Äpfel.txt"_ansi}));
    machine_->ansiCodePage = 65001;
    EXPECT_EQ(readFile("H:\\Äpfel.txt"), "utf-8");
    EXPECT_EQ(namesFound("H:\\?pfel.txt"), (Names{"Äpfel.txt"}));
}

// A name that Windows programs could not be told is never left out in silence.
TEST_F(HostFolderTest, failsAListingThatCouldNotBeWhole) {
    struct Row {
        const char* name;
        DWORD error;
    };
    const Row rows[] = {{"\xE4\xBD\xA0", ERROR_NO_UNICODE_TRANSLATION},
                        {"broken\xFF", ERROR_NO_UNICODE_TRANSLATION},
                        {"a:b", ERROR_INVALID_NAME},
                        {"a\\b", ERROR_INVALID_NAME},
                        {"what?", ERROR_INVALID_NAME},
                        {"dot.", ERROR_INVALID_NAME},
                        {"blank ", ERROR_INVALID_NAME},
                        {"line\nfeed", ERROR_INVALID_NAME}};
    put("plain");
    for (const Row& row : rows) {
        put(row.name);
        EXPECT_EQ(errorOfFind("H:\\*"), row.error) << row.name;
        EXPECT_EQ(errorOfFind("H:\\*.txt"), row.error) << row.name;
        EXPECT_EQ(errorOfFind("H:\\plain"), ERROR_NO_MORE_FILES) << "a name needs no listing";
        fs::remove(host_ / row.name);
    }
    EXPECT_EQ(errorOfFind("H:\\*"), ERROR_NO_MORE_FILES);
}

TEST_F(HostFolderTest, listsInTheOrderOfNamesWithoutCase) {
    for (const char* name : {"b", "C", "a", "B1"}) put(name);
    fs::create_directory(host_ / "AA");
    EXPECT_EQ(namesFound("H:\\*"), (Names{"a", "AA", "b", "B1", "C"})) << "a root has no dots";
    EXPECT_EQ(namesFound("H:\\AA\\*.*"), (Names{".", ".."}));
}

TEST_F(HostFolderTest, leavesOutWhatIsGoneBeforeItsTurn) {
    for (const char* name : {"a", "b", "c"}) put(name);
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA("H:\\*", &data);
    EXPECT_STREQ(data.cFileName, "a");
    fs::remove(host_ / "b");
    EXPECT_TRUE(FindNextFileA(search, &data));
    EXPECT_STREQ(data.cFileName, "c");
    EXPECT_FALSE(FindNextFileA(search, &data));
    FindClose(search);
}

TEST_F(HostFolderTest, followsLinksButNotInCircles) {
    fs::create_directories(host_ / "real/inner");
    put("real/inner/a.txt", "through");
    fs::create_symlink("real/inner", host_ / "short");
    EXPECT_EQ(readFile("H:\\short\\a.txt"), "through");
    EXPECT_EQ(namesFound("H:\\*"), (Names{"real", "short"}));
    EXPECT_EQ(namesFound("H:\\short\\*"), (Names{".", "..", "a.txt"}));
    EXPECT_EQ(GetFileAttributesA("H:\\short"), FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);

    fs::create_symlink("..", host_ / "real/inner/up");
    EXPECT_EQ(namesFound("H:\\real\\inner\\*"), (Names{".", "..", "a.txt", "up"}));
    EXPECT_EQ(errorOfFind("H:\\real\\inner\\up\\*"), ERROR_CANT_RESOLVE_FILENAME);
    EXPECT_EQ(errorOfFind("H:\\short\\up\\*"), ERROR_NO_MORE_FILES) << "there it leads to a new place";
    EXPECT_EQ(errorOfFind("H:\\short\\up\\inner\\up\\*"), ERROR_CANT_RESOLVE_FILENAME);
    fs::create_symlink("self", host_ / "real/self");
    EXPECT_FAILS(openPath("H:\\real\\self"), ERROR_CANT_RESOLVE_FILENAME);
}

TEST_F(HostFolderTest, removesALinkAndNotWhatItLeadsTo) {
    fs::create_directory(host_ / "real");
    put("file", "kept");
    fs::create_symlink("real", host_ / "directory-link");
    fs::create_symlink("file", host_ / "file-link");
    fs::create_symlink("nowhere", host_ / "dangling");
    fs::create_symlink("self", host_ / "self");
    fs::create_symlink("file/none", host_ / "through-file");
    EXPECT_TRUE(SetFileAttributesA("H:\\file", FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(GetFileAttributesA("H:\\file-link"), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_REPARSE_POINT);
    EXPECT_TRUE(SetFileAttributesA("H:\\file-link", FILE_ATTRIBUTE_NORMAL));
    EXPECT_FAILS(SetFileAttributesA("H:\\file-link", FILE_ATTRIBUTE_HIDDEN), ERROR_NOT_SUPPORTED);
    EXPECT_TRUE(RemoveDirectoryA("H:\\directory-link"));
    EXPECT_TRUE(DeleteFileA("H:\\file-link"));
    EXPECT_FAILS(openPath("H:\\dangling"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(namesFound("H:\\*"), (Names{"dangling", "file", "real", "self", "through-file"}));
    for (const char* const link : {"H:\\dangling", "H:\\SELF", "H:\\through-file"}) {
        EXPECT_EQ(GetFileAttributesA(link), FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT) << link;
        EXPECT_FAILS(RemoveDirectoryA(link), ERROR_DIRECTORY) << link;
        EXPECT_TRUE(DeleteFileA(link)) << link;
    }
    EXPECT_EQ(namesFound("H:\\*"), (Names{"file", "real"}));
    EXPECT_EQ(GetFileAttributesA("H:\\file"), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(readFile("H:\\file"), "kept");
    EXPECT_TRUE(fs::is_directory(host_ / "real"));
}

// A pipe would make an open wait for ever; a device could act on one.
TEST_F(HostFolderTest, opensNeitherPipesNorDevices) {
    ASSERT_EQ(::mkfifo((host_ / "pipe").c_str(), 0666), 0);
    fs::create_symlink("/dev/zero", host_ / "zero");
    for (const DWORD disposition : {OPEN_EXISTING, OPEN_ALWAYS, CREATE_ALWAYS, TRUNCATE_EXISTING}) {
        for (const DWORD access : {GENERIC_WRITE, GENERIC_READ | GENERIC_WRITE}) {
            EXPECT_FAILS(openPath("H:\\pipe", access, disposition), ERROR_ACCESS_DENIED);
            EXPECT_FAILS(openPath("H:\\zero", access, disposition), ERROR_ACCESS_DENIED);
        }
    }
    EXPECT_FAILS(openPath("H:\\pipe"), ERROR_ACCESS_DENIED);
    WIN32_FIND_DATAA data;
    FindClose(FindFirstFileA("H:\\pipe", &data));
    EXPECT_EQ(data.nFileSizeLow, DWORD{0});
}

// A full medium: the bytes that found room are counted, and the call says why it stopped.
TEST_F(HostFolderTest, reportsAShortWrite) {
    const HANDLE file = openPath("H:\\big", GENERIC_WRITE, CREATE_NEW);
    const std::string data(8192, 'x');
    DWORD count = 0;
    {
        const SizeLimit limit(4096);
        EXPECT_FAILS(WriteFile(file, data.data(), static_cast<DWORD>(data.size()), &count, nullptr),
                     ERROR_FILE_TOO_LARGE);
    }
    EXPECT_EQ(count, DWORD{4096});
    EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_CURRENT), DWORD{4096});
    CloseHandle(file);
}

// What is forgotten is looked for again, which takes a look at every name: with few folders remembered, files
// made in many in turn would cost the square of their number.
TEST(NameIndex, RemembersAsManyFoldersAsTheirNamesAllow) {
    const HostDirectory host;
    const auto folder = [&](int i) { return (host / std::to_string(i)).string(); };
    for (int i = 0; i < 100; ++i) fs::create_directory(folder(i));
    const auto remembered = [&](winlayer::NameIndex& index) {
        std::string found;
        int count = 0;
        for (int i = 0; i < 100; ++i) index.find(folder(i), "name", found);
        for (int i = 0; i < 100; ++i) count += index.knowsAbsent(folder(i), "name") ? 1 : 0;
        return count;
    };
    winlayer::NameIndex usual;
    EXPECT_EQ(remembered(usual), 100);
    winlayer::NameIndex small(20);
    EXPECT_EQ(remembered(small), 10) << "\".\" and \"..\" of each";
    for (int i = 0; i < 50; ++i) small.made(folder(99), std::to_string(i));
    EXPECT_TRUE(small.knowsAbsent(folder(99), "name"));
    EXPECT_FALSE(small.knowsAbsent(folder(98), "name"));
}

TEST(PrivateDrive, IsNotMadeForALookForWhatItCannotHave) {
    winlayer::ScopedMachine machine;
    const auto made = [&] {
        return std::dynamic_pointer_cast<winlayer::HostFolder>(machine->drives.find('C')->files)->isMade();
    };
    for (const char* file : {"C:\\none.dll", "C:\\WINDOWS\\none.dll", "C:\\windows\\System32\\none.dll"}) {
        EXPECT_FAILS(GetFileAttributesA(file), ERROR_FILE_NOT_FOUND) << file;
    }
    EXPECT_FALSE(made());
    EXPECT_FAILS(GetFileAttributesA("C:\\none\\none.dll"), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(GetFileAttributesA("C:\\WINDOWS\\temp"), FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_TRUE(made());
    EXPECT_EQ(GetFileAttributesA("C:\\none.dll"), INVALID_FILE_ATTRIBUTES);
}

TEST_F(HostFolderTest, hasNoLabelAndNoRawDevice) {
    std::array<char, 32> label{'#'};
    std::array<char, 32> fileSystem{};
    EXPECT_TRUE(
        GetVolumeInformationA("H:\\", label.data(), 32, nullptr, nullptr, nullptr, fileSystem.data(), 32));
    EXPECT_STREQ(label.data(), "");
    EXPECT_FAILS(GetVolumeInformationA("H:\\", nullptr, 0, nullptr, nullptr, nullptr, fileSystem.data(), 2),
                 ERROR_MORE_DATA);
    EXPECT_FAILS(SetVolumeLabelA("H:\\", "LABEL"), ERROR_NOT_SUPPORTED);
    EXPECT_FAILS(openPath("\\\\.\\H:"), ERROR_FILE_NOT_FOUND);
}

}  // namespace
