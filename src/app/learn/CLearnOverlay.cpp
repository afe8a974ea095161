// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/learn/CLearnOverlay.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "controls/CPalette.h"
#include "controls/CWinControl.h"

namespace quib {

namespace {

constexpr int kBlinkTicks = 8;  // of 40 ms, on and off
constexpr int kVeil = 90;       // of 255, over what cannot be learned
constexpr int kTint = 70;
constexpr int kStrongTint = 150;
constexpr int kTextHeight = 10;  // skin pixels

void List(const CControl& control, std::vector<CControl::Learnable>& parts) {
    if (!control.IsShown()) return;
    control.ListLearnable(parts);
    for (const auto& child : control.Children()) List(*child, parts);
}

QColor Tint(QRgb colour, int opacity) {
    QColor tint = QColor::fromRgb(colour);
    tint.setAlpha(opacity);
    return tint;
}

}  // namespace

std::vector<CControl::Learnable> LearnableParts(const CWinControl& window) {
    std::vector<CControl::Learnable> parts;
    for (const auto& control : window.Controls()) List(*control, parts);
    std::erase_if(parts, [](const CControl::Learnable& part) { return part.area.isEmpty(); });
    for (CControl::Learnable& part : parts) part.area = window.ToWidget(part.area);
    return parts;
}

CLearnOverlay::CLearnOverlay(CControllers& controllerMap, List listParts, QWidget* window)
    : QWidget(window), controllers(controllerMap), list(std::move(listParts)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::NoFocus);
    setObjectName(QStringLiteral("learn"));
    connect(&controllers, &CControllers::Changed, this, qOverload<>(&QWidget::update));
    Tick();
    show();
    raise();
}

void CLearnOverlay::Tick() {
    if (size() != parentWidget()->size()) resize(parentWidget()->size());
    auto next = list();
    const bool blinks = controllers.Learning() && ++blink % kBlinkTicks == 0;
    if (next == parts && !blinks) return;
    parts = std::move(next);
    update();
}

const CControl::Learnable* CLearnOverlay::PartAt(const QPoint& point) const {
    // What stands in another control comes after it.
    const auto found =
        std::find_if(parts.rbegin(), parts.rend(), [&](const auto& part) { return part.area.contains(point); });
    return found == parts.rend() ? nullptr : &*found;
}

void CLearnOverlay::mousePressEvent(QMouseEvent* event) {
    const CControl::Learnable* const part = PartAt(event->pos());
    event->accept();
    if (part == nullptr) return controllers.CancelLearning();
    const ControlTarget target = part->target;
    if (event->button() == Qt::RightButton) {
        Q_EMIT MenuWanted(target);
    } else {
        controllers.Learn(target);
    }
}

void CLearnOverlay::mouseMoveEvent(QMouseEvent* event) {
    PartAt(event->pos()) != nullptr ? setCursor(Qt::PointingHandCursor) : unsetCursor();
}

bool CLearnOverlay::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto& help = *static_cast<QHelpEvent*>(event);
    const CControl::Learnable* const part = PartAt(help.pos());
    if (part == nullptr) {
        QToolTip::hideText();
        return true;
    }
    QString text = controllers.OwnerText(part->target) + QStringLiteral(": ") + controllers.TargetText(part->target);
    if (const auto* const bound = controllers.Find(part->target)) {
        const ControlSource& source = bound->binding.source;
        text += QStringLiteral("\n%1, %2")
                    .arg(CControllers::SourceText(source), CControllers::ChannelText(source.channelSelector));
    }
    QToolTip::showText(help.globalPos(), text, this);
    return true;
}

void CLearnOverlay::DrawPart(QPainter& painter, const CControl::Learnable& part) const {
    const QRgb accent = Palette().Accent(ESection::kTransport);
    const CControlMap::Entry* const bound = controllers.Find(part.target);
    const bool learns = controllers.Learning() == part.target;
    const bool lit = learns && blink / kBlinkTicks % 2 == 0;
    const QRgb colour = learns ? Palette().Colour(QStringLiteral("record")) : accent;
    const QRectF area = QRectF(part.area).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(Tint(colour, bound != nullptr || learns ? 255 : 170), learns ? 2 : 1));
    painter.setBrush(Tint(colour, bound != nullptr || lit ? kStrongTint : kTint));
    painter.drawRoundedRect(area, 3, 3);
    if (bound == nullptr) return;
    const QString text = CControllers::SourceText(bound->binding.source);
    const QFontMetricsF metrics(painter.font());
    if (metrics.horizontalAdvance(text) > area.width() || metrics.ascent() > area.height()) return;
    painter.setPen(Palette().Colour(QStringLiteral("wellDeep")));
    painter.drawText(area, Qt::AlignCenter, text);
}

void CLearnOverlay::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRegion rest(rect());
    for (const CControl::Learnable& part : parts) rest -= part.area;
    painter.setClipRegion(rest);
    painter.fillRect(rect(), QColor(0, 0, 0, kVeil));
    painter.setClipping(false);
    const auto* const window = qobject_cast<const CWinControl*>(parentWidget());
    QFont font = SkinFont(kTextHeight, true);
    font.setPixelSize(static_cast<int>(kTextHeight * (window != nullptr ? window->UiScale() : 1)));
    painter.setFont(font);
    for (const CControl::Learnable& part : parts) DrawPart(painter, part);
}

}  // namespace quib
