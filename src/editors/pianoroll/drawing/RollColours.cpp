// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/drawing/RollColours.h"

#include <algorithm>
#include <cmath>

#include "controls/CPalette.h"
#include "controls/Colours.h"

namespace quib {

namespace {

double Luminance(QRgb colour) noexcept {
    const auto linear = [](int part) { return std::pow(part / 255.0, 2.2); };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

}  // namespace

RollColours::RollColours()
    : panel(Colour("panel")),
      well(Colour("well")),
      wellDeep(Colour("wellDeep")),
      text(Colour("text")),
      textMuted(Colour("textMuted")),
      textDim(Colour("textDim")),
      edge(Colour("edge")),
      gridOff(Colour("gridOff")),
      gridKey(Colour("gridKey")),
      gridRoot(Colour("gridRoot")),
      gridStep(Colour("gridStep")),
      gridBeat(Colour("gridBeat")),
      gridBar(Colour("gridBar")),
      beyond(Colour("beyond")),
      ghost(Colour("ghost")),
      ghostEdge(Colour("ghostEdge")),
      ink(Colour("ink")),
      keyWhite(Colour("keyWhite")),
      keyBlack(Colour("keyBlack")),
      keyOff(Colour("keyOff")),
      keyBlackOff(Colour("keyBlackOff")),
      pattern(Colour("pattern")),
      keyboard(Colour("keyboard")),
      transport(Colour("transport")),
      record(Colour("record")),
      white(Colour("thumbHover")) {
    for (std::size_t velocity = 0; velocity < velocities.size(); ++velocity) {
        const float share = static_cast<float>(velocity) / kHighestVelocity;
        velocities[velocity] = Mix(gridOff, pattern, 0.30F + 0.70F * share);
    }
}

QRgb RollColours::OfVelocity(int velocity) const noexcept {
    return velocities[static_cast<std::size_t>(std::clamp(velocity, 0, kHighestVelocity))];
}

QRgb RollColours::TextOn(QRgb ground) const noexcept {
    // Where the contrast to black and to white is the same.
    constexpr double kMiddle = 0.179;
    return Luminance(ground) > kMiddle ? ink : white;
}

QRgb RollColours::Dimmed(QRgb colour) const noexcept { return Mix(beyond, colour, 0.42F); }

QRgb RollColours::Hovered(QRgb colour) const noexcept { return Mix(colour, white, 0.28F); }

}  // namespace quib
