#include "tools/common/json_writer.h"

#include <iostream>

#include "tools/common/control_characters.h"
#include "tools/common/this_system.h"

namespace tools {

namespace {

constexpr std::size_t pieceBytes = 65536;

}  // namespace

void JsonWriter::member(const std::string& name, const Value& value) {
    this->name(name);
    append(value, 2);
}

void JsonWriter::beginArray(const std::string& name) {
    this->name(name);
    text_ += '[';
    array_ = Array::empty;
}

void JsonWriter::element(const Value& value) {
    text_ += array_ == Array::empty ? "\n    " : ",\n    ";
    array_ = Array::filled;
    append(value, 4);
    if (text_.size() >= pieceBytes) flush();
}

void JsonWriter::end() {
    endArray();
    text_ += begun_ ? "\n}\n" : "{}\n";
    flush();
}

void JsonWriter::name(const std::string& name) {
    endArray();
    text_ += begun_ ? ",\n  " : "{\n  ";
    begun_ = true;
    append(name, 2);
    text_ += ": ";
}

void JsonWriter::endArray() {
    if (array_ == Array::filled) text_ += "\n  ";
    if (array_ != Array::none) text_ += ']';
    array_ = Array::none;
}

// Lines after the first are moved in to where the value begins.
void JsonWriter::append(const Value& value, int indentation) {
    const std::string text = withEscapedControls(value.dump(2, ' ', false, Value::error_handler_t::replace));
    for (const char letter : text) {
        text_ += letter;
        if (letter == '\n') text_.append(static_cast<std::size_t>(indentation), ' ');
    }
}

void JsonWriter::flush() {
    std::cout << encoded(Stream::out, text_);
    text_.clear();
}

}  // namespace tools
