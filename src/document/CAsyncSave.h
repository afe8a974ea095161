// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Writes files on a thread of its own, in order, each replaced in one step. A slow disk delays the files,
// never the windows. User-interface thread; `done` is called there too, from Poll.

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quib {

class CAsyncSave {
public:
    // Makes bytes the content of a file; replaced in tests by something slow.
    using Writer = std::function<bool(const std::filesystem::path& path, const std::string& bytes, std::string& error)>;
    // `error` is empty when the file is on disk.
    using Done = std::function<void(const std::string& error)>;

    explicit CAsyncSave(Writer fileWriter = {});
    ~CAsyncSave();  // writes what waits
    CAsyncSave(const CAsyncSave&) = delete;
    CAsyncSave& operator=(const CAsyncSave&) = delete;

    // Files of one path that wait are replaced by the newest, so a slow disk never falls behind.
    void Write(std::filesystem::path path, std::string bytes, Done done = {});
    // The same for bytes that are made on that thread, of what nobody changes any more.
    using Make = std::function<std::string()>;
    void Write(std::filesystem::path path, Make make, Done done = {});
    // Removes all but the newest `keep` files of a folder whose names begin and end like this, and what killed saves
    // have left in it, when everything written before is on disk.
    void Prune(std::filesystem::path folder, std::string prefix, std::string suffix, std::size_t keep);
    // Tells the ends of files; from the 40 ms timer.
    void Poll();
    // Waits until everything is on disk, then polls.
    void Finish();
    bool IsBusy() const;

private:
    struct Job {
        std::filesystem::path path;
        std::string bytes;
        Make make;  // of the bytes; unset: they are there
        Done done;
        std::function<void()> task;  // instead of a file
    };
    struct End {
        Done done;
        std::string error;
    };

    void Run();
    void Push(Job job);
    void PushFile(Job job);

    Writer writer;
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Job> jobs;
    std::vector<End> ends;
    bool working = false;
    bool quit = false;
    std::thread thread;
};

}  // namespace quib
