#include "tools/common/json_writer.h"

#include <iostream>

#include "tools/common/control_characters.h"
#include "tools/common/this_system.h"

namespace tools {

namespace {

constexpr std::size_t pieceBytes = 65536;

}  // namespace

JsonText::JsonText(const std::vector<JsonMember>& members) {
    for (const JsonMember& member : members) {
        text_ += (text_.empty() ? "{\n  " : ",\n  ") + single(member.name) + ": " + member.value.movedIn(2);
    }
    text_ += members.empty() ? "{}" : "\n}";
}

std::string JsonText::single(const nlohmann::json& value) {
    return withEscapedControls(value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

std::string JsonText::movedIn(std::size_t columns) const {
    std::string text;
    for (const char letter : text_) {
        text += letter;
        if (letter == '\n') text.append(columns, ' ');
    }
    return text;
}

void JsonWriter::member(const std::string& name, const JsonText& value) {
    text_ += nextMember(name) + value.movedIn(2);
    begun_ = true;
    array_ = Array::none;
}

void JsonWriter::beginArray(const std::string& name) {
    text_ += nextMember(name) + '[';
    begun_ = true;
    array_ = Array::empty;
}

void JsonWriter::element(const JsonText& value) {
    text_ += (array_ == Array::empty ? "\n    " : ",\n    ") + value.movedIn(4);
    array_ = Array::filled;
    if (text_.size() >= pieceBytes) flush();
}

void JsonWriter::end() {
    text_ += arrayEnd() + (begun_ ? "\n}\n" : "{}\n");
    flush();
}

std::string JsonWriter::nextMember(const std::string& name) const {
    return arrayEnd() + (begun_ ? ",\n  " : "{\n  ") + JsonText(name).movedIn(0) + ": ";
}

std::string JsonWriter::arrayEnd() const {
    if (array_ == Array::none) return {};
    return array_ == Array::filled ? "\n  ]" : "]";
}

void JsonWriter::flush() {
    std::cout << encoded(Stream::out, text_);
    text_.clear();
}

}  // namespace tools
