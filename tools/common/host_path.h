#pragma once
#include <string>
#include <utility>

namespace tools {

// The name of a file or folder of the host: UTF-8 with the host's separators. Not std::filesystem::path: with
// this compiler it does not treat 8-bit text on Windows as UTF-8, and its operations call functions that only
// later Windows versions have.
class Path {
public:
    Path() = default;
    Path(std::string text) : text_(std::move(text)) {}
    Path(const char* text) : text_(text) {}

    const std::string& string() const { return text_; }
    const char* c_str() const { return text_.c_str(); }
    bool empty() const { return text_.empty(); }

    // The parts before the last separator (empty if none; a root keeps its separator) and after it.
    Path parent() const;
    Path filename() const;

    bool operator==(const Path& other) const = default;
    friend Path operator/(const Path& folder, const Path& below);

private:
    std::size_t nameAt() const;

    std::string text_;
};

// The characters that separate the parts of a name, the usual one first. A drive's colon also ends a part.
extern const char* const pathSeparators;

}  // namespace tools
