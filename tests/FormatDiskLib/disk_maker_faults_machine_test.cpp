#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "FormatDiskLib/disk_maker_machine.h"
#include "ansi_literal.h"

// Every single call that can fail, of a whole search and disk, fails once: whatever comes of it must be a
// result that a user is told of, and a reported success must be a sound diskette.

namespace {

using namespace UTILS::literals;
using winlayer::WindowsVersion;
using Events = RecordingDiskMaker::Events;

bool startsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

// Small files, so that a run has no more calls than it has kinds of them.
std::vector<test::ZarFile> smallFiles() {
    auto files = emergencyFiles();
    for (test::ZarFile& file : files) {
        if (file.name != "QZLOADER.BIN") {
            file.data.resize(40);
        }
    }
    return files;
}

class Faults : public testing::TestWithParam<WindowsVersion> {
protected:
    Faults() {
        pc.writeArchive(smallFiles());
        pc.putOldFiles();
        start = pc.snapshot();
    }

    struct Outcome {
        int found = 0;
        int made = 0;
        Events events;
    };

    Outcome run() {
        Outcome outcome;
        RecordingDiskMaker maker;
        maker.configure(pc.archiveFolder());
        outcome.found = maker.FindFloppyDrive();
        if (outcome.found == 1) {
            outcome.made = maker.MakeDisk();
        }
        outcome.events = maker.events;
        return outcome;
    }

    // Each function that a whole run calls, with the number of its calls.
    std::map<std::string, std::size_t> callsOfARun() {
        pc.machine().gate.startRecording();
        EXPECT_EQ(run().made, 1);
        std::map<std::string, std::size_t> counts;
        for (const std::string& call : pc.machine().gate.calls()) {
            ++counts[call];
        }
        pc.machine().gate.reset();
        EXPECT_EQ(pc.faultOfDiskette(smallFiles()), "");
        return counts;
    }

    // What is wrong with an outcome after the call of this function failed; empty when it is in order.
    std::string fault(const Outcome& outcome, const std::string& function) {
        const auto& events = outcome.events;
        if (outcome.found == 0) {
            return startsWith(events.back(), "error 0 100 ") ? "" : "a failed search without a report";
        }
        if (outcome.made == 0) {
            return toldFailure(events) ? "" : "a failed disk that ends with " + events[events.size() - 2];
        }
        if (events.back() != "Die Diskette wurde erfolgreich erstellt." ||
            events[events.size() - 2] != "slider 1 100") {
            return "a success that was not told";
        }
        const std::string lacks = pc.faultOfDiskette(smallFiles());
        return lacks.empty() || excused(lacks, function, events) ? "" : "a success, but: " + lacks;
    }

    static bool toldFailure(const Events& events) {
        const std::string& before = events[events.size() - 2];
        return events.back() == "slider 1 0" && (before == "slider 0 0" ||  // the erase, which tells nothing
                                                 before == "Fehler beim Schreiben auf die Diskette" ||
                                                 before == "Fehler bei der Archiv-Extrahierung" ||
                                                 startsWith(before, "Fehler beim Extrahieren der Datei "));
    }

    // What a run does not examine, or has told in its course.
    static bool excused(const std::string& lacks, const std::string& function, const Events& events) {
        const auto told = [&](const std::string& text) {
            return std::find(events.begin(), events.end(), text) != events.end();
        };
        if (startsWith(lacks, "label")) return function == "SetVolumeLabelA";
        if (startsWith(lacks, "attributes")) return function == "SetFileAttributesA";
        if (lacks == "boot sector") return told("error 0 100 Fehler beim Schreiben des Bootsektors");
        if (lacks == "other files are left") return function == "FindFirstFileA";
        // An archive that cannot be read where its next record would begin counts as ended there.
        if (lacks.find(" is missing") != std::string::npos) return function == "ReadFile";
        return false;
    }

    DiskMakerMachine pc{GetParam()};
    std::vector<std::byte> start;
};

INSTANTIATE_TEST_SUITE_P(Windows, Faults, testing::Values(WindowsVersion::Windows98, WindowsVersion::XP),
                         familyName);

TEST_P(Faults, OfEveryCallEndInAResultThatIsTold) {
    static constexpr DWORD errors[] = {ERROR_CRC, ERROR_NOT_READY, ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT};
    const std::size_t handles = pc.machine().handles.openCount();
    std::map<std::string, int> made;
    std::set<std::string> fallible;
    int failed = 0;
    pc.restore(start);
    for (const auto& [function, count] : callsOfARun()) {
        for (std::size_t call = 0; call < count; ++call) {
            SCOPED_TRACE("call " + std::to_string(call) + " of " + function);
            pc.restore(start);
            pc.machine().gate.failFunction(function, errors[call % std::size(errors)], call, 1);
            Outcome outcome;
            ASSERT_NO_THROW(outcome = run());
            const bool met = pc.machine().gate.failedCalls() == 1;
            pc.machine().gate.reset();
            ASSERT_EQ(pc.machine().handles.openCount(), handles);
            ASSERT_EQ(pc.machine().errorMode, 0U);
            if (!met) {
                break;  // this function cannot fail
            }
            fallible.insert(function);
            ++(outcome.made == 1 ? made[function] : failed);
            ASSERT_EQ(fault(outcome, function), "");
        }
    }
    for (const char* function : {"CreateFileA", "DeviceIoControl", "ReadFile", "WriteFile", "FindFirstFileA",
                                 "FindNextFileA", "DeleteFileA", "RemoveDirectoryA", "SetFileAttributesA"}) {
        EXPECT_EQ(fallible.count(function), 1U) << function;
    }
    EXPECT_GT(failed, 100);
    EXPECT_EQ(made["DeleteFileA"] + made["RemoveDirectoryA"] + made["WriteFile"],
              GetParam() == WindowsVersion::XP ? 1 : 0);
}

}  // namespace
