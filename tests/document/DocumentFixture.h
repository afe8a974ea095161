// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A workstation in a folder of its own that nothing renders, with the plug-ins of the build.

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include "Testing.h"
#include "document/CSettings.h"
#include "document/CWorkstation.h"

namespace quib {

class DocumentTest : public testing::Test {
protected:
    DocumentTest()
        : settings(folder.filePath(QStringLiteral("settings.ini"))),
          folders(folder.filePath(QStringLiteral("program"))) {
        PrepareFolders(folders, settings);
        for (const char* const kind : {"PluginInstruments", "PluginEffects"}) {
            LinkPlugins(QStringLiteral(QUIB_BIN_DIR "/") + QLatin1String(kind), folders.program + QLatin1String(kind));
        }
        workstation = std::make_unique<CWorkstation>(settings, folders);
        QObject::connect(workstation.get(), &CWorkstation::Message,
                         [this](const QString& caption, const QString& text) { told = caption + ": " + text; });
    }

    static void LinkPlugins(const QString& from, const QString& to) {
        const QStringList names = QDir(from).entryList({QStringLiteral("*.so")}, QDir::Files);
        for (const QString& name : names) QFile::link(from + "/" + name, to + "/" + name);
    }

    // Adds the built-in synthesiser; gives its index.
    int AddSynth() {
        QString error;
        const int index = Stack().AddInstrument(QStringLiteral("QUIB synth"), error);
        EXPECT_GE(index, 0) << error.toStdString();
        return index;
    }
    std::shared_ptr<CInstrument> At(int index) { return Stack().Instrument(index); }
    CPlugin& PluginAt(int index) { return *At(index)->plugin.ForEdit()->plugin; }
    SlotPlace Place(int index) { return {SlotPlace::EKind::kInstrument, At(index)->Id(), 0}; }
    QUndoStack& Steps() { return workstation->Changes().Steps(); }
    CInstrumentStack& Stack() { return workstation->Stack(); }
    CContents& Contents() { return workstation->Contents(); }
    CPluginPlaces& Places() { return workstation->Places(); }
    CSession& Session() { return workstation->Session(); }
    std::string UndoText() { return Steps().undoText().toStdString(); }
    QString File(const char* name) { return folder.filePath(QLatin1String(name)); }

    QTemporaryDir folder;
    CSettings settings;
    Folders folders;
    std::unique_ptr<CWorkstation> workstation;
    QString told;
};

inline std::shared_ptr<const CPattern> SomePattern(int key) {
    return std::make_shared<const CPattern>(16, std::vector<Note>{{0, 1, key, 100}, {4, 1, key + 7, 90}});
}

}  // namespace quib
