// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The colours of the skin by name, one file a palette. User-interface thread.

#include <QHash>
#include <QRgb>
#include <QString>
#include <array>

namespace quib {

// The groups of controls that are told apart by an accent colour.
enum class ESection { kTransport, kMix, kPattern, kEqualiser, kEffects, kKeyboard };

// The palettes that there are; all know the same names.
enum class EPalette { kDark, kLight, kContrast };
constexpr int kPaletteCount = 3;

class CPalette {
public:
    // Reads the file of the resources.
    explicit CPalette(EPalette which);

    // Magenta, which no design uses, for a name that the file does not know.
    QRgb Colour(const QString& name) const { return colours.value(name, kUnknown); }
    QRgb Accent(ESection section) const noexcept { return accents[static_cast<std::size_t>(section)]; }
    // What is behind everything.
    QRgb Window() const noexcept { return window; }
    static QString AccentName(ESection section);
    // The colour as what cannot sound shows it: accents nearer to the panel, texts no stronger than dim ones.
    QRgb Silent(QRgb colour) const noexcept;
    // The colour of a strip whose user has chosen none: eight in turn.
    QRgb Track(int index) const noexcept { return tracks[static_cast<std::size_t>(index) % tracks.size()]; }

    // The text with each "{name}" replaced by "#rrggbb"; "{accent}" is that of the section.
    QString Fill(QString text, ESection section, bool silent = false) const;
    QList<QString> Names() const { return colours.keys(); }

private:
    static constexpr QRgb kUnknown = 0xFFFF00FF;

    QHash<QString, QRgb> colours;
    // Asked for all the time, so not looked for by name.
    std::array<QRgb, 6> accents{};
    std::array<QRgb, 8> tracks{};
    QRgb window = kUnknown;
    QRgb panel = kUnknown;
    QRgb dim = kUnknown;
};

// The palette that the program shows itself in: the dark one until another is chosen.
const CPalette& Palette();
EPalette ChosenPalette() noexcept;
// What has taken colours before keeps them; windows are to be drawn anew.
void ChoosePalette(EPalette which) noexcept;

// A colour between two others; 0 gives `from`, 1 gives `to`.
QRgb Mix(QRgb from, QRgb to, float share) noexcept;
// The colour with an opacity of 0..1.
QRgb WithOpacity(QRgb colour, float opacity) noexcept;

}  // namespace quib
