// SPDX-License-Identifier: GPL-3.0-or-later
// What a hand in a song of 32 instruments with 1,000 items each costs, in a window of 1600x900 at 1x and 2x: one
// step of a drag (edit, publish, redraw, copy to the window), scrolling by a step, one frame of the playhead.
// Prints the median and the 99th percentile in milliseconds of processor time.
#include <QTemporaryDir>
#include <QThread>

#include "WindowBench.h"
#include "document/CSettings.h"
#include "editors/ExampleRoll.h"
#include "editors/playlist/CSongPane.h"

namespace {

using namespace quib;

constexpr int kInstruments = 32;
constexpr int kItems = 1000;

std::shared_ptr<CInstrument> DenseInstrument(int number) {
    auto instrument = std::make_shared<CInstrument>();
    for (int pattern = 0; pattern < 15; ++pattern) {
        std::vector<Note> notes;
        for (int step = 0; step < 16; ++step) {
            notes.push_back({static_cast<float>(step), 1, 36 + (step * 7 + pattern * 5 + number) % 48, 100});
        }
        instrument->patterns[static_cast<std::size_t>(pattern)].Prepare(
            std::make_shared<const CPattern>(16, std::move(notes)));
    }
    Playlist items;
    for (int item = 0; item < kItems; ++item) items.push_back({(item + number) % 15, item * 32, item % 2});
    instrument->playlist.Prepare(std::make_shared<const Playlist>(std::move(items)));
    return instrument;
}

void MeasureAll(int scale) {
    const QTemporaryDir folder;
    CSettings settings(folder.filePath(QStringLiteral("settings.ini")));
    const Folders folders(folder.filePath(QStringLiteral("program")));
    CWorkstation station(settings, folders);
    InstrumentList list;
    for (int number = 0; number < kInstruments; ++number) list.push_back(DenseInstrument(number));
    station.Audio().PublishInstruments(list);
    station.Selection().SetCurrent(0);

    const CNoSettings plain;
    CWinControl window(plain, "window");
    auto& pane = window.Add<CSongPane>(0U, station);
    pane.Resize(1600, 900);
    window.SetUiScale(scale);
    window.resize(1600 * scale, 900 * scale);
    window.show();
    QApplication::processEvents();
    QObject::connect(&station.Changes(), &CChanges::Changed, &window,
                     [&pane](const Change& change) { pane.Follow(change); });
    std::printf("--- %d instruments with %d items each\n", kInstruments, kItems);
    const QPoint item(pane.Lane(0)->X() + 70, pane.Lane(0)->Y() + 12);
    Send(window, QEvent::MouseMove, Qt::NoButton, Qt::NoButton, item);
    Send(window, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton, item);
    Measure("drag of an item", scale, 200, [&](int round) {
        Send(window, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton, item + QPoint(32 + 32 * (round % 9), 0));
    });
    // Back to where it was: no step.
    Send(window, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton, item);
    Send(window, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, item);
    pane.Lane(0)->Edit().Select(SelectAll(pane.Lane(0)->Edit().State(), pane.Lane(0)->Edit().Patterns()).selection);
    QThread::msleep(25);  // a press that follows a release at once is taken for a bouncing button
    Send(window, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton, item);
    Measure("drag of all items of an instrument", scale, 100, [&](int round) {
        Send(window, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton, item + QPoint(32 + 32 * (round % 9), 0));
    });
    Send(window, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, item);
    Measure("scroll", scale, 100, [&](int round) { pane.ScrollTo(8 * (1 + round % 50)); });
    pane.ScrollTo(0);
    Measure("playhead, a frame", scale, 300, [&](int round) { pane.ShowPlayhead(8 + 0.5 * round); });
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    for (const int scale : {1, 2}) MeasureAll(scale);
    return 0;
}
