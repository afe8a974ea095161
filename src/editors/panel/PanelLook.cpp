// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/PanelLook.h"

#include <array>
#include <cmath>
#include <numbers>

#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "editors/panel/PanelLayout.h"
#include "texts/Texts.h"

namespace quib {

std::optional<ESection> SectionNamed(std::string_view name) noexcept {
    constexpr std::array kSections = {ESection::kTransport, ESection::kMix,     ESection::kPattern,
                                      ESection::kEqualiser, ESection::kEffects, ESection::kKeyboard};
    for (const ESection section : kSections) {
        if (CPalette::AccentName(section) == QLatin1String(name.data(), static_cast<qsizetype>(name.size())))
            return section;
    }
    return std::nullopt;
}

QString InLanguage(const PanelText& text) {
    return QString::fromStdString(Language() == ELanguage::kFrench ? text.french : text.english);
}

void DrawGlass(CCanvas& canvas, const QRectF& area, int linesAcross) {
    canvas.Box(area, 2, Colour("glass"), Colour("knobEdge"));
    const qreal middle = std::floor(area.center().y());
    canvas.Line(area.left() + 1, middle, area.right() - 1, middle, Colour("glassLine"));
    for (int line = 1; line < linesAcross; ++line) {
        const qreal x = std::floor(area.left() + area.width() * line / linesAcross);
        canvas.Line(x, area.top() + 1, x, area.bottom() - 1, Colour("glassGrid"));
    }
}

void DrawSegment(CCanvas& canvas, const QRectF& area, bool chosen, bool hovered, bool enabled, QRgb accent) {
    const QRgb plain = Colour(hovered && enabled ? "knobHover" : "panelRaised");
    canvas.Box(area, 3, chosen && enabled ? accent : plain, Colour("knobEdge"));
}

QRgb SegmentText(bool chosen, bool hovered, bool enabled) {
    if (!enabled) return Colour("textOff");
    if (chosen) return Colour("onAccent");
    return Colour(hovered ? "text" : "textMuted");
}

void DrawParameterMarks(CCanvas& canvas, CSkin& skin, QPointF place, bool automated, bool learned) {
    constexpr qreal kDot = 3;
    if (learned) canvas.Glyph(skin, picture::kGlyphMidi, place, Palette().Accent(ESection::kKeyboard));
    if (automated) canvas.Ellipse(place + QPointF(0, learned ? 14 : 0), kDot, Palette().Accent(ESection::kPattern));
}

int FittingHeight(const QString& text, qreal width, bool strong, int largest) {
    int height = largest;
    while (height > 10 && CCanvas::TextWidth(text, height, strong) > width) --height;
    return height;
}

float WaveAt(const QString& shape, float place, float width) noexcept {
    const float turn = place - std::floor(place);
    if (shape == QLatin1String("Saw")) return 1 - 2 * turn;
    if (shape == QLatin1String("Pulse")) return turn < width ? 1.0F : -1.0F;
    if (shape == QLatin1String("Square")) return turn < 0.5F ? 1.0F : -1.0F;
    if (shape == QLatin1String("Triangle")) return turn < 0.5F ? 4 * turn - 1 : 3 - 4 * turn;
    if (shape == QLatin1String("Random")) {
        // Steps that look drawn by lot, the same each time.
        constexpr std::array kSteps = {0.3F, -0.7F, 0.9F, -0.2F, 0.6F, -0.9F};
        return kSteps[static_cast<std::size_t>(turn * static_cast<float>(kSteps.size()))];
    }
    return std::sin(turn * 2 * std::numbers::pi_v<float>);
}

CSwitchCtrl& AddPanelButton(CWinControl& window, const QRect& place, int glyph, const QString& text,
                            std::function<void()> run) {
    auto& made = window.Add<CSwitchCtrl>(0U, place.x(), place.y(), place.width(), place.height(), nullptr, text);
    made.glyph = glyph;
    made.momentary = true;
    made.captureOnClick = false;
    made.afterClick = [run = std::move(run)](CControl&) { run(); };
    return made;
}

}  // namespace quib
