// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// MIDI files into the project and out of it. An import is one step of undo; into a project without instruments it
// brings tempo, time signature and markers along. User-interface thread.

#include <QString>
#include <QStringList>

#include "document/CSession.h"
#include "project/midi/MidiExport.h"
#include "project/midi/MidiImport.h"

namespace quib {

class CWorkstation;

class CMidiExchange {
public:
    explicit CMidiExchange(CWorkstation& owner) : document(owner) {}

    // Positions as steps of this project. False with `error`.
    bool Read(const QString& path, MidiSong& song, QString& error) const;
    // Each part as a new instrument. `told`: what was imported, then a line each about what was left out.
    bool Import(const MidiSong& song, QStringList& told, QString& error);
    // The notes of one part besides those of the pattern, which grows to hold them.
    bool ImportInto(std::uint32_t instrument, int pattern, const MidiPart& part);

    bool Export(const QString& path, MidiExportSettings settings, MidiExportCounts& counts, QString& error) const;

private:
    std::shared_ptr<CInstrument> MakeInstrument(const MidiPart& part, QString& error);
    void TakeTime(const MidiSong& song);
    void SetSignature(std::array<int, 2> signature);
    QStringList Describe(const MidiSong& song, bool tookTime) const;

    CWorkstation& document;
};

}  // namespace quib
