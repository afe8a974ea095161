// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CAsyncSave.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/CAtomicFile.h"

namespace quib {

namespace fs = std::filesystem;

namespace {

bool WriteFile(const fs::path& path, const std::string& bytes, std::string& error) {
    std::error_code ignored;
    fs::create_directories(path.parent_path(), ignored);
    return CAtomicFile().Replace(path, bytes, error);
}

// The names hold the time, so their order is that of their ages.
void RemoveOldest(const fs::path& folder, const std::string& prefix, const std::string& suffix, std::size_t keep) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(prefix) && name.ends_with(suffix)) files.push_back(entry->path());
    }
    std::sort(files.begin(), files.end());
    while (files.size() > keep) {
        fs::remove(files.front(), error);
        files.erase(files.begin());
    }
}

}  // namespace

CAsyncSave::CAsyncSave(Writer fileWriter)
    : writer(fileWriter ? std::move(fileWriter) : Writer(WriteFile)), thread([this] { Run(); }) {}

CAsyncSave::~CAsyncSave() {
    {
        const std::lock_guard lock(mutex);
        quit = true;
    }
    changed.notify_all();
    thread.join();
}

void CAsyncSave::Write(fs::path path, std::string bytes, Done done) {
    PushFile({std::move(path), std::move(bytes), {}, std::move(done), {}});
}

void CAsyncSave::Write(fs::path path, Make make, Done done) {
    PushFile({std::move(path), {}, std::move(make), std::move(done), {}});
}

void CAsyncSave::PushFile(Job job) {
    {
        const std::lock_guard lock(mutex);
        const auto older = std::find_if(jobs.begin(), jobs.end(),
                                        [&](const Job& waiting) { return !waiting.task && waiting.path == job.path; });
        if (older != jobs.end()) {
            older->bytes = std::move(job.bytes);
            older->make = std::move(job.make);
            if (older->done && job.done) {
                job.done = [first = std::move(older->done), second = std::move(job.done)](const std::string& error) {
                    first(error);
                    second(error);
                };
            }
            if (job.done) older->done = std::move(job.done);
            return;
        }
    }
    Push(std::move(job));
}

void CAsyncSave::Prune(fs::path folder, std::string prefix, std::string suffix, std::size_t keep) {
    Job job;
    job.task = [folder = std::move(folder), prefix = std::move(prefix), suffix = std::move(suffix), keep] {
        RemoveOldest(folder, prefix, suffix, keep);
        CAtomicFile::RemoveLeftovers(folder);
    };
    Push(std::move(job));
}

void CAsyncSave::Push(Job job) {
    {
        const std::lock_guard lock(mutex);
        jobs.push_back(std::move(job));
    }
    changed.notify_all();
}

void CAsyncSave::Run() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return quit || !jobs.empty(); });
        if (jobs.empty()) return;
        Job job = std::move(jobs.front());
        jobs.pop_front();
        working = true;
        lock.unlock();
        std::string error;
        if (job.make) job.bytes = job.make();
        if (job.task) {
            job.task();
        } else if (!writer(job.path, job.bytes, error) && error.empty()) {
            error = job.path.string();
        }
        lock.lock();
        working = false;
        if (job.done) ends.push_back({std::move(job.done), std::move(error)});
        changed.notify_all();
    }
}

void CAsyncSave::Poll() {
    std::vector<End> finished;
    {
        const std::lock_guard lock(mutex);
        finished.swap(ends);
    }
    for (const End& end : finished) end.done(end.error);
}

void CAsyncSave::Finish() {
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return jobs.empty() && !working; });
    }
    Poll();
}

bool CAsyncSave::IsBusy() const {
    const std::lock_guard lock(mutex);
    return working || !jobs.empty();
}

}  // namespace quib
