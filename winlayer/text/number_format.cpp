#include <algorithm>

#include "winlayer/text/locale.h"

namespace winlayer {

namespace {

constexpr UINT mostDigits = 9;
constexpr UINT lastNegativeOrder = 4;
constexpr UINT groupsOfTwo = 32;

bool isFormat(const NUMBERFMTA& format) {
    return format.NumDigits <= mostDigits && format.LeadingZero <= 1 &&
           (format.Grouping <= 9 || format.Grouping == groupsOfTwo) && format.lpDecimalSep != nullptr &&
           format.lpThousandSep != nullptr && format.NegativeOrder <= lastNegativeOrder;
}

bool isDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Adds one to the last digit; the carry may make the number longer.
void increment(std::string& digits) {
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return;
        }
        digits[i] = '0';
    }
    digits.insert(digits.begin(), '1');
}

// The digits of the value with exactly `places` decimals, rounded half away from zero.
std::string scaled(std::string_view whole, std::string_view fraction, std::size_t places) {
    std::string digits(whole);
    digits += fraction.substr(0, places);
    digits.append(places - std::min(places, fraction.size()), '0');
    if (fraction.size() > places && fraction[places] >= '5') {
        increment(digits);
    }
    return digits;
}

std::string grouped(const std::string& whole, UINT grouping, std::string_view separator) {
    std::string text;
    std::size_t size = grouping == groupsOfTwo ? 3 : grouping;
    std::size_t end = whole.size();
    while (size != 0 && end > size) {
        text.insert(0, std::string(separator) + whole.substr(end - size, size));
        end -= size;
        size = grouping == groupsOfTwo ? 2 : size;
    }
    return whole.substr(0, end) + text;
}

std::string negative(const std::string& text, UINT order) {
    switch (order) {
        case 0:
            return "(" + text + ")";
        case 1:
            return "-" + text;
        case 2:
            return "- " + text;
        case 3:
            return text + "-";
        default:
            return text + " -";
    }
}

}  // namespace

std::optional<std::string> formatNumber(std::string_view value, const NUMBERFMTA& format) {
    const bool isNegative = value.starts_with('-');
    value.remove_prefix(isNegative ? 1 : 0);
    const std::size_t point = value.find('.');
    const std::string_view whole = value.substr(0, point);
    const std::string_view fraction =
        point == std::string_view::npos ? std::string_view() : value.substr(point + 1);
    if (!isDigits(whole) || !isDigits(fraction) || !isFormat(format)) {
        return {};
    }
    std::string digits = scaled(whole, fraction, format.NumDigits);
    const std::string places = digits.substr(digits.size() - format.NumDigits);
    digits.resize(digits.size() - format.NumDigits);
    digits.erase(0, digits.find_first_not_of('0'));
    if (digits.empty() && format.LeadingZero != 0) {
        digits = "0";
    }
    std::string text = grouped(digits, format.Grouping, format.lpThousandSep);
    if (!places.empty()) {
        text += format.lpDecimalSep + places;
    }
    return isNegative ? negative(text, format.NegativeOrder) : text;
}

}  // namespace winlayer
