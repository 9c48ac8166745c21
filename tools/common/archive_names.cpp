#include "tools/common/archive_names.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

#include "tools/common/archive_reading.h"
#include "tools/common/names.h"
#include "zar_name.h"

namespace tools {

namespace {

constexpr std::size_t mostWarnings = 20;  // of each kind

// Gives a limited number of warnings, then the number of those left out.
class Warnings {
public:
    Warnings(const Warn& warn, std::string rest) : warn_(warn), rest_(std::move(rest)) {}

    void add(const std::string& text) {
        if (++count_ <= mostWarnings) warn_(text);
    }
    void finish() const {
        if (count_ > mostWarnings) warn_(std::to_string(count_ - mostWarnings) + rest_);
    }

private:
    const Warn& warn_;
    const std::string rest_;
    std::size_t count_ = 0;
};

// A name as Windows compares it: ignoring case, with single separators, without trailing dots and blanks in
// its elements.
std::string identityOf(const std::string& name) {
    std::string identity;
    for (const char letter : upperCase(utf8(name)) + '\\') {
        if (letter != '\\' && letter != '/') {
            identity += letter;
            continue;
        }
        identity.erase(identity.find_last_not_of(". ") + 1);
        if (!identity.empty() && identity.back() != '\\') identity += '\\';
    }
    return identity;
}

std::string placed(const zar::Entry& record, const std::string& sentence) {
    return "at offset " + std::to_string(record.offset) + ": the name " + sentence;
}

// The numbers that occur more than once, ascending.
std::vector<std::size_t> repeated(std::vector<std::size_t> numbers) {
    std::sort(numbers.begin(), numbers.end());
    std::vector<std::size_t> found;
    for (auto at = numbers.begin(); (at = std::adjacent_find(at, numbers.end())) != numbers.end(); ++at) {
        if (found.empty() || found.back() != *at) found.push_back(*at);
    }
    return found;
}

}  // namespace

std::size_t reviewNames(const Path& archive, bool stripFirst, const Warn& warn) {
    const auto nameOf = [&](const zar::Entry& record) {
        return stripFirst && !record.oldLayout ? zar::WithoutFirstElement(record.name) : record.name;
    };
    Warnings obstacles(warn, " more names that no Windows takes");
    std::vector<std::size_t> hashes;  // of all names: the names themselves might not fit in memory
    const std::hash<std::string> hash;
    walkArchive(archive, [&](const zar::Entry& record) {
        const std::string name = nameOf(record);
        hashes.push_back(hash(identityOf(name)));
        const char* obstacle = zar::NameObstacle(name);
        if (obstacle != nullptr) obstacles.add(placed(record, utf8(record.name) + " " + obstacle));
    });
    obstacles.finish();
    std::size_t files = hashes.size();
    const std::vector<std::size_t> suspects = repeated(std::move(hashes));
    if (suspects.empty()) return files;

    Warnings clashes(warn, " more names that stand for the file of one before");
    std::map<std::string, std::string> last;  // the latest name for each identity
    walkArchive(archive, [&](const zar::Entry& record) {
        std::string identity = identityOf(nameOf(record));
        if (!std::binary_search(suspects.begin(), suspects.end(), hash(identity))) return;
        const auto [before, isNew] = last.try_emplace(std::move(identity), record.name);
        if (isNew) return;
        clashes.add(placed(record, utf8(record.name) + " stands for the same file as " +
                                       utf8(before->second) + " before it; the last one wins"));
        before->second = record.name;
        --files;
    });
    clashes.finish();
    return files;
}

std::string fileCount(std::size_t files) {
    return std::to_string(files) + (files == 1 ? " file" : " files");
}

}  // namespace tools
