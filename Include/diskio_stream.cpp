#include <cstring>
#include <memory>
#include <new>

#include "diskio.h"

// The stream operators: a fixed number of raw bytes or, in whole-file mode, all of them.

namespace UTILS {

namespace {

constexpr DWORD numberSize = 4;

}  // namespace

void DiskIO::WriteText(const char* text, std::size_t length) {
    if (writeSize_ == wholeSize) {
        if (length != 0) WriteAndWait(text, static_cast<DWORD>(length));
    } else if (length >= writeSize_) {
        WriteAndWait(text, writeSize_);
    } else {
        std::string record(text, length);
        record.resize(writeSize_);
        WriteAndWait(record.data(), writeSize_);
    }
}

DiskIO& DiskIO::operator<<(const char* text) {
    WriteText(text, writeSize_ == wholeSize ? std::strlen(text) : ::strnlen(text, writeSize_));
    return *this;
}

DiskIO& DiskIO::operator<<(const unsigned char* bytes) {
    WriteExactly(bytes, writeSize_);
    return *this;
}

DiskIO& DiskIO::operator<<(DWORD number) {
    unsigned char bytes[numberSize];
    for (unsigned i = 0; i < numberSize; ++i) bytes[i] = static_cast<unsigned char>(number >> (8 * i));
    WriteAndWait(bytes, numberSize);
    return *this;
}

DiskIO& DiskIO::operator<<(const UtilsString& text) {
    WriteText(text.c_str(), text.length());
    return *this;
}

DiskIO& DiskIO::operator<<(const UtilsByte& bytes) {
    WriteText(reinterpret_cast<const char*>(bytes.c_str()), bytes.length());
    return *this;
}

DWORD DiskIO::ReadLength() const {
    return readSize_ == wholeSize ? fileSize_ : readSize_;
}

DiskIO& DiskIO::operator>>(char* buffer) {
    ReadExactly(buffer, ReadLength());
    return *this;
}

DiskIO& DiskIO::operator>>(unsigned char* buffer) {
    ReadExactly(buffer, ReadLength());
    return *this;
}

DiskIO& DiskIO::operator>>(DWORD& number) {
    unsigned char bytes[numberSize] = {};
    ReadAndWait(bytes, numberSize);
    number = 0;
    for (unsigned i = 0; i < numberSize; ++i) number |= static_cast<DWORD>(bytes[i]) << (8 * i);
    return *this;
}

DiskIO& DiskIO::operator>>(UtilsString& text) {
    const DWORD length = ReadLength();
    const std::size_t size = std::size_t{length} + 1;
    if (size == 0) throw std::bad_alloc();  // overflow in 32 bits
    const auto buffer = std::make_unique<char[]>(size);
    ReadAndWait(buffer.get(), length);
    text = buffer.get();
    return *this;
}

DiskIO& DiskIO::operator>>(UtilsByte& bytes) {
    const DWORD length = ReadLength();
    // Straight into the byte string: archive data takes this path, always in the same size.
    bytes.Resize(length);
    try {
        ReadAndWait(bytes.GetString(), length);
    } catch (...) {
        bytes.Erase();
        throw;
    }
    bytes.Resize(bytesRead_);
    return *this;
}

}  // namespace UTILS
