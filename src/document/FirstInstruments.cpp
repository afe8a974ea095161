// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/FirstInstruments.h"

#include "document/CWorkstation.h"
#include "document/SongMode.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kKick = 36;
constexpr int kClap = 39;
constexpr int kClosedHat = 42;
constexpr int kOpenHat = 46;

// Two bars: a kick on every beat, claps on two and four, hats between, a turn at the end; boxes are left to fill.
std::shared_ptr<const CPattern> TwoBars() {
    constexpr int kSteps = 32;
    std::vector<Note> notes;
    const auto add = [&notes](int step, int key, int velocity) {
        notes.push_back({static_cast<float>(step), 1.0F, key, velocity});
    };
    for (int step = 0; step < kSteps; ++step) {
        if (step % 4 == 0) add(step, kKick, 112);
        if (step % 8 == 4) add(step, kClap, 96);
        if (step % 4 == 2) add(step, kOpenHat, 84);
        if (step % 4 == 3) add(step, kClosedHat, 64);
    }
    add(27, kKick, 88);
    add(30, kKick, 96);
    add(31, kClap, 64);
    return std::make_shared<const CPattern>(kSteps, std::move(notes));
}

int Add(CWorkstation& station, const QString& plugin, QString& error) {
    const int index = station.Stack().AddInstrument(plugin, error);
    if (index < 0 && error.isEmpty()) error = Text("\"%1\" could not be loaded.").arg(plugin);
    if (index >= 0) SetSongMode(station, false);
    return index;
}

}  // namespace

bool AddBeat(CWorkstation& station, QString& error) {
    const CChanges::CMacro step(station.Changes(), Text("New beat"));
    const int index = Add(station, QStringLiteral("QUIB drums"), error);
    if (index < 0) return false;
    station.Contents().SetPattern(station.Stack().Instrument(index)->Id(), 0, TwoBars(), Text("New beat"));
    station.Contents().SetSteps(index, 0, TwoBars()->StepCount());
    return true;
}

bool AddSynth(CWorkstation& station, QString& error) {
    const CChanges::CMacro step(station.Changes(), Text("New synth"));
    return Add(station, QStringLiteral("QUIB synth"), error) >= 0;
}

}  // namespace quib
