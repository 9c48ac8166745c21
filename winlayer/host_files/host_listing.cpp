#include "winlayer/host_files/host_listing.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "winlayer/base/host_errors.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/file_system/wildcard.h"
#include "winlayer/host_files/host_attributes.h"
#include "winlayer/host_files/share_table.h"
#include "winlayer/text/case_folding.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {

namespace {

struct Name {
    std::string host;
    std::string key;  // sort key
};

FILETIME toFileTime(const timespec& time) {
    constexpr std::int64_t secondsFrom1601 = 11'644'473'600;
    const auto ticks =
        static_cast<std::uint64_t>((time.tv_sec + secondsFrom1601) * 10'000'000 + time.tv_nsec / 100);
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

// Whether a directory is one of those that its own path leads through.
bool leadsBack(const std::string& path, const struct stat& directory) {
    for (std::size_t end = path.rfind('/'); end != std::string::npos;
         end = end == 0 ? std::string::npos : path.rfind('/', end - 1)) {
        struct stat passed;
        if (::stat(end == 0 ? "/" : path.substr(0, end).c_str(), &passed) == 0 &&
            passed.st_ino == directory.st_ino && passed.st_dev == directory.st_dev) {
            return true;
        }
    }
    return false;
}

using OpenDirectory = std::unique_ptr<DIR, int (*)(DIR*)>;

class HostListing : public Listing {
public:
    HostListing(const SystemSettings& settings, ShareTable& shares, std::string path, OpenDirectory directory,
                std::vector<Name> names)
        : settings_(settings),
          shares_(shares),
          path_(std::move(path)),
          directory_(std::move(directory)),
          names_(std::move(names)) {}

    DWORD next(FileFacts& entry) override {
        while (next_ < names_.size()) {
            const DWORD error = describe(names_[next_++], entry);
            if (error != ERROR_FILE_NOT_FOUND) {
                return error;
            }
        }
        return ERROR_NO_MORE_FILES;
    }

private:
    DWORD describe(const Name& name, FileFacts& entry) const {
        struct stat known;
        if (!look(name, known, AT_SYMLINK_NOFOLLOW)) {
            return windowsError(errno);
        }
        // A link that leads nowhere keeps its own facts.
        const bool link = S_ISLNK(known.st_mode);
        if (link) {
            look(name, known, 0);
        }
        if (shares_.passOn({known.st_dev, known.st_ino})) {
            look(name, known, 0);
        }
        fromUtf8(settings_, name.host, entry.name);
        fillHostFacts((path_ + '/' + name.host).c_str(), known, entry);
        if (link) {
            showLink(entry);
        }
        return 0;
    }

    bool look(const Name& name, struct stat& known, int flags) const {
        return ::fstatat(::dirfd(directory_.get()), name.host.c_str(), &known, flags) == 0;
    }

    const SystemSettings& settings_;
    ShareTable& shares_;
    const std::string path_;
    const OpenDirectory directory_;
    const std::vector<Name> names_;
    std::size_t next_ = 0;
};

bool isDots(std::string_view name) {
    return name == "." || name == "..";
}

// Why a name cannot be shown; 0 when it can.
DWORD obstacle(const SystemSettings& settings, std::string_view name) {
    std::string ansi;
    if (!isWindowsName(name)) {
        return ERROR_INVALID_NAME;
    }
    return fromUtf8(settings, name, ansi) ? 0 : ERROR_NO_UNICODE_TRANSLATION;
}

// Every name must be one that can be shown, even if it does not match: under another name it might.
DWORD readNames(const SystemSettings& settings, const HostDirectory& directory, DIR& open,
                const Wildcard& pattern, std::vector<Name>& names) {
    for (errno = 0; const dirent* entry = ::readdir(&open); errno = 0) {
        const std::string_view name = entry->d_name;
        const bool dots = isDots(name);
        if (const DWORD error = dots ? 0 : obstacle(settings, name); error != 0) {
            return error;
        }
        if (!(dots && directory.isRoot) && pattern.matches(name)) {
            names.push_back({std::string(name), dots ? std::string() : foldCase(name)});
        }
    }
    return errno == 0 ? 0 : windowsError(errno);
}

template <class Place>
void fillFacts(Place place, const struct stat& known, FileFacts& facts) {
    facts.shortName.clear();
    facts.attributes = attributesOf(place, known);
    facts.size = S_ISREG(known.st_mode) ? static_cast<std::uint64_t>(known.st_size) : 0;
    facts.written = toFileTime(known.st_mtim);
}

}  // namespace

void fillHostFacts(const char* path, const struct stat& known, FileFacts& facts) {
    fillFacts(path, known, facts);
}

void fillHostFacts(int descriptor, const struct stat& known, FileFacts& facts) {
    fillFacts(descriptor, known, facts);
}

void showLink(FileFacts& facts) {
    facts.attributes = (facts.attributes & ~FILE_ATTRIBUTE_NORMAL) | FILE_ATTRIBUTE_REPARSE_POINT;
}

DWORD startHostListing(const SystemSettings& settings, ShareTable& shares, const HostDirectory& directory,
                       std::string_view pattern, std::unique_ptr<Listing>& listing) {
    OpenDirectory open(::opendir(directory.path.c_str()), ::closedir);
    if (open == nullptr) {
        return windowsError(errno);
    }
    struct stat known;
    if (directory.isLink && ::fstat(::dirfd(open.get()), &known) == 0 && leadsBack(directory.path, known)) {
        return ERROR_CANT_RESOLVE_FILENAME;
    }
    std::vector<Name> names;
    if (const DWORD error = readNames(settings, directory, *open, Wildcard(pattern), names); error != 0) {
        return error;
    }
    std::sort(names.begin(), names.end(),
              [](const Name& a, const Name& b) { return a.key != b.key ? a.key < b.key : a.host < b.host; });
    listing =
        std::make_unique<HostListing>(settings, shares, directory.path, std::move(open), std::move(names));
    return 0;
}

}  // namespace winlayer
