// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What a layout says of a plug-in's parameters as a whole: which it names, how many steps some have, and the
// pages that its groups repeat. Pure functions, any thread.

#include <map>
#include <optional>
#include <set>
#include <string>

#include "editors/panel/PanelLayout.h"

namespace quib {

struct PanelParameters {
    std::set<int> placed;
    std::map<int, int> steps;            // of parameters whose steps the layout names
    std::map<int, PanelText> pageNames;  // by page
    int stride = 0;                      // parameters from one page to the next

    // 0 where the layout does not tell.
    int StepsOf(int parameter) const;
};

PanelParameters ParametersOf(const PanelLayout& layout);

// A parameter's number: "7", or "@7" for the one so far from `offset`.
std::optional<int> PanelParameter(const std::string& word, int offset) noexcept;

// Whether an option of a picture names parameters, not its look.
bool IsPanelRole(const std::string& option);

// The height of the header that a layout counts in, and of what it describes itself.
int PanelHeaderHeight(const PanelLayout& layout) noexcept;
int PanelBodyHeight(const PanelLayout& layout) noexcept;

}  // namespace quib
