// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Texts and shapes as pictures of their opacity, made at their first use: drawing them again and again
// costs no more than their pixels. All are made anew for another scale. User-interface thread.

#include <QHash>
#include <QImage>
#include <array>

#include "model/edits/NoteState.h"

namespace quib {

struct TextMask {
    QImage image;
    double width = 0;   // of the letters, skin pixels
    double height = 0;  // of the picture, skin pixels; the letters stand in its middle
};

class CMasks {
public:
    static constexpr int kNoteName = 9;  // height of the letters on notes, skin pixels

    void SetScale(qreal next);
    const TextMask& Text(const QString& text, int height, bool strong);
    const TextMask& NoteName(int key);
    // A pentagon of 12x10, its point below.
    const QImage& PlayheadFlag();

private:
    TextMask Make(const QString& text, int height, bool strong) const;

    qreal scale = 0;
    QHash<QString, TextMask> texts;
    std::array<TextMask, kHighestKey + 1> names;
    QImage flag;
};

}  // namespace quib
