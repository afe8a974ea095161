// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Numbers of record lines as text, independent of any locale. Output equals "%i", "%.4f" and "%f" byte
// for byte. Input takes what a number starts with, like the C conversions, and never gives a value that
// is not finite. Any thread.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quib {

// Longest text of one number: the largest float with six decimals and its sign.
constexpr std::size_t kLongestNumber = 64;

// Write at `to`, which has room for kLongestNumber characters, and return the end of the text.
char* FormatInteger(char* to, std::int32_t value) noexcept;
char* FormatReal4(char* to, float value) noexcept;  // four decimals
char* FormatReal6(char* to, float value) noexcept;  // six decimals

// Leading blanks and a sign, then digits up to the first other character. 0 without digits; values
// beyond 32 bits give the nearest limit.
std::int32_t ParseInteger(std::string_view text) noexcept;

// The nearest float, the largest one for what lies beyond. 0 for what is no finite decimal number.
float ParseReal(std::string_view text) noexcept;

// Reads a field that ends with a semicolon. Takes the short way for plain numbers ("-12.5000;") and
// returns the place after the semicolon, or null where that way does not lead.
const char* TakePlainReal(const char* from, const char* end, float& value) noexcept;
const char* TakePlainInteger(const char* from, const char* end, std::int32_t& value) noexcept;

}  // namespace quib
