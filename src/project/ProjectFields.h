// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The single settings at the head of a project file with their keys, kinds and ranges, in the order in
// which they are written. Shared by the project's reader and writer.

#include <span>
#include <string_view>

#include "project/ProjectState.h"

namespace quib {

// Exactly one of the two functions is set.
struct ProjectField {
    std::string_view key;
    std::int32_t& (*integer)(ProjectState& state);
    float& (*real)(ProjectState& state);
    float low;
    float high;
    bool isPositive = false;  // what is not above 0, or no number, leaves the default
};

// Those before and those after the record of the preset selector's MIDI assignment.
std::span<const ProjectField> MasterFields();
std::span<const ProjectField> DetectorFields();

}  // namespace quib
