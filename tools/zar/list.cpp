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
    session.result["files"] = nlohmann::ordered_json::array();
    const auto show = session.json ? addToResult : print;
    const ArchiveSummary summary =
        walkArchive(options.archive, [&](const ::zar::Entry& record) { show(record, session); });
    refuseFaulty(options.archive, summary);
}

void test(const TestOptions& options, Session& session) {
    const ArchiveSummary summary = walkArchive(options.archive, [](const ::zar::Entry&) {});
    session.result["layout"] = summary.oldLayout ? "old" : "new";
    session.result["records"] = summary.count;
    if (summary.fault) {
        session.result["fault"] = {{"offset", summary.fault->offset}, {"reason", summary.fault->reason}};
    }
    refuseFaulty(options.archive, summary);
    if (!session.json) {
        session.console.result(options.archive.string() + ": sound, " + std::to_string(summary.count) +
                               " files");
    }
}

}  // namespace tools::zar
