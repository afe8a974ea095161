// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which keys a grid shows as rows: all, those of a scale or those used. An immutable value, any thread.
// A fold never hides a key that has notes. Row 0 is the lowest key shown.

#include <array>
#include <bitset>
#include <cstdint>

#include "model/edits/NoteState.h"
#include "model/edits/Scale.h"

namespace quib {

using KeySet = std::bitset<kHighestKey + 1>;

// The keys of the playable notes.
KeySet UsedKeys(const CPattern& pattern);
KeySet KeysOfScale(const Scale& scale);

class CKeyRows {
public:
    // Every key.
    CKeyRows();
    // Only `shown`, lowest first; every key when it is empty.
    explicit CKeyRows(const KeySet& shown);

    static CKeyRows FoldToScale(const Scale& scale, const CPattern& pattern);
    static CKeyRows FoldToUsed(const CPattern& pattern);

    int Count() const noexcept { return count; }
    // Rows outside are taken as the first or the last.
    int KeyOfRow(int row) const noexcept;
    // The row of `key`, or of the next lower key shown (0 when there is none).
    int RowOfKey(int key) const noexcept;
    bool IsShown(int key) const noexcept;

    friend bool operator==(const CKeyRows&, const CKeyRows&) = default;

private:
    KeySet keys;
    int count = 0;
    std::array<std::uint8_t, kHighestKey + 1> keyOfRow{};
    std::array<std::uint8_t, kHighestKey + 1> rowOfKey{};
};

}  // namespace quib
