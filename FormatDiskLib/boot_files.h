#pragma once
#include <windows.h>

#include <array>

// One file of the emergency diskette: its name as the disk archive holds it, padded with zeros, and the
// attributes that it gets once it is written.
struct BootFile {
    char name[MAX_PATH];
    DWORD attributes;
};
static_assert(sizeof(BootFile) == 264);

// The files in the order in which they are written: the DOS system files first, the loader third.
extern const std::array<BootFile, 14> bootFiles;
