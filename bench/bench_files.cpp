// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing projects in memory, beside a copy of the same bytes and the C library's number
// conversions. Rates are those of the file's bytes.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "model/files/CRecordReader.h"
#include "project/GeneratedProject.h"

namespace quib {
namespace {

// `instruments` x 16 patterns x `notes` notes, and `points` automation points in all.
ProjectState Large(int instruments, int notes, int points) {
    ProjectState state;
    const int perLane = points / std::max(1, instruments * 4);
    for (int i = 0; i < instruments; ++i) {
        auto instrument = std::make_shared<CInstrument>();
        instrument->title = "Track " + std::to_string(i + 1);
        for (std::size_t p = 0; p < instrument->patterns.size(); ++p) {
            std::vector<Note> list;
            for (int n = 0; n < notes; ++n) {
                list.push_back({static_cast<float>(n) * 0.3711F, 0.125F * static_cast<float>(1 + n % 16), 24 + n % 80,
                                1 + n % 127});
            }
            instrument->patterns[p].Prepare(std::make_shared<const CPattern>(notes, std::move(list)));
        }
        CEventLanesBuilder builder;
        for (int lane = 0; lane < 4; ++lane) {
            PointList list;
            for (int n = 0; n < perLane; ++n) {
                list.push_back({static_cast<float>(n) * 0.53F, static_cast<float>(n % 997) * 0.00101F});
            }
            builder.Append(CEventLanes::kSongSlot, lane, std::move(list));
        }
        instrument->mixLanes.Prepare(std::make_shared<const CEventLanes>(builder.Build()));
        state.instruments.push_back(std::move(instrument));
    }
    return state;
}

constexpr int kInstruments = 100;
constexpr int kNotes = 1000;
constexpr int kPoints = 10000;

const std::string& ProjectBytes(int instruments = kInstruments) {
    static std::map<int, std::string> made;
    std::string& bytes = made[instruments];
    if (bytes.empty()) bytes = generated::BytesOf(Large(instruments, kNotes, kPoints));
    return bytes;
}

void SetRate(benchmark::State& run, std::size_t bytes) {
    run.SetBytesProcessed(static_cast<std::int64_t>(run.iterations()) * static_cast<std::int64_t>(bytes));
}

void MemoryCopy(benchmark::State& run) {
    const std::string& bytes = ProjectBytes();
    std::string copy(bytes.size(), ' ');
    for (auto _ : run) {
        std::memcpy(copy.data(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    SetRate(run, bytes.size());
}
BENCHMARK(MemoryCopy)->Unit(benchmark::kMillisecond);

// Real numbers alone, as they stand in a list line.
std::string Numbers() {
    std::string text;
    for (int i = 0; i < 500000; ++i) text += std::to_string(i % 1000) + "." + std::to_string(1000 + i % 9000) + ";";
    return text;
}

void NumbersWithStrtof(benchmark::State& run) {
    const std::string text = Numbers();
    for (auto _ : run) {
        float sum = 0;
        for (const char* at = text.c_str(); *at != '\0'; ++at) {
            char* end = nullptr;
            sum += std::strtof(at, &end);
            at = end;
        }
        benchmark::DoNotOptimize(sum);
    }
    SetRate(run, text.size());
}
BENCHMARK(NumbersWithStrtof)->Unit(benchmark::kMillisecond);

void NumbersWithOurReader(benchmark::State& run) {
    const std::string text = Numbers();
    for (auto _ : run) {
        CRecordFields fields(text.data(), text.data() + text.size());
        float sum = 0;
        float value = 0;
        while (fields.Next(value)) sum += value;
        benchmark::DoNotOptimize(sum);
    }
    SetRate(run, text.size());
}
BENCHMARK(NumbersWithOurReader)->Unit(benchmark::kMillisecond);

template <class Write>
void WriteNumbers(benchmark::State& run, Write write) {
    std::size_t size = 0;
    for (auto _ : run) {
        size = 0;
        for (int i = 0; i < 500000; ++i) size += write(static_cast<float>(i) * 0.0371F);
        benchmark::DoNotOptimize(size);
    }
    SetRate(run, size);
}

void NumbersWithSnprintf(benchmark::State& run) {
    char text[64];
    WriteNumbers(run, [&text](float value) {
        return static_cast<std::size_t>(std::snprintf(text, sizeof text, "%.4f;", static_cast<double>(value)));
    });
}
BENCHMARK(NumbersWithSnprintf)->Unit(benchmark::kMillisecond);

void NumbersWithOurWriter(benchmark::State& run) {
    CRecordWriter writer;
    WriteNumbers(run, [&writer](float value) {
        const std::size_t before = writer.Bytes().size();
        const std::size_t added = writer.Real(value).Bytes().size() - before;
        if (before > (1U << 20)) writer.Clear();
        return added;
    });
}
BENCHMARK(NumbersWithOurWriter)->Unit(benchmark::kMillisecond);

// The argument is the number of instruments: the second file is twice as long as the first.
void ReadWholeProject(benchmark::State& run) {
    const std::string& bytes = ProjectBytes(static_cast<int>(run.range(0)));
    for (auto _ : run) {
        ProjectState state;
        std::string error;
        if (!ReadProject(bytes, {}, state, error)) run.SkipWithError(error.c_str());
        benchmark::DoNotOptimize(state);
    }
    SetRate(run, bytes.size());
}
BENCHMARK(ReadWholeProject)->Arg(kInstruments)->Arg(2 * kInstruments)->Unit(benchmark::kMillisecond);

void WriteWholeProject(benchmark::State& run) {
    const ProjectState state = Large(static_cast<int>(run.range(0)), kNotes, kPoints);
    std::size_t size = 0;
    for (auto _ : run) {
        CRecordWriter writer;
        WriteProject(writer, state);
        size = writer.Bytes().size();
    }
    SetRate(run, size);
}
BENCHMARK(WriteWholeProject)->Arg(kInstruments)->Arg(2 * kInstruments)->Unit(benchmark::kMillisecond);

// Memory that the loaded project takes, file included, in file sizes.
void MemoryOfLoading(benchmark::State& run) {
    const std::string& bytes = ProjectBytes();
    double ratio = 0;
    for (auto _ : run) {
        const auto before = mallinfo2();
        ProjectState state;
        std::string error;
        ReadProject(bytes, {}, state, error);
        const auto after = mallinfo2();
        const auto taken = (after.uordblks + after.hblkhd) - (before.uordblks + before.hblkhd);
        ratio = 1.0 + static_cast<double>(taken) / static_cast<double>(bytes.size());
    }
    run.counters["file_sizes"] = ratio;
}
BENCHMARK(MemoryOfLoading)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quib

BENCHMARK_MAIN();
