// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/MakeConsole.h"

#include <cmath>

#include "app/CMainWindow.h"
#include "app/CPluginWindows.h"
#include "app/Dialogs.h"
#include "app/FileDialogs.h"
#include "app/console/CWinControlMain.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

void AddInstrument(CMainWindow& window, QString nameOrPath) {
    CWorkstation& station = window.Workstation();
    if (nameOrPath.isEmpty()) {
        nameOrPath = ChooseFileToOpen(&window, station.Settings(), EFileKind::kInstrumentOrPlugin);
        if (nameOrPath.isEmpty()) return;
    }
    QString error;
    if (station.Stack().AddInstrument(nameOrPath, error) < 0) TellError(&window, error);
    window.ShowWarnings(station.Stack().TakeWarnings());
}

ConsoleActions ActionsFor(CMainWindow& window) {
    ConsoleActions actions;
    actions.pluginChoices = [&window](ESlotKind kind) {
        return PluginChoices(window.Workstation().ProgramFolders(), window.Catalog(), kind);
    };
    actions.openPlugin = [&window](const SlotPlace& place) { window.OpenPlugin(place); };
    actions.addInstrument = [&window](const QString& nameOrPath) { AddInstrument(window, nameOrPath); };
    actions.showWarnings = [&window](const std::vector<std::string>& warnings) { window.ShowWarnings(warnings); };
    actions.openTool = [&window](ETool tool) { window.OpenTool(tool); };
    actions.hasTool = [](ETool tool) {
        return tool == ETool::kTutorial || tool == ETool::kPlaylist || CToolWindows::Has(tool);
    };
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
    window.Tools().SetInfoPanel(console->infoPanel);
    QObject::connect(&window, &CMainWindow::SongWanted, console, [console](bool whole) {
        whole ? console->ShowSong(true, !console->IsSongWhole()) : console->ShowSong(!console->IsSongShown(), false);
    });
    QObject::connect(&window, &CMainWindow::Ticked, console, &CWinControlMain::FollowEngine);
    QObject::connect(&window, &CMainWindow::SettingsChanged, console, [&window, console, applyScale] {
        applyScale();
        console->Translate();
        window.Tools().SetInfoPanel(console->infoPanel);
        window.Tools().Retranslate();
    });
    return console;
}

}  // namespace quib
