// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which control of a window has the keyboard, and what keys do with it. A ring shows it once a key has moved
// there; a press of the mouse hides the ring and keeps the place. While no ring is shown every key goes to all
// controls, as it does while the ring is on an area that has keys of its own. User-interface thread.

#include <QKeyCombination>
#include <QRect>
#include <span>
#include <vector>

class QKeyEvent;

namespace quib {

class CControl;
class CWinControl;

enum class EFocusKey {
    kNext,
    kPrevious,
    kNextSection,
    kPreviousSection,
    kArrow,
    kFineArrow,
    kMoveArrow,
    kPage,
    kEnd,
    kEnter,
    kDefault,
    kMenu,
    kLeave
};

// A key, what it does, and how that is told. Arrows stand in it once for their direction.
struct FocusKey {
    QKeyCombination key;
    EFocusKey use;
    const char* text;  // English
};
std::span<const FocusKey> FocusKeys();

class CKeyFocus {
public:
    explicit CKeyFocus(CWinControl& window) : owner(window) {}

    // Whether a key is meant for the control with the ring.
    bool WouldTake(const QKeyEvent& event) const;
    bool Take(const QKeyEvent& event);
    // To the next control, or the one before, of the window. False at the end of the row.
    bool Step(int way);
    // Puts the ring on a control; `part` -1: the whole, or its first part.
    void Show(CControl& control, int part);
    // The mouse pressed this one, or nothing: keys go on from there.
    void MouseAt(CControl* pressed);
    void Hide();
    // The control is about to go.
    void Forget(const CControl& control) noexcept;

    // Null while no ring is shown.
    CControl* Control() const noexcept { return shown ? control : nullptr; }
    int Part() const noexcept { return part; }
    // What keys do with the control that has the ring: turn it by notches, press it, open its menu.
    void Turn(int notches, bool fine);
    void Activate();
    void OpenMenu();
    // What the ring goes around; empty while there is none. Skin pixels of the window.
    QRect Area() const;
    // While what a key has asked for is done.
    bool IsActing() const noexcept { return acting; }

private:
    void Run(const FocusKey& row, const QKeyEvent& event);
    bool StepSection(int way);
    void Arrow(int right, int up, bool fine);
    void Move(int right, int up);
    void Tell();

    CWinControl& owner;
    CControl* control = nullptr;
    int part = -1;
    bool shown = false;
    bool acting = false;
};

// The controls of a window that keys reach, in the order of reading.
std::vector<CControl*> KeyStops(const CWinControl& window);

}  // namespace quib
