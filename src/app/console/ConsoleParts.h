// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the parts of the console share: whom they serve, how their controls are bound to undo, and how
// values are told. User-interface thread.

#include <QString>
#include <functional>
#include <optional>

#include "app/browser/PluginChoices.h"
#include "controls/CControl.h"
#include "document/CWorkstation.h"
#include "editors/ToolTable.h"
#include "engine/strip/CLevelTables.h"

namespace quib {

class CSwitchFaderCtrl;

// Two bars of the master section lie above the strips and one of help below them, in pixels of the skin.
namespace consoleLayout {
constexpr int kMargin = 4;
constexpr int kStateHeight = 4;
constexpr int kBar1Top = kStateHeight + kMargin;
constexpr int kBar1Height = 52;
constexpr int kBar2Top = kBar1Top + kBar1Height + kMargin;
constexpr int kBar2Height = 72;
constexpr int kStripsTop = kBar2Top + kBar2Height + kMargin;
constexpr int kInfoHeight = 32;
constexpr int kScrollWidth = 10;
constexpr int kStripGap = 4;
}  // namespace consoleLayout

// What a plug-in is chosen for. Without a place: a new instrument.
struct BrowseWish {
    std::optional<SlotPlace> place;
};

// What the console asks its window for.
struct ConsoleActions {
    // Opens the browser of plug-ins.
    std::function<void(const BrowseWish&)> browse;
    // Opens the window of the plug-in in a place.
    std::function<void(const SlotPlace&)> openPlugin;
    std::function<void(ETool)> openTool;
    std::function<bool(ETool)> hasTool;
    std::function<bool(ETool)> isToolOpen;
    // The export of the loop's region, or of the song.
    std::function<void(bool loop)> bounce;
    // Tells what a loading left out.
    std::function<void(const std::vector<std::string>& warnings)> showWarnings;
};

struct ConsoleContext {
    CWorkstation& station;
    ConsoleActions& actions;
    const CLevelTables& tables;          // of the gains that faders stand for
    std::shared_ptr<CInstrument> owner;  // of the values that the controls are bound to; null: the master section
};

// Names the control's value, explains it, and makes each finished gesture a step of undo. `afterwards`
// is run whenever undo moves the value.
void BindValue(CControl& control, const ConsoleContext& context, const char* valueName, int infoString,
               std::function<void()> afterwards = {});
// The same for a control that is bound to a setting of the strip: with the setting's name, range and, but
// for switches, default.
void BindSetting(CControl& control, const ConsoleContext& context, const ChannelStrip& strip, int infoString);
// The same for the level of a send.
void BindLevel(CSwitchFaderCtrl& control, const ConsoleContext& context, const ChannelStrip& strip);
// Shows and takes decibels: `gain` gives the linear gain of a control value.
void ShowDecibels(CControl& control, std::function<float(float)> gain);

// The gain of a side of the crossfader below which it counts as not heard: -40 dB.
constexpr float kFadedOut = 0.01F;
// The same for the level of a send.
void ShowLevelDecibels(CSwitchFaderCtrl& control, std::function<float(float)> gain);
// Shows and takes hundredths of the range; the bubble shows `formatValue` where that is set.
void ShowPercent(CControl& control);
// Shows and takes "L 20", "C" and "R 20", or -100 to 100.
void ShowPan(CControl& control);

QString Decibels(float gain);
// "bar.beat.step", each from 1.
QString BarBeatStep(int step, int stepsPerBeat, int beatsPerBar);
// How many bars are counted in.
QString CountInText(int bars);
// A pan of -1..1: "L 20", "C", "R 20".
QString PanText(float pan);
// The pan that a text tells.
float PanOf(const QString& text);

// What a slot holds, for its label; `empty` when it holds nothing.
QString SlotText(const PluginSlot* slot, const QString& empty);

}  // namespace quib
