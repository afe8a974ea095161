// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CSoundWork.h"

#include <chrono>

#include "export/loops/LoopCut.h"
#include "platform/Clock.h"
#include "platform/ThreadPriority.h"

namespace quib {

void CSoundWork::Start(std::function<void(HeardSound&)> run) {
    Cancel();
    cancelled = false;
    work = std::async(std::launch::async, [run = std::move(run)] {
        SetBackgroundPriority();
        const std::uint64_t begun = Nanoseconds();
        auto heard = std::make_shared<HeardSound>();
        run(*heard);
        heard->seconds = static_cast<double>(Nanoseconds() - begun) * 1e-9;
        return heard;
    });
}

void CSoundWork::Read(const QString& path) {
    Cancel();
    reading = true;
    share = 0;
    Start([this, path](HeardSound& heard) {
        if (ReadInto(path, heard)) heard.mono = MonoOf(heard.clip);
    });
}

void CSoundWork::ReadLoop(const QString& path, std::int64_t frames) {
    Cancel();
    reading = true;
    share = 0;
    Start([this, path, frames](HeardSound& heard) {
        if (!ReadInto(path, heard)) return;
        heard.clip = FoldTail(heard.clip, frames);
        heard.mono = MonoOf(heard.clip);
    });
}

bool CSoundWork::ReadInto(const QString& path, HeardSound& heard) {
    heard.path = path;
    const auto progress = [this](double part) {
        share = part;
        return !cancelled.load();
    };
    return ReadClip(path.toStdString(), heard.clip, heard.error, progress);
}

void CSoundWork::Find(std::shared_ptr<const HeardSound> sound, bool isTempoWanted) {
    reading = false;
    Start([this, isTempoWanted, sound = std::move(sound)](HeardSound& found) {
        CRhythmEnvelope envelope({}, sound->clip.sampleRate);
        envelope.Add(sound->mono);
        found.hits = envelope.Hits();
        if (!isTempoWanted) return;
        found.rhythm = FindTempo(sound->mono, sound->clip.sampleRate, [this] { return !cancelled.load(); });
    });
}

void CSoundWork::Find(std::vector<float> mono, int sampleRate) {
    reading = false;
    Start([this, mono = std::move(mono), sampleRate](HeardSound& heard) {
        heard.clip.sampleRate = sampleRate;
        heard.rhythm = FindTempo(mono, sampleRate, [this] { return !cancelled.load(); });
    });
}

void CSoundWork::Cancel() {
    cancelled = true;
    if (work.valid()) work.get();
}

std::shared_ptr<const HeardSound> CSoundWork::Take() {
    if (!work.valid() || work.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return nullptr;
    auto heard = work.get();
    return cancelled.load() ? nullptr : heard;
}

}  // namespace quib
