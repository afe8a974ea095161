// SPDX-License-Identifier: GPL-3.0-or-later
// Items of the song that go from one instrument to another, with their patterns.
#include <algorithm>
#include <map>

#include "document/CSong.h"
#include "texts/Texts.h"

namespace quib {

namespace {

using PatternMap = std::map<int, int>;  // of the target by that of the source

bool HasPoints(const CInstrument& instrument, int pattern) {
    const auto plugin = instrument.plugin.ForEdit()->plugin;
    return !instrument.midiLanes.ForEdit()->Lanes(pattern).empty() ||
           !instrument.mixLanes.ForEdit()->Lanes(pattern).empty() ||
           (plugin && !plugin->lanes.ForEdit()->Lanes(pattern).empty());
}

// The same notes without automation: nobody hears which of both is played.
bool IsSame(const CInstrument& from, int pattern, const CInstrument& to, int other) {
    const auto left = from.patterns[static_cast<std::size_t>(pattern)].ForEdit();
    const auto right = to.patterns[static_cast<std::size_t>(other)].ForEdit();
    return left->Notes() == right->Notes() && left->LoopLength() == right->LoopLength() &&
           left->LoopStart() == right->LoopStart() && !HasPoints(from, pattern) && !HasPoints(to, other);
}

bool IsPlayed(const Playlist& playlist, int pattern) {
    return std::any_of(playlist.begin(), playlist.end(),
                       [pattern](const PlaylistEntry& entry) { return entry.pattern == pattern; });
}

// Where the patterns go; nothing when there is no room for all of them.
std::optional<PatternMap> PlacesFor(const CInstrument& from, const CInstrument& to, const PlaylistState& state) {
    PatternMap places;
    std::array<bool, kPatternCount> taken{};
    const SongPatterns known = SongPatternsOf(to);
    for (const std::uint32_t item : state.selection) {
        const int pattern = std::clamp(state.Items()[item].pattern, 0, kPatternCount - 1);
        if (places.contains(pattern)) continue;
        int place = -1;
        for (int other = kPatternCount - 1; other >= 0; --other) {
            const auto index = static_cast<std::size_t>(other);
            const bool isFree = known.empty[index] && !taken[index] && !HasPoints(to, other) &&
                                !IsPlayed(*to.playlist.ForEdit(), other);
            if (isFree) place = other;
        }
        for (int other = kPatternCount - 1; other >= 0; --other) {
            if (!known.empty[static_cast<std::size_t>(other)] && IsSame(from, pattern, to, other)) place = other;
        }
        if (place < 0) return std::nullopt;
        taken[static_cast<std::size_t>(place)] = true;
        places[pattern] = place;
    }
    return places;
}

}  // namespace

std::optional<PlaylistSelection> CSong::MoveToInstrument(const std::shared_ptr<CInstrument>& from,
                                                         const std::shared_ptr<CInstrument>& to,
                                                         const PlaylistState& state, int steps, bool copies,
                                                         QString& told) {
    const QString title = QString::fromStdString(to->title);
    const auto places = PlacesFor(*from, *to, state);
    if (!places) {
        told = Text("%1 has no free pattern left: nothing was moved.").arg(title);
        return std::nullopt;
    }
    const QString name = copies ? Text("Copy items to another instrument") : Text("Move items to another instrument");
    const CChanges::CMacro one(context.changes, name);
    QStringList became;
    for (const auto& [pattern, place] : *places) {
        became.append(Text("Pattern %1 is pattern %2 of %3.").arg(pattern + 1).arg(place + 1).arg(title));
        if (IsSame(*from, pattern, *to, place)) continue;
        CRecordWriter writer;
        WritePatternAlone(writer, *from, pattern);
        const std::span<const char> bytes = writer.Bytes();
        const auto clip = ReadPatternClip({bytes.data(), bytes.size()});
        if (clip) contents.PastePattern(context.IndexOf(to->Id()), place, *clip);
    }
    told = became.join(QLatin1Char(' '));
    const SongPatterns sources = SongPatternsOf(*from);
    const PlaylistState placed =
        WithForeignItems({to->playlist.ForEdit(), {}}, SongPatternsOf(*to), state, sources, *places, steps);
    contents.SetPlaylist(to->Id(), placed.playlist, name);
    if (!copies) {
        contents.SetPlaylist(from->Id(), RemoveItems(state, sources, state.selection).playlist, name);
    }
    return placed.selection;
}

void CSong::WarnOfEndMark(const CInstrument& instrument, int pattern) const {
    context.notice(Text("Pattern %1 of %2 ends repeats in the song, and has to stay empty for that: with its notes, it "
                        "is played there.")
                       .arg(pattern + 1)
                       .arg(QString::fromStdString(instrument.title)));
}

}  // namespace quib
