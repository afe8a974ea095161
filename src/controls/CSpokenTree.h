// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The controls of a window as assistive programs see them: one interface for each control and part, made when it
// is asked for. Costs nothing while nobody asks. User-interface thread.

#include <QAccessible>
#include <map>
#include <vector>

namespace quib {

class CControl;
class CWinControl;

// One entry of the tree; `part` -1: the control itself.
struct SpokenPlace {
    CControl* control = nullptr;
    int part = -1;
};

class CSpokenTree {
public:
    explicit CSpokenTree(CWinControl& window);
    ~CSpokenTree();
    CSpokenTree(const CSpokenTree&) = delete;
    CSpokenTree& operator=(const CSpokenTree&) = delete;

    QAccessibleInterface* InterfaceOf(const SpokenPlace& place);
    QAccessibleInterface* WindowInterface() const;
    CWinControl& Window() const noexcept { return owner; }
    // What has a name in a control, or with null in the window; in the order of the controls.
    std::vector<SpokenPlace> ChildrenOf(CControl* control) const;
    // What the ring is on; null for none.
    QAccessibleInterface* FocusedInterface();

    // --- News

    // The ring has come to another control.
    void Focused();
    // The control's value is another one.
    void Changed(CControl& control);
    // The control is about to go.
    void Forget(const CControl& control);

private:
    using Key = std::pair<const CControl*, int>;

    CWinControl& owner;
    std::map<Key, QAccessible::Id> known;
};

// Makes windows of controls known to assistive programs; once, before the first window is shown.
void InstallSpokenWindows();

}  // namespace quib
