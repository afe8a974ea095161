// SPDX-License-Identifier: GPL-3.0-or-later
#include <QMenu>
#include <array>
#include <cmath>

#include "app/console/CMasterPanels.h"
#include "app/console/CSongModeCtrl.h"
#include "app/learn/LearnMenu.h"
#include "controls/CFaderCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {

// What keys played may be moved to; parts of a whole note, 0: they stay where they are.
constexpr std::array kInputGrids = {0, 4, 8, 16, 32};

void FillRecordMenu(QMenu& menu, CWorkstation& station) {
    CNoteRecording& recording = station.NoteRecording();
    const NoteTakeOptions now = recording.Options();
    const auto add = [&recording](QMenu& list, const QString& text, bool chosen, const NoteTakeOptions& next) {
        QAction* const action = list.addAction(text, [&recording, next] { recording.SetOptions(next); });
        action->setCheckable(true);
        action->setChecked(chosen);
    };
    add(menu, Text("Overdub"), !now.replace, {false, now.grid, now.strength});
    add(menu, Text("Replace"), now.replace, {true, now.grid, now.strength});
    menu.addSection(Text("Quantise input"));
    const EngineSettings& engine = station.Audio().settings;
    const double whole = static_cast<double>(engine.stepsPerBeat.Get()) * engine.beatUnit.Get();
    for (const int part : kInputGrids) {
        const double grid = part > 0 ? whole / part : 0;
        add(menu, part > 0 ? QStringLiteral("1/%1").arg(part) : Text("Off"), std::abs(now.grid - grid) < 0.005,
            {now.replace, grid, now.strength});
    }
    QMenu* const strengths = menu.addMenu(Text("Strength"));
    for (const int percent : {50, 75, 90, 100}) {
        const float share = static_cast<float>(percent) / 100;
        add(*strengths, QStringLiteral("%1 %").arg(percent), std::abs(now.strength - share) < 0.005F,
            {now.replace, now.grid, share});
    }
}

ControlTarget KeyTarget(ETransportKey key) { return {EControlTarget::kTransport, 0, static_cast<std::int32_t>(key)}; }

void FillAutomationMenu(QMenu& menu, CWorkstation& station) {
    CAutomationRecording& recording = station.AutomationRecording();
    menu.addSection(Text("Recording automation"));
    for (const bool replaces : {false, true}) {
        QAction* const action = menu.addAction(replaces ? Text("Replace to the end") : Text("Only while it is moved"),
                                               [&recording, replaces] { recording.SetReplaces(replaces); });
        action->setCheckable(true);
        action->setChecked(recording.Replaces() == replaces);
    }
    menu.addSeparator();
    AddLearnItems(menu, station.Controllers(), KeyTarget(ETransportKey::kRecordAutomation));
}

void FillMetronomeMenu(QMenu& menu, CWorkstation& station) {
    CMetronomeControl& metronome = station.Metronome();
    const auto add = [&menu](const QString& text, bool chosen, auto choose) {
        QAction* const action = menu.addAction(text, choose);
        action->setCheckable(true);
        action->setChecked(chosen);
    };
    menu.addSection(Text("Level of the click"));
    for (const int decibels : {0, -6, -12, -18, -24}) {
        add(QStringLiteral("%1 dB").arg(decibels), metronome.Level() == decibels,
            [&metronome, decibels] { metronome.SetLevel(decibels); });
    }
    menu.addSection(Text("Count-in"));
    for (int bars = 0; bars <= CMetronomeControl::kMostBars; ++bars) {
        add(CountInText(bars), metronome.CountIn() == bars, [&metronome, bars] { metronome.SetCountIn(bars); });
    }
}

}  // namespace

void CPanelCtrl::Draw() {
    Canvas().Fill(Rectangle(), backgroundColour);
    Canvas().FillRound(QRectF(Rectangle()).adjusted(0.5, 0.5, -0.5, -0.5), 5,
                       Palette().Colour(QStringLiteral("panel")));
    Canvas().Frame(QRectF(Rectangle()).adjusted(0.5, 0.5, -0.5, -0.5), 5, Palette().Colour(QStringLiteral("line")));
}

void CPanelCtrl::PaintChildren() {
    for (const auto& child : Children()) child->backgroundColour = Palette().Colour(QStringLiteral("panel"));
}

CTransportPanel::CTransportPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                                 const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, left, top, kWidth, newHeight), CTicked(window), context(consoleContext) {
    AddSwitches();
    AddMetronome();
    AddTempo();
    AddDisplays();
    AddTools();
    for (const auto& child : Children()) child->section = ESection::kTransport;
    PaintChildren();
}

void CTransportPanel::AddSwitches() {
    CWorkstation& station = context.station;
    EngineSettings& settings = station.Audio().settings;
    play = &AddChild<CSwitchCtrl>(0U, 8, 8, 39, 34, &playShown, picture::kGlyphPlay);
    play->infoString = 430;
    play->learns = KeyTarget(ETransportKey::kPlay);
    play->onChange = [this, &station](CControl&) {
        playShown.IsOn() ? station.Transport().Play() : station.Transport().Stop();
    };
    auto& stop = AddChild<CSwitchCtrl>(0U, 50, 8, 24, 34, nullptr, picture::kGlyphStop);
    stop.momentary = true;
    stop.infoString = 431;
    stop.learns = KeyTarget(ETransportKey::kStop);
    stop.onChange = [&station](CControl&) {
        if (!station.Transport().IsPlaying()) station.Transport().Locate(0);
        station.Transport().Stop();
    };
    auto& notes = AddChild<CSwitchCtrl>(0U, 77, 8, 24, 34, &station.NoteRecording().Armed(), picture::kGlyphRecord);
    notes.infoString = 428;
    notes.learns = KeyTarget(ETransportKey::kRecordNotes);
    notes.onChange = [&station](CControl&) { station.NoteRecording().ArmSwitched(); };
    notes.onAlternativeClick = [this, &station](CControl&) {
        PopUpMenu(Owner(), [&station](QMenu& menu) {
            FillRecordMenu(menu, station);
            menu.addSeparator();
            AddLearnItems(menu, station.Controllers(), KeyTarget(ETransportKey::kRecordNotes));
        });
    };
    auto& automation =
        AddChild<CSwitchCtrl>(0U, 104, 8, 24, 34, &station.Audio().recordAutomation, QStringLiteral("A\u25CF"));
    automation.infoString = 432;
    automation.onAlternativeClick = [this, &station](CControl&) {
        PopUpMenu(Owner(), [&station](QMenu& menu) { FillAutomationMenu(menu, station); });
    };
    automation.learns = KeyTarget(ETransportKey::kRecordAutomation);
    for (CSwitchCtrl* const arm : {&notes, &automation}) arm->onColour = Palette().Colour(QStringLiteral("record"));
    struct Plan {
        int glyph;
        CValue* value;
        const char* name;
        int infoString;
    };
    AddChild<CSongModeCtrl>(0U, 134, 8, 34, station);
    int place = 134 + CSongModeCtrl::kWidth + 4;
    for (const Plan& plan : {Plan{picture::kGlyphLoop, &settings.loopOn, TextKey("Loop"), 434},
                             Plan{picture::kGlyphSynchro, &settings.synchroOn, TextKey("Synchro"), 435}}) {
        auto& button = AddChild<CSwitchCtrl>(0U, place, 8, 31, 34, plan.value, plan.glyph);
        BindValue(button, context, plan.name, plan.infoString);
        place += 33;
    }
}

// Below the arm of the notes.
void CTransportPanel::AddMetronome() {
    CWorkstation& station = context.station;
    CMetronomeControl& metronome = station.Metronome();
    auto& click = AddChild<CSwitchCtrl>(0U, 94, 48, 34, 17, &metronome.On(), picture::kGlyphMetronome);
    click.infoString = 510;
    click.learns = KeyTarget(ETransportKey::kMetronome);
    click.onChange = [&metronome](CControl&) { metronome.Keep(); };
    countIn = &AddChild<CSwitchCtrl>(0U, 94, 67, 34, 17, &countInShown, QString());
    countIn->infoString = 479;
    countIn->onChange = [this, &metronome](CControl&) {
        metronome.SetCountIn((metronome.CountIn() + 1) % (CMetronomeControl::kMostBars + 1));
        ShowCountIn();
    };
    for (CSwitchCtrl* const button : {&click, countIn}) {
        button->onAlternativeClick = [this, &station](CControl&) {
            PopUpMenu(Owner(), [&station](QMenu& menu) {
                FillMetronomeMenu(menu, station);
                menu.addSeparator();
                AddLearnItems(menu, station.Controllers(), KeyTarget(ETransportKey::kMetronome));
            });
        };
    }
    ShowCountIn();
}

void CTransportPanel::ShowCountIn() {
    const int bars = context.station.Metronome().CountIn();
    const QString label = Text("IN %1").arg(bars);
    const float on = bars > 0 ? 1.0F : 0.0F;
    if (countIn->label == label && countInShown.Get() == on) return;
    countIn->label = label;
    countIn->SetValueAndUpdate(false, true, on);
}

void CTransportPanel::AddTempo() {
    CWorkstation& station = context.station;
    CValue& tempo = station.Audio().settings.tempo;
    auto& label = AddChild<CLiveLabelCtrl>(
        0U, 134, 48, 100, 18, [&tempo] { return QString::number(static_cast<double>(tempo.Get()), 'f', 1); });
    label.fontHeight = 16;
    label.strong = true;
    auto& tap = AddChild<CSwitchCtrl>(0U, 280, 47, 38, 20, nullptr, QStringLiteral("TAP"));
    tap.momentary = true;
    tap.infoString = 437;
    tap.learns = KeyTarget(ETransportKey::kTapTempo);
    tap.onChange = [&station](CControl&) { station.Transport().TapTempo(); };
    auto& fader = AddChild<CFaderCtrl>(0U, 132, 69, 187, 16, &tempo, false);
    fader.minimum = 20;
    fader.maximum = 300;
    fader.defaultValue = 120.0F;
    BindValue(fader, context, "Tempo", 436);
    fader.entryTitle = Text("Tempo");
    fader.formatValue = [](float shown) { return QStringLiteral("%1 bpm").arg(static_cast<double>(shown), 0, 'f', 1); };
}

void CTransportPanel::AddDisplays() {
    CWorkstation& station = context.station;
    CAudio& audio = station.Audio();
    auto& position = AddChild<CLiveLabelCtrl>(0U, 8, 48, 82, 36, [&audio] {
        const PlayPicture& picture = audio.Picture();
        if (picture.beatsToStart > 0) return QStringLiteral("-%1").arg(picture.beatsToStart);
        const int step = picture.playing && picture.soundingStep >= 0 ? picture.soundingStep : picture.globalStep;
        return BarBeatStep(step, audio.settings.stepsPerBeat.Get(), audio.settings.beatsPerBar.Get());
    });
    position.fontHeight = 20;
    position.strong = true;
    position.sunken = true;
    position.alignment = Qt::AlignCenter;
    position.textColour = Palette().Accent(ESection::kTransport);
    position.infoString = 438;
    auto& load = AddChild<CLiveLabelCtrl>(
        0U, 8, 90, 72, 14, [&audio] { return QStringLiteral("CPU %1 %").arg(std::lround(audio.CpuLoad())); });
    load.infoString = 439;
    auto& xruns = AddChild<CLiveLabelCtrl>(
        0U, 80, 90, 60, 14, [&station] { return QStringLiteral("Xruns %1").arg(station.Output().Xruns()); });
    xruns.infoString = 440;
    auto& device = AddChild<CLiveLabelCtrl>(0U, 140, 90, 178, 14, [&station, &audio] {
        const COutputDevice* const output = station.Output().Device();
        if (output == nullptr) return Text("No device");
        return QStringLiteral("%1 %2 k")
            .arg(QString::fromStdString(output->Name()))
            .arg(audio.Format().sampleRate / 1000);
    });
    device.infoString = 441;
    device.alignment = Qt::AlignRight | Qt::AlignVCenter;
    for (CLabelCtrl* const label :
         {static_cast<CLabelCtrl*>(&load), static_cast<CLabelCtrl*>(&xruns), static_cast<CLabelCtrl*>(&device)}) {
        label->textColour = Palette().Colour(QStringLiteral("textMuted"));
    }
}

void CTransportPanel::AddTools() {
    struct Plan {
        int glyph;
        ETool tool;
        int infoString;
    };
    int place = 8;
    for (const Plan& plan :
         {Plan{picture::kGlyphPianoRoll, ETool::kPianoRoll, 442},
          Plan{picture::kGlyphAutomation, ETool::kAutomation, 443},
          Plan{picture::kGlyphArpeggiator, ETool::kArpeggiator, 444}, Plan{picture::kGlyphBall, ETool::kBall, 445},
          Plan{picture::kGlyphPlaylist, ETool::kPlaylist, 446}, Plan{picture::kGlyphHelp, ETool::kTutorial, 447}}) {
        auto& button = AddChild<CSwitchCtrl>(0U, place, 110, 35, 24, nullptr, plan.glyph);
        button.momentary = true;
        button.infoString = plan.infoString;
        button.enabled = context.actions.hasTool && context.actions.hasTool(plan.tool);
        button.onChange = [this, tool = plan.tool](CControl&) {
            if (context.actions.openTool) context.actions.openTool(tool);
        };
        place += 38;
    }
}

void CTransportPanel::Tick() {
    ShowCountIn();
    const float playing = context.station.Transport().IsPlaying() ? 1.0F : 0.0F;
    if (playing != playShown.Get()) play->SetValueAndUpdate(false, true, playing);
}

}  // namespace quib
