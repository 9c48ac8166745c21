#include "zar_extract.h"

#include <gtest/gtest.h>

#include "support/files.h"
#include "support/zar_bytes.h"
#include "support/zar_recorder.h"

namespace {

using test::extractionError;
using test::Extractor;
using test::Outcome;
using test::Padding;
using test::pattern;
using test::success;
using test::ZarFile;

constexpr const char* extracting = "Extrahiert die Datei:  ";
constexpr const char* failing = "Fehler bei der Extrahierung der Datei:  ";
const Outcome readFailure{"DiskIoException", 2, 0};

class ZarExtractTest : public testing::Test {
protected:
    ZarExtractTest() { folder.directory("out"); }

    std::string out(const std::string& name = "") const {
        return folder / (name.empty() ? std::string("out") : "out\\" + name);
    }
    void archive(const std::string& bytes) { writeFile(folder / "a.zar", bytes); }
    Outcome all(int subDirAsRoot = 0) { return run(nullptr, 1, subDirAsRoot); }
    Outcome only(const char* name, int subDirAsRoot = 0) { return run(name, 0, subDirAsRoot); }
    Outcome run(const char* name, int autoExtract, int subDirAsRoot) {
        extractor.calls.clear();
        return test::outcomeWithoutError([&] {
            extractor.Extract(folder.path().c_str(), "a.zar", out().c_str(), name, autoExtract, subDirAsRoot);
        });
    }
    // Empties the target between runs of one case.
    void clear() {
        for (const std::string& name : test::filesBelow(out())) {
            SetFileAttributesA(out(name).c_str(), FILE_ATTRIBUTE_NORMAL);
            DeleteFileA(out(name).c_str());
        }
    }
    std::string status(const std::string& name) const { return extracting + out(name) + " / 1"; }

    TempFolder folder;
    Extractor extractor;
};

using Calls = std::vector<std::string>;
using Names = std::vector<std::string>;

TEST_F(ZarExtractTest, TakesOneFileWithItsAttributesAndNoStatus) {
    archive(test::newArchive({{"FIRST.TXT", "1"}, {"IO.SYS", "system", 7}, {"LAST.TXT", "2"}}));
    EXPECT_EQ(only("IO.SYS"), success);
    EXPECT_EQ(test::filesBelow(out()), Names{"IO.SYS"});
    EXPECT_EQ(readFile(out("IO.SYS")), "system");
    EXPECT_EQ(GetFileAttributesA(out("IO.SYS").c_str()) & 7U, 7U) << "the system may add the archive bit";
    EXPECT_EQ(extractor.calls, Calls{"window"});
    EXPECT_EQ(extractor.IsIOStarted(), 0);
    EXPECT_EQ(extractor.GetI(), 6U);
}

TEST_F(ZarExtractTest, TakesAllFilesAndSaysSo) {
    archive(test::newArchive({{"A.TXT", "a"}, {"DOS\\SUB\\B.TXT", "bb"}, {"DOS\\C.TXT", "ccc"}}));
    EXPECT_EQ(all(), success);
    EXPECT_EQ(readFile(out("A.TXT")), "a");
    EXPECT_EQ(readFile(out("DOS\\SUB\\B.TXT")), "bb");
    EXPECT_EQ(readFile(out("DOS\\C.TXT")), "ccc");
    EXPECT_EQ(extractor.calls, (Calls{"window", status("A.TXT"), "slider 0 0", status("DOS\\SUB\\B.TXT"),
                                      "slider 0 0", status("DOS\\C.TXT"), "slider 0 0"}));
    EXPECT_EQ(all(), success) << "again, over what is there";
}

TEST_F(ZarExtractTest, TheConstructorCanDoItAll) {
    archive(test::newArchive({{"A.TXT", "a"}}));
    const Extract_ZAR extracted(folder.path().c_str(), "a.zar", out().c_str(), nullptr, 1, 0);
    EXPECT_EQ(readFile(out("A.TXT")), "a");
    const Extract_ZAR whole((folder / "a.zar").c_str(), nullptr, out("x").c_str(), nullptr, 1, 0);
    EXPECT_EQ(readFile(out("x\\A.TXT")), "a") << "the target directory is made as well";
}

TEST_F(ZarExtractTest, ANameThatIsNotThereIsNoFailure) {
    archive(test::newArchive({{"A.TXT", "a"}, {"B.TXT", "b"}}));
    for (const char* name : {"C.TXT", "a.txt", "A.TXT ", "A"}) {
        EXPECT_EQ(only(name), success) << name;
        EXPECT_EQ(extractor.calls, Calls{"window"});
    }
    EXPECT_TRUE(test::filesBelow(out()).empty());
    archive(test::oldArchive({{"A.TXT", "a"}, {"B.TXT", "b"}}));
    EXPECT_EQ(only("C.TXT"), success);
    EXPECT_TRUE(test::filesBelow(out()).empty());
}

TEST_F(ZarExtractTest, OnlyAnArchiveIsAccepted) {
    archive(std::string(4, '\0'));
    try {
        extractor.Extract(folder.path().c_str(), "a.zar", out().c_str(), nullptr, 1, 0);
        ADD_FAILURE() << "accepted";
    } catch (const UTILS::std_exception& thrown) {
        const std::string report = thrown.what();
        EXPECT_TRUE(report.starts_with("File:  zarlib\\zarlibsource\\zar_extract; Line Number:  ")) << report;
        EXPECT_TRUE(
            report.ends_with("; Exception Name:  class UTILS::std_exception; Type:  170; Error Condition:  "
                             "Extraction Error!  Operation did not complete."))
            << report;
    }
    archive("\xA7");
    EXPECT_EQ(all(), extractionError);
    archive("");
    EXPECT_EQ(all(), readFailure);
    DeleteFileA((folder / "a.zar").c_str());
    EXPECT_EQ(all(), (Outcome{"DiskIoException", 1, 0}));
    // Nothing is left open: the folder can be renamed.
    archive("x");
    EXPECT_EQ(all(), extractionError);
    EXPECT_TRUE(DeleteFileA((folder / "a.zar").c_str()));
}

TEST_F(ZarExtractTest, DropsTheFirstElementWhenAskedTo) {
    archive(test::newArchive({{"Disk\\DOS\\IO.SYS", "io"}, {"\\Disk\\B.TXT", "b"}}));
    EXPECT_EQ(all(1), success);
    EXPECT_EQ(test::filesBelow(out()), (Names{"B.TXT", "DOS\\IO.SYS"}));
    EXPECT_EQ(extractor.calls[1], status("DOS\\IO.SYS"));
    clear();
    EXPECT_EQ(only("\\DOS\\IO.SYS", 1), success) << "names are compared after the reduction";
    EXPECT_EQ(test::filesBelow(out()), Names{"DOS\\IO.SYS"});
    clear();
    EXPECT_EQ(only("Disk\\DOS\\IO.SYS", 1), success);
    EXPECT_TRUE(test::filesBelow(out()).empty());
    EXPECT_EQ(only("Disk\\DOS\\IO.SYS", 0), success);
    EXPECT_EQ(test::filesBelow(out()), Names{"Disk\\DOS\\IO.SYS"}) << "under its stored name";

    archive(test::newArchive({{"IO.SYS", "io"}}));
    EXPECT_EQ(all(1), extractionError) << "nothing is left of the name";
}

TEST_F(ZarExtractTest, CopiesInStepsOf8094Bytes) {
    for (const bool old : {false, true}) {
        for (const std::size_t size : {1U, 8093U, 8094U, 8095U, 16188U, 16189U, 65536U}) {
            SCOPED_TRACE(size);
            const std::vector<ZarFile> files = {
                {"A", "before"}, {"DATA.BIN", pattern(size)}, {"Z", "behind"}};
            archive(old ? test::oldArchive(files) : test::newArchive(files));
            EXPECT_EQ(all(), success);
            for (const ZarFile& file : files) EXPECT_EQ(readFile(out(file.name)), file.data);
            clear();
            EXPECT_EQ(only("DATA.BIN"), success);
            EXPECT_EQ(readFile(out("DATA.BIN")), files[1].data);
            clear();
        }
    }
}

TEST_F(ZarExtractTest, AnEmptyFileCannotBeCopied) {
    archive(test::newArchive({{"A", "a"}, {"EMPTY", ""}, {"B", "b"}}));
    EXPECT_EQ(all(), extractionError);
    EXPECT_EQ(extractor.calls,
              (Calls{"window", status("A"), "slider 0 0", status("EMPTY"), failing + out("EMPTY") + " / 1"}));
    EXPECT_EQ(only("EMPTY"), extractionError);
    EXPECT_EQ(extractor.calls, Calls{"window"});
    EXPECT_EQ(only("B"), success) << "it can be passed over";
    archive(test::oldArchive({{"EMPTY", ""}}));
    EXPECT_EQ(all(), extractionError);
    EXPECT_EQ(extractor.calls, (Calls{"window", "slider 0 0", status("EMPTY")}));
}

TEST_F(ZarExtractTest, OldArchivesAreReadHoweverNamesArePadded) {
    for (const Padding padding : {Padding::Stored, Padding::Scrambled}) {
        archive(test::oldArchive({{"IO.SYS", "io"}, {"SIXTEEN-LETTERSX", "16"}, {"B.TXT", "b"}}, padding));
        EXPECT_EQ(all(), success);
        EXPECT_EQ(test::filesBelow(out()), (Names{"B.TXT", "IO.SYS", "SIXTEEN-LETTERSX"}));
        EXPECT_EQ(extractor.calls, (Calls{"window", "slider 0 0", status("IO.SYS"), "slider 0 0",
                                          status("SIXTEEN-LETTERSX"), "slider 0 0", status("B.TXT")}));
        clear();
        EXPECT_EQ(only("B.TXT"), success);
        EXPECT_EQ(readFile(out("B.TXT")), "b");
        EXPECT_EQ(extractor.calls, Calls{"window"});
        clear();
    }
}

TEST_F(ZarExtractTest, AnythingButASignatureBehindAnOldRecordIsAnError) {
    for (const std::string& behind :
         {std::string("x"), std::string("junk"), std::string(40, 'j'), test::newRecord({"B", "b"})}) {
        archive(test::oldRecord({"A", "a"}) + behind);
        EXPECT_EQ(all(), extractionError);
        EXPECT_EQ(readFile(out("A")), "a");
        EXPECT_EQ(extractor.calls, (Calls{"window", "slider 0 0", status("A")}));
        EXPECT_EQ(only("B"), extractionError);
        EXPECT_EQ(only("A"), success) << "what is behind is not looked at";
    }
}

TEST_F(ZarExtractTest, NamesThatLeaveTheTargetEndTheExtractionBeforeAnythingIsMade) {
    for (const char* name :
         {"..\\EVIL", "DOS\\..\\..\\EVIL", "C:\\EVIL", "C:EVIL", "\\EVIL", "\\\\server\\EVIL", "/EVIL", "NUL",
          "con.txt", "DOS\\AUX .x", ".. \\EVIL", ".", "DOS\\", "A:B"}) {
        for (const bool old : {false, true}) {
            SCOPED_TRACE(name);
            const std::vector<ZarFile> files = {{"A", "a"}, {name, "evil"}, {"B", "b"}};
            archive(old ? test::oldArchive(files) : test::newArchive(files));
            EXPECT_EQ(all(), extractionError);
            EXPECT_EQ(test::filesBelow(folder.path()), (Names{"a.zar", "out\\A"}))
                << "up to the record before";
            EXPECT_EQ(extractor.calls.back(), old ? status("A") : "slider 0 0");
            EXPECT_EQ(only(name), extractionError);
            EXPECT_EQ(only("B"), success) << "it is passed over";
            EXPECT_EQ(test::filesBelow(folder.path()), (Names{"a.zar", "out\\A", "out\\B"}));
            clear();
        }
    }
}

TEST_F(ZarExtractTest, ANameIsReadUpToAKeyByte) {
    archive(
        test::newArchive({{"AB\x93"
                           "CD",
                           "x"}}));
    EXPECT_EQ(all(), success);
    EXPECT_EQ(test::filesBelow(out()), Names{"AB"});
    archive(
        test::newArchive({{"\x93"
                           "CD",
                           "x"}}));
    EXPECT_EQ(all(), extractionError) << "nothing is left of it";
    archive(test::newArchive({{std::string("AB\0CD", 5), "x"}}));
    EXPECT_EQ(all(), extractionError) << "a zero byte would hide the rest";
}

TEST_F(ZarExtractTest, NameLengthsAreNotBelieved) {
    const std::string good = test::newRecord({"A", "a"});
    for (const std::uint32_t length : {0U, 42U, 1000U, 65534U, 65535U, 65536U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        SCOPED_TRACE(length);
        archive(good + test::number(0xEFB04FA7) + test::number(0xEFB036CD) + test::number(length) +
                good.substr(12));
        const bool swallowsTheRest = length >= 42 && length < 65535;
        EXPECT_EQ(all(), swallowsTheRest ? success : readFailure);
        EXPECT_EQ(test::filesBelow(out()), Names{"A"});
        EXPECT_EQ(only("B"), swallowsTheRest ? extractionError : readFailure);
    }
    // The file is long enough for it, but no name is.
    archive(test::newArchive({{std::string(65535, 'n'), "x"}}));
    EXPECT_EQ(all(), readFailure);
}

TEST_F(ZarExtractTest, SizesCannotLeadBackOrPastTheEnd) {
    const std::string record = test::newRecord({"A", "aaa"});
    for (const std::uint32_t size :
         {4U, 5U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFB0U, 0xFFFFFFE3U, 0xFFFFFFE4U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(size);
        std::string changed = record;
        changed.replace(21, 4, test::number(size));
        archive(record + changed);
        EXPECT_EQ(only("B"), extractionError);
        archive(test::oldRecord({"A", "aaa"}) + test::oldRecord({"A", "aaa"}).substr(0, 20) +
                test::number(size) + "aaa");
        EXPECT_EQ(only("B"), success) << "in the old layout it counts as the end";
    }
    archive(record + record);
    EXPECT_EQ(only("B"), success) << "four bytes past the end, behind the last record";
}

TEST_F(ZarExtractTest, StoredAttributesCannotChangeHowAFileIsOpened) {
    // Delete on close, overlapped transfers, backup semantics: flags of the opening, were they passed on.
    for (const DWORD attributes : {0xFFFFFFFFU, 0x04000020U, 0x40000001U, 0x02000010U}) {
        archive(test::newArchive({{"A", "abc", attributes}}));
        EXPECT_EQ(all(), success);
        EXPECT_EQ(readFile(out("A")), "abc");
        clear();
    }
}

// What becomes of an archive that is cut off, told from where the cut lies in its last record.
struct Cut {
    Outcome outcome;
    bool fileMade;
    std::size_t fileSize;
};

Cut expectedAll(std::size_t cut, std::size_t name, std::size_t size) {
    if (cut < 8) return {success, false, 0};              // looking for the next record
    if (cut <= 12) return {readFailure, false, 0};        // no length, or no name
    if (cut < 20 + name) return {success, false, 0};      // looking for the size
    if (cut < 44 + name) return {readFailure, false, 0};  // size, attributes, data marker
    const std::size_t data = std::min(cut - 44 - name, size);
    if (data < size && data % 8094 == 0) return {extractionError, true, data};
    return {success, true, data};
}

Outcome expectedSkip(std::size_t cut, std::size_t name, std::size_t size) {
    if (cut < 8) return success;
    if (cut <= 12) return readFailure;
    return cut < 48 + name + size ? extractionError : success;
}

TEST_F(ZarExtractTest, ANewArchiveCutAnywhere) {
    const std::string first = test::newRecord({"FIRST", "1"});
    for (const std::size_t size : {3U, 8097U}) {
        const ZarFile file = {"CUT.BIN", pattern(size)};
        const std::string record = test::newRecord(file);
        for (std::size_t cut = 0; cut <= record.size(); ++cut) {
            if (cut == 60 && size > 100) cut = 44 + 7 + 8090;
            SCOPED_TRACE("cut at " + std::to_string(cut) + " of " + std::to_string(record.size()));
            archive(first + record.substr(0, cut));
            const Cut expected = expectedAll(cut, 7, size);
            EXPECT_EQ(all(), expected.outcome);
            EXPECT_EQ(readFile(out("FIRST")), "1");
            EXPECT_EQ(exists(out("CUT.BIN")), expected.fileMade);
            if (expected.fileMade) {
                EXPECT_EQ(readFile(out("CUT.BIN")), file.data.substr(0, expected.fileSize));
            }
            clear();
            EXPECT_EQ(only("NONE"), expectedSkip(cut, 7, size));
        }
    }
}

TEST_F(ZarExtractTest, AnOldArchiveCutAnywhere) {
    const std::string first = test::oldRecord({"FIRST", "1"});
    const ZarFile file = {"CUT.BIN", pattern(8097)};
    const std::string record = test::oldRecord(file);
    for (std::size_t cut = 0; cut <= record.size(); ++cut) {
        if (cut == 30) cut = 24 + 8090;
        SCOPED_TRACE("cut at " + std::to_string(cut));
        archive(first + record.substr(0, cut));
        Outcome expected = success;
        if (cut > 0 && cut < 4) expected = extractionError;     // no signature
        if (cut > 4 && cut <= 20) expected = readFailure;       // a name, but no size
        if (cut > 20 && cut <= 24) expected = extractionError;  // no data
        if (cut == 24 + 8094) expected = extractionError;       // a step that finds nothing
        EXPECT_EQ(all(), expected);
        if (cut > 24) {
            EXPECT_EQ(readFile(out("CUT.BIN")), file.data.substr(0, cut - 24));
        }
        clear();
        EXPECT_EQ(only("NONE"), cut > 0 && cut < 4 ? extractionError : success);
    }
}

TEST_F(ZarExtractTest, ACancelStopsTheFileThatIsBeingCopied) {
    archive(test::newArchive({{"A", pattern(100)}, {"B", pattern(20000)}, {"C", "c"}}));
    extractor.cancelAtStatus = 2;
    EXPECT_EQ(test::outcomeOf(
                  [&] { extractor.Extract(folder.path().c_str(), "a.zar", out().c_str(), nullptr, 1, 0); }),
              test::cancelledExtraction);
    EXPECT_EQ(readFile(out("A")), pattern(100));
    EXPECT_EQ(readFile(out("B")), pattern(20000).substr(0, 8094)) << "partly written";
    EXPECT_FALSE(exists(out("C")));
    EXPECT_EQ(extractor.calls, (Calls{"window", status("A"), "slider 0 0", status("B")}));
    EXPECT_EQ(extractor.IsIOStarted(), 0);
    EXPECT_EQ(extractor.ProcessCancelCommand(), 1);
    EXPECT_EQ(all(), success) << "and again without a cancel";
    EXPECT_EQ(extractor.ProcessCancelCommand(), 0);
    try {
        extractor.SendCancelCommand();
        extractor.SendCancelCommand();
        extractor.Extract(folder.path().c_str(), "a.zar", out().c_str(), "C", 0, 0);
        ADD_FAILURE() << "two cancels count as one, but one there is";
    } catch (const ZAR_CommonException& thrown) {
        EXPECT_STREQ(thrown.m_condition.c_str(), "The Cancel Command Has Been Processed");
        EXPECT_STREQ(thrown.m_file.c_str(), "zarlib\\zarlibsource\\zar_extract");
        EXPECT_STREQ(thrown.derived_class(), "class ZAR_CommonException");
    }
    EXPECT_EQ(only("C"), success);
}

TEST_F(ZarExtractTest, ATargetThatCannotBeWrittenIsTheFileLayersFailure) {
    archive(test::newArchive({{"DOS\\A", "a"}}));
    folder.file("out\\DOS", "a file in the way");
    EXPECT_EQ(all(), (Outcome{"DiskIoException", 1, 0}));
    EXPECT_EQ(extractor.calls, Calls{"window"});
}

// A derived class may go through an archive step by step.
class Stepwise : public Extract_ZAR {
public:
    explicit Stepwise(const Extract_ZAR& other) : UTILS::Utils<UTILS::DiskIO, int>(), Extract_ZAR(other) {}

    int run() {
        OpenInput(archivePath_.GetPath());
        ReadInputFileField();
        return DoNewExtraction(nullptr);
    }
};

TEST_F(ZarExtractTest, ACopyTakesPathsAndFlagsAndSharesTheCancel) {
    archive(test::newArchive({{"A", "a"}}));
    Extract_ZAR original;
    Extract_ZAR copy(original);
    Extract_ZAR assigned;
    assigned = original;
    original.SendCancelCommand();
    const auto extract = [&](Extract_ZAR& worker) {
        return test::outcomeOf(
            [&] { worker.Extract(folder.path().c_str(), "a.zar", out().c_str(), nullptr, 1, 0); });
    };
    EXPECT_EQ(extract(copy), test::cancelledExtraction)
        << "one event, one signal: the first to look takes it";
    EXPECT_EQ(extract(original), success);
    EXPECT_EQ(extract(assigned), success);
    clear();
    EXPECT_EQ(Stepwise(original).run(), 1);
    EXPECT_EQ(readFile(out("A")), "a");
}

}  // namespace
