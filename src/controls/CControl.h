// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Base of every skinned control: a rectangle of a window that draws itself into the window's back buffer
// and gets the mouse and keys that the window routes to it. Bound to one value of the model, which it
// never owns. User-interface thread; the value may be read and written by any thread meanwhile.

#include <QRect>
#include <QString>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

#include "controls/CSkin.h"
#include "controls/ControlParts.h"
#include "model/CValue.h"
#include "model/control/ControlBinding.h"

namespace quib {

class CCanvas;
class CInfoCtrl;
class CSkin;
class CWinControl;

class CControl {
public:
    // Position relative to the parent control, or to the window; in skin pixels like every length here.
    CControl(CWinControl& owner, std::uint32_t identifier, int relativeX, int relativeY, int width, int height,
             CValue* value = nullptr);
    virtual ~CControl();
    CControl(const CControl&) = delete;
    CControl& operator=(const CControl&) = delete;

    // --- What a control may do of its own -----------------------------------------------------------

    virtual void Draw() {}
    virtual void OnMouseMove(int /*x*/, int /*y*/) {}
    // Buttons: 0 left, 1 right, 2 middle where takesMiddleButton is set.
    virtual void OnLButtonDown(int /*x*/, int /*y*/, int /*button*/) {}
    virtual void OnLButtonUp(int /*x*/, int /*y*/, int /*button*/) {}
    virtual void OnDoubleClick(int /*x*/, int /*y*/) {}
    // `word`: see WheelWordOf.
    virtual void OnMouseWheel(int /*x*/, int /*y*/, std::uint32_t /*word*/) {}
    virtual void OnMouseLeave() {}
    virtual void OnHook(int /*first*/, int /*second*/) {}
    virtual void OnMove() {}
    virtual void Resize(int /*newWidth*/, int /*newHeight*/) {}
    virtual void OnKeyDown(int /*virtualKey*/) {}
    virtual void OnKeyUp(int /*virtualKey*/) {}
    virtual void OnShow(bool /*nowVisible*/) {}
    // Takes a number that the user typed.
    virtual void TakeNumber(float number);
    virtual bool HasDefault() const { return defaultValue.has_value(); }
    virtual void ReturnToDefault();
    // Its parts that MIDI may be made to move, and where they are.
    struct Learnable {
        QRect area;
        ControlTarget target;

        friend bool operator==(const Learnable&, const Learnable&) = default;
    };
    virtual void ListLearnable(std::vector<Learnable>& parts) const;
    bool TakesDigits() const noexcept { return takesDigits && enabled && value != nullptr; }
    // Whether what it shows is another than what it drew last.
    virtual bool HasChanged() const { return value != nullptr && value->Get() != drawnValue; }

    // --- Without the mouse ----------------------------------------------------------------------------

    virtual ERole Role() const;
    // Parts that are chosen one by one; none: it is one thing. In what follows a part of -1 is the whole.
    virtual int PartCount() const { return 0; }
    virtual ControlPart PartAt(int /*part*/) const { return {}; }
    virtual int ChosenPart() const { return -1; }
    // Brings a part into view.
    virtual void RevealPart(int /*part*/) {}
    // What Enter does: presses, switches, or opens the entry of the value.
    virtual void Activate(int part);
    // Changes the value by notches as those of the wheel.
    virtual void Turn(int part, int notches, bool fine);
    virtual void GoToEnd(bool highest);
    virtual void ResetPart(int /*part*/) { ReturnToDefault(); }
    // Whether the arrows turn it.
    virtual bool IsTurned() const { return Role() == ERole::kSlider; }
    // Whether it does something while it is disabled, such as choosing what it lacks.
    virtual bool IsUsefulDisabled() const { return false; }
    // The words that it shows, and those that tell its value.
    virtual QString ShownText() const { return {}; }
    virtual QString SpokenValue() const;
    struct Range {
        float now, lowest, highest;
    };
    virtual Range Amount() const { return {ValueNow(), minimum, maximum}; }
    // Whether the other button opens something.
    bool HasMenu() const { return onAlternativeClick || popupMenu >= 0 || !entryTitle.isEmpty(); }

    // --- Place and tree -------------------------------------------------------------------------------

    std::uint32_t Identifier() const noexcept { return identifier; }
    CWinControl& Owner() const noexcept { return owner; }
    int X() const noexcept { return x; }
    int Y() const noexcept { return y; }
    int Width() const noexcept { return width; }
    int Height() const noexcept { return height; }
    QRect Rectangle() const noexcept { return {x, y, width, height}; }
    // The part of the rectangle that is shown.
    QRect ShownRectangle() const noexcept { return Rectangle().intersected(clip); }
    // Takes effect with the next layout.
    void SetPosition(int newRelativeX, int newRelativeY) noexcept;
    void SetSize(int newWidth, int newHeight) noexcept;
    // Places the control and its children; nothing of them is shown outside of `shown`.
    void Layout(int parentX, int parentY, const QRect& shown);
    template <class T, class... Arguments>
    T& AddChild(Arguments&&... arguments) {
        auto child = std::make_unique<T>(owner, std::forward<Arguments>(arguments)...);
        T& reference = *child;
        child->standsIn = this;
        child->parentShown = IsShown();
        children.push_back(std::move(child));
        return reference;
    }
    void ClearChildren();
    // Null for one of the window itself.
    CControl* Parent() const noexcept { return standsIn; }
    const std::vector<std::unique_ptr<CControl>>& Children() const noexcept { return children; }
    bool IsVisible() const noexcept { return visible; }
    // Whether it and all that it stands in is visible.
    bool IsShown() const noexcept { return visible && parentShown; }
    // Hides or shows it and tells its children and it; nothing is drawn.
    void SetVisible(bool flag);
    // The innermost visible control at a point, which may be this one; null when the point misses it. The
    // right and the bottom edge count one pixel beyond the rectangle.
    CControl* HitTest(int px, int py);
    void BroadcastKeyDown(int virtualKey);
    void BroadcastKeyUp(int virtualKey);

    // --- Value and drawing ------------------------------------------------------------------------------

    CValue* Value() const noexcept { return value; }
    void Bind(CValue* newValue) noexcept { value = newValue; }
    float ValueNow() const noexcept { return value != nullptr ? value->Get() : minimum; }
    // The value's place in its range, 0..1.
    float Share() const noexcept;
    // Clamps the value, redraws and tells the change where asked to. `notify` is for the user's gestures.
    void Update(bool notify, bool redraw);
    void SetValueAndUpdate(bool notify, bool redraw, float next);
    // Draws the control with its children; shows them where `blit` says so.
    void Refresh(bool blit = true);
    // Shows on the screen what was drawn.
    void Blit();
    void BlitRect(int x0, int y0, int x1, int y1);
    // Fills the control's rectangle, in the back buffer and on the screen.
    void FillRect(QRgb colour);
    // Redraws itself, and each child, where HasChanged says so.
    void RefreshIfChanged();
    // The value with its unit.
    QString ValueText() const;
    // What an entry shows first.
    QString EntryText() const;
    QString EntryTitle() const { return entryTitle.isEmpty() ? name : entryTitle; }
    // The number of the help that holds now; -1 none.
    int InfoNumber() const noexcept { return !enabled && disabledInfo >= 0 ? disabledInfo : infoString; }

    // Whether it has a use for the wheel of its own, so that the window does not scroll by it.
    bool TakesWheel() const noexcept { return takesWheel && enabled; }

    // One gesture of the user from its first change to its last, for whoever keeps an undo list.
    void BeginGesture();
    void EndGesture();
    // A gesture of one change.
    void ChangeByUser(float next);

    // --- Set by the owner ---------------------------------------------------------------------------------

    float minimum = 0;
    float maximum = 1;
    std::optional<float> defaultValue;
    QRgb backgroundColour = Palette().Window();  // painted over a hidden control
    ESection section = ESection::kMix;
    bool enabled = true;
    bool cannotSound = false;  // drawn so
    bool alternativeClickAlways = false;
    bool captureOnClick = true;
    bool takesMiddleButton = false;  // others are not told of it
    int primaryButton = 0;
    int popupMenu = -1;
    int infoString = -1;
    int disabledInfo = -1;  // while it is disabled: why
    QString infoText;
    CInfoCtrl* infoPanel = nullptr;  // null: the window's
    QString entryTitle;              // empty: no manual entry
    QString entryText;
    QString name;                         // of the value, for undo lists and screen readers; of what stands in a group
    std::optional<ControlTarget> learns;  // what MIDI may move of it; of cells that of the first one
    std::function<QString(float)> formatValue;
    std::function<QString(float)> formatEntry;  // what an entry shows of the value; unset: the number itself
    std::function<void(CControl&)> onChange;
    std::function<void(CControl&, const QString&)> onTextEntry;
    std::function<void(CControl&)> afterClick;
    std::function<void(CControl&)> onAlternativeClick;
    std::function<void(CControl&, float before)> onGesture;  // a gesture has changed the value

    // --- Kept by the window ---------------------------------------------------------------------------------

    bool pressed = false;
    bool hovered = false;

protected:
    CCanvas& Canvas() const noexcept;
    CSkin& Skin() const noexcept;
    // A hundredth of the range a notch, a thousandth with Ctrl.
    void TurnByWheel(std::uint32_t word);
    // The bubble with the value, beside the control while it moves.
    void ShowValue();
    // The skin's state for a control that is only hovered or not.
    EState PlainState() const noexcept;

    // Tells the window that the user has hold of these values, and no more of those before.
    void Hold(std::initializer_list<const CValue*> values);

    bool holdsParts = false;         // says itself which of its values a press takes hold of
    bool hoverLook = false;          // redrawn when the mouse comes and goes
    bool doubleClickIsClick = true;  // a second click in a row counts as another one
    bool takesWheel = false;
    bool takesDigits = false;        // digits typed over it set the value
    bool doubleClickResets = false;  // returns to the default where no manual entry is set

private:
    friend class CWinControl;
    friend class CMouseRouter;
    void DrawClipped();
    void BroadcastLeave();
    void TellShown(bool parentNowShown);
    float Limited(float number) const noexcept;

    CWinControl& owner;
    CControl* standsIn = nullptr;
    std::uint32_t identifier;
    int x = 0, y = 0;
    int relativeX, relativeY;
    int width, height;
    QRect clip;
    CValue* value;
    bool visible = true;
    bool parentShown = true;
    float drawnValue = 0;
    std::optional<float> gestureStart;
    std::vector<const CValue*> heldValues;
    std::vector<std::unique_ptr<CControl>> children;
};

// Something that moves by itself. Told by its window's timer, every 40 ms while the window is shown.
class CTicked {
public:
    explicit CTicked(CWinControl& window);
    virtual ~CTicked();
    CTicked(const CTicked&) = delete;
    CTicked& operator=(const CTicked&) = delete;
    virtual void Tick() = 0;

private:
    CWinControl& tickWindow;
};

// What draws a control only when its window is painted, straight to the screen's picture: the back buffer has
// nothing of it. For large controls of which much changes at once. They have no children, and nothing lies
// before them.
class CPainted {
public:
    CPainted(CWinControl& window, const CControl& painted);
    virtual ~CPainted();
    CPainted(const CPainted&) = delete;
    CPainted& operator=(const CPainted&) = delete;
    // `area` as the canvas counts.
    virtual void PaintArea(const QRect& area) = 0;
    const CControl& Painted() const noexcept { return control; }

private:
    CWinControl& paintWindow;
    const CControl& control;
};

}  // namespace quib
