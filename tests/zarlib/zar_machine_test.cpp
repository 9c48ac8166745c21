#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "support/fail_each_machine.h"
#include "support/files.h"
#include "support/zar_bytes.h"
#include "support/zar_recorder.h"

namespace {

using test::Outcome;
using test::pattern;
using winlayer::Machine;
using winlayer::ScopedMachine;
using winlayer::WindowsVersion;

const std::vector<test::ZarFile> files = {
    {"A.TXT", pattern(100, 1)}, {"DOS\\B.BIN", pattern(17000, 2)}, {"C", "c"}};

// Sends a cancel at the check number `check` (from 0) of the calling thread: every check looks at the message
// queue, which first does the work sent to it.
void cancelAtCheck(ZAR_Common& worker, int check) {
    winlayer::MessageQueues& queues = Machine::current().messages;
    queues.send(GetCurrentThreadId(), [&worker, check] {
        if (check == 0) {
            worker.SendCancelCommand();
        } else {
            cancelAtCheck(worker, check - 1);
        }
    });
}

void writeArchive(bool old) {
    writeFile("C:\\a.zar", old ? test::oldArchive(files) : test::newArchive(files));
}

TEST(ZarMachineTest, ACancelAtEachCheckOfAnExtraction) {
    for (const char* only : {static_cast<const char*>(nullptr), "C"}) {
        bool cancelled = true;
        for (int check = 0; cancelled; ++check) {
            SCOPED_TRACE(check);
            ScopedMachine machine;
            writeArchive(false);
            test::Extractor extractor;
            const std::size_t open = machine->handles.openCount();
            cancelAtCheck(extractor, check);
            const Outcome outcome = test::outcomeOf(
                [&] { extractor.Extract("C:\\", "a.zar", "C:\\out", only, only == nullptr, 0); });
            cancelled = outcome == test::cancelledExtraction;
            EXPECT_EQ(machine->handles.openCount(), open);
            EXPECT_EQ(extractor.IsIOStarted(), 0);
            if (!cancelled) {
                EXPECT_EQ(outcome, test::success);
                // All files: one check for each step of 1, 3 and 1; one: three fields of two records up to
                // the size and the step of its own.
                EXPECT_EQ(check, 5);
                continue;
            }
            for (const test::ZarFile& file : files) {
                const std::string path = "C:\\out\\" + file.name;
                if (exists(path)) {
                    EXPECT_TRUE(file.data.starts_with(readFile(path))) << path;
                }
            }
        }
    }
}

TEST(ZarMachineTest, ACancelAtEachCheckOfAnArchiving) {
    bool cancelled = true;
    for (int check = 0; cancelled; ++check) {
        SCOPED_TRACE(check);
        ScopedMachine machine;
        CreateDirectoryA("C:\\in", nullptr);
        for (const char* name : {"1", "2"}) writeFile(std::string("C:\\in\\") + name, pattern(10000));
        test::Archiver archiver("C:\\in", "C:\\a.zar", 0);
        const std::size_t open = machine->handles.openCount();
        cancelAtCheck(archiver, check);
        const Outcome outcome = test::outcomeOf([&] { archiver.Archive(); });
        cancelled = outcome == test::cancelledArchiving;
        EXPECT_EQ(machine->handles.openCount(), open);
        if (!cancelled) {
            EXPECT_EQ(outcome, test::success);
            EXPECT_EQ(check, 4) << "two steps for each file";
        }
    }
}

// Each failing call ends an extraction in one of the documented ways, and a file that is there after a
// success is whole (a failure while the next record is looked for counts as the archive's end).
void failEachCallOfExtraction(WindowsVersion version, bool old, const char* only) {
    Outcome outcome;
    test::failEachCall(
        version, ERROR_GEN_FAILURE,
        [&] {
            writeArchive(old);
            // No directories are made for the old layout, whose names have no room for them.
            if (old) {
                CreateDirectoryA("C:\\out", nullptr);
                CreateDirectoryA("C:\\out\\DOS", nullptr);
            }
        },
        [&] {
            outcome = test::outcomeOf([&] {
                test::Extractor extractor;
                extractor.Extract("C:\\", "a.zar", "C:\\out", only, only == nullptr, 0);
            });
        },
        [&](bool failed) {
            if (outcome == test::success) {
                for (const test::ZarFile& file : files) {
                    const std::string path = "C:\\out\\" + file.name;
                    const bool wanted = only == nullptr || file.name == only;
                    EXPECT_TRUE(exists(path) || failed || !wanted) << path;
                    if (exists(path)) {
                        EXPECT_EQ(readFile(path), file.data) << path;
                    }
                }
            } else if (outcome.kind != "DiskIoException") {
                EXPECT_EQ(outcome, test::extractionError);
            }
            EXPECT_TRUE(failed || outcome == test::success) << outcome;
        });
}

TEST(ZarMachineTest, EachFailingCallOfAnExtraction) {
    for (const bool old : {false, true}) {
        failEachCallOfExtraction(WindowsVersion::XP, old, nullptr);
        failEachCallOfExtraction(WindowsVersion::Windows98, old, "C");
    }
}

TEST(ZarMachineTest, EachFailingCallOfAnArchiving) {
    for (const bool list : {false, true}) {
        Outcome outcome;
        test::failEachCall(
            WindowsVersion::Windows2000, ERROR_GEN_FAILURE,
            [] {
                CreateDirectoryA("C:\\in", nullptr);
                writeFile("C:\\in\\a", pattern(100));
                writeFile("C:\\in\\b", pattern(9000));
                writeFile("C:\\list", "C:\\in\\a\r\nC:\\in\\b");
            },
            [&] {
                outcome =
                    test::outcomeOf([&] { test::Archiver(list ? "C:\\list" : "C:\\in", "C:\\a.zar", 1); });
            },
            [&](bool failed) {
                EXPECT_TRUE(failed || outcome == test::success) << outcome;
                if (outcome == test::success) {
                    EXPECT_EQ(readFile("C:\\a.zar").size(), 2 * 48 + (list ? 8U : 2U) + 9100);
                } else if (outcome.kind != "DiskIoException") {
                    EXPECT_EQ(outcome.kind, "report");
                    EXPECT_EQ(outcome.type, 171U);
                }
            });
    }
}

TEST(ZarMachineTest, ACloseThatFailsIsReportedAndLeavesNothingOpen) {
    ScopedMachine machine;
    writeArchive(false);
    {
        test::Extractor extractor;
        machine->gate.failFunction("CloseHandle", ERROR_GEN_FAILURE);
        EXPECT_EQ(test::outcomeOf([&] { extractor.Extract("C:\\", "a.zar", "C:\\out", nullptr, 1, 0); }),
                  (Outcome{"DiskIoException", 4, ERROR_GEN_FAILURE}));
    }
    machine->gate.reset();
}

// A directory is asked for once, not once for each of its files.
TEST(ZarMachineTest, DirectoriesAreMadeOnce) {
    ScopedMachine machine;
    test::MemoryDrive::mount(*machine, 'C');
    std::string bytes;
    for (int i = 0; i < 50; ++i) bytes += test::newRecord({"d\\e\\" + std::to_string(i), "x"});
    writeFile("C:\\a.zar", bytes);
    test::Extractor extractor;
    machine->gate.startRecording();
    extractor.Extract("C:\\", "a.zar", "C:\\out", nullptr, 1, 0);
    const std::vector<std::string> calls = machine->gate.calls();
    EXPECT_LE(std::count(calls.begin(), calls.end(), "CreateDirectoryA"), 6);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "CreateFileA"), 51);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "WriteFile"), 50);
    // Signature, name marker, length, name, ... of each record, and the search that meets the end.
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "ReadFile"), 50 * 14 + 1);
}

}  // namespace
