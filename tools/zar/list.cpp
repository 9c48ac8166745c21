#include <cstdio>

#include "tools/common/archive_reading.h"
#include "tools/common/names.h"
#include "tools/zar/commands.h"

namespace tools::zar {

namespace {

// The letters of DIR and ATTRIB, in their order; '-' for what is not set.
std::string attributeLetters(DWORD attributes) {
    std::string letters = "RHSA";
    const DWORD bits[] = {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM,
                          FILE_ATTRIBUTE_ARCHIVE};
    for (std::size_t i = 0; i < letters.size(); ++i) {
        if ((attributes & bits[i]) == 0) letters[i] = '-';
    }
    return letters;
}

void addToResult(const ::zar::Entry& record, Session& session) {
    nlohmann::ordered_json row;
    row["name"] = utf8(record.name);
    row["size"] = record.size;
    if (!record.oldLayout) row["attributes"] = record.attributes;
    session.result["files"].push_back(row);
}

void print(const ::zar::Entry& record, Session& session) {
    char size[16];
    std::snprintf(size, sizeof size, "%10lu", static_cast<unsigned long>(record.size));
    const std::string letters = record.oldLayout ? "    " : attributeLetters(record.attributes);
    session.console.result(std::string(size) + "  " + letters + "  " + utf8(record.name));
}

}  // namespace

void list(const ListOptions& options, Session& session) {
    const ArchiveContents contents = readArchive(options.archive);
    session.result["files"] = nlohmann::ordered_json::array();
    for (const ::zar::Entry& record : contents.records) {
        if (session.json) {
            addToResult(record, session);
        } else {
            print(record, session);
        }
    }
    refuseFaulty(options.archive, contents);
}

void test(const TestOptions& options, Session& session) {
    const ArchiveContents contents = readArchive(options.archive);
    const bool oldLayout = !contents.records.empty() && contents.records.front().oldLayout;
    session.result["layout"] = oldLayout ? "old" : "new";
    session.result["records"] = contents.records.size();
    if (contents.fault) {
        session.result["fault"] = {{"offset", contents.fault->offset}, {"reason", contents.fault->reason}};
    }
    refuseFaulty(options.archive, contents);
    if (!session.json) {
        session.console.result(options.archive.string() + ": sound, " +
                               std::to_string(contents.records.size()) + " files");
    }
}

}  // namespace tools::zar
