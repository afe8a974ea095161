// SPDX-License-Identifier: GPL-3.0-or-later
// The pictures of a synthesiser's groups.
#include <algorithm>
#include <cmath>

#include "editors/panel/PanelLook.h"
#include "editors/panel/pictures/Pictures.h"
#include "texts/Texts.h"

namespace quib {

namespace {

// Each stage of an envelope gets this share of the width at the most; what is left is the held part.
constexpr qreal kAttackShare = 0.22;
constexpr qreal kDecayShare = 0.32;
constexpr qreal kReleaseShare = 0.26;
constexpr double kLowest = 20;         // Hz
constexpr double kDecades = 3;         // of the filter's axis
constexpr double kHighest = 24;        // dB
constexpr double kDepth = 72;          // dB from top to bottom
constexpr double kPlainQuality = 0.7;  // without resonance
constexpr double kMostQuality = 12;

struct EnvelopeCorners {
    QPointF start, attack, decay, keyUp, release;
};

EnvelopeCorners CornersOf(const QRectF& area, const CPictureRoles& roles) {
    const auto at = [&area](qreal x, qreal level) {
        return QPointF(area.left() + area.width() * x, area.bottom() - area.height() * level);
    };
    const auto stage = [&roles](const char* role, qreal share) { return static_cast<qreal>(roles.Get(role)) * share; };
    const auto sustain = static_cast<qreal>(roles.Get("sustain"));
    const qreal attack = stage("attack", kAttackShare);
    const qreal keyUp = 1 - kReleaseShare;
    return {at(0, 0), at(attack, 1), at(attack + stage("decay", kDecayShare), sustain), at(keyUp, sustain),
            at(keyUp + stage("release", kReleaseShare), 0)};
}

// A stage that nears its end the more slowly the closer it is.
void AddFall(std::vector<QPointF>& points, const QPointF& from, const QPointF& to) {
    constexpr int kSteps = 16;
    constexpr qreal kBend = 4;
    const qreal whole = 1 - std::exp(-kBend);
    for (int step = 1; step <= kSteps; ++step) {
        const qreal share = static_cast<qreal>(step) / kSteps;
        const qreal fallen = (1 - std::exp(-kBend * share)) / whole;
        points.emplace_back(from.x() + (to.x() - from.x()) * share, from.y() + (to.y() - from.y()) * fallen);
    }
}

// Decibels of a second-order filter, or two in a row, at a ratio of the frequency to the cutoff.
double ResponseOf(const QString& type, double ratio, double quality) {
    const double square = ratio * ratio;
    const double bottom = (1 - square) * (1 - square) + square / (quality * quality);
    const auto decibels = [](double power) { return 10 * std::log10(std::max(power, 1e-12)); };
    if (type.startsWith(QLatin1String("HP"))) return decibels(square * square / bottom);
    if (type.startsWith(QLatin1String("BP"))) return decibels(square / (quality * quality) / bottom);
    const double plain = (1 - square) * (1 - square) + square / (kPlainQuality * kPlainQuality);
    return decibels(1 / bottom) + (type.endsWith(QLatin1String("24")) ? decibels(1 / plain) : 0);
}

qreal FilterY(const QRectF& area, const CPictureRoles& roles, double share) {
    const double ratio = std::pow(10, kDecades * (share - static_cast<double>(roles.Get("cutoff"))));
    const double resonance = static_cast<double>(roles.Get("resonance"));
    const double quality = kPlainQuality * std::pow(kMostQuality / kPlainQuality, resonance);
    const double response = ResponseOf(roles.Reading("type"), ratio, quality);
    return area.top() + area.height() * std::clamp((kHighest - response) / kDepth, 0.0, 1.0);
}

}  // namespace

// --- Waves ---------------------------------------------------------------------------------------------------

bool CWavePicture::HasEdge(const CPictureRoles& roles) const {
    return roles.Has("width") && roles.Reading("shape") == QLatin1String("Pulse");
}

void CWavePicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const QString shape = roles.Reading("shape");
    const float width = HasEdge(roles) ? roles.Number("width", 50) / 100 : 0.5F;
    const int count = std::max(2, static_cast<int>(area.width() * 2));
    std::vector<QPointF> points;
    for (int point = 0; point < count; ++point) {
        const qreal share = static_cast<qreal>(point) / (count - 1);
        const float level =
            WaveAt(shape, std::min(static_cast<float>(share * periods), static_cast<float>(periods) - 0.001F), width);
        points.emplace_back(area.left() + area.width() * share,
                            area.center().y() - static_cast<qreal>(level) * (area.height() / 2 - 2));
    }
    canvas.Polyline(points, accent, 2);
}

std::vector<PictureHandle> CWavePicture::Handles(const QRectF& area, const CPictureRoles& roles) const {
    if (!HasEdge(roles)) return {};
    const auto width = static_cast<qreal>(roles.Number("width", 50) / 100);
    return {{QPointF(area.left() + area.width() * width / periods, area.center().y())}};
}

void CWavePicture::Drag(int, const QPointF& place, const QRectF& area, CPictureRoles& roles) const {
    roles.Set("width", ShareOf(place.x(), area.left(), area.width() / periods));
}

// --- Voices --------------------------------------------------------------------------------------------------

void CVoicesPicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const int count = std::max(1, static_cast<int>(roles.Number("count", 1)));
    const qreal reach = static_cast<qreal>(roles.Get("detune")) * (area.width() / 2 - 3);
    const auto spread = static_cast<qreal>(roles.Get("spread"));
    for (int voice = 0; voice < count; ++voice) {
        const qreal side = count > 1 ? 2.0 * voice / (count - 1) - 1 : 0;
        const qreal x = area.center().x() + side * reach;
        // Those that stand at the sides of the sound are drawn shorter.
        const qreal half = area.height() / 2 * (1 - 0.5 * std::abs(side) * spread);
        canvas.Fill(QRectF(x - 1.5, area.center().y() - half, 3, 2 * half), accent);
    }
}

// --- Filter --------------------------------------------------------------------------------------------------

void CFilterPicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const int count = static_cast<int>(area.width());
    std::vector<QPointF> points;
    for (int point = 0; point <= count; ++point) {
        const double share = static_cast<double>(point) / count;
        points.emplace_back(area.left() + area.width() * share, FilterY(area, roles, share));
    }
    DrawFilledCurve(canvas, std::move(points), area.bottom(), accent);
    const QRgb quiet = Colour("textMuted");
    const QRectF foot(area.left(), area.bottom() - 12, area.width(), 12);
    canvas.Text(foot, QStringLiteral("20"), quiet, 10, Qt::AlignLeft);
    canvas.Text(foot, QStringLiteral("20k"), quiet, 10, Qt::AlignRight);
    const qreal kilo = area.width() * std::log10(1000 / kLowest) / kDecades;
    canvas.Text(QRectF(area.left() + kilo - 15, foot.top(), 30, 12), QStringLiteral("1k"), quiet, 10);
    if (!roles.Has("reach")) return;
    const auto cutoff = static_cast<qreal>(roles.Get("cutoff"));
    const qreal reach = roles.Number("reach") / 12.0 * std::log10(2.0) / kDecades;
    if (reach == 0) return;
    const qreal from = area.left() + area.width() * cutoff;
    const qreal to = std::clamp(from + area.width() * reach, area.left(), area.right());
    const QRgb envelope = Palette().Accent(ESection::kMix);
    canvas.FillRound(QRectF(std::min(from, to), area.top() - 2, std::abs(to - from), 4), 2, envelope);
}

std::vector<PictureHandle> CFilterPicture::Handles(const QRectF& area, const CPictureRoles& roles) const {
    const auto cutoff = static_cast<double>(roles.Get("cutoff"));
    return {{QPointF(area.left() + area.width() * cutoff, FilterY(area, roles, cutoff)), true}};
}

void CFilterPicture::Drag(int, const QPointF& place, const QRectF& area, CPictureRoles& roles) const {
    roles.Set("cutoff", ShareOf(place.x(), area.left(), area.width()));
    // Up is more: from the plain response at the cutoff to the top.
    const double response = kHighest - kDepth * (place.y() - area.top()) / area.height();
    const double plain = ResponseOf(roles.Reading("type"), 1, 1);
    const double quality = std::pow(10, (response - plain) / 20);
    const double resonance = std::log(quality / kPlainQuality) / std::log(kMostQuality / kPlainQuality);
    roles.Set("resonance", static_cast<float>(std::clamp(resonance, 0.0, 1.0)));
}

// --- Envelope ------------------------------------------------------------------------------------------------

void CEnvelopePicture::Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const {
    const EnvelopeCorners corners = CornersOf(area, roles);
    std::vector<QPointF> points{corners.start, corners.attack};
    AddFall(points, corners.attack, corners.decay);
    points.push_back(corners.keyUp);
    AddFall(points, corners.keyUp, corners.release);
    DrawFilledCurve(canvas, std::move(points), area.bottom(), accent);
    const qreal x = std::floor(corners.keyUp.x());
    for (qreal y = area.top(); y < area.bottom(); y += 4) canvas.Fill(QRectF(x, y, 1, 2), Colour("textMuted"));
    canvas.Text(QRectF(x - 64, area.top(), 60, 12), Text("key up"), Colour("textMuted"), 10, Qt::AlignRight);
}

std::vector<PictureHandle> CEnvelopePicture::Handles(const QRectF& area, const CPictureRoles& roles) const {
    const EnvelopeCorners corners = CornersOf(area, roles);
    return {{corners.attack}, {corners.decay}, {corners.release}};
}

void CEnvelopePicture::Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const {
    const EnvelopeCorners corners = CornersOf(area, roles);
    if (handle == 0) roles.Set("attack", ShareOf(place.x(), area.left(), area.width() * kAttackShare));
    if (handle == 1) {
        roles.Set("decay", ShareOf(place.x(), corners.attack.x(), area.width() * kDecayShare));
        roles.Set("sustain", ShareOf(-place.y(), -area.bottom(), area.height()));
    }
    if (handle == 2) roles.Set("release", ShareOf(place.x(), corners.keyUp.x(), area.width() * kReleaseShare));
}

}  // namespace quib
