#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>

#include "tests/support/zar_bytes.h"
#include "tests/tools/program_run.h"
#include "tests/tools/sample_disk.h"

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

constexpr std::size_t imageBytes = 1474560;
constexpr std::size_t serialNumberAt = 0x27;

class EmergencyDiskProgram : public ::testing::Test {
protected:
    ProgramRun run(Words words) const { return runProgram("emergency-disk", words, disk_.folder()); }

    ProgramRun make(const std::string& image, Words more = {}) const {
        Words words{"make", "--image", image, "--archive", "mwdisk1.dat"};
        words.insert(words.end(), more.begin(), more.end());
        return run(words);
    }

    std::string read(const std::string& name) const {
        std::ifstream file(disk_.folder() / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(disk_.folder() / name, std::ios::binary) << contents;
    }

    // A blank image with the damage that is done to its bytes.
    void writeBlank(const std::string& name, const std::function<void(std::string&)>& damage) const {
        fs::remove(disk_.folder() / name);
        ASSERT_EQ(run({"format", "--image", name}).exitCode, 0);
        std::string image = read(name);
        damage(image);
        write(name, image);
    }

    bool exists(const std::string& name) const { return fs::exists(disk_.folder() / name); }

    // Hidden files in the folder: what a run that ended early may have left.
    bool leftovers() const {
        for (const auto& entry : fs::directory_iterator(disk_.folder())) {
            if (entry.path().filename().string().front() == '.') return true;
        }
        return false;
    }

    SampleDisk disk_;
};

TEST_F(EmergencyDiskProgram, MakesADisketteThatChecksOut) {
    const ProgramRun made = make("d.img");
    ASSERT_EQ(made.exitCode, 0) << made.err;
    EXPECT_EQ(read("d.img").size(), imageBytes);
    EXPECT_NE(made.err.find("Diskettenlaufwerk wird gesucht..."), std::string::npos);
    EXPECT_NE(made.err.find("Datenträgerbezeichnung"), std::string::npos)
        << "umlauts are UTF-8 on the console";
    EXPECT_NE(made.err.find("Die Diskette wurde erfolgreich erstellt."), std::string::npos);
    EXPECT_TRUE(
        std::none_of(made.err.begin(), made.err.end(), [](char c) { return c == '\r' || c == 0x1B; }));
    const ProgramRun check = run({"check", "--image", "d.img", "--archive", "mwdisk1.dat"});
    EXPECT_EQ(check.exitCode, 0) << check.out;
    EXPECT_NE(check.out.find("This diskette will boot."), std::string::npos);
    EXPECT_FALSE(leftovers());
}

TEST_F(EmergencyDiskProgram, WarnsOfAFileThatTheArchiveHoldsTwice) {
    write("mwdisk1.dat", read("mwdisk1.dat") + test::newArchive({{"config.sys", "x"}}));
    const ProgramRun made = make("d.img", {"--dry-run"});
    EXPECT_EQ(made.exitCode, 0);
    EXPECT_NE(made.err.find("CONFIG.SYS 2 times"), std::string::npos) << made.err;
}

TEST_F(EmergencyDiskProgram, EveryWindowsMakesTheSameDisketteButForItsSerialNumber) {
    std::string first;
    for (const char* windows : {"95", "98", "me", "nt4", "2000", "xp"}) {
        ASSERT_EQ(run({"format", "--image", "d.img", "--yes"}).exitCode, 0);
        const ProgramRun made = make("d.img", {"--yes", "--windows", windows});
        ASSERT_EQ(made.exitCode, 0) << windows << ": " << made.err;
        std::string image = read("d.img");
        image.replace(serialNumberAt, 4, 4, '?');
        // The times in the directory entries follow the clock.
        const std::size_t root = 19 * 512;
        for (std::size_t entry = root; entry < root + 224 * 32; entry += 32)
            image.replace(entry + 13, 13, 13, '\0');
        if (first.empty()) first = image;
        EXPECT_TRUE(image == first) << windows;
    }
}

TEST_F(EmergencyDiskProgram, ReplacesADisketteOnlyWhenTold) {
    ASSERT_EQ(make("d.img").exitCode, 0);
    const std::string before = read("d.img");
    const ProgramRun refused = make("d.img");
    EXPECT_EQ(refused.exitCode, 6);
    EXPECT_EQ(read("d.img"), before);
    EXPECT_EQ(make("d.img", {"--yes"}).exitCode, 0);
    EXPECT_NE(read("d.img"), before);

    write("note.txt", "no diskette");
    EXPECT_EQ(make("note.txt", {"--yes"}).exitCode, 6);
    EXPECT_EQ(read("note.txt"), "no diskette");
    write("blank.img", std::string(imageBytes, 0));
    EXPECT_EQ(make("blank.img", {"--yes"}).exitCode, 6);
    EXPECT_EQ(read("blank.img"), std::string(imageBytes, 0));
    EXPECT_EQ(run({"format", "--image", "note.txt", "--yes"}).exitCode, 6);
    EXPECT_EQ(read("note.txt"), "no diskette");
}

// The entry of an even cluster number in both FATs.
void setFat(std::string& image, std::size_t cluster, unsigned value) {
    for (const std::size_t fat : {512U, 10U * 512}) {
        char* at = &image[fat + cluster + cluster / 2];
        at[0] = static_cast<char>(value);
        at[1] = static_cast<char>((at[1] & 0xF0) | static_cast<char>(value >> 8));
    }
}

void putEntry(std::string& image, const std::string& name, char attributes, unsigned cluster,
              std::size_t place = 0) {
    std::string entry = name + std::string(32 - name.size(), '\0');
    entry[11] = attributes;
    entry[26] = static_cast<char>(cluster);
    image.replace(19 * 512 + 32 * place, 32, entry);
}

// A run and its dry run end alike, and what cannot become an emergency diskette stays as it is.
TEST_F(EmergencyDiskProgram, ChecksEverythingBeforeItErasesAnything) {
    struct Case {
        int code;
        const char* text;
        std::function<void(std::string&)> damage;
    };
    const Case cases[] = {
        {6, "sectors per cluster is 2", [](std::string& i) { i[0x0D] = 2; }},
        {6, "reserved sectors is 2", [](std::string& i) { i[0x0E] = 2; }},
        {6, "FATs is 1", [](std::string& i) { i[0x10] = 1; }},
        {6, "not formatted", [](std::string& i) { i.replace(0, 512, 512, '\0'); }},
        {6, "two file allocation tables differ", [](std::string& i) { ++i[9 * 512 + 511]; }},
        {6, "A:\\AUX cannot be deleted", [](std::string& i) { putEntry(i, "AUX        ", 0x20, 0); }},
        {6, "A:\\LOST cannot be deleted", [](std::string& i) { putEntry(i, "LOST       ", 0x10, 0); }},
        {6, "A:\\KEPT cannot be deleted: the directory is read-only",
         [](std::string& i) {
             putEntry(i, "KEPT       ", 0x11, 40);
             setFat(i, 40, 0xFFF);
         }},
        {6, "cluster 40 of TWO.A belongs to another entry, too",
         [](std::string& i) {
             putEntry(i, "ONE        ", 0x20, 40);
             putEntry(i, "TWO     A  ", 0x10, 40, 1);
             setFat(i, 40, 0xFFF);
         }},
        {6, "cluster 6, where the loader", [](std::string& i) { setFat(i, 6, 0xFFF); }},
        {7, "cluster 6, where the loader", [](std::string& i) { setFat(i, 6, 0xFF7); }},
        {9, "5 are marked as bad and 1417 are in use",
         [](std::string& i) {
             for (std::size_t cluster = 4; cluster <= 2846; cluster += 2) setFat(i, cluster, 0xFFF);
             for (std::size_t cluster = 2838; cluster <= 2846; cluster += 2) setFat(i, cluster, 0xFF7);
         }},
    };
    // With the files before it, the loader has to lie in clusters 5 and 6.
    disk_.write("IBMDOS.COM", std::string(600, 'x'));
    disk_.write("COMMAND.COM", std::string(1430 * 512, 'x'));
    disk_.pack();
    for (const auto& [code, text, damage] : cases) {
        writeBlank("d.img", damage);
        const std::string before = read("d.img");
        for (const Words& more : {Words{"--dry-run"}, Words{"--yes"}, Words{"--yes", "--windows", "98"}}) {
            const ProgramRun run = make("d.img", more);
            EXPECT_EQ(run.exitCode, code) << run.err;
            EXPECT_NE(run.err.find(text), std::string::npos) << run.err;
            EXPECT_TRUE(read("d.img") == before) << text;
        }
    }
    writeBlank("d.img", [](std::string&) {});
    EXPECT_EQ(make("d.img", {"--dry-run"}).exitCode, 0);
    EXPECT_EQ(make("e.img", {"--dry-run"}).exitCode, 0);
    EXPECT_FALSE(exists("e.img"));
    fs::permissions(disk_.folder() / "d.img", fs::perms::owner_read);
    EXPECT_EQ(make("d.img", {"--dry-run"}).exitCode, 5) << "for the superuser, too";
    EXPECT_EQ(make("d.img", {"--yes"}).exitCode, 5);
}

TEST_F(EmergencyDiskProgram, EveryExitCodeIsReached) {
    struct Simulation {
        const char* state;
        int code;
        const char* sentence;
        bool foundBefore;
    };
    for (const auto& [state, code, sentence, foundBefore] : {
             Simulation{"lost-write=19", 3, "verification failed", false},
             Simulation{"no-medium", 4, "there is no diskette in the drive", true},
             Simulation{"write-protected", 5, "the diskette is write-protected", true},
             Simulation{"unformatted", 6, "not formatted", true},
             Simulation{"bad-sector=12", 7, "sector 12", true},
             Simulation{"bad-write=33", 7, "sector 33", false},
             Simulation{"720k", 10, "takes 720 KB diskettes", true},
             Simulation{"nonsense", 2, "lost-write=N", true},
         }) {
        for (const char* windows : {"98", "xp"}) {
            const ProgramRun run = make("d.img", {"--simulate", state, "--windows", windows, "-q"});
            EXPECT_EQ(run.exitCode, code) << run.err;
            EXPECT_NE(run.err.find(sentence), std::string::npos) << run.err;
            EXPECT_EQ(run.err.find("Fehler"), std::string::npos) << run.err;
            EXPECT_EQ(run.err.find("gefunden"), std::string::npos) << run.err;
        }
        EXPECT_EQ(make("d.img", {"--simulate", state, "--dry-run"}).exitCode, foundBefore ? code : 0);
    }
    EXPECT_EQ(make("nowhere/d.img", {"--dry-run"}).exitCode, 1);
    EXPECT_EQ(make("nowhere/d.img").exitCode, 1);
    EXPECT_EQ(run({"make", "--image", "d.img"}).exitCode, 2);
    EXPECT_EQ(run({"make", "--archive", "mwdisk1.dat"}).exitCode, 2);
    EXPECT_EQ(run({"check", "--image", "d.img", "--device", "d.img"}).exitCode, 2);
    EXPECT_EQ(run({"format", "--image", "/dev/null", "--yes"}).exitCode, 6);
    EXPECT_EQ(run({"make", "--device", "/dev/no-such-drive", "--archive", "mwdisk1.dat", "--yes"}).exitCode,
              4);
    EXPECT_EQ(run({"make", "--device", "/dev/null", "--archive", "mwdisk1.dat", "--yes"}).exitCode, 6);
    EXPECT_EQ(run({"check", "--image", "missing.img"}).exitCode, 4);
    EXPECT_FALSE(exists("d.img"));
    EXPECT_FALSE(leftovers());
}

// Its texts then have no place to go but a file that it opens itself, unless the program takes care.
TEST_F(EmergencyDiskProgram, WorksWithoutItsStreams) {
    const std::string make = "emergency-disk make --image d.img --archive mwdisk1.dat --yes ";
    EXPECT_EQ(runShell(make + "2>&-", disk_.folder()).exitCode, 0);
    EXPECT_EQ(runShell("exec <&- >&- 2>&-; " + make, disk_.folder()).exitCode, 1) << "the result is lost";
    EXPECT_EQ(run({"check", "--image", "d.img", "--archive", "mwdisk1.dat"}).exitCode, 0);
    // The reader of the status lines has gone away: descriptor 4 was the only one that could read.
    const std::string deaf = "mkfifo p; exec 4<>p 3>p 4<&-; ";
    EXPECT_EQ(runShell(deaf + make + ">&3 2>&3", disk_.folder()).exitCode, 1);
    EXPECT_EQ(run({"check", "--image", "d.img", "--archive", "mwdisk1.dat"}).exitCode, 0);
    EXPECT_FALSE(leftovers());
}

TEST_F(EmergencyDiskProgram, AFullDiskIsNotABadSector) {
    for (const char* command : {"make --archive mwdisk1.dat", "format"}) {
        ProgramRun run;
        const std::string words =
            std::string("emergency-disk ") + command + " --image full/d.img; code=$?; ls -A full; exit $code";
        if (!runWithSmallDisk(words, disk_.folder(), run)) {
            GTEST_SKIP() << "no small disk can be mounted here";
        }
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find("full/d.img"), std::string::npos) << run.err;
    }
    // An image with a hole in it takes less room than the new one.
    ASSERT_EQ(make("d.img").exitCode, 0);
    ProgramRun run;
    runWithSmallDisk(
        "cp --sparse=always d.img full && emergency-disk make --archive mwdisk1.dat --image full/d.img --yes",
        disk_.folder(), run);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("no space"), std::string::npos) << run.err;
}

TEST_F(EmergencyDiskProgram, ABadArchiveNeverCostsADiskette) {
    ASSERT_EQ(make("d.img").exitCode, 0);
    const std::string before = read("d.img");
    const std::string sound = read("mwdisk1.dat");
    const auto expect = [&](int code, const std::string& text) {
        const ProgramRun run = make("d.img", {"--yes"});
        EXPECT_EQ(run.exitCode, code) << run.err;
        EXPECT_NE(run.err.find(text), std::string::npos) << run.err;
        EXPECT_EQ(read("d.img"), before);
    };
    write("mwdisk1.dat", sound.substr(0, sound.size() - 30));
    expect(8, "offset");
    fs::remove(disk_.files() / "SETTING.DAT");
    disk_.pack();
    expect(8, "SETTING.DAT is missing");
    disk_.write("SETTING.DAT", std::string(imageBytes, 'x'));
    disk_.pack();
    expect(9, "clusters");
    disk_.write("SETTING.DAT", "small");
    disk_.write("QZLOADER.BIN", std::string(1024, 'x'));
    disk_.pack();
    expect(8, "QZLOADER.BIN");
    fs::remove(disk_.archive());
    expect(1, "mwdisk1.dat");
}

// The moment of the interrupt is the scheduler's: either it comes in time and the old image stays, or the run
// was already past it and the new image is whole.
TEST_F(EmergencyDiskProgram, AnInterruptKeepsTheOldImage) {
    ASSERT_EQ(make("d.img").exitCode, 0);
    int cancelled = 0;
    for (int attempt = 0; attempt < 200 && cancelled < 5; ++attempt) {
        const std::string before = read("d.img");
        const ProgramRun run =
            runAndSignal("emergency-disk", {"make", "--image", "d.img", "--archive", "mwdisk1.dat", "--yes"},
                         disk_.folder(), "Datenträgerbezeichnung", SIGINT);
        if (run.exitCode == 130) {
            ++cancelled;
            EXPECT_EQ(read("d.img"), before);
        } else {
            EXPECT_EQ(run.exitCode, 0) << run.err;
            EXPECT_EQ(this->run({"check", "--image", "d.img", "--archive", "mwdisk1.dat"}).exitCode, 0);
        }
        ASSERT_FALSE(leftovers());
    }
    EXPECT_GT(cancelled, 0);
}

TEST_F(EmergencyDiskProgram, CheckNamesWhatIsWrong) {
    ASSERT_EQ(make("d.img").exitCode, 0);
    std::string image = read("d.img");
    image[0x1FE] = 0;
    write("d.img", image);
    const ProgramRun text = run({"check", "--image", "d.img"});
    EXPECT_EQ(text.exitCode, 3);
    EXPECT_NE(text.out.find("This diskette will not boot."), std::string::npos) << text.out;
    const auto json = nlohmann::json::parse(run({"check", "--image", "d.img", "--json"}).out);
    EXPECT_EQ(json["boots"], false);
    EXPECT_EQ(json["result"], "verification_failed");
    EXPECT_TRUE(std::any_of(json["checks"].begin(), json["checks"].end(),
                            [](const auto& check) { return check["passed"] == false; }));
    write("d.img", std::string(imageBytes, '\0'));
    const auto blank = nlohmann::json::parse(run({"check", "--image", "d.img", "--json"}).out);
    EXPECT_EQ(blank["checks"].size(), 1U) << "a diskette that is not formatted is one fault";
}

TEST_F(EmergencyDiskProgram, LabelsAreDosLabels) {
    EXPECT_EQ(make("d.img", {"--label", "rettung"}).exitCode, 0);
    EXPECT_NE(run({"check", "--image", "d.img"}).out.find("RETTUNG"), std::string::npos);
    for (const char* windows : {"98", "xp"}) {
        EXPECT_EQ(make("d.img", {"--label", "größe", "--windows", windows, "--yes"}).exitCode, 0) << windows;
    }
    EXPECT_NE(run({"check", "--image", "d.img"}).out.find("GRÖßE"), std::string::npos);
    EXPECT_EQ(make("e.img", {"--label", "TWELVE CHARS"}).exitCode, 2);
    EXPECT_EQ(make("e.img", {"--label", "€"}).exitCode, 2) << "no character of a diskette's code page";
    EXPECT_EQ(make("e.img", {"--label", "A/B"}).exitCode, 2);
    EXPECT_FALSE(exists("e.img"));
}

}  // namespace
