#include "zar_common.h"

#include <gtest/gtest.h>

#include <thread>

#include "support/files.h"
#include "support/zar_bytes.h"
#include "support/zar_recorder.h"

namespace {

using test::number;
using test::Outcome;
using test::pattern;
using test::success;
using UTILS::UtilsByte;
using UTILS::UtilsString;

// The engine with its inside opened up.
class Engine : public ZAR_Common {
public:
    Engine() = default;
    Engine(const Engine& other) : UTILS::Utils<UTILS::DiskIO, int>(), ZAR_Common(other) {}

    using ZAR_Common::CheckForCancelCommand;
    using ZAR_Common::Input;
    using ZAR_Common::MoveToNextRecord;
    using ZAR_Common::OpenInput;
    using ZAR_Common::Output;
    using ZAR_Common::ReadInputByteData;
    using ZAR_Common::ReadInputFileField;
    using ZAR_Common::ReadInputStringData;
    using ZAR_Common::ReadOutputFileField;
    using ZAR_Common::TransactByteData;
    using ZAR_Common::TransactStringData;
    using ZAR_Common::WriteOutputByteData;
    using ZAR_Common::WriteOutputFileField;
    using ZAR_Common::WriteOutputStringData;

    using ZAR_Common::currentField_;
    using ZAR_Common::logFile_;
};

std::string textOf(const UtilsString& text) {
    return std::string(text.c_str(), text.length());
}

class ZarCommonTest : public testing::Test {
protected:
    void input(const std::string& bytes) {
        engine.Input().Close();
        engine.OpenInput(folder.file("in", bytes).c_str());
    }
    void output() {
        engine.Output().Open(outPath().c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS,
                             0);
    }
    std::string outPath() const { return folder / "out"; }
    std::string written() {
        engine.Output().Close();
        return readFile(outPath());
    }
    std::size_t positionOfInput() {
        LARGE_INTEGER none{};
        return engine.Input().SetFilePointer(none, FILE_CURRENT);
    }

    TempFolder folder;
    Engine engine;
};

// A derived class may open the input itself, in any mode.
TEST_F(ZarCommonTest, SkipsARecordFromWhereTheInputStands) {
    const std::string record = test::newRecord({"A", "abc"});
    const std::string path = folder.file("in", record + record);
    for (const int overlapped : {0, 1}) {
        engine.OpenInput(path.c_str());
        while (engine.Input().GetFilePointer() < 2 * record.size()) engine.ReadInputFileField();
        engine.Input().Open(path.c_str(), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, overlapped);
        UtilsString name;
        for (int field = 0; field < 3; ++field) engine.ReadInputFileField();
        engine.ReadInputStringData(name, 1, 1);
        m_archive_fields skip = ZAR_SKIP_FROM_NAME;
        EXPECT_EQ(engine.MoveToNextRecord(skip), 1);
        EXPECT_EQ(engine.ReadInputFileField(), ZAR_NAME) << "of the next record";
    }
}

TEST_F(ZarCommonTest, FieldsAreReadAndWrittenUnscrambled) {
    input(number(0xEFB04FA7) + number(258) + "xy");
    EXPECT_EQ(engine.ReadInputFileField(), 0xEFB04FA7U);
    EXPECT_EQ(engine.GetMag(), 0xEFB04FA7U);
    EXPECT_EQ(engine.ReadInputFileField(), 258U);
    EXPECT_EQ(engine.ReadInputFileField(), 0x7978U) << "what there is of a last one";
    EXPECT_EQ(test::outcomeWithoutError([&] { engine.ReadInputFileField(); }),
              (Outcome{"DiskIoException", 2, 0}));
    output();
    engine.WriteOutputFileField(0xEFBDFDCD);
    LARGE_INTEGER start{};
    engine.Output().SetFilePointer(start, FILE_BEGIN);
    EXPECT_EQ(engine.ReadOutputFileField(), 0xEFBDFDCDU);
    EXPECT_EQ(written(), "\xCD\xFD\xBD\xEF");
}

TEST_F(ZarCommonTest, NamesAndBlocksAreScrambledOnRequest) {
    const std::string stored = test::scrambled("A.TXT");
    input(stored + stored + stored + std::string("ab\0cd", 5) + "tail");
    UtilsString name;
    engine.ReadInputStringData(name, 5, 1);
    EXPECT_EQ(textOf(name), "A.TXT");
    engine.ReadInputStringData(name, 5, 0);
    EXPECT_EQ(textOf(name), stored);
    UtilsByte block;
    engine.ReadInputByteData(block, 5, 1);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(block.c_str()), block.length()), "A.TXT");
    engine.ReadInputStringData(name, 5, 0);
    EXPECT_EQ(textOf(name), "ab") << "up to the first zero byte that was read";

    output();
    name = "A.TXT";
    engine.WriteOutputStringData(name, 5, 1);
    EXPECT_EQ(textOf(name), stored) << "the caller's text is scrambled and stays so";
    engine.WriteOutputStringData(name, 5, 0);
    engine.WriteOutputByteData(block, 5, 1);
    engine.TransactStringData(name, 2, 1);
    engine.TransactByteData(block, 2, 0);
    EXPECT_EQ(written(), stored + stored + stored + test::scrambled("ta") + "il");
}

TEST_F(ZarCommonTest, LengthsThatNoTransferHasAreRefused) {
    input(std::string(70000, 'x'));
    output();
    UtilsString text(std::string(70000, 'y'));
    UtilsByte block;
    for (const DWORD length : {65535U, 65536U, 0xFFFFFFFFU}) {
        EXPECT_EQ(test::outcomeWithoutError([&] { engine.ReadInputStringData(text, length, 1); }),
                  (Outcome{"DiskIoException", 2, 0}));
        EXPECT_EQ(test::outcomeWithoutError([&] { engine.ReadInputByteData(block, length, 1); }),
                  (Outcome{"DiskIoException", 2, 0}));
        EXPECT_EQ(test::outcomeWithoutError([&] { engine.WriteOutputStringData(text, length, 0); }),
                  (Outcome{"DiskIoException", 3, 0}));
    }
    EXPECT_EQ(positionOfInput(), 0U);
    EXPECT_EQ(written(), "");
    engine.ReadInputByteData(block, 65534, 0);
    EXPECT_EQ(block.length(), 65534U);
}

TEST_F(ZarCommonTest, SkippingMovesByTheSizeAndWhatTheFieldSays) {
    const std::string behindName = test::newRecord({"N", pattern(100)}).substr(13);
    struct Row {
        DWORD field;
        std::size_t beyondSize;
    };
    for (const Row& row : {Row{0xEFB04FAA, 28}, Row{0xEFB04FA7, 48}, Row{0xEFB04FA9, 36}}) {
        input(behindName + std::string(100, 'x'));
        auto field = static_cast<m_archive_fields>(row.field);
        EXPECT_EQ(engine.MoveToNextRecord(field), 1);
        EXPECT_EQ(positionOfInput(), 12 + 100 + row.beyondSize);
        EXPECT_EQ(engine.currentField_, 0xEFB232CDU);
    }
    // Above that code the end marker is looked for, in whatever lies between.
    input(behindName + "next");
    auto field = ZAR_DATA;
    EXPECT_EQ(engine.MoveToNextRecord(field), 1);
    EXPECT_EQ(positionOfInput(), behindName.size());
}

TEST_F(ZarCommonTest, ACancelIsSeenOnceByTheNextCheck) {
    EXPECT_EQ(engine.CheckForCancelCommand(), 1);
    EXPECT_EQ(engine.ProcessCancelCommand(), 0);
    engine.SendCancelCommand();
    engine.SendCancelCommand();
    EXPECT_EQ(engine.ProcessCancelCommand(), 0) << "not before a check";
    EXPECT_EQ(engine.CheckForCancelCommand(), 0);
    EXPECT_EQ(engine.ProcessCancelCommand(), 1);
    EXPECT_EQ(engine.CheckForCancelCommand(), 1) << "two were one";
    EXPECT_EQ(engine.ProcessCancelCommand(), 1) << "until it is reset";
    engine.ResetCancelState();
    EXPECT_EQ(engine.ProcessCancelCommand(), 0);
    std::thread(&Engine::SendCancelCommand, &engine).join();
    EXPECT_EQ(engine.CheckForCancelCommand(), 0) << "from another thread";
}

TEST_F(ZarCommonTest, ACopyHasTheLogFileAndTheSameCancel) {
    engine.SetLogFile((folder / "log.txt").c_str());
    Engine copy(engine);
    EXPECT_STREQ(copy.logFile_.GetPath(), (folder / "log.txt").c_str());
    EXPECT_EQ(copy.size(), 2U);
    engine.SendCancelCommand();
    EXPECT_EQ(copy.CheckForCancelCommand(), 0);
    EXPECT_EQ(engine.CheckForCancelCommand(), 1);
}

}  // namespace
