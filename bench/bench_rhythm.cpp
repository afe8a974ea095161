// SPDX-License-Identifier: GPL-3.0-or-later
// How exactly the rhythm detector finds tempo, downbeat and hits of pieces whose tempo is known, as one table, and
// how long five minutes take. Acc1: the tempo itself within 4 %; Acc2: twice, three times, a half or a third of it too.
#include <fmt/format.h>
#include <unistd.h>

#include <cmath>
#include <ctime>
#include <filesystem>

#include "bench/RhythmMaterial.h"
#include "editors/loopcreator/CWavePeaks.h"
#include "export/loops/LoopCut.h"
#include "export/rhythm/RhythmTempo.h"

namespace quib::material {
namespace {

namespace fs = std::filesystem;

struct Tally {
    int pieces = 0, acc1 = 0, acc2 = 0, downbeats = 0;
    double worst = 0;  // BPM
    double f = 0;      // the sum
};

bool IsNear(double tempo, double wanted) { return std::abs(tempo / wanted - 1) < 0.04; }

// As a file that has been through an encoder gives it back.
std::vector<float> ThroughMp3(const std::vector<float>& mono) {
    const fs::path path = fs::temp_directory_path() / fmt::format("quib-bench-{}.mp3", getpid());
    std::string error;
    SoundClip clip{kRate, 1, mono, mono};
    const bool done = WriteLoopFile(path, clip, {}, false, error) && ReadClip(path, clip, error);
    fs::remove(path);
    if (!done) fmt::print(stderr, "{}\n", error);
    return done ? MonoOf(clip) : mono;
}

void Measure(Tally& tally, const Piece& piece, bool mp3) {
    constexpr double kSeconds = 40;
    const Rendered made = Render(piece, kSeconds);
    const std::vector<float> sound = mp3 ? ThroughMp3(made.mono) : made.mono;
    const RhythmTempo found = FindTempo(sound, kRate);
    const double wanted = made.tempo;
    const bool exact = IsNear(found.tempo, wanted);
    bool related = exact;
    for (const double factor : {0.5, 2.0, 3.0, 1.0 / 3.0}) related = related || IsNear(found.tempo, wanted * factor);
    ++tally.pieces;
    tally.acc1 += exact ? 1 : 0;
    tally.acc2 += related ? 1 : 0;
    if (exact) tally.worst = std::max(tally.worst, std::abs(found.tempo - wanted));
    const double bar = 240 / wanted;
    const double off = found.downbeat - made.downbeat;
    tally.downbeats += std::abs(off - std::round(off / bar) * bar) <= 0.01 ? 1 : 0;
    CRhythmEnvelope envelope(RhythmSettingsOf({}), kRate);
    envelope.Add(sound);
    tally.f += HitScore(envelope.Hits(), made.strokes);
}

void Row(const char* name, const Piece& change, bool mp3 = false) {
    Tally tally;
    for (const double tempo : {70.0, 74.3, 82.5, 90.0, 95.5, 104.0, 117.3, 124.0, 133.7, 147.0, 160.0, 172.0, 178.0}) {
        for (int kind = 0; kind < kKinds; ++kind) {
            Piece piece = change;
            piece.tempo = tempo;
            piece.kind = kind;
            piece.seed = static_cast<unsigned>(tempo * 10) + static_cast<unsigned>(kind);
            Measure(tally, piece, mp3);
        }
    }
    const double all = tally.pieces / 100.0;
    fmt::print("{:<14}{:>7}{:>7.0f} %{:>7.0f} %{:>11.4f}{:>9.0f} %{:>8.3f}\n", name, tally.pieces, tally.acc1 / all,
               tally.acc2 / all, tally.worst, tally.downbeats / all, tally.f / tally.pieces);
}

// Until the loop creator shows it.
double SecondsToShow(const std::vector<float>& mono) {
    const fs::path path = fs::temp_directory_path() / fmt::format("quib-bench-{}.mp3", getpid());
    std::string error;
    WriteLoopFile(path, {kRate, 2, mono, mono}, {}, false, error);
    const std::clock_t begun = std::clock();
    SoundClip clip;
    ReadClip(path, clip, error);
    const CWavePeaks peaks(clip);
    fs::remove(path);
    return static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC;
}

}  // namespace
}  // namespace quib::material

int main() {
    using namespace quib::material;
    fmt::print("{:<14}{:>7}{:>9}{:>9}{:>11}{:>11}{:>8}\n", "material", "pieces", "Acc1", "Acc2", "worst BPM",
               "downbeat", "F");
    Row("plain", {});
    Row("swing", {.swing = 0.3});
    Row("noise", {.noise = 0.02});
    Row("MP3", {}, true);
    Row("ramp of 2 %", {.ramp = 0.02});
    const Rendered made = Render({.tempo = 123.4, .kind = 3}, 300);
    const std::clock_t begun = std::clock();
    const double tempo = quib::FindTempo(made.mono, kRate).tempo;
    const double took = static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC;
    fmt::print("five minutes: {:.2f} s of one processor, {:.4f} BPM (123.4)\n", took, tempo);
    fmt::print("five minutes of MP3 shown after {:.2f} s of one processor\n", SecondsToShow(made.mono));
}
