// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One export: an engine of its own plays the project, loaded once more from its bytes, into files that
// appear when all of them are whole. The editing thread loads, since plug-ins want that; any one thread
// renders and writes meanwhile. The session's own engine is never touched.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/CAudio.h"
#include "export/CFrameSpool.h"
#include "export/CLoudness.h"
#include "export/CSignalStatistics.h"
#include "export/CSoundFile.h"
#include "export/ExportPlan.h"
#include "export/ExportSettings.h"
#include "project/ProjectFile.h"

namespace quib {

class CExport {
public:
    // Loads a plug-in into the environment of the engine that it is for.
    using Loader = std::function<std::shared_ptr<CPlugin>(const PluginReference& wanted, ESlotKind kind,
                                                          PluginEnvironment& environment, std::string& error)>;

    // Told on the thread that works: the share of the whole work that is done, 0..1, and the file that is
    // written, kAll for all at once. False cancels.
    using Progress = std::function<bool(double share, int file)>;
    static constexpr int kAll = -1;

    // `projectBytes`: of a project file.
    CExport(ExportSettings exportSettings, std::string projectBytes, Loader pluginLoader, Progress tellProgress);
    ~CExport();
    CExport(const CExport&) = delete;
    CExport& operator=(const CExport&) = delete;

    // --- Editing thread, while no other works ------------------------------------------------------

    // Whether there is another pass through the song to load and render.
    bool HasMorePasses() const noexcept { return nextPass < passes.size(); }
    // Makes the engine of the next pass, and with the first the files under temporary names. False with
    // the reason in Error().
    bool Load(const LoadProgress& progress = {});
    const std::string& Error() const noexcept { return error; }
    // In English, one line each about what could not be loaded.
    const std::vector<std::string>& Warnings() const noexcept { return warnings; }
    const std::vector<ExportFile>& Files() const noexcept { return files; }
    // After the render.
    std::int64_t Frames() const noexcept { return frames; }
    // Of these, without what rings on.
    std::int64_t PlayedFrames() const noexcept { return playedFrames; }
    // Of the mix, where it was played.
    const CSignalStatistics& Mix() const noexcept { return mix; }
    std::size_t InstrumentCount() const noexcept;
    // What was measured and done about it; nothing without a target.
    struct Level {
        double loudness = 0;  // LUFS, of the mix
        double truePeak = 0;  // dBTP
        double gain = 0;      // dB, of all files
    };
    const std::optional<Level>& Measured() const noexcept { return level; }
    // Plug-ins of the project that are not on this machine.
    std::vector<std::string> MissingPlugins() const;
    // Files whose sound passed full scale and was clipped.
    std::vector<std::string> Clipped() const;

    // --- The thread that works ---------------------------------------------------------------------

    // Plays the pass that was loaded. False with Error(), which is empty when it was cancelled.
    bool Render();
    // After the last pass: puts the files there.
    bool Write();

private:
    struct Engine;
    struct Output {
        std::unique_ptr<CSoundFile> file;
        std::unique_ptr<CFrameSpool> spool;  // first, when the gain is not known yet
        int strip = -1;                      // of the engine's strips
    };

    bool IsSolo() const noexcept { return settings.stems && settings.stemPoint == EStemPoint::kAfterMaster; }
    int SoloFile() const noexcept { return passes[nextPass]; }
    void ChooseSpan();
    void ChoosePasses();
    void MuteOthers(int instrument);
    bool OpenOutputs();
    bool TakeBlock(int count);
    bool TakeInto(std::size_t index, int count);
    bool WriteScaled(std::size_t index, float gain);
    void MeasureGain();
    bool Fail(const std::string& reason);

    ExportSettings settings;
    std::string project;
    Loader load;
    Progress progress;
    std::unique_ptr<Engine> engine;
    std::vector<ExportFile> files;
    std::vector<Output> outputs;  // one a file
    std::unique_ptr<CLoudness> meter;
    std::optional<Level> level;
    CSignalStatistics mix;
    std::vector<float> left, right;
    std::vector<std::string> warnings;
    std::string error;
    std::int64_t frames = 0;
    std::int64_t playedFrames = 0;
    std::vector<int> passes{kAll};  // the file that plays alone in each
    std::size_t nextPass = 0;
};

}  // namespace quib
