// SPDX-License-Identifier: GPL-3.0-or-later
// Patterns, playlist, automation, and single values.
#include <algorithm>
#include <utility>

#include "document/CWorkstation.h"
#include "document/EditCommands.h"
#include "model/files/ContentFiles.h"
#include "texts/Texts.h"

namespace quib {

namespace {

bool IsPattern(int pattern) { return pattern >= 0 && pattern < kPatternCount; }

// A change of something published, as a step that keeps its owner alive.
template <class T>
CChangeCommand* PublishCommand(const QString& name, std::shared_ptr<const void> owner, CPublished<T>& target,
                               std::shared_ptr<const T> next, CGraveyard& graveyard, std::function<void()> tell) {
    const auto publish = [owner = std::move(owner), &target, &graveyard,
                          tell = std::move(tell)](const std::shared_ptr<const T>& content) {
        target.Publish(content, graveyard);
        tell();
    };
    return new CChangeCommand(
        name, [publish, next = std::move(next)] { publish(next); },
        [publish, before = target.ForEdit()] { publish(before); });
}

}  // namespace

void CWorkstation::SelectPattern(int index, int pattern) {
    const auto instrument = Instrument(index);
    if (!instrument || !IsPattern(pattern)) return;
    const int before = instrument->patternSelected.Get();
    const auto queue = [this, instrument] {
        audio.Post({EngineCommand::EKind::kSelectPattern, instrument->Id(), instrument->patternSelected.Get()});
        Q_EMIT InstrumentChanged(instrument->Id());
    };
    instrument->patternSelected.Set(pattern);
    queue();
    if (before != pattern) ValueEdited(instrument->patternSelected, before, pattern, Text("Select pattern"), queue);
}

void CWorkstation::SetPattern(std::uint32_t id, int pattern, std::shared_ptr<const CPattern> next,
                              const QString& undoName) {
    const auto instrument = InstrumentById(id);
    if (!instrument || !IsPattern(pattern) || !next) return;
    undo.push(PublishCommand(undoName, instrument, instrument->patterns[static_cast<std::size_t>(pattern)],
                             std::move(next), audio.graveyard, [this, id] { Q_EMIT InstrumentChanged(id); }));
}

void CWorkstation::SetPlaylist(std::uint32_t id, std::shared_ptr<const Playlist> next, const QString& undoName) {
    const auto instrument = InstrumentById(id);
    if (!instrument || !next) return;
    undo.push(PublishCommand(undoName, instrument, instrument->playlist, std::move(next), audio.graveyard,
                             [this, id] { Q_EMIT InstrumentChanged(id); }));
}

void CWorkstation::SetBallSounds(std::uint32_t id, std::shared_ptr<const BallSoundList> next, const QString& undoName) {
    const auto instrument = InstrumentById(id);
    if (!instrument || !next) return;
    undo.push(PublishCommand(undoName, instrument, instrument->ballSounds, std::move(next), audio.graveyard,
                             [this, id] { Q_EMIT InstrumentChanged(id); }));
}

void CWorkstation::SetLanes(std::uint32_t id, ELanes family, std::shared_ptr<const CEventLanes> next,
                            const QString& undoName) {
    const auto instrument = InstrumentById(id);
    if (!instrument || !next) return;
    std::shared_ptr<CPlugin> plugin;
    if (family == ELanes::kPlugin) plugin = instrument->plugin.ForEdit()->plugin;
    if (family == ELanes::kInsert1) plugin = instrument->inserts[0].ForEdit()->plugin;
    if (family == ELanes::kInsert2) plugin = instrument->inserts[1].ForEdit()->plugin;
    const bool own = family == ELanes::kMidi || family == ELanes::kMix;
    if (!own && !plugin) return;
    CPublished<CEventLanes>& lanes = family == ELanes::kMidi  ? instrument->midiLanes
                                     : family == ELanes::kMix ? instrument->mixLanes
                                                              : plugin->lanes;
    const std::shared_ptr<const void> owner = own ? std::shared_ptr<const void>(instrument) : plugin;
    undo.push(PublishCommand(undoName, owner, lanes, std::move(next), audio.graveyard,
                             [this, id] { Q_EMIT InstrumentChanged(id); }));
}

void CWorkstation::SetMasterLanes(std::shared_ptr<const CEventLanes> next, const QString& undoName) {
    if (!next) return;
    undo.push(PublishCommand(undoName, nullptr, audio.masterLanes, std::move(next), audio.graveyard,
                             [this] { Q_EMIT InstrumentChanged(0); }));
}

namespace {

// The points of slot `from` in slot `to` as well.
std::shared_ptr<const CEventLanes> WithCopiedSlot(const CEventLanes& lanes, int from, int to) {
    CEventLanesBuilder builder;
    for (const CEventLanes::Lane& lane : lanes.Lanes(from)) builder.Append(to, lane.index, *lane.points);
    return std::make_shared<const CEventLanes>(lanes.WithSlotOf(builder.Build(), to));
}

}  // namespace

void CWorkstation::CopyPattern(int index, int from, int to) {
    const auto instrument = Instrument(index);
    if (!instrument || !IsPattern(from) || !IsPattern(to) || from == to) return;
    const std::uint32_t id = instrument->Id();
    const QString name = Text("Copy pattern");
    const auto source = static_cast<std::size_t>(from);
    const auto target = static_cast<std::size_t>(to);
    undo.beginMacro(name);
    SetPattern(id, to, instrument->patterns[source].ForEdit(), name);
    SetLanes(id, ELanes::kMidi, WithCopiedSlot(*instrument->midiLanes.ForEdit(), from, to), name);
    SetLanes(id, ELanes::kMix, WithCopiedSlot(*instrument->mixLanes.ForEdit(), from, to), name);
    if (const auto plugin = instrument->plugin.ForEdit()->plugin) {
        SetLanes(id, ELanes::kPlugin, WithCopiedSlot(*plugin->lanes.ForEdit(), from, to), name);
    }
    const int before = instrument->patternUsed[target].Get();
    const int after = instrument->patternUsed[source].Get();
    instrument->patternUsed[target].Set(after);
    ValueEdited(instrument->patternUsed[target], before, after, name);
    undo.endMacro();
}

// The whole block may change: all patterns, their marks and their points.
bool CWorkstation::LoadPattern(int index, const QString& path, QString& error) {
    const auto instrument = Instrument(index);
    if (!instrument) return false;
    auto set = std::make_shared<PatternSet>();
    std::string reason;
    if (!LoadPatternFile(path.toStdString(), *set, reason)) {
        error = QString::fromStdString(reason);
        return false;
    }
    auto before = std::make_shared<PatternSet>();
    for (std::size_t i = 0; i < before->patterns.size(); ++i) {
        before->patterns[i] = instrument->patterns[i].ForEdit();
        before->used[i] = instrument->patternUsed[i].Get();
    }
    before->mode = SelectedStepNumberMode(*instrument);
    before->modeValue = instrument->swing.Get();
    before->midiLanes = *instrument->midiLanes.ForEdit();
    before->mixLanes = *instrument->mixLanes.ForEdit();
    if (const auto plugin = instrument->plugin.ForEdit()->plugin) before->pluginLanes = *plugin->lanes.ForEdit();
    const auto apply = [this, instrument](const PatternSet& content) {
        ReplacePatterns(*instrument, content, audio.graveyard);
        Q_EMIT InstrumentChanged(instrument->Id());
    };
    PushChange(
        Text("Load pattern"), [apply, set] { apply(*set); }, [apply, before] { apply(*before); });
    return true;
}

bool CWorkstation::SavePattern(int index, const QString& path, QString& error) {
    const auto instrument = Instrument(index);
    if (!instrument) return false;
    std::string reason;
    const bool saved = SavePatternFile(path.toStdString(), *instrument, reason);
    error = QString::fromStdString(reason);
    return saved;
}

void CWorkstation::SetStepNumberMode(int index, StepNumberMode mode) {
    const auto instrument = Instrument(index);
    if (!instrument || SelectedStepNumberMode(*instrument) == mode) return;
    const auto set = [this, instrument](StepNumberMode value) {
        SelectStepNumberMode(*instrument, value);
        Q_EMIT InstrumentChanged(instrument->Id());
    };
    PushChange(
        Text("Pattern order"), [set, mode] { set(mode); },
        [set, before = SelectedStepNumberMode(*instrument)] { set(before); });
}

void CWorkstation::SetPlaylistSteps(int steps) {
    const int limited = std::clamp(steps, 0, kMaximumSongStep);
    if (limited == playlistSteps) return;
    PushChange(
        Text("Song length"), [this, limited] { playlistSteps = limited; },
        [this, before = playlistSteps] { playlistSteps = before; });
}

// The instrument in whose memory the value lies; null for one of the engine's.
std::shared_ptr<CInstrument> CWorkstation::OwnerOf(const void* value) const {
    const auto address = reinterpret_cast<std::uintptr_t>(value);
    for (const auto& instrument : Instruments()) {
        const auto start = reinterpret_cast<std::uintptr_t>(instrument.get());
        if (address >= start && address < start + sizeof(CInstrument)) return instrument;
    }
    return nullptr;
}

std::function<void()> CWorkstation::EqualizerFollows(const Instrumented& owner, const void* value) {
    if (!owner) return {};
    for (int band = 0; band < kEqBandCount; ++band) {
        const auto index = static_cast<std::size_t>(band);
        const ChannelStrip& strip = owner->strip;
        if (value != &strip.eqFreq[index] && value != &strip.eqQ[index] && value != &strip.eqGain[index]) continue;
        return [this, owner, band] { (void)UpdateEqualizer(*owner, band, audio.Format().sampleRate); };
    }
    return {};
}

void CWorkstation::ValueMoved(CValue& value) {
    if (const auto follow = EqualizerFollows(OwnerOf(&value), &value)) follow();
}

void CWorkstation::ValueEdited(CValue& value, float before, float after, const QString& name,
                               std::function<void()> afterwards) {
    const auto owner = OwnerOf(&value);
    const auto follow = EqualizerFollows(owner, &value);
    if (follow) follow();
    if (before == after) return;
    undo.push(new CGestureCommand(name, &value, 0, before, after,
                                  [&value, owner, follow, afterwards = std::move(afterwards)](float next) {
                                      value.Set(next);
                                      if (follow) follow();
                                      if (afterwards) afterwards();
                                  }));
}

void CWorkstation::ValueEdited(CIntegerValue& value, int before, int after, const QString& name,
                               std::function<void()> afterwards) {
    if (before == after) return;
    undo.push(new CGestureCommand(name, &value, 0, static_cast<float>(before), static_cast<float>(after),
                                  [&value, owner = OwnerOf(&value), afterwards = std::move(afterwards)](float next) {
                                      value.Set(static_cast<std::int32_t>(next));
                                      if (afterwards) afterwards();
                                  }));
}

}  // namespace quib
