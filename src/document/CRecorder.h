// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Records the master output to a file with a thread of its own that writes to disk, so that neither the
// windows nor the render thread wait for it. Every function but those of that thread is for the
// user-interface thread.

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>

#include "devices/CLame.h"

namespace quib {

class CRecorder {
public:
    // What the display shows.
    struct Progress {
        bool recording = false;
        double seconds = 0;
        std::uint64_t bytes = 0;
        std::uint64_t droppedFrames = 0;
        std::string text;   // "Time: ...", or what went wrong
        std::string error;  // path and reason; empty while all is well
        std::string file;   // that is written now, or was last
    };

    CRecorder();
    ~CRecorder();
    CRecorder(const CRecorder&) = delete;
    CRecorder& operator=(const CRecorder&) = delete;

    // To be given to the engine before anything renders.
    CLame& Lame() noexcept { return lame; }

    // Starts a file, ending one that is being recorded. False when it could not be started; Now().text
    // then is for the display. Waits for the disk.
    bool Start(const std::filesystem::path& path, int sampleRate);
    // Asks to go on in another file, since the sound comes at another rate.
    void Continue(int sampleRate);
    // Asks for the end; the file is complete when Now() says that nothing records.
    void Stop();
    // The same, and waits until the file is complete.
    void Finish();

    bool IsRecording() const;
    Progress Now() const;

private:
    enum class EOrder { kNone, kStart, kContinue, kStop, kQuit };

    void Run();
    void Obey(std::unique_lock<std::mutex>& lock);
    int Order(EOrder next);

    CLame lame;  // the thread's, but for PushBlock
    mutable std::mutex mutex;
    std::condition_variable changed;
    EOrder order = EOrder::kNone;
    std::filesystem::path path;
    int rate = 0;
    int result = 0;
    Progress progress;
    std::thread thread;
};

}  // namespace quib
