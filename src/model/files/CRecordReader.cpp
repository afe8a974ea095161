// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/CRecordReader.h"

#include <algorithm>
#include <cstring>

#include "model/files/RecordNumbers.h"

namespace quib {

namespace {

const char* Find(char wanted, const char* from, const char* end) noexcept {
    if (from == end) return nullptr;
    return static_cast<const char*>(std::memchr(from, wanted, static_cast<std::size_t>(end - from)));
}

}  // namespace

bool CRecordFields::NextText(std::string_view& text) noexcept {
    const char* const semicolon = Find(';', at, end);
    if (semicolon == nullptr) {
        at = end;
        return false;
    }
    text = std::string_view(at, static_cast<std::size_t>(semicolon - at)).substr(0, CRecordReader::kLongestField);
    at = semicolon + 1;
    return true;
}

bool CRecordFields::Next(float& value) noexcept {
    if (const char* const after = TakePlainReal(at, end, value)) {
        at = after;
        return true;
    }
    std::string_view text;
    if (!NextText(text)) return false;
    value = ParseReal(text);
    return true;
}

bool CRecordFields::Next(std::int32_t& value) noexcept {
    if (const char* const after = TakePlainInteger(at, end, value)) {
        at = after;
        return true;
    }
    std::string_view text;
    if (!NextText(text)) return false;
    value = ParseInteger(text);
    return true;
}

std::size_t CRecordFields::Count() const noexcept { return static_cast<std::size_t>(std::count(at, end, ';')); }

char CRecordReader::LineBreakOf(std::string_view bytes) noexcept {
    const std::size_t first = bytes.find_first_of("\r\n");
    if (first == std::string_view::npos || bytes[first] == '\n') return '\n';
    const std::size_t second = bytes.find_first_of("\r\n", first + 1);
    const bool isReturn = second == std::string_view::npos || (bytes[second] == '\r' && second > first + 1);
    return isReturn ? '\r' : '\n';
}

bool CRecordReader::NextLine() noexcept {
    lineStart = position;
    fieldCount = 0;
    if (position >= bytes.size()) return false;
    const char* const first = bytes.data() + position;
    const char* const last = bytes.data() + bytes.size();
    const char* const lineFeed = Find(lineBreak, first, last);
    cutOff = lineFeed == nullptr;
    const char* end = cutOff ? last : lineFeed;
    position = cutOff ? bytes.size() : static_cast<std::size_t>(end - bytes.data()) + 1;
    if (const char* const nul = Find('\0', first, end)) end = nul;
    SplitLine(end);
    return true;
}

void CRecordReader::SplitLine(const char* end) noexcept {
    lineEnd = end;
    starts[0] = bytes.data() + lineStart;
    while (fieldCount < kIndexedFields) {
        const char* const semicolon = Find(';', starts[fieldCount], end);
        if (semicolon == nullptr) return;
        starts[++fieldCount] = semicolon + 1;
    }
}

std::string_view CRecordReader::Text(std::size_t index) const noexcept {
    if (index >= fieldCount) return {};
    const auto length = static_cast<std::size_t>(starts[index + 1] - starts[index]) - 1;
    return {starts[index], std::min(length, kLongestField)};
}

std::int32_t CRecordReader::Integer(std::size_t index) const noexcept { return ParseInteger(Text(index)); }
float CRecordReader::Real(std::size_t index) const noexcept { return ParseReal(Text(index)); }

CRecordFields CRecordReader::FieldsFrom(std::size_t index) const noexcept {
    return index <= fieldCount && fieldCount > 0 ? CRecordFields(starts[index], lineEnd) : CRecordFields();
}

std::optional<std::string_view> CRecordReader::TakeBytes(std::int32_t count) noexcept {
    const std::string_view rest = bytes.substr(position);
    if (count < 0 || static_cast<std::size_t>(count) >= rest.size()) return std::nullopt;
    const auto size = static_cast<std::size_t>(count);
    if (rest[size] != '\r' && rest[size] != '\n') return std::nullopt;
    position += size;
    return rest.substr(0, size);
}

}  // namespace quib
