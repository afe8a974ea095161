// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files/CRecordWriter.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace quib {

namespace {

constexpr std::size_t kFirstCapacity = std::size_t{1} << 16;
constexpr std::size_t kSizeFieldWidth = 10;

}  // namespace

CRecordWriter& CRecordWriter::Key(std::string_view key) {
    Append(key.data(), key.size());
    Append(";", 1);
    return *this;
}

CRecordWriter& CRecordWriter::Text(std::string_view text) {
    Reserve(text.size() + 1);
    char* const to = buffer.get() + size;
    std::transform(text.begin(), text.end(), to, [](char character) {
        return character == '\r' || character == '\n' || character == '\0' ? ' ' : character;
    });
    to[text.size()] = ';';
    size += text.size() + 1;
    return *this;
}

void CRecordWriter::EndLine() { Append("\r\n", 2); }

void CRecordWriter::SizedBytes(std::string_view key, std::span<const std::byte> image) {
    Key(key);
    char digits[kLongestNumber];
    const char* const end = FormatInteger(digits, static_cast<std::int32_t>(image.size()));
    const auto length = static_cast<std::size_t>(end - digits);
    for (std::size_t blank = length; blank < kSizeFieldWidth; ++blank) Append(" ", 1);
    Append(digits, length);
    Append(";\r\n", 3);
    Append(image.data(), image.size());
    EndLine();
}

void CRecordWriter::CountedBytes(std::string_view key, std::span<const std::byte> image) {
    IntegerLine(key, static_cast<std::int32_t>(image.size()));
    Append(image.data(), image.size());
    EndLine();
}

void CRecordWriter::Append(const void* bytes, std::size_t count) {
    if (count == 0) return;
    Reserve(count);
    std::memcpy(buffer.get() + size, bytes, count);
    size += count;
}

// Doubles, so that appending costs the same on average however long the file gets; large blocks are
// moved by the system without copying.
void CRecordWriter::Grow(std::size_t count) {
    const std::size_t wanted = std::max({kFirstCapacity, capacity * 2, size + count});
    char* const grown = static_cast<char*>(std::realloc(buffer.get(), wanted));
    if (grown == nullptr) throw std::bad_alloc();
    (void)buffer.release();
    buffer.reset(grown);
    capacity = wanted;
}

}  // namespace quib
