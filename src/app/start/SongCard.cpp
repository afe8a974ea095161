// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/SongCard.h"

#include <QFileInfo>
#include <algorithm>
#include <cmath>

#include "model/PlaylistSpans.h"
#include "project/ProjectFile.h"

namespace quib {

namespace {

constexpr float kStepsPerMinuteAndBeat = 4;
constexpr int kTrackColours = 8;

// The whole song: where the last item of any track ends.
int AddItems(const ProjectState& state, SongCard& card) {
    int steps = 0;
    for (std::size_t track = 0; track < state.instruments.size(); ++track) {
        const CInstrument& instrument = *state.instruments[track];
        for (const PlaylistSpan& span :
             PlaylistSpans(*instrument.playlist.ForEdit(), PatternLengthsForEdit(instrument))) {
            card.items.push_back(
                {static_cast<int>(track), span.pattern, static_cast<float>(span.first), static_cast<float>(span.end)});
            if (span.end != kNoSongEnd) steps = std::max(steps, span.end);
        }
    }
    return std::max(steps, state.master.playlistStepNumber);
}

}  // namespace

SongCard ReadSongCard(const QString& path) {
    SongCard card;
    card.path = path;
    card.name = QFileInfo(path).completeBaseName();
    ProjectState state;
    std::string error;
    if (!ReadProjectFile(path.toStdString(), {}, state, error)) return card;
    card.readable = true;
    card.tempo = state.master.tempo;
    card.tracks = static_cast<int>(state.instruments.size());
    const auto steps = static_cast<float>(std::max(1, AddItems(state, card)));
    card.seconds = static_cast<int>(std::lround(steps / kStepsPerMinuteAndBeat / std::max(1.0F, card.tempo) * 60.0F));
    for (SongCard::Item& item : card.items) {
        item.first = std::min(1.0F, item.first / steps);
        item.last = std::min(1.0F, item.last / steps);
    }
    return card;
}

QString Measures(const SongCard& card) {
    return QStringLiteral("%1 BPM \u00B7 %2:%3")
        .arg(static_cast<int>(std::lround(card.tempo)))
        .arg(card.seconds / 60)
        .arg(card.seconds % 60, 2, 10, QLatin1Char('0'));
}

void DrawSong(CCanvas& canvas, const SongCard& card, const QRectF& area) {
    canvas.Fill(area, Palette().Colour(QStringLiteral("glass")));
    const QRectF inner = area.adjusted(7, 5, -7, -5);
    const qreal lane = inner.height() / std::max(1, card.tracks);
    for (const SongCard::Item& item : card.items) {
        const QRgb track = Palette().Colour(QStringLiteral("track%1").arg(item.track % kTrackColours + 1));
        const float share = 0.55F + 0.1F * static_cast<float>(item.pattern % 4);
        const qreal left = inner.left() + item.first * inner.width();
        const qreal right = inner.left() + item.last * inner.width();
        canvas.Fill(
            QRectF(left, inner.top() + item.track * lane, std::max(1.0, right - left - 1), std::max(1.0, lane - 2)),
            Mix(Palette().Colour(QStringLiteral("glass")), track, share));
    }
}

}  // namespace quib
