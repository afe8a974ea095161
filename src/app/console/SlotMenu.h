// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The menus over a place for a plug-in and over an instrument. User-interface thread.

#include "app/console/ConsoleParts.h"

class QMenu;
class QWidget;

namespace quib {

class CWinControl;

// What can be done with the plug-in in a place: its window, program, bank, bypass, choosing another one.
void FillSlotMenu(QMenu& menu, const ConsoleContext& context, const SlotPlace& place, QWidget* window);
// A click on a place: an empty one is to be filled, another one shows its menu.
void OpenSlot(const ConsoleContext& context, const SlotPlace& place, CWinControl& window);
// "Instrument", "Pattern", plug-in and place of one instrument.
void FillInstrumentMenu(QMenu& menu, const ConsoleContext& context, std::uint32_t instrument, QWidget* window);
// The MIDI input of one instrument: channel, key range, transposition, what passes.
void FillMidiMenu(QMenu& menu, const ConsoleContext& context, std::uint32_t instrument, QWidget* window);
QString ChannelText(int selector);
// The presets of an instrument; `preset` from 0, or -1 beside them.
void FillPresetMenu(QMenu& menu, const ConsoleContext& context, std::uint32_t instrument, int preset);

}  // namespace quib
