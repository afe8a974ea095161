// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The notes of one take: what keys play becomes notes of patterns, seen as soon as it is played, heard from
// the next pass on, and one step of undo at the end. User-interface thread.

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "document/CGesture.h"
#include "engine/EngineMessages.h"

namespace quib {

struct NoteTakeOptions {
    bool replace = false;  // a pass removes what stood in the steps before the take
    double grid = 0;       // steps: what is played goes to its lines; 0: stays where it is
    float strength = 1;    // 0 to 1: how much of the way
};

class CNoteTake {
public:
    explicit CNoteTake(CChanges& owner) : changes(owner), gesture(owner) {}

    bool IsEmpty() const noexcept { return tracks.empty(); }
    // Whether somebody else has changed a pattern of the take: time to finish it.
    bool IsDisturbed() const;
    // The first note of a pattern that is of this take; beyond the last one when it has none there.
    std::size_t FirstRecorded(const std::shared_ptr<const CPattern>& notes) const;
    // A key that went down or up, as the engine tells it.
    void Take(const EngineNotice& played, const std::shared_ptr<CInstrument>& instrument,
              const NoteTakeOptions& options);
    // The pattern of the instrument has come to this step: it is replaced up to there.
    void Sweep(const std::shared_ptr<CInstrument>& instrument, int pattern, int step);
    // Publishes what there is when `rendered` samples have been played, keys held now being as long as they are
    // at `heard`.
    void Publish(std::int64_t rendered, std::int64_t heard);
    // What others have made of the patterns since is what is played into. Before anything was published.
    void Rebase();
    // Ends held keys at `heard` and makes the step.
    void Finish(const QString& name, std::int64_t heard);

private:
    struct Recorded {
        Note note;
        std::int64_t begun;  // sample
        float stepSamples;
        std::int64_t due;  // sample from which on it would not be heard in this pass
        bool held = true;
    };
    struct Track {
        std::shared_ptr<CInstrument> instrument;
        int pattern;
        std::shared_ptr<const CPattern> before;
        std::shared_ptr<const CPattern> shown;
        std::vector<Recorded> notes;
        std::vector<bool> swept;  // steps that were passed; empty: nothing is replaced
        int lastStep = -1;
        std::size_t firstRecorded = std::numeric_limits<std::size_t>::max();  // in `shown`
    };

    Track& TrackOf(const std::shared_ptr<CInstrument>& instrument, int pattern);
    void Begin(Track& track, const EngineNotice& played, const NoteTakeOptions& options);
    void End(const EngineNotice& played);
    static std::shared_ptr<const CPattern> Written(Track& track, std::int64_t rendered);

    CChanges& changes;
    CGesture gesture;
    std::vector<Track> tracks;
};

}  // namespace quib
