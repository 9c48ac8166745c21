#pragma once
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

// What strings and byte strings do, told again in the plainest way: one element at a time over std::string.
namespace test::model {

inline constexpr std::uint32_t nowhere = 0xEFFFFFFF;

inline unsigned char folded(char element) {
    const auto byte = static_cast<unsigned char>(element);
    return byte >= 'A' && byte <= 'Z' ? byte : static_cast<unsigned char>(byte - 0x20);
}

inline bool same(char left, char right, int matchCase) {
    return matchCase == 1 ? left == right : folded(left) == folded(right);
}

struct Found {
    int result = 0;
    std::uint32_t position = nowhere;
    bool operator==(const Found&) const = default;
};

inline Found findOccurrence(const std::string& pattern, const std::string& text, int matchCase,
                            std::uint32_t occurrence) {
    if (text.size() < pattern.size()) {
        return {0, 0};
    }
    for (std::size_t at = 0; at + pattern.size() <= text.size() && !pattern.empty();) {
        std::size_t matched = 0;
        while (matched < pattern.size() && same(text[at + matched], pattern[matched], matchCase)) {
            ++matched;
        }
        if (matched < pattern.size()) {
            ++at;
        } else if (occurrence-- == 0) {
            return {1, static_cast<std::uint32_t>(at)};
        } else {
            at += pattern.size();
        }
    }
    return {};
}

// All fields of a text; none when it or the delimiter is empty, nor (unless `whole`) when it holds no
// delimiter.
inline std::vector<std::string> fields(const std::string& delimiter, const std::string& text, int matchCase,
                                       bool whole) {
    std::vector<std::string> cut;
    if (delimiter.empty() || text.empty()) {
        return cut;
    }
    std::string rest = text;
    for (Found next = findOccurrence(delimiter, rest, matchCase, 0); next.result == 1;
         next = findOccurrence(delimiter, rest, matchCase, 0)) {
        cut.push_back(rest.substr(0, next.position));
        rest.erase(0, next.position + delimiter.size());
    }
    if (!cut.empty() || whole) {
        cut.push_back(rest);
    }
    return cut;
}

enum class Elements { signedText, bytes };

inline int compare(const std::string& left, const std::string& right, int matchCase, int matchStyle,
                   Elements elements) {
    const std::string& shorter = left.size() < right.size() ? left : right;
    const std::string& longer = left.size() < right.size() ? right : left;
    if (matchStyle == 1 && findOccurrence(shorter, longer, matchCase, 0).result == 1) {
        return 0;
    }
    for (std::size_t i = 0; i < longer.size(); ++i) {
        if (elements == Elements::bytes && i >= shorter.size()) {
            return left.size() < right.size() ? -1 : 1;
        }
        char a = i < left.size() ? left[i] : '\0';
        char b = i < right.size() ? right[i] : '\0';
        if (matchCase == 0) {
            a = static_cast<char>(folded(a));
            b = static_cast<char>(folded(b));
        }
        if (a != b) {
            const bool greater = elements == Elements::bytes
                                     ? static_cast<unsigned char>(a) > static_cast<unsigned char>(b)
                                     : static_cast<signed char>(a) > static_cast<signed char>(b);
            return greater ? 1 : -1;
        }
    }
    return 0;
}

struct Replaced {
    int result = 0;
    std::string text;
    bool operator==(const Replaced&) const = default;
};

inline bool equalWhole(const std::string& pattern, const std::string& text, int matchCase) {
    return pattern.size() == text.size() &&
           (pattern.empty() || findOccurrence(pattern, text, matchCase, 0).result == 1);
}

// The walk to its end: always the first occurrence, until none is left or it lies where the last was
// replaced. Nothing when it has not ended after many steps.
inline std::optional<Replaced> replaceAll(const std::string& pattern, const std::string& replacement,
                                          std::string text, int matchCase) {
    if (pattern.size() == text.size()) {
        return equalWhole(pattern, text, matchCase) ? Replaced{1, replacement} : Replaced{0, text};
    }
    Found at = findOccurrence(pattern, text, matchCase, 0);
    if (at.result == 0) {
        return Replaced{0, text};
    }
    for (int step = 0; step < 50; ++step) {
        const std::uint32_t last = at.position;
        text.replace(last, pattern.size(), replacement);
        at = findOccurrence(pattern, text, matchCase, 0);
        if (at.result == 0 || at.position == last) {
            return Replaced{1, text};
        }
    }
    return std::nullopt;
}

// Random texts from a few letters, so that patterns occur, overlap and fail late.
class RandomText {
public:
    explicit RandomText(unsigned seed) : random_(seed) {}

    std::size_t below(std::size_t bound) { return random_() % bound; }

    std::string operator()(std::size_t longest) {
        static const std::string alphabets[] = {"ab", "abAB", "aA_", std::string("a\0\xE9Z\x80z{", 7)};
        const std::string& alphabet = alphabets[below(std::size(alphabets))];
        std::string text(below(longest + 1), '\0');
        for (char& element : text) {
            element = alphabet[below(alphabet.size())];
        }
        return text;
    }

private:
    std::mt19937 random_;
};

}  // namespace test::model
