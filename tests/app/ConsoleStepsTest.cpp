// SPDX-License-Identifier: GPL-3.0-or-later
// Every command of the console on a small project: what it changes is in steps, and undo takes back all of it.
#include <QApplication>
#include <QColorDialog>
#include <QInputDialog>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CWinControlMain.h"
#include "controls/CNoSettings.h"
#include "document/DocumentFixture.h"
#include "project/ProjectFile.h"

namespace quib {
namespace {

class ConsoleStepsTest : public DocumentTest {
protected:
    ConsoleStepsTest() {
        AddSynth();
        Contents().SetPattern(At(0)->Id(), 0, std::make_shared<CPattern>(16, std::vector<Note>{{0, 1, 60, 90}}), "x");
        Places().LoadPlugin({SlotPlace::EKind::kInsert, At(0)->Id(), 0}, QStringLiteral("QUIB delay"), error);
        Places().LoadPlugin({SlotPlace::EKind::kEffect, 0, 0}, QStringLiteral("QUIB reverb"), error);
        At(0)->keyboardOn.Set(1.0F);
        workstation->Presets().AddPreset(0);
        AddSynth();
        settings.SetOn(QStringLiteral("PresetOn"), true);
        actions.browse = [this](const BrowseWish& wish) {
            const bool isInstrument = !wish.place || wish.place->kind == SlotPlace::EKind::kInstrument;
            const QString name = QLatin1String(isInstrument ? "QUIB drums" : "QUIB chorus");
            if (wish.place) {
                Places().LoadPlugin(*wish.place, name, error);
            } else {
                Stack().AddInstrument(name, error);
            }
        };
        actions.openPlugin = [](const SlotPlace&) {};
        actions.openTool = [](ETool) {};
        console = std::make_unique<CWinControlMain>(noSettings, *workstation, actions);
        console->resize(1366, 728);
        console->show();
        QObject::connect(&answering, &QTimer::timeout, [] { Answer(); });
        answering.start(1);
        Settle();
    }
    // Types something else into whatever asks.
    static void Answer() {
        QWidget* const asking = QApplication::activeModalWidget();
        if (auto* const input = qobject_cast<QInputDialog*>(asking)) {
            input->setIntValue(input->intValue() + 3);
            input->setDoubleValue(input->doubleValue() + 0.5);
            input->setTextValue(input->textValue() + "; x");
            input->accept();
        } else if (auto* const colour = qobject_cast<QColorDialog*>(asking)) {
            colour->setCurrentColor(Qt::red);
            colour->accept();
        } else if (auto* const other = qobject_cast<QDialog*>(asking)) {
            other->reject();
        }
    }
    void Approach(QPoint point) { QTest::mouseMove(console.get(), point); }
    void Settle() {
        QCoreApplication::processEvents();
        workstation->Tick();
        console->FollowEngine();
        QCoreApplication::processEvents();
    }
    // How far a keyboard is scrolled is a way of looking.
    std::string Image() {
        CRecordWriter writer;
        WriteProject(writer, Session().GatherState(), [](const CInstrument&) { return std::vector<std::int32_t>(); });
        std::string bytes(writer.Bytes().data(), writer.Bytes().size());
        for (std::size_t at = 0; (at = bytes.find("KEYBOARD_POSITION", at)) != std::string::npos;) {
            bytes.erase(at, bytes.find('\n', at) - at);
        }
        return bytes;
    }
    std::vector<QPoint> Points() const {
        std::vector<QPoint> points;
        for (const auto& top : console->Controls()) {
            if (top.get() == console->Strip(1)) continue;
            for (const auto& child : top->Children()) {
                const QRect shown = child->ShownRectangle();
                if (!shown.isEmpty()) points.push_back(console->ToWidget(shown).center());
            }
        }
        return points;
    }
    // Of a long list of choices the first ones stand for all.
    static void Flatten(const QMenu& menu, QList<QAction*>& entries, int most = 100) {
        for (QAction* const action : menu.actions().first(std::min<qsizetype>(most, menu.actions().size()))) {
            if (action->menu() != nullptr) {
                Flatten(*action->menu(), entries, 3);
            } else if (action->isEnabled() && !action->isSeparator()) {
                entries.append(action);
            }
        }
    }
    // Chooses an entry of the menu that is open; false when there is none of that number.
    static bool Choose(int number, std::string& what) {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) return false;
        QList<QAction*> entries;
        Flatten(*menu, entries);
        const bool exists = number < entries.size();
        if (exists) {
            what += " > " + entries[number]->text().toStdString();
            entries[number]->trigger();
        }
        menu->close();
        return exists;
    }
    void Expect(const std::string& what, const std::string& before, int steps) {
        workstation->Changes().Settle();
        const std::string after = Image();
        if (after != before) {
            ++changes;
            EXPECT_GT(Steps().index(), steps) << what << " is no step";
        }
        while (Steps().index() > steps) workstation->Changes().Undo();
        Settle();
        if (after == before) return;
        const std::string undone = Image();
        const auto differs = std::mismatch(undone.begin(), undone.end(), before.begin(), before.end()).first;
        const auto place = static_cast<std::size_t>(differs - undone.begin());
        EXPECT_TRUE(undone == before) << what << ": " << undone.substr(place > 60 ? place - 60 : 0, 120);
    }

    CNoSettings noSettings;
    ConsoleActions actions;
    std::unique_ptr<CWinControlMain> console;
    QTimer answering;
    QString error;
    int changes = 0;
};

TEST_F(ConsoleStepsTest, EverythingThatChangesTheProjectIsTakenBackByUndo) {
    const std::size_t count = Points().size();
    const std::string before = Image();
    const int steps = Steps().index();
    const auto at = [&](std::size_t index, const char* gesture) {
        return "control " + std::to_string(index) + ", " + gesture;
    };
    for (std::size_t index = 0; index < count && !HasFailure(); ++index) {
        ASSERT_EQ(Points().size(), count);
        const QPoint point = Points()[index];
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            bool more = true;
            for (int entry = 0; more; ++entry) {
                std::string what = at(index, button == Qt::LeftButton ? "left" : "right");
                Approach(point);
                QTest::mouseClick(console.get(), button, {}, point);
                more = Choose(entry, what);
                Settle();
                Expect(what, before, steps);
            }
        }
        Approach(point);
        QTest::mousePress(console.get(), Qt::LeftButton, {}, point);
        QTest::mouseMove(console.get(), point + QPoint(9, -6));
        QTest::mouseRelease(console.get(), Qt::LeftButton, {}, point + QPoint(9, -6));
        Settle();
        Expect(at(index, "drag"), before, steps);
        QWheelEvent wheel(point, console->mapToGlobal(point), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(console.get(), &wheel);
        Settle();
        Expect(at(index, "wheel"), before, steps);
    }
    EXPECT_GT(changes, 100);
}

}  // namespace
}  // namespace quib
