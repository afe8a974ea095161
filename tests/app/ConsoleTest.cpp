// SPDX-License-Identifier: GPL-3.0-or-later
// The console under the mouse while the engine plays, without a display: what ThreadSanitizer watches.
#include "app/console/CWinControlMain.h"

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include "AppFixture.h"
#include "app/console/CInstrumentStripCtrl.h"
#include "devices/CSilentOutput.h"

namespace quib {
namespace {

class CNoSettings : public CControlSettings {
public:
    int ReadSettingInt(const char* /*section*/, const char* /*name*/, int fallback) const override { return fallback; }
};

class ConsoleTest : public AppTest {
protected:
    ConsoleTest() {
        QString error;
        EXPECT_TRUE(workstation->LoadProject(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), error));
        EXPECT_TRUE(workstation->OpenOutput(QLatin1String(CSilentOutput::kName)));
        console = std::make_unique<CWinControlMain>(noSettings, *workstation, Actions());
        console->resize(1366, 728);
        console->show();
        QObject::connect(&timer, &QTimer::timeout, [this] { Tick(); });
        timer.start(10);
    }
    ConsoleActions Actions() {
        ConsoleActions actions;
        actions.pluginChoices = [](SlotKind) {
            const QString name = QStringLiteral("QUIB synth");
            return QList<PluginChoice>{{name, QString(), name}};
        };
        actions.addInstrument = [this](const QString& name) {
            QString error;
            workstation->AddInstrument(name.isEmpty() ? QStringLiteral("QUIB drums") : name, error);
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
    workstation->Play();
    const std::vector<QPoint> points = Points();
    EXPECT_GT(points.size(), 80U);
    for (const QPoint& point : points) {
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            QTest::mousePress(console.get(), button, {}, point);
            QTest::mouseMove(console.get(), point + QPoint(7, -5));
            QTest::mouseRelease(console.get(), button, {}, point + QPoint(7, -5));
            QTest::qWait(25);
        }
    }
    EXPECT_GT(workstation->Undo().count(), 20) << "the clicks were steps of undo";
    while (workstation->Undo().canUndo()) workstation->Undo().undo();
    QTest::qWait(50);
    EXPECT_EQ(workstation->Instruments().size(), 10U);
    workstation->NewProject();
    QTest::qWait(50);
    EXPECT_EQ(console->Strip(0), nullptr);
}

}  // namespace
}  // namespace quib
