// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Recording a performance: armed, every change of pattern that is heard in pattern mode becomes an item of the
// song, from the song's present place on. A take begins and ends with playing and is one step of undo.
// User-interface thread.

#include <vector>

#include "document/DocumentContext.h"
#include "engine/PlayPicture.h"

namespace quib {

class CPerformance {
public:
    explicit CPerformance(const DocumentContext& document) : context(document) {}

    CValue& Armed() noexcept { return armed; }
    // From the timer. What was chosen between two calls is placed where it began, which the steps tell.
    void Tick();
    // Another project comes.
    void Abandon();

private:
    struct Track {
        std::uint32_t instrument = 0;
        int pattern = -1;
        int origin = 0;  // step of the take at which the pattern began
        Playlist played;
    };

    void Begin(const PlayPicture& picture);
    void Follow(const PlayPicture& picture);
    void FollowTrack(Track& track, const InstrumentPicture& shown, int now);
    void Finish();
    Playlist Recorded(const CInstrument& instrument, const Track& track) const;

    const DocumentContext& context;
    CValue armed;
    bool running = false;
    int base = 0;   // song step of the take's first step
    int steps = 0;  // that were heard so far
    std::vector<Track> tracks;
};

}  // namespace quib
