// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/CRollToolBar.h"

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

constexpr std::array kRowOrders = {TextKey("By key"), TextKey("By name"), TextKey("Used first")};
static_assert(kRowOrders.size() == kRowOrderCount);

constexpr int kMore = 28;
constexpr int kEdge = 8;

constexpr std::array kRoots = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

}  // namespace

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
    scaleLabel = &AddLabel(284, 38, {});
    root = &AddMenu(324, 40, 406, [this](QMenu& menu) { FillRoots(menu); });
    scale = &AddMenu(366, 94, 406, [this](QMenu& menu) { FillScales(menu); });
    rows = &AddMenu(324, 136, 427, [this](QMenu& menu) { FillRowOrders(menu); });
    AddButton(464, 44, Text("FOLD"), 0, &foldShown, 407, [this] { window.SetFolded(foldShown.IsOn()); });
    AddButton(520, 80, Text("QUANTISE"), 0, nullptr, 408, [this] { window.Roll().Keys().Quantise(); });
    strength = &AddMenu(604, 56, 408, [this](QMenu& menu) { FillStrengths(menu); });
    ghosts = &AddMenu(672, 124, 409, [this](QMenu& menu) { FillGhosts(menu); });
    audition = &AddButton(808, 28, {}, picture::kGlyphHeadphones, &auditionShown, 420,
                          [this] { window.Roll().options.audition = auditionShown.IsOn(); });
    follow = &AddButton(840, 52, Text("FOLLOW"), 0, &followShown, 421,
                        [this] { window.Roll().view.time.followOn = followShown.IsOn(); });
    more = &AddButton(0, kMore, QStringLiteral("..."), 0, nullptr, 534,
                      [this] { PopUpMenu(window, [this](QMenu& menu) { FillMore(menu); }); });
    PaintChildren();
}

void CRollToolBar::Resize(int newWidth, int newHeight) {
    CRollBar::Resize(newWidth, newHeight);
    const auto fits = [](const CControl& item, int end) { return item.X() + item.Width() + kEdge <= end; };
    const bool isNarrow = !fits(*follow, newWidth);
    more->SetVisible(isNarrow);
    more->SetPosition(newWidth - kMore - kEdge, controlTop);
    for (CControl* const item : {static_cast<CControl*>(strength), static_cast<CControl*>(ghosts),
                                 static_cast<CControl*>(audition), static_cast<CControl*>(follow)}) {
        item->SetVisible(fits(*item, isNarrow ? newWidth - kMore - kEdge : newWidth));
    }
}

void CRollToolBar::FillMore(QMenu& menu) {
    if (!strength->IsVisible()) FillStrengths(*menu.addMenu(Text("Quantise") + QLatin1Char(' ') + strength->Text()));
    if (!ghosts->IsVisible()) FillGhosts(*menu.addMenu(ghosts->Text()));
    const auto add = [&menu](const QString& text, CSwitchCtrl& shown) {
        if (shown.IsVisible()) return;
        AddChoice(menu, text, shown.ValueNow() >= 0.5F, [&shown] { shown.ChangeByUser(1 - shown.ValueNow()); });
    };
    add(Text("Audition"), *audition);
    add(Text("FOLLOW"), *follow);
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
    // Drums have no scale.
    scaleLabel->SetText(drums ? Text("Rows") : Text("Scale"));
    root->SetVisible(!drums);
    scale->SetVisible(!drums);
    rows->SetVisible(drums);
    rows->SetText(Text(kRowOrders[static_cast<std::size_t>(window.RowOrder())]));
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

void CRollToolBar::FillRowOrders(QMenu& menu) {
    for (int number = 0; number < kRowOrderCount; ++number) {
        const auto order = static_cast<ERowOrder>(number);
        AddChoice(menu, Text(kRowOrders[static_cast<std::size_t>(number)]), order == window.RowOrder(),
                  [this, order] { window.SetRowOrder(order); });
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

}  // namespace quib
