#include "zar_common.h"

using UTILS::DiskIO;
using UTILS::DiskIoException;
using UTILS::UtilsByte;
using UTILS::UtilsString;

namespace {

constexpr const char* fileLayer = "..\\..\\include\\diskio";

std::string ModeName(const DiskIO& file) {
    return file.get_async_mode() ? "Overlapped" : "Non Overlapped";
}

[[noreturn]] void RefuseRead(const DiskIO& file, DWORD length, int line = __builtin_LINE()) {
    const std::string condition = "DiskIO::Read - ReadFile in " + ModeName(file) +
                                  " mode read 0 bytes out of " + std::to_string(length);
    throw DiskIoException(UTILS::DISKIO_READ, ERROR_FILENAME_EXCED_RANGE, static_cast<DWORD>(line), fileLayer,
                          condition.c_str());
}

[[noreturn]] void RefuseWrite(const DiskIO& file, DWORD length, int line = __builtin_LINE()) {
    const std::string condition = "DiskIO::Write - WriteFile in " + ModeName(file) +
                                  " mode wrote 0 bytes out of " + std::to_string(length);
    throw DiskIoException(UTILS::DISKIO_WRITE, ERROR_FILENAME_EXCED_RANGE, static_cast<DWORD>(line),
                          fileLayer, condition.c_str());
}

}  // namespace

ZAR_Common::ZAR_Common() {
    Init();
}

ZAR_Common::ZAR_Common(const ZAR_Common& other)
    : UTILS::Utils<DiskIO, int>(), UTILS::DIOList(), cancelEvent_(other.cancelEvent_) {
    Init();
    logFile_ = other.logFile_;
    copyBuffer_ = other.copyBuffer_;
}

ZAR_Common& ZAR_Common::operator=(const ZAR_Common& other) {
    if (this != &other) {
        cancelEvent_ = other.cancelEvent_;
        logFile_ = other.logFile_;
        copyBuffer_ = other.copyBuffer_;
    }
    return *this;
}

void ZAR_Common::Init() {
    {
        const UTILS::SectionGuard guard(listLock_);
        AddData(DiskIO());
        AddData(DiskIO());
        logFile_ = UTILS::CUtilsPath();
    }
    lastField_ = 0;
    bytesCopied_ = 0;
    currentField_ = 0;
    ioStarted_ = 0;
    messageWindow_ = nullptr;
}

void ZAR_Common::SendCancelCommand() {
    cancelEvent_.Lock();
}

void ZAR_Common::SetLogFile(const UtilsString& path) {
    logFile_ = path;
}

int ZAR_Common::ProcessCancelCommand() const {
    return cancelEvent_.IsSignalSeen();
}

void ZAR_Common::ResetCancelState() {
    cancelEvent_.ClearSignalSeen();
}

int ZAR_Common::CheckForCancelCommand() const {
    // Peeking at the queue delivers messages that other threads sent to this thread's windows.
    MSG message;
    ::PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
    return cancelEvent_.UnLock() == 0 ? 1 : 0;
}

void ZAR_Common::OpenInput(const char* path) {
    Input().Open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING, 0);
}

DWORD ZAR_Common::ReadField(DiskIO& file) {
    DWORD value = 0;
    file >> value;
    lastField_ = value;
    return value;
}

DWORD ZAR_Common::ReadInputFileField() {
    return ReadField(Input());
}

DWORD ZAR_Common::ReadOutputFileField() {
    return ReadField(Output());
}

void ZAR_Common::ReadUntil(m_archive_fields wanted) {
    do {
        currentField_ = ReadInputFileField();
    } while (currentField_ != wanted);
}

void ZAR_Common::WriteOutputFileField(DWORD value) {
    currentField_ = value;
    Output() << value;
}

DiskIO& ZAR_Common::InputFor(DWORD length) {
    DiskIO& input = Input();
    if (length >= zar::nameLimit) RefuseRead(input, length);
    input.SetReadWriteSize(static_cast<WORD>(length));
    return input;
}

DiskIO& ZAR_Common::OutputFor(DWORD length) {
    DiskIO& output = Output();
    if (length >= zar::nameLimit) RefuseWrite(output, length);
    output.SetReadWriteSize(static_cast<WORD>(length));
    return output;
}

void ZAR_Common::ReadInputStringData(UtilsString& s, DWORD length, int scrambled) {
    InputFor(length) >> s;
    if (scrambled != 0) s.XORString(static_cast<unsigned char>(key_));
}

void ZAR_Common::ReadInputByteData(UtilsByte& b, DWORD length, int scrambled) {
    InputFor(length) >> b;
    if (scrambled != 0) b.XORData(static_cast<unsigned char>(key_));
}

void ZAR_Common::WriteOutputStringData(UtilsString& s, DWORD length, int scrambled) {
    if (scrambled != 0) s.XORString(static_cast<unsigned char>(key_));
    OutputFor(length) << s;
}

void ZAR_Common::WriteOutputByteData(UtilsByte& b, DWORD length, int scrambled) {
    if (scrambled != 0) b.XORData(static_cast<unsigned char>(key_));
    OutputFor(length) << b;
}

void ZAR_Common::TransactStringData(UtilsString& s, DWORD length, int scrambled) {
    ReadInputStringData(s, length, scrambled);
    WriteOutputStringData(s, length, 0);
}

void ZAR_Common::TransactByteData(UtilsByte& b, DWORD length, int scrambled) {
    ReadInputByteData(b, length, scrambled);
    WriteOutputByteData(b, length, 0);
}

void ZAR_Common::CloseQuietly(DWORD index) noexcept {
    GetIO(index).CloseQuietly();
}
