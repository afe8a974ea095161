// SPDX-License-Identifier: GPL-3.0-or-later
// A plug-in's own editor inside its window. Needs a display and plug-ins with editors; skipped without.
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QSet>

#include "app/CPluginWindows.h"
#include "document/DocumentFixture.h"

namespace quib {
namespace {

class EditorTest : public DocumentTest, public testing::WithParamInterface<const char*> {};

int ColoursOf(const QImage& image) {
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3) colours.insert(image.pixel(x, y));
    }
    return static_cast<int>(colours.size());
}

TEST_P(EditorTest, DrawsItselfAndClosesWithItsPlugin) {
    const QString path = QLatin1String(GetParam());
    if (QGuiApplication::platformName() != "xcb" || !QFile::exists(path)) GTEST_SKIP();
    QString error;
    SlotPlace place{SlotPlace::EKind::kEffect, 0, 0};
    if (Stack().AddInstrument(path, error) >= 0) {
        place = Place(0);
    } else {
        ASSERT_TRUE(Places().LoadPlugin(place, path, error)) << error.toStdString();
    }
    CPluginWindows windows(*workstation);
    for (int round = 0; round < 2; ++round) {
        CPluginWindow* const window = windows.Show(place);
        ASSERT_NE(window, nullptr);
        EXPECT_TRUE(window->IsEditorOpen());
        const auto shown = [&] {
            return QGuiApplication::primaryScreen()->grabWindow(0, window->x(), window->y(), window->width(),
                                                                window->height());
        };
        int colours = 0;
        for (QElapsedTimer time =
                 [] {
                     QElapsedTimer t;
                     t.start();
                     return t;
                 }();
             time.elapsed() < 5000;) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            windows.Tick();
            colours = ColoursOf(shown().toImage());
            if (colours > 60) break;
        }
        EXPECT_GT(colours, 60) << "the window stays empty";
        EXPECT_GT(window->height(), 60);
        shown().save(QStringLiteral(QUIB_BIN_DIR "/editor-%1.png").arg(QFileInfo(path).completeBaseName()));
        window->ShowPage();
        EXPECT_FALSE(window->IsEditorOpen());
        QCoreApplication::processEvents();
        windows.CloseAll();
    }
    windows.Show(place);
    Session().NewProject();
    for (int i = 0; i < 5; ++i) {
        workstation->Tick();
        QCoreApplication::processEvents();
    }
}

INSTANTIATE_TEST_SUITE_P(Installed, EditorTest,
                         testing::Values("/usr/lib/vst/amsynth_vst.so", "/usr/lib/lxvst/DragonflyRoomReverb-vst.so",
                                         "/usr/lib/vst/MVerb-vst.so"));

}  // namespace
}  // namespace quib
