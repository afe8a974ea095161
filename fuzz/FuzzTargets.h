// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the fuzzers do with one input, one function a reader; ordinary tests replay kept inputs through
// the same functions. Each ends the process when a promise is broken: that what was read writes and
// reads back to the same bytes, and that damaged input changes nothing.

#include <array>
#include <string_view>

namespace quib::fuzz {

void Project(std::string_view bytes);
void Instrument(std::string_view bytes);
void Pattern(std::string_view bytes);
void Bank(std::string_view bytes);
void Program(std::string_view bytes);
void Midi(std::string_view bytes);
void Audio(std::string_view bytes);

struct Target {
    std::string_view name;
    void (*run)(std::string_view bytes);
};
inline constexpr std::array<Target, 7> kTargets = {{{"project", Project},
                                                    {"instrument", Instrument},
                                                    {"pattern", Pattern},
                                                    {"bank", Bank},
                                                    {"program", Program},
                                                    {"midi", Midi},
                                                    {"audio", Audio}}};

}  // namespace quib::fuzz
