#include <cstdio>

#include "tools/common/archive_names.h"
#include "tools/common/archive_reading.h"
#include "tools/common/names.h"
#include "tools/zar/commands.h"

namespace tools::zar {

namespace {

// The letters of DIR and ATTRIB in their order; '-' for a clear attribute.
std::string attributeLetters(DWORD attributes) {
    std::string letters = "RHSA";
    const DWORD bits[] = {FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM,
                          FILE_ATTRIBUTE_ARCHIVE};
    for (std::size_t i = 0; i < letters.size(); ++i) {
        if ((attributes & bits[i]) == 0) letters[i] = '-';
    }
    return letters;
}

void addToObject(const ::zar::Entry& record, Session& session) {
    std::vector<JsonMember> row{{"name", utf8(record.name)}, {"size", record.size}};
    if (!record.oldLayout) row.push_back({"attributes", record.attributes});
    session.object.element(row);
}

void print(const ::zar::Entry& record, Session& session) {
    char size[16];
    std::snprintf(size, sizeof size, "%10lu", static_cast<unsigned long>(record.size));
    const std::string letters = record.oldLayout ? "    " : attributeLetters(record.attributes);
    session.console.result(std::string(size) + "  " + letters + "  " + utf8(record.name));
}

}  // namespace

void list(const ListOptions& options, Session& session) {
    if (session.json) session.object.beginArray("files");
    const auto show = session.json ? addToObject : print;
    const ArchiveSummary summary =
        walkArchive(options.archive, [&](const ::zar::Entry& record) { show(record, session); });
    refuseFaulty(options.archive, summary);
}

void test(const TestOptions& options, Session& session) {
    const ArchiveSummary summary = walkArchive(options.archive, [](const ::zar::Entry&) {});
    session.member("layout", summary.oldLayout ? "old" : "new");
    session.member("records", summary.count);
    if (summary.fault) {
        session.member("fault", std::vector<JsonMember>{{"offset", summary.fault->offset},
                                                        {"reason", summary.fault->reason}});
    }
    const std::size_t files = reviewNames(options.archive, false, session.warnings());
    session.member("files", files);
    refuseFaulty(options.archive, summary);
    if (session.json) return;
    const std::string records =
        files == summary.count ? "" : " in " + std::to_string(summary.count) + " records";
    session.console.result(options.archive.string() + ": sound, " + fileCount(files) + records);
}

}  // namespace tools::zar
