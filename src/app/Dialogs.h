// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The dialogs of the menus. Each reads the settings when it opens and writes them when the user confirms.
// User-interface thread.

#include <QString>

class QWidget;

namespace quib {

class CBackupCountdown;
class CPluginCatalog;
class CSettings;
class CWorkstation;

// What the user chose in the dialog of sound and MIDI, as typed.
struct AudioChoice {
    QString outputDevice;
    QString sampleRate;
    QString bufferSize;
    QString midiInDevice;
    QString timebase;
};
AudioChoice ReadAudioChoice(const CSettings& settings);

// What has to follow from a choice that was stored.
struct AudioChanges {
    bool device = false;  // another one was chosen
    bool output = false;  // the sound output has to be opened anew
    bool midi = false;    // the MIDI input has to be opened anew
    int timebase = 96;
};
AudioChanges StoreAudioChoice(CSettings& settings, const AudioChoice& choice);

// The leading integer of a text; 0 where it has none.
int ToInteger(const QString& text);

// True when the timebase or the time signature may have changed.
bool RunAudioDialog(QWidget* parent, CWorkstation& workstation);
bool RunTimeSignatureDialog(QWidget* parent, CWorkstation& workstation);
// Gives the engine the time signature and the timebase of the settings.
void ApplyTimeSignature(const CSettings& settings, CWorkstation& workstation);
void RunBackupDialog(QWidget* parent, CSettings& settings, CBackupCountdown& countdown);
// Tells in a box of its own, which holds nothing up, what could not be done. Nothing for an empty text.
void TellError(QWidget* parent, const QString& text, const QString& caption = QStringLiteral("QUIBBOX"));
void ShowAboutBox(QWidget* parent);
// Asks every plug-in that is new; can be cancelled.
void RunScanDialog(QWidget* parent, CPluginCatalog& catalog);
// True when the user changed the folders.
bool RunPluginFoldersDialog(QWidget* parent, CSettings& settings);

}  // namespace quib
