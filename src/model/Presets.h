// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Presets of an instrument: taking a snapshot of it, keeping the list, and bringing a snapshot back
// while the instrument plays. Editing thread.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "model/CInstrument.h"
#include "model/Preset.h"

namespace quib {

// The instrument's present values. `heldKeys`: those of its on-screen keyboard.
Preset TakePreset(CInstrument& instrument, std::span<const std::int32_t> heldKeys);

// Brings a preset back. Values and patterns change at once, smoothed by the engine. The states of the
// plug-ins follow when the render thread has faded them out, so that nothing clicks; neither thread
// waits for the other. The keys of the preset's keyboard are its caller's to press, and its selected
// pattern the caller's to queue.
class CPresetRecall {
public:
    CPresetRecall(CInstrument& instrument, const Preset& preset, CGraveyard& graveyard, double sampleRate);
    ~CPresetRecall() { Finish(); }
    CPresetRecall(const CPresetRecall&) = delete;
    CPresetRecall& operator=(const CPresetRecall&) = delete;

    // To be called by a timer until it returns true: then all is done. With nothing rendering that
    // takes `kPatience` calls, as nobody fades.
    bool Poll();
    // Sets all that waits without further ado.
    void Finish();

    // What could not be set, one line each.
    const std::vector<std::string>& Warnings() const noexcept { return warnings; }

    static constexpr int kPatience = 2;

private:
    struct PendingState {
        std::shared_ptr<CPlugin> plugin;
        std::shared_ptr<const StateImage> image;
    };
    void AddState(const PluginSlot& slot, const std::shared_ptr<const StateImage>& image);
    void SetState(const PendingState& state);

    std::vector<PendingState> pending;
    int polls = 0;
    std::vector<std::string> warnings;
};

}  // namespace quib
