#pragma once
#include <sys/stat.h>

#include <memory>
#include <string>
#include <string_view>

#include "winlayer/file_system/file_system.h"

namespace winlayer {

struct SystemSettings;
class ShareTable;

// All facts except the names.
void fillHostFacts(const char* path, const struct stat& known, FileFacts& facts);
// The same for an open file.
void fillHostFacts(int descriptor, const struct stat& known, FileFacts& facts);

// Changes the facts of a link's target into those of the link.
void showLink(FileFacts& facts);

struct HostDirectory {
    std::string path;
    bool isRoot;  // has no "." and ".." then
    bool isLink;
};

// Starts a listing of the entries that match the pattern (UTF-8) and exist now, ordered by name without case.
// Facts are read one by one; an entry that has disappeared by then is skipped. ERROR_CANT_RESOLVE_FILENAME
// for a link to a directory that its own path leads through.
DWORD startHostListing(const SystemSettings& settings, ShareTable& shares, const HostDirectory& directory,
                       std::string_view pattern, std::unique_ptr<Listing>& listing);

}  // namespace winlayer
