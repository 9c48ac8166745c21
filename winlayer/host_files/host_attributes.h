#pragma once
#include <sys/stat.h>

#include "winlayer/include/fileapi.h"
#include "winlayer/include/winerror.h"

namespace winlayer {

// Attributes of host files. Some come from the host: a directory is one, and a file that nobody may write is
// read-only. The rest is stored as text ("0x22") in the extended attribute user.DOSATTRIB. Without it a file
// has just the archive attribute, a directory none. A leading dot in a name does not make it hidden.

// The attributes stored; other bits that a caller sets are ignored, as on Windows.
inline constexpr DWORD keptAttributes = 0x3127;

DWORD attributesOf(const char* path, const struct stat& facts);
// The same for an open file.
DWORD attributesOf(int descriptor, const struct stat& facts);

// Sets exactly these attributes of a file or directory. ERROR_NOT_SUPPORTED, and nothing changed, when the
// host's file system cannot store them; the archive attribute of files and the read-only one need no support.
DWORD storeAttributes(const char* path, const struct stat& facts, DWORD attributes);

}  // namespace winlayer
