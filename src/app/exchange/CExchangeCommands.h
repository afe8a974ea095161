// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The commands of the File menu that bring files of other programs in and out, and what dropping such a file
// does. User-interface thread.

#include <QPoint>
#include <QString>

#include "document/CMidiExchange.h"

namespace quib {

class CMainWindow;

class CExchangeCommands {
public:
    explicit CExchangeCommands(CMainWindow& mainWindow);

    static bool IsMidi(const QString& path);

    void ChooseMidi();
    // As new instruments.
    void ImportMidi(const QString& path);
    // Into the pattern that the piano roll shows; asks which part of the file when there are several.
    void ImportMidiInto(const QString& path, const QPoint& point);

    // What can be done with a sound file, as a menu at the mouse.
    void OfferSound(const QString& path, const QPoint& point);

    // The project with its loops, for another machine.
    void Collect();

    enum class EWhat { kSong, kInstrument, kPattern };
    void ExportMidi(EWhat what);

private:
    CMainWindow& window;
    CMidiExchange midi;
};

}  // namespace quib
