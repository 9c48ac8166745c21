#include <windows.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/files.h"
#include "support/open_path.h"
#include "support/size_limit_machine.h"
#include "support/temp_folder_machine.h"

// A machine that works alone keeps small writes and pieces read ahead to itself. Nobody on it may see that.

namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD readWrite = GENERIC_READ | GENERIC_WRITE;

class CachedFile : public testing::Test {
protected:
    CachedFile() { machine_->drives.workAlone(); }
    ~CachedFile() override { EXPECT_EQ(machine_->handles.openCount(), 0u); }

    static HANDLE open(const std::string& path, DWORD access, DWORD disposition = OPEN_EXISTING,
                       DWORD flags = 0) {
        return openPath(path, access, disposition, flags, shareAll);
    }
    static void seek(HANDLE file, LONG position) { SetFilePointer(file, position, nullptr, FILE_BEGIN); }
    static DWORD sizeByPath(const std::string& pattern) {
        WIN32_FIND_DATAA data{};
        const HANDLE search = FindFirstFileA(pattern.c_str(), &data);
        EXPECT_NE(search, INVALID_HANDLE_VALUE);
        FindClose(search);
        return data.nFileSizeLow;
    }
    // What the host has, whatever the layer keeps.
    std::string onHost() const {
        std::ifstream file(place_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    winlayer::ScopedMachine machine_;
    const TempFolder folder_;
    const std::string path_ = folder_ / "a.dat";
    const std::filesystem::path place_ = hostPath(folder_) / "a.dat";
};

TEST_F(CachedFile, gathersSmallWritesUnlessTheyAreToBeWrittenThrough) {
    for (const DWORD flags : {DWORD{0}, DWORD{FILE_FLAG_WRITE_THROUGH}}) {
        const HANDLE file = open(path_, GENERIC_WRITE, CREATE_ALWAYS, flags);
        EXPECT_TRUE(writeTo(file, "one") && writeTo(file, "two"));
        EXPECT_EQ(onHost(), flags == 0 ? "" : "onetwo");
        EXPECT_EQ(GetFileSize(file, nullptr), 6u);
        EXPECT_TRUE(CloseHandle(file));
        EXPECT_EQ(onHost(), "onetwo");
    }
}

TEST_F(CachedFile, isWrittenAtTheTimeThatItsNameTells) {
    const HANDLE file = open(path_, GENERIC_WRITE, CREATE_NEW);
    writeTo(file, "12345");
    EXPECT_EQ(sizeByPath(path_), 5u);
    const auto written = std::filesystem::last_write_time(place_);
    EXPECT_TRUE(FlushFileBuffers(file) && CloseHandle(file));
    EXPECT_EQ(std::filesystem::last_write_time(place_), written);
}

TEST_F(CachedFile, goesWithADeletionWhileItIsOpen) {
    const HANDLE file = open(path_, GENERIC_WRITE, CREATE_NEW);
    writeTo(file, "gone");
    EXPECT_TRUE(DeleteFileA(path_.c_str()));
    EXPECT_TRUE(writeTo(file, "too"));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_FALSE(exists(path_));
    EXPECT_EQ(GetFileAttributesA(path_.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(CachedFile, tellsAttributesThatChangeWhileItIsOpen) {
    writeFile(path_, "x");
    const HANDLE file = open(path_, GENERIC_READ);
    for (const DWORD attributes : {0x20u, 0x21u, 0x06u, 0x80u}) {
        EXPECT_TRUE(SetFileAttributesA(path_.c_str(), attributes));
        EXPECT_EQ(GetFileAttributesA(path_.c_str()), attributes);
    }
    EXPECT_TRUE(DeleteFileA(path_.c_str()));
    EXPECT_EQ(GetFileAttributesA(path_.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(CloseHandle(file));
}

// A name that other letters led to may be gone without the layer's doing.
TEST_F(CachedFile, looksAnewForANameThatIsNotThereAnyMore) {
    CloseHandle(open(folder_ / "NAME", GENERIC_WRITE, CREATE_NEW));
    ASSERT_TRUE(exists(folder_ / "name"));
    std::filesystem::remove(hostPath(folder_) / "NAME");
    CloseHandle(open(folder_ / "name", GENERIC_WRITE, CREATE_NEW));
    EXPECT_TRUE(std::filesystem::exists(hostPath(folder_) / "name"));
    EXPECT_TRUE(DeleteFileA((folder_ / "name").c_str()));
    CloseHandle(open(folder_ / "Name", GENERIC_WRITE, CREATE_NEW));
    EXPECT_TRUE(std::filesystem::exists(hostPath(folder_) / "Name"));
}

// Random transfers through handles that come and go, against a plain string.
class CachedFileAtRandom : public CachedFile {
protected:
    struct Opened {
        HANDLE handle;
        DWORD access;
        std::shared_ptr<std::size_t> position;  // common to duplicates
    };

    std::size_t below(std::size_t bound) { return random_() % bound; }
    bool rarely() { return below(40) == 0; }

    void openAnother() {
        static constexpr DWORD kinds[] = {0, GENERIC_READ, GENERIC_WRITE, readWrite, readWrite, readWrite};
        Opened file{nullptr, kinds[below(std::size(kinds))], std::make_shared<std::size_t>(0)};
        const bool cut =
            opened_.empty() && (file.access & GENERIC_WRITE) != 0 && exists(path_) && below(4) == 0;
        model_.resize(cut ? 0 : model_.size());
        file.handle = open(path_, file.access, cut ? TRUNCATE_EXISTING : OPEN_ALWAYS);
        opened_.push_back(file);
        if (below(2) == 0) {
            EXPECT_TRUE(DuplicateHandle(GetCurrentProcess(), file.handle, GetCurrentProcess(),
                                        &opened_.emplace_back(file).handle, 0, FALSE, DUPLICATE_SAME_ACCESS));
        }
    }
    void move(const Opened& file) {
        *file.position = below(model_.size() + 10);
        seek(file.handle, static_cast<LONG>(*file.position));
    }
    void writeSome(const Opened& file, std::size_t size) {
        const std::string text(size, static_cast<char>('a' + below(26)));
        EXPECT_TRUE(writeTo(file.handle, text));
        if (size != 0) model_.resize(std::max(model_.size(), *file.position + size));
        model_.replace(std::min(model_.size(), *file.position), size, text);
        *file.position += size;
    }
    void readSome(const Opened& file, std::size_t size) {
        const std::string text = readFrom(file.handle, static_cast<DWORD>(size));
        EXPECT_TRUE(text == (*file.position < model_.size() ? model_.substr(*file.position, size) : ""));
        *file.position += text.size();
    }
    void setEnd(const Opened& file) {
        EXPECT_TRUE(SetEndOfFile(file.handle));
        model_.resize(*file.position);
    }

    std::mt19937 random_{test::randomSeed()};
    std::vector<Opened> opened_;
    std::string model_;
};

TEST_F(CachedFileAtRandom, transfersWhatAPlainFileWould) {
    for (int step = 0; (step < 20'000 && !HasFailure()) || !opened_.empty(); ++step) {
        if (opened_.empty() || (opened_.size() < 4 && rarely())) openAnother();
        const std::size_t n = below(opened_.size());
        const Opened file = opened_[n];
        if (below(3) == 0) move(file);
        const std::size_t size = below(below(4) == 0 ? 20000 : 40);
        if ((file.access & GENERIC_WRITE) != 0 && below(2) == 0) {
            below(8) == 0 ? setEnd(file) : writeSome(file, size);
        } else if ((file.access & GENERIC_READ) != 0) {
            readSome(file, size);
        }
        for (const Opened& each : opened_) EXPECT_EQ(GetFileSize(each.handle, nullptr), model_.size());
        if (rarely()) {
            EXPECT_EQ(sizeByPath(below(2) == 0 ? path_ : folder_ / "*.dat"), model_.size());
        } else if ((file.access & GENERIC_WRITE) != 0 && rarely()) {
            EXPECT_TRUE(FlushFileBuffers(file.handle));
            EXPECT_TRUE(onHost() == model_);
        } else if (below(20) == 0) {
            EXPECT_TRUE(CloseHandle(file.handle));
            EXPECT_TRUE(onHost() == model_) << "a close that is not the last must pass on, too";
            opened_.erase(opened_.begin() + static_cast<std::ptrdiff_t>(n));
        }
    }
}

TEST_F(CachedFile, tellsAtTheCloseWhatFoundNoPlaceUnlessThatWasMadeBefore) {
    for (const bool madeRoom : {false, true}) {
        const HANDLE file = open(path_, readWrite, CREATE_ALWAYS);
        {
            const SizeLimit limit(1000);
            EXPECT_TRUE(writeTo(file, std::string(900, 'a')) && writeTo(file, std::string(900, 'b')));
            EXPECT_FALSE(FlushFileBuffers(file));
            EXPECT_NE(GetLastError(), NO_ERROR);
            EXPECT_FALSE(writeTo(file, std::string(5000, 'c'))) << "a transfer overtook what was kept";
            if (!madeRoom) {
                EXPECT_FALSE(CloseHandle(file));
                EXPECT_NE(GetLastError(), NO_ERROR);
            }
        }
        if (madeRoom) {
            EXPECT_TRUE(CloseHandle(file));
            EXPECT_EQ(onHost(), std::string(900, 'a') + std::string(900, 'b'));
        }
    }
}

TEST_F(CachedFile, tellsWhoeverOpensTheFileToo) {
    const HANDLE file = open(path_, GENERIC_WRITE, CREATE_NEW);
    {
        const SizeLimit limit(0);
        writeTo(file, "kept");
        EXPECT_EQ(open(path_, GENERIC_READ), INVALID_HANDLE_VALUE);
    }
    const HANDLE reader = open(path_, GENERIC_READ);
    EXPECT_EQ(readFrom(reader, 10), "kept");
    EXPECT_TRUE(CloseHandle(file) && CloseHandle(reader));
}

TEST_F(CachedFile, isPassedOnByAMachineThatEnds) {
    {
        winlayer::ScopedMachine other;
        other->drives.workAlone();
        EXPECT_TRUE(writeTo(openPath("Z:" + place_.string(), GENERIC_WRITE, CREATE_NEW), "left open"));
    }
    EXPECT_EQ(readFile(path_), "left open");
}

// The program's own machine lasts until the program ends.
TEST(CachedFileOfAProgram, isPassedOnWhenTheProgramEnds) {
    const std::string place = std::filesystem::temp_directory_path() / "cached_file_at_exit";
    std::filesystem::remove(place);
    const pid_t child = fork();
    if (child == 0) {
        winlayer::Machine::current().drives.workAlone();
        writeTo(openPath("Z:" + place, GENERIC_WRITE, CREATE_NEW), "left open");
        std::exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    std::ifstream file(place);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(text, "left open");
    std::filesystem::remove(place);
}

}  // namespace
