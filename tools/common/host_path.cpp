#include "tools/common/host_path.h"

#include <string_view>

namespace tools {

namespace {

bool isSeparator(char letter) {
    return std::string_view(pathSeparators).find(letter) != std::string_view::npos;
}

}  // namespace

std::size_t Path::nameAt() const {
    const std::size_t last = text_.find_last_of(pathSeparators);
    return last == std::string::npos ? 0 : last + 1;
}

Path Path::parent() const {
    std::size_t end = nameAt();
    const auto rootEnds = [this](std::size_t at) { return at == 1 || text_[at - 2] == ':'; };
    while (end > 0 && isSeparator(text_[end - 1]) && text_[end - 1] != ':' && !rootEnds(end)) --end;
    return text_.substr(0, end);
}

Path Path::filename() const {
    return text_.substr(nameAt());
}

Path operator/(const Path& folder, const Path& below) {
    if (folder.empty()) return below;
    const bool separated = isSeparator(folder.text_.back());
    return folder.text_ + (separated ? "" : std::string(1, pathSeparators[0])) + below.text_;
}

}  // namespace tools
