// SPDX-License-Identifier: GPL-3.0-or-later
// Patterns, equaliser and effects of an instrument's strip.
#include <QInputDialog>
#include <QMenu>
#include <tuple>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/SlotMenu.h"
#include "controls/CFaderCtrl.h"
#include "controls/CFilterCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CStepLedCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CSwitchFaderCtrl.h"
#include "controls/CSwitchSelectorCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kTitledPresets = 126;  // pixels from which their word stands before them
constexpr float kTouch = 0.01F;      // steps by which a note that only touches a step does not reach into it
}  // namespace

void CInstrumentStripCtrl::AddPatterns(int left, int pitch) {
    const int room = 16 * pitch - 2;
    constexpr int kButtons = 6 * 26;
    const int channelWidth = std::clamp(room * 92 / 446, 70, 110);
    const int pluginWidth = room - kButtons - channelWidth - 22;
    AddPlugin(left, pluginWidth);
    int place = left + pluginWidth + 4;
    const auto add = [&](int glyph, int info, bool usable, std::function<void()> action) {
        AddButton({place, 6, 24, 24}, glyph, info, usable, std::move(action));
        place += 26;
    };
    const std::uint32_t id = instrument->Id();
    add(picture::kGlyphEdit, 462, true, [this, id] {
        if (context.actions.openPlugin) context.actions.openPlugin({SlotPlace::EKind::kInstrument, id, 0});
    });
    for (const auto& [glyph, info, tool] : {std::tuple{picture::kGlyphPianoRoll, 442, ETool::kPianoRoll},
                                            {picture::kGlyphAutomation, 443, ETool::kAutomation},
                                            {picture::kGlyphBall, 445, ETool::kBall}}) {
        add(glyph, info, HasTool(tool), [this, tool = tool] { OpenTool(tool); });
    }
    AddArpeggiatorAndKeyboard(place);
    AddLamp(place + 53, 12);
    AddChannel(left + room - channelWidth, channelWidth);
    AddCells(left, 34, pitch, 28);
    leds = &AddChild<CStepLedCtrl>(0U, left, 66, 16 * pitch, 32, Ground());
    leds->section = ESection::kPattern;
    leds->infoString = 480;
    leds->playingStep = [this] { return playingStep; };
    leds->loudness = [this](int step) { return LoudnessOf(step); };
    leds->holds = [this](int step) {
        return static_cast<std::size_t>(step) < heldSteps.size() && heldSteps[static_cast<std::size_t>(step)];
    };
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
}

void CInstrumentStripCtrl::AddCells(int left, int top, int pitch, int high) {
    cells = &AddChild<CPatternSelCtrl>(0U, left, top, pitch, high, 0, this);
    cells->infoString = 127;
    cells->learns = ControlTarget{EControlTarget::kPattern, instrument->Id(), 0};
}

// Steps that a note reaches into which began before them.
void CInstrumentStripCtrl::FindHeldSteps() {
    const auto count = static_cast<std::size_t>(shownPattern->LoopLength());
    heldSteps.assign(count, false);
    for (const Note& note : shownPattern->Notes()) {
        const int first = StepOfPosition(note.position) + 1;
        const float end = note.position + note.length;
        for (int step = std::max(first, 0); step < static_cast<int>(count) && static_cast<float>(step) < end - kTouch;
             ++step) {
            heldSteps[static_cast<std::size_t>(step)] = true;
        }
    }
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
    steps = &AddChild<CLabelMenuCtrl>(0U, left, 6, 100, 24, QString(), [this](QMenu& menu) { FillSteps(menu); });
    steps->infoString = 481;
    steps->section = ESection::kPattern;
    steps->fontHeight = 12;
    modes = &AddChild<CSwitchSelectorCtrl>(0U, left, 34, 34, 28, &modeShown,
                                           QStringList{QStringLiteral("C"), QStringLiteral("R"), QStringLiteral("H")});
    modes->glyphs = {picture::kGlyphChain, picture::kGlyphRandom, picture::kGlyphHold};
    modes->gap = 2;
    modes->section = ESection::kPattern;
    modes->spokenNames = {Text("Chain"), Text("Random"), Text("Hold")};
    modes->infoString = 482;
    modes->onChange = [this](CControl& changed) {
        context.station.Contents().SetStepNumberMode(
            Index(), static_cast<EStepNumberMode>(static_cast<int>(changed.ValueNow())));
    };
    auto& label = AddChild<CLabelCtrl>(0U, left, 64, 60, 16, Text("Swing"));
    label.textColour = Palette().Colour(QStringLiteral("textDim"));
    label.fontHeight = 11;
    auto& swing = AddChild<CFaderCtrl>(0U, left - 2, 82, 104, 16, &instrument->swing, false);
    swing.section = ESection::kPattern;
    swing.defaultValue = 0.0F;
    BindValue(swing, context, "Swing", 483);
    ShowPercent(swing);
    auto& figure = AddChild<CLabelCtrl>(0U, left + 60, 64, 40, 16);
    figure.Bind(&instrument->swing);
    figure.formatValue = swing.formatValue;
    figure.fontHeight = 12;
    figure.alignment = Qt::AlignRight | Qt::AlignVCenter;
    figure.infoString = 483;
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
    CFilterCtrl::Bands bands;
    for (std::size_t band = 0; band < bands.size(); ++band) {
        bands[band] = {&strip.eqFreq[band], &strip.eqQ[band], &strip.eqGain[band]};
    }
    const auto target = [this](CValue& setting) {
        return context.station.Controllers().TargetOf(instrument, &setting);
    };
    filter = &AddChild<CFilterCtrl>(0U, left, 6, room, 92, &strip.eqOn, bands);
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
    // In the corner of the curve.
    auto& on = filter->AddChild<CSwitchCtrl>(0U, 4, 4, 30, 20, &strip.eqOn, QStringLiteral("EQ"));
    on.section = ESection::kEqualiser;
    on.backgroundColour = Palette().Colour(QStringLiteral("glass"));
    BindSetting(on, context, strip, 484);
}

void CInstrumentStripCtrl::AddSends(int left, int room) {
    for (int place = 0; place < kSendCount; ++place) {
        const auto index = static_cast<std::size_t>(place);
        ChannelStrip& strip = instrument->strip;
        auto& send = AddChild<CSwitchFaderCtrl>(0U, left, 6 + 24 * place, room, 20, &strip.sendOn[index],
                                                &strip.sendLevel[index]);
        send.section = ESection::kEffects;
        BindSetting(send, context, strip, 487);
        BindLevel(send, context, strip);
        ShowLevelDecibels(send, [this](float shown) { return context.tables.SendGain(shown); });
        send.disabledInfo = 513;
        const SlotPlace slot{SlotPlace::EKind::kEffect, instrument->Id(), place};
        send.onAlternativeClick = [this, slot](CControl&) { OpenSlot(context, slot, Owner()); };
        send.onEmptyClick = send.onAlternativeClick;
        sends[index] = &send;
    }
}

void CInstrumentStripCtrl::AddInserts(int left, int room) {
    insertsRoom = room;
    const bool titled = room >= kTitledPresets;
    if (titled) {
        auto& label = AddChild<CLabelCtrl>(0U, left, 6, 54, 24, Text("Presets"));
        label.textColour = Palette().Colour(QStringLiteral("textDim"));
        label.fontHeight = 11;
    }
    AddPresets(left + (titled ? 54 : 0), 6, room - (titled ? 54 : 0));
    for (int place = 0; place < kInsertCount; ++place) {
        const auto index = static_cast<std::size_t>(place);
        const SlotPlace slot{SlotPlace::EKind::kInsert, instrument->Id(), place};
        const int top = 34 + 34 * place;
        auto& insert = AddChild<CSwitchFaderCtrl>(0U, left, top, room, 30, &instrument->strip.insertOn[index], nullptr);
        insert.section = ESection::kEffects;
        BindSetting(insert, context, instrument->strip, 486);
        insert.struckWhileOff = true;
        insert.disabledInfo = 514;
        insert.onAlternativeClick = [this, slot](CControl&) { OpenSlot(context, slot, Owner()); };
        insert.onEmptyClick = insert.onAlternativeClick;
        inserts[index] = &insert;
        auto& edit = AddChild<CSwitchCtrl>(0U, left + room - kInsertEdit + 2, top, kInsertEdit - 2, 30, nullptr,
                                           picture::kGlyphEdit);
        edit.momentary = true;
        edit.flat = true;
        insertEdits[index] = &edit;
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
