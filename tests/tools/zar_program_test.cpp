#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "tests/support/zar_bytes.h"
#include "tests/tools/program_run.h"
#include "tools/common/staging.h"

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

class ZarProgram : public ::testing::Test {
protected:
    ZarProgram() {
        std::string name = (fs::temp_directory_path() / "zar-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~ZarProgram() override { fs::remove_all(folder_); }

    void write(const std::string& name, const std::string& text) const {
        fs::create_directories((folder_ / name).parent_path());
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    std::string read(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    ProgramRun zar(const Words& words) const { return runProgram("zar", words, folder_); }

    // Everything in the folder, so that leftovers are seen.
    Words names() const {
        Words found;
        for (const auto& entry : fs::directory_iterator(folder_))
            found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }

    void packThree() const {
        write("in/A.TXT", "first");
        write("in/SUB/B.TXT", std::string(20000, 'b'));
        write("in/SUB/DEEP/Ä.TXT", "umlaut");
        ASSERT_EQ(zar({"create", "a.zar", "in"}).exitCode, 0);
    }

    fs::path folder_;
};

TEST_F(ZarProgram, PacksListsTestsAndUnpacksATree) {
    packThree();
    const ProgramRun list = zar({"list", "a.zar"});
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_NE(list.out.find("     20000  ---A  SUB\\B.TXT"), std::string::npos) << list.out;
    EXPECT_NE(list.out.find("SUB\\DEEP\\Ä.TXT"), std::string::npos) << list.out;
    EXPECT_EQ(zar({"test", "a.zar"}).exitCode, 0);
    const ProgramRun extract = zar({"extract", "a.zar", "-C", "out"});
    ASSERT_EQ(extract.exitCode, 0);
    EXPECT_EQ(extract.out, "out: 3 files\n");
    EXPECT_NE(extract.err.find("\\out\\SUB\\B.TXT"), std::string::npos) << extract.err;
    EXPECT_EQ(read("out/A.TXT"), "first");
    EXPECT_EQ(read("out/SUB/B.TXT"), std::string(20000, 'b'));
    EXPECT_EQ(read("out/SUB/DEEP/Ä.TXT"), "umlaut");
    EXPECT_EQ(names(), (Words{"a.zar", "in", "out"}));
}

TEST_F(ZarProgram, ListFilesMayHaveAnyLineEndsAndHostPaths) {
    write("in/A.TXT", "one");
    write("in/B.TXT", "two");
    write("list.txt", "in/A.TXT\n\nin/B.TXT\r\n");
    ASSERT_EQ(zar({"create", "a.zar", "--list", "list.txt"}).exitCode, 0);
    write("single.txt", "in/A.TXT");
    ASSERT_EQ(zar({"create", "b.zar", "--list", "single.txt"}).exitCode, 0);
    const auto rows = [&](const char* archive) {
        return nlohmann::json::parse(zar({"list", archive, "--json"}).out)["files"].size();
    };
    EXPECT_EQ(rows("a.zar"), 2U);
    EXPECT_EQ(rows("b.zar"), 1U);
    const std::string sharedName = folder_.filename().string();  // names a folder where temporary files are
    write(sharedName, "in/B.TXT");
    EXPECT_EQ(zar({"create", "c.zar", "--list", sharedName}).exitCode, 0);
    fs::remove(folder_ / "c.zar");
    write("bad.txt", "in/A.TXT\nin/MISSING.TXT\n");
    const ProgramRun bad = zar({"create", "c.zar", "--list", "bad.txt"});
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_NE(bad.err.find("line 2"), std::string::npos) << bad.err;
    EXPECT_EQ(names(), (Words{"a.zar", "b.zar", "bad.txt", "in", "list.txt", "single.txt", sharedName}));
}

TEST_F(ZarProgram, UnpacksNamedFilesToTheirPlaces) {
    packThree();
    ASSERT_EQ(zar({"extract", "a.zar", "SUB/B.TXT", "A.TXT", "-C", "out"}).exitCode, 0);
    EXPECT_EQ(read("out/SUB/B.TXT").size(), 20000U);
    EXPECT_EQ(read("out/A.TXT"), "first");
    ASSERT_EQ(zar({"extract", "a.zar", "DEEP/Ä.TXT", "-C", "short", "--strip-first"}).exitCode, 0);
    EXPECT_EQ(read("short/DEEP/Ä.TXT"), "umlaut");
    const ProgramRun missing = zar({"extract", "a.zar", "A.TXT", "NONE.TXT", "-C", "none/of/these/"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.find("NONE.TXT"), std::string::npos);
    EXPECT_FALSE(fs::exists(folder_ / "none")) << "of all the folders that it made none stays";
}

TEST_F(ZarProgram, LetsNoNameActOnATerminal) {
    // 81 is a control character in code page 1252, too.
    write("a.zar", test::newArchive({{"A\x1B[31m\r\nB\x7F\x81\xC4.TXT", "x"}}));
    const std::string name = "A\x1B[31m\r\nB\x7F\xC2\x81Ä.TXT";
    const std::string shown = "A<1B>[31m<0D><0A>B<7F><81>Ä.TXT";
    EXPECT_EQ(zar({"list", "a.zar"}).out, "         1  ---A  " + shown + "\n");
    EXPECT_NE(zar({"test", "a.zar"}).err.find(shown), std::string::npos);
    EXPECT_NE(zar({"extract", "a.zar", "-C", "out"}).err.find(shown), std::string::npos);
    EXPECT_NE(zar({"extract", "a.zar", name + "?", "-C", "out"}).err.find(shown + "?"), std::string::npos);
    const ProgramRun json = zar({"list", "a.zar", "--json"});
    EXPECT_EQ(nlohmann::json::parse(json.out)["files"][0]["name"], name);
}

TEST_F(ZarProgram, CountsFilesAndWarnsOfNamesThatAreOneOrNone) {
    write("a.zar",
          test::newArchive({{"A.TXT", "1"}, {"D\\\xC4", "2"}, {"a.txt.", "3"}, {"d/\xE4", "4"}, {"B", "5"}}));
    const ProgramRun sound = zar({"test", "a.zar"});
    EXPECT_EQ(sound.exitCode, 0);
    EXPECT_EQ(sound.out, "a.zar: sound, 3 files in 5 records\n");
    EXPECT_NE(sound.err.find("a.txt. stands for the same file as A.TXT"), std::string::npos) << sound.err;
    const ProgramRun extract = zar({"extract", "a.zar", "-C", "out", "--json"});
    const auto result = nlohmann::json::parse(extract.out);
    EXPECT_EQ(result["files"], 3);
    EXPECT_EQ(result["warnings"].size(), 3U) << "two of them, and a dot at an end";
    EXPECT_EQ(read("out/A.TXT") + read("out/D/Ä"), "34");

    write("same.zar", test::newArchive({{"A", "1"}, {"A", "2"}, {"Q?", "3"}}));
    EXPECT_EQ(zar({"extract", "same.zar", "A", "-C", "one"}).out, "one: 1 file\n");
    EXPECT_EQ(read("one/A"), "2") << "as when everything is unpacked";
    const ProgramRun test = zar({"test", "same.zar"});
    EXPECT_EQ(test.exitCode, 0);
    EXPECT_NE(test.err.find("Q? has a character that no Windows takes"), std::string::npos) << test.err;
    write("first.zar", test::newArchive({{"Q?\\A", "1"}}));
    EXPECT_EQ(zar({"extract", "first.zar", "-C", "short", "--strip-first", "--quiet"}).err, "");
}

TEST_F(ZarProgram, LeavesOldFilesAloneWhenItFails) {
    packThree();
    const std::string whole = read("a.zar");
    write("in/EMPTY.TXT", "");
    const ProgramRun empty = zar({"create", "a.zar", "in"});
    EXPECT_EQ(empty.exitCode, 1);
    EXPECT_NE(empty.err.find("EMPTY.TXT is empty"), std::string::npos) << empty.err;
    EXPECT_EQ(read("a.zar"), whole);

    write("out/A.TXT", "old");
    write("cut.zar", whole.substr(0, whole.size() - 1));
    const ProgramRun cut = zar({"extract", "cut.zar", "-C", "out"});
    EXPECT_EQ(cut.exitCode, 8);
    EXPECT_NE(cut.err.find("offset"), std::string::npos) << cut.err;
    EXPECT_EQ(read("out/A.TXT"), "old");
    EXPECT_EQ(names(), (Words{"a.zar", "cut.zar", "in", "out"}));
    EXPECT_EQ(zar({"test", "cut.zar"}).exitCode, 8);
}

TEST_F(ZarProgram, ReplacesNothingButFilesAndFollowsLinks) {
    packThree();
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(zar({"create", "pipe", "in"}).exitCode, 6);
    EXPECT_TRUE(fs::is_fifo(folder_ / "pipe"));
    EXPECT_EQ(zar({"list", "pipe"}).exitCode, 1) << "a pipe that nobody writes to is not waited for";

    write("elsewhere/b.zar", "old");
    fs::create_symlink("elsewhere/b.zar", folder_ / "link.zar");
    ASSERT_EQ(zar({"create", "link.zar", "in"}).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.zar"));
    EXPECT_EQ(read("elsewhere/b.zar"), read("a.zar"));
    fs::create_symlink("elsewhere/c.zar", folder_ / "dangling.zar");
    ASSERT_EQ(zar({"create", "dangling.zar", "in"}).exitCode, 0);
    EXPECT_EQ(read("elsewhere/c.zar"), read("a.zar"));
}

// The programs work by host paths, the libraries by Windows paths.
TEST_F(ZarProgram, OnePathMeansOneFile) {
    packThree();
    write("fold/WRONG.TXT", "wrong");
    write("fold./RIGHT.TXT", "right");
    write("WRONG.TXT", "wrong");
    write("deep/WRONG.TXT", "right");
    write("list.txt", "link/../WRONG.TXT");
    fs::create_directories(folder_ / "deep/er");
    fs::create_directory_symlink("deep/er", folder_ / "link");
    const Words before = names();
    for (const char* folder : {"new.", "new... /x", "new ", "new\\x", "NUL"}) {
        const ProgramRun run = zar({"extract", "a.zar", "-C", folder});
        EXPECT_EQ(run.exitCode, 2) << folder;
        EXPECT_NE(run.err.find(fs::path(folder).begin()->string() + "'"), std::string::npos) << run.err;
    }
    for (const char* archive : {"fold./b.zar", "b.", "b\\.zar", "NUL"}) {
        const ProgramRun run = zar({"create", archive, "in"});
        EXPECT_EQ(run.exitCode, 2) << archive;
        EXPECT_NE(run.err.find(fs::path(archive).begin()->string() + "'"), std::string::npos) << run.err;
    }
    EXPECT_EQ(zar({"create", "b.zar", "fold."}).exitCode, 2);
    EXPECT_EQ(zar({"create", "b.zar", "--list", "list.txt"}).exitCode, 2);
    EXPECT_EQ(names(), before);

    EXPECT_EQ(runShell("mkdir gone; cd gone; rmdir ../gone; zar list $OLDPWD/a.zar", folder_).exitCode, 0);

    ASSERT_EQ(zar({"extract", "link/../../a.zar", "-C", "link/../x"}).exitCode, 0);
    EXPECT_EQ(read("deep/x/A.TXT"), "first");
    ASSERT_EQ(zar({"create", "link/../b.zar", "link/../x"}).exitCode, 0);
    EXPECT_EQ(read("deep/b.zar"), read("a.zar"));
    EXPECT_EQ(names(), before);
}

TEST_F(ZarProgram, RemovesWhatKilledRunsLeft) {
    packThree();
    {
        const tools::StagedFile living((folder_ / "a.zar").string());
        const tools::StagedFolder livingFolder((folder_ / "out").string());
        write(".a.zar.part-killed", "half an archive");
        write("out/.unpacked.part-killed/A.TXT", "half a file");
        ASSERT_EQ(zar({"create", "a.zar", "in"}).exitCode, 0);
        ASSERT_EQ(zar({"extract", "a.zar", "-C", "out"}).exitCode, 0);
        EXPECT_TRUE(fs::exists(living.path().string()));
        EXPECT_TRUE(fs::exists(livingFolder.path().string()));
    }
    EXPECT_EQ(names(), (Words{"a.zar", "in", "out"}));
    EXPECT_FALSE(fs::exists(folder_ / "out/.unpacked.part-killed"));
}

TEST_F(ZarProgram, ChangesNothingWhenAFileALinkOrAMountIsInTheWay) {
    packThree();
    write("out/A.TXT", "old");
    write("out/SUB/DEEP", "a file");
    fs::create_directory(folder_ / "away");
    const auto expect = [&](int code) {
        const ProgramRun run = zar({"extract", "a.zar", "-C", "out"});
        EXPECT_EQ(run.exitCode, code);
        EXPECT_NE(run.err.find("out/SUB/DEEP"), std::string::npos) << run.err;
        EXPECT_EQ(read("out/A.TXT"), "old");
        EXPECT_FALSE(fs::exists(folder_ / "out/SUB/B.TXT"));
    };
    expect(1);
    fs::remove(folder_ / "out/SUB/DEEP");
    fs::create_directory_symlink("../../away", folder_ / "out/SUB/DEEP");
    expect(6);
    EXPECT_TRUE(fs::is_empty(folder_ / "away"));

    fs::remove(folder_ / "out/SUB/DEEP");
    fs::create_directory(folder_ / "out/SUB/DEEP");
    ProgramRun run;
    const char* mounted = "mount --bind away out/SUB/DEEP && zar extract a.zar -C out";
    if (!runWithSmallDisk(mounted, folder_, run)) GTEST_SKIP() << "nothing can be mounted here";
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_NE(run.err.find("out/SUB/DEEP is a mount point"), std::string::npos) << run.err;
    EXPECT_EQ(read("out/A.TXT"), "old");
    EXPECT_FALSE(fs::exists(folder_ / "out/SUB/B.TXT"));
}

TEST_F(ZarProgram, UnpacksAnArchiveOfNoFiles) {
    fs::create_directory(folder_ / "in");
    ASSERT_EQ(zar({"create", "a.zar", "in"}).exitCode, 0);
    EXPECT_EQ(zar({"test", "a.zar"}).exitCode, 0);
    EXPECT_EQ(zar({"list", "a.zar"}).out, "");
    EXPECT_EQ(zar({"extract", "a.zar", "-C", "out"}).exitCode, 0);
    const ProgramRun one = zar({"extract", "a.zar", "A.TXT", "-C", "out"});
    EXPECT_EQ(one.exitCode, 1);
    EXPECT_NE(one.err.find("holds no file A.TXT"), std::string::npos) << one.err;
}

TEST_F(ZarProgram, PacksWhatALinkedFolderHolds) {
    write("in/A.TXT", "here");
    write("elsewhere/B.TXT", "there");
    fs::create_directory_symlink("../elsewhere", folder_ / "in/LINK");
    ASSERT_EQ(zar({"create", "a.zar", "in"}).exitCode, 0);
    ASSERT_EQ(zar({"extract", "a.zar", "-C", "out"}).exitCode, 0);
    EXPECT_EQ(read("out/A.TXT"), "here");
    EXPECT_EQ(read("out/LINK/B.TXT"), "there");
    fs::create_directory_symlink("..", folder_ / "elsewhere/BACK");
    fs::create_directory_symlink("../in", folder_ / "elsewhere/IN");
    const ProgramRun circle = zar({"create", "b.zar", "in"});
    EXPECT_EQ(circle.exitCode, 1);
    EXPECT_NE(circle.err.find("leads back to a folder above it"), std::string::npos) << circle.err;
}

// Small files are gathered: a loss that shows only when the last of them is written out must not be
// overlooked.
TEST_F(ZarProgram, SaysThatADiskIsFullEvenIfItTakesAllButTheEnd) {
    write("big/BIG.DAT", std::string(300000, 'x'));
    for (int i = 0; i < 22; ++i) write("small/F" + std::to_string(i), std::string(3000, 'x'));
    for (const std::string in : {"big", "small"}) {
        ASSERT_EQ(zar({"create", in + ".zar", in}).exitCode, 0);
        for (const std::string& command : {"create full/b.zar " + in, "extract " + in + ".zar -C full/out"}) {
            ProgramRun run;
            if (!runWithSmallDisk("zar " + command + " -q; code=$?; ls -A full; exit $code", folder_, run)) {
                GTEST_SKIP() << "no small disk can be mounted here";
            }
            EXPECT_EQ(run.exitCode, 1) << command;
            EXPECT_EQ(run.out, "") << "something was left on the disk";
            EXPECT_NE(run.err.find("is full"), std::string::npos) << run.err;
        }
    }
}

TEST_F(ZarProgram, NoticesThatItsOutputIsLost) {
    packThree();
    EXPECT_EQ(runShell("zar list a.zar >/dev/full", folder_).exitCode, 1);
    EXPECT_EQ(runShell("zar list a.zar >&-", folder_).exitCode, 1);
    EXPECT_EQ(runShell("zar --help >/dev/full", folder_).exitCode, 1);
}

TEST_F(ZarProgram, RefusesToPackAnArchiveIntoItself) {
    packThree();
    EXPECT_EQ(zar({"create", "in/a.zar", "in"}).exitCode, 6);
    EXPECT_FALSE(fs::exists(folder_ / "in/a.zar"));
}

TEST_F(ZarProgram, RefusesNamesTheFormatCannotHold) {
    packThree();
    write("in/\xE2\x82\xAC\xE3\x81\x82.TXT", "no place in the code page");
    const ProgramRun run = zar({"create", "b.zar", "in"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("in/\xE2\x82\xAC\xE3\x81\x82.TXT has a character outside"), std::string::npos)
        << run.err;
    EXPECT_FALSE(fs::exists(folder_ / "b.zar"));
    fs::remove(folder_ / "in/\xE2\x82\xAC\xE3\x81\x82.TXT");
    // The left double quotation mark is the key byte in code page 1252 and would be stored as a zero.
    write("in/\xE2\x80\x9CQ.TXT", "key byte in the name");
    const ProgramRun key = zar({"create", "b.zar", "in"});
    EXPECT_EQ(key.exitCode, 1);
    EXPECT_NE(key.err.find("cannot pack \xE2\x80\x9CQ.TXT: the name holds the key byte"), std::string::npos)
        << key.err;
    EXPECT_FALSE(fs::exists(folder_ / "b.zar"));
}

TEST_F(ZarProgram, AnInterruptEndsWith130AndLeavesNothing) {
    for (int i = 0; i < 40; ++i) write("in/F" + std::to_string(i) + ".DAT", std::string(4 << 20, 'x'));
    ProgramRun run;
    // A busy machine can deliver the signal when all is done.
    for (int attempt = 0; attempt < 5 && run.exitCode != 130; ++attempt) {
        write("a.zar", "old");
        run = runAndSignal("zar", {"create", "a.zar", "in"}, folder_, "Archiviert", SIGINT);
    }
    EXPECT_EQ(run.exitCode, 130);
    EXPECT_EQ(read("a.zar"), "old");
    EXPECT_EQ(names(), (Words{"a.zar", "in"}));
}

TEST_F(ZarProgram, SpeaksPlainlyOnAPipeAndJsonOnDemand) {
    packThree();
    const ProgramRun create = zar({"create", "b.zar", "in"});
    EXPECT_NE(create.err.find("Archiviert die Datei:"), std::string::npos);
    EXPECT_TRUE(
        std::none_of(create.err.begin(), create.err.end(), [](char c) { return c == '\r' || c == 0x1B; }));
    EXPECT_EQ(zar({"create", "b.zar", "in", "--quiet"}).err, "");

    const auto good = nlohmann::json::parse(zar({"test", "a.zar", "--json"}).out);
    EXPECT_EQ(good["schema_version"], 1);
    EXPECT_EQ(good["result"], "success");
    EXPECT_EQ(good["records"], 3);
    const auto bad = nlohmann::json::parse(zar({"test", "in/A.TXT", "--json"}).out);
    EXPECT_EQ(bad["exit_code"], 8);
    EXPECT_EQ(bad["fault"]["offset"], 0);
    const auto usage = nlohmann::json::parse(zar({"list", "--json"}).out);
    EXPECT_EQ(usage["exit_code"], 2);
    const ProgramRun nonsense = zar({"nonsense"});
    EXPECT_EQ(nonsense.exitCode, 2);
    EXPECT_NE(nonsense.err.find("'nonsense'"), std::string::npos) << nonsense.err;
    EXPECT_NE(nonsense.err.find("extract"), std::string::npos) << nonsense.err;
    EXPECT_EQ(zar({"create", "", "in"}).exitCode, 2);
    EXPECT_EQ(zar({"extract", "a.zar", "-C", "", "A.TXT"}).exitCode, 2);
    EXPECT_EQ(zar({"--version"}).out.substr(0, 4), "zar ");
    EXPECT_NE(zar({"create", "--help"}).out.find("Exit codes:"), std::string::npos);
}

}  // namespace
