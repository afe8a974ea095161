// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/RollBars.h"

#include <QInputDialog>
#include <QMenu>
#include <algorithm>
#include <array>

#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/SkinNumbers.h"
#include "editors/pianoroll/CWinControlPianoRoll.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr std::array kScaleNames = {TextKey("Chromatic"),     TextKey("Major"),       TextKey("Minor"),
                                    TextKey("Dorian"),        TextKey("Phrygian"),    TextKey("Lydian"),
                                    TextKey("Mixolydian"),    TextKey("Locrian"),     TextKey("Harmonic minor"),
                                    TextKey("Melodic minor"), TextKey("Major penta"), TextKey("Minor penta"),
                                    TextKey("Blues")};
static_assert(kScaleNames.size() == kScaleTypeCount);

constexpr std::array kRoots = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

QAction* AddChoice(QMenu& menu, const QString& text, bool chosen, const std::function<void()>& choose) {
    QAction* const action = menu.addAction(text, choose);
    action->setCheckable(true);
    action->setChecked(chosen);
    return action;
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

// --- What the rows share -----------------------------------------------------------------------------------

CRollBar::CRollBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                   CWinControlPianoRoll& pianoRoll)
    : CControl(frame, number, left, top, newWidth, newHeight), window(pianoRoll) {}

void CRollBar::Draw() { Canvas().Fill(Rectangle(), Palette().Colour(QStringLiteral("panel"))); }

void CRollBar::Resize(int newWidth, int newHeight) { SetSize(newWidth, newHeight); }

CLabelCtrl& CRollBar::AddLabel(int left, int newWidth, const QString& text) {
    auto& label = AddChild<CLabelCtrl>(0U, left, controlTop, newWidth, controlHeight, text);
    label.textColour = Palette().Colour(QStringLiteral("textMuted"));
    return label;
}

CSwitchCtrl& CRollBar::AddButton(int left, int newWidth, const QString& text, int glyph, CValue* shown, int info,
                                 std::function<void()> run) {
    CSwitchCtrl& button = glyph > 0 ? AddChild<CSwitchCtrl>(0U, left, controlTop, newWidth, controlHeight, shown, glyph)
                                    : AddChild<CSwitchCtrl>(0U, left, controlTop, newWidth, controlHeight, shown, text);
    button.momentary = shown == nullptr;
    button.section = ESection::kPattern;
    button.infoString = info;
    button.onChange = [run = std::move(run)](CControl&) { run(); };
    return button;
}

CLabelMenuCtrl& CRollBar::AddMenu(int left, int newWidth, int info, std::function<void(QMenu&)> fill) {
    auto& menu = AddChild<CLabelMenuCtrl>(0U, left, controlTop, newWidth, controlHeight, QString(), std::move(fill));
    menu.infoString = info;
    return menu;
}

void CRollBar::PaintChildren() {
    for (const auto& child : Children()) child->backgroundColour = Palette().Colour(QStringLiteral("panel"));
}

// --- Tools ---------------------------------------------------------------------------------------------------

CRollToolBar::CRollToolBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                           CWinControlPianoRoll& pianoRoll)
    : CRollBar(frame, number, left, top, newWidth, newHeight, pianoRoll) {
    controlTop = 8;
    controlHeight = 24;
    AddButton(8, 30, {}, picture::kGlyphKeyboard, &keysShown, 402, [this] { window.SetDrums(false); });
    AddButton(38, 30, {}, picture::kInstrumentIcon + 1, &drumsShown, 403, [this] { window.SetDrums(true); });
    pattern = &AddMenu(76, 84, 404, [this](QMenu& menu) { FillPatterns(menu); });
    pattern->textColour = Palette().Accent(ESection::kPattern);
    AddLabel(172, 28, Text("Snap"));
    snap = &AddMenu(200, 72, 405, [this](QMenu& menu) { FillSnaps(menu); });
    AddLabel(284, 38, Text("Scale"));
    root = &AddMenu(324, 40, 406, [this](QMenu& menu) { FillRoots(menu); });
    scale = &AddMenu(366, 94, 406, [this](QMenu& menu) { FillScales(menu); });
    AddButton(464, 44, Text("FOLD"), 0, &foldShown, 407, [this] { window.SetFolded(foldShown.IsOn()); });
    AddButton(520, 80, Text("QUANTISE"), 0, nullptr, 408, [this] { window.Roll().Keys().Quantise(); });
    strength = &AddMenu(604, 56, 408, [this](QMenu& menu) { FillStrengths(menu); });
    ghosts = &AddMenu(672, 124, 409, [this](QMenu& menu) { FillGhosts(menu); });
    AddButton(808, 28, {}, picture::kGlyphHeadphones, &auditionShown, 420,
              [this] { window.Roll().options.audition = auditionShown.IsOn(); });
    AddButton(840, 52, Text("FOLLOW"), 0, &followShown, 421,
              [this] { window.Roll().view.time.followOn = followShown.IsOn(); });
    PaintChildren();
}

void CRollToolBar::ShowState() {
    const CPianoRollCtrlEx& roll = window.Roll();
    const bool drums = roll.view.IsDrums();
    keysShown.Set(drums ? 0.0F : 1.0F);
    drumsShown.Set(drums ? 1.0F : 0.0F);
    foldShown.Set(window.IsFolded() ? 1.0F : 0.0F);
    auditionShown.Set(roll.options.audition ? 1.0F : 0.0F);
    followShown.Set(roll.view.time.followOn ? 1.0F : 0.0F);
    pattern->SetText(Text("Pattern %1").arg(window.ShownPattern() + 1));
    snap->SetText(Text(SnapName(roll.view.time.snap).c_str()));
    root->SetText(QLatin1String(kRoots[static_cast<std::size_t>(roll.options.scale.root)]));
    scale->SetText(Text(kScaleNames[static_cast<std::size_t>(roll.options.scale.type)]));
    strength->SetText(QStringLiteral("%1 %").arg(std::lround(roll.options.quantiseStrength * 100)));
    const auto& shown = window.ShownGhosts();
    ghosts->SetText(shown.IsEmpty() ? Text("Ghosts: off")
                                    : Text("Ghosts: %1").arg(shown.patterns.size() + shown.instruments.size()));
    Refresh();
}

void CRollToolBar::FillPatterns(QMenu& menu) {
    CWorkstation& project = window.Project();
    for (int number = 0; number < kPatternCount; ++number) {
        AddChoice(menu, Text("Pattern %1").arg(number + 1), number == window.ShownPattern(),
                  [&project, number] { project.Contents().SelectPattern(project.Selection().CurrentIndex(), number); });
    }
}

void CRollToolBar::FillSnaps(QMenu& menu) {
    Snap& now = window.Roll().view.time.snap;
    for (const Snap& choice : SnapChoices()) {
        AddChoice(menu, Text(SnapName(choice).c_str()), choice == now, [this, choice] {
            window.Roll().view.time.snap = choice;
            window.OptionsChanged();
        });
    }
}

void CRollToolBar::FillRoots(QMenu& menu) {
    const Scale now = window.Roll().options.scale;
    for (int key = 0; key < 12; ++key) {
        AddChoice(menu, QLatin1String(kRoots[static_cast<std::size_t>(key)]), key == now.root, [this, key, now] {
            window.SetScaleShown({key, now.type});
        });
    }
}

void CRollToolBar::FillScales(QMenu& menu) {
    const Scale now = window.Roll().options.scale;
    for (int type = 0; type < kScaleTypeCount; ++type) {
        const auto chosen = static_cast<EScaleType>(type);
        AddChoice(menu, Text(kScaleNames[static_cast<std::size_t>(type)]), chosen == now.type, [this, chosen, now] {
            window.SetScaleShown({now.root, chosen});
        });
    }
}

void CRollToolBar::FillStrengths(QMenu& menu) {
    for (const int percent : {25, 50, 75, 90, 100}) {
        const float share = static_cast<float>(percent) / 100;
        AddChoice(menu, QStringLiteral("%1 %").arg(percent),
                  std::abs(window.Roll().options.quantiseStrength - share) < 0.001F, [this, share] {
                      window.Roll().options.quantiseStrength = share;
                      ShowState();
                  });
    }
}

void CRollToolBar::FillGhosts(QMenu& menu) {
    const auto toggled = [](auto list, auto entry) {
        if (std::erase(list, entry) == 0) list.push_back(entry);
        return list;
    };
    const CWinControlPianoRoll::Ghosts now = window.ShownGhosts();
    menu.addAction(Text("No ghosts"), [this] { window.SetGhosts({}); });
    menu.addSection(Text("Other patterns"));
    const auto shown = window.Shown();
    for (int number = 0; shown && number < kPatternCount; ++number) {
        const auto notes = shown->patterns[static_cast<std::size_t>(number)].ForEdit();
        if (number == window.ShownPattern() || notes->Notes().empty()) continue;
        AddChoice(menu, Text("Pattern %1").arg(number + 1), std::ranges::count(now.patterns, number) > 0,
                  [this, now, number, toggled] {
                      window.SetGhosts({toggled(now.patterns, number), now.instruments});
                  });
    }
    menu.addSection(Text("Other instruments"));
    for (const auto& other : window.Project().Stack().Instruments()) {
        if (other == shown) continue;
        const std::uint32_t id = other->Id();
        AddChoice(menu, QString::fromStdString(other->title), std::ranges::count(now.instruments, id) > 0,
                  [this, now, id, toggled] {
                      window.SetGhosts({now.patterns, toggled(now.instruments, id)});
                  });
    }
}

// --- Lane ------------------------------------------------------------------------------------------------------

CRollLaneBar::CRollLaneBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                           CWinControlPianoRoll& pianoRoll)
    : CRollBar(frame, number, left, top, newWidth, newHeight, pianoRoll) {
    controlTop = 2;
    auto& shownLane = AddLabel(8, 120, Text("Velocity"));
    shownLane.textColour = Palette().Accent(ESection::kPattern);
    shownLane.strong = true;
    AddButton(132, 44, Text("STEP"), 0, &stepShown, 429, [this] { window.SetStepEntry(stepShown.IsOn()); });
    count = &AddLabel(newWidth - 208, 200, {});
    count->alignment = Qt::AlignRight | Qt::AlignVCenter;
    PaintChildren();
}

void CRollLaneBar::Resize(int newWidth, int newHeight) {
    CRollBar::Resize(newWidth, newHeight);
    count->SetPosition(newWidth - 220, controlTop);
}

void CRollLaneBar::ShowCount() {
    const std::size_t selected = window.Roll().State().selection.size();
    count->SetText(selected == 0 ? QString() : Text("%1 notes selected").arg(selected));
}

// --- MIDI input ------------------------------------------------------------------------------------------------

CRollStatusBar::CRollStatusBar(CWinControl& frame, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                               CWinControlPianoRoll& pianoRoll)
    : CRollBar(frame, number, left, top, newWidth, newHeight, pianoRoll) {
    controlTop = 4;
    AddButton(8, 24, {}, picture::kGlyphMinus, nullptr, 422, [this] { window.ZoomTime(false); });
    AddButton(34, 24, {}, picture::kGlyphPlus, nullptr, 422, [this] { window.ZoomTime(true); });
    channel = &AddMenu(70, 128, 423, [this](QMenu& menu) { FillChannels(menu); });
    lower = &AddMenu(204, 116, 424, [this](QMenu& menu) { FillLimit(menu, false); });
    upper = &AddMenu(324, 124, 424, [this](QMenu& menu) { FillLimit(menu, true); });
    transpose = &AddMenu(454, 116, 425, [this](QMenu& menu) { FillTranspose(menu); });
    AddSwitches();
    place = &AddLabel(newWidth - 108, 100, {});
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
         {TextKey("Program"), TextKey("Program change"), &MidiInputSettings::programChange}}};
    int left = 582;
    for (std::size_t index = 0; index < kPlans.size(); ++index) {
        const Plan& plan = kPlans[index];
        auto& made = AddButton(left, 50, Text(plan.label), 0, &passes[index], 426, [this, index, plan] {
            if (!window.Shown()) return;
            ChangeInput(window, window.Shown()->midi.*plan.setting, passes[index].IsOn() ? 1 : 0, Text(plan.name));
        });
        made.section = ESection::kKeyboard;
        switches[index] = &made;
        left += 52;
    }
}

void CRollStatusBar::Resize(int newWidth, int newHeight) {
    CRollBar::Resize(newWidth, newHeight);
    place->SetPosition(newWidth - 108, controlTop);
    for (CSwitchCtrl* const made : switches) made->SetVisible(newWidth >= 892);
}

void CRollStatusBar::ShowInput() {
    const auto shown = window.Shown();
    if (!shown) return;
    const MidiInputSettings& midi = shown->midi;
    const int armed = window.ArmedLimit();
    const QString wait = Text("click a key ...");
    channel->SetText(InputText(midi.channel.Get()));
    lower->SetText(armed == 0 ? wait : Text("Lower Limit: %1").arg(KeyText(midi.keyFrom.Get())));
    upper->SetText(armed == 1 ? wait : Text("Superior Limit: %1").arg(KeyText(midi.keyTo.Get())));
    transpose->SetText(Text("Key Transpose: %1").arg(midi.transpose.Get()));
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

void CRollStatusBar::FillChannels(QMenu& menu) {
    const auto shown = window.Shown();
    if (!shown) return;
    for (int selector = 0; selector <= 17; ++selector) {
        AddChoice(menu, InputText(selector), selector == shown->midi.channel.Get(), [this, shown, selector] {
            ChangeInput(window, shown->midi.channel, selector, Text("MIDI channel"));
        });
    }
}

void CRollStatusBar::FillLimit(QMenu& menu, bool isUpper) {
    const auto shown = window.Shown();
    if (!shown) return;
    CIntegerValue& limit = isUpper ? shown->midi.keyTo : shown->midi.keyFrom;
    const QString line = isUpper ? Text("Superior Limit: %1  (Click the note on the keyboard)")
                                 : Text("Lower Limit: %1  (Click the note on the keyboard)");
    menu.addAction(line.arg(KeyText(limit.Get())), [this, isUpper] { window.ArmLimit(isUpper ? 1 : 0); });
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
    menu.addAction(Text("Other number ..."), [this, shown] {
        bool accepted = false;
        const int semitones = QInputDialog::getInt(&window, Text("Transpose"), Text("Semitones"),
                                                   shown->midi.transpose.Get(), -127, 127, 1, &accepted);
        if (accepted) ChangeInput(window, shown->midi.transpose, semitones, Text("Transpose"));
    });
}

}  // namespace quib
