// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Presets of the instruments, alone and all together. User-interface thread.

#include <memory>
#include <vector>

#include "document/CInstrumentStack.h"
#include "document/DocumentContext.h"
#include "model/Presets.h"

namespace quib {

class CPresets {
public:
    CPresets(const DocumentContext& document, CInstrumentStack& instruments) : context(document), stack(instruments) {}

    void AddPreset(int instrument);
    void PastePreset(int instrument, int preset);
    void RemovePreset(int instrument, int preset);
    void RecallPreset(int instrument, int preset);
    // Of every instrument that has one of that number, as the preset selector does; nothing when
    // "PresetOn" is off.
    void RecallPresets(int preset);
    int PresetCount() const;  // of the instrument that has most
    CValue& SelectedPreset() noexcept { return presetSelected; }
    // MIDI assignment of the selector: channel selector, base note, mode.
    void SetPresetMidi(int channel, int baseNote, int mode);

    // Goes on with the presets that are being recalled; from the 40 ms timer.
    void PollRecalls();
    // Another project has been published.
    void ProjectReplaced(float selected);

private:
    struct Recall {
        std::shared_ptr<CInstrument> instrument;
        std::unique_ptr<CPresetRecall> work;
    };

    void SetPresets(const std::shared_ptr<CInstrument>& instrument, std::vector<Preset> next, const QString& name);
    void ApplyPreset(const std::shared_ptr<CInstrument>& instrument, const Preset& preset);
    void TellRecalled(const CInstrument& instrument);

    const DocumentContext& context;
    CInstrumentStack& stack;
    CValue presetSelected;
    std::vector<Recall> recalls;
};

}  // namespace quib
