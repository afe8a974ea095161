// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The file dialogs, each of which starts where the last file of its kind was. User-interface thread.

#include <QString>

class QWidget;

namespace quib {

class CSettings;

enum class EFileKind {
    kProject,
    kInstrument,
    kPattern,
    kBank,
    kProgram,
    kInstrumentPlugin,
    kEffectPlugin,
    kInstrumentOrPlugin,
    kRecording,
    kMidi
};

// Empty when the user gave up.
QString ChooseFileToOpen(QWidget* parent, CSettings& settings, EFileKind kind);
// The name with an extension of the kind: the first one unless it ends in either. "Song 1.0" has none.
QString WithExtension(const QString& file, const QString& extension, const QString& other = {});
// Asks before a file is replaced; adds the extension of the kind where none is given.
QString ChooseFileToSave(QWidget* parent, CSettings& settings, EFileKind kind, const QString& suggestion = {});

}  // namespace quib
