// Searching, parsing, comparing and replacing against the plain models of the tests.
// Input: a byte of flags (bit 0 case, bit 1 match style), a byte each for the lengths of pattern and
// replacement, then pattern, replacement and text.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "UtilsByte.h"
#include "UtilsString.h"
#include "support/text_model.h"

namespace {

using test::model::Elements;
using test::model::Found;
using UTILS::UtilsByte;
using UTILS::UtilsString;

void check(bool agreed, const char* what) {
    if (!agreed) {
        std::fprintf(stderr, "%s differs from the model\n", what);
        std::abort();
    }
}

struct Input {
    int matchCase = 0;
    int matchStyle = 0;
    std::string pattern;
    std::string replacement;
    std::string text;
};

Input read(const std::uint8_t* data, std::size_t size) {
    Input input;
    if (size < 3) {
        return input;
    }
    input.matchCase = data[0] & 1;
    input.matchStyle = data[0] >> 1 & 1;
    const std::string rest(data + 3, data + size);
    const std::size_t pattern = std::min<std::size_t>(data[1], rest.size());
    const std::size_t replacement = std::min<std::size_t>(data[2] % 16, rest.size() - pattern);
    input.pattern = rest.substr(0, pattern);
    input.replacement = rest.substr(pattern, replacement);
    input.text = rest.substr(pattern + replacement, 512);
    return input;
}

UtilsString made(const std::string& text, const Input& input) {
    UtilsString string(text);
    string.SetCase(input.matchCase);
    string.SetMatchStyle(input.matchStyle);
    return string;
}

void searchAgrees(const Input& input) {
    UtilsString string = made(input.text, input);
    DWORD position = 0;
    int result = string.FindFirst(input.pattern, position);
    for (std::uint32_t occurrence = 0; occurrence < 20; ++occurrence) {
        check(Found{result, position} ==
                  test::model::findOccurrence(input.pattern, input.text, input.matchCase, occurrence),
              "search");
        result = string.FindNext(input.pattern, position);
    }
}

void parseAgrees(const Input& input) {
    UtilsString string = made(input.text, input);
    UtilsString field;
    const auto plain = test::model::fields(input.pattern, input.text, input.matchCase, false);
    for (std::size_t i = 0; i <= std::min<std::size_t>(plain.size(), 20); ++i) {
        const int result = string.ParseString(input.pattern, field, static_cast<DWORD>(i));
        check(result == (i < plain.size() ? 1 : 0), "plain parse");
        check(result == 0 || field.GetSTLString() == plain[i], "plain field");
    }
    const auto whole = test::model::fields(input.pattern, input.text, input.matchCase, true);
    for (std::size_t i = 0; i <= whole.size(); ++i) {
        const int result = i == 0 ? string.ParseFirstStringFast(input.pattern, field)
                                  : string.ParseNextStringFast(input.pattern, field);
        check(result == (i < whole.size() ? 1 : 0), "fast parse");
        check(result == 0 || field.GetSTLString() == whole[i], "fast field");
    }
}

void compareAgrees(const Input& input) {
    check(made(input.text, input).Compare(input.pattern) ==
              test::model::compare(input.text, input.pattern, input.matchCase, input.matchStyle,
                                   Elements::signedText),
          "compare");
}

void replaceAgrees(const Input& input) {
    UtilsString string = made(input.text, input);
    const int result = string.ReplaceAll(input.pattern, input.replacement);
    check(string.c_str()[string.length()] == '\0', "terminator");
    const auto expected =
        test::model::replaceAll(input.pattern, input.replacement, input.text, input.matchCase);
    check(!expected || *expected == test::model::Replaced{result, string.GetSTLString()}, "replace");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Input input = read(data, size);
    searchAgrees(input);
    parseAgrees(input);
    compareAgrees(input);
    replaceAgrees(input);
    return 0;
}
