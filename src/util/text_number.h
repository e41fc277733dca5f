// Numbers as the dialogs read and write them. Pure functions.
#pragma once

#include <string>
#include <string_view>

namespace marlune {

// The number at the start of a text, after blanks: optional sign, digits, decimal point, exponent.
// 0 where the text begins with none.
double leadingNumber(std::string_view text);

// As leadingNumber, rounded (halves to even) and limited to 32 bits.
int leadingInteger(std::string_view text);

// Whether the whole text, blanks around it aside, is one number.
bool isNumeric(std::string_view text);

// Nearest integer, exact halves to the even neighbour; limited to 32 bits; 0 for not-a-number.
int roundHalfEven(double value);

// The shortest decimal form that 15 digits give: "1712", "62.5".
std::string decimalText(double value);

// As decimalText with a blank in the place of the sign before a number that is not negative: " 1.39".
std::string signedText(double value);

} // namespace marlune
