#pragma once
#include <windows.h>

#include <cstdint>

#include "CSyncObject.h"
#include "CUtilsPath.h"
#include "DIOList.h"
#include "UtilsString.h"
#include "std_exception.h"
#include "zar_format.h"

// A failed or cancelled operation of the archive library.
class ZAR_CommonException : public UTILS::ReportException<ZAR_CommonException> {
public:
    static constexpr char class_name[] = "class ZAR_CommonException";
    using ReportException::ReportException;
};

// Error number and condition text of a cancelled operation.
inline constexpr DWORD ZAR_CANCELLED = 1000;
inline constexpr const char* ZAR_CANCEL_CONDITION = "The Cancel Command Has Been Processed";

// The common base of the extractor and the archiver: the open files, reading and writing of fields, names and
// data, and cancelling. Never used alone.
// Thread rule: one thread runs an operation; any other may call SendCancelCommand.
class ZAR_Common : public UTILS::DIOList {
public:
    ~ZAR_Common() override = default;

    // Asks the running operation to stop at its next check; several requests before one check count as one.
    virtual void SendCancelCommand();
    // Stores the path of a log file. The archive library itself writes no log.
    virtual void SetLogFile(const UTILS::UtilsString& path);
    // 1 after a check has seen a cancel, until ResetCancelState.
    virtual int ProcessCancelCommand() const;
    virtual void ResetCancelState();

    // 1 while a file's data is being copied.
    int IsIOStarted() const { return ioStarted_; }
    int GetIOStarted() const { return IsIOStarted(); }
    // The value of the last field read.
    DWORD GetMag() const { return lastField_; }
    // Bytes of the current file's data copied so far.
    DWORD GetI() const { return bytesCopied_; }

protected:
    // The files by their position in the list.
    static constexpr DWORD inputIndex = 0;
    static constexpr DWORD outputIndex = 1;
    static constexpr DWORD listFileIndex = 2;

    ZAR_Common();
    // Copy the log file path, the copy buffer and the cancel event's state; the copy has its own handle to
    // the same event. A cancel sent to either stops only the one that checks first. The open files are not
    // copied.
    ZAR_Common(const ZAR_Common& other);
    ZAR_Common& operator=(const ZAR_Common& other);

    // Adds the two files to the list and resets the state.
    void Init();

    UTILS::DiskIO& Input() { return GetIO(inputIndex); }
    UTILS::DiskIO& Output() { return GetIO(outputIndex); }

    // Opens an existing file as the input, shared with readers and writers, positioned at its start. Throws
    // as DiskIO::Open does.
    void OpenInput(const char* path);

    // Read one field. Throw DiskIoException type 2 at the end of the file.
    DWORD ReadInputFileField();
    DWORD ReadOutputFileField();
    // Reads fields until one equals `wanted`. Throws as ReadInputFileField does.
    void ReadUntil(m_archive_fields wanted);
    // Writes one field. Throws DiskIoException type 3.
    void WriteOutputFileField(DWORD value);

    // Read `length` bytes (below 65535) or as many as remain; unscramble them if `scrambled` is not 0. A
    // string receives them up to the first zero byte stored. Throw DiskIoException type 2 at the end of the
    // file, and for a greater length without reading or allocating anything.
    void ReadInputStringData(UTILS::UtilsString& s, DWORD length, int scrambled);
    void ReadInputByteData(UTILS::UtilsByte& b, DWORD length, int scrambled);
    // Write the first `length` bytes (below 65535). If `scrambled` is not 0, the caller's object is scrambled
    // first and stays scrambled. Throw DiskIoException type 3.
    void WriteOutputStringData(UTILS::UtilsString& s, DWORD length, int scrambled);
    void WriteOutputByteData(UTILS::UtilsByte& b, DWORD length, int scrambled);
    // Copy from the input to the output, unscrambled if `scrambled` is not 0.
    void TransactStringData(UTILS::UtilsString& s, DWORD length, int scrambled);
    void TransactByteData(UTILS::UtilsByte& b, DWORD length, int scrambled);

    // Moves the input from after a record's name to the next record's name marker (field ZAR_SKIP_FROM_NAME,
    // or another not above it as a signed number) or, for a greater field, past the record's end marker. 1
    // when done, 0 after a cancel (I/O started is then 1) or a failure. Throws nothing.
    int MoveToNextRecord(m_archive_fields& field);
    // Moves the input forward by `distance` bytes, even past the end of the file. False without moving if
    // fewer than `required` bytes remain. Throws DiskIoException type 5.
    bool SkipInput(std::uint64_t distance, std::uint64_t required);

    // Copies `size` bytes of data from the input to the output, XORed with the key. 1 when done; 0, with the
    // output closed, after a cancel (I/O started stays 1) or a failure (it is 0).
    int WriteOutputFileData(DWORD size);

    // 1 if no cancel is pending; 0 if one was, which is now consumed.
    int CheckForCancelCommand() const;

    // Closes one of the files and resets it, ignoring errors.
    void CloseQuietly(DWORD index) noexcept;

    UTILS::CCriticalSection listLock_;
    mutable UTILS::CEvent cancelEvent_;
    UTILS::CUtilsPath logFile_;
    DWORD lastField_ = 0;
    DWORD bytesCopied_ = 0;
    UTILS::UtilsByte copyBuffer_;
    DWORD key_ = zar::key;
    DWORD chunkSize_ = zar::chunkSize;
    int ioStarted_ = 0;
    HWND messageWindow_ = nullptr;
    DWORD currentField_ = 0;

private:
    DWORD ReadField(UTILS::DiskIO& file);
    UTILS::DiskIO& InputFor(DWORD length);
    UTILS::DiskIO& OutputFor(DWORD length);
    bool SkipUntil(m_archive_fields wanted);
    bool SkipData(m_archive_fields field);
    int CopyChunks(DWORD size);
    DWORD CopyChunk(DWORD size);
};
