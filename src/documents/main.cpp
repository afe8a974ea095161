// SPDX-License-Identifier: GPL-3.0-or-later
// quib-documents: what the manuals show of the program, made by the program itself: pictures of its windows and the
// list of its keys, in English and French. For packaging; needs no display.
#include <QApplication>
#include <QFile>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QThread>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/Commands.h"
#include "app/Look.h"
#include "app/ShortcutList.h"
#include "app/console/MakeConsole.h"
#include "app/export/CExportDialog.h"
#include "devices/CSilentOutput.h"
#include "document/CSettings.h"
#include "document/LoopFolders.h"
#include "document/ShippedFiles.h"
#include "editors/base/CToolWindow.h"
#include "platform/Paths.h"
#include "texts/Texts.h"

namespace quib {
namespace {

constexpr int kSettle = 400;        // milliseconds
constexpr int kSettlesOfSound = 6;  // until a loop is read and its tempo found
constexpr const char* kScreen =
    R"({"screens":[{"name":"manual","x":0,"y":0,"width":1920,"height":1200,"logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})";
constexpr const char* kLoop = "36 House Beat 124bpm";

// A display that nobody sees, with room for the windows as they are on a desk.
QByteArray PlatformWithScreen(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(kScreen) < 0) return "offscreen";
    return "offscreen:configfile=" + path.toLocal8Bit();
}

class CPictures {
public:
    CPictures(const QString& outputFolder, ELanguage language)
        : output(outputFolder),
          suffix(language == ELanguage::kFrench ? QStringLiteral("french") : QStringLiteral("english")),
          settings(folder.filePath(QStringLiteral("settings.ini"))),
          folders(folder.filePath(QStringLiteral("program"))) {
        PrepareFolders(folders, settings);
        // No picture tells of the machine that made it.
        settings.WriteSettingString(kSettingsSection, QStringLiteral("LoopDir"), QStringLiteral("Loops"));
        SetLanguage(language);
        workstation = std::make_unique<CWorkstation>(settings, folders);
        // The plug-ins of the examples are tried by the scanner before they are loaded.
        catalog = std::make_unique<CPluginCatalog>(QString::fromStdString((ExecutableFolder() / "quib-scan").string()),
                                                   folder.filePath(QStringLiteral("catalog.json")));
        workstation->OpenOutput(QLatin1String(CSilentOutput::kName));
        window = std::make_unique<CMainWindow>(*workstation, *catalog, MakeConsole);
        window->resize(1366, 728);
        window->show();
        window->StartTimer();
    }

    bool MakeAll() {
        Settle();
        bool whole = Keep(*window, "start") && WriteKeys();
        QString error;
        if (!workstation->Session().LoadProject(ExampleFiles().front(), error)) return false;
        workstation->Transport().Play();
        Settle();
        whole = Keep(*window, "console") && KeepTools() && KeepOthers() && whole;
        workstation->Transport().Stop();
        return whole;
    }

private:
    // The windows follow the engine from their timers.
    static void Settle() {
        for (int waited = 0; waited < kSettle; waited += 20) {
            QCoreApplication::processEvents();
            QThread::msleep(20);
        }
    }
    bool KeepTools() {
        const struct {
            ETool tool;
            const char* name;
            bool takesSound;
        } tools[] = {{ETool::kPianoRoll, "pianoroll", false},
                     {ETool::kAutomation, "automation", false},
                     {ETool::kArpeggiator, "arpeggiator", false},
                     {ETool::kBall, "ball", false},
                     {ETool::kRhythm, "rhythm", true},
                     {ETool::kLoopCreator, "loops", true},
                     {ETool::kTutorial, "tutorial", false}};
        bool whole = true;
        for (const auto& each : tools) {
            window->OpenTool(each.tool);
            CToolWindow* const tool = window->Tools().Find(each.tool);
            if (tool == nullptr) return false;
            if (each.takesSound) tool->TakeFile(FileOfLoop(*workstation, kLoop));
            for (int times = each.takesSound ? kSettlesOfSound : 1; times > 0; --times) Settle();
            whole = Keep(*tool, each.name) && whole;
            tool->hide();
        }
        window->OpenTool(ETool::kPlaylist);
        Settle();
        return Keep(*window, "song") && whole;
    }

    // The browser, and windows that stand beside the main one.
    bool KeepOthers() {
        bool whole = true;
        const auto keep = [this, &whole](QWidget* shown, const char* name) {
            Settle();
            whole = shown != nullptr && Keep(*shown, name) && whole;
            if (shown != nullptr && shown != window.get()) shown->hide();
        };
        const SlotPlace place{SlotPlace::EKind::kInstrument, workstation->Stack().Instruments().front()->Id(), 0};
        keep(window->PluginWindows().Show(place), "panel");
        keep(window->PluginWindows().ShowParameters(place), "parameters");
        window->ShowExport();
        keep(window->findChild<CExportDialog*>(), "export");
        window->Run(command::kAddEffect);
        keep(window.get(), "browser");
        return whole;
    }

    QString Path(const char* name, const char* kind) const {
        return QStringLiteral("%1/%2-%3.%4").arg(output, QLatin1String(name), suffix, QLatin1String(kind));
    }
    bool Keep(QWidget& widget, const char* name) const { return widget.grab().save(Path(name, "png")); }

    bool WriteKeys() const {
        QFile file(Path("keys", "md"));
        if (!file.open(QIODevice::WriteOnly)) return false;
        for (const ShortcutSection& section : ShortcutsOf(*window->menuBar())) {
            file.write(QStringLiteral("### %1\n\n| | |\n|---|---|\n").arg(section.title).toUtf8());
            for (const ShortcutRow& row : section.rows) {
                QString command = row.command;
                command.replace(QLatin1Char('|'), QLatin1String("\\|"));
                file.write(QStringLiteral("| %1 | %2 |\n").arg(command, row.keys).toUtf8());
            }
            file.write("\n");
        }
        return file.flush();
    }

    QString output;
    QString suffix;
    QTemporaryDir folder;
    CSettings settings;
    Folders folders;
    std::unique_ptr<CWorkstation> workstation;
    std::unique_ptr<CPluginCatalog> catalog;
    std::unique_ptr<CMainWindow> window;
};

}  // namespace
}  // namespace quib

int main(int argc, char** argv) {
    const QTemporaryDir screen;
    qputenv("QT_QPA_PLATFORM", quib::PlatformWithScreen(screen.filePath(QStringLiteral("screen.json"))));
    const QApplication application(argc, argv);
    if (argc != 2) {
        qCritical("usage: quib-documents FOLDER");
        return 2;
    }
    quib::ApplyLook(100);
    for (const quib::ELanguage language : {quib::ELanguage::kEnglish, quib::ELanguage::kFrench}) {
        quib::CPictures pictures(QString::fromLocal8Bit(argv[1]), language);
        if (!pictures.MakeAll()) return 1;
    }
    return 0;
}
