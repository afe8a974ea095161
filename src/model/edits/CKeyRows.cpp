// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/CKeyRows.h"

#include <algorithm>

namespace quib {

KeySet UsedKeys(const CPattern& pattern) {
    KeySet used;
    for (const Note& note : pattern.Notes()) {
        if (IsPlayable(note)) used.set(static_cast<std::size_t>(note.key));
    }
    return used;
}

KeySet KeysOfScale(const Scale& scale) {
    KeySet keys;
    for (int key = 0; key <= kHighestKey; ++key) keys.set(static_cast<std::size_t>(key), IsInScale(scale, key));
    return keys;
}

CKeyRows::CKeyRows() : CKeyRows(KeySet()) {}

CKeyRows::CKeyRows(const KeySet& shown) : keys(shown.any() ? shown : KeySet().set()) {
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (keys.test(key)) keyOfRow[static_cast<std::size_t>(count++)] = static_cast<std::uint8_t>(key);
        rowOfKey[key] = static_cast<std::uint8_t>(std::max(0, count - 1));
    }
}

CKeyRows CKeyRows::FoldToScale(const Scale& scale, const CPattern& pattern) {
    return CKeyRows(KeysOfScale(scale) | UsedKeys(pattern));
}

CKeyRows CKeyRows::FoldToUsed(const CPattern& pattern) { return CKeyRows(UsedKeys(pattern)); }

int CKeyRows::KeyOfRow(int row) const noexcept {
    return keyOfRow[static_cast<std::size_t>(std::clamp(row, 0, count - 1))];
}

int CKeyRows::RowOfKey(int key) const noexcept {
    return rowOfKey[static_cast<std::size_t>(std::clamp(key, 0, kHighestKey))];
}

bool CKeyRows::IsShown(int key) const noexcept {
    return key >= 0 && key <= kHighestKey && keys[static_cast<std::size_t>(key)];
}

}  // namespace quib
