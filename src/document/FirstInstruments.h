// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A project's first instrument in one press: one step of undo each. User-interface thread.

#include <QString>

namespace quib {

class CWorkstation;

// The drum machine with a beat, in pattern mode. False, with the reason, when it could not be loaded.
bool AddBeat(CWorkstation& station, QString& error);
// The synthesiser, with its keyboard.
bool AddSynth(CWorkstation& station, QString& error);

}  // namespace quib
