// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationMain.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QMessageBox>
#include <QThread>
#include <QTimer>
#include <filesystem>
#include <optional>

#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/CSessionKeeper.h"
#include "app/CStandardTexts.h"
#include "app/CStuckPlugins.h"
#include "app/Dialogs.h"
#include "app/Look.h"
#include "app/StartUp.h"
#include "devices/CSilentOutput.h"
#include "document/CSettings.h"
#include "document/ShippedFiles.h"
#include "model/plugin/PluginMarks.h"
#include "platform/CFolderLock.h"
#include "platform/EndSignals.h"
#include "platform/Paths.h"

namespace quib {

namespace {

constexpr int kFolderTaken = 1;
constexpr int kWrongUsage = 2;
constexpr unsigned long kExitWait = 500;  // milliseconds
constexpr int kTakenInterval = 50;        // milliseconds

struct Options {
    std::string project;
    std::string portableFolder;
    std::string settingsFile;
    bool noAudio = false;
    bool endStuck = false;
};

// The exit code when the program is to end at once.
std::optional<int> ParseOptions(int argc, char** argv, Options& options) {
    CLI::App app{"QUIB Sequencer, a pattern sequencer and host of VST 2 plug-ins", "quib"};
    app.set_version_flag("--version", std::string("quib ") + QUIB_VERSION);
    app.add_option("FILE", options.project,
                   "Project to open (.prg); an instrument (.ist) or a pattern (.ptn) goes into the last one")
        ->check(CLI::ExistingFile);
    app.add_option("--portable", options.portableFolder, "Program folder, which then keeps the settings too");
    app.add_option("--settings", options.settingsFile, "File that keeps the settings");
    app.add_flag("--no-audio", options.noAudio, "Play without a sound device");
    app.add_flag("--end-when-stuck", options.endStuck,
                 "Save the project and end, without a question, when a plug-in does not return");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return app.exit(end) == 0 ? 0 : kWrongUsage;
    }
    // The folder of the process changes while plug-ins load.
    for (std::string* const path : {&options.project, &options.portableFolder, &options.settingsFile}) {
        if (!path->empty()) *path = std::filesystem::absolute(*path).lexically_normal().string();
    }
    return std::nullopt;
}

QString SettingsFile(const Options& options) {
    if (!options.settingsFile.empty()) return QString::fromStdString(options.settingsFile);
    std::filesystem::path folder = options.portableFolder;
    if (folder.empty() && IsPortableCopy()) folder = ExecutableFolder();
    if (folder.empty()) return CSettings::DefaultFile();
    return QString::fromStdString((folder / "settings.ini").string());
}

// One run, from the devices to the last save, in the order of the functions.
class CRun {
public:
    CRun(const Options& commandLine, CSettings& settingsStore, const Folders& programFolders, bool isGuest,
         const ConsoleFactory& makeConsole)
        : options(commandLine),
          settings(settingsStore),
          folders(Prepared(programFolders, settings)),
          blame(isGuest ? std::nullopt : TakeBlame(MarksFile(folders))),
          stuck([this](std::string& error) { return workstation.Session().Rescue(error); }, !commandLine.endStuck),
          workstation(settings, folders),
          catalog(QString::fromStdString((ExecutableFolder() / "quib-scan").string()),
                  folders.program + QStringLiteral("PluginCatalog.json")) {
        ChoosePalette(StoredPalette(settings));
        ApplyLook(std::clamp(settings.ReadSettingInt(kSettingsSection, QStringLiteral("GuiScale"), 100), 75, 300));
        ApplyTimeSignature(settings, workstation);
        KeepPluginMarks(isGuest);
        if (isGuest) workstation.Session().SetGuest();
        SeedRecentFiles();
        window = std::make_unique<CMainWindow>(workstation, catalog, makeConsole);
        // Not before there is somebody to hear what it says.
        workstation.OpenOutput(commandLine.noAudio ? QLatin1String(CSilentOutput::kName) : QString());
        PrepareToolPlacements(settings);
    }

    int Run();

private:
    // What is made later looks into them.
    static const Folders& Prepared(const Folders& programFolders, CSettings& settingsStore) {
        PrepareFolders(programFolders, settingsStore);
        return programFolders;
    }
    bool IsFirst() const { return settings.ReadSettingInt(kSettingsSection, QStringLiteral("Init"), 0) != 1; }
    void SeedRecentFiles();
    void ShowWindow();
    void FollowEndSignals();
    static std::filesystem::path MarksFile(const Folders& of) { return (of.program + "PluginInUse").toStdString(); }
    void KeepPluginMarks(bool isGuest);
    void LeaveOutBlamed();
    void TryBlamedAgain();
    void End(CSessionKeeper& keeper);

    const Options& options;
    CSettings& settings;
    const Folders& folders;
    std::optional<PluginBlame> blame;
    CStuckPlugins stuck;  // watches until the last plug-in is closed
    CWorkstation workstation;
    CPluginCatalog catalog;
    std::unique_ptr<CMainWindow> window;
    QTimer endTimer;
};

void CRun::SeedRecentFiles() {
    if (!IsFirst()) return;
    CRecentFiles(settings).Seed(ExampleFiles());
}

void CRun::ShowWindow() {
    window->setGeometry(MainPlacement(settings));
    const int show = settings.ReadSettingInt(kWindowsSection, QStringLiteral("MainShow"), kShowMaximised);
    if (show == kShowMaximised) {
        window->showMaximized();
    } else {
        window->showNormal();
    }
}

// In every event loop, those of dialogs and menus included: the process waits for no click.
void CRun::FollowEndSignals() {
    constexpr int kInterval = 200;  // milliseconds: each look wakes the processor
    QObject::connect(&endTimer, &QTimer::timeout, window.get(), [this] {
        if (!EndWanted()) return;
        window->close();
        QCoreApplication::exit(0);
    });
    endTimer.start(kInterval);
}

// Of a folder that belongs to another run, that one keeps them.
void CRun::KeepPluginMarks(bool isGuest) {
    constexpr int kAsItWould = -1;
    if (isGuest || !KeepMarks(MarksFile(folders))) TellWhatEnds(kAsItWould);
}

// The plug-in that ended the last run: the same project is opened again without it.
void CRun::LeaveOutBlamed() {
    if (!blame) return;
    const MarkedCall& call = blame->call;
    catalog.Block(QString::fromStdString(call.library));
    const QString text = blame->hung
                             ? Text("\"%1\" did not return while %2, so it is left out now; its settings are kept.")
                             : Text(
                                   "\"%1\" ended the program while %2, so it is left out now; its settings are "
                                   "kept.");
    window->OfferNotice(text.arg(QString::fromStdString(call.name), Text(Describe(call.call))), Text("Try it again"),
                        [this] { TryBlamedAgain(); });
}

void CRun::TryBlamedAgain() {
    const QString library = QString::fromStdString(blame->call.library);
    QString error;
    if (!catalog.AskNow(library, error) || !workstation.Places().LoadMissing(library, error)) {
        window->ShowMessage(QStringLiteral("QUIB Sequencer"), error);
    }
}

int CRun::Run() {
    FollowEndSignals();
    ShowWindow();
    QCoreApplication::processEvents();
    LeaveOutBlamed();
    CSessionKeeper keeper(*window, AskInBox(window.get()));
    keeper.Begin(QString::fromStdString(options.project), blame);
    stuck.SetProject(true);
    QObject::connect(window.get(), &CMainWindow::Ticked, window.get(), [this] { stuck.Tick(); });
    window->ApplySettings();
    window->ReopenTools();
    window->StartTimer();
    QObject::connect(window.get(), &CMainWindow::QuickStartWanted, window.get(),
                     [this] { window->OpenTool(ETool::kTutorial); });
    // By itself only when nothing else asks for the user, who may also have come with a project.
    if (IsFirst() && options.project.empty() && workstation.Output().Device() != nullptr) {
        window->OpenTool(ETool::kTutorial);
    }
    settings.WriteSettingInt(kSettingsSection, QStringLiteral("Init"), 1);
    settings.Flush();
    catalog.SetFolders(PluginFolders(folders, settings));
    QTimer::singleShot(0, &catalog, &CPluginCatalog::Scan);

    const int code = EndWanted() ? 0 : QApplication::exec();
    End(keeper);
    TellWhatEnds(code);  // what plug-ins do when they are closed spoils nothing any more
    return code;
}

void CRun::End(CSessionKeeper& keeper) {
    stuck.SetEnding();
    catalog.Cancel();
    workstation.Recording().Finish();
    QString error;
    if (!keeper.End(error)) {
        fmt::print(stderr, "quib: {}\n", error.toStdString());
        if (!EndWanted()) QMessageBox::warning(nullptr, QStringLiteral("QUIB Sequencer"), error);
    }
    workstation.Output().CloseOutput();
    stuck.SetProject(false);
    ForgetMarks();
    if (!EndWanted()) QThread::msleep(kExitWait);
}

// Whether the run that finds the folder taken goes on as a guest in it. A signal to end counts as a no.
bool WantsToBeGuest(const Folders& folders, const std::string& holder) {
    QMessageBox box(QMessageBox::Question, QStringLiteral("QUIB Sequencer"),
                    Text("QUIB Sequencer is running already (process %1) and has the program folder \"%2\". A second "
                         "window can be opened that neither writes backups nor keeps the session.")
                        .arg(holder.empty() ? QStringLiteral("?") : QString::fromStdString(holder), folders.program));
    const auto* const open = box.addButton(Text("Open a second window"), QMessageBox::AcceptRole);
    box.setDefaultButton(box.addButton(Text("End"), QMessageBox::RejectRole));
    QTimer endTimer;
    QObject::connect(&endTimer, &QTimer::timeout, &box, [&box] {
        if (EndWanted()) box.reject();
    });
    endTimer.start(kTakenInterval);
    box.exec();
    return box.clickedButton() == open;
}

}  // namespace

int ApplicationMain(int argc, char** argv, const ConsoleFactory& makeConsole) {
    Options options;
    if (const auto code = ParseOptions(argc, argv, options)) return *code;
    QCoreApplication::setOrganizationName(QStringLiteral("QUIBSequencer"));
    QCoreApplication::setApplicationName(QStringLiteral("QUIB Sequencer"));
    QGuiApplication::setDesktopFileName(QStringLiteral("quib-sequencer"));
    QApplication application(argc, argv);
    CStandardTexts standardTexts;
    QApplication::installTranslator(&standardTexts);
    QApplication::setQuitOnLastWindowClosed(false);
    CatchEndSignals();
    CSettings settings(SettingsFile(options));
    KeepFirstLanguage(settings);
    SetLanguage(ChosenLanguage(settings));
    const Folders folders(FindProgramFolder(settings, QString::fromStdString(options.portableFolder)));
    CFolderLock lock;
    const bool isGuest = !lock.Take(folders.program.toStdString());
    if (isGuest && !WantsToBeGuest(folders, lock.Holder())) return kFolderTaken;
    CRun run(options, settings, folders, isGuest, makeConsole);
    return run.Run();
}

}  // namespace quib
