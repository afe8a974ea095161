// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Where the columns of an instrument's strip lie for a width, in skin pixels from its left edge. Plain values.

namespace quib {

struct StripColumns {
    bool folded = false;  // too narrow for a column of its own for the pan
    int pan = 0;
    int cells = 0;
    int cellPitch = 0;
    int length = 0;
    int equaliser = 0;
    int equaliserWidth = 0;
    int inserts = 0;
    int insertsWidth = 0;
    int sends = 0;
    int sendsWidth = 0;

    // Wider than 1342: a share for each; narrower: equaliser, sends, inserts, cells give way in this order.
    static StripColumns For(int width) noexcept;
};

// The same for a strip that is closed.
struct ClosedColumns {
    int nameWidth = 0;
    int mute = 0;
    int level = 0;
    int levelWidth = 0;
    int meter = 0;
    int meterWidth = 0;
    int cells = 0;
    int cellPitch = 0;
    int presets = 0;
    int presetsWidth = 0;

    static ClosedColumns For(int width) noexcept;
};

}  // namespace quib
