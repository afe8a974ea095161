// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Walks over the record lines of a file in memory: "KEY;value;value;\r\n", with stretches of raw bytes
// between them that are taken by their count. Copies nothing; the bytes outlive the reader and what it
// returns. Any one thread; never fails, whatever the bytes are.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quib {

// The fields of a line from one on, in order; for lists of any length.
class CRecordFields {
public:
    CRecordFields() = default;
    CRecordFields(const char* from, const char* to) noexcept : at(from), end(to) {}

    // The next field as a number. False when no complete field is left.
    bool Next(float& value) noexcept;
    bool Next(std::int32_t& value) noexcept;
    // How many fields are left.
    std::size_t Count() const noexcept;

private:
    bool NextText(std::string_view& text) noexcept;

    const char* at = nullptr;
    const char* end = nullptr;
};

class CRecordReader {
public:
    // What lies beyond this many characters of one field is dropped.
    static constexpr std::size_t kLongestField = 512;
    // Fields that can be asked for by index; further ones belong to lists.
    static constexpr std::size_t kIndexedFields = 8;

    // Lines end in a line feed, or in a carriage return where the first two lines do so without one.
    explicit CRecordReader(std::string_view fileBytes) noexcept : bytes(fileBytes), lineBreak(LineBreakOf(fileBytes)) {}

    // Goes to the next line. False at the end of the bytes.
    bool NextLine() noexcept;
    // Makes the next call of NextLine give the current line again.
    void RepeatLine() noexcept { position = lineStart; }

    // A field counts only when a semicolon ends it. Index 0 is the key.
    bool HasFields(std::size_t count) const noexcept { return fieldCount >= count; }
    std::string_view Key() const noexcept { return Text(0); }
    // Empty or 0 for a field that the line does not have.
    std::string_view Text(std::size_t index) const noexcept;
    std::int32_t Integer(std::size_t index) const noexcept;
    float Real(std::size_t index) const noexcept;
    CRecordFields FieldsFrom(std::size_t index) const noexcept;

    // The `count` bytes after the current line, which a line end follows. Nothing, and no step ahead,
    // when they are not there.
    std::optional<std::string_view> TakeBytes(std::int32_t count) noexcept;

    // True when the bytes end inside the current line.
    bool IsCutOff() const noexcept { return cutOff; }
    // Place of the next line in the bytes.
    std::size_t Position() const noexcept { return position; }

private:
    static char LineBreakOf(std::string_view bytes) noexcept;
    void SplitLine(const char* end) noexcept;

    std::string_view bytes;
    char lineBreak;
    std::size_t position = 0;
    std::size_t lineStart = 0;
    bool cutOff = false;
    // Field i lies from starts[i] to the semicolon at starts[i + 1] - 1.
    std::array<const char*, kIndexedFields + 1> starts{};
    std::size_t fieldCount = 0;
    const char* lineEnd = nullptr;
};

}  // namespace quib
