// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ControlActions.h"

#include "document/CWorkstation.h"

namespace quib {

namespace {

void PressTransport(CWorkstation& station, ETransportKey key) {
    CTransportControl& transport = station.Transport();
    CNoteRecording& notes = station.NoteRecording();
    CValue& automation = station.Audio().recordAutomation;
    switch (key) {
        case ETransportKey::kPlay:
            return transport.IsPlaying() ? transport.Stop() : transport.Play();
        case ETransportKey::kStop:
            if (!transport.IsPlaying()) transport.Locate(0);
            return transport.Stop();
        case ETransportKey::kRecordNotes:
            notes.Armed().Set(notes.Armed().IsOn() ? 0.0F : 1.0F);
            return notes.ArmSwitched();
        case ETransportKey::kRecordAutomation:
            return automation.Set(automation.IsOn() ? 0.0F : 1.0F);
        case ETransportKey::kMetronome:
            return station.Metronome().SetOn(!station.Metronome().On().IsOn());
        case ETransportKey::kTapTempo:
            return transport.TapTempo();
        case ETransportKey::kPanic:
            return transport.Panic();
    }
}

}  // namespace

void RunControlAction(CWorkstation& station, const ControlTarget& target) {
    if (target.kind == EControlTarget::kTransport) {
        return PressTransport(station, static_cast<ETransportKey>(target.index));
    }
    if (target.kind == EControlTarget::kPresets) {
        station.Presets().RecallPresets(target.index, CPresets::EOrigin::kMidi);
        return;
    }
    const int index = station.Stack().IndexOf(target.instrument);
    if (index < 0) return;
    if (target.kind == EControlTarget::kPattern) station.Contents().SelectPattern(index, target.index);
    if (target.kind == EControlTarget::kPreset) station.Presets().RecallPreset(index, target.index);
    if (target.kind == EControlTarget::kSolo) station.Stack().ToggleSolo(index);
}

}  // namespace quib
