// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CWinControl.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "controls/CBubble.h"
#include "controls/CEntryDialog.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {

constexpr int kTypingTime = 1200;  // milliseconds after the last digit

int ButtonOf(const QMouseEvent& event) {
    if (event.button() == Qt::LeftButton) return 0;
    return event.button() == Qt::RightButton ? 1 : -1;
}

}  // namespace

CWinControl::CWinControl(const CControlSettings& controlSettings, QRgb backgroundColour, QWidget* parent)
    : QWidget(parent),
      settings(controlSettings),
      background(backgroundColour),
      typingEnd(new QTimer(this)),
      bubble(new CBubble(*this)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    typingEnd->setSingleShot(true);
    connect(typingEnd, &QTimer::timeout, this, [this] { CommitTyped(); });
}

CWinControl::~CWinControl() { controls.clear(); }

void CWinControl::Remove(CControl& control) {
    std::erase_if(controls, [&control](const auto& entry) { return entry.get() == &control; });
}

void CWinControl::Forget(const CControl& control) noexcept {
    mouse.Forget(control);
    if (typingTarget == &control) typed.clear();
    for (CControl** const kept : {&menuTarget, &entryTarget, &typingTarget}) {
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
    canvas.Reset(size, PhysicalScale(), background);
    hasBackBuffer = true;
    Arrange(size);
    canvas.SetClip(QRect(QPoint(0, 0), size));
    DrawBackground();
    for (const auto& control : controls) {
        control->Layout(0, 0, QRect(QPoint(0, 0), size));
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
    for (const auto& control : controls) control->RefreshIfChanged();
}

// --- The bubble, entries and menus ----------------------------------------------------------------------

void CWinControl::ShowBubble(CControl& control, const QString& text) {
    bubble->ShowText(text, ToWidget(control.Rectangle()), Palette().Accent(control.section), uiScale);
}

void CWinControl::HideBubble() { bubble->hide(); }

void CWinControl::RunManualEntry(CControl& control) {
    entryTarget = &control;
    const QString text = control.Value() != nullptr && control.entryText.isEmpty()
                             ? QString::number(static_cast<double>(control.ValueNow()))
                             : control.entryText;
    auto* const dialog = new CEntryDialog(control.entryTitle, text, this);
    dialog->move(mapToGlobal(ToWidget(control.Rectangle()).topLeft()) + QPoint(20, 40));
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        if (entryTarget == nullptr) return;
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

// --- Events -------------------------------------------------------------------------------------------------

bool CWinControl::event(QEvent* event) {
    // A digit for the control under the mouse, whatever it is a shortcut of.
    if (event->type() == QEvent::ShortcutOverride && WouldType(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void CWinControl::paintEvent(QPaintEvent* event) {
    // The window may have come to a screen of another scale.
    if (canvas.Scale() != PhysicalScale()) LayoutAndRefresh();
    QPainter painter(this);
    const QImage& image = canvas.Image();
    const qreal ratio = devicePixelRatioF();
    for (const QRect& rectangle : event->region()) {
        const QRectF source(rectangle.x() * ratio, rectangle.y() * ratio, rectangle.width() * ratio,
                            rectangle.height() * ratio);
        painter.drawImage(QRectF(rectangle), image, source);
        paintedPixels += static_cast<qint64>(rectangle.width()) * rectangle.height();
    }
}

void CWinControl::resizeEvent(QResizeEvent* /*event*/) { LayoutAndRefresh(); }

void CWinControl::showEvent(QShowEvent* /*event*/) { LayoutAndRefresh(); }

void CWinControl::FollowMouse(const QMouseEvent& event) {
    modifiers = event.modifiers();
    const QPoint point = ToSkin(event.position());
    mouse.Move(point.x(), point.y());
    if (typingTarget != nullptr && typingTarget != mouse.Hovered()) CommitTyped();
}

void CWinControl::mouseMoveEvent(QMouseEvent* event) { FollowMouse(*event); }

void CWinControl::mousePressEvent(QMouseEvent* event) {
    modifiers = event->modifiers();
    CommitTyped();
    const QPoint point = ToSkin(event->position());
    if (const int button = ButtonOf(*event); button >= 0) mouse.Press(button, point.x(), point.y());
}

void CWinControl::mouseReleaseEvent(QMouseEvent* event) {
    modifiers = event->modifiers();
    const QPoint point = ToSkin(event->position());
    if (const int button = ButtonOf(*event); button >= 0) mouse.Release(button, point.x(), point.y());
}

void CWinControl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return mousePressEvent(event);
    modifiers = event->modifiers();
    CommitTyped();
    const QPoint point = ToSkin(event->position());
    mouse.DoubleClick(point.x(), point.y());
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
    CommitTyped();
    mouse.Leave();
    unsetCursor();
}

// By index: a control that is told a key may build or remove others.
void CWinControl::keyPressEvent(QKeyEvent* event) {
    modifiers = event->modifiers();
    if (TakeTypedCharacter(*event)) return;
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

// A key that goes up elsewhere is not told to this window.
void CWinControl::focusOutEvent(QFocusEvent* event) {
    CommitTyped();
    BroadcastKeyUp(virtualKey::kShift);
    BroadcastKeyUp(virtualKey::kControl);
    QWidget::focusOutEvent(event);
}

// --- Digits typed while the mouse is over a control ------------------------------------------------------------

// The control that typed digits go to; null for none.
CControl* CWinControl::TypingTargetNow() const {
    CControl* const target = typingTarget != nullptr ? typingTarget : mouse.Hovered();
    const bool accepts = target != nullptr && target->enabled && target->Value() != nullptr && target->takesDigits;
    return accepts ? target : nullptr;
}

bool CWinControl::WouldType(const QKeyEvent& event) const {
    const QString text = event.text();
    const bool plain = (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    if (!plain || text.size() != 1 || TypingTargetNow() == nullptr) return false;
    const QChar character = text[0];
    if (character.isDigit()) return true;
    if (character == QLatin1Char('-')) return typed.isEmpty();
    return (character == QLatin1Char('.') || character == QLatin1Char(',')) && !typed.contains(QLatin1Char('.'));
}

void CWinControl::ShowTyped() {
    ShowBubble(*typingTarget, typed + QLatin1Char('_'));
    typingEnd->start(kTypingTime);
}

// Return, Escape and Backspace while something is typed.
bool CWinControl::EditTyped(const QKeyEvent& event) {
    if (typingTarget == nullptr) return false;
    switch (event.key()) {
        case Qt::Key_Escape:
            typed.clear();
            break;
        case Qt::Key_Backspace:
            typed.chop(1);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            CommitTyped();
            return true;
        default:
            return false;
    }
    if (typed.isEmpty()) {
        CommitTyped();
        HideBubble();
    } else {
        ShowTyped();
    }
    return true;
}

bool CWinControl::TakeTypedCharacter(const QKeyEvent& event) {
    if (EditTyped(event)) return true;
    if (!WouldType(event)) return false;
    typingTarget = TypingTargetNow();
    const QChar character = event.text()[0];
    typed += character == QLatin1Char(',') ? QLatin1Char('.') : character;
    ShowTyped();
    return true;
}

void CWinControl::CommitTyped() {
    CControl* const target = std::exchange(typingTarget, nullptr);
    const QString text = std::exchange(typed, {});
    typingEnd->stop();
    if (target == nullptr || text.isEmpty()) return;
    if (target->onTextEntry) return target->onTextEntry(*target, text);
    target->TakeNumber(CEntryDialog::NumberOf(text));
}

}  // namespace quib
