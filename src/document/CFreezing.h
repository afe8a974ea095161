// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Frozen instruments: has their takes rendered beside the session, keeps them in a folder by what they were rendered
// from, and gives them to the engine while that holds. The project says only which instruments are frozen; without a
// take, or after an edit, an instrument sounds live. User-interface thread.

#include <QObject>
#include <functional>
#include <map>
#include <memory>

#include "document/CFreezeJob.h"

namespace quib {

class CPluginPlaces;

// What decides the length of every step.
struct FrozenTime {
    double sampleRate = 0;  // hertz
    float tempo = 0;        // beats per minute
    PointList tempoLane;
    std::array<int, 3> meter{};  // steps of a beat, beats of a bar, note of a beat

    friend bool operator==(const FrozenTime&, const FrozenTime&) = default;
};

class CFreezing : public QObject {
    Q_OBJECT

public:
    // `gatherProject`: the project as it is now.
    CFreezing(const DocumentContext& document, CPluginPlaces& pluginPlaces,
              std::function<ProjectState()> gatherProject);
    ~CFreezing() override;

    enum class EState {
        kLive,       // not frozen
        kRendering,  // or waiting for it
        kFrozen,
        kStale,  // frozen, but there is no take of what it is now
    };
    struct State {
        EState state = EState::kLive;
        int percent = 0;  // rendered
        QString reason;   // why it sounds live though it is frozen

        friend bool operator==(const State&, const State&) = default;
    };
    State StateOf(const CInstrument& instrument) const;

    // Renders the instrument, or takes what is there already. Tells the user where that cannot be.
    void Freeze(int index);
    // Lets it sound live again; ends a rendering.
    void Thaw(int index);
    // Whichever is the other one; one that is stale is rendered again.
    void Toggle(int index);
    // The 40 ms work.
    void Tick();

Q_SIGNALS:
    void Changed(std::uint32_t instrument);

private:
    // Of an instrument that is frozen, or was just now.
    struct Entry {
        std::shared_ptr<const CFrozenTake> take;
        FrozenSource source;      // of the take
        FrozenTime time;          // likewise
        FrozenSource nextSource;  // of what a job reads or renders
        FrozenTime nextTime;
        bool wanted = false;     // to be rendered
        QString failure;         // of the last rendering
        std::uint64_t seen = 0;  // what the last look was made at
        int quiet = 0;           // ticks since that changed
        int leaving = 0;         // ticks since it was thawed
        State told;
    };

    bool IsCurrent(const CInstrument& instrument, const Entry& entry) const;
    FrozenTime Time() const;
    void FollowJob();
    void Follow(const std::shared_ptr<CInstrument>& instrument, Entry& entry);
    bool Leave(CInstrument& instrument, Entry& entry);
    void LookAgain(const std::shared_ptr<CInstrument>& instrument, Entry& entry);
    void Start(const std::shared_ptr<CInstrument>& instrument, Entry& entry, bool render);
    void Publish(CInstrument& instrument, const Entry& entry, bool on);
    std::filesystem::path Folder() const;

    const DocumentContext& context;
    CPluginPlaces& places;
    std::function<ProjectState()> gather;
    std::map<std::uint32_t, Entry> entries;  // by the instrument's id
    std::unique_ptr<CFreezeJob> job;         // one at a time
};

}  // namespace quib
