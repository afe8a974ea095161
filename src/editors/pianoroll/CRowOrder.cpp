// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CRowOrder.h"

#include <algorithm>
#include <vector>

namespace quib {

CRowOrder::CRowOrder(const CKeyRows& rows) {
    rowOfKey.fill(-1);
    for (int row = 0; row < rows.Count(); ++row) Append(rows.KeyOfRow(row));
}

CRowOrder::CRowOrder(const CKeyRows& rows, ERowOrder order, std::span<const std::string> names, const KeySet& used) {
    std::vector<int> keys;
    for (int row = 0; row < rows.Count(); ++row) keys.push_back(rows.KeyOfRow(row));
    std::ranges::stable_sort(keys, [&](int a, int b) {
        const auto first = static_cast<std::size_t>(a);
        const auto second = static_cast<std::size_t>(b);
        if (order == ERowOrder::kByName) return names[first] > names[second];
        return order == ERowOrder::kUsedFirst && !used.test(first) && used.test(second);
    });
    *this = CRowOrder(keys);
}

CRowOrder::CRowOrder(std::span<const int> keys) {
    rowOfKey.fill(-1);
    for (const int key : keys) Append(key);
}

void CRowOrder::Append(int key) noexcept {
    if (RowOf(key) >= 0 || key < 0 || key > kHighestKey) return;
    rowOfKey[static_cast<std::size_t>(key)] = static_cast<std::int16_t>(count);
    keyOfRow[static_cast<std::size_t>(count++)] = static_cast<std::uint8_t>(key);
}

int CRowOrder::KeyOf(int row) const noexcept {
    return keyOfRow[static_cast<std::size_t>(std::clamp(row, 0, std::max(0, count - 1)))];
}

int CRowOrder::RowOf(int key) const noexcept {
    return key < 0 || key > kHighestKey ? -1 : rowOfKey[static_cast<std::size_t>(key)];
}

}  // namespace quib
