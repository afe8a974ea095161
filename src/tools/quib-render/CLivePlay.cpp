// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/CLivePlay.h"

#include <fmt/format.h>

#include <chrono>
#include <thread>

#include "engine/EngineNotices.h"
#include "platform/CStandardOutput.h"
#include "platform/Clock.h"

namespace quib {

namespace {

constexpr auto kTurn = std::chrono::milliseconds(40);
constexpr std::uint64_t kShowInterval = 200'000'000;  // nanoseconds
constexpr int kReleaseTurns = 10;                     // for what sounds when playing stops

COutputManager::Texts Texts() {
    return {"Cannot open the driver", " has gone away. Playing goes on without sound until it returns."};
}

}  // namespace

CLivePlay::CLivePlay(CAudio& engine, Say sayLine)
    : audio(engine),
      say(std::move(sayLine)),
      output(engine, Texts(), [this](const std::string&, const std::string& text) { say(text); }) {}

bool CLivePlay::Run(const Options& options, const std::function<bool()>& stopped) {
    audio.SetRecorder(&recorder);
    const bool begun = Begin(options);
    if (begun) PlayUntil(options.seconds, stopped);
    audio.Post({EngineCommand::EKind::kStop});
    for (int turn = 0; begun && turn < kReleaseTurns; ++turn) Turn();
    if (output.Device() != nullptr && !output.Device()->IsRealTime()) {
        say("the limits of this user allow no real-time priority");
    }
    const std::uint64_t xruns = output.Xruns();
    output.CloseOutput();
    audio.SetRecorder(nullptr);
    recorder.StopRecording(CLame::ELastBuffer::kWrite);
    if (begun) say(fmt::format("{} xruns, {} MIDI messages dropped", xruns, audio.DroppedMidi()));
    return begun && recorder.Error().empty();
}

// Without a recording playing starts with the very first block of the device.
bool CLivePlay::Begin(const Options& options) {
    if (options.steps > 0) audio.Post({EngineCommand::EKind::kStopAt, 0, options.steps});
    if (options.record.empty()) audio.Post({EngineCommand::EKind::kPlay});
    if (!output.OpenOutput(options.audio)) return false;
    const RenderFormat& format = audio.Format();
    say(fmt::format("playing on {}, {:.0f} Hz, blocks of {} frames", output.Device()->Name(), format.sampleRate,
                    format.blockSize));
    startTime = Nanoseconds();
    if (options.record.empty()) return true;
    if (recorder.StartRecording(options.record, static_cast<int>(format.sampleRate)) != CLame::kStarted) {
        SayRecorderFailed();
        return false;
    }
    audio.Post({EngineCommand::EKind::kPlay});
    return true;
}

void CLivePlay::PlayUntil(double seconds, const std::function<bool()>& stopped) {
    bool begun = false;
    while (!stopped()) {
        Turn();
        begun = begun || audio.Picture().playing;
        if (begun && !audio.Picture().playing) return;
        if (seconds > 0 && static_cast<double>(Nanoseconds() - startTime) * 1e-9 >= seconds) return;
        if (Nanoseconds() - shownTime >= kShowInterval) ShowState();
    }
}

void CLivePlay::Turn() {
    std::this_thread::sleep_for(kTurn);
    output.Poll();
    audio.Collect();
    FollowNotices(audio);
    const bool recorded = recorder.IsRecording();
    recorder.Flush();
    if (recorded && !recorder.IsRecording()) SayRecorderFailed();
}

void CLivePlay::SayRecorderFailed() { say(recorder.ProgressText() + ' ' + recorder.Error()); }

void CLivePlay::ShowState() {
    shownTime = Nanoseconds();
    if (!CStandardOutput::ErrorIsTerminal()) return;
    const PlayPicture& picture = audio.Picture();
    fmt::print(stderr, "\rstep {:6}   {:8.2f} s   CPU: {:.2f}%   {} xruns   {}\x1b[K", picture.soundingStep + 1,
               static_cast<double>(picture.sampleCounter) / audio.Format().sampleRate,
               static_cast<double>(audio.CpuLoad()), output.Xruns(), output.Device()->Name());
    std::fflush(stderr);
}

}  // namespace quib
