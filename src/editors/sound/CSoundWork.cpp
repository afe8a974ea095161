// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/sound/CSoundWork.h"

#include <QFileDialog>
#include <chrono>

#include "platform/Clock.h"
#include "platform/ThreadPriority.h"
#include "texts/Texts.h"

namespace quib {

void CSoundWork::Start(std::function<void(HeardSound&)> run) {
    Cancel();
    cancelled = false;
    share = 0;
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
    Start([this, path](HeardSound& heard) {
        heard.path = path;
        const auto progress = [this](double part) {
            share = part;
            return !cancelled.load();
        };
        if (!ReadClip(path.toStdString(), heard.clip, heard.error, progress)) return;
        heard.mono = MonoOf(heard.clip);
        heard.rhythm = FindTempo(heard.mono, heard.clip.sampleRate, [this] { return !cancelled.load(); });
    });
}

void CSoundWork::Find(std::vector<float> mono, int sampleRate) {
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

QString ChooseSoundFile(QWidget* parent) {
    return QFileDialog::getOpenFileName(
        parent, Text("Choose the sound file"), QDir::homePath(),
        Text("Sound files") + QStringLiteral(" (*.wav *.mp3 *.flac *.ogg *.opus *.aif *.aiff)"));
}

}  // namespace quib
