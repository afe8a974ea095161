// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The colours of the skin by name, from one file. User-interface thread.

#include <QHash>
#include <QRgb>
#include <QString>

namespace quib {

// The groups of controls that are told apart by an accent colour.
enum class ESection { kTransport, kMix, kPattern, kEqualiser, kEffects, kKeyboard };

class CPalette {
public:
    // Reads the file of the resources.
    CPalette();

    // Magenta, which no design uses, for a name that the file does not know.
    QRgb Colour(const QString& name) const;
    QRgb Accent(ESection section) const { return Colour(AccentName(section)); }
    static QString AccentName(ESection section);

    // The text with each "{name}" replaced by "#rrggbb"; "{accent}" is that of the section.
    QString Fill(QString text, ESection section) const;

private:
    QHash<QString, QRgb> colours;
};

// The one palette of the program.
const CPalette& Palette();

// A colour between two others; 0 gives `from`, 1 gives `to`.
QRgb Mix(QRgb from, QRgb to, float share) noexcept;
// The colour with an opacity of 0..1.
QRgb WithOpacity(QRgb colour, float opacity) noexcept;

}  // namespace quib
