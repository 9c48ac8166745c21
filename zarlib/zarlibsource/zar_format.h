#pragma once
#include <windows.h>

#include <cstddef>

// The archive format. An archive is a sequence of records; the first field distinguishes the two layouts,
// which docs/archive-format.md describes.

// Field codes: record signatures and the markers around each value of a new-layout record.
enum m_archive_fields : DWORD {
    ZAR_OLD_RECORD = 0xE63D4FA8,
    ZAR_RECORD = 0xEFB04FA7,
    ZAR_NAME = 0xEFB036CD,
    ZAR_NAME_END = 0xEFB143CD,
    ZAR_SIZE = 0xEFB232CD,
    ZAR_SIZE_END = 0xEFB323CD,
    ZAR_ATTRIBUTES = 0xEFB000CD,
    ZAR_ATTRIBUTES_END = 0xEFB111CD,
    ZAR_DATA = 0xEFBFDFCD,
    ZAR_RECORD_END = 0xEFBDFDCD,
    // Not a field of an archive: makes MoveToNextRecord go from a record's name to the next name marker.
    ZAR_SKIP_FROM_NAME = 0xEFB04FAA,
};

namespace zar {

inline constexpr unsigned char key = 0x93;  // every byte of names and data is stored XORed with it
inline constexpr DWORD fieldSize = 4;
inline constexpr DWORD nameLimit = 65535;   // names are shorter: one transfer with a 16-bit length
inline constexpr DWORD chunkSize = 8094;    // the most bytes of data copied in one step
inline constexpr DWORD oldNameSize = 16;    // fixed width of an old-layout name
inline constexpr DWORD oldHeaderSize = 24;  // signature, name, size

// Sizes of a new-layout record around its name of n bytes.
inline constexpr DWORD beforeName = 12;      // signature, name marker, n
inline constexpr DWORD fromNameToData = 32;  // name end, size, attributes, data marker
inline constexpr DWORD fromSizeToEnd = 24;  // size end, attributes, data marker, record end; data not counted

// Bits of a creation attribute that an archive may set: file attributes, not the flags in the same number
// (delete on close, overlapped, ...).
inline constexpr DWORD creationAttributes = 0x31A7;

inline DWORD LoadField(const unsigned char* bytes) {
    return static_cast<DWORD>(bytes[0]) | static_cast<DWORD>(bytes[1]) << 8 |
           static_cast<DWORD>(bytes[2]) << 16 | static_cast<DWORD>(bytes[3]) << 24;
}

inline void StoreField(DWORD value, unsigned char* bytes) {
    for (unsigned i = 0; i < fieldSize; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

// Scrambles or unscrambles in place.
inline void Scramble(unsigned char* bytes, std::size_t count) {
    const unsigned char local = key;
    for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<unsigned char>(bytes[i] ^ local);
}

}  // namespace zar
