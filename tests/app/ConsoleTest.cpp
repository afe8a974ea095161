// SPDX-License-Identifier: GPL-3.0-or-later
// The console under the mouse while the engine plays, without a display: what ThreadSanitizer watches.
#include "app/console/CWinControlMain.h"

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include "app/console/CInstrumentStripCtrl.h"
#include "controls/CKeyboardExCtrl.h"
#include "controls/CNoSettings.h"
#include "controls/VirtualKeys.h"
#include "devices/CSilentOutput.h"
#include "document/DocumentFixture.h"

namespace quib {
namespace {

class ConsoleTest : public DocumentTest {
protected:
    ConsoleTest() {
        QString error;
        EXPECT_TRUE(
            workstation->Session().LoadProject(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), error));
        EXPECT_TRUE(workstation->OpenOutput(QLatin1String(CSilentOutput::kName)));
        console = std::make_unique<CWinControlMain>(noSettings, *workstation, Actions());
        console->resize(1366, 728);
        console->show();
        QObject::connect(&timer, &QTimer::timeout, [this] { Tick(); });
        timer.start(10);
    }
    ConsoleActions Actions() {
        ConsoleActions actions;
        actions.browse = [this](const BrowseWish& wish) {
            QString error;
            if (!wish.place) workstation->Stack().AddInstrument(QStringLiteral("QUIB drums"), error);
        };
        return actions;
    }
    // Whatever a click opens is shut again.
    void Tick() {
        workstation->Tick();
        console->FollowEngine();
        if (QWidget* const menu = QApplication::activePopupWidget()) menu->close();
        if (auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
    }
    // Middles of the controls that are shown, of the band and the first strips.
    std::vector<QPoint> Points() const {
        std::vector<QPoint> points;
        for (const auto& top : console->Controls()) {
            for (const auto& child : top->Children()) {
                const QRect shown = child->ShownRectangle();
                if (!shown.isEmpty() && shown.top() < 400) points.push_back(console->ToWidget(shown).center());
            }
        }
        return points;
    }

    CNoSettings noSettings;
    std::unique_ptr<CWinControlMain> console;
    QTimer timer;
};

TEST_F(ConsoleTest, ClickingAndDraggingEverythingDuringPlaybackHarmsNothing) {
    workstation->Transport().Play();
    const std::vector<QPoint> points = Points();
    EXPECT_GT(points.size(), 80U);
    for (const QPoint& point : points) {
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            QTest::mousePress(console.get(), button, {}, point);
            QTest::mouseMove(console.get(), point + QPoint(7, -5));
            QTest::mouseRelease(console.get(), button, {}, point + QPoint(7, -5));
        }
    }
    EXPECT_GT(workstation->Changes().Steps().count(), 20) << "the clicks were steps of undo";
    while (workstation->Changes().Steps().canUndo()) workstation->Changes().Steps().undo();
    QTest::qWait(50);
    EXPECT_EQ(workstation->Stack().Instruments().size(), 11U);
    workstation->Session().NewProject();
    QTest::qWait(50);
    EXPECT_EQ(console->Strip(0), nullptr);
}

// The boxes of an empty pattern, with the mouse.
TEST_F(ConsoleTest, StepBoxesAreSetPaintedMadeLouderAndClearedAndEachGestureIsOneStep) {
    workstation->Contents().SelectPattern(0, 9);
    QTest::qWait(50);
    const auto instrument = workstation->Stack().Instrument(0);
    const auto notes = [&] { return instrument->patterns[9].ForEdit()->Notes(); };
    ASSERT_TRUE(notes().empty());
    const CControl* boxes = nullptr;
    for (const auto& child : console->Strip(0)->Children()) {
        if (child->infoString == 480) boxes = child.get();
    }
    ASSERT_NE(boxes, nullptr);
    const auto box = [&](int step) {
        const QRect place = boxes->Rectangle();
        return console->ToWidget({place.left() + place.width() * step / 16 + 4, place.center().y(), 1, 1}).topLeft();
    };
    const auto drag = [&](QPoint from, QPoint to, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(console.get(), Qt::LeftButton, keys, from);
        if (to != from) QTest::mouseMove(console.get(), to);
        QTest::mouseRelease(console.get(), Qt::LeftButton, keys, to);
        QTest::qWait(40);
    };
    const auto steps = [&] { return workstation->Changes().Steps().index(); };
    const int before = steps();
    drag(box(4), box(4));
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_EQ(notes()[0].position, 4);
    EXPECT_EQ(UndoText(), "Set steps");
    drag(box(8), box(11));
    EXPECT_EQ(notes().size(), 5U) << "a drag paints";
    EXPECT_EQ(notes()[4].key, notes()[0].key);
    drag(box(4), box(4) + QPoint(0, -20));
    EXPECT_EQ(notes()[0].velocity, 120);
    EXPECT_EQ(UndoText(), "Velocity");
    drag(box(8), box(10));
    EXPECT_EQ(notes().size(), 2U) << "a drag from a full box clears";
    drag(box(4), box(4));
    EXPECT_EQ(notes().size(), 1U);
    drag(box(2), box(2), Qt::ControlModifier);
    EXPECT_EQ(notes().size(), 1U) << "Ctrl restarts the pattern and changes nothing";
    EXPECT_EQ(steps(), before + 5);
    QTest::mousePress(console.get(), Qt::LeftButton, {}, box(0));
    QTest::mouseMove(console.get(), box(3));
    EXPECT_EQ(notes().size(), 5U) << "heard at once";
    QTest::keyClick(console.get(), Qt::Key_Escape);
    QTest::mouseRelease(console.get(), Qt::LeftButton, {}, box(3));
    EXPECT_EQ(notes().size(), 1U);
    EXPECT_EQ(steps(), before + 5);
}

// Elsewhere than in its own cells and boxes a strip has nothing new to show.
TEST_F(ConsoleTest, KeysLeftHeldOnAStripGoUpWithStopPanicAndTheFocus) {
    CInstrument& instrument = *At(0);
    instrument.keyboardOn.Set(1.0F);
    workstation->Changes().Tell({EChange::kInstrument, instrument.Id()});
    CKeyboardExCtrl* keyboard = nullptr;
    const auto find = [&] {
        for (const auto& child : console->Strip(0)->Children()) {
            if (auto* const found = dynamic_cast<CKeyboardExCtrl*>(child.get())) keyboard = found;
        }
        return keyboard != nullptr;
    };
    ASSERT_TRUE(QTest::qWaitFor(find));
    const auto held = [&] { return workstation->Audio().Picture().instruments[0].heldKeyCount; };
    CTransportControl& transport = workstation->Transport();
    const std::function<void()> ends[] = {[&] { transport.Stop(); }, [&] { transport.Panic(); },
                                          [&] {
                                              QEvent away(QEvent::WindowDeactivate);
                                              QApplication::sendEvent(console.get(), &away);
                                          }};
    for (const auto& end : ends) {
        transport.Play();
        keyboard->OnKeyDown(virtualKey::kShift);
        keyboard->OnLButtonDown(keyboard->X() + 100, keyboard->Y() + 50, 0);
        keyboard->OnLButtonUp(keyboard->X() + 200, keyboard->Y() + 50, 0);
        keyboard->OnKeyUp(virtualKey::kShift);
        ASSERT_TRUE(QTest::qWaitFor([&] { return held() == 1 && transport.IsPlaying(); }));
        ASSERT_EQ(keyboard->HeldNotes().size(), 1U);
        end();
        EXPECT_TRUE(QTest::qWaitFor([&] { return held() == 0 && keyboard->HeldNotes().empty(); }));
    }
}

TEST_F(ConsoleTest, ADragOfNotesRepaintsTheCellsAndBoxesOfItsStripOnly) {
    timer.stop();
    QTest::qWait(50);
    const auto instrument = workstation->Stack().Instrument(0);
    const int pattern = workstation->Selection().CurrentPattern();
    const auto painted = [&](const std::function<void(int move)>& drag) {
        const qint64 before = console->PaintedPixels();
        for (int move = 0; move < 60; ++move) {
            drag(move);
            console->FollowEngine();
            QApplication::processEvents();
        }
        return console->PaintedPixels() - before;
    };
    const qint64 idle = painted([](int) {});
    qint64 room = 0;
    for (const auto& child : console->Strip(0)->Children()) {
        if (child->infoString == 127 || child->infoString == 480 || child->infoString == 481) {
            room += qint64{child->Width() + 1} * (child->Height() + 1);
        }
    }
    CGesture gesture(workstation->Changes());
    const qint64 dragging = painted([&](int move) {
        gesture.Publish(PatternPlace(instrument, pattern),
                        std::make_shared<const CPattern>(16, std::vector<Note>{{0, 1, 30 + move, 100}}));
    });
    EXPECT_GT(dragging, idle);
    EXPECT_LE(dragging - idle, 60 * room);
}

}  // namespace
}  // namespace quib
