// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CWinControl.h"

#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "controls/CEntryDialog.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {

constexpr int kBubbleTime = 900;   // milliseconds after the last change
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
      bubble(new QLabel(this)),
      bubbleEnd(new QTimer(this)) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    bubble->setAttribute(Qt::WA_TransparentForMouseEvents);
    bubble->setAlignment(Qt::AlignCenter);
    bubble->hide();
    bubbleEnd->setSingleShot(true);
    connect(bubbleEnd, &QTimer::timeout, bubble, &QWidget::hide);
    typingEnd->setSingleShot(true);
    connect(typingEnd, &QTimer::timeout, this, [this] { CommitTyped(); });
}

CWinControl::~CWinControl() { controls.clear(); }

void CWinControl::Remove(CControl& control) {
    std::erase_if(controls, [&control](const auto& entry) { return entry.get() == &control; });
}

void CWinControl::Forget(const CControl& control) noexcept {
    mouse.Forget(control);
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
    for (CTicked* const ticked : tickedControls) ticked->Tick();
    for (const auto& control : controls) control->RefreshIfChanged();
}

// --- The bubble, entries and menus ----------------------------------------------------------------------

void CWinControl::ShowBubble(CControl& control, const QString& text) {
    bubble->setFont(SkinFont(static_cast<int>(std::lround(11 * uiScale)), true));
    bubble->setStyleSheet(
        QStringLiteral("background:#%1;color:#%2;border:1px solid #%3;border-radius:4px;padding:1px 5px;")
            .arg(Palette().Colour(QStringLiteral("wellDeep")) & 0xFFFFFFU, 6, 16, QLatin1Char('0'))
            .arg(Palette().Colour(QStringLiteral("text")) & 0xFFFFFFU, 6, 16, QLatin1Char('0'))
            .arg(Palette().Accent(control.section) & 0xFFFFFFU, 6, 16, QLatin1Char('0')));
    bubble->setText(text);
    bubble->adjustSize();
    const QRect place = ToWidget(control.Rectangle());
    const int left = std::clamp(place.center().x() - bubble->width() / 2, 0, std::max(0, width() - bubble->width()));
    const int above = place.top() - bubble->height() - 4;
    bubble->move(left, above >= 0 ? above : place.bottom() + 5);
    bubble->show();
    bubble->raise();
    bubbleEnd->start(kBubbleTime);
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
        entryTarget->ChangeByUser(CEntryDialog::NumberOf(dialog->Text()));
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

void CWinControl::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QImage& image = canvas.Image();
    for (const QRect& rectangle : event->region()) {
        const qreal ratio = devicePixelRatioF();
        const QRectF source(rectangle.x() * ratio, rectangle.y() * ratio, rectangle.width() * ratio,
                            rectangle.height() * ratio);
        painter.drawImage(QRectF(rectangle), image, source);
        paintedPixels += static_cast<qint64>(rectangle.width()) * rectangle.height();
    }
}

void CWinControl::resizeEvent(QResizeEvent* /*event*/) { LayoutAndRefresh(); }

void CWinControl::showEvent(QShowEvent* /*event*/) { LayoutAndRefresh(); }

void CWinControl::mouseMoveEvent(QMouseEvent* event) {
    modifiers = event->modifiers();
    const QPoint point = ToSkin(event->position());
    mouse.Move(point.x(), point.y());
}

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
    modifiers = event->modifiers();
    const QPoint point = ToSkin(event->position());
    if (event->button() == Qt::LeftButton) return mouse.DoubleClick(point.x(), point.y());
    mousePressEvent(event);
}

void CWinControl::wheelEvent(QWheelEvent* event) {
    modifiers = event->modifiers();
    mouse.Wheel(WheelWordOf(*event));
    event->accept();
}

void CWinControl::leaveEvent(QEvent* /*event*/) {
    CommitTyped();
    mouse.Leave();
    unsetCursor();
}

void CWinControl::keyPressEvent(QKeyEvent* event) {
    modifiers = event->modifiers();
    if (TakeTypedCharacter(*event)) return;
    const int key = VirtualKeyOf(*event);
    if (key != 0 && !event->isAutoRepeat()) {
        for (const auto& control : controls) control->BroadcastKeyDown(key);
    }
    event->ignore();
}

void CWinControl::keyReleaseEvent(QKeyEvent* event) {
    modifiers = event->modifiers();
    const int key = VirtualKeyOf(*event);
    if (key != 0 && !event->isAutoRepeat()) {
        for (const auto& control : controls) control->BroadcastKeyUp(key);
    }
    event->ignore();
}

// --- Digits typed while the mouse is over a control ------------------------------------------------------------

bool CWinControl::TakeTypedCharacter(const QKeyEvent& event) {
    if (typingTarget != nullptr) {
        if (event.key() == Qt::Key_Escape) typed.clear();
        if (event.key() == Qt::Key_Backspace) typed.chop(1);
        const bool ends = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter || typed.isEmpty();
        if (ends) {
            CommitTyped();
            HideBubble();
            return true;
        }
    }
    CControl* const target = typingTarget != nullptr ? typingTarget : mouse.Hovered();
    const bool accepts = target != nullptr && target->enabled && target->Value() != nullptr && target->takesDigits;
    const QString text = event.text();
    const bool plain = (event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    if (!accepts || !plain || text.size() != 1) return typingTarget != nullptr && event.key() == Qt::Key_Backspace;
    const QChar character = text[0] == QLatin1Char(',') ? QLatin1Char('.') : text[0];
    const bool starts = typed.isEmpty() && (character == QLatin1Char('-') || character == QLatin1Char('.'));
    if (!character.isDigit() && !starts && (character != QLatin1Char('.') || typed.contains(character))) return false;
    typingTarget = target;
    typed += character;
    ShowBubble(*target, typed + QLatin1Char('_'));
    typingEnd->start(kTypingTime);
    return true;
}

void CWinControl::CommitTyped() {
    CControl* const target = std::exchange(typingTarget, nullptr);
    const QString text = std::exchange(typed, {});
    typingEnd->stop();
    if (target == nullptr || text.isEmpty()) return;
    if (target->onTextEntry) {
        target->onTextEntry(*target, text);
    } else {
        target->ChangeByUser(CEntryDialog::NumberOf(text));
    }
    ShowBubble(*target, target->ValueText());
}

}  // namespace quib
