// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A control, or a part of one, as assistive programs see it: name, role, state, value, and what can be done with
// it, which is what the keys do. Belongs to the tree that made it. User-interface thread.

#include <QAccessible>

#include "controls/CSpokenTree.h"

namespace quib {

class CSpokenControl final : public QAccessibleInterface,
                             public QAccessibleActionInterface,
                             public QAccessibleValueInterface {
public:
    CSpokenControl(CSpokenTree& spokenTree, const SpokenPlace& spokenPlace) : tree(spokenTree), place(spokenPlace) {}

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* wanted) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    CControl& Control() const noexcept { return *place.control; }
    bool IsPart() const noexcept { return place.part >= 0; }
    bool IsSlider() const;

    CSpokenTree& tree;
    SpokenPlace place;
};

}  // namespace quib
