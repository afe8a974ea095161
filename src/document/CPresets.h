// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Presets of the instruments, alone and all together. User-interface thread.

#include <map>
#include <memory>
#include <vector>

#include "document/CInstrumentStack.h"
#include "document/CTransportControl.h"
#include "document/DocumentContext.h"
#include "model/Presets.h"

namespace quib {

class CPresets {
public:
    CPresets(const DocumentContext& document, CInstrumentStack& instruments, CTransportControl& transportControl)
        : context(document), stack(instruments), transport(transportControl) {}

    void AddPreset(int instrument);
    void PastePreset(int instrument, int preset);
    void RemovePreset(int instrument, int preset);
    bool RecallPreset(int instrument, int preset);  // false: there is none
    // The number, from 1, of the preset that an instrument was given last; 0: none.
    int Recalled(std::uint32_t instrument) const;
    // Of every instrument that has one of that number, as the preset selector does. False when none has; also
    // when "PresetOn" is off, which the user is told: after each click, but once for all that MIDI selects.
    enum class EOrigin { kUser, kMidi };
    bool RecallPresets(int preset, EOrigin origin = EOrigin::kUser);
    int PresetCount() const;  // of the instrument that has most
    // The number, from 1, of the preset that all instruments were given last; 0: none.
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
    void ApplyPreset(const std::shared_ptr<CInstrument>& instrument, const Preset& preset, int number);
    void PressKeys(const CInstrument& instrument, const std::vector<std::int32_t>& keys);
    void TellRecalled(const CInstrument& instrument);

    const DocumentContext& context;
    CInstrumentStack& stack;
    CTransportControl& transport;
    CValue presetSelected;
    std::vector<Recall> recalls;
    std::map<std::uint32_t, int> recalled;                           // number from 1 by instrument
    std::map<std::uint32_t, std::vector<std::int32_t>> pressedKeys;  // by recalling, by instrument
    bool toldOff = false;
};

}  // namespace quib
