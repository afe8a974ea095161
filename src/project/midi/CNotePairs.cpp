// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/midi/CNotePairs.h"

#include <algorithm>

namespace quib {

void CNotePairs::Read(const MidiTrack& track) {
    for (auto& list : notes) list.clear();
    others = 0;
    unended = 0;
    for (const MidiEvent& event : track.events) {
        const bool isOn = event.Kind() == 0x90 && event.second > 0;
        if (isOn) {
            Begin(event);
        } else if (event.Kind() == 0x80 || event.Kind() == 0x90) {
            End(event);
        } else {
            ++others;
        }
    }
    EndAll(track.end);
}

void CNotePairs::Begin(const MidiEvent& event) {
    auto& list = notes[static_cast<std::size_t>(event.Channel())];
    Of(event).indices.push_back(static_cast<std::uint32_t>(list.size()));
    list.push_back({event.tick, event.tick + 1, event.first, event.second});
}

void CNotePairs::End(const MidiEvent& event) {
    Sounding& key = Of(event);
    if (key.ended == key.indices.size()) return;
    MidiNote& note = notes[static_cast<std::size_t>(event.Channel())][key.indices[key.ended++]];
    note.end = std::max(note.start + 1, event.tick);
    if (key.ended == key.indices.size()) key = {};
}

void CNotePairs::EndAll(std::uint32_t tick) {
    for (std::size_t channel = 0; channel < notes.size(); ++channel) {
        if (notes[channel].empty()) continue;
        for (std::size_t key = 0; key < 128; ++key) {
            Sounding& left = sounding[channel * 128 + key];
            for (; left.ended < left.indices.size(); ++left.ended, ++unended) {
                MidiNote& note = notes[channel][left.indices[left.ended]];
                note.end = std::max(note.start + 1, tick);
            }
            left = {};
        }
    }
}

}  // namespace quib
