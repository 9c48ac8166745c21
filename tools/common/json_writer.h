#pragma once
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tools {

struct JsonMember;

// A value as JSON text. The library's own arrays and objects need memory even when destroyed, and end the
// program where there is none; so it gets single values only.
class JsonText {
public:
    // A number, a Boolean or a text. Invalid UTF-8 is replaced by replacement characters.
    template <class Single>
    requires(std::is_arithmetic_v<Single> || std::is_convertible_v<const Single&, std::string_view>)
        JsonText(const Single& value)
        : text_(single(value)) {}
    // An object.
    JsonText(const std::vector<JsonMember>& members);

    // The text with all lines but the first indented.
    std::string movedIn(std::size_t columns) const;

private:
    static std::string single(const nlohmann::json& value);

    std::string text_;
};

struct JsonMember {
    std::string name;
    JsonText value;
};

// One JSON object on standard output, written as it grows, so that arrays can have any length. Short output
// appears at the end, in one piece. A call that fails adds nothing.
class JsonWriter {
public:
    void member(const std::string& name, const JsonText& value);
    // An array as the next member, element by element until the next member or the end.
    void beginArray(const std::string& name);
    void element(const JsonText& value);
    void end();

private:
    enum class Array { none, empty, filled };

    std::string nextMember(const std::string& name) const;
    std::string arrayEnd() const;
    void flush();

    std::string text_;  // not yet written
    bool begun_ = false;
    Array array_ = Array::none;
};

}  // namespace tools
