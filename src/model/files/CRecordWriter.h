// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Builds the bytes of a file of record lines in memory. Used by the writers of every file of the
// program, on the thread that saves; the bytes do not depend on any locale.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>

#include "model/files/RecordNumbers.h"

namespace quib {

class CRecordWriter {
public:
    // Pieces of a line. Text is written as it is, but for line ends and NUL, which become blanks.
    CRecordWriter& Key(std::string_view key);
    CRecordWriter& Integer(std::int32_t value) { return Number(FormatInteger, value); }
    CRecordWriter& Real(float value) { return Number(FormatReal4, value); }   // "%.4f"
    CRecordWriter& Real6(float value) { return Number(FormatReal6, value); }  // "%f"
    CRecordWriter& Text(std::string_view text);
    void EndLine();

    // Whole lines.
    void IntegerLine(std::string_view key, std::int32_t value) { Key(key).Integer(value).EndLine(); }
    void RealLine(std::string_view key, float value) { Key(key).Real(value).EndLine(); }
    void Real6Line(std::string_view key, float value) { Key(key).Real6(value).EndLine(); }
    void TextLine(std::string_view key, std::string_view text) { Key(key).Text(text).EndLine(); }
    void MarkerLine(std::string_view key) { TextLine(key, {}); }

    // A line with the number of bytes of `image` in a field of ten characters, then these bytes and a
    // line end.
    void SizedBytes(std::string_view key, std::span<const std::byte> image);
    // The number as it is, then bytes and a line end.
    void CountedBytes(std::string_view key, std::span<const std::byte> image);

    std::span<const char> Bytes() const noexcept { return {buffer.get(), size}; }
    void Clear() noexcept { size = 0; }

private:
    struct CFree {
        void operator()(char* memory) const noexcept { std::free(memory); }
    };

    // Makes room for `count` more bytes; throws std::bad_alloc.
    void Reserve(std::size_t count) {
        if (capacity - size < count) Grow(count);
    }
    void Grow(std::size_t count);
    void Append(const void* bytes, std::size_t count);

    template <class Format, class Value>
    CRecordWriter& Number(Format format, Value value) {
        Reserve(kLongestNumber + 1);
        char* const end = format(buffer.get() + size, value);
        *end = ';';
        size = static_cast<std::size_t>(end + 1 - buffer.get());
        return *this;
    }

    std::unique_ptr<char, CFree> buffer;
    std::size_t size = 0;
    std::size_t capacity = 0;
};

}  // namespace quib
