// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Lengths that pages of a plug-in's parameters share, in skin pixels.

namespace quib::panelMeasures {

constexpr int kMargin = 8;
constexpr int kGap = 8;         // between groups, and between what is no knob
constexpr int kInnerGap = 4;    // between the lines of a group
constexpr int kTitled = 28;     // where the contents of a group with a title begin
constexpr int kRadius = 14;     // of a knob's disc
constexpr int kCellWidth = 71;  // of a knob with its name
constexpr int kCellHeight = 68;

}  // namespace quib::panelMeasures
