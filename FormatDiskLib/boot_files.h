#pragma once
#include <windows.h>

#include <array>

// One file of the emergency diskette: its name in the disk archive, padded with zeros, and the attributes
// that are set after it is written.
struct BootFile {
    char name[MAX_PATH];
    DWORD attributes;
};
static_assert(sizeof(BootFile) == 264);

// The files in the order of writing: the DOS system files first, the loader third.
extern const std::array<BootFile, 14> bootFiles;
