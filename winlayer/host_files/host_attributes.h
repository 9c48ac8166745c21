#pragma once
#include <sys/stat.h>

#include "winlayer/include/fileapi.h"
#include "winlayer/include/winerror.h"

namespace winlayer {

// Attributes of host files. What the host itself knows comes from it: a directory is one, and a file that
// nobody may write is read-only. The rest is kept as text ("0x22") in the extended attribute user.DOSATTRIB.
// A file without one has the archive attribute alone, a directory none. A dot at the front of a name hides
// nothing.

// What is kept; other bits that a caller sets are ignored, as Windows does.
inline constexpr DWORD keptAttributes = 0x3127;

DWORD attributesOf(const char* path, const struct stat& facts);
// The same of a file that is open.
DWORD attributesOf(int descriptor, const struct stat& facts);

// Gives a file or directory exactly these attributes. ERROR_NOT_SUPPORTED, and nothing changed, when the
// host's file system has no place for them; it needs none for the archive attribute of files and the
// read-only one.
DWORD storeAttributes(const char* path, const struct stat& facts, DWORD attributes);

}  // namespace winlayer
