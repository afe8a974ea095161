// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/MakeConsole.h"

#include <QFileDialog>
#include <cmath>

#include "app/CMainWindow.h"
#include "app/CPluginWindows.h"
#include "app/console/CWinControlMain.h"
#include "document/CSettings.h"
#include "editors/CWinControlArpeggiator.h"
#include "texts/Texts.h"

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
    if (station.AddInstrument(nameOrPath, error) < 0 && !error.isEmpty()) {
        window.ShowMessage(QStringLiteral("QUIBBOX"), error);
    }
}

constexpr const char* kArpeggiatorWindow = "Arpeggiator";

// Made at its first use; follows the current instrument from then on.
CWinControlArpeggiator& ArpeggiatorWindow(CMainWindow& window, const CControlSettings& settings) {
    if (auto* const known = window.findChild<CWinControlArpeggiator*>()) return *known;
    auto* const made = new CWinControlArpeggiator(settings, &window);
    CWorkstation& station = window.Workstation();
    made->onEdited = [&station](CValue& setting, float before, float after, const QString& name) {
        station.ValueEdited(setting, before, after, name);
    };
    const auto follow = [made, &station] { made->ShowInstrument(station.Instrument(station.CurrentIndex())); };
    for (const auto change : {&CWorkstation::InstrumentsChanged, &CWorkstation::ProjectReplaced}) {
        QObject::connect(&station, change, made, follow);
    }
    QObject::connect(&station, &CWorkstation::CurrentChanged, made, follow);
    QObject::connect(&window, &CMainWindow::Ticked, made, [made] {
        if (made->isVisible()) made->Tick();
    });
    QObject::connect(&window, &CMainWindow::SettingsChanged, made,
                     [made, &window] { made->SetScale(window.Scale() / 100.0); });
    made->SetScale(window.Scale() / 100.0);
    follow();
    // Its size is its own; only the place is kept.
    const QRect place = station.Settings().ReadWindowPlacement(
        QString::fromLatin1(kArpeggiatorWindow), CSettings::Centred(made->size(), CSettings::ScreenSize()));
    made->move(place.topLeft());
    return *made;
}

void OpenTool(CMainWindow& window, const CControlSettings& settings, ETool tool) {
    if (tool == ETool::kTutorial) Q_EMIT window.QuickStartWanted();
    if (tool != ETool::kArpeggiator) return;
    CWinControlArpeggiator& arpeggiator = ArpeggiatorWindow(window, settings);
    arpeggiator.show();
    arpeggiator.raise();
}

ConsoleActions ActionsFor(CMainWindow& window, const CControlSettings& settings) {
    ConsoleActions actions;
    actions.pluginChoices = [&window](SlotKind kind) {
        return PluginChoices(window.Workstation().ProgramFolders(), window.Catalog(), kind);
    };
    actions.openPlugin = [&window](const SlotPlace& place) { window.PluginWindows().Show(place); };
    actions.addInstrument = [&window](const QString& nameOrPath) { AddInstrument(window, nameOrPath); };
    actions.openTool = [&window, &settings](ETool tool) { OpenTool(window, settings, tool); };
    actions.hasTool = [](ETool tool) { return tool == ETool::kTutorial || tool == ETool::kArpeggiator; };
    return actions;
}

}  // namespace

QWidget* MakeConsole(CMainWindow& window) {
    auto settings = std::make_unique<CSettingsForControls>(window.Workstation().Settings());
    auto* const console = new CWinControlMain(*settings, window.Workstation(), ActionsFor(window, *settings), &window);
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
