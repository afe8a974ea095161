// SPDX-License-Identifier: GPL-3.0-or-later
// The panels of the gallery whose controls hold a value.

#include <QMenu>
#include <array>
#include <cmath>

#include "controls/CArpeggiatorCtrl.h"
#include "controls/CFaderCtrl.h"
#include "controls/CFilterCtrl.h"
#include "controls/CKnobCtrl.h"
#include "controls/CSelectorCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CSwitchFaderCtrl.h"
#include "controls/CSwitchSelectorCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/SkinNumbers.h"
#include "gallery/CGallery.h"

namespace quib {

namespace {

QString Decibels(float value) {
    return value <= 0 ? QStringLiteral("silent")
                      : QStringLiteral("%1 dB").arg(20 * std::log10(static_cast<double>(value)), 0, 'f', 1);
}

struct Sample {
    const char* caption;
    float value;
    EState state;
};

}  // namespace

void CGallery::BuildFaders() {
    const QPoint at = AddPanel({10, 10, 316, 202}, QStringLiteral("Faders"), ESection::kMix);
    constexpr std::array<Sample, 8> kSamples = {{{"low", 0, EState::kNormal},
                                                 {"normal", 0.45F, EState::kNormal},
                                                 {"hover", 0.7F, EState::kHover},
                                                 {"pressed", 0.8F, EState::kPressed},
                                                 {"full", 1, EState::kNormal},
                                                 {"centre", 0.25F, EState::kNormal},
                                                 {"second", 0.3F, EState::kNormal},
                                                 {"disabled", 0.6F, EState::kDisabled}}};
    int x = at.x();
    for (const Sample& sample : kSamples) {
        auto& fader = Place<CFaderCtrl>(ESection::kMix, x + 4, at.y(), 28, 106, Value(sample.value), true);
        const std::string caption = sample.caption;
        fader.enabled = sample.state != EState::kDisabled;
        fader.defaultValue = 0.5F;
        fader.detentOn = true;
        fader.detentValue = 0.8F;
        fader.fillFromCentre = caption == "centre";
        fader.secondBarOn = caption == "second";
        if (fader.secondBarOn) fader.secondValue = Value(0.4F);
        fader.formatValue = Decibels;
        fader.infoText = QStringLiteral("FADER - Drag it; Shift or Ctrl makes it ten times finer.");
        PoseAs(fader, sample.state);
        Caption(x, at.y() + 108, 37, QString::fromLatin1(sample.caption));
        x += 37;
    }
    constexpr std::array<Sample, 4> kLevel = {{{"", 0.6F, EState::kNormal},
                                               {"", 0.7F, EState::kHover},
                                               {"", 0.3F, EState::kNormal},
                                               {"", 0.3F, EState::kDisabled}}};
    x = at.x() + 2;
    for (std::size_t index = 0; index < kLevel.size(); ++index) {
        auto& fader = Place<CFaderCtrl>(ESection::kMix, x, at.y() + 126, 68, 20, Value(kLevel[index].value), false);
        fader.enabled = kLevel[index].state != EState::kDisabled;
        fader.fillFromCentre = index == 1;
        fader.secondBarOn = index == 2;
        if (fader.secondBarOn) fader.secondValue = Value(0.35F);
        PoseAs(fader, kLevel[index].state);
        x += 75;
    }
    Caption(at.x(), at.y() + 148, 72, QStringLiteral("level"));
    Caption(at.x() + 75, at.y() + 148, 72, QStringLiteral("centre"));
    Caption(at.x() + 150, at.y() + 148, 72, QStringLiteral("second"));
    Caption(at.x() + 225, at.y() + 148, 72, QStringLiteral("disabled"));
}

void CGallery::BuildKnobs() {
    const QPoint at = AddPanel({10, 220, 316, 96}, QStringLiteral("Knobs"), ESection::kEqualiser);
    constexpr std::array<Sample, 7> kSamples = {{{"Low", 0, EState::kNormal},
                                                 {"Normal", 0.6F, EState::kNormal},
                                                 {"Hover", 0.75F, EState::kHover},
                                                 {"Pressed", 0.85F, EState::kPressed},
                                                 {"Left", 0.25F, EState::kNormal},
                                                 {"Centre", 0.5F, EState::kNormal},
                                                 {"Off", 0.4F, EState::kDisabled}}};
    for (std::size_t index = 0; index < kSamples.size(); ++index) {
        const Sample& sample = kSamples[index];
        auto& knob = Place<CKnobCtrl>(ESection::kEqualiser, at.x() + 43 * static_cast<int>(index), at.y() + 2, 38, 52,
                                      Value(sample.value));
        knob.label = QString::fromLatin1(sample.caption);
        knob.enabled = sample.state != EState::kDisabled;
        knob.fillFromCentre = index == 4 || index == 5;
        knob.defaultValue = knob.fillFromCentre ? 0.5F : 0.0F;
        knob.infoText = QStringLiteral("KNOB - Take it at its centre to drag it, further out to turn it.");
        PoseAs(knob, sample.state);
        if (sample.state == EState::kPressed) {
            poses.emplace_back([this, &knob] { ShowBubble(knob, QStringLiteral("4.20 kHz")); });
        }
    }
}

void CGallery::BuildSwitches() {
    const QPoint at = AddPanel({10, 324, 316, 190}, QStringLiteral("Switches"), ESection::kTransport);
    constexpr std::array<Sample, 6> kSamples = {{{"OFF", 0, EState::kNormal},
                                                 {"HOVER", 0, EState::kHover},
                                                 {"DOWN", 0, EState::kPressed},
                                                 {"ON", 1, EState::kNormal},
                                                 {"ON", 1, EState::kHover},
                                                 {"NONE", 0, EState::kDisabled}}};
    for (std::size_t index = 0; index < kSamples.size(); ++index) {
        const Sample& sample = kSamples[index];
        const int x = at.x() + 50 * static_cast<int>(index);
        auto& text = Place<CSwitchCtrl>(ESection::kTransport, x, at.y(), 46, 20, Value(sample.value),
                                        QString::fromLatin1(sample.caption));
        text.enabled = sample.state != EState::kDisabled;
        PoseAs(text, sample.state);
        constexpr std::array<int, 6> kGlyphs = {picture::kGlyphPlay, picture::kGlyphStop,    picture::kGlyphLoop,
                                                picture::kGlyphPlay, picture::kGlyphSynchro, picture::kGlyphRecord};
        auto& glyph =
            Place<CSwitchCtrl>(ESection::kTransport, x, at.y() + 25, 46, 26, Value(sample.value), kGlyphs[index]);
        glyph.enabled = text.enabled;
        PoseAs(glyph, sample.state);
    }
    auto& record = Place<CSwitchCtrl>(ESection::kTransport, at.x(), at.y() + 56, 46, 26, Value(1), 303);
    record.onColour = Palette().Colour(QStringLiteral("record"));
    auto& solo =
        Place<CSwitchCtrl>(ESection::kPattern, at.x() + 50, at.y() + 56, 22, 26, Value(1), QStringLiteral("S"));
    solo.onColour = Palette().Colour(QStringLiteral("pattern"));
    auto& mute = Place<CSwitchCtrl>(ESection::kMix, at.x() + 74, at.y() + 56, 22, 26, Value(1), QStringLiteral("M"));
    mute.onColour = Palette().Colour(QStringLiteral("warning"));
    auto& groups = Place<CSwitchSelectorCtrl>(
        ESection::kMix, at.x() + 104, at.y() + 56, 32, 26, Value(2),
        QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C"), QStringLiteral("D"), {}, {}});
    groups.glyphs = {-1, -1, -1, -1, picture::kGlyphChain, picture::kGlyphRandom};
    PoseMouse(groups, 80, 4);

    const std::array<Sample, 3> sends = {
        {{"Reverb", 1, EState::kNormal}, {"Delay", 0, EState::kHover}, {"no effect", 0, EState::kDisabled}}};
    for (std::size_t index = 0; index < sends.size(); ++index) {
        auto& send = Place<CSwitchFaderCtrl>(ESection::kEffects, at.x() + 100 * static_cast<int>(index), at.y() + 92,
                                             96, 22, Value(sends[index].value), Value(index == 0 ? 80.0F : 35.0F));
        send.SetText(QString::fromLatin1(sends[index].caption));
        send.enabled = sends[index].state != EState::kDisabled;
        PoseAs(send, sends[index].state);
    }
    auto& insert = Place<CSwitchFaderCtrl>(ESection::kEffects, at.x(), at.y() + 122, 146, 22, Value(1), nullptr);
    insert.SetText(QStringLiteral("Compressor (insert)"));
    auto& button =
        Place<CSwitchCtrl>(ESection::kMix, at.x() + 154, at.y() + 122, 68, 22, nullptr, QStringLiteral("Button"));
    button.momentary = true;
    auto& shown =
        Place<CSwitchCtrl>(ESection::kMix, at.x() + 228, at.y() + 122, 68, 22, Value(1), QStringLiteral("Read only"));
    shown.readOnly = true;
}

void CGallery::BuildMeters() {
    const QPoint at = AddPanel({334, 10, 150, 202}, QStringLiteral("Meters"), ESection::kMix);
    // Where the level has been, and where it has fallen to.
    const std::array<std::pair<float, float>, 6> levels = {
        {{0, 0}, {0.05F, 0.02F}, {0.3F, 0.2F}, {0.5F, 0.05F}, {0.95F, 0.7F}, {1.4F, 0.9F}}};
    for (std::size_t index = 0; index < levels.size(); ++index) {
        CValue* const level = Value(levels[index].first);
        meterEnds.emplace_back(level, levels[index].second);
        Place<CVuCtrl>(ESection::kMix, at.x() + 13 * static_cast<int>(index), at.y(), 8, 118, level, nullptr, true);
    }
    CValue* const left = Value(0.6F);
    CValue* const right = Value(1.1F);
    meterEnds.emplace_back(left, 0.4F);
    meterEnds.emplace_back(right, 0.75F);
    Place<CVuCtrl>(ESection::kMix, at.x() + 90, at.y(), 13, 118, left, right, true);
    Place<CVuCtrl>(ESection::kMix, at.x() + 112, at.y(), 17, 118, right, left, true);
    Place<CVuCtrl>(ESection::kMix, at.x(), at.y() + 127, 129, 13, left, right, false);
    Place<CVuCtrl>(ESection::kMix, at.x(), at.y() + 148, 129, 6, left, nullptr, false);
}

void CGallery::BuildScopeAndFilter() {
    const QPoint at = AddPanel({492, 10, 218, 202}, QStringLiteral("Scope and filter"), ESection::kEqualiser);
    Place<CScopeCtrl>(ESection::kMix, at.x(), at.y(), 198, 58, scope);
    for (int filter = 0; filter < 2; ++filter) {
        CFilterCtrl::Bands bands;
        constexpr std::array<std::array<float, 3>, 3> kStates = {
            {{0.22F, 0.5F, 0.45F}, {0.55F, 0.4F, -0.5F}, {0.82F, 0.5F, 0.3F}}};
        for (std::size_t band = 0; band < bands.size(); ++band) {
            bands[band] = {Value(kStates[band][0]), Value(kStates[band][1]), Value(kStates[band][2])};
        }
        auto& control = Place<CFilterCtrl>(ESection::kEqualiser, at.x() + filter * 101, at.y() + 66, 97, 90,
                                           Value(filter == 0 ? 1.0F : 0.0F), bands);
        control.defaults = {{{0.2F, 0.5F, 0}, {0.5F, 0.5F, 0}, {0.8F, 0.5F, 0}}};
        if (filter == 0) PoseMouse(control, 52, 66);
    }
}

void CGallery::BuildArpeggiator() {
    AddPanel({692, 324, 278, 190}, QStringLiteral("Arpeggiator"), ESection::kKeyboard);
    ArpeggiatorValues arpeggiator;
    arpeggiator.on = Value(1);
    arpeggiator.mode = Value(2);
    arpeggiator.hole = Value(0);
    arpeggiator.ext = Value(2);
    arpeggiator.extMode = Value(1);
    arpeggiator.velocity = Value(1);
    arpeggiator.interval = Value(12);
    arpeggiator.gateTime = Value(1);
    arpeggiator.tempo = Value(1);
    Place<CArpeggiatorCtrl>(ESection::kKeyboard, 696, 356, arpeggiator);
}

}  // namespace quib
