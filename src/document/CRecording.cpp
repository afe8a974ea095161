// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CRecording.h"

namespace quib {

bool CRecording::Start(const QString& path) {
    reportedError.clear();
    recordedRate = static_cast<int>(context.audio.Format().sampleRate);
    return recorder.Start(path.toStdString(), recordedRate);
}

void CRecording::Tick() {
    const CRecorder::Progress now = recorder.Now();
    // A file has one rate.
    if (now.recording && recordedRate != static_cast<int>(context.audio.Format().sampleRate)) recorder.Stop();
    if (now.error.empty() || now.error == reportedError) return;
    reportedError = now.error;
    context.tell(QStringLiteral("QUIBBOX"), QString::fromStdString(now.error));
}

}  // namespace quib
