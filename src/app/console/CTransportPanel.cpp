// SPDX-License-Identifier: GPL-3.0-or-later
#include <QMenu>
#include <array>
#include <cmath>

#include "app/console/BarControls.h"
#include "app/console/CMasterPanels.h"
#include "app/console/CSongModeCtrl.h"
#include "app/learn/LearnMenu.h"
#include "app/start/CDeviceBanner.h"
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
    Canvas().Box(QRectF(Rectangle()), 4, Palette().Colour(QStringLiteral("panel")),
                 Palette().Colour(QStringLiteral("line")));
}

void CPanelCtrl::Resize(int newWidth, int newHeight) {
    if (newWidth == Width() && newHeight == Height()) return;
    SetSize(newWidth, newHeight);
    Build();
}

void CPanelCtrl::PaintChildren() {
    for (const auto& child : Children()) child->backgroundColour = Palette().Colour(QStringLiteral("panel"));
}

CLabelCtrl& CPanelCtrl::AddDimLabel(int left, int top, int newWidth, int newHeight, const QString& text) {
    auto& label = AddChild<CLabelCtrl>(0U, left, top, newWidth, newHeight, text);
    label.fontHeight = 11;
    label.textColour = Palette().Colour(QStringLiteral("textDim"));
    return label;
}

namespace {
constexpr int kTop = 6;  // of the buttons
constexpr int kHigh = 40;
constexpr int kGap = 4;
constexpr int kGroupGap = 10;
constexpr int kSymbolWidth = 36;  // of a button without its word
}  // namespace

CTransportPanel::CTransportPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext)
    : CPanelCtrl(window, number, consoleLayout::kMargin, consoleLayout::kBar1Top, 0, consoleLayout::kBar1Height),
      CTicked(window),
      context(consoleContext) {}

int CTransportPanel::WordWidth(const QString& text) const {
    if (IsNarrow()) return kSymbolWidth;
    return std::max(46, static_cast<int>(std::ceil(CCanvas::TextWidth(text, 10, true))) + 8);
}

void CTransportPanel::Build() {
    ClearChildren();
    shownBars = -1;
    int left = AddPlay(6);
    left = AddModes(left);
    left = AddArms(left);
    left = AddMetronome(left);
    left = AddTempo(left);
    AddChild<CRecorderCtrl>(0U, left, kTop, std::max(kSymbolWidth, Width() - 6 - left), kHigh, context, recordPath);
    for (const auto& child : Children()) child->section = ESection::kTransport;
    PaintChildren();
}

int CTransportPanel::AddPlay(int left) {
    CWorkstation& station = context.station;
    const int wide = IsNarrow() ? 48 : 76;
    play = &AddChild<CSwitchCtrl>(0U, left, kTop, wide, kHigh, &playShown, picture::kGlyphPlay);
    play->infoString = 430;
    play->learns = KeyTarget(ETransportKey::kPlay);
    play->onChange = [this, &station](CControl&) {
        if (playShown.IsOn() == station.Transport().IsPlaying()) return;
        PlayOrStop(station);
    };
    const int stopWidth = IsNarrow() ? 32 : 44;
    auto& stop = AddChild<CSwitchCtrl>(0U, left + wide + kGap, kTop, stopWidth, kHigh, nullptr, picture::kGlyphStop);
    stop.momentary = true;
    stop.infoString = 431;
    stop.learns = KeyTarget(ETransportKey::kStop);
    stop.onChange = [&station](CControl&) {
        if (!station.Transport().IsPlaying()) station.Transport().Locate(0);
        station.Transport().Stop();
    };
    return left + wide + kGap + stopWidth + kGroupGap;
}

int CTransportPanel::AddModes(int left) {
    CWorkstation& station = context.station;
    EngineSettings& settings = station.Audio().settings;
    const auto& mode = AddChild<CSongModeCtrl>(0U, left, kTop, kHigh, context.station, !IsNarrow());
    left += mode.Width() + kGroupGap;
    struct Plan {
        int glyph;
        CValue* value;
        const char* name;
        const char* word;
        int infoString;
    };
    for (const Plan& plan :
         {Plan{picture::kGlyphLoop, &settings.loopOn, TextKey("Loop"), TextKey("LOOP"), 434},
          Plan{picture::kGlyphSynchro, &settings.synchroOn, TextKey("Synchro"), TextKey("SYNC"), 435}}) {
        const QString word = Text(plan.word);
        const int wide = WordWidth(word);
        auto& button = AddChild<CSwitchCtrl>(0U, left, kTop, wide, kHigh, plan.value, plan.glyph);
        if (!IsNarrow()) button.label = word;
        BindValue(button, context, plan.name, plan.infoString);
        left += wide + kGap;
        if (plan.value != &settings.loopOn) continue;
        // With the region, where there is none yet.
        button.onGesture = [&station, &settings](CControl&, float before) {
            settings.loopOn.Set(before);
            station.Song().ToggleLoop();
        };
    }
    return left + kGroupGap - kGap;
}

// What is recorded into the project: automation and notes.
int CTransportPanel::AddArms(int left) {
    CWorkstation& station = context.station;
    const auto add = [&](CValue& bound, const QString& sign, int glyph, const QString& word, int info) {
        const int wide = std::max(WordWidth(word), WordWidth(Text("ARMED")));
        auto& made =
            AddChild<CArmCtrl>(0U, left, kTop, wide, kHigh, &bound, sign, glyph, IsNarrow() ? QString() : word);
        made.infoString = info;
        left += wide + kGap;
        return &made;
    };
    CArmCtrl* const automation = add(station.Audio().recordAutomation, QStringLiteral("A"), -1, Text("AUTO"), 432);
    automation->learns = KeyTarget(ETransportKey::kRecordAutomation);
    automation->onAlternativeClick = [this, &station](CControl&) {
        PopUpMenu(Owner(), [&station](QMenu& menu) { FillAutomationMenu(menu, station); });
    };
    CArmCtrl* const notes =
        add(station.NoteRecording().Armed(), QString(), picture::kGlyphKeyboard, Text("NOTES"), 428);
    notes->learns = KeyTarget(ETransportKey::kRecordNotes);
    notes->onChange = [&station](CControl&) { station.NoteRecording().ArmSwitched(); };
    notes->onAlternativeClick = [this, &station](CControl&) {
        PopUpMenu(Owner(), [&station](QMenu& menu) {
            FillRecordMenu(menu, station);
            menu.addSeparator();
            AddLearnItems(menu, station.Controllers(), KeyTarget(ETransportKey::kRecordNotes));
        });
    };
    return left;
}

int CTransportPanel::AddMetronome(int left) {
    CWorkstation& station = context.station;
    CMetronomeControl& metronome = station.Metronome();
    const QString word = Text("CLICK");
    const int wide = IsNarrow() ? kSymbolWidth : WordWidth(word);
    auto& click = AddChild<CSwitchCtrl>(0U, left, kTop, wide, kHigh, &metronome.On(), picture::kGlyphMetronome);
    if (!IsNarrow()) click.label = word;
    click.infoString = 510;
    click.learns = KeyTarget(ETransportKey::kMetronome);
    click.onChange = [&metronome](CControl&) { metronome.Keep(); };
    left += wide + kGap;
    countIn = &AddChild<CSwitchCtrl>(0U, left, kTop, wide, kHigh, &countInShown, QString());
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
    return left + wide + kGroupGap;
}

void CTransportPanel::ShowCountIn() {
    const int bars = context.station.Metronome().CountIn();
    if (bars == shownBars) return;
    shownBars = bars;
    const QString label = Text("IN %1").arg(bars);
    const float on = bars > 0 ? 1.0F : 0.0F;
    countIn->label = label;
    countIn->SetValueAndUpdate(false, true, on);
}

// The tempo that plays, which automation may have moved away from the one that is set.
int CTransportPanel::AddTempo(int left) {
    CAudio& audio = context.station.Audio();
    CValue& tempo = audio.settings.tempo;
    const int letters = IsNarrow() ? 24 : 30;
    const int room = static_cast<int>(CCanvas::DigitsWidth(QStringLiteral("000.0.0"), letters, true));
    const int positionWidth = room + (IsNarrow() ? 12 : 36);
    auto& position = AddChild<CPositionCtrl>(0U, left, kTop, positionWidth, kHigh, audio, letters);
    position.infoString = 438;
    left += positionWidth + kGroupGap;
    auto& label = AddChild<CLiveLabelCtrl>(0U, left, kTop - 2, 66, 24, [&audio, &tempo] {
        const PlayPicture& now = audio.Picture();
        const double shown = now.playing && now.time.known ? now.time.tempo : static_cast<double>(tempo.Get());
        return QString::number(shown, 'f', 1);
    });
    label.fontHeight = IsNarrow() ? 18 : 22;
    label.strong = true;
    label.digits = true;
    const int wide = IsNarrow() ? 80 : 104;
    if (!IsNarrow()) AddDimLabel(left + 74, kTop + 2, 30, 20, QStringLiteral("BPM"));
    auto& fader = AddChild<CFaderCtrl>(0U, left, kTop + 24, wide, 16, &tempo, false);
    fader.minimum = 20;
    fader.maximum = 300;
    fader.defaultValue = 120.0F;
    BindValue(fader, context, "Tempo", 436);
    fader.entryTitle = Text("Tempo");
    fader.formatValue = [](float shown) { return QStringLiteral("%1 bpm").arg(static_cast<double>(shown), 0, 'f', 1); };
    left += wide + kGap + 4;
    auto& tap =
        AddChild<CSwitchCtrl>(0U, left, kTop, IsNarrow() ? kSymbolWidth : 44, kHigh, nullptr, QStringLiteral("TAP"));
    tap.momentary = true;
    tap.infoString = 437;
    tap.learns = KeyTarget(ETransportKey::kTapTempo);
    tap.onChange = [&station = context.station](CControl&) { station.Transport().TapTempo(); };
    return left + tap.Width() + kGroupGap;
}

void CTransportPanel::Tick() {
    if (play == nullptr) return;
    ShowCountIn();
    const float playing = context.station.Transport().IsPlaying() ? 1.0F : 0.0F;
    if (playing != playShown.Get()) play->SetValueAndUpdate(false, true, playing);
}

}  // namespace quib
