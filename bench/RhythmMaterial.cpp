// SPDX-License-Identifier: GPL-3.0-or-later
#include "bench/RhythmMaterial.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace quib::material {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

class CPieceWriter {
public:
    CPieceWriter(const Piece& wanted, double length)
        : piece(wanted), seconds(length), random(wanted.seed), sound(static_cast<std::size_t>(length * kRate)) {}

    Rendered Run() {
        const double beat = 60 / piece.tempo;
        made.downbeat = 0.1 + Draw() * beat * (piece.seed % 2);
        for (int bar = 0; At(bar, 0) < seconds; ++bar) {
            for (int sixteenth = 0; sixteenth < 16; ++sixteenth) Strike(bar, sixteenth);
        }
        std::normal_distribution<double> noise(0, std::max(piece.noise, 1e-9));
        for (float& sample : sound) sample = static_cast<float>(0.6 * static_cast<double>(sample) + noise(random));
        made.mono = std::move(sound);
        return std::move(made);
    }

private:
    double Draw() { return std::uniform_real_distribution<double>(0, 1)(random); }
    double Noise() { return std::uniform_real_distribution<double>(-1, 1)(random); }

    double At(int bar, int sixteenth) const {
        const double late = sixteenth % 2 != 0 ? piece.swing : 0;
        const double beats = 4.0 * bar + (sixteenth + late) / 4;
        const double even = beats * 60 / piece.tempo;
        return made.downbeat + even / (1 + piece.ramp * even / seconds / 2);
    }

    void Strike(int bar, int place) {
        const double time = At(bar, place);
        const double beats = 4.0 * bar + place / 4;
        if (place % 4 == 0 && beats > 0 && time < seconds) made.tempo = 60 * beats / (time - made.downbeat);
        const bool snare = place == 4 || place == 12 || (piece.kind == 3 && place == 15 && bar % 4 == 3);
        bool kick = place == 0 || place == 10;
        double hat = 0.18 * (place % 4 == 0 ? 1 : 0.6);
        if (piece.kind == 0) {
            kick = place % 4 == 0;
            hat = place % 4 == 2 ? 0.3 : 0.08;
        } else if (piece.kind == 1) {
            kick = place == 0 || place == 8 || (place == 10 && bar % 2 != 0);
            hat = place % 2 == 0 ? 0.2 : 0;
        } else if (piece.kind == 2) {
            kick = place == 0 || place == 6 || place == 10;
            hat = place % 2 == 0 ? 0.2 : 0.1;
        }
        if (kick) Kick(time, 0.8 * (0.9 + 0.1 * Draw()));
        if (snare) Snare(time, 0.5 * (0.9 + 0.1 * Draw()));
        if (hat > 0) Hat(time, hat * (0.8 + 0.2 * Draw()));
        constexpr double kRoots[] = {65.4, 65.4, 77.8, 58.3};  // Hz
        if (kick || place == 14) Bass(time, 24 / piece.tempo, kRoots[bar % 4]);
        if ((kick || snare || hat > 0.05) && time < seconds - 0.05) made.strokes.push_back(time);
    }

    template <class Sample>
    void Put(double time, double length, Sample sample) {
        const auto first = static_cast<std::size_t>(time * kRate);
        for (int i = 0; i < static_cast<int>(length * kRate); ++i) {
            const std::size_t place = first + static_cast<std::size_t>(i);
            if (place < sound.size()) sound[place] += static_cast<float>(sample(static_cast<double>(i) / kRate));
        }
    }
    void Kick(double time, double level) {
        double phase = 0;
        Put(time, 0.25, [&](double t) {
            phase += kTurn * (50 + 110 * std::exp(-t * 40)) / kRate;
            return level * std::exp(-t * 14) * std::sin(phase);
        });
    }
    void Snare(double time, double level) {
        Put(time, 0.2, [&](double t) {
            return level * (0.6 * std::exp(-t * 22) * Noise() + 0.5 * std::exp(-t * 26) * std::sin(kTurn * 190 * t));
        });
    }
    void Hat(double time, double level) {
        double before = 0;
        Put(time, 0.055, [&](double t) {
            const double now = Noise();
            const double high = now - before;
            before = now;
            return level * std::exp(-t * 70) * high;
        });
    }
    void Bass(double time, double length, double hertz) {
        Put(time, length, [&](double t) {
            const double edge = std::min({1.0, t * 200, (length - t) * 100});
            return 0.15 * edge * (std::sin(kTurn * hertz * t) + 0.4 * std::sin(2 * kTurn * hertz * t));
        });
    }

    const Piece& piece;
    double seconds;
    std::mt19937 random;
    std::vector<float> sound;
    Rendered made;
};

}  // namespace

Rendered Render(const Piece& piece, double seconds) { return CPieceWriter(piece, seconds).Run(); }

double HitScore(std::span<const RhythmHit> hits, const std::vector<double>& strokes) {
    constexpr double kReach = 0.025;
    std::size_t right = 0;
    std::size_t stroke = 0;
    for (const RhythmHit& hit : hits) {
        while (stroke < strokes.size() && strokes[stroke] < hit.time - kReach) ++stroke;
        if (stroke == strokes.size() || strokes[stroke] > hit.time + kReach) continue;
        ++right;
        ++stroke;
    }
    const auto both = static_cast<double>(hits.size() + strokes.size());
    return both > 0 ? 2.0 * static_cast<double>(right) / both : 1.0;
}

}  // namespace quib::material
