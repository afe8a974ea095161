// SPDX-License-Identifier: GPL-3.0-or-later
// Cost of the window's work in one 40 ms tick: the console over 32 instruments that play, at 1366 x 768.
// "all": the workstation's work, following the engine and what the windowing system copies without a display.
// "build": making the strips of the project anew, as opening it does.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <memory>

#include "app/console/CWinControlMain.h"
#include "controls/CNoSettings.h"
#include "devices/CSilentOutput.h"
#include "document/CSettings.h"
#include "document/CWorkstation.h"

namespace {

using namespace quib;

constexpr int kInstruments = 32;

// 32 synthesisers, each with a note on every step of a pattern, playing to nowhere in real time.
struct CPlayingConsole {
    CPlayingConsole()
        : settings(folder.filePath(QStringLiteral("settings.ini"))),
          folders(folder.filePath(QStringLiteral("program"))) {
        PrepareFolders(folders, settings);
        const QString plugin = QStringLiteral(QUIB_BIN_DIR "/PluginInstruments/QUIB synth.so");
        workstation = std::make_unique<CWorkstation>(settings, folders);
        QString error;
        for (int index = 0; index < kInstruments; ++index) {
            workstation->Stack().AddInstrument(plugin, error);
            std::vector<Note> notes;
            for (int step = 0; step < 16; ++step) notes.push_back({static_cast<float>(step), 0.5F, 48 + index, 90});
            workstation->Contents().SetPattern(workstation->Stack().Instrument(index)->Id(), 0,
                                               std::make_shared<const CPattern>(16, std::move(notes)),
                                               QStringLiteral("Notes"));
        }
        workstation->Audio().settings.songMode.Set(0);
        workstation->OpenOutput(QLatin1String(CSilentOutput::kName));
        console = std::make_unique<CWinControlMain>(controlSettings, *workstation, ConsoleActions());
        console->resize(1366, 728);
        console->show();
        QCoreApplication::processEvents();
        workstation->Transport().Play();
    }
    void Tick() {
        workstation->Tick();
        console->FollowEngine();
        QCoreApplication::processEvents();
    }

    QTemporaryDir folder;
    CSettings settings;
    Folders folders;
    CNoSettings controlSettings;
    std::unique_ptr<CWorkstation> workstation;
    std::unique_ptr<CWinControlMain> console;
};

void ConsoleTick(benchmark::State& state) {
    CPlayingConsole playing;
    for (auto _ : state) {
        state.PauseTiming();
        // The music goes on for the time that a timer would leave between two ticks.
        QThread::msleep(40);
        state.ResumeTiming();
        playing.Tick();
    }
}
BENCHMARK(ConsoleTick)
    ->Name("console/tick_32_instruments/all")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(200)
    ->UseRealTime();

void ConsoleBuild(benchmark::State& state) {
    CPlayingConsole playing;
    for (auto _ : state) playing.console->Translate();
}
BENCHMARK(ConsoleBuild)->Name("console/build_32_instruments")->Unit(benchmark::kMillisecond);

void ConsoleScroll(benchmark::State& state) {
    CPlayingConsole playing;
    int index = 0;
    for (auto _ : state) {
        playing.console->ScrollTo(index);
        QCoreApplication::processEvents();
        index = (index + 5) % kInstruments;
    }
}
BENCHMARK(ConsoleScroll)->Name("console/scroll")->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
