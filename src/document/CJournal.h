// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Keeps the loss of a crash below ten seconds: some seconds after a change the whole project is in a file
// beside the backup. The window's thread only takes hold of immutable parts and of the plug-ins' states, a
// little at each tick; another thread makes the file of them. Never keeps the render thread out of a plug-in.
// User-interface thread.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "document/CAsyncSave.h"
#include "document/CChanges.h"
#include "project/ProjectFile.h"
#include "project/ProjectState.h"

namespace quib {

class CJournal {
public:
    using Gather = std::function<ProjectState()>;

    CJournal(const CChanges& projectChanges, CAsyncSave& fileSaver, Gather gatherProject, HeldKeys keysOf,
             CAsyncSave::Done writtenOrNot)
        : changes(projectChanges),
          saver(fileSaver),
          gather(std::move(gatherProject)),
          heldKeys(std::move(keysOf)),
          done(std::move(writtenOrNot)) {}

    // From the 40 ms timer. `path`: of the file.
    void Tick(const std::filesystem::path& path);
    // Another project is there: what was begun is dropped, and what is there now counts as written.
    void Restart();

private:
    // What is known of a plug-in's state.
    struct Known {
        std::weak_ptr<CPlugin> plugin;
        std::shared_ptr<const StateImage> image;
        std::int32_t program = 0;
        std::uint64_t cost = 0;  // nanoseconds of the last look
        std::uint64_t time = 0;  // of the last look
    };

    bool IsDue(std::uint64_t now) const;
    void Begin(std::uint64_t now);
    bool Step();
    void Finish(const std::filesystem::path& path);
    void Look(const std::shared_ptr<CPlugin>& plugin);
    CPlugin::StoredState StateOf(const std::shared_ptr<CPlugin>& plugin);
    std::shared_ptr<CInstrument> Detached(CInstrument& instrument);

    const CChanges& changes;
    CAsyncSave& saver;
    Gather gather;
    HeldKeys heldKeys;
    CAsyncSave::Done done;
    std::map<const CPlugin*, Known> known;
    std::uint64_t written = 0;  // revision of the project
    std::uint64_t begun = 0;    // time of the last pass, nanoseconds
    bool passing = false;
    std::uint64_t passed = 0;  // revision that the pass writes, or a later one
    ProjectState state;
    std::vector<std::shared_ptr<CPlugin>> plugins;
    std::size_t nextPlugin = 0;
    std::size_t nextInstrument = 0;
};

}  // namespace quib
