// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/MakeConsole.h"

#include <QFileDialog>
#include <cmath>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/CSettings.h"
#include "app/Texts.h"
#include "app/console/CWinControlMain.h"

namespace quib {

namespace {

// The settings store as controls ask it. A child of the console, which it outlives as long as needed.
class CSettingsForControls : public QObject, public CControlSettings {
public:
    explicit CSettingsForControls(const CSettings& settings) : store(settings) {}
    int ReadSettingInt(const char* section, const char* name, int fallback) const override {
        return store.ReadSettingInt(QString::fromLatin1(section), QString::fromLatin1(name), fallback);
    }

private:
    const CSettings& store;
};

QStringList NamesOf(const QList<PluginEntry>& entries) {
    QStringList names;
    for (const PluginEntry& entry : entries) names += entry.name;
    return names;
}

void AddInstrument(CMainWindow& window, QString nameOrPath) {
    CWorkstation& station = window.Workstation();
    if (nameOrPath.isEmpty()) {
        const QString folder = station.Settings().ReadSettingString(QString::fromLatin1(kSettingsSection),
                                                                    QStringLiteral("InstrumentDir"));
        nameOrPath = QFileDialog::getOpenFileName(&window, Text("Choose an instrument or a plug-in"), folder,
                                                  QStringLiteral("QUIB (*.ist *.so)"));
        if (nameOrPath.isEmpty()) return;
    }
    QString error;
    if (station.AddInstrument(nameOrPath, error) < 0 && !error.isEmpty()) {
        window.ShowMessage(QStringLiteral("QUIBBOX"), error);
    }
}

ConsoleActions ActionsFor(CMainWindow& window) {
    ConsoleActions actions;
    actions.pluginNames = [&window](SlotKind kind) {
        const CPluginCatalog& catalog = window.Catalog();
        return NamesOf(kind == SlotKind::Instrument ? catalog.Instruments() : catalog.Effects());
    };
    actions.openPlugin = [&window](const SlotPlace& place) { window.PluginWindows().Show(place); };
    actions.addInstrument = [&window](const QString& nameOrPath) { AddInstrument(window, nameOrPath); };
    actions.openTool = [&window](ETool tool) {
        if (tool == ETool::kTutorial) Q_EMIT window.QuickStartWanted();
    };
    actions.hasTool = [](ETool tool) { return tool == ETool::kTutorial; };
    return actions;
}

}  // namespace

QWidget* MakeConsole(CMainWindow& window) {
    auto settings = std::make_unique<CSettingsForControls>(window.Workstation().Settings());
    auto* const console = new CWinControlMain(*settings, window.Workstation(), ActionsFor(window), &window);
    settings.release()->setParent(console);
    console->onMessage = [&window](const QString& caption, const QString& text) { window.ShowMessage(caption, text); };
    const auto applyScale = [&window, console] {
        const double scale = window.Scale() / 100.0;
        console->setMinimumSize(static_cast<int>(std::ceil(CWinControlMain::kNarrowest * scale)),
                                static_cast<int>(std::ceil(CWinControlMain::kLowest * scale)));
        console->SetUiScale(scale);
    };
    applyScale();
    QObject::connect(&window, &CMainWindow::Ticked, console, &CWinControlMain::FollowEngine);
    QObject::connect(&window, &CMainWindow::SettingsChanged, console, [console, applyScale] {
        applyScale();
        console->Translate();
    });
    return console;
}

}  // namespace quib
