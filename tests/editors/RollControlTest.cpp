// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTest>

#include "editors/ExampleRoll.h"
#include "editors/RollFixture.h"

namespace quib {

namespace {

// Counts the columns of a window that are painted.
class CPaintWatch : public QObject {
public:
    explicit CPaintWatch(QWidget& window) : watched(window), columns(static_cast<std::size_t>(window.width())) {
        watched.installEventFilter(this);
    }

    template <class Action>
    int WidthOf(const Action& action) {
        QApplication::processEvents();
        columns.assign(static_cast<std::size_t>(watched.width()), false);
        action();
        QApplication::processEvents();
        return static_cast<int>(std::count(columns.begin(), columns.end(), true));
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            for (const QRect& part : static_cast<QPaintEvent*>(event)->region()) {
                for (int column = part.left(); column <= part.right(); ++column) {
                    columns[static_cast<std::size_t>(column)] = true;
                }
            }
        }
        return QObject::eventFilter(object, event);
    }

private:
    QWidget& watched;
    std::vector<bool> columns;
};

class RollControl : public testing::Test {
protected:
    RollControl() {
        example.Show();
        example.roll->Show(ExampleMelody());
        document.now = example.roll->State().pattern;
        example.roll->OptionsChanged();
    }
    void Mouse(QEvent::Type type, Qt::MouseButton button, const QPoint& place) {
        if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick) buttons |= button;
        if (type == QEvent::MouseButtonRelease) buttons &= ~Qt::MouseButtons(button);
        QMouseEvent event(type, place, example.window.mapToGlobal(QPointF(place)), button, buttons, Qt::NoModifier);
        QApplication::sendEvent(&example.window, &event);
    }
    void Move(const QPoint& place) { Mouse(QEvent::MouseMove, Qt::NoButton, place); }
    void Click(const QPoint& place, bool isDouble = false, Qt::MouseButton button = Qt::LeftButton) {
        Move(place);
        Mouse(isDouble ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, button, place);
        Mouse(QEvent::MouseButtonRelease, button, place);
    }
    QPoint PlaceOf(double step, int key) const {
        const PianoRollView& view = example.roll->view;
        return {static_cast<int>(view.XOf(step)) + 4, view.YOfRow(view.Rows().RowOf(key)) + 5};
    }

    CFakeDocument document;
    CExampleRoll example{document};
    CPaintWatch watch{example.window};
    Qt::MouseButtons buttons;
};

TEST_F(RollControl, HoverAndPlayheadRepaintLittle) {
    CPianoRollCtrlEx& roll = *example.roll;
    int widest = 0;
    int painted = 0;
    for (const int stepWidth : {24, 96, 3}) {
        roll.view.time.SetStepWidth(stepWidth, 0);
        roll.view.time.ScrollTo(0);
        roll.ViewMoved();
        for (int x = 0; x < 880; x += 11) {
            for (const int y : {10, 180, 354, 450}) {
                for (const auto& action : {std::function<void()>([&] {
                                               Move({x, y + x / 80});
                                           }),
                                           std::function<void()>([&] { example.window.Tick(); })}) {
                    const int width = watch.WidthOf(action);
                    widest = std::max(widest, width);
                    painted += width;
                }
            }
        }
    }
    EXPECT_LE(widest, 64);
    EXPECT_GT(painted, 10'000) << "something lights up at all";
    widest = 0;
    for (double step = 0; step < 30; step += 0.31) {
        widest = std::max(widest, watch.WidthOf([&] { roll.SetPlayhead(step); }));
    }
    widest = std::max(widest, watch.WidthOf([&] { roll.SetPlayhead(2); }));  // the loop begins again
    EXPECT_LE(widest, 64);
    EXPECT_GT(widest, 0);
    EXPECT_EQ(watch.WidthOf([&] { roll.SetPlayhead(2); }), 0);
}

TEST_F(RollControl, AChangeRedrawsOnlyWhereItIsAndAHiddenWindowNothing) {
    CPianoRollCtrlEx& roll = *example.roll;
    NoteState next = roll.State();
    std::vector<Note> notes = next.Notes();
    notes[0].key = 54;
    next.pattern = std::make_shared<CPattern>(32, notes);
    EXPECT_LE(watch.WidthOf([&] { roll.Show(next); }), 50);
    roll.SetVisible(false);
    example.lane->SetVisible(false);
    const int width = watch.WidthOf([&] {
        roll.Show(ExampleDrums());
        roll.SetPlayhead(12);
        roll.ViewMoved();
        example.window.Tick();
    });
    EXPECT_EQ(width, 0);
}

TEST_F(RollControl, TakesTheMouseOfAWindow) {
    CPianoRollCtrlEx& roll = *example.roll;
    roll.Show(StateOf({}));
    document.now = roll.State().pattern;
    Click(PlaceOf(4, 60));
    ASSERT_EQ(roll.State().Notes().size(), 1U);
    Click(PlaceOf(4, 60), true);
    EXPECT_TRUE(roll.State().Notes().empty());
    EXPECT_TRUE(document.steps.empty());
    // Two quick clicks in the header are two lengths.
    Click({64 + 24 * 4, 5});
    Click({64 + 24 * 4, 5}, true);
    EXPECT_EQ(roll.State().pattern->StepCount(), 5);
    Move({200, 200});
    EXPECT_EQ(roll.State().pattern->StepCount(), 5) << "the second press has ended, too";
    Click(PlaceOf(4, 60));
    for (int tick = 0; tick < 20; ++tick) example.window.Tick();
    EXPECT_EQ(document.steps.back().name, "Add note") << "time makes a step of it";
    Click(PlaceOf(8, 60), false, Qt::RightButton);
    EXPECT_EQ(document.menus, 1);
    Mouse(QEvent::MouseButtonPress, Qt::MiddleButton, {300, 200});
    Move({300, 230});
    Mouse(QEvent::MouseButtonRelease, Qt::MiddleButton, {300, 230});
    EXPECT_EQ(roll.view.KeyScroll(), 12 * 40 - 30);
    const std::size_t steps = document.steps.size();
    Click({64 + 4 * 24 + 4, CExampleRoll::kRollHeight + 32 + 20});
    EXPECT_EQ(document.steps.size(), steps + 1);
    EXPECT_EQ(document.steps.back().name, "Velocity");
    EXPECT_NEAR(roll.State().Notes()[0].velocity, 105, 3);
    EXPECT_EQ(CPianoRollCtrlEx::BubbleText({1.5F, 0.25F, 60, 99}), "Velocity: 99 Time: 1.50 Duration: 0.25");
    EXPECT_STREQ(NameOfKey(60).text, "C 3");
    EXPECT_STREQ(NameOfKey(127).text, "G 8");
    EXPECT_STREQ(NameOfKey(1).text, "C#-2");
}

}  // namespace
}  // namespace quib
