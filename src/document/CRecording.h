// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Recording the master output to a file, and telling how it goes. User-interface thread.

#include <QString>
#include <string>

#include "document/CRecorder.h"
#include "document/DocumentContext.h"
#include "texts/Texts.h"

namespace quib {

class CRecording {
public:
    // `masterRecorder` outlives it.
    CRecording(const DocumentContext& document, CRecorder& masterRecorder)
        : context(document), recorder(masterRecorder) {}

    bool Start(const QString& path);
    void Stop() { recorder.Stop(); }
    // The same, and waits until the file is complete.
    void Finish() { recorder.Finish(); }
    bool IsRecording() const { return recorder.IsRecording(); }
    // For the display.
    QString ProgressText() const { return Text(recorder.Now().text.c_str()); }
    double Seconds() const { return recorder.Now().seconds; }
    quint64 Bytes() const { return recorder.Now().bytes; }
    // Tells an error once, and that a recording goes on in another file, as it does when its rate changes;
    // from the timer.
    void Tick();

private:
    const DocumentContext& context;
    CRecorder& recorder;
    int recordedRate = 0;  // Hz
    std::string recordedFile;
    std::string reportedError;
};

}  // namespace quib
