// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/exchange/CExchangeCommands.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>

#include "app/CMainWindow.h"
#include "app/FileDialogs.h"
#include "document/CSettings.h"
#include "document/LoopFolders.h"
#include "editors/base/CToolWindow.h"
#include "texts/Texts.h"

namespace quib {

// Loops may have come while another program had the screen.
CExchangeCommands::CExchangeCommands(CMainWindow& mainWindow) : window(mainWindow), midi(mainWindow.Workstation()) {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &window, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) FollowLoopFolders(window.Workstation());
    });
}

bool CExchangeCommands::IsMidi(const QString& path) {
    const QString kind = QFileInfo(path).suffix().toLower();
    return kind == QLatin1String("mid") || kind == QLatin1String("midi");
}

void CExchangeCommands::ChooseMidi() {
    const QString path = ChooseFileToOpen(&window, window.Workstation().Settings(), EFileKind::kMidi);
    if (!path.isEmpty()) ImportMidi(path);
}

// What went well is a line below; what was left out is told so that nobody overlooks it.
void CExchangeCommands::ImportMidi(const QString& path) {
    MidiSong song;
    QStringList told;
    QString error;
    if (!midi.Read(path, song, error) || !midi.Import(song, told, error)) {
        return window.ShowMessage(Text("Import MIDI"), error);
    }
    Q_EMIT window.TimebaseChanged();
    if (told.size() == 1) return window.ShowNotice(told.front());
    window.ShowMessage(Text("Import MIDI"), told.join(QLatin1Char('\n')));
}

void CExchangeCommands::ImportMidiInto(const QString& path, const QPoint& point) {
    MidiSong song;
    QString error;
    const auto instrument = window.Workstation().Selection().CurrentInstrument();
    if (!instrument) return ImportMidi(path);
    if (!midi.Read(path, song, error)) return window.ShowMessage(Text("Import MIDI"), error);
    int chosen = 0;
    if (song.parts.size() > 1) {
        QMenu menu(&window);
        menu.addAction(Text("Notes into this pattern:"))->setEnabled(false);
        for (std::size_t index = 0; index < song.parts.size(); ++index) {
            const MidiPart& part = song.parts[index];
            const QString title =
                part.title.empty() ? Text("Channel %1").arg(part.channel + 1) : QString::fromStdString(part.title);
            menu.addAction(QStringLiteral("%1 (%2)").arg(title).arg(part.patterns.front().Notes().size()))
                ->setData(static_cast<int>(index));
        }
        const QAction* const answer = menu.exec(point);
        if (answer == nullptr) return;
        chosen = answer->data().toInt();
    }
    const MidiPart& part = song.parts[static_cast<std::size_t>(chosen)];
    midi.ImportInto(instrument->Id(), window.Workstation().Selection().CurrentPattern(), part);
    window.ShowNotice(Text("%1 notes on %2 instruments.").arg(part.patterns.front().Notes().size()).arg(1));
}

void CExchangeCommands::OfferSound(const QString& path, const QPoint& point) {
    QMenu menu(&window);
    const auto open = [this, path](ETool tool) {
        window.OpenTool(tool);
        if (CToolWindow* const shown = window.Tools().Find(tool)) shown->TakeFile(path);
    };
    menu.addAction(Text("Cut loops out of it"), &window, [open] { open(ETool::kLoopCreator); });
    menu.addAction(Text("Find its tempo"), &window, [open] { open(ETool::kRhythm); });
    menu.addAction(Text("Put it among the loops"), &window, [this, path] {
        const QString to = window.Workstation().ProgramFolders().loops + QFileInfo(path).fileName();
        const bool isThere = QFileInfo(path).canonicalFilePath() == QFileInfo(to).canonicalFilePath();
        if (!isThere && !QFile::copy(path, to))
            return window.ShowMessage(Text("Loop creator"), Text("Cannot write %1").arg(to));
        FollowLoopFolders(window.Workstation());
        window.ShowNotice(to);
    });
    menu.exec(point);
}

void CExchangeCommands::Collect() {
    const QString folder = QFileDialog::getExistingDirectory(&window, Text("Folder for the project"), QDir::homePath());
    if (folder.isEmpty()) return;
    const QString own = QDir(folder).filePath(window.Workstation().Session().ProjectName());
    QStringList told;
    QString error;
    if (!CollectProject(window.Workstation(), own, told, error)) told = QStringList(error);
    window.ShowMessage(Text("Collect into a folder"), told.join(QLatin1Char('\n')));
}

void CExchangeCommands::ExportMidi(EWhat what) {
    CWorkstation& document = window.Workstation();
    MidiExportSettings settings;
    const int current = document.Selection().CurrentIndex();
    QString name = document.Session().ProjectName();
    if (what != EWhat::kSong) {
        const auto instrument = document.Selection().CurrentInstrument();
        if (!instrument) return window.ShowMessage(Text("Export MIDI"), Text("There is no instrument."));
        settings.instrument = current;
        name = QString::fromStdString(instrument->title);
    }
    if (what == EWhat::kPattern) {
        settings.song = false;
        settings.pattern = document.Selection().CurrentPattern();
        name += QStringLiteral(" %1").arg(settings.pattern + 1);
    }
    settings.swing = !document.Settings().IsOn(QStringLiteral("MidiWithoutSwing"));
    const QString path = ChooseFileToSave(&window, document.Settings(), EFileKind::kMidi,
                                          name.replace(QLatin1Char('/'), QLatin1Char('_')) + QStringLiteral(".mid"));
    if (path.isEmpty()) return;
    MidiExportCounts counts;
    QString error;
    if (!midi.Export(path, settings, counts, error)) return window.ShowMessage(Text("Export MIDI"), error);
    QString told = Text("%1 notes on %2 tracks.").arg(counts.notes).arg(counts.tracks);
    if (counts.silent > 0) told += QLatin1Char(' ') + Text("Left out: %1 that nobody hears.").arg(counts.silent);
    window.ShowNotice(told);
}

}  // namespace quib
