// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Renders what one instrument gives before its strip into the file of a take, in an engine of its own. The editing
// thread loads, since plug-ins want that; any one thread renders meanwhile.

#include <functional>
#include <memory>
#include <string>

#include "export/CExport.h"

namespace quib {

class CFrozenWriter;

struct FreezeSettings {
    // With that instrument alone, which nothing else uses. Its plug-ins are named, with their states, as those are
    // that are missing.
    ProjectState project;  // as it is, not by way of a file's text, which rounds positions
    std::string key;       // of what is rendered, CFrozenWriter::kKeyLength characters
    std::filesystem::path file;
    double sampleRate = 44100;  // hertz
    int endStep = 0;            // where it ends to play; what sounds on behind it is rendered too
    bool isEndless = false;     // it would play on there
    int stepsPerBeat = 4;
};

class CFreezeRender {
public:
    // Told the share done, 0..1, on the thread that renders; false ends it.
    using Progress = std::function<bool(double share)>;

    CFreezeRender(FreezeSettings freezeSettings, CExport::Loader pluginLoader, Progress tellProgress);
    ~CFreezeRender();
    CFreezeRender(const CFreezeRender&) = delete;
    CFreezeRender& operator=(const CFreezeRender&) = delete;

    // Editing thread. False with the reason in Error().
    bool Load();
    // The thread that works. The same; without a reason when it was ended. Leaves no half file.
    bool Render();
    const std::string& Error() const noexcept { return error; }

private:
    struct Engine;

    bool Fail(const std::string& reason);
    bool LoadInto(CPublished<PluginSlot>& slot, ESlotKind kind);
    bool IsTailSilent() const;
    bool Play(CFrozenWriter& writer);
    bool TakeBlock(CFrozenWriter& writer);

    FreezeSettings settings;
    CExport::Loader load;
    Progress progress;
    std::unique_ptr<Engine> engine;
    std::int64_t frames = 0;
    std::int64_t silentFrames = 0;
    std::string error;
};

}  // namespace quib
