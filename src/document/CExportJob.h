// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// An export beside the session: loads on the user-interface thread, which plug-ins want, and renders and
// writes on a thread of its own that stands back behind the others. All calls come from the user-interface
// thread. An object that goes cancels what is under way and waits for it, some milliseconds.

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "export/CExport.h"

namespace quib {

class CWorkstation;

class CExportJob {
public:
    enum class EState { kWorking, kDone, kFailed, kCancelled };

    // `projectBytes`: of a project file.
    CExportJob(ExportSettings settings, std::string projectBytes, CExport::Loader load);
    // Of the project as it is now, with its plug-ins loaded once more.
    CExportJob(CWorkstation& document, ExportSettings settings);
    ~CExportJob();
    CExportJob(const CExportJob&) = delete;
    CExportJob& operator=(const CExportJob&) = delete;

    // Goes on to the next step when one is done; from a timer.
    EState Tick();
    void Cancel() noexcept { cancelled.store(true); }

    // While it works: the share done, 0..1, and the file that is written, CExport::kAll for all at once.
    double Share() const noexcept { return share.load(); }
    int CurrentFile() const noexcept { return currentFile.load(); }
    double Seconds() const;  // since the beginning, or of all

    // At the end.
    const std::string& Error() const noexcept { return error; }
    const std::optional<CExport::Level>& Measured() const noexcept { return level; }
    const std::vector<std::string>& Warnings() const noexcept { return warnings; }
    const std::vector<std::string>& Clipped() const noexcept { return clipped; }
    // Frames up to where playing ended, without what rings on.
    std::int64_t PlayedFrames() const noexcept { return playedFrames; }

private:
    void StartNext();
    void End(EState how);

    std::unique_ptr<CExport> work;  // until the end
    std::future<bool> step;
    bool writing = false;
    EState state = EState::kWorking;
    std::atomic<bool> cancelled{false};
    std::atomic<double> share{0};
    std::atomic<int> currentFile{CExport::kAll};
    std::chrono::steady_clock::time_point begun = std::chrono::steady_clock::now();
    std::optional<double> seconds;
    std::int64_t playedFrames = 0;
    std::string error;
    std::optional<CExport::Level> level;
    std::vector<std::string> warnings;
    std::vector<std::string> clipped;
};

}  // namespace quib
