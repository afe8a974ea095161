// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSpokenTree.h"

#include <QAccessibleWidget>

#include "controls/CSpokenControl.h"
#include "controls/CWinControl.h"
#include "controls/SpokenText.h"

namespace quib {

namespace {

// The window itself: its controls, then the widgets that it holds.
class CSpokenWindow : public QAccessibleWidget {
public:
    explicit CSpokenWindow(CWinControl& window) : QAccessibleWidget(&window, QAccessible::Pane), owner(window) {}

    int childCount() const override { return static_cast<int>(Places().size()) + QAccessibleWidget::childCount(); }
    QAccessibleInterface* child(int index) const override {
        const auto places = Places();
        const int count = static_cast<int>(places.size());
        if (index < 0) return nullptr;
        if (index < count) return owner.Spoken().InterfaceOf(places[static_cast<std::size_t>(index)]);
        return QAccessibleWidget::child(index - count);
    }
    int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (int index = 0; index < static_cast<int>(Places().size()); ++index) {
            if (child(index) == wanted) return index;
        }
        const int widget = QAccessibleWidget::indexOfChild(wanted);
        return widget < 0 ? -1 : widget + static_cast<int>(Places().size());
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint point = owner.ToSkin(owner.mapFromGlobal(QPoint(x, y)));
        for (const auto& top : owner.Controls()) {
            if (CControl* const hit = top->HitTest(point.x(), point.y())) return owner.Spoken().InterfaceOf({hit, -1});
        }
        return QAccessibleWidget::childAt(x, y);
    }
    QAccessibleInterface* focusChild() const override {
        QAccessibleInterface* const focused = owner.Spoken().FocusedInterface();
        return focused != nullptr ? focused : QAccessibleWidget::focusChild();
    }

private:
    std::vector<SpokenPlace> Places() const { return owner.Spoken().ChildrenOf(nullptr); }

    CWinControl& owner;
};

QAccessibleInterface* MakeSpokenWindow(const QString& /*className*/, QObject* object) {
    auto* const window = qobject_cast<CWinControl*>(object);
    return window != nullptr ? new CSpokenWindow(*window) : nullptr;
}

void CollectPlaces(const std::vector<std::unique_ptr<CControl>>& controls, std::vector<SpokenPlace>& places) {
    for (const auto& control : controls) {
        if (!control->IsShown()) continue;
        if (control->Role() == ERole::kNone) {
            CollectPlaces(control->Children(), places);
        } else {
            places.push_back({control.get(), -1});
        }
    }
}

}  // namespace

void InstallSpokenWindows() { QAccessible::installFactory(MakeSpokenWindow); }

CSpokenTree::CSpokenTree(CWinControl& window) : owner(window) {}

CSpokenTree::~CSpokenTree() {
    for (const auto& [key, id] : known) QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* CSpokenTree::InterfaceOf(const SpokenPlace& place) {
    const Key key(place.control, place.part);
    const auto found = known.find(key);
    if (found != known.end()) return QAccessible::accessibleInterface(found->second);
    auto* const made = new CSpokenControl(*this, place);
    known.emplace(key, QAccessible::registerAccessibleInterface(made));
    return made;
}

QAccessibleInterface* CSpokenTree::WindowInterface() const { return QAccessible::queryAccessibleInterface(&owner); }

std::vector<SpokenPlace> CSpokenTree::ChildrenOf(CControl* control) const {
    std::vector<SpokenPlace> places;
    if (control == nullptr) {
        CollectPlaces(owner.Controls(), places);
        return places;
    }
    CollectPlaces(control->Children(), places);
    for (int part = 0; part < control->PartCount(); ++part) places.push_back({control, part});
    return places;
}

QAccessibleInterface* CSpokenTree::FocusedInterface() {
    CControl* const focused = owner.Keys().Control();
    return focused != nullptr && owner.hasFocus() ? InterfaceOf({focused, owner.Keys().Part()}) : nullptr;
}

void CSpokenTree::Focused() {
    if (!QAccessible::isActive()) return;
    QAccessibleInterface* const focused = FocusedInterface();
    if (focused == nullptr) return;
    QAccessibleEvent event(focused, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

void CSpokenTree::Changed(CControl& control) {
    if (!QAccessible::isActive()) return;
    const bool isFocused = owner.Keys().Control() == &control;
    QAccessibleInterface* const changed = InterfaceOf({&control, isFocused ? owner.Keys().Part() : -1});
    QAccessibleEvent name(changed, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&name);
    if (QAccessibleValueInterface* const value = changed->valueInterface()) {
        QAccessibleValueChangeEvent event(changed, value->currentValue());
        QAccessible::updateAccessibility(&event);
    } else if (changed->state().checkable) {
        QAccessible::State state;
        state.checked = true;
        QAccessibleStateChangeEvent event(changed, state);
        QAccessible::updateAccessibility(&event);
    }
}

void CSpokenTree::Forget(const CControl& control) {
    for (auto entry = known.lower_bound({&control, -1}); entry != known.end() && entry->first.first == &control;) {
        QAccessible::deleteAccessibleInterface(entry->second);
        entry = known.erase(entry);
    }
}

}  // namespace quib
