// SPDX-License-Identifier: GPL-3.0-or-later
// How the console looks: texts in their boxes, what cannot be heard, palettes, places of windows.
#include "app/Look.h"

#include <QApplication>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CWinControlMain.h"
#include "app/console/StripColumns.h"
#include "controls/CInfoCtrl.h"
#include "controls/CLabelCtrl.h"
#include "document/DocumentFixture.h"

namespace quib {
namespace {

class CEnglishSettings : public CControlSettings {
public:
    int ReadSettingInt(const char* /*section*/, const char* name, int fallback) const override {
        if (std::string(name) == "DisplayInfoMessagesEnglish") return ChosenEnglish() ? 1 : 0;
        return std::string(name) == "DisplayInfoMessagesFrench" ? 1 : fallback;
    }
    bool english = true;

private:
    bool ChosenEnglish() const { return english; }
};

class LookTest : public DocumentTest {
protected:
    LookTest() {
        QString error;
        EXPECT_TRUE(
            workstation->Session().LoadProject(QStringLiteral(QUIB_SOURCE_DIR "/examples/HouseMusic.prg"), error));
        console = std::make_unique<CWinControlMain>(controlSettings, *workstation, ConsoleActions());
        Resize(1);
        console->show();
        QCoreApplication::processEvents();
        // What the user named is as long as it is.
        console->Canvas().onCut = [this](const QString& text, const QRectF& room) {
            cut.push_back(text.toStdString() + " in " + std::to_string(room.width()));
        };
    }
    ~LookTest() override {
        SetLanguage(ELanguage::kEnglish);
        ChoosePalette(EPalette::kDark);
    }
    void Resize(double scale) { console->resize(static_cast<int>(1366 * scale), static_cast<int>(728 * scale)); }
    void Help(const CControl& control) {
        if (control.InfoNumber() >= 0) console->infoPanel->Show(control.InfoNumber());
        for (const auto& child : control.Children()) Help(*child);
    }
    static const CControl* Find(const CControl& top, int info) {
        for (const auto& child : top.Children()) {
            if (child->infoString == info) return child.get();
        }
        return nullptr;
    }
    void Follow() {
        console->FollowEngine();
        QCoreApplication::processEvents();
    }

    CEnglishSettings controlSettings;
    std::unique_ptr<CWinControlMain> console;
    std::vector<std::string> cut;
};

TEST_F(LookTest, NoTextIsCutInEitherLanguageAtAnyScale) {
    for (const ELanguage language : {ELanguage::kEnglish, ELanguage::kFrench}) {
        controlSettings.english = language == ELanguage::kEnglish;
        SetLanguage(language);
        for (const bool closed : {false, true}) {
            for (int index = 0; index < 10; ++index) workstation->Stack().SetCollapsed(index, closed);
            for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
                console->SetUiScale(scale);
                Resize(scale);
                cut.clear();  // the old size at the new scale
                console->Translate();
                Follow();
                for (const auto& top : console->Controls()) Help(*top);
                EXPECT_TRUE(cut.empty()) << testing::PrintToString(cut) << " at " << scale << ", closed: " << closed;
                cut.clear();
            }
        }
    }
}

TEST_F(LookTest, WhatCannotBeHeardIsDimAndTheCauseIsNot) {
    Follow();
    const auto dims = [&](int index) { return Find(*console->Strip(index), 470)->cannotSound; };
    EXPECT_FALSE(dims(0));
    At(0)->strip.mute.Set(1.0F);
    Follow();
    EXPECT_TRUE(dims(0));
    EXPECT_FALSE(Find(*console->Strip(0), 471)->cannotSound) << "the button that silences it";
    EXPECT_FALSE(dims(1));
    At(0)->strip.mute.Set(0.0F);
    Stack().ToggleSolo(2);
    Follow();
    EXPECT_TRUE(dims(0));
    EXPECT_TRUE(dims(1));
    EXPECT_FALSE(dims(2));
    Stack().ToggleSolo(2);
    At(1)->strip.crossfadeB.Set(1.0F);
    workstation->Audio().settings.crossfader.Set(0.0F);
    Follow();
    EXPECT_FALSE(dims(0));
    EXPECT_TRUE(dims(1));
    workstation->Audio().settings.crossfader.Set(127.0F);
    Follow();
    EXPECT_FALSE(dims(1));
}

TEST_F(LookTest, AnotherPaletteReachesEveryPixelOfTheConsole) {
    const auto lightness = [&] {
        const QImage image = console->Canvas().Image().scaled(64, 36, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        qint64 sum = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) sum += qGray(image.pixel(x, y));
        }
        return sum / (image.width() * image.height());
    };
    EXPECT_LT(lightness(), 90);
    ChoosePalette(EPalette::kLight);
    console->Translate();
    Follow();
    EXPECT_GT(lightness(), 170);
    EXPECT_EQ(console->Canvas().Image().pixel(2, 300), Palette().Colour(QStringLiteral("window")));
}

TEST_F(LookTest, StripsFillTheirWidthInOrderAndWithinIt) {
    for (int width = 950; width < 2600; width += 7) {
        const StripColumns open = StripColumns::For(width);
        EXPECT_EQ(open.sends + open.sendsWidth, width - 6);
        for (const int column : {open.cellPitch - 20, open.equaliserWidth - 70, open.insertsWidth - 88,
                                 open.sendsWidth - 90, open.inserts - open.equaliser, open.sends - open.inserts}) {
            EXPECT_GE(column, 0) << width;
        }
        const ClosedColumns closed = ClosedColumns::For(width);
        EXPECT_LE(closed.presets + closed.presetsWidth, width - 84 + 25) << width;
    }
}

TEST(WindowPlaces, ScalesEndAtTheScreenAndWindowsOpenBesideWhatTheyBelongTo) {
    EXPECT_EQ(LargestScale({977, 300}, {1366, 704}), 139);
    EXPECT_EQ(LargestScale({977, 300}, {640, 480}), 75);
    EXPECT_EQ(LargestScale({977, 300}, {7680, 4320}), 300);
    const QRect screen(0, 0, 1366, 768);
    const QRect bars(0, 20, 1366, 160);
    for (const QSize window : {QSize(270, 170), QSize(445, 460), QSize(560, 500)}) {
        for (const QRect anchor : {QRect(290, 190, 170, 24), QRect(1020, 640, 110, 30), QRect(10, 400, 1340, 104)}) {
            const QRect place(PlaceBeside(window, anchor, bars, screen), window);
            EXPECT_TRUE(screen.contains(place));
            EXPECT_FALSE(place.intersects(bars)) << place.top();
        }
    }
    const QRect huge(PlaceBeside({900, 700}, {290, 190, 170, 24}, bars, screen), QSize(900, 700));
    EXPECT_TRUE(screen.contains(huge));
}

TEST_F(LookTest, ACopyOfAnInstrumentHasANameOfItsOwn) {
    Stack().DuplicateInstrument(0);
    EXPECT_EQ(At(1)->title, "Kick 2");
    Stack().DuplicateInstrument(1);
    EXPECT_EQ(At(2)->title, "Kick 3");
}

}  // namespace
}  // namespace quib
