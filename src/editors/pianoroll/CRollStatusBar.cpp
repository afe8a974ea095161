// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CRollStatusBar.h"

#include <QInputDialog>
#include <QMenu>
#include <algorithm>
#include <cmath>

#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kLimitLeft = 140;
constexpr int kSwitchLeft = 500;
constexpr int kSwitches = 206;      // wide, with the gap after them
constexpr int kSwitchesFrom = 892;  // width of the row that has room for them
constexpr int kPlace = 62;
constexpr int kPlaceFrom = 700;

constexpr double kSameGrid = 0.005;  // steps: the setting keeps hundredths

// What keys that are played may be moved to.
std::vector<Snap> RecordSnaps() {
    std::vector<Snap> choices = SnapChoices();
    std::erase_if(choices, [](const Snap& snap) {
        const bool isFraction = snap.kind == Snap::EKind::kFraction && snap.denominator >= 4 && snap.denominator <= 32;
        return snap.kind != Snap::EKind::kOff && !isFraction;
    });
    return choices;
}

QString KeyText(int key) { return QLatin1String(NameOfKey(std::clamp(key, 0, 127)).text); }

// 0: off, 1: every channel, else the number after it.
QString InputText(int selector) {
    if (selector <= 0) return Text("Midi In OFF");
    if (selector == 1) return Text("Midi In OMNI");
    return Text("Midi In Channel %1").arg(selector - 1);
}

// A setting of the instrument's MIDI input, as a step of undo.
void ChangeInput(CWinControlPianoRoll& window, CIntegerValue& value, int next, const QString& name) {
    const auto shown = window.Shown();
    if (!shown || value.Get() == next) return;
    const int before = value.Get();
    value.Set(next);
    CChanges& changes = window.Project().Changes();
    const auto tell = [&changes, shown] { changes.Tell({EChange::kInstrument, shown->Id()}); };
    changes.ValueEdited(Part(shown, value), before, next, name, tell);
    tell();
}

}  // namespace

CRollStatusBar::CRollStatusBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                               CWinControlPianoRoll& pianoRoll)
    : CRollBar(frame, number, left, top, newWidth, newHeight, pianoRoll) {
    controlTop = 4;
    channel = &AddMenu(8, 128, 423, [this](QMenu& menu) { FillOptions(menu); });
    lower = &AddMenu(kLimitLeft, 116, 424, [this](QMenu& menu) { FillLimit(menu, false); });
    upper = &AddMenu(260, 120, 424, [this](QMenu& menu) { FillLimit(menu, true); });
    transpose = &AddMenu(384, 108, 425, [this](QMenu& menu) { FillTranspose(menu); });
    armedLine = &AddMenu(kLimitLeft, 492 - kLimitLeft, 424, [this](QMenu&) { window.ArmLimit(-1); });
    armedLine->textColour = Palette().Accent(ESection::kKeyboard);
    AddSwitches();
    recordLabel = &AddLabel(0, 62, Text("Record snap"));
    recordSnap = &AddMenu(0, 56, 700, [this](QMenu& menu) { FillRecordSnap(menu); });
    place = &AddLabel(0, kPlace, {});
    place->alignment = Qt::AlignRight | Qt::AlignVCenter;
    PaintChildren();
}

void CRollStatusBar::AddSwitches() {
    struct Plan {
        const char* label;
        const char* name;
        CIntegerValue MidiInputSettings::*setting;
    };
    constexpr std::array<Plan, 4> kPlans = {
        {{TextKey("Bend"), TextKey("Pitch bend"), &MidiInputSettings::pitchBend},
         {TextKey("Wheel"), TextKey("Modulation wheel"), &MidiInputSettings::modulationWheel},
         {TextKey("Touch"), TextKey("Aftertouch"), &MidiInputSettings::aftertouch},
         {TextKey("Prog."), TextKey("Program change"), &MidiInputSettings::programChange}}};
    int left = kSwitchLeft;
    for (std::size_t index = 0; index < kPlans.size(); ++index) {
        const Plan& plan = kPlans[index];
        auto& made = AddButton(left, 48, Text(plan.label), 0, &passes[index], 426, [this, index, plan] {
            if (!window.Shown()) return;
            ChangeInput(window, window.Shown()->midi.*plan.setting, passes[index].IsOn() ? 1 : 0, Text(plan.name));
        });
        made.section = ESection::kKeyboard;
        switches[index] = &made;
        left += 50;
    }
}

void CRollStatusBar::Resize(int newWidth, int newHeight) {
    CRollBar::Resize(newWidth, newHeight);
    const bool hasSwitches = newWidth >= kSwitchesFrom;
    for (CSwitchCtrl* const made : switches) made->SetVisible(hasSwitches);
    const int left = kSwitchLeft + (hasSwitches ? kSwitches : 0);
    recordLabel->SetPosition(left, controlTop);
    recordSnap->SetPosition(left + 64, controlTop);
    place->SetPosition(newWidth - kPlace - 8, controlTop);
    place->SetVisible(newWidth >= kPlaceFrom);
}

void CRollStatusBar::ShowInput() {
    const auto shown = window.Shown();
    if (!shown) return;
    const MidiInputSettings& midi = shown->midi;
    const int armed = window.ArmedLimit();
    channel->SetText(InputText(midi.channel.Get()));
    lower->SetText(Text("Lower Limit: %1").arg(KeyText(midi.keyFrom.Get())));
    upper->SetText(Text("Superior Limit: %1").arg(KeyText(midi.keyTo.Get())));
    for (CLabelMenuCtrl* const box : {lower, upper, transpose}) box->SetVisible(armed < 0);
    armedLine->SetVisible(armed >= 0);
    if (armed >= 0) armedLine->SetText(LimitLine(armed == 1) + QStringLiteral("   Esc"));
    transpose->SetText(Text("Key Transpose: %1").arg(midi.transpose.Get()));
    ShowRecordSnap();
    passes[0].Set(midi.pitchBend.IsOn() ? 1.0F : 0.0F);
    passes[1].Set(midi.modulationWheel.IsOn() ? 1.0F : 0.0F);
    passes[2].Set(midi.aftertouch.IsOn() ? 1.0F : 0.0F);
    passes[3].Set(midi.programChange.IsOn() ? 1.0F : 0.0F);
    Refresh();
}

void CRollStatusBar::ShowPlace(float step, int key) {
    if (key < 0) return place->SetText({});
    const Meter& meter = window.Roll().view.time.meter;
    const int whole = std::max(0, static_cast<int>(step));
    const int inBeat = std::max(1, static_cast<int>(meter.StepsPerBeat()));
    const int inBar = std::max(1, static_cast<int>(meter.StepsPerBar()));
    place->SetText(QStringLiteral("%1   %2.%3.%4")
                       .arg(KeyText(key))
                       .arg(whole / inBar + 1)
                       .arg(whole % inBar / inBeat + 1)
                       .arg(whole % inBar % inBeat + 1));
}

QString CRollStatusBar::LimitLine(bool isUpper) const {
    const MidiInputSettings& midi = window.Shown()->midi;
    const QString line = isUpper ? Text("Superior Limit: %1  (Click the note on the keyboard)")
                                 : Text("Lower Limit: %1  (Click the note on the keyboard)");
    return line.arg(KeyText((isUpper ? midi.keyTo : midi.keyFrom).Get()));
}

// Every setting of the input in full words.
void CRollStatusBar::FillOptions(QMenu& menu) {
    const auto shown = window.Shown();
    if (!shown) return;
    for (const bool isUpper : {false, true}) {
        menu.addAction(LimitLine(isUpper), [this, isUpper] { window.ArmLimit(isUpper ? 1 : 0); });
    }
    menu.addAction(Text("Key Transpose: %1").arg(shown->midi.transpose.Get()), [this] { TypeTranspose(); });
    menu.addSeparator();
    struct Line {
        const char* on;
        const char* off;
        const char* step;
        CIntegerValue MidiInputSettings::*setting;
    };
    constexpr std::array<Line, 4> kLines = {{{TextKey("Midi PitchBend: ON"), TextKey("Midi PitchBend: OFF"),
                                              TextKey("Pitch bend"), &MidiInputSettings::pitchBend},
                                             {TextKey("Midi ModulationWheel: ON"), TextKey("Midi ModulationWheel: OFF"),
                                              TextKey("Modulation wheel"), &MidiInputSettings::modulationWheel},
                                             {TextKey("Midi Aftertouch: ON"), TextKey("Midi Aftertouch: OFF"),
                                              TextKey("Aftertouch"), &MidiInputSettings::aftertouch},
                                             {TextKey("Midi ProgramChange: ON"), TextKey("Midi ProgramChange: OFF"),
                                              TextKey("Program change"), &MidiInputSettings::programChange}}};
    for (const Line& line : kLines) {
        CIntegerValue& setting = shown->midi.*line.setting;
        AddChoice(menu, Text(setting.IsOn() ? line.on : line.off), setting.IsOn(), [this, &setting, step = line.step] {
            ChangeInput(window, setting, setting.IsOn() ? 0 : 1, Text(step));
        });
    }
    menu.addSeparator();
    FillChannels(*menu.addMenu(InputText(shown->midi.channel.Get())));
}

void CRollStatusBar::FillChannels(QMenu& menu) {
    const auto shown = window.Shown();
    for (int selector = 0; selector <= 17; ++selector) {
        AddChoice(menu, InputText(selector), selector == shown->midi.channel.Get(), [this, shown, selector] {
            ChangeInput(window, shown->midi.channel, selector, Text("MIDI channel"));
        });
    }
}

void CRollStatusBar::FillLimit(QMenu& menu, bool isUpper) {
    const auto shown = window.Shown();
    if (!shown) return;
    menu.addAction(LimitLine(isUpper), [this, isUpper] { window.ArmLimit(isUpper ? 1 : 0); });
    menu.addAction(Text("All keys"), [this, shown] {
        const CChanges::CMacro step(window.Project().Changes(), Text("Key range"));
        ChangeInput(window, shown->midi.keyFrom, 0, Text("Key range"));
        ChangeInput(window, shown->midi.keyTo, 128, Text("Key range"));
    });
}

void CRollStatusBar::FillTranspose(QMenu& menu) {
    const auto shown = window.Shown();
    if (!shown) return;
    for (const int semitones : {24, 12, 7, 5, 0, -5, -7, -12, -24}) {
        AddChoice(
            menu, Text("Key Transpose: %1").arg(semitones), semitones == shown->midi.transpose.Get(),
            [this, shown, semitones] { ChangeInput(window, shown->midi.transpose, semitones, Text("Transpose")); });
    }
    menu.addAction(Text("Other number ..."), [this] { TypeTranspose(); });
}

void CRollStatusBar::FillRecordSnap(QMenu& menu) {
    CNoteRecording& recording = window.Project().NoteRecording();
    for (const Snap& choice : RecordSnaps()) {
        const double grid = SnapLength(choice, window.Roll().view.time.meter);
        AddChoice(menu, Text(SnapName(choice).c_str()), std::abs(recording.Options().grid - grid) < kSameGrid,
                  [this, &recording, grid] {
                      NoteTakeOptions next = recording.Options();
                      next.grid = grid;
                      recording.SetOptions(next);
                      ShowInput();
                  });
    }
}

// One that stands in no menu, from another window or another meter, is told in steps.
void CRollStatusBar::ShowRecordSnap() {
    const double grid = window.Project().NoteRecording().Options().grid;
    const Meter& meter = window.Roll().view.time.meter;
    const std::vector<Snap> choices = RecordSnaps();
    const auto known = std::find_if(choices.begin(), choices.end(), [&](const Snap& choice) {
        return std::abs(SnapLength(choice, meter) - grid) < kSameGrid;
    });
    recordSnap->SetText(known != choices.end() ? Text(SnapName(*known).c_str()) : QString::number(grid, 'g', 3));
}

void CRollStatusBar::TypeTranspose() {
    const auto shown = window.Shown();
    bool accepted = false;
    const int semitones = QInputDialog::getInt(&window, Text("Transpose"), Text("Semitones"),
                                               shown->midi.transpose.Get(), -127, 127, 1, &accepted);
    if (accepted) ChangeInput(window, shown->midi.transpose, semitones, Text("Transpose"));
}

}  // namespace quib
