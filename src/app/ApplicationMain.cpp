// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationMain.h"

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <optional>

#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/Dialogs.h"
#include "app/Look.h"
#include "app/StartUp.h"
#include "devices/CSilentOutput.h"
#include "document/CSettings.h"
#include "platform/Paths.h"

namespace quib {

namespace {

constexpr int kWrongUsage = 2;
constexpr int kShowMaximised = 3;
constexpr unsigned long kExitWait = 500;  // milliseconds

std::atomic<bool> endWanted{false};  // by a signal of the system

struct Options {
    std::string project;
    std::string portableFolder;
    std::string settingsFile;
    bool noAudio = false;
};

// The exit code when the program is to end at once.
std::optional<int> ParseOptions(int argc, char** argv, Options& options) {
    CLI::App app{"QUIB Sequencer, a pattern sequencer and host of VST 2 plug-ins", "quib"};
    app.set_version_flag("--version", std::string("quib ") + QUIB_VERSION);
    app.add_option("FILE", options.project, "Project to open (.prg)")->check(CLI::ExistingFile);
    app.add_option("--portable", options.portableFolder, "Program folder, which then keeps the settings too");
    app.add_option("--settings", options.settingsFile, "File that keeps the settings");
    app.add_flag("--no-audio", options.noAudio, "Play without a sound device");
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
    if (options.portableFolder.empty()) return CSettings::DefaultFile();
    return QDir(QString::fromStdString(options.portableFolder)).filePath(QStringLiteral("settings.ini"));
}

// One run, from the folders to the last save, in the order of the functions.
class CRun {
public:
    CRun(const Options& commandLine, const ConsoleFactory& makeConsole)
        : options(commandLine),
          settings(SettingsFile(commandLine)),
          folders(FindProgramFolder(settings, QString::fromStdString(commandLine.portableFolder))),
          prepared(PrepareFolders(folders, settings)),
          workstation(settings, folders),
          catalog(QString::fromStdString((ExecutableFolder() / "quib-scan").string()),
                  folders.program + QStringLiteral("PluginCatalog.json")) {
        SetLanguage(ChosenLanguage(settings));
        ApplyLook(std::clamp(settings.ReadSettingInt(kSettingsSection, QStringLiteral("GuiScale"), 100), 75, 300));
        ApplyTimeSignature(settings, workstation);
        workstation.OpenOutput(commandLine.noAudio ? QLatin1String(CSilentOutput::kName) : QString());
        SeedRecentFiles();
        window = std::make_unique<CMainWindow>(workstation, catalog, makeConsole);
        PrepareToolPlacements(settings);
    }

    int Run();

private:
    bool IsFirst() const { return settings.ReadSettingInt(kSettingsSection, QStringLiteral("Init"), 0) != 1; }
    void SeedRecentFiles();
    void ShowWindow();
    void LoadProject();
    void LoadSession(const QString& path, bool isBackup);
    bool UserWantsBackup();
    void KeepCrashBackup(const CrashMarks& marks);
    QString WantedFile() const;
    bool SessionIsOf(const QString& file) const;
    void FollowSession();
    bool SaveSession();

    Options options;
    CSettings settings;
    Folders folders;
    PluginNames prepared;
    CWorkstation workstation;
    CPluginCatalog catalog;
    std::unique_ptr<CMainWindow> window;
};

void CRun::SeedRecentFiles() {
    if (!IsFirst()) return;
    QStringList paths;
    for (const char* const name : {"HouseMusic.prg", "HouseYa.prg", "Siren.prg", "Tempo100.prg", "BassDrums.prg"}) {
        paths.append(folders.programs + QLatin1String(name));
    }
    CRecentFiles(settings).Seed(paths);
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

QString CRun::WantedFile() const { return QString::fromStdString(options.project); }

// The session that was left last is a later state of this very file.
bool CRun::SessionIsOf(const QString& file) const {
    const QFileInfo session(folders.currentProject);
    return session.exists() && session.lastModified() >= QFileInfo(file).lastModified() &&
           settings.ReadSettingString(kSettingsSection, QStringLiteral("ProjectFile")) == file;
}

// A session of a run that crashed is in the backup only.
void CRun::LoadProject() {
    const CrashMarks marks = MarkStart(settings);
    KeepCrashBackup(marks);
    const QString file = WantedFile();
    const EStartProject choice =
        ChooseStartProject(marks.errorClosed, marks.backupClosed, window->BackupCountdown().Ticks());
    if (choice == EStartProject::kEmpty) {
        window->ShowMessage(
            QStringLiteral("QUIB Sequencer"),
            Text("The last start ended while it loaded its project, so this one begins without. The project can be "
                 "opened from the File menu."));
    }
    if (choice == EStartProject::kAsk && UserWantsBackup()) {
        LoadSession(folders.backupProject, true);
    } else if (!file.isEmpty() && marks.errorClosed == 0 && !SessionIsOf(file)) {
        if (settings.IsOn(QStringLiteral("ProjectModified"))) workstation.Session().KeepCopy(folders.currentProject);
        window->Open(file);
    } else if (choice == EStartProject::kCurrent) {
        LoadSession(folders.currentProject, false);
    }
    workstation.Session().WriteBackup(false);
    MarkLoaded(settings);
}

// Whatever the user answers, the work before the crash can be restored later.
void CRun::KeepCrashBackup(const CrashMarks& marks) {
    if (marks.backupClosed == 0) workstation.Session().KeepCopy(folders.backupProject);
}

bool CRun::UserWantsBackup() {
    const bool english = settings.IsOn(QStringLiteral("DisplayInfoMessagesEnglish"));
    const QString text =
        Text("The program was not closed properly last time !\r\nDo you want to load the last Backup ?",
             english ? ELanguage::kEnglish : ELanguage::kFrench);
    QMessageBox box(QMessageBox::Question, QStringLiteral("QUIB Studio"), text, QMessageBox::Yes | QMessageBox::No,
                    window.get());
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    return box.exec() == QMessageBox::Yes;
}

void CRun::LoadSession(const QString& path, bool isBackup) {
    if (!QFileInfo::exists(path)) return;
    const QString file = settings.ReadSettingString(kSettingsSection, QStringLiteral("ProjectFile"));
    const bool modified = isBackup || settings.IsOn(QStringLiteral("ProjectModified"));
    QString error;
    if (!workstation.Session().LoadSession(path, QFileInfo::exists(file) ? file : QString(), modified, error)) {
        return window->ShowMessage(QStringLiteral("QUIB Sequencer"), error);
    }
    window->ShowWarnings();
}

// Name and mark of the project, so that the next start has them.
void CRun::FollowSession() {
    const auto keep = [this] {
        settings.WriteSettingString(kSettingsSection, QStringLiteral("ProjectFile"),
                                    workstation.Session().ProjectPath());
        settings.SetOn(QStringLiteral("ProjectModified"), workstation.Session().IsModified());
    };
    QObject::connect(&workstation.Session(), &CSession::ProjectPathChanged, window.get(), keep);
    QObject::connect(&workstation.Changes(), &CChanges::ModifiedChanged, window.get(), keep);
    keep();
}

bool CRun::SaveSession() {
    std::string error;
    workstation.Session().WriteCopy(folders.currentProject, [&error](const std::string& reason) { error = reason; });
    workstation.Session().Saver().Finish();
    if (error.empty()) return true;
    QMessageBox::warning(nullptr, QStringLiteral("QUIB Sequencer"), QString::fromStdString(error));
    return false;
}

int CRun::Run() {
    ShowWindow();
    QCoreApplication::processEvents();
    LoadProject();
    window->ApplySettings();
    FollowSession();
    window->StartTimer();
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, [](int) { endWanted.store(true); });
    QObject::connect(window.get(), &CMainWindow::Ticked, window.get(), [this] {
        if (endWanted.load()) window->close();
    });
    QObject::connect(window.get(), &CMainWindow::QuickStartWanted, window.get(),
                     [this] { ShowQuickStart(window.get()); });
    if (IsFirst()) ShowQuickStart(window.get());
    settings.WriteSettingInt(kSettingsSection, QStringLiteral("Init"), 1);
    settings.Flush();
    catalog.SetFolders(PluginFolders(folders, settings));
    QTimer::singleShot(0, &catalog, &CPluginCatalog::Scan);

    const int code = QApplication::exec();
    catalog.Cancel();
    workstation.Recording().Finish();
    // Without a whole session the next start offers the backup.
    if (SaveSession()) MarkEnd(settings);
    workstation.Output().CloseOutput();
    QThread::msleep(kExitWait);
    return code;
}

}  // namespace

int ApplicationMain(int argc, char** argv, const ConsoleFactory& makeConsole) {
    Options options;
    if (const auto code = ParseOptions(argc, argv, options)) return *code;
    QCoreApplication::setOrganizationName(QStringLiteral("QUIBSequencer"));
    QCoreApplication::setApplicationName(QStringLiteral("QUIB Sequencer"));
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    CRun run(options, makeConsole);
    return run.Run();
}

}  // namespace quib
