#pragma once
#include <nlohmann/json.hpp>
#include <string>

namespace tools {

// One JSON object on standard output, written as it grows, so that an array may have any number of elements.
// What is short comes out at the end, in one piece.
class JsonWriter {
public:
    using Value = nlohmann::ordered_json;

    // Texts that are not UTF-8 get replacement characters.
    void member(const std::string& name, const Value& value);
    // An array as the next member, element by element until the next member or the end.
    void beginArray(const std::string& name);
    void element(const Value& value);
    void end();

private:
    enum class Array { none, empty, filled };

    void name(const std::string& name);
    void endArray();
    void append(const Value& value, int indentation);
    void flush();

    std::string text_;  // not written yet
    bool begun_ = false;
    Array array_ = Array::none;
};

}  // namespace tools
