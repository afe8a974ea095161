// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CPalette.h"

#include <QFile>
#include <QTextStream>
#include <algorithm>

namespace quib {

CPalette::CPalette() {
    QFile file(QStringLiteral(":/skin/palette.txt"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return;
    QTextStream stream(&file);
    while (!stream.atEnd()) {
        const QStringList words = stream.readLine().simplified().split(QLatin1Char(' '));
        if (words.size() != 2 || words[0].startsWith(QLatin1Char('#'))) continue;
        bool valid = false;
        const uint value = words[1].toUInt(&valid, 16);
        if (valid) colours.insert(words[0], 0xFF000000U | value);
    }
}

QRgb CPalette::Colour(const QString& name) const { return colours.value(name, qRgb(255, 0, 255)); }

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

QString CPalette::Fill(QString text, ESection section) const {
    const auto code = [](QRgb colour) {
        return QStringLiteral("#%1").arg(colour & 0xFFFFFFU, 6, 16, QLatin1Char('0'));
    };
    text.replace(QStringLiteral("{accent}"), code(Accent(section)));
    for (auto entry = colours.begin(); entry != colours.end(); ++entry) {
        text.replace(QLatin1Char('{') + entry.key() + QLatin1Char('}'), code(entry.value()));
    }
    return text;
}

const CPalette& Palette() {
    static const CPalette palette;
    return palette;
}

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
