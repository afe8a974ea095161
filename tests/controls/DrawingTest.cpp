// SPDX-License-Identifier: GPL-3.0-or-later
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cmath>
#include <random>

#include "controls/CFaderCtrl.h"
#include "controls/CImageCtrl.h"
#include "controls/CKnobCtrl.h"
#include "controls/CPatternSelCtrl.h"
#include "controls/CSelectorCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/ControlFixture.h"
#include "controls/SkinNumbers.h"

namespace quib {

namespace {

// Contrast as the accessibility guidelines define it: 4.5 is enough for text.
double Contrast(QRgb first, QRgb second) {
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&linear](QRgb colour) {
        return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
    };
    const auto [low, high] = std::minmax({luminance(first), luminance(second)});
    return (high + 0.05) / (low + 0.05);
}

// Pixels that differ by more than a shade, outside of a rectangle.
int DifferentPixels(const QImage& first, const QImage& second, const QRect& except = {}) {
    int count = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x) {
            if (except.contains(x, y)) continue;
            const QRgb one = first.pixel(x, y);
            const QRgb other = second.pixel(x, y);
            const int most = std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                                       std::abs(qBlue(one) - qBlue(other))});
            if (most > 24) ++count;
        }
    }
    return count;
}

}  // namespace

using CDrawingTest = CControlTest;

TEST_F(CDrawingTest, AValueChangeRepaintsItsOwnRectangleOnly) {
    CValue other(0.5F);
    Add<CFaderCtrl>(10, 10, 30, 100, &value, true);
    Add<CKnobCtrl>(100, 10, 40, 50, &other);
    Open();
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0);
    value.Set(0.6F);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 30 * 100);
    other.Set(0.1F);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 40 * 50);
    window.Controls()[0]->SetVisible(false);
    value.Set(0.7F);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0);
}

// A meter draws what has moved: never more than that, and nothing old stays.
TEST_F(CDrawingTest, AMeterThatFollowsLooksAsOneThatIsDrawnAnew) {
    std::array<CValue, 3> levels;
    Add<CVuCtrl>(11, 7, 9, 131, &levels[0], nullptr, true);
    Add<CVuCtrl>(31, 9, 218, 11, &levels[1], &levels[2], false);
    std::mt19937 dice(3);
    std::uniform_real_distribution<float> decibels(-70, 3);
    for (const qreal scale : {1.0, 1.25, 2.0}) {
        window.SetUiScale(scale);
        Open(400, 200);
        qint64 most = 0;
        for (int tick = 0; tick < 120; ++tick) {
            for (CValue& level : levels) {
                if (tick % 20 == 0) level.Set(std::pow(10.0F, decibels(dice) / 20));
                if (tick % 20 == 1) level.Set(0);
            }
            const qint64 painted = PaintedBy([this] { window.Tick(); });
            if (tick % 20 > 1) most = std::max(most, painted);
            const QImage followed = window.Canvas().Image().copy();
            for (const auto& control : window.Controls()) control->Refresh();
            ASSERT_EQ(DifferentPixels(followed, window.Canvas().Image()), 0) << scale << ' ' << tick;
        }
        EXPECT_LT(static_cast<double>(most), 0.2 * (9 * 131 + 218 * 11) * scale * scale);
    }
}

TEST_F(CDrawingTest, AMissingPictureDrawsNothing) {
    auto& image = Add<CImageCtrl>(10, 10, 40, 40, 9999);
    auto& glyph = Add<CImageCtrl>(60, 10, 40, 40, 9998);
    glyph.isGlyph = true;
    auto& fader = Add<CFaderCtrl>(10, 60, 20, 100, &value, true);
    fader.pictures = {9997, 9997, 9997};
    Open();
    EXPECT_TRUE(window.Skin().Bitmap(9999).IsNull());
    const QImage drawn = window.Canvas().Image();
    QImage plain(drawn.size(), drawn.format());
    plain.fill(qRgb(0x30, 0x30, 0x30));
    EXPECT_EQ(DifferentPixels(drawn, plain), 0);
    image.SetPicture(picture::kProgramIcon);
    EXPECT_GT(DifferentPixels(window.Canvas().Image(), plain), 300);
}

TEST_F(CDrawingTest, EveryPictureOfTheSkinShowsSomethingAndNoPureRed) {
    const QList<int> numbers = window.Skin().Numbers();
    EXPECT_GE(numbers.size(), 40);
    for (const qreal scale : {1.0, 1.5, 2.0}) {
        window.Skin().SetScale(scale);
        for (const int number : numbers) {
            const SkinBitmap& bitmap =
                number >= 300 ? window.Skin().Glyph(number, qRgb(255, 0, 0)) : window.Skin().Bitmap(number);
            ASSERT_FALSE(bitmap.IsNull()) << number;
            EXPECT_EQ(bitmap.image.width(), std::ceil(bitmap.width * scale)) << number;
            bool shows = false;
            for (int y = 0; y < bitmap.image.height(); ++y) {
                for (int x = 0; x < bitmap.image.width(); ++x) {
                    const QRgb pixel = bitmap.image.pixel(x, y);
                    shows = shows || qAlpha(pixel) > 100;
                    ASSERT_NE(pixel, qRgb(255, 0, 0)) << number;
                }
            }
            EXPECT_TRUE(shows) << number;
        }
    }
}

TEST_F(CDrawingTest, DrawingAgainChangesNoPixelAndNeverThoseOfANeighbourAtAnyScale) {
    CPatternOwner* const nobody = nullptr;
    std::array<CValue, 4> levels;
    // Odd places, edge to edge.
    Add<CFaderCtrl>(3, 3, 25, 101, &value, true).fillFromCentre = true;
    Add<CFaderCtrl>(28, 3, 101, 21, &value, false);
    Add<CKnobCtrl>(28, 24, 43, 57, &value).label = QStringLiteral("Knob");
    Add<CSwitchCtrl>(71, 24, 33, 21, &value, QStringLiteral("ON"));
    Add<CVuCtrl>(104, 24, 9, 81, &levels[0], nullptr, true);
    Add<CVuCtrl>(71, 45, 33, 7, &levels[1], &levels[2], false);
    Add<CSelectorCtrl>(71, 52, 33, 23, &value, QStringList{QStringLiteral("A")});
    Add<CPatternSelCtrl>(3, 105, 17, 21, 0, nobody);
    Open();
    for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        window.SetUiScale(scale);
        const QImage first = window.Canvas().Image().copy();
        for (std::size_t index = 0; index < window.Controls().size(); ++index) {
            CControl& control = *window.Controls()[index];
            for (int again = 0; again < 3; ++again) control.Refresh();
            EXPECT_EQ(DifferentPixels(first, window.Canvas().Image()), 0) << index << " at " << scale;
            control.FillRect(qRgb(255, 0, 255));
            const QRect place = control.Rectangle();
            const QRect pixels(QPoint(static_cast<int>(std::lround(place.left() * scale)),
                                      static_cast<int>(std::lround(place.top() * scale))),
                               QPoint(static_cast<int>(std::lround((place.left() + place.width()) * scale)) - 1,
                                      static_cast<int>(std::lround((place.top() + place.height()) * scale)) - 1));
            EXPECT_EQ(DifferentPixels(first, window.Canvas().Image(), pixels), 0) << index << " at " << scale;
            control.Refresh();
            EXPECT_EQ(DifferentPixels(first, window.Canvas().Image()), 0) << index << " at " << scale;
        }
    }
}

// Over the files themselves: what is written, and every ground that it is written on.
TEST_F(CDrawingTest, TextIsReadableOnItsGroundInEveryPalette) {
    using Grounds = std::vector<const char*>;
    const std::vector<std::pair<const char*, Grounds>> texts = {
        {"text", {"panel", "panelRaised", "well", "wellDeep", "window", "playGround", "recordGround", "highlight"}},
        {"textMuted", {"panel", "panelRaised", "well", "wellDeep"}},
        {"textDim", {"panel", "well", "window"}},
        {"textOff", {"well"}},
        {"transport", {"playGround", "glass"}},
        {"pattern", {"panel", "panelRaised"}},
        {"effects", {"panel"}},
        {"warning", {"panel"}},
        {"pianoText", {"pianoWhite"}},
        {"onAccent", {"transport", "mix", "pattern", "equaliser", "effects", "keyboard", "warning", "record"}}};
    const QList<QString> names = CPalette(EPalette::kDark).Names();
    for (int which = 0; which < kPaletteCount; ++which) {
        const CPalette palette(static_cast<EPalette>(which));
        const auto colour = [&palette](const char* name) { return palette.Colour(QLatin1String(name)); };
        const QList<QString> own = palette.Names();
        EXPECT_EQ(QSet<QString>(names.begin(), names.end()), QSet<QString>(own.begin(), own.end()));
        for (const auto& [text, grounds] : texts) {
            for (const char* const ground : grounds) {
                EXPECT_GE(Contrast(colour(text), colour(ground)), 4.5) << which << ": " << text << " on " << ground;
            }
        }
        EXPECT_GE(Contrast(colour("text"), Mix(colour("well"), colour("effects"), 0.45F)), 4.5) << which;
        for (int track = 0; track < 8; ++track) {
            EXPECT_GE(Contrast(colour("text"), Mix(colour("lane"), palette.Track(track), 0.5F)), 4.5) << which;
        }
        // What cannot sound is still read.
        for (const char* const text : {"text", "textMuted", "textDim"}) {
            EXPECT_GE(Contrast(palette.Silent(colour(text)), colour("panel")), 4.5) << which << ": silent " << text;
        }
    }
}

TEST(Gallery, LooksAsInThePictures) {
    const QTemporaryDir folder;
    for (const char* const scale : {"1", "1.5", "2"}) {
        const QString kept = QStringLiteral(QUIB_SOURCE_DIR "/docs/gallery-%1x.png").arg(QLatin1String(scale));
        const QString made = folder.filePath(QStringLiteral("made.png"));
        ASSERT_EQ(QProcess::execute(QStringLiteral(QUIB_BIN_DIR "/quib-gallery"),
                                    {QStringLiteral("--scale"), QLatin1String(scale), QStringLiteral("--png"), made}),
                  0);
        const QImage expected(kept);
        const QImage image(made);
        ASSERT_FALSE(expected.isNull()) << kept.toStdString();
        ASSERT_EQ(image.size(), expected.size());
        // Another version of the font renderer may move the edge of a letter.
        EXPECT_LT(DifferentPixels(image, expected), image.width() * image.height() / 200) << scale;
        EXPECT_LT(QFile(kept).size(), 400'000);
    }
}

}  // namespace quib
