// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/export/CSegments.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace quib {

CSegments::CSegments(const QStringList& texts) {
    setObjectName(QStringLiteral("segments"));
    setAttribute(Qt::WA_StyledBackground);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(1, 1, 1, 1);
    row->setSpacing(1);
    for (const QString& text : texts) {
        auto* const button = new QPushButton(text);
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        group.addButton(button, static_cast<int>(group.buttons().size()));
        row->addWidget(button);
    }
    group.button(0)->setChecked(true);
    connect(&group, &QButtonGroup::idClicked, this, &CSegments::Changed);
}

void CSegments::Choose(int index) {
    if (QAbstractButton* const button = group.button(index); button && button->isEnabled()) button->setChecked(true);
}

void CSegments::SetOff(int index, const QString& reason) {
    group.button(index)->setEnabled(reason.isEmpty());
    group.button(index)->setToolTip(reason);
}

bool CSegments::IsOff(int index) const { return !group.button(index)->isEnabled(); }

}  // namespace quib
