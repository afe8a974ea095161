// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the start page shows of a project file: tempo, length, its song in small. Read without loading a plug-in.
// User-interface thread.

#include <QString>
#include <vector>

#include "controls/CCanvas.h"

namespace quib {

struct SongCard {
    QString path;
    QString name;
    float tempo = 120;  // beats per minute
    int seconds = 0;    // of the song
    bool readable = false;

    struct Item {
        int track = 0;
        int pattern = 0;
        float first = 0;  // 0..1 of the song
        float last = 0;
    };
    int tracks = 0;
    std::vector<Item> items;
};

SongCard ReadSongCard(const QString& path);
// "124 BPM · 2:35"
QString Measures(const SongCard& card);
void DrawSong(CCanvas& canvas, const SongCard& card, const QRectF& area);

}  // namespace quib
