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
#include "app/Commands.h"
#include "app/Look.h"
#include "app/ShortcutList.h"
#include "app/console/MakeConsole.h"
#include "devices/CSilentOutput.h"
#include "document/CSettings.h"
#include "document/ShippedFiles.h"
#include "editors/base/CToolWindow.h"
#include "texts/Texts.h"

namespace quib {
namespace {

constexpr int kSettle = 400;  // milliseconds

class CPictures {
public:
    CPictures(const QString& outputFolder, ELanguage language)
        : output(outputFolder),
          suffix(language == ELanguage::kFrench ? QStringLiteral("french") : QStringLiteral("english")),
          settings(folder.filePath(QStringLiteral("settings.ini"))),
          folders(folder.filePath(QStringLiteral("program"))) {
        PrepareFolders(folders, settings);
        SetLanguage(language);
        workstation = std::make_unique<CWorkstation>(settings, folders);
        catalog = std::make_unique<CPluginCatalog>(QString(), folder.filePath(QStringLiteral("catalog.json")));
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
        whole = Keep(*window, "console") && whole;
        const struct {
            ETool tool;
            const char* name;
        } tools[] = {{ETool::kPianoRoll, "pianoroll"},
                     {ETool::kAutomation, "automation"},
                     {ETool::kArpeggiator, "arpeggiator"},
                     {ETool::kBall, "ball"},
                     {ETool::kTutorial, "tutorial"}};
        for (const auto& each : tools) {
            window->OpenTool(each.tool);
            Settle();
            CToolWindow* const tool = window->Tools().Find(each.tool);
            whole = tool != nullptr && Keep(*tool, each.name) && whole;
            if (tool != nullptr) tool->hide();
        }
        window->OpenTool(ETool::kPlaylist);
        Settle();
        whole = Keep(*window, "song") && whole;
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
    qputenv("QT_QPA_PLATFORM", "offscreen");
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
