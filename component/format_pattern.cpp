#include "format_pattern.h"

#include <algorithm>
#include <cstddef>

namespace text_format {

namespace {

constexpr std::string_view letters = "scdouxXpefgGibDT";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

class Reader {
public:
    explicit Reader(std::string_view pattern) : pattern_(pattern) {}

    std::vector<Token> Read() {
        while (!Done()) {
            switch (Peek()) {
                case '\\':
                    ReadEscape();
                    break;
                case '%':
                    ReadReference();
                    break;
                default:
                    AddText(Take(1));
            }
        }
        return std::move(tokens_);
    }

private:
    bool Done() const { return at_ >= pattern_.size(); }
    char Peek() const { return Done() ? '\0' : pattern_[at_]; }
    std::string_view Take(std::size_t count) {
        const std::string_view taken = pattern_.substr(at_, count);
        at_ += taken.size();
        return taken;
    }
    template <class Matches>
    std::string_view TakeWhile(Matches matches) {
        const std::size_t start = at_;
        while (!Done() && matches(pattern_[at_])) ++at_;
        return pattern_.substr(start, at_ - start);
    }

    void AddText(std::string_view text) {
        // Adjacent characters of the pattern form one token.
        if (!tokens_.empty() && tokens_.back().kind == Token::Kind::text &&
            tokens_.back().text.data() + tokens_.back().text.size() == text.data()) {
            std::string_view& last = tokens_.back().text;
            last = {last.data(), last.size() + text.size()};
        } else {
            Token token;
            token.text = text;
            tokens_.push_back(token);
        }
    }

    void ReadEscape() {
        Take(1);
        const std::string_view escaped = Take(1);
        if (escaped == "@") {
            Token token;
            token.kind = Token::Kind::productName;
            tokens_.push_back(token);
        } else if (!escaped.empty() &&
                   std::string_view("\t\r\n\\'\"").find(escaped[0]) != std::string_view::npos) {
            AddText(escaped);
        }
    }

    void ReadReference() {
        Take(1);
        if (!isDigit(Peek())) {
            Take(1);
            return;
        }
        Token token;
        token.kind = Token::Kind::reference;
        for (int digits = 0; digits < 2 && isDigit(Peek()); ++digits) {
            token.number = token.number * 10 + (Take(1)[0] - '0');
        }
        token.text = pattern_.substr(at_);
        if (Peek() == '!') {
            Take(1);
            token.specification = ReadSpecification();
            Take(1);  // the closing "!"
        } else {
            token.specification.valid = true;
            token.specification.type = 's';
        }
        tokens_.push_back(token);
    }

    Field ReadField() {
        Field field;
        field.present = true;
        field.digits = TakeWhile(isDigit);
        if (field.digits.empty() && Peek() == '*') {
            field.star = true;
            Take(1);
        }
        return field;
    }

    Specification ReadSpecification() {
        Specification specification;
        const std::size_t start = at_;
        specification.flags = TakeWhile([](char c) { return c == '+' || c == '#' || c == '-'; });
        specification.width = ReadField();
        specification.width.present = specification.width.star || !specification.width.digits.empty();
        if (Peek() == '.') {
            Take(1);
            specification.precision = ReadField();
        }
        // Any of these characters left here are misplaced.
        const std::string_view misplaced = TakeWhile(
            [](char c) { return std::string_view("+#-.*").find(c) != std::string_view::npos || isDigit(c); });
        const std::string_view all = pattern_.substr(start, at_ - start);
        specification.stars = static_cast<int>(std::count(all.begin(), all.end(), '*'));
        specification.type = Peek();
        Take(1);
        specification.valid = misplaced.empty() && specification.type != 0 &&
                              letters.find(specification.type) != std::string_view::npos;
        return specification;
    }

    std::string_view pattern_;
    std::size_t at_ = 0;
    std::vector<Token> tokens_;
};

}  // namespace

std::vector<Token> Parse(std::string_view pattern) {
    return Reader(pattern).Read();
}

ArgumentType TypeOf(char letter) {
    switch (letter) {
        case 's':
        case 'p':
        case 'D':
        case 'T':
            return ArgumentType::pointer;
        case 'e':
        case 'f':
        case 'g':
        case 'G':
            return ArgumentType::floating;
        default:
            return ArgumentType::integer;
    }
}

bool ArgumentTypes::Collect(const std::vector<Token>& tokens) {
    for (const Token& token : tokens) {
        if (token.kind != Token::Kind::reference) {
            continue;
        }
        if (!Use(token.number, TypeOf(token.specification.type))) {
            return false;
        }
        for (int star = 1; star <= token.specification.stars; ++star) {
            if (!Use(token.number + star, ArgumentType::integer)) {
                return false;
            }
        }
    }
    const auto firstUnused = std::find(types_.begin() + 1, types_.end(), ArgumentType::none);
    return firstUnused - types_.begin() > count_;
}

bool ArgumentTypes::Use(int number, ArgumentType type) {
    if (number < 1 || number > highest || (*this)[number] != ArgumentType::none) {
        return false;
    }
    types_[static_cast<std::size_t>(number)] = type;
    ++count_;
    return true;
}

}  // namespace text_format
