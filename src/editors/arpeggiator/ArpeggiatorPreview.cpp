// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/arpeggiator/ArpeggiatorPreview.h"

#include <array>

#include "engine/Arpeggiator.h"

namespace quib {

std::vector<Note> PreviewArpeggiator(const ArpeggiatorSettings& settings, std::span<const std::uint8_t> keys, int steps,
                                     std::uint32_t seed) {
    constexpr int kStepSamples = 1 << 16;  // the shortest gate is a whole number of them
    constexpr std::array kSettings = {
        &ArpeggiatorSettings::on,       &ArpeggiatorSettings::mode,     &ArpeggiatorSettings::hole,
        &ArpeggiatorSettings::ext,      &ArpeggiatorSettings::extMode,  &ArpeggiatorSettings::velocity,
        &ArpeggiatorSettings::interval, &ArpeggiatorSettings::gateTime, &ArpeggiatorSettings::tempo};
    CInstrument stage;
    for (const auto setting : kSettings) (stage.arpeggiator.*setting).Set((settings.*setting).Get());
    for (const std::uint8_t key : keys) stage.play.heldKeys.Add(key);
    CRandom random(seed);
    std::vector<Note> notes;
    auto& pending = stage.play.pendingNotes.Items();
    for (int step = 0; step < steps; ++step) {
        pending.clear();
        RunArpeggiator(stage, 0, kStepSamples, random);
        // Each note is followed by its end.
        for (std::size_t event = 0; event + 1 < pending.size(); event += 2) {
            const float length = static_cast<float>(pending[event + 1].delay) / kStepSamples;
            notes.push_back({static_cast<float>(step), length, pending[event].pitch, pending[event].velocity});
        }
    }
    return notes;
}

}  // namespace quib
