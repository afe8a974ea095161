// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CRecording.h"

namespace quib {

bool CRecording::Start(const QString& path) {
    reportedError.clear();
    recordedRate = static_cast<int>(context.audio.Format().sampleRate);
    recordedFile = path.toStdString();
    return recorder.Start(recordedFile, recordedRate);
}

void CRecording::Tick() {
    const CRecorder::Progress now = recorder.Now();
    // A file has one rate.
    const int rate = static_cast<int>(context.audio.Format().sampleRate);
    if (now.recording && recordedRate != rate) recorder.Continue(recordedRate = rate);
    if (now.recording && now.file != recordedFile) {
        recordedFile = now.file;
        context.notice(Text("The recording goes on in %1").arg(QString::fromStdString(now.file)));
    }
    if (now.error.empty() || now.error == reportedError) return;
    reportedError = now.error;
    context.tell(QStringLiteral("QUIBBOX"), QString::fromStdString(now.error));
}

}  // namespace quib
