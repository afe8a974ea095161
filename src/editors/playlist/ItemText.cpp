// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/ItemText.h"

#include "texts/Texts.h"

namespace quib {

namespace {

// "5", or "5.3" where it is not the bar's beginning.
QString PlaceText(int step, const Meter& meter) {
    const int bar = static_cast<int>(meter.StepsPerBar());
    const int beat = static_cast<int>(meter.StepsPerBeat());
    const QString number = QString::number(step / bar + 1);
    return step % bar == 0 ? number : QStringLiteral("%1.%2").arg(number).arg(step % bar / beat + 1);
}

// The span behind the last one of an item.
const PlaylistSpan* Follower(const CPlaylistEdit& edit, std::int32_t item, StepRange& range, bool& interrupted) {
    const PlaylistSpan* follower = nullptr;
    for (std::size_t index = 0; index < edit.Spans().size(); ++index) {
        const PlaylistSpan& span = edit.Spans()[index];
        if (span.entry != item) continue;
        if (range.IsEmpty()) range.first = span.first;
        interrupted = interrupted || (!range.IsEmpty() && span.first != range.end);
        range.end = span.end;
        follower = index + 1 < edit.Spans().size() ? &edit.Spans()[index + 1] : nullptr;
        if (follower != nullptr && follower->first != span.end) follower = nullptr;
    }
    return follower;
}

}  // namespace

QString ItemText(const CPlaylistEdit& edit, std::int32_t item, const SongView& view) {
    const PlaylistEntry& entry = edit.State().Items()[static_cast<std::size_t>(item)];
    const int length = edit.Patterns().lengths[static_cast<std::size_t>(entry.pattern)];
    StepRange range;
    bool interrupted = false;
    const PlaylistSpan* const follower = Follower(edit, item, range, interrupted);
    QString text = Text("PATTERN %1").arg(entry.pattern + 1) + QStringLiteral(" - ");
    const bool endless = range.end == kNoSongEnd;
    text += endless ? Text("From bar %1 on, without end.").arg(PlaceText(range.first, view.time.meter))
                    : Text("From bar %1 to bar %2.")
                          .arg(PlaceText(range.first, view.time.meter), PlaceText(range.end, view.time.meter));
    const auto add = [&text](const QString& more) { text += QLatin1Char(' ') + more; };
    if (interrupted) add(Text("Another item interrupts it."));
    if (edit.HasEndMark(item)) {
        add(Text("Pattern %1 ends it and has to stay empty.").arg(follower->pattern + 1));
    } else if (follower != nullptr && (range.end - entry.start) % length != 0) {
        add(Text("Pattern %1 cuts it off after %2 of its %3 steps.")
                .arg(follower->pattern + 1)
                .arg((range.end - entry.start) % length)
                .arg(length));
    }
    return text;
}

}  // namespace quib
