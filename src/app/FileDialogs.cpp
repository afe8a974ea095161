// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FileDialogs.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include "app/browser/PluginChoices.h"
#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

namespace {

struct Kind {
    const char* title;
    const char* filter;
    const char* folder;     // name of the setting that keeps it
    const char* extension;  // empty: none is added
    const char* otherFilter = nullptr;
    const char* otherExtension = "";  // of files of the other filter
};

// In the order of EFileKind. "%1" in a filter: what libraries of plug-ins are called.
constexpr Kind kKinds[] = {
    {TextKey("Choose the Program file"), TextKey("Quib Program File (*.prg)"), "ProgramDir", ".prg"},
    {TextKey("Choose the Instrument file"), TextKey("Quib Instrument File (*.ist)"), "InstrumentDir", ".ist"},
    {TextKey("Choose the Pattern file"), TextKey("Quib Pattern File (*.ptn)"), "PatternDir", ".ptn"},
    {TextKey("Choose the Bank file"), TextKey("Plugin Bank File (*.fxb)"), "PresetDir", ".fxb"},
    {TextKey("Choose the Preset file"), TextKey("Plugin Preset File (*.fxp)"), "PresetDir", ".fxp"},
    {TextKey("Choose the VST Plugin library"), TextKey("VST library (%1)"), "PluginDir", ""},
    {TextKey("Choose the VST Plugin library"), TextKey("VST library (%1)"), "EffectDir", ""},
    {TextKey("Choose an instrument or a plug-in"), TextKey("Instruments (*.ist %1)"), "InstrumentDir", ""},
    {TextKey("Record to"), TextKey("Wave files (*.wav)"), "RecordDir", ".wav", TextKey("MP3 files (*.mp3)"), ".mp3"},
    {TextKey("Choose the MIDI file"), TextKey("MIDI files (*.mid *.midi)"), "MidiDir", ".mid", nullptr, ".midi"},
};

const Kind& Describe(EFileKind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

QString FilterOf(const Kind& kind) {
    const QString other = kind.otherFilter != nullptr ? QStringLiteral(";;") + Text(kind.otherFilter) : QString();
    return Text(kind.filter).replace(QLatin1String("%1"), PluginFilePatterns()) + other;
}

QString StartFolder(const CSettings& settings, const Kind& kind) {
    const QString folder = settings.ReadSettingString(kSettingsSection, QLatin1String(kind.folder));
    return folder.isEmpty() ? QDir::homePath() : folder;
}

void KeepFolder(CSettings& settings, const Kind& kind, const QString& file) {
    if (file.isEmpty()) return;
    settings.WriteSettingString(kSettingsSection, QLatin1String(kind.folder),
                                QFileInfo(file).absolutePath() + QLatin1Char('/'));
}

bool MayReplace(QWidget* parent, const QString& title) {
    return QMessageBox::question(parent, title, Text("This file exists !\r\nDo you want to replace it ?"),
                                 QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace

QString WithExtension(const QString& file, const QString& extension, const QString& other) {
    const auto has = [&file](const QString& end) { return !end.isEmpty() && file.endsWith(end, Qt::CaseInsensitive); };
    return has(extension) || has(other) ? file : file + extension;
}

QString ChooseFileToOpen(QWidget* parent, CSettings& settings, EFileKind fileKind) {
    const Kind& kind = Describe(fileKind);
    const QString file =
        QFileDialog::getOpenFileName(parent, Text(kind.title), StartFolder(settings, kind), FilterOf(kind));
    KeepFolder(settings, kind, file);
    return file;
}

QString ChooseFileToSave(QWidget* parent, CSettings& settings, EFileKind fileKind, const QString& suggestion) {
    const Kind& kind = Describe(fileKind);
    QString filter;
    QString file =
        QFileDialog::getSaveFileName(parent, Text(kind.title), QDir(StartFolder(settings, kind)).filePath(suggestion),
                                     FilterOf(kind), &filter, QFileDialog::DontConfirmOverwrite);
    if (file.isEmpty()) return {};
    const bool isOther = kind.otherFilter != nullptr && filter == Text(kind.otherFilter);
    file = isOther ? WithExtension(file, QLatin1String(kind.otherExtension), QLatin1String(kind.extension))
                   : WithExtension(file, QLatin1String(kind.extension), QLatin1String(kind.otherExtension));
    if (QFileInfo::exists(file) && !MayReplace(parent, Text(kind.title))) return {};
    KeepFolder(settings, kind, file);
    return file;
}

}  // namespace quib
