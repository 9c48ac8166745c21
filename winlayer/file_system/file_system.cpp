#include "winlayer/file_system/file_system.h"

#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/wildcard.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {

namespace {

class FixedListing : public Listing {
public:
    explicit FixedListing(std::vector<FileFacts> entries) : entries_(std::move(entries)) {}

    DWORD next(FileFacts& entry) override {
        if (next_ == entries_.size()) {
            return ERROR_NO_MORE_FILES;
        }
        entry = std::move(entries_[next_++]);
        return 0;
    }

private:
    std::vector<FileFacts> entries_;
    std::size_t next_ = 0;
};

}  // namespace

DWORD OpenFile::control(DWORD /*code*/, std::span<const std::byte> /*in*/, std::span<std::byte> /*out*/,
                        DWORD& returned) {
    returned = 0;
    return ERROR_INVALID_FUNCTION;
}

DWORD FileSystem::search(const std::string& directory, const std::string& pattern,
                         std::unique_ptr<Listing>& listing) {
    std::vector<FileFacts> entries;
    if (const DWORD error = list(directory, entries); error != 0) {
        return error;
    }
    const Wildcard wildcard(toUtf8(SystemSettings::current(), pattern));
    std::erase_if(entries, [&](const FileFacts& entry) {
        return !wildcard.matches(toUtf8(SystemSettings::current(), entry.name)) &&
               (entry.shortName.empty() ||
                !wildcard.matches(toUtf8(SystemSettings::current(), entry.shortName)));
    });
    listing = std::make_unique<FixedListing>(std::move(entries));
    return 0;
}

}  // namespace winlayer
