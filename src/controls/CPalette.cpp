// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CPalette.h"

#include <QFile>
#include <QTextStream>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

namespace quib {

namespace {

constexpr std::array<const char*, kPaletteCount> kFiles = {"dark", "light", "contrast"};
constexpr int kLeastHue = 40;  // between the channels of a colour that is no grey
constexpr float kSilentShare = 0.4F;

// Of the program, of its user-interface thread alone.
std::array<std::optional<CPalette>, kPaletteCount> palettes;
EPalette chosen = EPalette::kDark;

}  // namespace

CPalette::CPalette(EPalette which) {
    QFile file(QStringLiteral(":/skin/palette-%1.txt").arg(QLatin1String(kFiles[static_cast<std::size_t>(which)])));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return;
    QTextStream stream(&file);
    while (!stream.atEnd()) {
        const QStringList words = stream.readLine().simplified().split(QLatin1Char(' '));
        if (words.size() != 2 || words[0].startsWith(QLatin1Char('#'))) continue;
        bool valid = false;
        const uint value = words[1].toUInt(&valid, 16);
        if (valid) colours.insert(words[0], 0xFF000000U | value);
    }
    for (std::size_t index = 0; index < accents.size(); ++index) {
        accents[index] = Colour(AccentName(static_cast<ESection>(index)));
    }
    for (std::size_t index = 0; index < tracks.size(); ++index) {
        tracks[index] = Colour(QStringLiteral("track%1").arg(index + 1));
    }
    window = Colour(QStringLiteral("window"));
    panel = Colour(QStringLiteral("panel"));
    dim = Colour(QStringLiteral("textDim"));
}

// What has a hue is an accent. Of what is grey, only texts and caps are as far from the panel as a dim text.
QRgb CPalette::Silent(QRgb colour) const noexcept {
    const auto [low, high] = std::minmax({qRed(colour), qGreen(colour), qBlue(colour)});
    const auto far = [this](QRgb other) { return std::abs(qGray(other) - qGray(panel)); };
    QRgb silent = colour;
    if (high - low > kLeastHue) {
        silent = Mix(colour, panel, kSilentShare);
    } else if (far(colour) > far(dim)) {
        silent = dim;
    }
    return (silent & 0xFFFFFFU) | (colour & 0xFF000000U);
}

QString CPalette::AccentName(ESection section) {
    switch (section) {
        case ESection::kTransport:
            return QStringLiteral("transport");
        case ESection::kMix:
            return QStringLiteral("mix");
        case ESection::kPattern:
            return QStringLiteral("pattern");
        case ESection::kEqualiser:
            return QStringLiteral("equaliser");
        case ESection::kEffects:
            return QStringLiteral("effects");
        case ESection::kKeyboard:
            return QStringLiteral("keyboard");
    }
    return {};
}

QString CPalette::Fill(QString text, ESection section, bool silent) const {
    const auto code = [this, silent](QRgb colour) {
        return QStringLiteral("#%1").arg((silent ? Silent(colour) : colour) & 0xFFFFFFU, 6, 16, QLatin1Char('0'));
    };
    text.replace(QStringLiteral("{accent}"), code(Accent(section)));
    for (auto entry = colours.begin(); entry != colours.end(); ++entry) {
        text.replace(QLatin1Char('{') + entry.key() + QLatin1Char('}'), code(entry.value()));
    }
    return text;
}

// Read at their first use, as the resources are there only then.
const CPalette& Palette() {
    std::optional<CPalette>& palette = palettes[static_cast<std::size_t>(chosen)];
    if (!palette) palette.emplace(chosen);
    return *palette;
}

EPalette ChosenPalette() noexcept { return chosen; }

void ChoosePalette(EPalette which) noexcept { chosen = which; }

QRgb Mix(QRgb from, QRgb to, float share) noexcept {
    const auto channel = [share](int low, int high) {
        return std::clamp(static_cast<int>(static_cast<float>(low) + static_cast<float>(high - low) * share + 0.5F), 0,
                          255);
    };
    return qRgb(channel(qRed(from), qRed(to)), channel(qGreen(from), qGreen(to)), channel(qBlue(from), qBlue(to)));
}

QRgb WithOpacity(QRgb colour, float opacity) noexcept {
    return qRgba(qRed(colour), qGreen(colour), qBlue(colour), std::clamp(static_cast<int>(opacity * 255.0F), 0, 255));
}

}  // namespace quib
