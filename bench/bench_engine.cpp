// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine adds to its plug-ins: processor time around 32 synthesisers, gain of a second thread,
// fixed cost, memory of 64. Needs Debian's amsynth. What is compared runs in turns in one process, so that
// noise of the machine hits both sides; ratios are medians over the turns.
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <vector>

#include "engine/CAudio.h"
#include "model/plugin/vst2/CVst2Plugin.h"
#include "platform/CDynamicLibrary.h"
#include "platform/Clock.h"
#include "platform/FloatingPointMode.h"

namespace {

using namespace quib;

constexpr char kSynthesiser[] = "/usr/lib/vst/amsynth_vst.so";
constexpr double kRate = 44100.0;
constexpr int kBlock = 256;
constexpr int kPlugins = 32;
// A step is a whole number of blocks, so that every note falls on a block's first frame.
constexpr int kBlocksPerStep = 22;
constexpr int kStepsPerChord = 2;
constexpr int kBlocksPerChord = kBlocksPerStep * kStepsPerChord;
constexpr int kChord[] = {48, 55, 64};
constexpr int kTurns = 60;
constexpr int kBlocksPerTurn = kBlocksPerChord;

std::shared_ptr<CPlugin> LoadSynthesiser(PluginEnvironment& environment) {
    std::string error;
    auto plugin = CPlugin::Load(kSynthesiser, ESlotKind::kInstrument, environment, error);
    if (!plugin) {
        std::fprintf(stderr, "bench_engine: %s; install it with scripts/setup --tests\n", error.c_str());
        std::exit(1);
    }
    return plugin;
}

// An engine whose instruments play chords through strips with everything on.
struct CChordEngine {
    CChordEngine(int instruments, int threads) {
        audio.Prepare({kRate, kBlock, threads, false});
        std::vector<Note> notes;
        for (const int key : kChord) notes.push_back({0.0F, kStepsPerChord, key, 100});
        const auto pattern = std::make_shared<const CPattern>(kStepsPerChord, notes);
        InstrumentList list;
        for (int index = 0; index < instruments; ++index) {
            auto instrument = std::make_shared<CInstrument>();
            instrument->plugin.Publish(
                std::make_shared<const PluginSlot>(PluginSlot{LoadSynthesiser(audio.environment), nullptr}),
                audio.graveyard);
            instrument->patterns[0].Publish(pattern, audio.graveyard);
            instrument->strip.eqOn.Set(1.0F);
            instrument->strip.eqGain[1].Set(0.3F);
            for (std::size_t send = 0; send < kSendCount; ++send) {
                instrument->strip.sendOn[send].Set(1.0F);
                instrument->strip.sendLevel[send].Set(90.0F);
            }
            audio.PrepareInstrument(*instrument);
            list.push_back(std::move(instrument));
        }
        audio.PublishInstruments(std::move(list));
        audio.settings.songMode.Set(0.0F);
        audio.settings.tempo.Set(static_cast<float>(kRate * 15.0 / (kBlock * kBlocksPerStep)));
        audio.Post({EngineCommand::EKind::kPlay});
    }
    void Run(int blocks) {
        for (int block = 0; block < blocks; ++block) audio.RenderBlock();
    }

    CAudio audio;
};

// The same plug-ins with the same events and nothing around them.
struct CBareLoop {
    CBareLoop() {
        environment.sampleRate = kRate;
        environment.blockSize = kBlock;
        for (int index = 0; index < kPlugins; ++index) {
            plugins.push_back(LoadSynthesiser(environment));
            plugins.back()->Prepare();
        }
        for (const int status : {kNoteOff, kNoteOn}) {
            for (const int key : kChord)
                events.push_back({static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(key), 100, 0});
        }
    }
    void Run(int blocks) {
        const CFloatingPointScope keepMode;
        SetFlushToZero();
        for (int block = 0; block < blocks; ++block, ++position) {
            for (const auto& plugin : plugins) {
                if (position % kBlocksPerChord == 0) plugin->SendEvents(events);
                vst2::AEffect& effect = static_cast<CVst2Plugin&>(*plugin).Effect();
                float* out[] = {const_cast<float*>(plugin->Output(0)), const_cast<float*>(plugin->Output(1))};
                float* in[] = {plugin->Input(0), plugin->Input(1)};
                effect.processReplacing(&effect, in, out, kBlock);
            }
        }
    }

    PluginEnvironment environment;
    std::vector<std::shared_ptr<CPlugin>> plugins;
    std::vector<BlockEvent> events;
    int position = 0;
};

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

// Lets both run in turns; the nanoseconds of each turn by `clock`.
template <class First, class Second>
struct CTurns {
    CTurns(First& first, Second& second, std::uint64_t (*clock)() noexcept) {
        first.Run(kBlocksPerTurn);
        second.Run(kBlocksPerTurn);
        for (int turn = 0; turn < kTurns; ++turn) {
            const std::uint64_t start = clock();
            first.Run(kBlocksPerTurn);
            const std::uint64_t middle = clock();
            second.Run(kBlocksPerTurn);
            const std::uint64_t end = clock();
            firstTimes.push_back(static_cast<double>(middle - start));
            secondTimes.push_back(static_cast<double>(end - middle));
            ratios.push_back(firstTimes.back() / secondTimes.back());
        }
    }
    std::vector<double> firstTimes, secondTimes, ratios;
};

constexpr double kSoundNanoseconds = kBlocksPerTurn * kBlock / kRate * 1e9;

void HostOverhead(benchmark::State& state) {
    CChordEngine engine(kPlugins, 1);
    CBareLoop bare;
    for (auto _ : state) {
        const CTurns turns(engine, bare, &ThreadCpuNanoseconds);
        state.counters["ratio"] = Median(turns.ratios);
        state.counters["engine_cpu_percent"] = 100 * Median(turns.firstTimes) / kSoundNanoseconds;
        state.counters["bare_cpu_percent"] = 100 * Median(turns.secondTimes) / kSoundNanoseconds;
    }
}

// Means something where two cores are idle, or given to this program: chrt -f 10 bench_engine.
void SecondThread(benchmark::State& state) {
    CChordEngine one(kPlugins, 1);
    CChordEngine two(kPlugins, 2);
    for (auto _ : state) {
        const CTurns turns(one, two, &Nanoseconds);
        state.counters["speed_up"] = Median(turns.ratios);
        state.counters["best_speed_up"] = *std::min_element(turns.firstTimes.begin(), turns.firstTimes.end()) /
                                          *std::min_element(turns.secondTimes.begin(), turns.secondTimes.end());
    }
}

void EmptyEngine(benchmark::State& state) {
    CChordEngine engine(0, 1);
    std::int64_t blocks = 0;
    const std::uint64_t start = ThreadCpuNanoseconds();
    for (auto _ : state) {
        engine.Run(1);
        ++blocks;
    }
    const double seconds = static_cast<double>(ThreadCpuNanoseconds() - start) * 1e-9;
    state.counters["cpu_seconds_per_second"] = seconds / (static_cast<double>(blocks) * kBlock / kRate);
}

double ResidentMebibytes() {
    std::ifstream file("/proc/self/statm");
    double total = 0;
    double resident = 0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

// The result of `measure` in a process of its own.
template <class Measure>
double InOwnProcess(Measure measure) {
    int ends[2];
    if (pipe(ends) != 0) return -1;
    const pid_t child = fork();
    if (child == 0) {
        const double result = measure();
        const bool told = write(ends[1], &result, sizeof result) == sizeof result;
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    double result = -1;
    if (read(ends[0], &result, sizeof result) != sizeof result) result = -1;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return result;
}

constexpr int kManyPlugins = 64;
constexpr int kTwoSeconds = static_cast<int>(2 * kRate) / kBlock;

double HostMemory() {
    CChordEngine engine(kManyPlugins, 1);
    engine.Run(kTwoSeconds);
    return ResidentMebibytes();
}

std::intptr_t VST2_CALL AnswerVersion(vst2::AEffect*, std::int32_t opcode, std::int32_t, std::intptr_t, void*, float) {
    return opcode == vst2::audioMasterVersion ? 2400 : 0;
}

// The library opened and its plug-ins played by hand, all into the same two buffers.
double BareMemory() {
    CDynamicLibrary library;
    std::string error;
    library.Open(kSynthesiser, error);
    const auto entry = library.Get<vst2::EntryProc>("VSTPluginMain");
    if (entry == nullptr) return -1;
    struct MidiBlock {
        std::int32_t count = std::size(kChord);
        std::intptr_t reserved = 0;
        const vst2::VstMidiEvent* events[std::size(kChord)] = {};
    } block;
    vst2::VstMidiEvent notes[std::size(kChord)] = {};
    for (std::size_t index = 0; index < std::size(kChord); ++index) {
        notes[index] = {vst2::kVstMidiType,
                        sizeof notes[0],
                        0,
                        0,
                        0,
                        0,
                        {0x90, static_cast<std::uint8_t>(kChord[index]), 100, 0},
                        0,
                        0,
                        0,
                        0};
        block.events[index] = &notes[index];
    }
    std::vector<float> samples(2 * kBlock);
    float* buffers[] = {samples.data(), samples.data() + kBlock};
    for (int index = 0; index < kManyPlugins; ++index) {
        vst2::AEffect* const effect = entry(&AnswerVersion);
        const auto call = [&](int opcode, std::intptr_t value, float option, void* pointer = nullptr) {
            effect->dispatcher(effect, opcode, 0, value, pointer, option);
        };
        call(vst2::effOpen, 0, 0);
        call(vst2::effSetSampleRate, 0, static_cast<float>(kRate));
        call(vst2::effSetBlockSize, kBlock, 0);
        call(vst2::effMainsChanged, 1, 0);
        call(vst2::effProcessEvents, 0, 0, &block);
        for (int count = 0; count < kTwoSeconds; ++count) effect->processReplacing(effect, buffers, buffers, kBlock);
    }
    return ResidentMebibytes();
}

void Memory(benchmark::State& state) {
    for (auto _ : state) {
        state.counters["process_MiB"] = InOwnProcess(HostMemory);
        state.counters["bare_plugins_MiB"] = InOwnProcess(BareMemory);
        state.counters["empty_process_MiB"] = InOwnProcess(ResidentMebibytes);
    }
}

// First: a process made later would begin with what the others hold.
BENCHMARK(Memory)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(HostOverhead)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(SecondThread)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(EmptyEngine);

}  // namespace

BENCHMARK_MAIN();
