#include "util/text_number.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace marlune {

namespace {

std::string_view withoutBlanks(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    return text;
}

// Reads the longest number at the start; returns how many characters it has, 0 for none.
std::size_t scanNumber(std::string_view text, double& value) {
    std::size_t start = 0;
    if (!text.empty() && text[0] == '+') start = 1;
    // from_chars would take "inf", "nan" and a second sign: a number here starts with a digit, "-" or ".".
    const std::size_t first = start + (text.substr(start).starts_with('-') && start == 0 ? 1 : 0);
    const bool digit = first < text.size() && std::isdigit(static_cast<unsigned char>(text[first])) != 0;
    const bool point = first + 1 < text.size() && text[first] == '.' &&
                       std::isdigit(static_cast<unsigned char>(text[first + 1])) != 0;
    if (!digit && !point) return 0;
    const auto [end, error] = std::from_chars(text.data() + start, text.data() + text.size(), value,
                                              std::chars_format::fixed); // "1e1" is no number
    if (error == std::errc::result_out_of_range) {
        value =
            text.starts_with('-') ? -std::numeric_limits<double>::max() : std::numeric_limits<double>::max();
    }
    return static_cast<std::size_t>(end - text.data());
}

} // namespace

double leadingNumber(std::string_view text) {
    double value = 0;
    return scanNumber(withoutBlanks(text), value) > 0 ? value : 0;
}

int leadingInteger(std::string_view text) {
    return roundHalfEven(leadingNumber(text));
}

bool isNumeric(std::string_view text) {
    const std::string_view core = withoutBlanks(text);
    double value = 0;
    return !core.empty() && scanNumber(core, value) == core.size();
}

int roundHalfEven(double value) {
    if (std::isnan(value)) return 0;
    const double nearest = std::nearbyint(value); // the default rounding mode takes halves to even
    if (nearest >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    if (nearest <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(nearest);
}

std::string decimalText(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.15g", value == 0 ? 0.0 : value); // no "-0"
    return buffer;
}

std::string signedText(double value) {
    return (value < 0 ? "" : " ") + decimalText(value);
}

} // namespace marlune
