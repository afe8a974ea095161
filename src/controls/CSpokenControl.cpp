// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CSpokenControl.h"

#include "controls/CWinControl.h"
#include "controls/SpokenText.h"

namespace quib {

namespace {

QAccessible::Role RoleOf(ERole role) {
    switch (role) {
        case ERole::kPicture:
            return QAccessible::Graphic;
        case ERole::kText:
            return QAccessible::StaticText;
        case ERole::kButton:
            return QAccessible::Button;
        case ERole::kSwitch:
            return QAccessible::CheckBox;
        case ERole::kSlider:
            return QAccessible::Slider;
        case ERole::kMenu:
            return QAccessible::ButtonMenu;
        case ERole::kChoice:
            return QAccessible::List;
        case ERole::kField:
            return QAccessible::EditableText;
        case ERole::kMeter:
            return QAccessible::ProgressBar;
        case ERole::kScrollBar:
            return QAccessible::ScrollBar;
        case ERole::kArea:
        case ERole::kKeys:
            return QAccessible::Canvas;
        case ERole::kGroup:
        case ERole::kNone:
            break;
    }
    return QAccessible::Grouping;
}

}  // namespace

bool CSpokenControl::isValid() const {
    return Control().IsShown() && (!IsPart() || place.part < Control().PartCount());
}

QWindow* CSpokenControl::window() const { return tree.Window().window()->windowHandle(); }

QAccessibleInterface* CSpokenControl::parent() const {
    if (IsPart()) return tree.InterfaceOf({place.control, -1});
    CControl* group = Control().Parent();
    while (group != nullptr && group->Role() == ERole::kNone) group = group->Parent();
    return group != nullptr ? tree.InterfaceOf({group, -1}) : tree.WindowInterface();
}

int CSpokenControl::childCount() const {
    return IsPart() ? 0 : static_cast<int>(tree.ChildrenOf(place.control).size());
}

QAccessibleInterface* CSpokenControl::child(int index) const {
    if (IsPart() || index < 0) return nullptr;
    const auto places = tree.ChildrenOf(place.control);
    const auto wanted = static_cast<std::size_t>(index);
    return wanted < places.size() ? tree.InterfaceOf(places[wanted]) : nullptr;
}

int CSpokenControl::indexOfChild(const QAccessibleInterface* wanted) const {
    for (int index = 0; index < childCount(); ++index) {
        if (child(index) == wanted) return index;
    }
    return -1;
}

QAccessibleInterface* CSpokenControl::childAt(int x, int y) const {
    for (int index = 0; index < childCount(); ++index) {
        if (child(index)->rect().contains(x, y)) return child(index);
    }
    return nullptr;
}

QString CSpokenControl::text(QAccessible::Text kind) const {
    switch (kind) {
        case QAccessible::Name:
            return SpokenName(Control(), place.part);
        case QAccessible::Description:
        case QAccessible::Help:
            return SpokenHelp(Control());
        case QAccessible::Value:
            return IsPart() ? Control().PartAt(place.part).value : Control().SpokenValue();
        default:
            return {};
    }
}

QRect CSpokenControl::rect() const {
    const CWinControl& window = tree.Window();
    const QRect area = IsPart() ? Control().PartAt(place.part).area : Control().Rectangle();
    const QRect shown = window.ToWidget(area.intersected(Control().ShownRectangle()));
    return {window.mapToGlobal(shown.topLeft()), shown.size()};
}

bool CSpokenControl::IsSlider() const {
    if (IsPart()) return Control().PartAt(place.part).isSlider;
    return Control().PartCount() == 0 && Control().IsTurned();
}

QAccessible::Role CSpokenControl::role() const {
    if (IsPart()) return IsSlider() ? QAccessible::Slider : QAccessible::ListItem;
    return RoleOf(Control().Role());
}

QAccessible::State CSpokenControl::state() const {
    QAccessible::State state;
    const ERole role = Control().Role();
    const CKeyFocus& keys = tree.Window().Keys();
    state.disabled = !Control().enabled && !Control().IsUsefulDisabled();
    state.offscreen = Control().ShownRectangle().isEmpty();
    state.focusable = role != ERole::kGroup && role != ERole::kText && role != ERole::kPicture && role != ERole::kKeys;
    state.focused = keys.Control() == place.control && keys.Part() == place.part && tree.Window().hasFocus();
    state.hasPopup = role == ERole::kMenu;
    state.readOnly = role == ERole::kText || role == ERole::kMeter;
    if (IsPart()) {
        const ControlPart part = Control().PartAt(place.part);
        state.selectable = state.checkable = !part.isSlider;
        state.selected = state.checked = part.on;
    } else if (role == ERole::kSwitch) {
        state.checkable = true;
        state.checked = Control().ValueNow() != 0;
    }
    return state;
}

void* CSpokenControl::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    const bool hasNumbers = IsSlider() && !IsPart() && Control().Value() != nullptr;
    if (type == QAccessible::ValueInterface && hasNumbers) return static_cast<QAccessibleValueInterface*>(this);
    return nullptr;
}

// --- Doing ------------------------------------------------------------------------------------------------------

QStringList CSpokenControl::actionNames() const {
    QStringList names;
    if (state().focusable) names << setFocusAction();
    const ERole role = Control().Role();
    if (IsPart() || role == ERole::kButton || role == ERole::kMenu || role == ERole::kField) names << pressAction();
    if (!IsPart() && role == ERole::kSwitch) names << toggleAction();
    if (IsSlider()) names << increaseAction() << decreaseAction();
    if (Control().HasMenu()) names << showMenuAction();
    return names;
}

void CSpokenControl::doAction(const QString& name) {
    CKeyFocus& keys = tree.Window().Keys();
    keys.Show(Control(), place.part);
    if (name == pressAction() || name == toggleAction()) keys.Activate();
    if (name == increaseAction()) keys.Turn(1, false);
    if (name == decreaseAction()) keys.Turn(-1, false);
    if (name == showMenuAction()) keys.OpenMenu();
}

QStringList CSpokenControl::keyBindingsForAction(const QString& name) const {
    if (name == pressAction() || name == toggleAction()) return {QStringLiteral("Return")};
    if (name == increaseAction()) return {QStringLiteral("Up")};
    if (name == decreaseAction()) return {QStringLiteral("Down")};
    return name == showMenuAction() ? QStringList{QStringLiteral("Shift+F10")} : QStringList();
}

// --- The value ---------------------------------------------------------------------------------------------------

QVariant CSpokenControl::currentValue() const { return static_cast<double>(Control().Amount().now); }

void CSpokenControl::setCurrentValue(const QVariant& value) {
    Control().TakeNumber(static_cast<float>(value.toDouble()));
    tree.Changed(Control());
}

QVariant CSpokenControl::maximumValue() const { return static_cast<double>(Control().Amount().highest); }

QVariant CSpokenControl::minimumValue() const { return static_cast<double>(Control().Amount().lowest); }

QVariant CSpokenControl::minimumStepSize() const {
    const CControl::Range range = Control().Amount();
    return static_cast<double>(range.highest - range.lowest) / 100;
}

}  // namespace quib
