// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/FrozenProject.h"

#include <QCryptographicHash>
#include <algorithm>

#include "model/MixLanes.h"
#include "project/ProjectEngine.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr const char* kVersion = "1";  // of what is rendered from equal contents

CEventLanes OnlyLane(const CEventLanes& lanes, int slot, int index) {
    const PointList* const points = lanes.Find(slot, index);
    return points != nullptr ? CEventLanes().With(slot, index, *points) : CEventLanes();
}

// Of the strip's lanes those that switch inserts, whose switches then begin as if nobody had touched them.
void KeepInsertLanes(const CEventLanes& all, CInstrument& kept) {
    CEventLanes lanes;
    for (const StripSetting& setting : kStripSettings) {
        if (setting.part != EStripPart::kInsert1 && setting.part != EStripPart::kInsert2) continue;
        for (int slot = 0; slot < CEventLanes::kSlotCount; ++slot) {
            const PointList* const points = all.Find(slot, setting.lane.index);
            if (points == nullptr) continue;
            lanes = lanes.With(slot, setting.lane.index, *points);
            setting.member(kept.strip).Set(setting.range.initial);
        }
    }
    kept.mixLanes.Prepare(std::make_shared<const CEventLanes>(lanes));
}

// What is before the strip, and nothing that is only played live or shown. `all`: the instrument detached.
std::shared_ptr<CInstrument> SoundOf(const CInstrument& instrument, const CInstrument& all) {
    auto kept = std::make_shared<CInstrument>();
    kept->plugin.Prepare(all.plugin.ForEdit());
    for (std::size_t i = 0; i < kInsertCount; ++i) {
        if (instrument.inserts[i].ForEdit()->plugin) kept->inserts[i].Prepare(all.inserts[i].ForEdit());
        kept->strip.insertOn[i].Set(all.strip.insertOn[i].Get());
    }
    for (std::size_t i = 0; i < all.patterns.size(); ++i) kept->patterns[i].Prepare(all.patterns[i].ForEdit());
    kept->midiLanes.Prepare(all.midiLanes.ForEdit());
    kept->playlist.Prepare(all.playlist.ForEdit());
    kept->swing.Set(all.swing.Get());
    KeepInsertLanes(*all.mixLanes.ForEdit(), *kept);
    return kept;
}

PlaylistLength LengthInSong(const CInstrument& instrument) {
    return LengthOf(PlaylistSpans(*instrument.playlist.ForEdit(), PatternLengthsForEdit(instrument)));
}

bool MovesPlugins(const BallSound& sound) {
    const auto moves = [](const BallAssignment& assignment) { return assignment.target != EBallTarget::kMix; };
    return std::ranges::any_of(sound.horizontal, moves) || std::ranges::any_of(sound.vertical, moves);
}

}  // namespace

FrozenProject FrozenProjectOf(const CAudio& audio, const ProjectState& whole, CInstrument& instrument,
                              const StateOfPlugin& stateOf) {
    FrozenProject frozen;
    ProjectState& state = frozen.state;
    state.master.tempo = whole.master.tempo;
    state.master.timeSignature = whole.master.timeSignature;
    state.masterLanes = OnlyLane(whole.masterLanes, CEventLanes::kSongSlot, static_cast<int>(kTempoLane));
    state.instruments = {SoundOf(instrument, *Detached(instrument, stateOf, {}))};
    frozen.length = LengthInSong(instrument);
    if (frozen.length.endless) frozen.length.steps = SongSteps(whole);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const std::string bytes = BytesOf(state);
    hash.addData(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    const auto add = [&hash](double number) { hash.addData(QByteArray::number(number, 'g', 17) + '\n'); };
    hash.addData(kVersion);
    add(audio.Format().sampleRate);
    add(audio.settings.stepsPerBeat.Get());
    add(frozen.length.steps);
    for (const auto* const slot : {&instrument.plugin, &instrument.inserts[0], &instrument.inserts[1]}) {
        const auto& plugin = slot->ForEdit()->plugin;
        if (plugin) add(static_cast<double>(plugin->Identity().vendorVersion));
    }
    frozen.key = hash.result().toHex().toStdString();
    return frozen;
}

QString FreezeRefusal(const CAudio& audio, const CInstrument& instrument) {
    const auto& plugin = instrument.plugin.ForEdit()->plugin;
    if (!plugin || !plugin->CanReplace() || plugin->OutputCount() == 0) return Text("it has no plug-in that sounds");
    if (!audio.settings.songMode.IsOn()) return Text("it is frozen for the song, and patterns are played");
    const PlaylistLength length = LengthInSong(instrument);
    if (length.steps <= 0 && !length.endless) return Text("it has nothing to play in the song");
    if (std::ranges::any_of(*instrument.ballSounds.ForEdit(), MovesPlugins)) return Text("balls move its plug-ins");
    return {};
}

}  // namespace quib
