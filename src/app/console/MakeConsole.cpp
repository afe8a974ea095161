// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/MakeConsole.h"

#include <QFileDialog>
#include <cmath>

#include "app/CMainWindow.h"
#include "app/CPluginWindows.h"
#include "app/console/CWinControlMain.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

void AddInstrument(CMainWindow& window, QString nameOrPath) {
    CWorkstation& station = window.Workstation();
    if (nameOrPath.isEmpty()) {
        const QString folder = station.Settings().ReadSettingString(QString::fromLatin1(kSettingsSection),
                                                                    QStringLiteral("InstrumentDir"));
        nameOrPath = QFileDialog::getOpenFileName(&window, Text("Choose an instrument or a plug-in"), folder,
                                                  QStringLiteral("QUIB (*.ist %1)").arg(PluginFilePatterns()));
        if (nameOrPath.isEmpty()) return;
    }
    QString error;
    if (station.Stack().AddInstrument(nameOrPath, error) < 0 && !error.isEmpty()) {
        window.ShowMessage(QStringLiteral("QUIBBOX"), error);
    }
}

ConsoleActions ActionsFor(CMainWindow& window) {
    ConsoleActions actions;
    actions.pluginChoices = [&window](ESlotKind kind) {
        return PluginChoices(window.Workstation().ProgramFolders(), window.Catalog(), kind);
    };
    actions.openPlugin = [&window](const SlotPlace& place) { window.PluginWindows().Show(place); };
    actions.addInstrument = [&window](const QString& nameOrPath) { AddInstrument(window, nameOrPath); };
    actions.openTool = [&window](ETool tool) { window.OpenTool(tool); };
    actions.hasTool = [](ETool tool) { return tool == ETool::kTutorial || CToolWindows::Has(tool); };
    return actions;
}

}  // namespace

QWidget* MakeConsole(CMainWindow& window) {
    auto* const console =
        new CWinControlMain(window.ControlSettings(), window.Workstation(), ActionsFor(window), &window);
    console->onMessage = [&window](const QString& caption, const QString& text) { window.ShowMessage(caption, text); };
    const auto applyScale = [&window, console] {
        const double scale = window.Scale() / 100.0;
        console->setMinimumSize(static_cast<int>(std::ceil(CWinControlMain::kNarrowest * scale)),
                                static_cast<int>(std::ceil(CWinControlMain::kLowest * scale)));
        console->SetUiScale(scale);
        window.Tools().SetScale(window.Scale());
    };
    applyScale();
    QObject::connect(&window, &CMainWindow::Ticked, console, &CWinControlMain::FollowEngine);
    QObject::connect(&window, &CMainWindow::SettingsChanged, console, [&window, console, applyScale] {
        applyScale();
        console->Translate();
        window.Tools().Retranslate();
    });
    return console;
}

}  // namespace quib
