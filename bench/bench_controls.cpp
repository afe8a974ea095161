// SPDX-License-Identifier: GPL-3.0-or-later
// Cost of one tick of a busy console at 1x: 64 stereo meters that move, 64 rows of step LEDs and a scope.
// "drawn": into the back buffer; "shown": and copied to the window, with what the windowing system adds
// without a display. The argument says whether each row of LEDs is drawn whole or moves on by a step.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <cmath>
#include <deque>

#include "controls/CNoSettings.h"
#include "controls/CScopeCtrl.h"
#include "controls/CStepLedCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CWinControl.h"

namespace {

using namespace quib;

constexpr int kStrips = 64;

class CMovingScope : public CScopeSource {
public:
    void Show(bool /*on*/) override {}
    void Arm() override {}
    bool Fetch(Picture& picture) override {
        phase += 0.3F;
        for (std::size_t index = 0; index < left.size(); ++index) {
            left[index] = 0.8F * std::sin(phase + 0.05F * static_cast<float>(index));
            right[index] = 0.5F * std::sin(phase + 0.19F * static_cast<float>(index));
        }
        picture = {left, right};
        return true;
    }

private:
    std::array<float, 1024> left{}, right{};
    float phase = 0;
};

struct CBusyConsole {
    CBusyConsole() : window(settings, "window") {
        window.resize(1360, 760);
        for (int strip = 0; strip < kStrips; ++strip) {
            auto* const left = &levels.emplace_back(0.5F);
            auto* const right = &levels.emplace_back(0.5F);
            window.Add<CVuCtrl>(0U, 10 + 20 * strip, 10, 13, 118, left, right, true);
            auto& row = window.Add<CStepLedCtrl>(0U, 10 + strip % 4 * 330, 150 + strip / 4 * 30, 320, 6,
                                                 qRgb(0x38, 0x38, 0x38));
            row.playingStep = [this] { return step % 16; };
            row.loudness = [](int index) { return index % 3 == 0 ? 100 : -1; };
            rows.push_back(&row);
        }
        window.Add<CScopeCtrl>(0U, 10, 650, 400, 100, scope);
        window.show();
        QApplication::processEvents();
    }
    // Louder and softer by turns: every bar moves with every tick.
    void Advance(bool wholeRows) {
        ++step;
        for (std::size_t index = 0; index < levels.size(); ++index) {
            const float turn = static_cast<float>(step) * 0.4F + static_cast<float>(index);
            levels[index].Set(step % 2 == 0 ? 0.9F + 0.3F * std::sin(turn) : 0.0F);
        }
        if (!wholeRows) return;
        for (CStepLedCtrl* const row : rows) row->NotesChanged();
    }

    CNoSettings settings;
    CMovingScope scope;
    std::deque<CValue> levels;
    std::vector<CStepLedCtrl*> rows;
    int step = 0;
    CWinControl window;
};

void RedrawBusyConsole(benchmark::State& state, bool shown) {
    CBusyConsole console;
    for (auto _ : state) {
        state.PauseTiming();
        QApplication::processEvents();
        console.Advance(state.range(0) != 0);
        state.ResumeTiming();
        console.window.Tick();
        if (shown) QApplication::processEvents();
    }
}

BENCHMARK_CAPTURE(RedrawBusyConsole, drawn, false)->ArgName("wholeRows")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RedrawBusyConsole, shown, true)->ArgName("wholeRows")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
