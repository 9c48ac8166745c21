#pragma once
#include <sys/stat.h>

#include <memory>
#include <string>
#include <string_view>

#include "winlayer/file_system/file_system.h"

namespace winlayer {

struct SystemSettings;
class ShareTable;

// All facts but the names.
void fillHostFacts(const char* path, const struct stat& known, FileFacts& facts);
// The same of a file that is open.
void fillHostFacts(int descriptor, const struct stat& known, FileFacts& facts);

// Of an entry that is a link to what the facts say.
void showLink(FileFacts& facts);

struct HostDirectory {
    std::string path;
    bool isRoot;  // has no "." and ".." then
    bool isLink;
};

// Starts a walk over the entries whose names match the pattern (UTF-8): those that the directory has now, in
// the order of their names without case. Their facts are asked for one by one; an entry that is gone by then
// is left out. ERROR_CANT_RESOLVE_FILENAME for a link to a directory that its own path leads through.
DWORD startHostListing(const SystemSettings& settings, ShareTable& shares, const HostDirectory& directory,
                       std::string_view pattern, std::unique_ptr<Listing>& listing);

}  // namespace winlayer
