// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/base/PatternClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include "document/CWorkstation.h"
#include "texts/Texts.h"

namespace quib {

namespace {

void Put(const CRecordWriter& writer) {
    const std::span<const char> text = writer.Bytes();
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

}  // namespace

void CopyNotesToClipboard(const CPattern& notes) {
    CRecordWriter writer;
    WriteNotes(writer, "", 0, notes, 1);
    Put(writer);
}

void CopyPatternToClipboard(const CInstrument& instrument, int pattern) {
    CRecordWriter writer;
    WritePatternAlone(writer, instrument, pattern);
    Put(writer);
}

std::optional<PatternClip> PatternOfClipboard() {
    const QByteArray text = QGuiApplication::clipboard()->text().toUtf8();
    return ReadPatternClip({text.constData(), static_cast<std::size_t>(text.size())});
}

void TellNothingToPaste(CWorkstation& document) {
    Q_EMIT document.Message(Text("Paste"), Text("There are no notes and no pattern on the clipboard."));
}

}  // namespace quib
