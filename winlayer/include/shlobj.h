#pragma once
#include "shobjidl.h"

// The start of every data block of a link.
struct DATABLOCK_HEADER {
    DWORD cbSize;  // of the entire block, in bytes
    DWORD dwSignature;
};

// Names the installed component that an advertised shortcut stands for.
struct EXP_DARWIN_LINK {
    DATABLOCK_HEADER dbh;
    CHAR szDarwinID[MAX_PATH];
    WCHAR szwDarwinID[MAX_PATH];
};
static_assert(sizeof(EXP_DARWIN_LINK) == 0x314);

inline constexpr DWORD EXP_DARWIN_ID_SIG = 0xA0000006;
