// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CArpeggiatorCtrl.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "controls/CKnobCtrl.h"
#include "controls/CSelectorCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

struct KnobPlan {
    CValue* ArpeggiatorValues::*setting;
    const char* label;
    const char* name;
    float maximum;
    int infoString;
    QString (*text)(float);
};

QString Whole(float value) { return QString::number(std::lround(value)); }
// A unit makes a note up to 32 softer.
QString Softer(float value) { return QStringLiteral("127..%1").arg(std::max(0L, 127 - std::lround(32 * value))); }
QString Semitones(float value) { return Text("%1 semitones").arg(std::lround(value)); }
QString Gate(float value) { return Text("1/%1 step").arg(1 << std::lround(value)); }
QString Speed(float value) { return Text("every %1 steps").arg(1 << std::lround(value)); }

constexpr std::array<KnobPlan, 6> kKnobs = {{
    {&ArpeggiatorValues::hole, TextKey("Holes"), TextKey("Arpeggiator holes"), 8, 412, Whole},
    {&ArpeggiatorValues::ext, TextKey("Extend"), TextKey("Arpeggiator extension"), 8, 413, Whole},
    {&ArpeggiatorValues::interval, TextKey("Interval"), TextKey("Arpeggiator interval"), 24, 415, Semitones},
    {&ArpeggiatorValues::velocity, TextKey("Velocity"), TextKey("Arpeggiator velocity"), 4, 416, Softer},
    {&ArpeggiatorValues::gateTime, TextKey("Gate"), TextKey("Arpeggiator gate time"), 4, 417, Gate},
    {&ArpeggiatorValues::tempo, TextKey("Tempo"), TextKey("Arpeggiator tempo"), 4, 418, Speed},
}};

}  // namespace

CArpeggiatorCtrl::CArpeggiatorCtrl(CWinControl& window, std::uint32_t number, int left, int top,
                                   const ArpeggiatorValues& firstValues)
    : CControl(window, number, left, top, kWidth, kHeight) {
    auto& on = AddChild<CSwitchCtrl>(0U, 7, 6, 44, 20, nullptr, Text("ON"));
    on.infoString = 410;
    on.name = Text("Arpeggiator");
    bound.push_back({&on, &ArpeggiatorValues::on});
    auto& mode = AddChild<CSelectorCtrl>(0U, 56, 6, 102, 20, nullptr,
                                         QStringList{Text("Up"), Text("Down"), Text("Up & down"), Text("Random")});
    mode.infoString = 411;
    mode.name = Text("Arpeggiator mode");
    bound.push_back({&mode, &ArpeggiatorValues::mode});
    auto& extMode = AddChild<CSelectorCtrl>(
        0U, 163, 6, 100, 20, nullptr, QStringList{Text("Each key"), Text("Pass"), Text("Pass, back"), Text("Random")});
    extMode.infoString = 414;
    extMode.name = Text("Arpeggiator extension mode");
    bound.push_back({&extMode, &ArpeggiatorValues::extMode});
    int place = 7;
    for (const KnobPlan& plan : kKnobs) {
        auto& knob = AddChild<CKnobCtrl>(0U, place, 30, 42, 56, nullptr);
        knob.label = Text(plan.label);
        knob.name = Text(plan.name);
        knob.maximum = plan.maximum;
        knob.defaultValue = 0.0F;
        knob.infoString = plan.infoString;
        knob.formatValue = plan.text;
        bound.push_back({&knob, plan.setting});
        place += 43;
    }
    for (const Bound& entry : bound) {
        entry.control->section = ESection::kKeyboard;
        entry.control->backgroundColour = Palette().Colour(QStringLiteral("panel"));
    }
    BindTo(firstValues);
}

void CArpeggiatorCtrl::BindTo(const ArpeggiatorValues& newValues) {
    values = newValues;
    for (const Bound& entry : bound) {
        entry.control->Bind(values.*entry.setting);
        entry.control->enabled = values.*entry.setting != nullptr;
    }
    Refresh();
}

void CArpeggiatorCtrl::SetGesture(const std::function<void(CControl&, float before)>& gesture) {
    for (const Bound& entry : bound) entry.control->onGesture = gesture;
}

void CArpeggiatorCtrl::Draw() { Canvas().Fill(Rectangle(), Palette().Colour(QStringLiteral("panel"))); }

}  // namespace quib
