#include "diskio.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/files.h"
#include "support/thrown.h"

namespace {

using test::Report;
using UTILS::DiskIO;
using UTILS::UtilsByte;
using UTILS::UtilsString;

const std::string source = "..\\..\\Include\\diskio";
constexpr DWORD readWrite = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE;

template <class Operation>
Report thrownBy(Operation operation) {
    return test::thrownBy<UTILS::DiskIoException>(operation);
}

LARGE_INTEGER distance(LONGLONG bytes) {
    LARGE_INTEGER value{};
    value.QuadPart = bytes;
    return value;
}

std::string textOf(const UtilsString& text) {
    return std::string(text.c_str(), text.length());
}

std::string textOf(const UtilsByte& bytes) {
    return std::string(reinterpret_cast<const char*>(bytes.c_str()), bytes.length());
}

class DiskIOTest : public testing::Test {
protected:
    std::string create(const std::string& content) { return test::makeFile(folder, "a.bin", content); }
    static void expectNothingOpen(const DiskIO& file) {
        EXPECT_FALSE(file.IsOpen());
        EXPECT_FALSE(file.get_async_mode());
        EXPECT_EQ(file.GetFileSize(), 0U);
        EXPECT_EQ(file.GetBytesRead(), 0U);
        EXPECT_EQ(file.GetBytesWritten(), 0U);
        EXPECT_EQ(file.get_error(), 0U);
        EXPECT_EQ(textOf(file.GetFileName()), "");
    }

    TempFolder folder;
};

TEST_F(DiskIOTest, StartsWithNothingOpenAndClosingThatIsHarmless) {
    DiskIO file;
    expectNothingOpen(file);
    EXPECT_EQ(file.get_filesystem(), UTILS::FILESYSTEM_NONE);
    EXPECT_NO_THROW(file.Close());
    EXPECT_NO_THROW(file.Flush());
    EXPECT_TRUE(file == DiskIO());
}

TEST_F(DiskIOTest, OpeningAMissingFileNamesEverythingThatWasAskedFor) {
    const std::string path = folder / "missing.bin";
    DiskIO file;
    const Report report = thrownBy([&] { file.Open(path.c_str(), readWrite, shared, OPEN_EXISTING, 0); });
    const Report expected{1, ERROR_FILE_NOT_FOUND,
                          "DiskIo::Open - CreateFile handle invalid trying to open file:  " + path +
                              " in Non Overlapped mode with access 3221225472, sharing 3, openflag 3",
                          source};
    EXPECT_EQ(report, expected);
    EXPECT_EQ(file.get_error(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(thrownBy([&] { DiskIO opened(path.c_str()); }), expected);

    // The object can be used again at once.
    file.Open(create("x").c_str(), GENERIC_READ, shared, OPEN_EXISTING, 0);
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(file.GetFileSize(), 1U);
}

TEST_F(DiskIOTest, OpeningAgainClosesWhatWasOpen) {
    const std::string first = test::makeFile(folder, "first", "1");
    DiskIO file(first.c_str(), readWrite, 0, OPEN_EXISTING, 0);
    const std::string second = test::makeFile(folder, "second", "22");
    file.Open(second.c_str(), GENERIC_READ, shared, OPEN_EXISTING, 0);
    EXPECT_EQ(file.GetFileSize(), 2U);
    EXPECT_EQ(textOf(file.GetFileName()), second);
    EXPECT_NO_THROW(DiskIO(first.c_str(), readWrite, 0, OPEN_EXISTING, 0)) << "still held exclusively";
}

TEST_F(DiskIOTest, ReadsWhatThereIsAndFailsAtTheEnd) {
    DiskIO file(create(std::string(700, 'x')).c_str());
    char buffer[1000] = {};
    file.Read(buffer, 0);
    EXPECT_EQ(file.GetBytesRead(), 512U);
    file.SetReadWriteSize(100);
    file.Read(buffer, 0);
    EXPECT_EQ(file.GetBytesRead(), 100U);
    file.Read(buffer, 1000);
    EXPECT_EQ(file.GetBytesRead(), 88U) << "a short transfer is no failure";
    const Report atEnd = thrownBy([&] { file.Read(buffer, 0); });
    EXPECT_EQ(atEnd.type, 2U);
    EXPECT_EQ(atEnd.condition, "DiskIO::Read - ReadFile in Non Overlapped mode read 0 bytes out of 100");
    EXPECT_EQ(atEnd.file, source);
    file.SetFilePointer(distance(0), FILE_BEGIN);
    EXPECT_NO_THROW(file.Read(buffer, 1)) << "usable after a failure";
}

// An error left behind by an unrelated call must not turn the end of a file into a transfer under way.
TEST_F(DiskIOTest, AStaleErrorIsNotTakenForTheTransfersOwn) {
    DiskIO file(create("x").c_str());
    char buffer[4];
    file.Read(buffer, 1);
    SetLastError(ERROR_IO_PENDING);
    EXPECT_EQ(thrownBy([&] { file.Read(buffer, 1); }).type, 2U);
}

TEST_F(DiskIOTest, FailsWithoutAnOpenFile) {
    DiskIO file;
    char buffer[4] = {};
    EXPECT_EQ(thrownBy([&] { file.Read(buffer, 3); }),
              (Report{2, ERROR_INVALID_HANDLE,
                      "DiskIO::Read - ReadFile in Non Overlapped mode read 0 bytes out of 3", source}));
    EXPECT_EQ(thrownBy([&] { file.Write(buffer, 3); }),
              (Report{3, ERROR_INVALID_HANDLE,
                      "DiskIO::Write - WriteFile in Non Overlapped mode wrote 0 bytes out of 3", source}));
    EXPECT_EQ(
        thrownBy([&] { file.SetFilePointer(distance(7), FILE_END); }),
        (Report{5, ERROR_INVALID_HANDLE,
                "DiskIo::SetFilePointer - SetFilePointer could not move file pointer by 7 from position "
                "FILE_END",
                source}));
    EXPECT_EQ(thrownBy([&] { file.SetEndOfFile(); }),
              (Report{5, ERROR_INVALID_HANDLE, "DiskIo::SetEndOfFile", source}));
    EXPECT_EQ(
        thrownBy([&] { file.DeviceControl(7, buffer, 4, nullptr, 0); }),
        (Report{0, ERROR_INVALID_HANDLE, "DiskIO::DeviceControl - Cannot Execute Device Cmd 7", source}));
}

TEST_F(DiskIOTest, AWriteRefreshesTheSize) {
    DiskIO file(create("").c_str());
    EXPECT_EQ(file.GetFileSize(), 0U);
    file.Write("abcdef", 6);
    EXPECT_EQ(file.GetBytesWritten(), 6U);
    EXPECT_EQ(file.GetFileSize(), 6U);
    file.SetReadWriteSize(3);
    file.Write("ghijkl", 0);
    EXPECT_EQ(file.GetFileSize(), 9U);
    file.Close();
    EXPECT_EQ(readFile(folder / "a.bin"), "abcdefghi");
}

TEST_F(DiskIOTest, TheFilePointerMovesFromAllThreePlaces) {
    DiskIO file(create("0123456789").c_str());
    EXPECT_EQ(file.SetFilePointer(distance(4), FILE_BEGIN), 4U);
    EXPECT_EQ(file.SetFilePointer(distance(3), FILE_CURRENT), 7U);
    EXPECT_EQ(file.SetFilePointer(distance(-2), FILE_END), 8U);
    char c = 0;
    file.Read(&c, 1);
    EXPECT_EQ(c, '8');
    const Report before = thrownBy([&] { file.SetFilePointer(distance(-1), FILE_BEGIN); });
    EXPECT_EQ(before.type, 5U);
    EXPECT_NE(before.error, 0U);
    EXPECT_TRUE(before.condition.ends_with(" from position FILE_BEGIN")) << before.condition;

    file.SetFilePointer(distance(4), FILE_BEGIN);
    file.SetEndOfFile();
    file.Close();
    EXPECT_EQ(readFile(folder / "a.bin"), "0123") << "the file ends where the pointer stands";
}

TEST_F(DiskIOTest, OperatorsWriteRecordsOfTheWriteSize) {
    const std::string record = "hello" + std::string(507, '\0');
    const auto* const bytes = reinterpret_cast<const unsigned char*>(record.data());
    const std::function<void(DiskIO&)> forms[] = {
        [](DiskIO& file) { file << "hello"; }, [](DiskIO& file) { file << UtilsString("hello"); },
        [&](DiskIO& file) { file << UtilsByte(bytes, 5); },
        [&](DiskIO& file) { file << bytes; },  // has no whole mode
    };
    struct Row {
        WORD size;
        std::size_t forms;
        std::string expected;
    };
    for (const Row& row :
         {Row{512, 4, record}, Row{5, 4, "hello"}, Row{3, 4, "hel"}, Row{DiskIO::wholeSize, 3, "hello"}}) {
        for (std::size_t form = 0; form < row.forms; ++form) {
            SCOPED_TRACE(std::to_string(row.size) + " bytes, form " + std::to_string(form));
            DiskIO file(create("").c_str());
            file.SetReadWriteSize(row.size);
            forms[form](file);
            EXPECT_EQ(file.GetBytesWritten(), row.expected.size());
            file.Close();
            EXPECT_EQ(readFile(folder / "a.bin"), row.expected);
        }
    }
}

TEST_F(DiskIOTest, StringsAndBytesAreWrittenWithTheZerosInside) {
    const std::string content("a\0b\0", 4);
    DiskIO file(create("").c_str());
    file.SetReadWriteSize(DiskIO::wholeSize);
    file << UtilsByte(reinterpret_cast<const unsigned char*>(content.data()), 4);
    UtilsString text("a.b.");
    text.XORString(0);
    for (DWORD i : {1U, 3U}) text.RetrieveChar(i) = '\0';
    file << text;
    file.Close();
    EXPECT_EQ(readFile(folder / "a.bin"), content + content);
}

TEST_F(DiskIOTest, NumbersAreFourBytesLeastSignificantFirst) {
    DiskIO file(create("").c_str());
    file << DWORD{258} << DWORD{0xEFB04FA7};
    file.SetFilePointer(distance(0), FILE_BEGIN);
    DWORD first = 0;
    unsigned long second = 0;  // wider than DWORD on some systems
    file >> first >> second;
    EXPECT_EQ(first, 258U);
    EXPECT_EQ(second, 0xEFB04FA7U);
    EXPECT_EQ(thrownBy([&] { file >> first; }).condition,
              "DiskIO::Read - ReadFile in Non Overlapped mode read 0 bytes out of 4");
    file.Close();
    EXPECT_EQ(readFile(folder / "a.bin"), std::string("\x02\x01\0\0\xA7\x4F\xB0\xEF", 8));
}

TEST_F(DiskIOTest, OperatorsReadRecordsOfTheReadSize) {
    const std::string content("ab\0cdefghij", 11);
    DiskIO file(create(content).c_str());
    const auto again = [&](WORD size) -> DiskIO& {
        file.SetFilePointer(distance(0), FILE_BEGIN);
        file.SetReadWriteSize(size);
        return file;
    };
    char buffer[20] = {};
    again(4) >> buffer;
    EXPECT_EQ(std::string(buffer, 5), std::string("ab\0c\0", 5));
    unsigned char bytes[20] = {};
    again(DiskIO::wholeSize) >> bytes;
    EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), 11), content);

    UtilsString text;
    again(6) >> text;
    EXPECT_EQ(textOf(text), "ab") << "a string ends at the first zero byte";
    EXPECT_EQ(file.GetBytesRead(), 6U);
    UtilsByte block;
    again(6) >> block;
    EXPECT_EQ(textOf(block), content.substr(0, 6));
    again(DiskIO::wholeSize) >> block;
    EXPECT_EQ(textOf(block), content);
    again(512) >> block;
    EXPECT_EQ(textOf(block), content) << "a short record";
}

TEST_F(DiskIOTest, WholeModeOfNothing) {
    DiskIO file(create("").c_str());
    file.SetReadWriteSize(DiskIO::wholeSize);
    file << "" << UtilsString() << UtilsByte();
    EXPECT_EQ(file.GetFileSize(), 0U) << "an empty text writes nothing";
    char buffer[1] = {'?'};
    EXPECT_EQ(thrownBy([&] { file >> buffer; }).type, 2U) << "an empty file is at its end";
    EXPECT_EQ(buffer[0], '?');
    UtilsString text("kept");
    EXPECT_EQ(thrownBy([&] { file >> text; }).type, 2U);
    EXPECT_EQ(textOf(text), "kept");
}

TEST_F(DiskIOTest, PlainBytesHaveNoWholeMode) {
    DiskIO file(create("").c_str());
    file.SetReadWriteSize(DiskIO::wholeSize);
    const std::string bytes(65535, '\0');
    file << reinterpret_cast<const unsigned char*>(bytes.data());
    EXPECT_EQ(file.GetBytesWritten(), 65535U);
}

TEST_F(DiskIOTest, ASizeOfNothingIsRefused) {
    DiskIO file(create("abc").c_str());
    file.SetReadWriteSize(0);
    UtilsByte block;
    EXPECT_EQ(thrownBy([&] { file >> block; }).condition,
              "DiskIO::Read - ReadFile in Non Overlapped mode read 0 bytes out of 0");
    EXPECT_EQ(thrownBy([&] { file << "abc"; }).condition,
              "DiskIO::Write - WriteFile in Non Overlapped mode wrote 0 bytes out of 0");
}

TEST_F(DiskIOTest, ACopyHasAHandleOfItsOwnToTheSameFile) {
    DiskIO file(create("0123456789").c_str());
    file.SetReadWriteSize(3);
    DiskIO copy(file);
    EXPECT_TRUE(copy.IsOpen());
    EXPECT_TRUE(copy != file);
    EXPECT_EQ(textOf(copy.GetFileName()), (folder / "a.bin"));
    EXPECT_EQ(copy.GetFileSize(), 10U);
    char buffer[4] = {};
    file.Read(buffer, 0);
    copy.Read(buffer, 0);
    EXPECT_STREQ(buffer, "345") << "they share the file pointer";
    file.Close();
    copy.Read(buffer, 0);
    EXPECT_STREQ(buffer, "678") << "and close on their own";

    const std::string other = test::makeFile(folder, "other", "x");
    DiskIO target(other.c_str(), readWrite, 0, OPEN_EXISTING, 0);
    target = copy;
    EXPECT_NO_THROW(DiskIO(other.c_str(), readWrite, 0, OPEN_EXISTING, 0)) << "the target's file was closed";
    DiskIO& same = target;
    target = same;
    EXPECT_TRUE(target.IsOpen());
}

TEST_F(DiskIOTest, ClosingForgetsAllButTheSizes) {
    DiskIO file(create("0123456789").c_str());
    file.SetReadWriteSize(4);
    file.SetFileAttributes(FILE_ATTRIBUTE_HIDDEN);
    char buffer[4];
    file.Read(buffer, 0);
    file.Write("abc", 3);
    EXPECT_EQ(thrownBy([&] { file.Delete("no such file", 0); }).error, ERROR_FILE_NOT_FOUND);
    file.Close();
    expectNothingOpen(file);
    file.Open((folder / "new").c_str(), GENERIC_WRITE, shared, CREATE_NEW, 0);
    EXPECT_EQ(file.GetFileAttributes() & FILE_ATTRIBUTE_HIDDEN, 0U);
    file.Open((folder / "a.bin").c_str(), GENERIC_READ, shared, OPEN_EXISTING, 0);
    file.Read(buffer, 0);
    EXPECT_EQ(file.GetBytesRead(), 4U);
}

TEST_F(DiskIOTest, ACopyHasTheMembersOfItsSource) {
    DiskIO file(create("").c_str(), readWrite, shared, OPEN_EXISTING, 1);
    file.SetFileAttributes(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    file.SetReadWriteSize(4);
    file << "abcd";
    EXPECT_EQ(thrownBy([&] { file.Delete("no such file", 0); }).error, ERROR_FILE_NOT_FOUND);
    DiskIO copy(file);
    EXPECT_EQ(copy.get_error(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(copy.GetBytesWritten(), 4U);
    copy << "efgh";
    copy.Flush();
    EXPECT_EQ(copy.GetFileSize(), 8U) << "behind what the source has written";
    copy.Open((folder / "new").c_str(), readWrite, shared, CREATE_NEW, 1);
    EXPECT_NE(copy.GetFileAttributes() & FILE_ATTRIBUTE_HIDDEN, 0U);
    copy << "ijkl";
    copy.Close();
    EXPECT_EQ(readFile(folder / "new"), "ijkl") << "a file that is opened begins at its start";
}

TEST_F(DiskIOTest, DeletesReadOnlyFilesOnlyWhenAskedTo) {
    const std::string path = test::makeFile(folder, "ro", "x", FILE_ATTRIBUTE_READONLY);
    DiskIO file;
    EXPECT_EQ(
        thrownBy([&] { file.Delete(path.c_str(), 0); }),
        (Report{
            6, ERROR_ACCESS_DENIED,
            "DiskIO::Delete(inFileName) - DeleteFile in Non Overlapped mode could not delete file " + path,
            source}));
    file.Delete(path.c_str(), 1);
    EXPECT_FALSE(exists(path));
    EXPECT_EQ(thrownBy([&] { file.Delete(path.c_str(), 1); }).error, ERROR_FILE_NOT_FOUND);
}

TEST_F(DiskIOTest, DeletesItsOwnReadOnlyFileWhenItHasOneOfThreeAttributes) {
    for (const DWORD attribute : {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM}) {
        const std::string path = test::makeFile(folder, "own", "x", FILE_ATTRIBUTE_READONLY);
        DiskIO file(path.c_str(), GENERIC_READ, shared | FILE_SHARE_DELETE, OPEN_EXISTING, 0);
        EXPECT_EQ(thrownBy([&] { file.Delete(); }).error, ERROR_ACCESS_DENIED);
        file.SetFileAttributes(attribute);
        ASSERT_TRUE(::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
        EXPECT_NO_THROW(file.Remove()) << attribute;
        file.Close();
        EXPECT_FALSE(exists(path));
    }
}

TEST_F(DiskIOTest, RemovesEmptyDirectories) {
    test::makeFile(folder, "dir\\a", "x");
    const std::string path = folder / "dir";
    DiskIO file;
    EXPECT_EQ(
        thrownBy([&] { file.DeleteDir(path.c_str(), 0); }),
        (Report{12, ERROR_DIR_NOT_EMPTY, "DiskIO::DeleteDir - Cannot remove directory:  " + path, source}));
    file.Delete((folder / "dir\\a").c_str(), 0);
    file.RemoveDir(path.c_str(), 1);
    EXPECT_FALSE(exists(path));
}

TEST_F(DiskIOTest, AttributesAreKeptForTheNextFileAndGivenToAnOpenOne) {
    const std::string path = folder / "new";
    DiskIO file;
    file.SetFileAttributes(FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE);
    file.Open(path.c_str(), GENERIC_WRITE, shared, CREATE_ALWAYS, 0);
    EXPECT_EQ(file.GetFileAttributes(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_ARCHIVE);
    file.SetFileAttributes(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    EXPECT_EQ(GetFileAttributesA(path.c_str()), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_ARCHIVE);
    file.Close();
    EXPECT_EQ(file.GetFileAttributes(), INVALID_FILE_ATTRIBUTES) << "no name, no attributes, no exception";
}

TEST_F(DiskIOTest, TheErrorModeIsSetForALifetimeAndNested) {
    const UINT before = ::SetErrorMode(0);
    {
        DiskIO file;
        file.SetErrorMode();
        file.SetErrorMode();
        EXPECT_EQ(::SetErrorMode(SEM_FAILCRITICALERRORS), 0x8001U);
        file.ResetErrorMode();
        EXPECT_EQ(::SetErrorMode(SEM_NOOPENFILEERRORBOX), 0U);
        file.ResetErrorMode();
        EXPECT_EQ(::SetErrorMode(0), SEM_NOOPENFILEERRORBOX) << "nothing left to restore";
        file.SetErrorMode();
    }
    EXPECT_EQ(::SetErrorMode(0), 0U) << "destruction restores";
    {
        DiskIO file;
        file.SetErrorMode();
        file.Close();
    }
    EXPECT_EQ(::SetErrorMode(before), 0x8001U) << "closing forgets the mode";
}

TEST_F(DiskIOTest, OverlappedTransfersKeepTheirOwnPosition) {
    const std::string path = create("0123456789");
    DiskIO file(path.c_str(), readWrite, shared, OPEN_EXISTING, 1);
    EXPECT_EQ(file.get_async_mode(), file.IsNT()) << "only NT has them";
    if (!file.IsNT()) return;
    UtilsString text;
    file.SetReadWriteSize(4);
    file >> text;
    EXPECT_EQ(textOf(text), "0123");
    file >> text;
    EXPECT_EQ(textOf(text), "4567");
    file.SetFilePointer(distance(1), FILE_BEGIN);
    file >> text;
    EXPECT_EQ(textOf(text), "1234") << "the pointer sets the position";
    file << DWORD{0x64636261};
    file.Flush();
    const Report atEnd = thrownBy([&] {
        file.SetFilePointer(distance(10), FILE_BEGIN);
        file >> text;
    });
    EXPECT_EQ(atEnd.type, 2U);
    EXPECT_EQ(atEnd.condition, "DiskIO::Read - ReadFile in Overlapped mode read 0 bytes out of 4");
    file.Close();
    EXPECT_FALSE(file.get_async_mode());
    EXPECT_EQ(readFile(path), "01234abcd9");
}

TEST_F(DiskIOTest, SectorServicesAreRefusedOnNT) {
    DiskIO file(create("x").c_str());
    _ABSREADWRITE packet{};
    _SECTOR_ID ids[18] = {};
    if (!file.IsNT()) GTEST_SKIP() << "Windows 95/98/Me";
    const std::string refusal = " - This function requires standard Windows.  Cannot Execute on NT.";
    EXPECT_EQ(thrownBy([&] { file.DeviceRead(packet, 0); }),
              (Report{13, 1151, "DiskIO::DeviceRead" + refusal, source}));
    EXPECT_EQ(thrownBy([&] { file.DeviceWrite(packet, 0); }),
              (Report{13, 1151, "DiskIO::DeviceWrite" + refusal, source}));
    EXPECT_EQ(thrownBy([&] { file.BiosTrackFormat(ids, 0, 0, 0); }),
              (Report{13, 1151, "DiskIO::BiosTrackFormat" + refusal, source}));
}

}  // namespace
