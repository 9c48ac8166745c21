#pragma once
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace text_format {

// Width or precision of a specification: absent, digits as in the pattern, or the next argument.
struct Field {
    bool present = false;
    bool star = false;
    std::string_view digits;
};

// The part between the "!" of a reference: flags, width, precision, and the letter of the argument's type.
struct Specification {
    bool valid = false;
    std::string_view flags;
    Field width;
    Field precision;
    char type = 0;
    int stars = 0;  // also those of an invalid specification
};

// A part of a pattern. A reference without a specification has the letter 's'.
struct Token {
    enum class Kind { text, productName, reference };

    Kind kind = Kind::text;
    std::string_view text;  // text: what to insert; reference: the rest of the pattern, from the "!" on
    int number = 0;
    Specification specification;
};

// Splits a pattern. What has no meaning (a lone "%", an unknown escape) gives no token.
std::vector<Token> Parse(std::string_view pattern);

// How an argument is passed.
enum class ArgumentType { none, integer, floating, pointer };
ArgumentType TypeOf(char letter);

// The types of a pattern's arguments, by their number from 1 on.
class ArgumentTypes {
public:
    static constexpr int highest = 99;

    // False when a number is out of range or used twice, or the numbers from 1 on have a gap.
    bool Collect(const std::vector<Token>& tokens);
    int Count() const { return count_; }
    ArgumentType operator[](int number) const { return types_[static_cast<std::size_t>(number)]; }

private:
    bool Use(int number, ArgumentType type);

    std::array<ArgumentType, highest + 1> types_{};
    int count_ = 0;
};

}  // namespace text_format
