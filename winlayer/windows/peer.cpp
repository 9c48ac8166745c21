#include "winlayer/windows/peer.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "winlayer/windows/message_queue.h"

namespace winlayer {
namespace {

// Columns and rows of a line without line ends, broken between words to at most `most` columns.
SIZE broken(std::string_view line, LONG most) {
    SIZE extent{0, 1};
    LONG column = 0;
    while (!line.empty()) {
        const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
        const std::size_t end = std::min(line.find(' ', blanks), line.size());
        const auto word = static_cast<LONG>(end - blanks);
        const bool fits = column + static_cast<LONG>(end) <= most;
        extent.cy += fits || column == 0 ? 0 : 1;
        column = fits ? column + static_cast<LONG>(end) : word;
        extent.cx = std::max(extent.cx, column);
        line.remove_prefix(end);
    }
    return extent;
}

}  // namespace

SIZE Peer::textExtent(const std::string& text, const LOGFONTA& font, int width) const {
    const LONG height = std::max<LONG>(std::abs(font.lfHeight), 1);
    const LONG letter = (height + 1) / 2;  // plus 2 pixels between the lines: the default font's 6 by 13
    SIZE extent{};
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const SIZE lines = broken(std::string_view(text).substr(start, end - start), width / letter);
        extent.cx = std::max(extent.cx, lines.cx * letter);
        extent.cy += lines.cy * (height + 2);
        start = end + 1;
    }
    return extent;
}

void Peer::wait() {
    MessageQueues::current().wait(GetCurrentThreadId());
}

}  // namespace winlayer
