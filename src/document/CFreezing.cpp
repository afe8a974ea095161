// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CFreezing.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "document/CPluginPlaces.h"
#include "document/FrozenFolder.h"
#include "model/MixLanes.h"
#include "model/plugin/BankUnheard.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kQuietTicks = 12;  // half a second without an edit, before takes are looked for
constexpr int kLeaveTicks = 10;  // for which the render thread may still fade a take out

// What was stored and not touched since is what a file has, though automation may have moved the plug-in meanwhile.
CPlugin::StoredState StateNow(const std::shared_ptr<CPlugin>& plugin) {
    const CPlugin::StoredState last = plugin->LastState();
    if (last.image && plugin->IsLastStateLeft()) return last;
    const StateImage none;
    StateImage image = SaveBankUnheard(*plugin, last.image ? *last.image : none);
    plugin->KeepState({std::make_shared<const StateImage>(std::move(image)), plugin->CurrentProgram()});
    return plugin->LastState();
}

QString WhatChanged(const CInstrument& instrument, const FrozenSource& source) {
    const FrozenSource now = SourceOf(instrument);
    if (now.slots != source.slots || now.edits != source.edits || now.insertOn != source.insertOn)
        return Text("a plug-in has changed");
    return Text("its notes or its automation have changed");
}

}  // namespace

CFreezing::CFreezing(const DocumentContext& document, CPluginPlaces& pluginPlaces,
                     std::function<ProjectState()> gatherProject)
    : context(document), places(pluginPlaces), gather(std::move(gatherProject)) {}

CFreezing::~CFreezing() = default;

std::filesystem::path CFreezing::Folder() const { return context.folders.frozen.toStdString(); }

FrozenTime CFreezing::Time() const {
    const CAudio& audio = context.audio;
    FrozenTime time{audio.Format().sampleRate, audio.settings.tempo.Get(), {}, {}};
    const PointList* const lane =
        audio.masterLanes.ForEdit()->Find(CEventLanes::kSongSlot, static_cast<int>(kTempoLane));
    if (lane != nullptr) time.tempoLane = *lane;
    time.meter = {audio.settings.stepsPerBeat.Get(), audio.settings.beatsPerBar.Get(), audio.settings.beatUnit.Get()};
    return time;
}

bool CFreezing::IsCurrent(const CInstrument& instrument, const Entry& entry) const {
    return entry.take && entry.time == Time() && IsFrom(instrument, entry.source);
}

CFreezing::State CFreezing::StateOf(const CInstrument& instrument) const {
    State state;
    const auto found = entries.find(instrument.Id());
    if (!instrument.isFrozen) return state;
    if (found == entries.end()) return {EState::kStale, 0, {}};
    const Entry& entry = found->second;
    const bool isAtWork = job && job->Instrument() == instrument.Id() && job->Renders();
    const bool isSong = context.audio.settings.songMode.IsOn();
    if (IsCurrent(instrument, entry)) {
        state.state = EState::kFrozen;
        if (!isSong) state.reason = Text("patterns are played, and it is frozen for the song");
    } else if (entry.wanted || isAtWork) {
        state = {EState::kRendering, isAtWork ? static_cast<int>(job->Share() * 100) : 0, {}};
    } else {
        state.state = EState::kStale;
        if (!entry.failure.isEmpty()) {
            state.reason = entry.failure;
        } else if (!entry.take) {
            state.reason = Text("it is not rendered yet");
        } else {
            state.reason = entry.time == Time() ? WhatChanged(instrument, entry.source) : Text("the tempo has changed");
        }
    }
    return state;
}

void CFreezing::Toggle(int index) {
    const auto instrument = context.Instrument(index);
    if (!instrument) return;
    const EState now = StateOf(*instrument).state;
    return now == EState::kFrozen || now == EState::kRendering ? Thaw(index) : Freeze(index);
}

void CFreezing::Freeze(int index) {
    const auto instrument = context.Instrument(index);
    if (!instrument) return;
    if (const QString refusal = FreezeRefusal(context.audio, *instrument); !refusal.isEmpty()) {
        const QString title = QString::fromStdString(instrument->title);
        return context.notice(Text("%1 cannot be frozen: %2.").arg(title, refusal));
    }
    Entry& entry = entries[instrument->Id()];
    entry.wanted = true;
    entry.leaving = 0;
    entry.failure.clear();
    if (!std::exchange(instrument->isFrozen, true)) context.changes.Touch();
    Q_EMIT Changed(instrument->Id());
}

void CFreezing::Thaw(int index) {
    const auto instrument = context.Instrument(index);
    if (!instrument || !std::exchange(instrument->isFrozen, false)) return;
    if (job && job->Instrument() == instrument->Id()) job.reset();
    Entry& entry = entries[instrument->Id()];
    entry.wanted = false;
    if (entry.take) Publish(*instrument, entry, false);
    context.changes.Touch();
    Q_EMIT Changed(instrument->Id());
}

void CFreezing::Tick() {
    FollowJob();
    for (const auto& instrument : context.Instruments()) {
        const auto found = entries.find(instrument->Id());
        if (instrument->isFrozen) {
            Follow(instrument, found == entries.end() ? entries[instrument->Id()] : found->second);
        } else if (found != entries.end() && Leave(*instrument, found->second)) {
            entries.erase(found);
        }
    }
    std::erase_if(entries, [this](const auto& entry) { return context.IndexOf(entry.first) < 0; });
}

// True when nothing of the take is heard any more.
bool CFreezing::Leave(CInstrument& instrument, Entry& entry) {
    if (++entry.leaving < kLeaveTicks) return false;
    instrument.frozen.Publish(std::make_shared<const FrozenSound>(), context.changes.Graveyard());
    return true;
}

void CFreezing::Follow(const std::shared_ptr<CInstrument>& instrument, Entry& entry) {
    const bool isCurrent = IsCurrent(*instrument, entry);
    const FrozenSound& published = *instrument->frozen.ForEdit();
    const int block = context.audio.Format().blockSize;
    if (entry.take && (published.take != entry.take || published.on != isCurrent || published.planes->Frames() < block))
        Publish(*instrument, entry, isCurrent);
    if (isCurrent) {
        entry.wanted = false;
    } else if (!job && entry.wanted) {
        Start(instrument, entry, true);
    } else {
        LookAgain(instrument, entry);
    }
    if (State now = StateOf(*instrument); now != entry.told) {
        entry.told = std::move(now);
        Q_EMIT Changed(instrument->Id());
    }
}

// A take of what it is now may be there: after the start, or when an edit was taken back.
void CFreezing::LookAgain(const std::shared_ptr<CInstrument>& instrument, Entry& entry) {
    const FrozenSource source = SourceOf(*instrument);
    std::uint64_t signature = context.changes.Revision() + 1 + std::bit_cast<std::uint64_t>(Time().sampleRate);
    for (const std::uint64_t edits : source.edits) signature = signature * 31 + edits;
    const bool isFirst = entry.seen == 0;
    if (signature != entry.seen) {
        entry.seen = signature;
        entry.quiet = isFirst ? kQuietTicks : 0;
    }
    if (job || entry.quiet > kQuietTicks || entry.quiet++ < kQuietTicks) return;
    Start(instrument, entry, false);
}

void CFreezing::Start(const std::shared_ptr<CInstrument>& instrument, Entry& entry, bool render) {
    entry.nextSource = SourceOf(*instrument);
    entry.nextTime = Time();
    FrozenProject frozen = FrozenProjectOf(context.audio, gather(), *instrument, StateNow);
    FreezeSettings settings;
    settings.project = std::move(frozen.state);
    settings.key = frozen.key;
    settings.file = Folder() / (frozen.key + ".frozen");
    settings.sampleRate = context.audio.Format().sampleRate;
    settings.endStep = frozen.length.steps;
    settings.isEndless = frozen.length.endless;
    settings.stepsPerBeat = context.audio.settings.stepsPerBeat.Get();
    const auto load = [this, program = context.folders.program.toStdString()](
                          const PluginReference& wanted, ESlotKind kind, PluginEnvironment& environment,
                          std::string& error) {
        environment.applicationFolder = program;
        return places.LoadFor(environment, wanted, kind, error);
    };
    job = std::make_unique<CFreezeJob>(instrument->Id(), std::move(settings), render, load);
}

void CFreezing::FollowJob() {
    if (!job || !job->Tick()) return;
    const std::unique_ptr<CFreezeJob> ended = std::move(job);
    const auto found = entries.find(ended->Instrument());
    if (found == entries.end()) return;
    Entry& entry = found->second;
    if (ended->Renders()) {
        entry.wanted = false;
        PruneFrozenFolder(Folder());
    }
    if (ended->Take()) {
        entry.take = ended->Take();
        entry.source = std::exchange(entry.nextSource, {});
        entry.time = std::exchange(entry.nextTime, {});
    } else if (ended->Renders()) {
        entry.failure = QString::fromStdString(ended->Error());
        context.notice(Text("The instrument could not be frozen: %1").arg(entry.failure));
    }
}

void CFreezing::Publish(CInstrument& instrument, const Entry& entry, bool on) {
    auto sound = std::make_shared<FrozenSound>();
    sound->take = entry.take;
    sound->source = entry.source;
    sound->on = on;
    sound->planes = std::make_shared<const CAudioPlanes>(
        entry.take->Format().channels, context.audio.Format().blockSize, static_cast<int>(instrument.Id()));
    instrument.frozen.Publish(std::move(sound), context.changes.Graveyard());
}

}  // namespace quib
