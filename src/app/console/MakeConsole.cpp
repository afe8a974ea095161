// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/MakeConsole.h"

#include <cmath>

#include "app/CMainWindow.h"
#include "app/CPluginWindows.h"
#include "app/Commands.h"
#include "app/browser/CPluginBrowsing.h"
#include "app/console/CWinControlMain.h"
#include "app/start/CDeviceBanner.h"
#include "app/start/CStartPage.h"
#include "app/start/CTutorialRing.h"
#include "editors/base/CToolWindow.h"
#include "texts/Texts.h"

namespace quib {

namespace {

// The browser comes after the console that it is opened from.
ConsoleActions ActionsFor(CMainWindow& window, const std::shared_ptr<CPluginBrowsing*>& browsing) {
    ConsoleActions actions;
    actions.browse = [browsing](const BrowseWish& wish) { (*browsing)->Browse(wish); };
    actions.openPlugin = [&window](const SlotPlace& place) { window.OpenPlugin(place); };
    actions.showWarnings = [&window](const std::vector<std::string>& warnings) { window.ShowWarnings(warnings); };
    actions.openTool = [&window](ETool tool) { window.OpenTool(tool); };
    actions.bounce = [&window](bool loop) { window.ShowExport(loop ? EExportRange::kLoop : EExportRange::kSong); };
    actions.hasTool = [](ETool tool) {
        return tool == ETool::kTutorial || tool == ETool::kPlaylist || CToolWindows::Has(tool);
    };
    actions.isToolOpen = [&window](ETool tool) {
        const CToolWindow* const open = window.Tools().Find(tool);
        return open != nullptr && open->isVisible();
    };
    return actions;
}

}  // namespace

QWidget* MakeConsole(CMainWindow& window) {
    const auto browsing = std::make_shared<CPluginBrowsing*>(nullptr);
    auto* const console =
        new CWinControlMain(window.ControlSettings(), window.Workstation(), ActionsFor(window, browsing), &window);
    *browsing = new CPluginBrowsing(window, *console);
    auto* const banner = new CDeviceBanner(console->Skin(), window, console);
    auto* const page = new CStartPage(
        console->Skin(), window, [&window] { window.Run(command::kAddInstrument); }, console);
    console->SetStart(*banner, *page);
    new CTutorialRing(window, *console, *page);
    console->onHold = [&recording = window.Workstation().AutomationRecording()](const CValue* value, bool held) {
        recording.Hold(value, held);
    };
    console->onMessage = [&window](const QString& caption, const QString& text) { window.ShowMessage(caption, text); };
    const auto applyScale = [&window, console] {
        const double scale = window.Scale() / 100.0;
        console->setMinimumSize(static_cast<int>(std::ceil(CWinControlMain::kNarrowest * scale)),
                                static_cast<int>(std::ceil(CWinControlMain::kLowest * scale)));
        console->SetUiScale(scale);
        window.Tools().SetScale(window.Scale());
    };
    window.surroundings.place = [console](const SlotPlace& place) { return AreaOf(*console, place); };
    window.surroundings.bars = [console] {
        const QRect bars = console->ToWidget({0, 0, console->SkinSize().width(), consoleLayout::kStripsTop});
        return QRect(console->mapToGlobal(bars.topLeft()), bars.size());
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
