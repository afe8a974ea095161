// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CRecorder.h"

#include <chrono>

#include "texts/Texts.h"

namespace quib {

namespace {
constexpr auto kFlushInterval = std::chrono::milliseconds(40);
}

CRecorder::CRecorder() : thread([this] { Run(); }) {}

CRecorder::~CRecorder() {
    Order(EOrder::kQuit);
    thread.join();
}

// Waits until the thread has obeyed.
int CRecorder::Order(EOrder next) {
    std::unique_lock lock(mutex);
    order = next;
    changed.notify_all();
    changed.wait(lock, [this] { return order == EOrder::kNone; });
    return result;
}

bool CRecorder::Start(const std::filesystem::path& file, int sampleRate) {
    {
        const std::lock_guard lock(mutex);
        path = file;
        rate = sampleRate;
    }
    return Order(EOrder::kStart) == CLame::kStarted;
}

void CRecorder::Stop() {
    const std::lock_guard lock(mutex);
    if (!progress.recording) return;
    order = EOrder::kStop;
    changed.notify_all();
}

void CRecorder::Continue(int sampleRate) {
    const std::lock_guard lock(mutex);
    if (!progress.recording || order != EOrder::kNone) return;
    rate = sampleRate;
    order = EOrder::kContinue;
    changed.notify_all();
}

void CRecorder::Finish() { Order(EOrder::kStop); }

bool CRecorder::IsRecording() const {
    const std::lock_guard lock(mutex);
    return progress.recording;
}

CRecorder::Progress CRecorder::Now() const {
    const std::lock_guard lock(mutex);
    return progress;
}

void CRecorder::Run() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait_for(lock, kFlushInterval, [this] { return order != EOrder::kNone; });
        const EOrder given = order;
        if (given == EOrder::kNone && !progress.recording) {
            changed.wait(lock, [this] { return order != EOrder::kNone; });
            continue;
        }
        Obey(lock);
        if (given == EOrder::kQuit) return;
    }
}

// Holds the lock at both ends, but not while the disk works.
void CRecorder::Obey(std::unique_lock<std::mutex>& lock) {
    const EOrder given = order;
    const std::filesystem::path file = path;
    const int sampleRate = rate;
    int started = CLame::kStarted;
    lock.unlock();
    if (given == EOrder::kStart) {
        started = lame.StartRecording(file, sampleRate);
    } else if (given == EOrder::kContinue) {
        started = lame.ContinueRecording(sampleRate);
    } else if (given == EOrder::kNone) {
        lame.Flush();
    } else {
        lame.StopRecording(CLame::ELastBuffer::kWrite);
    }
    Progress next{lame.IsRecording(),  lame.Seconds(), lame.BytesWritten(),     lame.DroppedFrames(),
                  lame.ProgressText(), lame.Error(),   lame.FilePath().string()};
    if (started == CLame::kNoEncoder) {
        next.text = TextKey("Cannot open MP3 Encoder !");
    } else if (!next.error.empty()) {
        next.text = TextKey("Error !");
    }
    lock.lock();
    progress = std::move(next);
    if (given == EOrder::kNone || order != given) return;
    result = started;
    order = EOrder::kNone;
    changed.notify_all();
}

}  // namespace quib
