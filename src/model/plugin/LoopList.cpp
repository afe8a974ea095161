// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/plugin/LoopList.h"

#include <cstdint>

namespace quib {

namespace {

// As the library lays it out (plugins/loops/LoopExports.h).
struct LoopInfo {
    char name[64];
    double tempo;
    double beats;
    double sampleRate;
    std::int64_t frames;
    std::int32_t key;
    std::int32_t slices;
};

}  // namespace

std::vector<LoopEntry> ListLoops(const CPlugin& plugin) {
    std::vector<LoopEntry> loops;
    const CPlugin::LoopEntryPoints& told = plugin.Loops();
    if (told.waveInfos == nullptr) return loops;
    const auto ask = reinterpret_cast<std::intptr_t (*)(std::intptr_t, LoopInfo*)>(told.waveInfos);
    for (std::intptr_t index = 0; index < told.waveNumber; ++index) {
        LoopInfo info{};
        if (ask(index, &info) == 0) break;
        info.name[sizeof info.name - 1] = 0;
        loops.push_back({info.name, info.key, info.tempo, info.beats, static_cast<int>(info.frames), info.slices,
                         static_cast<int>(index)});
    }
    return loops;
}

std::vector<int> LoopStrokes(const CPlugin& plugin, const LoopEntry& loop) {
    std::vector<int> strokes;
    if (plugin.Loops().waveBegin == nullptr) return strokes;
    const auto ask = reinterpret_cast<std::intptr_t (*)(std::intptr_t, std::intptr_t)>(plugin.Loops().waveBegin);
    for (int stroke = 0; stroke < loop.strokes; ++stroke) {
        if (const std::intptr_t frame = ask(loop.index, stroke); frame >= 0) strokes.push_back(static_cast<int>(frame));
    }
    return strokes;
}

int LoopFrame(const CPlugin& plugin, const LoopEntry& loop) {
    if (plugin.Loops().waveCounter == nullptr) return -1;
    const auto ask = reinterpret_cast<std::intptr_t (*)(std::intptr_t)>(plugin.Loops().waveCounter);
    return static_cast<int>(ask(loop.index));
}

}  // namespace quib
