// SPDX-License-Identifier: GPL-3.0-or-later
// A step of a drag in a large pattern without its drawing: edit one note or all of them, publish, index,
// query what one screen of 64 steps shows. 330 notes a screen at 10,000, 3,300 at 100,000.
#include <benchmark/benchmark.h>

#include <random>

#include "model/edits/CNoteIndex.h"
#include "model/edits/NoteEdits.h"
#include "model/sharing/CPublished.h"

namespace {

using namespace quib;

constexpr float kScreen = 64;
constexpr float kSteps = 30 * kScreen;

// Notes in no order, as a pattern that was edited for long; one of them under all the others.
std::shared_ptr<const CPattern> LargePattern(std::int64_t count) {
    std::minstd_rand random(1);
    std::vector<Note> notes{{0, kSteps, 60, 100}};
    while (notes.size() < static_cast<std::size_t>(count)) {
        const float position = static_cast<float>(random() % 65536U) / 65536.0F * kSteps;
        notes.push_back({position, 1, static_cast<int>(random() % 128U), 100});
    }
    return std::make_shared<const CPattern>(static_cast<int>(kSteps), std::move(notes));
}

std::size_t Query(const CNoteIndex& index, float from) {
    std::size_t found = 0;
    index.VisitRange(from, from + kScreen, 0, [&](std::uint32_t, const Note&) { ++found; });
    return found;
}

void DragStep(benchmark::State& state, bool all) {
    CRenderClock clock;
    CGraveyard graveyard(clock);
    const std::shared_ptr<const CPattern> pattern = LargePattern(state.range(0));
    const NoteState start = all ? SelectAll({pattern, {}}) : NoteState{pattern, {77}};
    CPublished<CPattern> published(start.pattern);
    float way = 0;
    std::size_t found = 0;
    for (auto step : state) {
        way = way < 8 ? way + 0.25F : 0.25F;
        const NoteState next = MoveNotes(start, way, 1);
        published.Publish(next.pattern, graveyard);
        graveyard.Collect();
        found = Query(CNoteIndex(next.pattern), kSteps / 2);
        benchmark::DoNotOptimize(found);
    }
    state.counters["on_screen"] = static_cast<double>(found);
}

void BuildIndex(benchmark::State& state) {
    const auto pattern = LargePattern(state.range(0));
    for (auto step : state) benchmark::DoNotOptimize(CNoteIndex(pattern).Pattern());
}

void QueryScreen(benchmark::State& state) {
    const CNoteIndex index(LargePattern(state.range(0)));
    for (auto step : state) benchmark::DoNotOptimize(Query(index, kSteps - kScreen));
}

void NoteUnderMouse(benchmark::State& state) {
    const CNoteIndex index(LargePattern(state.range(0)));
    for (auto step : state) benchmark::DoNotOptimize(index.NoteAt(kSteps - 1, 60));
}

}  // namespace

#define QUIB_NOTE_COUNTS Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond)
BENCHMARK_CAPTURE(DragStep, one, false)->QUIB_NOTE_COUNTS;
BENCHMARK_CAPTURE(DragStep, all, true)->QUIB_NOTE_COUNTS;
BENCHMARK(BuildIndex)->QUIB_NOTE_COUNTS;
BENCHMARK(QueryScreen)->QUIB_NOTE_COUNTS;
BENCHMARK(NoteUnderMouse)->QUIB_NOTE_COUNTS;
BENCHMARK_MAIN();
