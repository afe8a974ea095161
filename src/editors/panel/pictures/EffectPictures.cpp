// SPDX-License-Identifier: GPL-3.0-or-later
// The pictures of effects and of a drum.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLook.h"
#include "editors/panel/pictures/Pictures.h"

namespace quib {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

// Drum: what is shown of its decay, and the noise that it is drawn with.
constexpr qreal kStrokeShown = 1.15;

// The same noise each time: a whole number's digits thoroughly mixed, -1..1.
qreal NoiseAt(unsigned place) noexcept {
    unsigned mixed = place * 2654435761U;
    mixed ^= mixed >> 15U;
    mixed *= 2246822519U;
    mixed ^= mixed >> 13U;
    return static_cast<qreal>(mixed & 0xffffU) / 32767.5 - 1;
}

// Reverb: seconds and decibels of the axes.
constexpr double kShownDecibels = 60;

double DecayAxis(const CPictureRoles& roles) {
    return std::max(0.5, 1.15 * static_cast<double>(roles.Number("time", 2)) + 0.1);
}

double PreDelay(const CPictureRoles& roles) { return static_cast<double>(roles.Number("predelay")) / 1000; }

// Compressor: decibels in for decibels out.
constexpr double kQuietest = -60;

double OutputOf(const CPictureRoles& roles, double in) {
    const auto threshold = static_cast<double>(roles.Number("threshold"));
    const double ratio = std::max(1.0, static_cast<double>(roles.Number("ratio", 1)));
    const double knee = std::max(0.001, static_cast<double>(roles.Number("knee")));
    const double over = in - threshold;
    const double slope = 1 / ratio - 1;
    double gain = 0;
    if (over > knee / 2) {
        gain = slope * over;
    } else if (over > -knee / 2) {
        gain = slope * (over + knee / 2) * (over + knee / 2) / (2 * knee);
    }
    return std::min(in + gain + static_cast<double>(roles.Number("makeup")),
                    static_cast<double>(roles.Number("ceiling", 0)));
}

QPointF CurvePoint(const QRectF& area, double in, double out) {
    const auto share = [](double decibels) { return std::clamp(1 - decibels / kQuietest, 0.0, 1.0); };
    return {area.left() + area.width() * share(in), area.bottom() - area.height() * share(out)};
}

}  // namespace

// --- Drum ----------------------------------------------------------------------------------------------------

void CStrokePicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const qreal decay = 0.05 + 0.95 * static_cast<qreal>(roles.Get("decay"));
    const auto snap = static_cast<qreal>(roles.Get("snap"));
    const qreal half = area.height() / 2 - 2;
    const int columns = static_cast<int>(area.width());
    for (int column = 0; column < columns; ++column) {
        const qreal share = kStrokeShown * column / columns;
        const qreal body = std::exp(-5 * share / decay);
        const qreal click = snap * std::exp(-60 * share);
        const qreal level = std::min(1.0, 0.75 * body + 0.5 * click);
        const qreal height =
            std::max(0.5, half * level * (0.6 + 0.4 * std::abs(NoiseAt(static_cast<unsigned>(column)))));
        canvas.Fill(QRectF(area.left() + column, area.center().y() - height, 1, 2 * height), WithOpacity(accent, 0.8F));
    }
    // The pitch, which falls to where the drum is tuned.
    std::vector<QPointF> pitch;
    const auto tune = static_cast<qreal>(roles.Get("tune", 0.5F));
    for (int column = 0; column <= columns; column += 3) {
        const qreal share = static_cast<qreal>(column) / columns;
        const qreal height = 0.15 + 0.45 * tune + 0.3 * std::exp(-14 * share);
        pitch.emplace_back(area.left() + column, area.bottom() - area.height() * height);
    }
    canvas.Polyline(pitch, Palette().Accent(ESection::kKeyboard), 1.6);
    const QString text = roles.Reading("tune");
    canvas.Text(QRectF(area.right() - 90, pitch.back().y() - 15, 88, 12), text, Palette().Accent(ESection::kKeyboard),
                10, Qt::AlignRight);
}

std::vector<PictureHandle> CStrokePicture::Handles(const QRectF& area, const CPictureRoles& roles) const {
    const qreal decay = 0.05 + 0.95 * static_cast<qreal>(roles.Get("decay"));
    return {{QPointF(area.left() + area.width() * decay / kStrokeShown, area.center().y())}};
}

void CStrokePicture::Drag(int, const QPointF& place, const QRectF& area, CPictureRoles& roles) const {
    const float share = ShareOf(place.x(), area.left(), area.width() / kStrokeShown);
    roles.Set("decay", (share - 0.05F) / 0.95F);
}

// --- Delay ---------------------------------------------------------------------------------------------------

void CTapsPicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    constexpr int kMostTaps = 32;
    constexpr qreal kHiddenBelow = 0.02;
    const auto left = std::max(0.02, static_cast<qreal>(roles.Get("left")));
    const auto right = roles.Reading("link") == QLatin1String("On")
                           ? left
                           : std::max(0.02, static_cast<qreal>(roles.Get("right", roles.Get("left"))));
    const auto feedback = std::min(0.97, static_cast<qreal>(roles.Get("feedback")));
    const auto cross = static_cast<qreal>(roles.Get("cross"));
    const qreal unit = area.width() / 8;  // of a delay that is turned up half
    const qreal middle = area.center().y();
    const qreal half = area.height() / 2 - 1;
    canvas.Fill(QRectF(area.left(), middle - half, 3, 2 * half), Colour("textMuted"));
    qreal level = 1;
    for (int tap = 1; tap <= kMostTaps && level > kHiddenBelow; ++tap, level *= feedback) {
        // With "ping pong" what came from one side goes to the other.
        const qreal swapped = tap % 2 == 0 ? cross : 0;
        const qreal xLeft = area.left() + unit * 2 * left * tap;
        const qreal xRight = area.left() + unit * 2 * right * tap;
        const qreal up = level * (1 - swapped);
        const qreal down = level * (tap % 2 == 0 ? 1 : 1 - cross);
        if (xLeft < area.right()) canvas.Fill(QRectF(xLeft, middle - half * up, 3, half * up), accent);
        if (xRight < area.right()) canvas.Fill(QRectF(xRight, middle, 3, half * down), WithOpacity(accent, 0.7F));
    }
    canvas.Text(QRectF(area.right() - 14, area.top(), 14, 12), QStringLiteral("L"), Colour("textMuted"), 10,
                Qt::AlignRight);
    canvas.Text(QRectF(area.right() - 14, area.bottom() - 12, 14, 12), QStringLiteral("R"), Colour("textMuted"), 10,
                Qt::AlignRight);
}

// --- Reverb --------------------------------------------------------------------------------------------------

void CDecayPicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const double axis = DecayAxis(roles);
    const double start = PreDelay(roles);
    const auto time = static_cast<double>(roles.Number("time", 2));
    const auto high = static_cast<double>(roles.Number("high", 100)) / 100 * time;
    const auto x = [&](double seconds) { return area.left() + area.width() * std::min(1.0, seconds / axis); };
    const auto y = [&](double decibels) {
        return area.top() + area.height() * std::clamp(-decibels / kShownDecibels, 0.0, 1.0);
    };
    const double late = 20 * std::log10(std::max(0.001, static_cast<double>(roles.Get("late", 1))));
    const QRgb early = WithOpacity(accent, 0.7F);
    for (int reflection = 0; reflection < 6 && roles.Get("early") > 0; ++reflection) {
        const double at = start + 0.004 * (reflection + 1) * (1 + 4 * static_cast<double>(roles.Get("size")));
        const double level = 20 * std::log10(static_cast<double>(roles.Get("early"))) - 3.0 * reflection;
        canvas.Fill(QRectF(x(at), y(level), 2, area.bottom() - y(level)), early);
    }
    DrawFilledCurve(canvas, {QPointF(x(start), y(late)), QPointF(x(start + time), area.bottom())}, area.bottom(),
                    accent);
    // The treble, which dies away sooner.
    const QPointF from(x(start), y(late));
    const QPointF to(x(start + high), area.bottom());
    for (int dash = 0; dash < 12; ++dash) {
        const QPointF a = from + (to - from) * (dash / 12.0);
        const QPointF b = from + (to - from) * ((dash + 0.55) / 12);
        canvas.Line(a.x(), a.y(), b.x(), b.y(), Palette().Accent(ESection::kEqualiser), 1.6);
    }
    canvas.Text(QRectF(area.right() - 90, area.top(), 90, 12), roles.Reading("time"), Colour("textMuted"), 10,
                Qt::AlignRight);
}

std::vector<PictureHandle> CDecayPicture::Handles(const QRectF& area, const CPictureRoles& roles) const {
    const double axis = DecayAxis(roles);
    const double start = PreDelay(roles);
    const auto time = static_cast<double>(roles.Number("time", 2));
    const auto high = static_cast<double>(roles.Number("high", 100)) / 100 * time;
    const auto x = [&](double seconds) { return area.left() + area.width() * std::min(1.0, seconds / axis); };
    return {{QPointF(x(start + time), area.bottom())}, {QPointF(x(start + high), area.bottom() - 1)}};
}

// The axis grows with the decay, so the drag counts in the knob's way, not in seconds.
void CDecayPicture::Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const {
    const qreal old = Handles(area, roles)[static_cast<std::size_t>(handle)].place.x();
    const auto way = static_cast<float>((place.x() - old) / area.width());
    const char* const role = handle == 0 ? "time" : "high";
    roles.Set(role, std::clamp(roles.Get(role) + way, 0.0F, 1.0F));
}

// --- Compressor ----------------------------------------------------------------------------------------------

void CCurvePicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const QPointF corner = CurvePoint(area, 0, 0);
    canvas.Line(area.left(), area.bottom(), corner.x(), corner.y(), Colour("glassLine"));
    std::vector<QPointF> points;
    for (double in = kQuietest; in <= 0; in += 0.5) points.push_back(CurvePoint(area, in, OutputOf(roles, in)));
    DrawFilledCurve(canvas, std::move(points), area.bottom(), accent);
    const qreal ceiling = CurvePoint(area, 0, static_cast<double>(roles.Number("ceiling"))).y();
    canvas.Line(area.left(), ceiling, area.right(), ceiling, Palette().Colour(QStringLiteral("warning")));
    const auto& measured = roles.Values().Measured();
    if (measured.empty() || static_cast<double>(measured.back().level) <= kQuietest) return;
    const auto in = static_cast<double>(measured.back().level);
    const double out =
        in - static_cast<double>(measured.back().reduction) + static_cast<double>(roles.Number("makeup"));
    const QPointF now = CurvePoint(area, in, out);
    canvas.Line(now.x(), now.y(), now.x(), area.bottom(), WithOpacity(Colour("text"), 0.5F));
    canvas.Ellipse(now, 4, Colour("text"));
}

std::vector<PictureHandle> CCurvePicture::Handles(const QRectF& area, const CPictureRoles& roles) const {
    const auto threshold = static_cast<double>(roles.Number("threshold"));
    return {{CurvePoint(area, threshold, OutputOf(roles, threshold)), true}, {CurvePoint(area, 0, OutputOf(roles, 0))}};
}

void CCurvePicture::Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const {
    if (handle == 0) return roles.Set("threshold", ShareOf(place.x(), area.left(), area.width()));
    // The lower the end of the curve, the higher the ratio: the share of the way down to the threshold.
    const auto threshold = static_cast<double>(roles.Number("threshold"));
    const double makeup = static_cast<double>(roles.Number("makeup"));
    const double out =
        kQuietest * (1 - static_cast<double>(ShareOf(-place.y(), -area.bottom(), area.height()))) - makeup;
    if (threshold >= 0) return;
    const double ratio = std::clamp(-threshold / std::max(0.01, out - threshold), 1.0, 20.0);
    roles.Set("ratio", static_cast<float>(std::log(ratio) / std::log(20.0)));
}

void CReductionPicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const auto height = [&](double decibels) { return area.height() * std::clamp(decibels / -kQuietest, 0.0, 1.0); };
    const auto& measured = roles.Values().Measured();
    const qreal way = area.width() / static_cast<qreal>(CPanelValues::kMeasuredTicks);
    int ticks = 0;
    const QRgb heard = WithOpacity(Palette().Accent(ESection::kMix), 0.55F);
    for (auto now = measured.rbegin(); now != measured.rend(); ++now, ++ticks) {
        const qreal left = std::floor(area.right() - (ticks + 1) * way);
        const qreal width = std::floor(area.right() - ticks * way) - left;
        const qreal level = height(static_cast<double>(now->level) - kQuietest);
        const qreal taken = height(static_cast<double>(now->reduction));
        canvas.Fill(QRectF(left, area.bottom() - level, width, level), heard);
        if (taken >= 0.5) canvas.Fill(QRectF(left, area.top(), width, taken), accent);
    }
    const qreal threshold = area.top() + height(-static_cast<double>(roles.Number("threshold")));
    for (qreal dash = area.left(); dash < area.right(); dash += 6) {
        canvas.Line(dash, threshold, std::min(dash + 3, area.right()), threshold, Palette().Accent(ESection::kPattern));
    }
    const float most = measured.empty() ? 0.0F : measured.back().reduction;
    canvas.Text(QRectF(area.left(), area.bottom() - 12, area.width(), 12),
                QStringLiteral("%1 dB").arg(static_cast<double>(-most), 0, 'f', 1), Colour("textMuted"), 10,
                Qt::AlignRight);
}

// --- Chorus and flanger --------------------------------------------------------------------------------------

void CSwingPicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const int voices = std::max(1, static_cast<int>(roles.Number("voices", 1)));
    const auto delay = static_cast<qreal>(roles.Number("delay", 7));
    const auto depth = static_cast<qreal>(roles.Number("depth", 3));
    constexpr qreal kLongest = 42;  // ms
    const QString shape = roles.Reading("shape");
    for (int voice = 0; voice < voices; ++voice) {
        const float phase = static_cast<float>(voice) / static_cast<float>(voices);
        std::vector<QPointF> points;
        for (int point = 0; point <= 96; ++point) {
            const float place = static_cast<float>(point) / 96;
            const qreal now = delay + depth * (1 + static_cast<qreal>(WaveAt(shape, place + phase, 0.5F))) / 2;
            points.emplace_back(area.left() + area.width() * static_cast<qreal>(place),
                                area.bottom() - area.height() * std::min(1.0, now / kLongest));
        }
        canvas.Polyline(points, WithOpacity(accent, voice == 0 ? 1.0F : 0.6F), 2);
    }
    canvas.Text(QRectF(area.left(), area.top(), area.width(), 12), QStringLiteral("42 ms"), Colour("textMuted"), 10,
                Qt::AlignLeft);
}

void CCombPicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const double delay = std::max(0.05, static_cast<double>(roles.Number("delay", 1))) / 1000;
    const double feedback = std::clamp(static_cast<double>(roles.Number("feedback")) / 100, -0.95, 0.95);
    constexpr double kTop = 10000;  // Hz
    std::vector<QPointF> points;
    const int columns = static_cast<int>(area.width()) * 2;
    for (int column = 0; column <= columns; ++column) {
        const double angle = kTurn * kTop * column / columns * delay;
        // The signal and its delayed self, of which a part comes back.
        const double forward = std::hypot(1 + (1 - feedback) * std::cos(angle), (1 - feedback) * std::sin(angle));
        const double back = std::hypot(1 - feedback * std::cos(angle), feedback * std::sin(angle));
        const double decibels = 20 * std::log10(std::max(0.01, forward / back / 2));
        points.emplace_back(area.left() + area.width() * column / columns,
                            area.top() + area.height() * std::clamp((18 - decibels) / 54, 0.0, 1.0));
    }
    DrawFilledCurve(canvas, std::move(points), area.bottom(), accent);
    canvas.Text(QRectF(area.left(), area.bottom() - 12, area.width(), 12), QStringLiteral("10 kHz"),
                Colour("textMuted"), 10, Qt::AlignRight);
}

}  // namespace quib
