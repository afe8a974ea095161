// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/PatternMenu.h"

#include <QMenu>
#include <algorithm>

#include "editors/base/PatternClipboard.h"
#include "editors/pianoroll/PatternCommands.h"
#include "model/edits/PatternEdits.h"
#include "texts/Texts.h"

namespace quib {

namespace {

int SelectedPattern(const CInstrument& instrument) {
    return std::clamp(instrument.patternSelected.Get(), 0, kPatternCount - 1);
}

void Apply(CWorkstation& station, std::uint32_t id, NoteState (*edit)(const NoteState&), const char* name) {
    const auto instrument = station.Stack().InstrumentById(id);
    if (!instrument) return;
    station.Changes().Settle();
    const int pattern = SelectedPattern(*instrument);
    const NoteState before{instrument->patterns[static_cast<std::size_t>(pattern)].ForEdit(), {}};
    const NoteState next = edit(before);
    if (next.pattern != before.pattern) station.Contents().SetPattern(id, pattern, next.pattern, Text(name));
}

void Copy(CWorkstation& station, std::uint32_t id) {
    station.Changes().Settle();
    const auto instrument = station.Stack().InstrumentById(id);
    if (instrument) CopyPatternToClipboard(*instrument, SelectedPattern(*instrument));
}

void Paste(CWorkstation& station, std::uint32_t id) {
    const int index = station.Stack().IndexOf(id);
    if (index < 0) return;
    const std::optional<PatternClip> clip = PatternOfClipboard();
    if (!clip) return TellNothingToPaste(station);
    station.Changes().Settle();
    station.Contents().PastePattern(index, SelectedPattern(*station.Stack().Instrument(index)), *clip);
}

}  // namespace

void FillPatternMenu(QMenu& menu, CWorkstation& station, std::uint32_t instrument) {
    const auto add = [&menu](const char* text, const char* key, auto run) {
        QAction* const action = menu.addAction(Text(text), run);
        if (key != nullptr) action->setShortcut(QKeySequence(QLatin1String(key)));
    };
    add(TextKey("Cut"), "Ctrl+X", [&station, instrument] {
        Copy(station, instrument);
        Apply(station, instrument, ClearNotes, TextKey("Cut pattern"));
    });
    add(TextKey("Copy"), "Ctrl+C", [&station, instrument] { Copy(station, instrument); });
    add(TextKey("Paste"), "Ctrl+V", [&station, instrument] { Paste(station, instrument); });
    menu.addSeparator();
    // Their keys are those of the piano roll, where they also act on a selection.
    for (const PatternCommand& command : PatternCommands()) {
        add(command.text, nullptr,
            [&station, instrument, &command] { Apply(station, instrument, command.edit, command.text); });
    }
}

bool CPatternEdits::CanEdit(EEdit command) const {
    const bool isClipboard = command == EEdit::kCut || command == EEdit::kCopy || command == EEdit::kPaste;
    return isClipboard && station.Selection().CurrentInstrument() != nullptr;
}

void CPatternEdits::Edit(EEdit command) {
    const auto current = station.Selection().CurrentInstrument();
    if (!current || !CanEdit(command)) return;
    if (command == EEdit::kPaste) return Paste(station, current->Id());
    Copy(station, current->Id());
    if (command == EEdit::kCut) Apply(station, current->Id(), ClearNotes, TextKey("Cut pattern"));
}

}  // namespace quib
