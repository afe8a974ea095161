// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/parameters/ParameterMenu.h"

#include <QCursor>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>

#include "app/learn/LearnMenu.h"
#include "app/parameters/CParameterMarks.h"
#include "document/CWorkstation.h"
#include "editors/panel/CPanelValues.h"
#include "texts/Texts.h"

namespace quib {

void TypeParameter(QWidget& window, CPanelValues& values, int parameter) {
    bool accepted = false;
    const QString text = QInputDialog::getText(&window, values.Name(parameter), Text("Value"), QLineEdit::Normal,
                                               values.Text(parameter), &accepted);
    if (accepted && !values.SetByText(parameter, text))
        QMessageBox::information(&window, values.Name(parameter),
                                 Text("The plug-in does not understand \"%1\".").arg(text));
}

void ResetParameter(CPanelValues& values, int parameter) {
    const float before = values.Get(parameter);
    values.Set(parameter, values.Default(parameter));
    values.Keep(parameter, before);
}

void ShowParameterMenu(QWidget& window, CPanelValues& values, CParameterMarks& marks, int parameter,
                       const std::function<void(int parameter)>& showLane) {
    QMenu menu(&window);
    menu.addSection(values.Name(parameter));
    menu.addAction(Text("Type a value ..."), [&] { TypeParameter(window, values, parameter); });
    menu.addAction(Text("Default"), [&] { ResetParameter(values, parameter); });
    menu.addSeparator();
    if (const auto target = values.TargetOf(parameter)) AddLearnItems(menu, values.Document().Controllers(), *target);
    if (showLane) menu.addAction(Text("Show its lane"), [&] { showLane(parameter); });
    menu.addSeparator();
    const auto mark = [&](const QString& text, CParameterMarks::EMark which) {
        QAction* const action = menu.addAction(text);
        action->setCheckable(true);
        action->setChecked(marks.Has(which, parameter));
        QObject::connect(action, &QAction::toggled, &menu,
                         [&marks, which, parameter](bool on) { marks.Set(which, parameter, on); });
    };
    mark(Text("Favourite"), CParameterMarks::EMark::kFavourite);
    mark(Text("Keep from random"), CParameterMarks::EMark::kKept);
    menu.exec(QCursor::pos());
}

}  // namespace quib
