// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/InstrumentPreparation.h"

#include "engine/strip/StripJob.h"

namespace quib {

namespace {

void PrepareOutdatedPlugin(const CPublished<PluginSlot>& slot) {
    if (const auto& plugin = slot.ForEdit()->plugin; plugin && !plugin->IsPrepared()) plugin->Prepare();
}

// The playing state of its channel strip: buffers, and the equaliser's coefficients.
void RebuildStrip(CInstrument& instrument, const RenderFormat& format) {
    instrument.preparedRate = format.sampleRate;
    instrument.play.planes =
        std::make_unique<CAudioPlanes>(StripPlanes::kCount, format.blockSize, static_cast<int>(instrument.Id()));
    for (EqBandUpdate outdated; instrument.eqPending.TryPop(outdated);) {}
    for (int band = 0; band < kEqBandCount; ++band) {
        ApplyEqUpdate(instrument.play.strip, DesignEqBand(instrument.strip, band, format.sampleRate));
    }
}

}  // namespace

void PreparePlugin(const CPublished<PluginSlot>& slot) {
    if (const auto& plugin = slot.ForEdit()->plugin) plugin->Prepare();
}

void RebuildInstrument(CInstrument& instrument, const RenderFormat& format) {
    PreparePlugin(instrument.plugin);
    for (const auto& insert : instrument.inserts) PreparePlugin(insert);
    RebuildStrip(instrument, format);
}

void PrepareInstrument(CInstrument& instrument, const RenderFormat& format) {
    const auto& planes = instrument.play.planes;
    // The block under way may still play one that was removed just now: its playing state is left alone.
    if (!planes || planes->Frames() != format.blockSize || instrument.preparedRate != format.sampleRate)
        RebuildStrip(instrument, format);
    for (int band = 0; band < kEqBandCount; ++band) UpdateEqualizer(instrument, band, format.sampleRate);
    PrepareOutdatedPlugin(instrument.plugin);
    for (const auto& insert : instrument.inserts) PrepareOutdatedPlugin(insert);
}

}  // namespace quib
