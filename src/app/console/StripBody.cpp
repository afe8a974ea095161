// SPDX-License-Identifier: GPL-3.0-or-later
// Mixer, patterns, equaliser and effects of an instrument's strip.
#include <QInputDialog>
#include <QMenu>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/SlotMenu.h"
#include "controls/CFaderCtrl.h"
#include "controls/CFilterCtrl.h"
#include "controls/CKnobCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CStepLedCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CSwitchFaderCtrl.h"
#include "controls/CSwitchSelectorCtrl.h"
#include "controls/CVuCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

void CInstrumentStripCtrl::AddMixer() {
    ChannelStrip& strip = instrument->strip;
    const auto addSwitch = [this](int place, const char* text, CValue& bound, int info) {
        auto& made = AddChild<CSwitchCtrl>(0U, place, 32, 22, 20, &bound, QString::fromLatin1(text));
        BindSetting(made, context, instrument->strip, info);
        return &made;
    };
    addSwitch(70, "A", strip.crossfadeA, 474);
    addSwitch(94, "B", strip.crossfadeB, 475);
    auto& synchro = AddChild<CSwitchCtrl>(0U, 122, 32, 26, 20, &strip.synchro, picture::kGlyphSynchro);
    synchro.section = ESection::kTransport;
    BindSetting(synchro, context, strip, 476);
    auto& pan = AddChild<CKnobCtrl>(0U, 160, 34, 40, 50, &strip.pan);
    BindSetting(pan, context, strip, 473);
    pan.label = pan.name;
    pan.fillFromCentre = true;
    ShowPan(pan);
    auto& level = AddChild<CFaderCtrl>(0U, 10, 57, 144, 20, &strip.level, false);
    BindSetting(level, context, strip, 470);
    ShowDecibels(level, [this](float shown) { return tables.ChannelGain(shown); });
    auto& meter = AddChild<CVuCtrl>(0U, 12, 82, 140, 8, &strip.peak, nullptr, false);
    meter.infoString = 477;
}

void CInstrumentStripCtrl::AddPatterns(int left, int cellWidth) {
    cells = &AddChild<CPatternSelCtrl>(0U, left, 31, cellWidth, 26, 0, this);
    cells->infoString = 127;
    cells->learns = ControlTarget{EControlTarget::kPattern, instrument->Id(), 0};
    leds = &AddChild<CStepLedCtrl>(0U, left, 59, 16 * cellWidth - 1, 13, Ground());
    leds->section = ESection::kPattern;
    leds->infoString = 480;
    leds->playingStep = [this] { return playingStep; };
    leds->loudness = [this](int step) { return LoudnessOf(step); };
    leds->onRestart = [this](int step) {
        context.station.Audio().Post({EngineCommand::EKind::kStartPattern, instrument->Id(), step});
    };
    leds->onPress = [this](int step) { stepGestures.Press(ShownPattern(), step); };
    leds->onDrag = [this](int step, int up) { stepGestures.Drag(step, up); };
    leds->onRelease = [this] { stepGestures.Release(); };
    leds->onCancel = [this] { stepGestures.Cancel(); };
    leds->onAlternativeClick = [this](CControl&) {
        PopUpMenu(Owner(), [this](QMenu& menu) { FillStepMenu(menu, leds->HoveredStep()); });
    };
    AddStepControls(left);
}

int CInstrumentStripCtrl::LoudnessOf(int step) const {
    int loudest = -1;
    if (!shownPattern) return loudest;
    for (const std::uint32_t note : shownPattern->NotesOfStep(step)) {
        loudest = std::max(loudest, shownPattern->Notes()[note].velocity);
    }
    return std::min(loudest, 127);
}

void CInstrumentStripCtrl::FillStepMenu(QMenu& menu, int step) {
    const int pattern = ShownPattern();
    const auto notes = shownPattern ? shownPattern->NotesOfStep(step) : std::span<const std::uint32_t>();
    menu.addSection(Text("Step %1").arg(step + 1));
    if (!notes.empty()) {
        const Note first = shownPattern->Notes()[notes.front()];
        const auto ask = [this](const char* text, double now, double least, double most, int decimals, auto set) {
            bool accepted = false;
            const double typed =
                QInputDialog::getDouble(&Owner(), Text(text), Text(text), now, least, most, decimals, &accepted);
            if (accepted) set(typed);
        };
        menu.addAction(Text("Velocity ..."), [this, pattern, step, first, ask] {
            ask("Velocity", first.velocity, 0, 127, 0,
                [&](double wanted) { stepGestures.SetVelocity(pattern, step, static_cast<int>(wanted)); });
        });
        menu.addAction(Text("Length ..."), [this, pattern, step, first, ask] {
            ask("Length (steps)", static_cast<double>(first.length), 0.0625, 4096, 4,
                [&](double wanted) { stepGestures.SetLength(pattern, step, static_cast<float>(wanted)); });
        });
        menu.addAction(Text("Clear step"), [this, pattern, step] { stepGestures.Clear(pattern, step); });
    }
    if (!context.actions.hasTool || !context.actions.hasTool(ETool::kPianoRoll)) return;
    menu.addAction(Text("Open in the piano roll"), [this] {
        context.station.Selection().SetCurrent(Index());
        context.actions.openTool(ETool::kPianoRoll);
    });
}

void CInstrumentStripCtrl::AddStepControls(int left) {
    steps = &AddChild<CLabelMenuCtrl>(0U, left, 74, 84, 20, QString(), [this](QMenu& menu) { FillSteps(menu); });
    steps->infoString = 481;
    steps->section = ESection::kPattern;
    modes = &AddChild<CSwitchSelectorCtrl>(0U, left + 90, 74, 28, 20, &modeShown,
                                           QStringList{QStringLiteral("C"), QStringLiteral("R"), QStringLiteral("H")});
    modes->glyphs = {picture::kGlyphChain, picture::kGlyphRandom, picture::kGlyphHold};
    modes->section = ESection::kPattern;
    modes->spokenNames = {Text("Chain"), Text("Random"), Text("Hold")};
    modes->infoString = 482;
    modes->onChange = [this](CControl& changed) {
        context.station.Contents().SetStepNumberMode(
            Index(), static_cast<EStepNumberMode>(static_cast<int>(changed.ValueNow())));
    };
    auto& label = AddChild<CLabelCtrl>(0U, left + 182, 74, 36, 20, Text("Swing"));
    label.textColour = Palette().Colour(QStringLiteral("textMuted"));
    auto& swing = AddChild<CFaderCtrl>(0U, left + 220, 74, 98, 20, &instrument->swing, false);
    swing.section = ESection::kPattern;
    swing.defaultValue = 0.0F;
    BindValue(swing, context, "Swing", 483);
    ShowPercent(swing);
}

void CInstrumentStripCtrl::FillSteps(QMenu& menu) {
    for (const int count : {4, 8, 12, 16, 24, 32, 48, 64, 96, 128}) {
        QAction* const action = menu.addAction(Text("%1 steps").arg(count), [this, count] { SetSteps(count); });
        action->setCheckable(true);
        action->setChecked(shownPattern && shownPattern->LoopLength() == count);
    }
    menu.addAction(Text("Other number ..."), [this] {
        bool accepted = false;
        const int now = shownPattern ? shownPattern->LoopLength() : kDefaultStepCount;
        const int count =
            QInputDialog::getInt(&Owner(), Text("Number of steps"), Text("Steps"), now, 1, 4096, 1, &accepted);
        if (accepted) SetSteps(count);
    });
}

void CInstrumentStripCtrl::AddEqualizer(int left, int room) {
    ChannelStrip& strip = instrument->strip;
    auto& on = AddChild<CSwitchCtrl>(0U, left, 31, 28, 20, &strip.eqOn, QStringLiteral("EQ"));
    on.section = ESection::kEqualiser;
    BindSetting(on, context, strip, 484);
    CFilterCtrl::Bands bands;
    for (std::size_t band = 0; band < bands.size(); ++band) {
        bands[band] = {&strip.eqFreq[band], &strip.eqQ[band], &strip.eqGain[band]};
    }
    const auto target = [this](CValue& setting) {
        return context.station.Controllers().TargetOf(instrument, &setting);
    };
    filter = &AddChild<CFilterCtrl>(0U, left + 33, 31, room - 43, 63, &strip.eqOn, bands);
    filter->infoString = 485;
    for (std::size_t band = 0; band < bands.size(); ++band)
        filter->bandLearns[band] = {target(strip.eqFreq[band]), target(strip.eqQ[band]), target(strip.eqGain[band])};
    constexpr StripValues initial = InitialStripValues();
    for (std::size_t band = 0; band < bands.size(); ++band)
        filter->defaults[band] = {initial.eqFreq[band], initial.eqQ[band], initial.eqGain[band]};
    filter->sampleRate = [&station = context.station] { return station.Audio().Format().sampleRate; };
    filter->onBandChange = [this](int band) { context.station.Stack().FollowEqualizer(instrument, band); };
    filter->onBandGesture = [this](int band, const CFilterCtrl::BandState& before) {
        context.station.Stack().EqualizerEdited(instrument, band, {before.frequency, before.resonance, before.gain});
    };
}

void CInstrumentStripCtrl::AddEffects(int left, int room) {
    const int half = room / 2 - 3;
    AddInserts(left, half);
    const int column = left + half + 6;
    for (int place = 0; place < kSendCount; ++place) {
        const auto index = static_cast<std::size_t>(place);
        ChannelStrip& strip = instrument->strip;
        auto& send = AddChild<CSwitchFaderCtrl>(0U, column, 31 + 16 * place, half, 15, &strip.sendOn[index],
                                                &strip.sendLevel[index]);
        send.section = ESection::kEffects;
        BindSetting(send, context, strip, 487);
        BindLevel(send, context, strip);
        ShowLevelDecibels(send, [this](float shown) { return tables.SendGain(shown); });
        send.disabledInfo = 513;
        const SlotPlace slot{SlotPlace::EKind::kEffect, instrument->Id(), place};
        send.onAlternativeClick = [this, slot](CControl&) { OpenSlot(context, slot, Owner()); };
        send.onEmptyClick = send.onAlternativeClick;
        sends[index] = &send;
    }
}

void CInstrumentStripCtrl::AddInserts(int left, int room) {
    for (int place = 0; place < kInsertCount; ++place) {
        const auto index = static_cast<std::size_t>(place);
        const SlotPlace slot{SlotPlace::EKind::kInsert, instrument->Id(), place};
        auto& insert = AddChild<CSwitchFaderCtrl>(0U, left, 31 + 21 * place, room - 26, 19,
                                                  &instrument->strip.insertOn[index], nullptr);
        insert.section = ESection::kEffects;
        BindSetting(insert, context, instrument->strip, 486);
        insert.struckWhileOff = true;
        insert.disabledInfo = 514;
        insert.onAlternativeClick = [this, slot](CControl&) { OpenSlot(context, slot, Owner()); };
        insert.onEmptyClick = insert.onAlternativeClick;
        inserts[index] = &insert;
        auto& edit = AddChild<CSwitchCtrl>(0U, left + room - 23, 31 + 21 * place, 23, 19, nullptr, picture::kGlyphEdit);
        edit.momentary = true;
        edit.section = ESection::kEffects;
        edit.infoString = 451;
        edit.onChange = [this, slot](CControl&) {
            const auto held = context.station.Places().Slot(slot);
            if (held && held->plugin && context.actions.openPlugin) return context.actions.openPlugin(slot);
            OpenSlot(context, slot, Owner());
        };
    }
}

}  // namespace quib
