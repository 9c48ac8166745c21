#include "host/frame/module_listing.h"

#include <charconv>

namespace host {

namespace {

// Removes a number and the comma after it from the start of the text.
bool takeNumber(std::string& text, int& value) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop == end || *stop != ',') return false;
    text.erase(0, static_cast<std::size_t>(stop - text.data()) + 1);
    return true;
}

// The picture has the library's name with another extension; a library without one has no picture.
bool belongs(const std::string& picture, const std::string& library) {
    const std::size_t point = library.rfind('.');
    if (point == std::string::npos) return picture.empty();
    return picture == library.substr(0, point + 1) + "bmp";
}

}  // namespace

std::optional<ModuleListing> parseListing(const std::string& text) {
    ModuleListing listing;
    std::string rest = text;
    for (int& value : listing.numbers) {
        if (!takeNumber(rest, value)) return std::nullopt;
    }
    std::size_t split = rest.rfind(',');
    if (split == std::string::npos) return std::nullopt;
    for (std::size_t comma = rest.find(','); comma != std::string::npos; comma = rest.find(',', comma + 1)) {
        if (belongs(rest.substr(comma + 1), rest.substr(0, comma))) {
            split = comma;
            break;
        }
    }
    listing.library = rest.substr(0, split);
    listing.picture = rest.substr(split + 1);
    return listing.library.empty() ? std::nullopt : std::optional(std::move(listing));
}

}  // namespace host
