// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CContents.h"

#include <algorithm>
#include <utility>

#include "model/files/ContentFiles.h"
#include "texts/Texts.h"

namespace quib {

namespace {

bool IsPattern(int pattern) { return pattern >= 0 && pattern < kPatternCount; }

// `lanes` with the points that `source` has in slot `from` in slot `to`.
std::shared_ptr<const CEventLanes> WithCopiedSlot(const CEventLanes& lanes, const CEventLanes& source, int from,
                                                  int to) {
    CEventLanesBuilder builder;
    for (const CEventLanes::Lane& lane : source.Lanes(from)) builder.Append(to, lane.index, *lane.points);
    return std::make_shared<const CEventLanes>(lanes.WithSlotOf(builder.Build(), to));
}

}  // namespace

void CContents::SelectPattern(int index, int pattern) {
    const auto instrument = context.Instrument(index);
    if (!instrument || !IsPattern(pattern)) return;
    const int before = instrument->patternSelected.Get();
    const auto queue = [this, instrument] {
        context.audio.Post({EngineCommand::EKind::kSelectPattern, instrument->Id(), instrument->patternSelected.Get()});
        context.changes.Tell({EChange::kPatternSelected, instrument->Id()});
    };
    instrument->patternSelected.Set(pattern);
    queue();
    context.changes.ValueEdited(Part(instrument, instrument->patternSelected), before, pattern, Text("Select pattern"),
                                queue);
}

void CContents::SetPattern(std::uint32_t id, int pattern, std::shared_ptr<const CPattern> next,
                           const QString& undoName) {
    const auto instrument = context.InstrumentById(id);
    if (!instrument || !IsPattern(pattern) || !next) return;
    context.changes.Publish(PatternPlace(instrument, pattern), std::move(next), undoName);
}

// Files keep the number beside the notes, too.
void CContents::SetSteps(int index, int pattern, int count) {
    const auto instrument = context.Instrument(index);
    if (!instrument || !IsPattern(pattern) || count < 1 || count > kMaximumStepCount) return;
    const auto before = instrument->patterns[static_cast<std::size_t>(pattern)].ForEdit();
    if (before->StepCount() == count && instrument->stepNumber.Get() == count) return;
    CIntegerValue& number = instrument->stepNumber;
    const auto set = [instrument, &number](int value) { number.Set(value); };
    CGesture change(context.changes);
    change.Publish(PatternPlace(instrument, pattern),
                   std::make_shared<const CPattern>(count, before->Notes(), std::min(before->LoopStart(), count - 1)));
    change.Note(
        &number, [set, former = number.Get()] { set(former); }, [set, count] { set(count); });
    change.Finish(Text("Number of steps"));
}

void CContents::SetPlaylist(std::uint32_t id, std::shared_ptr<const Playlist> next, const QString& undoName) {
    const auto instrument = context.InstrumentById(id);
    if (!instrument || !next) return;
    context.changes.Publish(PlaylistPlace(instrument), std::move(next), undoName);
}

void CContents::SetBallSounds(std::uint32_t id, std::shared_ptr<const BallSoundList> next, const QString& undoName) {
    const auto instrument = context.InstrumentById(id);
    if (!instrument || !next) return;
    context.changes.Publish(BallPlace(instrument), std::move(next), undoName);
}

Place<CEventLanes> CContents::LanesPlace(const std::shared_ptr<CInstrument>& instrument, ELanes family) const {
    const Change change{EChange::kLanes, instrument->Id(), static_cast<int>(family)};
    if (family == ELanes::kMidi) return {Part(instrument, instrument->midiLanes), change};
    if (family == ELanes::kMix) return {Part(instrument, instrument->mixLanes), change};
    const auto& slot = family == ELanes::kPlugin    ? instrument->plugin
                       : family == ELanes::kInsert1 ? instrument->inserts[0]
                                                    : instrument->inserts[1];
    const auto plugin = slot.ForEdit()->plugin;
    return {plugin ? Part(plugin, plugin->lanes) : nullptr, change};
}

void CContents::SetLanes(std::uint32_t id, ELanes family, std::shared_ptr<const CEventLanes> next,
                         const QString& undoName) {
    const auto instrument = context.InstrumentById(id);
    if (!instrument || !next) return;
    const Place<CEventLanes> place = LanesPlace(instrument, family);
    if (place.target) context.changes.Publish(place, std::move(next), undoName);
}

void CContents::SetMasterLanes(std::shared_ptr<const CEventLanes> next, const QString& undoName) {
    if (!next) return;
    const Place<CEventLanes> place{EnginePart(context.audio.masterLanes), {EChange::kLanes}};
    context.changes.Publish(place, std::move(next), undoName);
}

void CContents::CopyPattern(int index, int from, int to) {
    const auto instrument = context.Instrument(index);
    if (!instrument || !IsPattern(from) || !IsPattern(to) || from == to) return;
    const auto source = static_cast<std::size_t>(from);
    CIntegerValue& mark = instrument->patternUsed[static_cast<std::size_t>(to)];
    CGesture copy(context.changes);
    copy.Publish(PatternPlace(instrument, to), instrument->patterns[source].ForEdit());
    for (const ELanes family : {ELanes::kMidi, ELanes::kMix, ELanes::kPlugin}) {
        const Place<CEventLanes> lanes = LanesPlace(instrument, family);
        if (!lanes.target) continue;
        const auto now = lanes.target->ForEdit();
        copy.Publish(lanes, WithCopiedSlot(*now, *now, from, to));
    }
    const auto set = [this, instrument, &mark](int value) {
        mark.Set(value);
        context.changes.Tell({EChange::kPatternSelected, instrument->Id()});
    };
    copy.Note(
        &mark, [set, before = mark.Get()] { set(before); },
        [set, after = instrument->patternUsed[source].Get()] { set(after); });
    copy.Finish(Text("Copy pattern"));
}

void CContents::PastePattern(int index, int pattern, const PatternClip& clip) {
    const auto instrument = context.Instrument(index);
    if (!instrument || !IsPattern(pattern)) return;
    CGesture paste(context.changes);
    paste.Publish(PatternPlace(instrument, pattern), clip.set.patterns[static_cast<std::size_t>(clip.pattern)]);
    const auto plugin = instrument->plugin.ForEdit()->plugin;
    const bool samePlugin = plugin && plugin->Identity().displayName == clip.set.pluginName;
    const struct {
        ELanes family;
        const CEventLanes& points;
        bool isWanted;
    } families[] = {{ELanes::kMidi, clip.set.midiLanes, clip.IsWhole()},
                    {ELanes::kMix, clip.set.mixLanes, clip.IsWhole()},
                    {ELanes::kPlugin, clip.set.pluginLanes, clip.IsWhole() && samePlugin}};
    for (const auto& [family, points, isWanted] : families) {
        const Place<CEventLanes> lanes = LanesPlace(instrument, family);
        if (!lanes.target || !isWanted) continue;
        paste.Publish(lanes, WithCopiedSlot(*lanes.target->ForEdit(), points, clip.pattern, pattern));
    }
    paste.Finish(Text("Paste pattern"));
}

// The whole block may change: all patterns, their marks and their points.
bool CContents::LoadPattern(int index, const QString& path, QString& error) {
    const auto instrument = context.Instrument(index);
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
        ReplacePatterns(*instrument, content, context.changes.Graveyard());
        for (const EChange kind : {EChange::kPattern, EChange::kLanes, EChange::kInstrument}) {
            context.changes.Tell({kind, instrument->Id()});
        }
    };
    context.changes.Push(
        Text("Load pattern"), [apply, set] { apply(*set); }, [apply, before] { apply(*before); });
    return true;
}

bool CContents::SavePattern(int index, const QString& path, QString& error) {
    const auto instrument = context.Instrument(index);
    if (!instrument) return false;
    std::string reason;
    const bool saved = SavePatternFile(path.toStdString(), *instrument, reason);
    error = QString::fromStdString(reason);
    return saved;
}

void CContents::SetStepNumberMode(int index, EStepNumberMode mode) {
    const auto instrument = context.Instrument(index);
    if (!instrument || SelectedStepNumberMode(*instrument) == mode) return;
    const auto set = [this, instrument](EStepNumberMode value) {
        SelectStepNumberMode(*instrument, value);
        context.changes.Tell({EChange::kInstrument, instrument->Id()});
    };
    context.changes.Push(
        Text("Pattern order"), [set, mode] { set(mode); },
        [set, before = SelectedStepNumberMode(*instrument)] { set(before); });
}

void CContents::SetPlaylistSteps(int steps) {
    const int limited = std::clamp(steps, 0, kMaximumSongStep);
    if (limited == playlistSteps) return;
    context.changes.Push(
        Text("Song length"), [this, limited] { playlistSteps = limited; },
        [this, before = playlistSteps] { playlistSteps = before; });
}

}  // namespace quib
