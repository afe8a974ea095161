// SPDX-License-Identifier: GPL-3.0-or-later
// quib-scan: loads one plug-in in a process of its own and says what it is. Never opens its editor. Ends with 1
// for one that could not be loaded, 3 for one that did not answer in time, 4 for one that ended the process.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <thread>

#include "export/CSignalStatistics.h"
#include "model/plugin/CPlugin.h"
#include "platform/CStandardOutput.h"
#include "platform/Clock.h"
#include "platform/FloatingPointMode.h"
#include "tools/common/CJsonObject.h"

namespace quib {
namespace {

constexpr int kFailed = 1;
constexpr int kHung = 3;
constexpr int kEnded = 4;

// Ends the process when a plug-in takes too long, or ends it itself.
class CWatchdog {
public:
    explicit CWatchdog(double seconds)
        : thread([this, seconds] {
              std::unique_lock lock(mutex);
              if (condition.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return done; })) return;
              Fail("the plug-in did not answer in time", kHung);
          }) {
        std::atexit([] {
            if (!finished) Fail("the plug-in ended the process", kEnded);
        });
    }
    ~CWatchdog() {
        finished = true;
        {
            const std::lock_guard lock(mutex);
            done = true;
        }
        condition.notify_one();
        thread.join();
    }
    CWatchdog(const CWatchdog&) = delete;
    CWatchdog& operator=(const CWatchdog&) = delete;

private:
    [[noreturn]] static void Fail(const char* reason, int code) {
        fmt::print(stderr, "quib-scan: {}\n", reason);
        std::_Exit(code);
    }

    inline static std::atomic<bool> finished{false};
    std::mutex mutex;
    std::condition_variable condition;
    bool done = false;
    std::thread thread;
};

void Describe(CPlugin& plugin, const std::filesystem::path& file, double milliseconds, CJsonObject& json) {
    const PluginIdentity& identity = plugin.Identity();
    json.Add("file", file.string());
    json.Add("name", identity.effectName);
    json.Add("vendor", identity.vendor);
    json.Add("product", identity.product);
    json.Add("version", identity.version);
    json.Add("id", identity.id);
    json.Add("identity", identity.Key());
    json.Add("instrument", identity.isInstrument);
    json.Add("category", identity.category);
    json.Add("inputs", plugin.InputCount());
    json.Add("outputs", plugin.OutputCount());
    json.Add("parameters", plugin.Parameters().size());
    json.Add("programs", plugin.ProgramCount());
    json.Add("flags", identity.flags);
    json.Add("midi", identity.acceptsMidi);
    json.Add("load_ms", milliseconds);
}

// A second of a chord for an instrument, of a sawtooth for an effect.
void Play(CPlugin& plugin, const PluginEnvironment& environment, CJsonObject& json) {
    CSignalStatistics statistics;
    const CRenderThreadScope renderThread;
    const CFloatingPointScope keepMode;
    SetFlushToZero();
    const int frames = environment.blockSize;
    const int blocks = static_cast<int>(environment.sampleRate) / frames;
    float phase = 0;
    for (int block = 0; block < blocks; ++block) {
        const bool start = block == 0;
        if (start || block == blocks * 3 / 4) {
            const std::uint8_t status = start ? kNoteOn : kNoteOff;
            const BlockEvent chord[] = {{status, 60, 100, 0}, {status, 64, 100, 0}, {status, 67, 100, 0}};
            plugin.SendEvents(chord);
        }
        for (int i = 0; i < frames; ++i) {
            phase = phase > 0.99F ? 0.0F : phase + 0.005F;
            for (int channel = 0; channel < plugin.InputCount(); ++channel)
                plugin.Input(channel)[i] = phase * 0.5F - 0.25F;
        }
        plugin.Process(frames);
        statistics.Add(plugin.Left(), frames);
        statistics.Add(plugin.Right(), frames);
    }
    json.Add("peak", static_cast<double>(statistics.Peak()));
    json.Add("rms", statistics.Rms());
    json.Add("finite", statistics.Finite() && !plugin.TakeFaultReport());
}

int Scan(const std::filesystem::path& file, bool render) {
    const CStandardOutput output;
    PluginEnvironment environment;
    environment.blockSize = 512;
    std::string error;
    const std::uint64_t start = Nanoseconds();
    const auto plugin = CPlugin::LoadAny(std::filesystem::absolute(file), environment, error);
    if (!plugin) {
        fmt::print(stderr, "quib-scan: {}: {}\n", file.string(), error);
        return kFailed;
    }
    CJsonObject json;
    Describe(*plugin, file, static_cast<double>(Nanoseconds() - start) * 1e-6, json);
    if (render && plugin->CanReplace()) Play(*plugin, environment, json);
    return output.WriteLine(json.Text()) ? 0 : kFailed;
}

}  // namespace
}  // namespace quib

int main(int argc, char** argv) {
    CLI::App app{"Says what a plug-in is, as one JSON object", "quib-scan"};
    std::string file;
    bool render = false;
    double timeout = 20.0;
    app.add_option("FILE", file, "The plug-in library")->required();
    app.add_flag("--render", render, "Play it for one second and add peak, rms and finite");
    app.add_option("--timeout", timeout, "Seconds after which a plug-in counts as hung")->check(CLI::PositiveNumber);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& wrong) {
        return app.exit(wrong) == 0 ? 0 : 2;
    }
    const quib::CWatchdog watchdog(timeout);
    return quib::Scan(file, render);
}
