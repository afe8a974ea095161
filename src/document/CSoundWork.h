// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Reads a sound file, and then finds its tempo, on a thread of its own, which stands back behind the others. The
// window's thread starts, asks and cancels; it never waits but for the end of what was cancelled.

#include <QString>
#include <atomic>
#include <functional>
#include <future>
#include <memory>

#include "export/SoundClip.h"
#include "export/rhythm/RhythmHits.h"
#include "export/rhythm/RhythmTempo.h"

namespace quib {

// A sound that was read, or, without a path, the rhythm of the one before or of the master output.
struct HeardSound {
    QString path;
    SoundClip clip;
    std::vector<float> mono;
    RhythmTempo rhythm;
    std::vector<RhythmHit> hits;  // by the usual settings
    double seconds = 0;           // that it took
    std::string error;            // not empty: there is nothing else
};

class CSoundWork {
public:
    ~CSoundWork() { Cancel(); }

    // The sound alone, so that it can be shown.
    void Read(const QString& path);
    // Of a loop that was rendered with what rings on after so many frames.
    void ReadLoop(const QString& path, std::int64_t frames);
    // Its hits, and its tempo where that is wanted.
    void Find(std::shared_ptr<const HeardSound> sound, bool isTempoWanted = true);
    // Of what was heard elsewhere.
    void Find(std::vector<float> mono, int sampleRate);
    void Cancel();
    bool IsBusy() const { return work.valid(); }
    bool IsReading() const { return IsBusy() && reading; }
    // Of the file, 0..1.
    double Share() const noexcept { return share.load(); }
    // What has been finished since the last time; null while there is nothing, or it was cancelled.
    std::shared_ptr<const HeardSound> Take();

private:
    void Start(std::function<void(HeardSound&)> run);
    bool ReadInto(const QString& path, HeardSound& heard);

    std::future<std::shared_ptr<HeardSound>> work;
    bool reading = false;
    std::atomic<bool> cancelled{false};
    std::atomic<double> share{0};
};

}  // namespace quib
