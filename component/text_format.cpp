#include "text_format.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "PropertySection.h"
#include "format_pattern.h"
#include "locale_text.h"

namespace text_format {

namespace {

union Argument {
    int integer;
    double floating;
    const void* pointer;
};
using Arguments = std::array<Argument, ArgumentTypes::highest + 1>;

Arguments readArguments(const ArgumentTypes& types, va_list list) {
    Arguments arguments{};
    for (int number = 1; number <= types.Count(); ++number) {
        Argument& argument = arguments[static_cast<std::size_t>(number)];
        switch (types[number]) {
            case ArgumentType::floating:
                argument.floating = va_arg(list, double);
                break;
            case ArgumentType::pointer:
                argument.pointer = va_arg(list, const void*);
                break;
            default:
                argument.integer = va_arg(list, int);
        }
    }
    return arguments;
}

std::string productName() {
    PropertySection section;
    char name[256];
    if (section.Open("CBSTR", 0) && section.GetValue("ProductName", name, sizeof name)) {
        return name;
    }
    return "CBSTR DEFAULT PRODUCT NAME";
}

template <class Value>
std::string print(const std::string& format, Value value) {
    const int length = std::snprintf(nullptr, 0, format.c_str(), value);
    if (length <= 0) {
        return {};
    }
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), value);
    text.pop_back();
    return text;
}

std::string binary(int value) {
    std::string text;
    for (int bit = 7; bit >= 0; --bit) {
        text += (value >> bit & 1) != 0 ? '1' : '0';
    }
    return text;
}

// One conversion, with width and precision resolved to digits.
class Conversion {
public:
    Conversion(const Token& token, const Arguments& arguments)
        : type_(token.specification.type), value_(arguments[static_cast<std::size_t>(token.number)]) {
        const Specification& specification = token.specification;
        auto next = static_cast<std::size_t>(token.number) + 1;
        const auto digits = [&](const Field& field) {
            return field.star ? std::to_string(arguments[next++].integer) : std::string(field.digits);
        };
        before_ = '%' + std::string(specification.flags);
        if (specification.width.present) {
            width_ = digits(specification.width);
        }
        if (specification.precision.present) {
            const std::string precision = digits(specification.precision);
            if (precision.empty() || precision[0] != '-') {  // a negative one is ignored
                precision_ = '.' + precision;
            }
        }
    }

    std::string Text() const {
        if (TypeOf(type_) == ArgumentType::pointer && type_ != 'p' && value_.pointer == nullptr) {
            return " ";
        }
        switch (type_) {
            case 's':
                return print(Format('s'), static_cast<const char*>(value_.pointer));
            case 'c':
                return print(Format('c'), value_.integer & 0xFFFF);
            case 'p':
                return Address();
            case 'e':
            case 'f':
            case 'g':
            case 'G':
                return locale_text::Number(print(Format(type_), value_.floating));
            case 'i':
                return locale_text::Integer(value_.integer);
            case 'b':
                return binary(value_.integer);
            case 'D':
                return locale_text::Date(*static_cast<const SYSTEMTIME*>(value_.pointer));
            case 'T':
                return locale_text::Time(*static_cast<const SYSTEMTIME*>(value_.pointer), TimeFlags());
            default:
                return print(Format(type_), value_.integer);
        }
    }

private:
    std::string Format(char type) const { return before_ + width_ + precision_ + type; }

    // All digits of an address, as on Windows; other C libraries write it differently.
    std::string Address() const {
        constexpr int digits = 2 * sizeof(void*);
        const auto address = reinterpret_cast<ULONG_PTR>(value_.pointer);
        const std::string text =
            print("%0" + std::to_string(digits) + "llX", static_cast<unsigned long long>(address));
        return print(before_ + width_ + 's', text.c_str());
    }

    DWORD TimeFlags() const {
        const long width = std::abs(std::strtol(width_.c_str(), nullptr, 10));
        return (width < 6 ? TIME_NOSECONDS : 0) | (width > 0 && width < 9 ? TIME_NOTIMEMARKER : 0);
    }

    char type_;
    Argument value_;
    std::string before_;
    std::string width_;
    std::string precision_;
};

}  // namespace

bool Fill(const char* pattern, va_list list, std::string& text) {
    const std::vector<Token> tokens = Parse(pattern);
    ArgumentTypes types;
    if (!types.Collect(tokens)) {
        return false;
    }
    const Arguments arguments = readArguments(types, list);
    for (const Token& token : tokens) {
        switch (token.kind) {
            case Token::Kind::text:
                text += token.text;
                break;
            case Token::Kind::productName:
                text += productName();
                break;
            case Token::Kind::reference:
                if (!token.specification.valid) {
                    text += token.text;
                    return false;
                }
                text += Conversion(token, arguments).Text();
        }
    }
    return true;
}

}  // namespace text_format
