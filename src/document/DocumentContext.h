// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What every part of the document works with. User-interface thread.

#include <QString>
#include <functional>

#include "document/CChanges.h"
#include "document/CSettings.h"
#include "document/Folders.h"
#include "engine/CAudio.h"

namespace quib {

struct DocumentContext {
    CAudio& audio;
    CSettings& settings;
    const Folders& folders;
    CChanges& changes;
    // Shows a message box from the event loop.
    std::function<void(const QString& caption, const QString& text)> tell;
    // Tells something that needs no answer, without interrupting.
    std::function<void(const QString& text)> notice;

    const InstrumentList& Instruments() const { return *audio.instruments.ForEdit(); }
    // Null for an index or id that is not there.
    std::shared_ptr<CInstrument> Instrument(int index) const;
    std::shared_ptr<CInstrument> InstrumentById(std::uint32_t id) const { return Instrument(IndexOf(id)); }
    int IndexOf(std::uint32_t id) const;  // -1: not there
};

}  // namespace quib
