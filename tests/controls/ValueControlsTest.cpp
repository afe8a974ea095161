// SPDX-License-Identifier: GPL-3.0-or-later

#include "controls/CFaderCtrl.h"
#include "controls/CFilterCtrl.h"
#include "controls/CKnobCtrl.h"
#include "controls/CPresetSelectorCtrl.h"
#include "controls/CScopeCtrl.h"
#include "controls/CScrollCtrl.h"
#include "controls/CSelectorCtrl.h"
#include "controls/CSwitchSelectorCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CZoomCtrl.h"
#include "controls/ControlFixture.h"
#include "model/Equalizer.h"

namespace quib {

using CValueControlsTest = CControlTest;

TEST_F(CValueControlsTest, ADetentHoldsInASmallBandAboveItAndLeavesTheMaximum) {
    auto& fader = Add<CFaderCtrl>(10, 10, 20, 512, &value, true);
    auto& knob = Add<CKnobCtrl>(100, 10, 40, 40, &value);
    knob.detentOn = fader.detentOn = true;
    knob.detentValue = fader.detentValue = 0.5F;
    Open(400, 600);
    ASSERT_EQ(fader.Travel(), 500);
    // Way up in pixels from 0.4, and the value there.
    for (const auto& [way, expected] : std::vector<std::pair<int, float>>{
             {40, 0.48F}, {50, 0.5F}, {62, 0.5F}, {68, 0.5F}, {69, 0.50104F}, {100, 0.568F}, {300, 1.0F}}) {
        value.Set(0.4F);
        Press(20, 300);
        Move(20, 300 - way);
        EXPECT_NEAR(value.Get(), expected, 1e-5) << way;
        Release(20, 300 - way);
        PassBounce();
    }
    value.Set(0.4F);
    Press(120, 30);
    Move(120, 30 - 16);  // to 0.525
    EXPECT_EQ(value.Get(), 0.5F);
    Release(120, 14);
}

TEST_F(CValueControlsTest, ABarBesideAThumbIsDraggedFromBothSidesAndCatchesZero) {
    auto& fader = Add<CFaderCtrl>(10, 10, 112, 20, &value, false);
    CValue second(0.2F);
    fader.secondValue = &second;
    fader.secondBarOn = true;
    std::vector<float> before;
    fader.onSecondGesture = [&before](CControl&, float start) { before.push_back(start); };
    Open();
    value.Set(0.3F);
    // The thumb covers 40..52, the bar the 20 pixels after it. Each drag: from, to, and where the bar ends.
    for (const auto& [from, to, expected] :
         std::vector<std::tuple<int, int, float>>{{75, 95, 0.4F},      // its end outwards
                                                  {40, 30, 0.3F},      // the thumb's near side outwards
                                                  {75, 57, 0.0F},      // 0.02 is caught
                                                  {75, 40, 0.15F},     // through the thumb and out on the other side
                                                  {75, 300, 1.0F}}) {  // never beyond the end
        second.Set(0.2F);
        Press(from, 20);
        for (int x = from; x != to; x += to > from ? 1 : -1) Move(x, 20);
        Move(to, 20);
        Release(to, 20);
        EXPECT_NEAR(second.Get(), expected, 1e-5) << from << " to " << to;
        EXPECT_EQ(value.Get(), 0.3F);
        PassBounce();
    }
    EXPECT_EQ(before.size(), 5U);
    // From nothing the bar can grow below zero.
    second.Set(0);
    Drag(60, 20, 40, 20);
    EXPECT_NEAR(second.Get(), -0.2F, 1e-5);
    PassBounce();
    Press(46, 20);
    Move(56, 20);
    EXPECT_NEAR(value.Get(), 0.4F, 1e-5) << "the thumb itself";
    EXPECT_NEAR(second.Get(), -0.2F, 1e-5);
}

TEST_F(CValueControlsTest, AFaderWithoutAValueIgnoresTheMouse) {
    auto& fader = Add<CFaderCtrl>(10, 10, 112, 20, nullptr, false);
    auto& knob = Add<CKnobCtrl>(10, 100, 40, 40, nullptr);
    Open();
    for (const QPoint at : {QPoint(50, 20), QPoint(30, 120)}) {
        Drag(at.x(), at.y(), at.x() + 20, at.y());
        Wheel(at.x(), at.y(), 1);
    }
    EXPECT_FALSE(fader.IsDragging());
    EXPECT_EQ(knob.ValueNow(), 0.0F);
}

TEST_F(CValueControlsTest, AKnobIsDraggedWithinEightPixelsOfItsCentreAndTurnedFurtherOut) {
    auto& knob = Add<CKnobCtrl>(100, 100, 40, 40, &value);
    Open();
    Press(120 + 7, 120);
    EXPECT_TRUE(knob.IsCentreMode());
    Move(127, 120 - 32);
    EXPECT_NEAR(value.Get(), 0.75F, 1e-6);
    Release(127, 88);
    PassBounce();
    value.Set(0.25F);
    Press(120 + 8, 120);
    EXPECT_FALSE(knob.IsCentreMode());
    Move(121, 121);
    Move(120, 120);  // the centre has no direction
    Move(119, 121);  // square to the last one: ignored
    Move(120, 122);
    Move(120 - 8, 120 + 8);
    Release(112, 128);
    // From the right to the lower left: 135 degrees clockwise, of the 300 that the knob has.
    EXPECT_NEAR(value.Get(), 0.25 + 135.0 / 300, 1e-5);
    PassBounce();
    settings.values["VerticalMovingKnob"] = 1;
    Press(105, 120);
    EXPECT_TRUE(knob.IsCentreMode());
}

TEST_F(CValueControlsTest, ATurnedKnobRestsAtItsDetentForTwentyDegreesAndReachesTheEnds) {
    auto& knob = Add<CKnobCtrl>(100, 100, 100, 100, &value);
    knob.detentOn = true;
    knob.detentValue = 0.5F;
    Open();
    value.Set(0.4F);
    // Degrees of the value's own turn of 340, and what they give: the mouse turns by 5/6 of it.
    const auto turnTo = [this](double degrees) {
        const double radians = degrees * 5 / 6 * std::numbers::pi / 180;
        Move(150 + static_cast<int>(std::lround(4000 * std::cos(radians))),
             150 + static_cast<int>(std::lround(4000 * std::sin(radians))));
    };
    Press(190, 150);
    for (const auto& [degrees, expected] : std::vector<std::pair<double, double>>{
             {17, 0.45}, {33, 0.4 + 33.0 / 340}, {36, 0.5}, {52, 0.5}, {71, 0.4 + 51.0 / 340}, {-17, 0.35}}) {
        turnTo(degrees);
        EXPECT_NEAR(value.Get(), expected, 1e-3) << degrees;
    }
    for (double degrees = 0; degrees < 400; degrees += 40) turnTo(degrees);
    EXPECT_EQ(value.Get(), 1.0F);
    for (double degrees = 400; degrees > -100; degrees -= 40) turnTo(degrees);
    EXPECT_EQ(value.Get(), 0.0F);
}

TEST_F(CValueControlsTest, AClickOnTheChosenSegmentChoosesNone) {
    value.Set(0);
    Add<CSwitchSelectorCtrl>(10, 10, 20, 20, &value,
                             QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
    Open();
    for (const auto& [x, expected] :
         std::vector<std::pair<int, float>>{{10, 1.0F}, {29, 0.0F}, {30, 2.0F}, {69, 3.0F}, {70, 0.0F}}) {
        Click(x, 20);
        EXPECT_EQ(value.Get(), expected) << x;
    }
    Click(30, 20, Qt::RightButton);
    EXPECT_EQ(value.Get(), 0.0F);
}

TEST_F(CValueControlsTest, ASelectorStepsByArrowsAndWheelWithinItsChoices) {
    Add<CSelectorCtrl>(10, 10, 100, 20, &value,
                       QStringList{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
    value.Set(0);
    Open();
    Click(12, 20);
    EXPECT_EQ(value.Get(), 0.0F);
    Click(105, 20);
    EXPECT_EQ(value.Get(), 1.0F);
    Wheel(50, 20, -5);
    EXPECT_EQ(value.Get(), 2.0F);
    Wheel(50, 20, 1);
    EXPECT_EQ(value.Get(), 1.0F);
}

TEST_F(CValueControlsTest, PresetsAreRecalledByMouseAndKeyboard) {
    auto& presets = Add<CPresetSelectorCtrl>(10, 10, 110, 20, &value);
    value.Set(0);
    int count = 3;
    std::vector<int> recalled;
    std::vector<int> menus;
    presets.presetCount = [&count] { return count; };
    presets.onSelect = [&recalled](int preset) { return recalled.push_back(preset), true; };
    presets.onAdd = [&count] { ++count; };
    presets.onPresetMenu = [&menus](int preset) { menus.push_back(preset); };
    Open();
    Click(10 + 25, 20);
    Key(Qt::Key_Right);
    Key(Qt::Key_Right);  // there is none further
    Key(Qt::Key_Home);
    Key(Qt::Key_3, QStringLiteral("3"));
    Key(Qt::Key_4, QStringLiteral("4"));
    EXPECT_EQ(recalled, (std::vector<int>{1, 2, 0, 2}));
    EXPECT_EQ(value.Get(), 3.0F);
    Click(10 + 75, 20);
    EXPECT_EQ(count, 4);
    Click(10 + 26, 20, Qt::RightButton);
    Click(120, 20, Qt::RightButton);
    EXPECT_EQ(menus, (std::vector<int>{1, -1}));
    Move(300, 200);
    Key(Qt::Key_Home);
    EXPECT_EQ(recalled.size(), 4U) << "the mouse is elsewhere";
}

TEST_F(CValueControlsTest, AFilterBandIsDraggedInFrequencyAndGain) {
    std::array<CValue, 9> controls;
    CFilterCtrl::Bands bands;
    for (std::size_t band = 0; band < 3; ++band) {
        bands[band] = {&controls[3 * band], &controls[3 * band + 1], &controls[3 * band + 2]};
        controls[3 * band].Set(0.2F + 0.3F * static_cast<float>(band));
        controls[3 * band + 1].Set(0.5F);
    }
    auto& filter = Add<CFilterCtrl>(0, 0, 210, 106, &value, bands);
    filter.defaults[1] = {0.4F, 0.5F, 0};
    std::vector<int> changed, gestures;
    filter.onBandChange = [&changed](int band) { changed.push_back(band); };
    filter.onBandGesture = [&gestures](int band, const CFilterCtrl::BandState&) { gestures.push_back(band); };
    Open();
    // 200 x 96 pixels within the margins: the whole range of frequencies by 48 decibels.
    Move(105, 53);
    Press(105, 53);
    Move(125, 53 - 24);
    EXPECT_NEAR(controls[3].Get(), 0.6F, 1e-5);
    EXPECT_NEAR(EqGainDecibels(controls[5].Get()), 12.0, 1e-4);
    Move(1000, -1000);
    Release(1000, -1000);
    EXPECT_EQ(controls[3].Get(), 1.0F);
    EXPECT_EQ(controls[5].Get(), 1.0F);
    EXPECT_EQ(gestures, std::vector<int>{1});
    EXPECT_EQ(changed, (std::vector<int>{1, 1}));
    EXPECT_EQ(controls[2].Get() + controls[8].Get(), 0.0F);
    PassBounce();
    Wheel(45, 53, 4);
    EXPECT_NEAR(controls[1].Get(), 0.54F, 1e-5);
    DoubleClick(205, 13);
    EXPECT_EQ(filter.StateOf(1), filter.defaults[1]);
    EXPECT_EQ(gestures, (std::vector<int>{1, 0, 1}));
    // Values that change elsewhere are drawn with the next tick.
    controls[8].Set(0.5F);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 210 * 106);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0);
}

TEST_F(CValueControlsTest, AMeterHoldsItsPeakFallsAndMarksAClipUntilItIsClicked) {
    auto& meter = Add<CVuCtrl>(10, 10, 10, 132, &value, nullptr, true);
    Open();
    EXPECT_EQ(MeterShare(0), 0.0F);
    EXPECT_NEAR(MeterShare(1) - MeterShare(0.5F), 6.0206F / 66, 1e-5);
    value.Set(1.0F);
    window.Tick();
    EXPECT_TRUE(meter.IsClipped());
    value.Set(0);
    // Ticks in which something of it still moves: 60 decibels at 26 a second, after 1.5 seconds of hold.
    int moving = 0;
    int last = 0;
    for (int tick = 1; tick <= 200; ++tick) {
        if (PaintedBy([this] { window.Tick(); }) > 0) {
            ++moving;
            last = tick;
        }
    }
    EXPECT_NEAR(last * 0.04, 1.5 + 60.0 / 26, 0.1);
    EXPECT_EQ(moving, last) << "falls without a halt";
    EXPECT_TRUE(meter.IsClipped());
    Click(15, 100);
    EXPECT_FALSE(meter.IsClipped());
}

class CCountedScope : public CScopeSource {
public:
    void Show(bool on) override { shown = on; }
    void Arm() override { ++armed; }
    bool Fetch(Picture& picture) override {
        ++fetched;
        picture = {samples, samples};
        return true;
    }
    bool shown = false;
    int armed = 0;
    int fetched = 0;
    std::vector<float> samples = std::vector<float>(256, 0.5F);
};

TEST_F(CValueControlsTest, AScopeCostsNothingWhileItIsHidden) {
    CCountedScope source;
    auto& parent = Add<CProbe>(0, 0, 200, 100);
    parent.AddChild<CScopeCtrl>(0U, 10, 10, 100, 50, source);
    Open();
    EXPECT_TRUE(source.shown);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 100 * 50);
    parent.SetVisible(false);
    EXPECT_FALSE(source.shown);
    const int fetched = source.fetched;
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0);
    EXPECT_EQ(source.fetched, fetched);
    parent.SetVisible(true);
    EXPECT_TRUE(source.shown);
    source.samples.assign(256, 0);
    window.Tick();
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0) << "silence stays as it is";
    source.samples.assign(256, 0.0001F);
    EXPECT_EQ(PaintedBy([this] { window.Tick(); }), 0) << "what nobody can see is not drawn";
    source.samples.assign(256, -0.1F);
    EXPECT_GT(PaintedBy([this] { window.Tick(); }), 0);
    window.Remove(parent);
    EXPECT_FALSE(source.shown);
}

TEST_F(CValueControlsTest, ZoomAndScrollBarsMoveByClickDragAndWheel) {
    std::vector<int> zoomed;
    Add<CZoomCtrl>(0, 0, 40, 20).onZoom = [&zoomed](int direction) { zoomed.push_back(direction); };
    auto& scroll = Add<CScrollCtrl>(0, 100, 100, 10, &value, false);
    scroll.SetRange(200, 50);
    value.Set(0);
    Open();
    Click(5, 5);
    DoubleClick(35, 5);
    Wheel(5, 5, -1);
    EXPECT_EQ(zoomed, (std::vector<int>{-1, 1, 1, -1}));
    Press(10, 105);
    Move(10 + 25, 105);  // a third of the 75 pixels that the thumb can go
    EXPECT_NEAR(value.Get(), 50, 1e-3);
    Release(35, 105);
    PassBounce();
    Click(99, 105);
    EXPECT_NEAR(value.Get(), 100, 1e-3) << "a page on";
    Wheel(50, 105, -1000);
    EXPECT_EQ(value.Get(), 150.0F);
}

}  // namespace quib
