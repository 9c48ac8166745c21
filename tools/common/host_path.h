#pragma once
#include <string>
#include <utility>

namespace tools {

// The name of a file or folder of the host: UTF-8 with the separators of the host. Not std::filesystem::path:
// with this compiler it takes 8-bit text on Windows for something else than UTF-8, and its operations ask
// Windows for what only its later versions can do.
class Path {
public:
    Path() = default;
    Path(std::string text) : text_(std::move(text)) {}
    Path(const char* text) : text_(text) {}

    const std::string& string() const { return text_; }
    const char* c_str() const { return text_.c_str(); }
    bool empty() const { return text_.empty(); }

    // What is in front of the last separator (empty: nothing is; a root keeps its separator), and behind it.
    Path parent() const;
    Path filename() const;

    bool operator==(const Path& other) const = default;
    friend Path operator/(const Path& folder, const Path& below);

private:
    std::size_t nameAt() const;

    std::string text_;
};

// The characters that separate the parts of a name; the first is the usual one. A drive's colon ends a part,
// too.
extern const char* const pathSeparators;

}  // namespace tools
