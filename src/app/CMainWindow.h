// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The frame around the console: menus, keys, the timer, files dropped on it, the question about unsaved
// work. What the commands do to the project is the workstation's. User-interface thread.

#include <QKeySequence>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>

#include "app/CComputerKeyboard.h"
#include "app/CEditCommands.h"
#include "app/CFileDrops.h"
#include "app/CRecentFiles.h"
#include "app/CSettingsForControls.h"
#include "app/StartUp.h"
#include "app/console/SlotFields.h"
#include "app/exchange/CExchangeCommands.h"
#include "controls/CPalette.h"
#include "document/CWorkstation.h"
#include "editors/CToolWindows.h"
#include "export/ExportSettings.h"

class QAction;
class QMenu;
class QPushButton;

namespace quib {

class CControllerDialog;
class CExportDialog;
class CLearnMode;
class CMainWindow;
class CPlugin;
class CPluginCatalog;
class CPluginWindows;
class CShortcutsPage;

// Makes the console; the window owns it.
using ConsoleFactory = std::function<QWidget*(CMainWindow& window)>;

// How the window stood when it was closed, as the settings keep it ("MainShow").
constexpr int kShowNormal = 1;
constexpr int kShowMinimised = 2;
constexpr int kShowMaximised = 3;

class CMainWindow : public QMainWindow {
    Q_OBJECT

public:
    static constexpr int kTickMilliseconds = 40;

    CMainWindow(CWorkstation& projectOwner, CPluginCatalog& pluginCatalog, const ConsoleFactory& makeConsole);
    ~CMainWindow() override;

    CWorkstation& Workstation() noexcept { return workstation; }
    CPluginCatalog& Catalog() noexcept { return catalog; }
    CPluginWindows& PluginWindows() noexcept { return *pluginWindows; }
    CToolWindows& Tools() noexcept { return tools; }
    const CControlSettings& ControlSettings() const noexcept { return controlSettings; }
    void OpenTool(ETool tool);
    // Those that were open when the program was last left.
    void ReopenTools();
    void OpenPlugin(const SlotPlace& place);
    // The curve of a plug-in's parameter, in the window of automation.
    void ShowLane(const CPlugin* plugin, int parameter);
    // The export dialog, with a range chosen or as it stands.
    void ShowExport(std::optional<EExportRange> range = {});

    // In the order of the start: the menus' marks, then the timer.
    void ApplySettings();
    void StartTimer() { timer.start(); }
    CBackupCountdown& BackupCountdown() noexcept { return countdown; }

    // Runs a command by its number; false for one that is not known.
    bool Run(int number);
    QAction* Action(int number) const;

    // Opens a project after the question about unsaved work.
    void Open(const QString& path);
    // What dropping a file on the window does; `point` of the screen, where it was dropped.
    void TakeFile(const QString& path, std::optional<QPoint> point = {});
    // Loads a plug-in, or an instrument's file, into a place; without one as a new instrument.
    void LoadFileInto(const QString& path, const std::optional<SlotPlace>& place);
    // Where a plug-in that is dropped goes; the console sets it.
    std::function<std::optional<DropPlace>(ESlotKind kind, const QPoint& point)> dropPlaceAt;
    void ChoosePluginFolders();
    // True when unsaved work may be thrown away: there is none, it was saved, or the user agreed.
    bool MayDiscard();
    void ShowMessage(const QString& caption, const QString& text);
    // Tells something that needs no answer and must not interrupt.
    void ShowNotice(const QString& text);
    // The same, with a button that does something about it.
    void OfferNotice(const QString& text, const QString& button, std::function<void()> run);
    // Tells what a loading left out.
    void ShowWarnings();
    void ShowWarnings(const std::vector<std::string>& warnings);

    // Percent; 75 to 300, and no more than the screen can show.
    int Scale() const;
    // A window that was made smaller or larger by this, and not by the user, goes back with the scale.
    void SetScale(int percent);
    // Of every window at once, those of Qt included.
    void SetPalette(EPalette palette);
    // What windows open beside: a place for plug-ins, of the screen, and the bars that stay clear. The console
    // sets it.
    struct Surroundings {
        std::function<QRect(const SlotPlace&)> place;
        std::function<QRect()> bars;
    };
    Surroundings surroundings;

Q_SIGNALS:
    void Ticked();           // every 40 ms, after the work of the workstation
    void SettingsChanged();  // toggles, language, scale
    void QuickStartWanted();
    void SongWanted(bool inPlaceOfTheStrips);
    void InstrumentWanted();  // a plug-in is to be chosen for a new one
    void EffectWanted();
    void FilesHover(const QStringList& paths, const QPoint& point);  // plug-ins; none: they are gone
    void TimebaseChanged();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildMenus();
    void BuildFileMenu();
    void BuildExchangeMenus();
    void BuildEditMenu();
    void BuildSettingsMenu();
    void BuildTransportMenu();
    void BuildWindowsMenu();
    void BuildHelpMenu();
    void BuildScaleMenu(QMenu& menu);
    void BuildPaletteMenu(QMenu& menu);
    int MostScale() const;
    void FollowScale(int before);
    void PutBeside(QWidget& window, const QRect& anchor) const;
    void BuildLaunchMenu(QMenu& menu);
    void RebuildRecentFiles();
    void RebuildRestoreMenu();
    QAction* Add(QMenu& menu, int number, const char* text, std::function<void()> run, const QKeySequence& key = {});
    static void GiveKeys(QAction& action, const QList<QKeySequence>& keys);
    QAction* AddFile(QMenu& menu, const QString& path);
    QAction* AddToggle(QMenu& menu, int number, const char* text, const char* setting);
    void Toggle(int number, const char* setting);
    void ChooseLanguage(int number);
    void ApplyLanguage();
    void OpenManual(const char* format);
    void ShowShortcuts();
    void New();
    void Save();
    void SaveAs();
    void SaveTo(const QString& path);
    QString PathToSave();
    void Remember(const QString& path);
    bool SaveNow();
    void Restore(const QString& path);
    void ChooseAndOpen();
    bool LoadWithProgress(const QString& path);
    void ShowControllers();
    void ScanPlugins();
    void ShowTitle();
    void OnTick();
    void TakePluginLibrary(const QString& path, const std::optional<QPoint>& point);

    CWorkstation& workstation;
    CPluginCatalog& catalog;
    CSettings& settings;
    CRecentFiles recentFiles;
    std::unique_ptr<CPluginWindows> pluginWindows;
    CSettingsForControls controlSettings;
    CToolWindows tools;
    CComputerKeyboard computerKeyboard;
    CEditCommands edits;
    CExchangeCommands exchange;
    CFileDrops drops;
    std::unique_ptr<CLearnMode> learnMode;
    QPointer<CControllerDialog> controllerList;  // while it is open
    CBackupCountdown countdown;
    QTimer timer;
    std::map<int, QAction*> actions;
    QMenu* fileMenu = nullptr;
    QMenu* restoreMenu = nullptr;
    QPointer<CExportDialog> exporting;   // while it is open
    QPointer<CShortcutsPage> shortcuts;  // once it was open
    QList<QAction*> recentActions;
    QPushButton* notice = nullptr;
    QPointer<QPushButton> noticeButton;
    bool loading = false;
    QSizeF unscaledSize;  // of the window at 100 %, as the user made it
    QSize scaledSize;     // that the last change of scale gave it
};

}  // namespace quib
