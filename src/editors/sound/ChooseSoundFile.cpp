// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/sound/ChooseSoundFile.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "document/CSettings.h"
#include "texts/Texts.h"

namespace quib {

QString ChooseSoundFile(QWidget* parent, CSettings& settings) {
    const QString section = QStringLiteral("Settings");
    const QString name = QStringLiteral("SoundDir");
    const QString kept = settings.ReadSettingString(section, name);
    const QString path = QFileDialog::getOpenFileName(
        parent, Text("Choose the sound file"), kept.isEmpty() ? QDir::homePath() : kept,
        Text("Sound files") + QStringLiteral(" (*.wav *.mp3 *.flac *.ogg *.opus *.aif *.aiff)"));
    parent->activateWindow();
    if (!path.isEmpty()) settings.WriteSettingString(section, name, QFileInfo(path).absolutePath());
    return path;
}

}  // namespace quib
