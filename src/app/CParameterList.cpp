// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CParameterList.h"

#include <QContextMenuEvent>
#include <QInputDialog>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

#include "app/learn/LearnMenu.h"
#include "document/CWorkstation.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kMargin = 8;
constexpr float kFine = 0.1F;
constexpr float kWheelStep = 0.02F;

bool IsFine(Qt::KeyboardModifiers keys) { return (keys & (Qt::ShiftModifier | Qt::ControlModifier)) != 0; }

}  // namespace

CParameterList::CParameterList(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin)
    : workstation(projectOwner), plugin(std::move(shownPlugin)) {
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    const int count = static_cast<int>(plugin->Parameters().size());
    for (int i = 0; i < count; ++i) opening.push_back(plugin->Parameter(i));
    lastSeen = opening;
    SetFilter({});
}

void CParameterList::SetFilter(const QString& text) {
    rows.clear();
    const auto& parameters = plugin->Parameters();
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const QString name = QString::fromStdString(parameters[i].name);
        if (text.isEmpty() || name.contains(text, Qt::CaseInsensitive)) rows.push_back(static_cast<int>(i));
    }
    UpdateRange();
    viewport()->update();
}

int CParameterList::RowHeight() const { return fontMetrics().height() + 8; }

void CParameterList::UpdateRange() {
    verticalScrollBar()->setRange(0, std::max(0, RowCount() * RowHeight() - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(RowHeight());
}

void CParameterList::resizeEvent(QResizeEvent*) { UpdateRange(); }

int CParameterList::RowAt(const QPoint& point) const {
    const int row = (point.y() + verticalScrollBar()->value()) / RowHeight();
    return row >= 0 && row < RowCount() ? row : -1;
}

// Names take a third, values a quarter of the width.
QRect CParameterList::SliderOf(int row) const {
    const int width = viewport()->width();
    const int top = row * RowHeight() - verticalScrollBar()->value();
    const int left = width / 3 + kMargin;
    return {left, top + 5, std::max(20, width - left - width / 4 - kMargin), RowHeight() - 10};
}

float CParameterList::Value(int row) const { return plugin->Parameter(rows[static_cast<std::size_t>(row)]); }

QString CParameterList::ValueText(int row) const {
    const int parameter = rows[static_cast<std::size_t>(row)];
    const QString value = QString::fromStdString(plugin->ParameterText(parameter)).trimmed();
    const QString unit = QString::fromStdString(plugin->ParameterUnit(parameter)).trimmed();
    return unit.isEmpty() ? value : value + QLatin1Char(' ') + unit;
}

void CParameterList::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
    const int first = std::max(0, RowAt({0, 0}));
    for (int row = first; row < RowCount(); ++row) {
        const QRect slider = SliderOf(row);
        if (slider.top() > viewport()->height()) break;
        const auto parameter = static_cast<std::size_t>(rows[static_cast<std::size_t>(row)]);
        const float value = std::clamp(Value(row), 0.0F, 1.0F);
        lastSeen[parameter] = value;
        const QRect line(0, slider.top() - 5, viewport()->width(), RowHeight());
        if (row % 2 != 0) painter.fillRect(line, palette().color(QPalette::Window));
        painter.setPen(palette().color(QPalette::Text));
        const QRect name(kMargin, line.top(), slider.left() - 2 * kMargin, line.height());
        painter.drawText(name, Qt::AlignVCenter | Qt::AlignLeft,
                         fontMetrics().elidedText(QString::fromStdString(plugin->Parameters()[parameter].name),
                                                  Qt::ElideRight, name.width()));
        const QRect text(slider.right() + kMargin, line.top(), line.width() - slider.right() - 2 * kMargin,
                         line.height());
        painter.drawText(text, Qt::AlignVCenter | Qt::AlignRight,
                         fontMetrics().elidedText(ValueText(row), Qt::ElideRight, text.width()));
        painter.fillRect(slider, palette().color(QPalette::Mid));
        QRect filled = slider;
        filled.setWidth(static_cast<int>(value * static_cast<float>(slider.width())));
        painter.fillRect(filled, palette().color(QPalette::Highlight));
    }
}

void CParameterList::Refresh() {
    const int first = std::max(0, RowAt({0, 0}));
    const int last = std::min(RowCount(), first + viewport()->height() / RowHeight() + 2);
    for (int row = first; row < last; ++row) {
        const auto parameter = static_cast<std::size_t>(rows[static_cast<std::size_t>(row)]);
        if (lastSeen[parameter] != std::clamp(Value(row), 0.0F, 1.0F)) return viewport()->update();
    }
}

void CParameterList::Set(int row, float value) {
    plugin->SetParameter(rows[static_cast<std::size_t>(row)], std::clamp(value, 0.0F, 1.0F));
    viewport()->update();
}

void CParameterList::Edit(int row, float before) {
    workstation.Places().ParameterEdited(plugin, rows[static_cast<std::size_t>(row)], before, Value(row));
}

void CParameterList::mousePressEvent(QMouseEvent* event) {
    const int row = RowAt(event->pos());
    if (event->button() != Qt::LeftButton || row < 0) return;
    const float before = Value(row);
    if ((event->modifiers() & Qt::AltModifier) != 0) {
        Set(row, opening[static_cast<std::size_t>(rows[static_cast<std::size_t>(row)])]);
        return Edit(row, before);
    }
    if (!SliderOf(row).adjusted(-4, -5, 4, 5).contains(event->pos())) return;
    dragged = row;
    dragStart = before;
    dragPoint = event->pos();
    dragValue = before;
    if (!IsFine(event->modifiers())) {
        dragValue =
            static_cast<float>(event->pos().x() - SliderOf(row).left()) / static_cast<float>(SliderOf(row).width());
        Set(row, dragValue);
    }
}

void CParameterList::mouseMoveEvent(QMouseEvent* event) {
    if (dragged < 0) return;
    const float moved =
        static_cast<float>(event->pos().x() - dragPoint.x()) / static_cast<float>(SliderOf(dragged).width());
    dragPoint = event->pos();
    dragValue += IsFine(event->modifiers()) ? moved * kFine : moved;
    Set(dragged, dragValue);
}

void CParameterList::mouseReleaseEvent(QMouseEvent*) {
    if (dragged >= 0) Edit(dragged, dragStart);
    dragged = -1;
}

void CParameterList::mouseDoubleClickEvent(QMouseEvent* event) {
    const int row = RowAt(event->pos());
    if (row < 0 || SliderOf(row).contains(event->pos())) return;
    bool accepted = false;
    const QString name = QString::fromStdString(
        plugin->Parameters()[static_cast<std::size_t>(rows[static_cast<std::size_t>(row)])].name);
    const QString text = QInputDialog::getText(this, name, Text("Value"), QLineEdit::Normal, ValueText(row), &accepted);
    if (accepted) SetByText(row, text);
}

void CParameterList::SetByText(int row, const QString& text) {
    const float before = Value(row);
    const int parameter = rows[static_cast<std::size_t>(row)];
    if (!plugin->SetParameterText(parameter, text.toStdString())) {
        bool isNumber = false;
        const float value = text.toFloat(&isNumber);
        if (isNumber) Set(row, value);
    }
    viewport()->update();
    Edit(row, before);
}

void CParameterList::wheelEvent(QWheelEvent* event) {
    const int row = RowAt(event->position().toPoint());
    if (row < 0 || !SliderOf(row).contains(event->position().toPoint())) {
        return QAbstractScrollArea::wheelEvent(event);
    }
    const float before = Value(row);
    const float step = IsFine(event->modifiers()) ? kWheelStep * kFine : kWheelStep;
    Set(row, before + step * static_cast<float>(event->angleDelta().y()) / 120.0F);
    Edit(row, before);
    event->accept();
}

std::optional<ControlTarget> CParameterList::TargetOf(int row) const {
    SlotPlace place;
    if (!workstation.Places().FindPlugin(plugin.get(), place)) return std::nullopt;
    const EControlTarget kind = TargetKindOf(place);
    return ControlTarget{kind, IsOfInstrument(kind) ? place.instrument : 0, rows[static_cast<std::size_t>(row)]};
}

std::vector<CControl::Learnable> CParameterList::LearnableParts() const {
    std::vector<CControl::Learnable> parts;
    for (int row = std::max(0, RowAt({0, 0})); row < RowCount(); ++row) {
        const QRect slider = SliderOf(row);
        if (slider.top() > viewport()->height()) break;
        if (const auto target = TargetOf(row)) parts.push_back({slider.adjusted(0, -3, 0, 3), *target});
    }
    return parts;
}

void CParameterList::contextMenuEvent(QContextMenuEvent* event) {
    const int row = RowAt(viewport()->mapFromGlobal(event->globalPos()));
    const auto target = row >= 0 ? TargetOf(row) : std::nullopt;
    if (!target) return;
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    AddLearnItems(*menu, workstation.Controllers(), *target);
    menu->popup(event->globalPos());
}

}  // namespace quib
