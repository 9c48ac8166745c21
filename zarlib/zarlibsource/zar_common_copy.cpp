#include <algorithm>

#include "zar_common.h"
#include "zar_file.h"

// Copying a file's data and skipping records.

using UTILS::DiskIO;
using UTILS::DiskIoException;

namespace {

constexpr DWORD skipReference = 0xEFB04FAF;

}  // namespace

int ZAR_Common::MoveToNextRecord(m_archive_fields& field) {
    try {
        // The codes are compared as signed numbers.
        const bool fromName = static_cast<LONG>(field) <= static_cast<LONG>(ZAR_SKIP_FROM_NAME);
        if (!SkipUntil(fromName ? ZAR_SIZE : ZAR_RECORD_END)) return 0;
        return !fromName || SkipData(field) ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

bool ZAR_Common::SkipUntil(m_archive_fields wanted) {
    do {
        currentField_ = ReadInputFileField();
        if (CheckForCancelCommand() == 0) {
            ioStarted_ = 1;
            return false;
        }
    } while (currentField_ != wanted);
    return true;
}

bool ZAR_Common::SkipData(m_archive_fields field) {
    const std::uint64_t size = ReadInputFileField();
    // The requested field determines how many fields are between the size and the destination.
    const std::int64_t k = std::int64_t{static_cast<LONG>(skipReference)} - static_cast<LONG>(field);
    const auto between = static_cast<std::uint64_t>(k + k / 2) * zar::fieldSize;
    // The destination may be past the end of the archive, but the record must not be truncated.
    return SkipInput(size + between, size + zar::fromSizeToEnd);
}

bool ZAR_Common::SkipInput(std::uint64_t distance, std::uint64_t required) {
    const DiskIO& input = Input();
    const std::uint64_t position = input.GetFilePointer();
    if (position + required > zar::SizeOf(input)) return false;
    zar::MoveTo(input, position + distance);
    return true;
}

DWORD ZAR_Common::CopyChunk(DWORD size) {
    const DWORD wanted = std::min(chunkSize_, size - bytesCopied_);
    ReadInputByteData(copyBuffer_, wanted, 1);
    const DWORD delivered = Input().GetBytesRead();
    WriteOutputByteData(copyBuffer_, delivered, 0);
    bytesCopied_ += delivered;
    return Output().GetBytesWritten();
}

int ZAR_Common::CopyChunks(DWORD size) {
    DWORD written = 0;
    do {
        written = CopyChunk(size);
        if (CheckForCancelCommand() == 0) {
            Output().Close();
            return 0;
        }
    } while (written == chunkSize_ && bytesCopied_ < size);
    ioStarted_ = 0;
    return 1;
}

int ZAR_Common::WriteOutputFileData(DWORD size) {
    bytesCopied_ = 0;
    ioStarted_ = 1;
    try {
        return CopyChunks(size);
    } catch (const DiskIoException& failure) {
        ioStarted_ = 0;
        if (failure.m_error_number == ERROR_HANDLE_EOF) {
            Output().Close();
            return 1;
        }
        CloseQuietly(outputIndex);
        return 0;
    }
}
