#include "winlayer/text/message_definition.h"

#include <cctype>

namespace winlayer {
namespace {

using Kind = MessagePiece::Kind;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }
    char peek() const { return rest_.empty() ? '\0' : rest_.front(); }
    char take() {
        const char c = peek();
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        return c;
    }
    bool take(std::string_view text) {
        const bool there = rest_.substr(0, text.size()) == text;
        rest_.remove_prefix(there ? text.size() : 0);
        return there;
    }
    std::string takeDigits(std::size_t most) {
        std::string digits;
        while (digits.size() < most && isDigit(peek())) {
            digits += take();
        }
        return digits;
    }

private:
    std::string_view rest_;
};

std::string takeAmount(Reader& reader) {
    constexpr std::size_t mostDigits = 4;
    return reader.take("*") ? "*" : reader.takeDigits(mostDigits);
}

// The size prefix of a type: the width of a number, or the kind of text.
void takeSize(Reader& reader, MessageInsert& insert, bool& narrowText) {
    if (reader.take("I64") || reader.take("ll")) {
        insert.kind = ArgumentKind::LongNumber;
    } else if (reader.take("I32")) {
        insert.kind = ArgumentKind::Number;
    } else if (reader.take("l") || reader.take("w")) {
        insert.wide = true;
    } else if (reader.take("h")) {
        insert.isShort = true;
        narrowText = true;
    }
}

// Parses "!-08.3ld!" after its first exclamation mark.
bool takeFormat(Reader& reader, MessageInsert& insert) {
    while (!reader.atEnd() && std::string_view("-+ #0").find(reader.peek()) != std::string_view::npos) {
        insert.flags += reader.take();
    }
    insert.width = takeAmount(reader);
    if (reader.take(".")) {
        insert.precision = "." + takeAmount(reader);
    }
    insert.kind = ArgumentKind::Number;
    bool narrowText = false;
    takeSize(reader, insert, narrowText);
    insert.type = reader.take();
    if (insert.type == '\0' || std::string_view("sScCdiuoxXp").find(insert.type) == std::string_view::npos) {
        return false;
    }
    if (insert.type == 'S' || insert.type == 'C') {
        insert.wide = !narrowText;
        insert.type = static_cast<char>(std::tolower(insert.type));
    }
    if (insert.type == 's' || insert.type == 'p') {
        insert.kind = ArgumentKind::Address;
    }
    return reader.take("!");
}

class Parser {
public:
    Parser(std::string_view definition, bool ignoreInserts, std::vector<MessagePiece>& pieces)
        : reader_(definition), ignoreInserts_(ignoreInserts), pieces_(pieces) {}

    bool run() {
        while (!reader_.atEnd() && !ended_) {
            const char c = reader_.take();
            if (c == '%') {
                if (!escape()) {
                    return false;
                }
            } else if (c == '\r' || c == '\n') {
                reader_.take(c == '\r' ? "\n" : "\r");
                add(Kind::LineBreak);
            } else {
                addText(c);
            }
        }
        return true;
    }

private:
    void add(Kind kind) {
        pieces_.emplace_back();
        pieces_.back().kind = kind;
    }

    void addText(char c) {
        if (pieces_.empty() || pieces_.back().kind != Kind::Text) {
            add(Kind::Text);
        }
        pieces_.back().text += c;
    }

    bool escape() {
        if (reader_.atEnd()) {
            return false;
        }
        if (ignoreInserts_ && (reader_.peek() == '%' || (isDigit(reader_.peek()) && reader_.peek() != '0'))) {
            addText('%');
            addText(reader_.take());
            return true;
        }
        if (isDigit(reader_.peek())) {
            return insert();
        }
        switch (const char c = reader_.take()) {
            case 'n':
                add(Kind::HardLineBreak);
                break;
            case 'r':
                addText('\r');
                break;
            case 't':
                addText('\t');
                break;
            default:
                addText(c);
        }
        return true;
    }

    bool insert() {
        if (reader_.take("0")) {
            ended_ = true;
            return true;
        }
        add(Kind::Insert);
        MessageInsert& made = pieces_.back().insert;
        made.number = static_cast<unsigned>(std::stoul(reader_.takeDigits(2)));
        return !reader_.take("!") || takeFormat(reader_, made);
    }

    Reader reader_;
    bool ignoreInserts_;
    bool ended_ = false;
    std::vector<MessagePiece>& pieces_;
};

}  // namespace

bool parseMessage(std::string_view definition, bool ignoreInserts, std::vector<MessagePiece>& pieces) {
    return Parser(definition, ignoreInserts, pieces).run();
}

}  // namespace winlayer
