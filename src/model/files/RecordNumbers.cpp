// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/RecordNumbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace quib {

namespace {

constexpr std::array<double, 16> kPowersOfTen = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
constexpr int kMostExactDigits = 15;  // whole numbers of that many digits are exact in a double

bool IsDigit(char character) noexcept { return static_cast<unsigned char>(character - '0') < 10; }

bool IsBlank(char character) noexcept { return character == ' ' || (character >= '\t' && character <= '\r'); }

void SkipBlanks(std::string_view& text) noexcept {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
}

char* FormatUnsigned(char* to, std::uint64_t value) noexcept {
    std::array<char, 20> digits;
    char* const last = digits.data() + digits.size();
    char* first = last;
    do {
        *--first = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    return std::copy(first, last, to);
}

// A float has 24 significant bits and 10^Decimals at most 14 odd ones, so the product below is exact
// and rounding it half to even is the rounding of the exact value.
template <int Decimals>
char* FormatReal(char* to, float value) noexcept {
    constexpr auto scale = static_cast<std::uint64_t>(kPowersOfTen[Decimals]);
    const double scaled = std::fabs(static_cast<double>(value)) * static_cast<double>(scale);
    if (!(scaled < 1e15)) {
        return std::to_chars(to, to + kLongestNumber, static_cast<double>(value), std::chars_format::fixed, Decimals)
            .ptr;
    }
    auto whole = static_cast<std::uint64_t>(scaled);
    const double rest = scaled - static_cast<double>(whole);
    if (rest > 0.5 || (rest == 0.5 && (whole & 1U) != 0)) ++whole;
    if (std::signbit(value)) *to++ = '-';
    to = FormatUnsigned(to, whole / scale);
    auto fraction = static_cast<std::uint32_t>(whole % scale);
    *to = '.';
    for (int place = Decimals; place > 0; --place) {
        to[place] = static_cast<char>('0' + fraction % 10);
        fraction /= 10;
    }
    return to + Decimals + 1;
}

// `magnitude` / 10^`decimals` as the nearest float. False when rounding twice, to a double first, might
// give another one: when the double lies exactly between two floats.
bool NearestFloat(std::uint64_t magnitude, int decimals, bool negative, float& value) noexcept {
    const double exact = static_cast<double>(magnitude) / kPowersOfTen[static_cast<std::size_t>(decimals)];
    constexpr std::uint64_t cutBits = (std::uint64_t{1} << 29) - 1;
    constexpr std::uint64_t halfway = std::uint64_t{1} << 28;
    if ((std::bit_cast<std::uint64_t>(exact) & cutBits) == halfway) return false;
    value = static_cast<float>(negative ? -exact : exact);
    return true;
}

// What a decimal number outside the range of floats stands for: nothing or the limit.
float OutOfRange(std::string_view number) noexcept {
    double wide = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), wide);
    constexpr double largest = std::numeric_limits<float>::max();
    if (result.ec == std::errc()) return static_cast<float>(std::clamp(wide, -largest, largest));
    // Beyond even a double: too small when it starts with 0 or has a negative exponent.
    const bool negative = number.front() == '-';
    const char first = number[negative ? 1 : 0];
    const bool small = first == '0' || first == '.' || number.find("e-") != std::string_view::npos ||
                       number.find("E-") != std::string_view::npos;
    return small ? 0.0F : static_cast<float>(negative ? -largest : largest);
}

}  // namespace

char* FormatInteger(char* to, std::int32_t value) noexcept {
    if (value >= 0) return FormatUnsigned(to, static_cast<std::uint64_t>(value));
    *to++ = '-';
    return FormatUnsigned(to, static_cast<std::uint64_t>(-static_cast<std::int64_t>(value)));
}

char* FormatReal4(char* to, float value) noexcept { return FormatReal<4>(to, value); }
char* FormatReal6(char* to, float value) noexcept { return FormatReal<6>(to, value); }

std::int32_t ParseInteger(std::string_view text) noexcept {
    SkipBlanks(text);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    constexpr std::int64_t beyond = std::int64_t{1} << 32;
    std::int64_t magnitude = 0;
    for (const char character : text) {
        if (!IsDigit(character)) break;
        magnitude = std::min(magnitude * 10 + (character - '0'), beyond);
    }
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(negative ? -magnitude : magnitude, Limits::min(), Limits::max()));
}

float ParseReal(std::string_view text) noexcept {
    SkipBlanks(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return 0.0F;
    }
    float value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        return OutOfRange(text.substr(0, static_cast<std::size_t>(result.ptr - text.data())));
    }
    return result.ec == std::errc() && std::isfinite(value) ? value : 0.0F;
}

const char* TakePlainReal(const char* from, const char* end, float& value) noexcept {
    const bool negative = from != end && *from == '-';
    if (negative) ++from;
    const char* const first = from;
    std::uint64_t magnitude = 0;
    while (from != end && IsDigit(*from)) magnitude = magnitude * 10 + static_cast<std::uint64_t>(*from++ - '0');
    auto digits = from - first;
    std::ptrdiff_t decimals = 0;
    if (from != end && *from == '.') {
        const char* const point = from++;
        while (from != end && IsDigit(*from)) magnitude = magnitude * 10 + static_cast<std::uint64_t>(*from++ - '0');
        decimals = from - point - 1;
        digits += decimals;
    }
    if (from == end || *from != ';' || digits == 0 || digits > kMostExactDigits) return nullptr;
    return NearestFloat(magnitude, static_cast<int>(decimals), negative, value) ? from + 1 : nullptr;
}

const char* TakePlainInteger(const char* from, const char* end, std::int32_t& value) noexcept {
    const bool negative = from != end && *from == '-';
    if (negative) ++from;
    const char* const first = from;
    std::int64_t magnitude = 0;
    while (from != end && IsDigit(*from) && from - first < 9) magnitude = magnitude * 10 + (*from++ - '0');
    if (from == end || *from != ';' || from == first) return nullptr;
    value = static_cast<std::int32_t>(negative ? -magnitude : magnitude);
    return from + 1;
}

}  // namespace quib
