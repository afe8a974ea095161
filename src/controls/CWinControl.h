// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A window of skinned controls: owns the top-level controls and the one back buffer that they draw into,
// routes mouse and keys to them, and copies only what changed to the screen. Sizes and positions are skin
// pixels; the window's own scale and the screen's turn them into physical ones. User-interface thread.

#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "controls/CCanvas.h"
#include "controls/CControl.h"
#include "controls/CKeyFocus.h"
#include "controls/CMouseRouter.h"
#include "controls/CSpokenTree.h"
#include "controls/CTypedNumber.h"
#include "controls/ControlSettings.h"

namespace quib {

class CBubble;

class CWinControl : public QWidget {
    Q_OBJECT

public:
    // `background`: the name of a colour of the palette, for all of its life.
    CWinControl(const CControlSettings& settings, const char* background, QWidget* parent = nullptr);
    ~CWinControl() override;

    // Puts a control behind those that are there. It is drawn with the next layout.
    template <class T, class... Arguments>
    T& Add(Arguments&&... arguments) {
        auto control = std::make_unique<T>(*this, std::forward<Arguments>(arguments)...);
        T& reference = *control;
        controls.push_back(std::move(control));
        return reference;
    }
    void Remove(CControl& control);
    const std::vector<std::unique_ptr<CControl>>& Controls() const noexcept { return controls; }
    const CControlSettings& Settings() const noexcept { return settings; }

    CCanvas& Canvas() noexcept {
        canvas.SetSilent(false);
        return canvas;
    }
    CSkin& Skin() noexcept {
        skin.SetSilent(false);
        return skin;
    }
    bool HasBackBuffer() const noexcept { return hasBackBuffer; }
    QSize SkinSize() const;
    // Size of a skin pixel in the desktop's pixels, 0.75..3.
    void SetUiScale(qreal scale);
    qreal UiScale() const noexcept { return uiScale; }
    // Places all controls anew and draws everything.
    void LayoutAndRefresh();
    // Tells the screen which part of the back buffer is new.
    void BlitRectangle(const QRect& rectangle);
    // Redraws whatever shows a value that has changed, and moves what moves. From the 40 ms timer.
    void Tick();

    // Modifiers of the event that is being handled.
    bool IsFine() const noexcept { return (modifiers & (Qt::ShiftModifier | Qt::ControlModifier)) != 0; }
    bool IsControlHeld() const noexcept { return (modifiers & Qt::ControlModifier) != 0; }
    bool IsAltHeld() const noexcept { return (modifiers & Qt::AltModifier) != 0; }
    // A click with Alt returns to the default; with Ctrl and Shift too, where the desktop keeps Alt for itself.
    bool IsResetHeld() const noexcept {
        constexpr Qt::KeyboardModifiers kOther = Qt::ControlModifier | Qt::ShiftModifier;
        return IsAltHeld() || (modifiers & kOther) == kOther;
    }

    void ShowBubble(CControl& control, const QString& text);
    // Above a part of a control.
    void ShowBubble(const QRect& place, const QString& text, QRgb accent);
    void HideBubble();
    void RunManualEntry(CControl& control);
    void ShowPopupMenu(CControl& control);
    // The control whose pop-up menu was shown last; null when it is gone.
    CControl* MenuTarget() const noexcept { return menuTarget; }
    CMouseRouter& Mouse() noexcept { return mouse; }
    CKeyFocus& Keys() noexcept { return keyFocus; }
    const CKeyFocus& Keys() const noexcept { return keyFocus; }
    CSpokenTree& Spoken() noexcept { return spokenTree; }
    // Where a menu opens: at the mouse, or at the control whose key asked for it. Of the screen.
    QPoint MenuPoint() const;
    // What the ring about an area covers, in skin pixels.
    static QRect RingOf(const QRect& area) { return area.isEmpty() ? area : area.adjusted(-4, -4, 4, 4); }
    // Scrolls a control into view.
    virtual void Reveal(CControl& /*control*/) {}
    // Screen pixels that were copied from the back buffer since the start.
    qint64 PaintedPixels() const noexcept { return paintedPixels; }
    // A point of the window as the controls count.
    QPoint ToSkin(const QPointF& position) const;
    QRect ToWidget(const QRect& rectangle) const;
    void Forget(const CControl& control) noexcept;
    void AddTicked(CTicked& ticked) { tickedControls.push_back(&ticked); }
    void RemoveTicked(const CTicked& ticked) { std::erase(tickedControls, &ticked); }
    void AddPainted(CPainted& painted) { paintedControls.push_back(&painted); }
    void RemovePainted(const CPainted& painted) { std::erase(paintedControls, &painted); }

    CInfoCtrl* infoPanel = nullptr;
    std::function<void(CControl& topLevel)> onControlClicked;
    // The user takes hold of a control's value or lets it go.
    std::function<void(const CValue* value, bool held)> onHold;
    std::function<void(CControl& target, int menu)> onPopupMenu;
    std::function<void(const QString& caption, const QString& text)> onMessage;

protected:
    // Where the derived window places its controls; called before each layout.
    virtual void Arrange(const QSize& /*size*/) {}
    // The part of the window outside of which nothing of a top-level control is shown.
    virtual QRect ClipOf(const CControl& /*control*/) const { return QRect(QPoint(0, 0), SkinSize()); }
    // For a derived window whose controls use what goes before this part of it.
    void RemoveAll() { controls.clear(); }
    // What lies behind the controls.
    virtual void DrawBackground() {}

    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    // A window whose areas use Tab answers false: Ctrl+Tab leaves them.
    bool focusNextPrevChild(bool next) override;

private:
    void BroadcastKeyUp(int virtualKey);
    void DrawRing(QPainter& painter) const;
    void FollowMouse(const QMouseEvent& event);
    qreal PhysicalScale() const { return uiScale * devicePixelRatioF(); }

    const CControlSettings& settings;
    const char* background;
    CCanvas canvas;
    CSkin skin;
    CMouseRouter mouse{*this};
    std::vector<CTicked*> tickedControls;
    std::vector<CPainted*> paintedControls;
    qreal uiScale = 1;
    bool hasBackBuffer = false;
    qint64 paintedPixels = 0;
    Qt::KeyboardModifiers modifiers;
    CControl* menuTarget = nullptr;
    CControl* entryTarget = nullptr;
    CTypedNumber typing{*this};
    CKeyFocus keyFocus{*this};
    CSpokenTree spokenTree{*this};
    CBubble* bubble;
    // Last, so that controls go while the rest is still there.
    std::vector<std::unique_ptr<CControl>> controls;
};

}  // namespace quib
