// SPDX-License-Identifier: GPL-3.0-or-later
// What a hand in a piano roll of 10,000 notes costs, in a window of 1600x900 at 1x and 2x: one step of a
// drag (edit, publish, redraw, copy to the window), one frame of the playhead, one move of the mouse.
// Then the same of a lane of automation of 100,000 points. Prints the median and the 99th percentile in milliseconds of
// processor time.
#include <QTemporaryDir>
#include <QThread>
#include <cmath>

#include "WindowBench.h"
#include "document/CSettings.h"
#include "editors/ExampleRoll.h"
#include "editors/automation/CEventCtrl.h"
#include "editors/pianoroll/IPianoRollHost.h"

namespace {

using namespace quib;

class CNoDocument : public IPianoRollHost {
public:
    void Preview(const NoteState& state) override { published = state.pattern; }
    void Finish(const char* /*name*/) override {}
    void Cancel() override {}
    void SelectionChanged(const NoteState& /*state*/) override {}
    void SetLength(int /*steps*/) override {}
    void Audition(int /*key*/, int /*velocity*/, bool /*on*/) override {}
    bool TakeKey(int /*key*/) override { return false; }
    void SetKeyLimit(bool /*upper*/, int /*key*/, bool /*done*/) override {}
    void ShowMenu(int /*x*/, int /*y*/) override {}
    void Hold(bool /*on*/) override {}
    void ShowRowMenu(int /*key*/) override {}
    void ViewChanged() override {}
    void RowFocused(int /*key*/) override {}
    std::shared_ptr<const CPattern> published;
};

void MeasureDrag(const char* name, int scale, CExampleRoll& example, QPoint from) {
    CWinControl& window = example.window;
    // A press that follows a release at once is taken for a bouncing button.
    QThread::msleep(25);
    Send(window, QEvent::MouseMove, Qt::NoButton, Qt::NoButton, from);
    Send(window, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton, from);
    Measure(name, scale, 200, [&](int round) {
        Send(window, QEvent::MouseMove, Qt::NoButton, Qt::LeftButton,
             from + QPoint(24 + 24 * (round % 5), 12 * (round % 7)));
    });
    Send(window, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton, from);
}

QPoint PlaceOf(const CPianoRollCtrlEx& roll, std::uint32_t note) {
    const auto box = roll.view.BoxOf(roll.State().Notes()[note]);
    return {static_cast<int>(box->left) + 3, static_cast<int>(box->top) + 3};
}

std::uint32_t VisibleNote(const CPianoRollCtrlEx& roll) {
    const CNoteIndex index(roll.State().pattern);
    for (std::uint32_t note = 0;; ++note) {
        const QPoint place = PlaceOf(roll, note);
        const bool inside = place.x() > 400 && place.x() < 800 && place.y() > 200 && place.y() < 500;
        if (inside && roll.view.NoteAt(index, place.x(), place.y()) == note) return note;
    }
}

void MeasureAll(int scale, int steps, const char* density) {
    CNoDocument document;
    CExampleRoll example(document, 1600, 788);
    example.window.SetUiScale(scale);
    example.window.resize(1600 * scale, 900 * scale);
    example.Show();
    CPianoRollCtrlEx& roll = *example.roll;
    roll.Show(DenseNotes(10000, steps));
    roll.OptionsChanged();
    std::printf("--- 10000 notes, %s\n", density);
    MeasureDrag("drag of one note", scale, example, PlaceOf(roll, VisibleNote(roll)));
    roll.Show(SelectAll(roll.State()));
    MeasureDrag("drag of all notes", scale, example, PlaceOf(roll, VisibleNote(roll)));
    Measure("playhead, a frame", scale, 500, [&](int round) { roll.SetPlayhead(2 + 0.125 * round); });
    Measure("mouse over notes", scale, 300, [&](int round) {
        Send(example.window, QEvent::MouseMove, Qt::NoButton, Qt::NoButton, QPoint(300 + 3 * round, 200 + round));
    });
    Measure("whole redraw (scroll)", scale, 100, [&](int round) {
        roll.view.time.ScrollTo(8 * (round % 9));
        roll.ViewMoved();
    });
}

// What the automation window does with a lane of 100,000 points, publishing each step of a drag.
void MeasureCurve(int scale, int steps, int stepWidth, const char* density) {
    const QTemporaryDir folder;
    CSettings settings(folder.filePath(QStringLiteral("settings.ini")));
    const Folders folders(folder.filePath(QStringLiteral("program")));
    CWorkstation station(settings, folders);
    const CLaneCatalog catalog(station);
    const CNoSettings plain;
    CWinControl window(plain, "panel");
    CEventCtrl& curve = window.Add<CEventCtrl>(0U, 0, 0, 1600, 780, catalog);
    window.SetUiScale(scale);
    window.resize(1600 * scale, 900 * scale);
    window.show();
    const LaneLimits limits = {-1, 1, ELaneKind::kContinuous, static_cast<float>(kMaximumSongStep)};
    curve.ShowLane(LaneEntry{{ELaneGroup::kMix, 1}, {"Pan", -1, 1, 0, ELaneKind::kContinuous}}, limits);
    constexpr int kPoints = 100'000;
    auto points = std::make_shared<PointList>();
    for (int point = 0; point < kPoints; ++point) {
        const float place = static_cast<float>(point) * static_cast<float>(steps) / kPoints;
        points->push_back({place, std::sin(static_cast<float>(point) * 0.7F)});
    }
    curve.View().time.SetExtent(steps);
    curve.View().time.SetStepWidth(stepWidth, 0);
    // One that is to be seen.
    const auto seen = static_cast<std::uint32_t>(kPoints / steps * 20);
    curve.ShowPoints({points, {seen}});
    CEventLanes lanes;
    curve.Edit().onPreview = [&](const LaneState& state) {
        lanes = lanes.With(CEventLanes::kSongSlot, 1, *state.points);
    };
    std::printf("--- 100000 points of automation, %s\n", density);
    Measure("scroll, a frame", scale, 300, [&](int round) {
        curve.View().time.ScrollTo(round % 200);
        curve.ViewMoved();
    });
    curve.Edit().Begin();
    const LaneState start = curve.Edit().Start();
    Measure("drag of one point", scale, 200, [&](int round) {
        curve.Edit().Preview(MoveSelected(start, limits, 0, 0.01F * static_cast<float>(round % 50)));
    });
    curve.Edit().Cancel();
    curve.Edit().Select(SelectAll(curve.Edit().State()));
    curve.Edit().Begin();
    const LaneState all = curve.Edit().Start();
    Measure("drag of all points", scale, 200, [&](int round) {
        curve.Edit().Preview(MoveSelected(all, limits, 0.1F * static_cast<float>(round % 50), 0));
    });
    curve.Edit().Cancel();
}

}  // namespace

// With an argument: automation alone.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    for (const int scale : {1, 2}) {
        if (argc == 1) MeasureAll(scale, 1920, "330 to be seen at once");
        if (argc == 1) MeasureAll(scale, 64, "all to be seen at once");
        MeasureCurve(scale, 100'000, 24, "one a step");
        MeasureCurve(scale, 100'000, 3, "one a step, 3 pixels wide");
        MeasureCurve(scale, 64, 24, "all to be seen at once");
    }
    return 0;
}
