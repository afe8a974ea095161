// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CWinControl.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "controls/CBubble.h"
#include "controls/CEntryDialog.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {

int ButtonOf(const QMouseEvent& event) {
    if (event.button() == Qt::LeftButton) return 0;
    if (event.button() == Qt::MiddleButton) return 2;
    return event.button() == Qt::RightButton ? 1 : -1;
}

}  // namespace

CWinControl::CWinControl(const CControlSettings& controlSettings, const char* backgroundName, QWidget* parent)
    : QWidget(parent), settings(controlSettings), background(backgroundName), bubble(new CBubble(*this)) {
    InstallSpokenWindows();
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

CWinControl::~CWinControl() { controls.clear(); }

void CWinControl::Remove(CControl& control) {
    std::erase_if(controls, [&control](const auto& entry) { return entry.get() == &control; });
}

void CWinControl::Forget(const CControl& control) noexcept {
    mouse.Forget(control);
    typing.Forget(control);
    keyFocus.Forget(control);
    spokenTree.Forget(control);
    for (CControl** const kept : {&menuTarget, &entryTarget}) {
        if (*kept == &control) *kept = nullptr;
    }
}

QSize CWinControl::SkinSize() const {
    return {static_cast<int>(std::ceil(width() / uiScale)), static_cast<int>(std::ceil(height() / uiScale))};
}

void CWinControl::SetUiScale(qreal scale) {
    uiScale = std::clamp(scale, 0.75, 3.0);
    HideBubble();
    LayoutAndRefresh();
}

void CWinControl::LayoutAndRefresh() {
    const QSize size = SkinSize();
    if (size.isEmpty()) return;
    skin.SetScale(PhysicalScale());
    canvas.Reset(size, PhysicalScale(), Palette().Colour(QLatin1String(background)));
    hasBackBuffer = true;
    Arrange(size);
    canvas.SetClip(QRect(QPoint(0, 0), size));
    DrawBackground();
    for (const auto& control : controls) {
        control->Layout(0, 0, ClipOf(*control));
        control->Refresh(false);
    }
    update();
}

QPoint CWinControl::ToSkin(const QPointF& position) const {
    return {static_cast<int>(std::floor(position.x() / uiScale)), static_cast<int>(std::floor(position.y() / uiScale))};
}

QRect CWinControl::ToWidget(const QRect& rectangle) const {
    return QRectF(rectangle.x() * uiScale, rectangle.y() * uiScale, rectangle.width() * uiScale,
                  rectangle.height() * uiScale)
        .toAlignedRect();
}

void CWinControl::BlitRectangle(const QRect& rectangle) {
    if (!rectangle.isEmpty()) update(ToWidget(rectangle));
}

void CWinControl::Tick() {
    // By index: what ticks may build or remove others.
    for (std::size_t index = 0; index < tickedControls.size(); ++index) tickedControls[index]->Tick();
    for (const auto& control : controls) {
        if (!control->ShownRectangle().isEmpty()) control->RefreshIfChanged();
    }
}

// --- The bubble, entries and menus ----------------------------------------------------------------------

void CWinControl::ShowBubble(CControl& control, const QString& text) {
    bubble->ShowText(text, ToWidget(control.Rectangle()), Palette().Accent(control.section), uiScale);
}

void CWinControl::ShowBubble(const QRect& place, const QString& text, QRgb accent) {
    bubble->ShowText(text, ToWidget(place), accent, uiScale);
}

void CWinControl::HideBubble() { bubble->hide(); }

void CWinControl::RunManualEntry(CControl& control) {
    entryTarget = &control;
    const QString text = control.EntryText();
    auto* const dialog = new CEntryDialog(control.EntryTitle(), text, this);
    dialog->move(mapToGlobal(ToWidget(control.Rectangle()).topLeft()) + QPoint(20, 40));
    connect(dialog, &QDialog::accepted, this, [this, dialog, text] {
        if (entryTarget == nullptr) return;
        // What is shown rounded and left as it is must not round the value.
        if (entryTarget->formatEntry && dialog->Text() == text) return;
        if (entryTarget->onTextEntry) return entryTarget->onTextEntry(*entryTarget, dialog->Text());
        entryTarget->TakeNumber(CEntryDialog::NumberOf(dialog->Text()));
    });
    connect(dialog, &QDialog::finished, this, [this] {
        if (entryTarget != nullptr) entryTarget->Update(false, true);
        entryTarget = nullptr;
    });
    dialog->open();
}

void CWinControl::ShowPopupMenu(CControl& control) {
    menuTarget = &control;
    if (onPopupMenu) onPopupMenu(control, control.popupMenu);
}

QPoint CWinControl::MenuPoint() const {
    const QRect area = keyFocus.Area();
    return keyFocus.IsActing() && !area.isEmpty() ? mapToGlobal(ToWidget(area).bottomLeft()) : QCursor::pos();
}

// --- Events -------------------------------------------------------------------------------------------------

bool CWinControl::event(QEvent* event) {
    // A digit for the control under the mouse or with the ring, or a key for the latter, whatever it is a shortcut of.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (typing.WouldTake(key) || keyFocus.WouldTake(key)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

void CWinControl::paintEvent(QPaintEvent* event) {
    // The window may have come to a screen of another scale.
    if (canvas.Scale() != PhysicalScale()) LayoutAndRefresh();
    QPainter painter(this);
    // At a scale that is no whole number pixels at the edge of a control may be its neighbour's.
    QRegion kept = event->region();
    for (CPainted* const painted : paintedControls) {
        const CControl& control = painted->Painted();
        if (control.IsShown()) kept -= canvas.WidgetPart(control.ShownRectangle(), devicePixelRatioF());
    }
    canvas.CopyTo(painter, kept, devicePixelRatioF());
    QRegion left = event->region();
    for (CPainted* const painted : paintedControls) {
        if (!painted->Painted().IsShown()) continue;
        const QRegion part = left.intersected(ToWidget(painted->Painted().ShownRectangle()));
        left -= part;
        canvas.DrawTo(painter, part, devicePixelRatioF(), [painted](const QRect& area) { painted->PaintArea(area); });
    }
    for (const QRect& rectangle : event->region()) {
        paintedPixels += static_cast<qint64>(rectangle.width()) * rectangle.height();
    }
    DrawRing(painter);
}

// Above what the controls have drawn, and never a part of it.
void CWinControl::DrawRing(QPainter& painter) const {
    constexpr int kWidth = 2;
    const QRect area = keyFocus.Area();
    if (area.isEmpty() || !hasFocus()) return;
    painter.setPen(QPen(QColor::fromRgb(Palette().Colour(QStringLiteral("focus"))), kWidth * uiScale));
    painter.drawRect(ToWidget(area.adjusted(-kWidth, -kWidth, kWidth, kWidth)));
}

void CWinControl::resizeEvent(QResizeEvent* /*event*/) { LayoutAndRefresh(); }

void CWinControl::showEvent(QShowEvent* /*event*/) { LayoutAndRefresh(); }

void CWinControl::FollowMouse(const QMouseEvent& event) {
    modifiers = event.modifiers();
    const QPoint point = ToSkin(event.position());
    mouse.Move(point.x(), point.y());
    if (typing.Target() != mouse.Hovered() && typing.Target() != keyFocus.Control()) typing.Commit();
}

void CWinControl::mouseMoveEvent(QMouseEvent* event) { FollowMouse(*event); }

void CWinControl::mousePressEvent(QMouseEvent* event) {
    modifiers = event->modifiers();
    typing.Commit();
    const QPoint point = ToSkin(event->position());
    if (const int button = ButtonOf(*event); button >= 0) mouse.Press(button, point.x(), point.y(), event->timestamp());
}

void CWinControl::mouseReleaseEvent(QMouseEvent* event) {
    modifiers = event->modifiers();
    const QPoint point = ToSkin(event->position());
    if (const int button = ButtonOf(*event); button >= 0)
        mouse.Release(button, point.x(), point.y(), event->timestamp());
}

void CWinControl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return mousePressEvent(event);
    modifiers = event->modifiers();
    typing.Commit();
    const QPoint point = ToSkin(event->position());
    mouse.DoubleClick(point.x(), point.y(), event->timestamp());
}

void CWinControl::wheelEvent(QWheelEvent* event) {
    modifiers = event->modifiers();
    // A window that opened under the mouse has seen no move yet.
    if (mouse.X() < 0) {
        const QPoint point = ToSkin(event->position());
        mouse.Move(point.x(), point.y());
    }
    mouse.Wheel(WheelWordOf(*event));
    event->accept();
}

void CWinControl::leaveEvent(QEvent* /*event*/) {
    typing.Commit();
    mouse.Leave();
    unsetCursor();
}

// By index: a control that is told a key may build or remove others.
void CWinControl::keyPressEvent(QKeyEvent* event) {
    modifiers = event->modifiers();
    if (typing.Take(*event) || keyFocus.Take(*event)) return;
    const int key = VirtualKeyOf(*event);
    if (key != 0 && !event->isAutoRepeat()) {
        for (std::size_t index = 0; index < controls.size(); ++index) controls[index]->BroadcastKeyDown(key);
    }
    event->ignore();
}

void CWinControl::BroadcastKeyUp(int virtualKey) {
    for (std::size_t index = 0; index < controls.size(); ++index) controls[index]->BroadcastKeyUp(virtualKey);
}

void CWinControl::keyReleaseEvent(QKeyEvent* event) {
    modifiers = event->modifiers();
    const int key = VirtualKeyOf(*event);
    if (key != 0 && !event->isAutoRepeat()) BroadcastKeyUp(key);
    event->ignore();
}

bool CWinControl::focusNextPrevChild(bool next) { return keyFocus.Step(next ? 1 : -1); }

void CWinControl::focusInEvent(QFocusEvent* event) {
    BlitRectangle(RingOf(keyFocus.Area()));
    QWidget::focusInEvent(event);
}

// A key that goes up elsewhere is not told to this window.
void CWinControl::focusOutEvent(QFocusEvent* event) {
    BlitRectangle(RingOf(keyFocus.Area()));
    typing.Commit();
    BroadcastKeyUp(virtualKey::kShift);
    BroadcastKeyUp(virtualKey::kControl);
    QWidget::focusOutEvent(event);
}

}  // namespace quib
