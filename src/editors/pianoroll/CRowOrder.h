// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which key stands in which row of a grid, from the lowest row up, in any order. An immutable value.

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "model/edits/CKeyRows.h"

namespace quib {

// How drums stand above each other.
enum class ERowOrder { kByKey, kByName, kUsedFirst };
constexpr int kRowOrderCount = 3;

class CRowOrder {
public:
    // Every key.
    CRowOrder() : CRowOrder(CKeyRows()) {}
    explicit CRowOrder(const CKeyRows& rows);
    // The keys of `rows` in an order: by name the first one is on top, as are those that are used.
    CRowOrder(const CKeyRows& rows, ERowOrder order, std::span<const std::string> names, const KeySet& used);
    // These keys, the first one lowest. Keys out of range and repeated ones are left out.
    explicit CRowOrder(std::span<const int> keys);

    int Count() const noexcept { return count; }
    // Rows outside are taken as the first or the last; 0 when there is none.
    int KeyOf(int row) const noexcept;
    // -1 when the key is not shown.
    int RowOf(int key) const noexcept;

private:
    void Append(int key) noexcept;

    int count = 0;
    std::array<std::uint8_t, kHighestKey + 1> keyOfRow{};
    std::array<std::int16_t, kHighestKey + 1> rowOfKey{};
};

}  // namespace quib
