// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/CGallery.h"

#include <cmath>
#include <numbers>

#include "controls/CLabelCtrl.h"

namespace quib {

bool CGalleryScope::Fetch(Picture& picture) {
    if (!std::exchange(armed, false)) return false;
    constexpr int kSamples = 1024;
    left.resize(kSamples);
    right.resize(kSamples);
    const double phase = 0.12 * pictures++;
    for (int index = 0; index < kSamples; ++index) {
        const double turn = 2 * std::numbers::pi * index / kSamples;
        const double envelope = 0.55 + 0.35 * std::sin(turn + phase);
        const auto place = static_cast<std::size_t>(index);
        left[place] = static_cast<float>(envelope * std::sin(9 * turn + phase));
        right[place] = static_cast<float>(0.6 * std::sin(3 * turn - phase) * std::cos(11 * turn));
    }
    picture = {left, right};
    return true;
}

void CGalleryPatterns::CopyPattern(int from, int to) {
    const std::uint32_t bit = 1U << to;
    look.filled = (look.filled >> from & 1U) != 0 ? look.filled | bit : look.filled & ~bit;
}

CGallery::CGallery() : CWinControl(gallerySettings, "window") {
    setWindowTitle(QStringLiteral("Gallery of controls"));
    BuildFaders();
    BuildKnobs();
    BuildSwitches();
    BuildMeters();
    BuildScopeAndFilter();
    BuildTexts();
    BuildPatterns();
    BuildIcons();
    BuildKeyboards();
    BuildArpeggiator();
}

QPoint CGallery::AddPanel(const QRect& place, const QString& title, ESection section) {
    panels.push_back({place, title, section});
    return place.topLeft() + QPoint(10, 30);
}

void CGallery::DrawBackground() {
    const CPalette& palette = Palette();
    for (const Panel& panel : panels) {
        Canvas().FillRound(panel.place, 5, palette.Colour(QStringLiteral("panel")));
        Canvas().Frame(panel.place, 5, palette.Colour(QStringLiteral("line")));
        const QRectF mark(panel.place.left() + 10, panel.place.top() + 9, 3, 11);
        Canvas().FillRound(mark, 1.5, palette.Accent(panel.section));
        Canvas().Text(QRectF(mark.right() + 7, mark.top() - 3, panel.place.width() - 30, 17), panel.title,
                      palette.Colour(QStringLiteral("text")), 11, Qt::AlignLeft | Qt::AlignVCenter, true);
    }
}

void CGallery::Caption(int x, int y, int width, const QString& text) {
    auto& label = Place<CLabelCtrl>(ESection::kMix, x, y, width, 12, text);
    label.textColour = Palette().Colour(QStringLiteral("textMuted"));
    label.fontHeight = 9;
    label.alignment = Qt::AlignCenter;
}

void CGallery::PoseAs(CControl& control, EState state) {
    poses.emplace_back([&control, state] {
        control.hovered = state == EState::kHover;
        control.pressed = state == EState::kPressed;
        control.Refresh();
    });
}

void CGallery::PoseMouse(CControl& control, int x, int y) {
    poses.emplace_back([this, &control, x, y] {
        control.OnMouseMove(control.X() + x, control.Y() + y);
        unsetCursor();
    });
}

void CGallery::Pose() {
    for (const auto& pose : poses) pose();
    // Bars that have fallen below the peaks that they hold.
    Tick();
    for (const auto& [meter, level] : meterEnds) meter->Set(level);
    for (int tick = 0; tick < 12; ++tick) Tick();
}

void CGallery::Live() {
    if (++liveTicks % 5 == 0) playingStep = (playingStep + 1) % 16;
    for (std::size_t index = 0; index < meterEnds.size(); ++index) {
        const auto& [meter, level] = meterEnds[index];
        const double turn = 0.11 * liveTicks + 1.7 * static_cast<double>(index);
        meter->Set(level * static_cast<float>(0.55 + 0.45 * std::sin(turn)));
    }
    Tick();
}

}  // namespace quib
