// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CSongToolBar.h"

#include <QMenu>
#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/CWinControl.h"
#include "controls/CZoomCtrl.h"
#include "editors/playlist/LaunchMenu.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kTop = 4;
constexpr int kToolHeight = 20;
constexpr int kFont = 11;
constexpr int kTitleFont = 13;
constexpr int kGap = 6;
constexpr int kMenuRoom = 26;  // of a menu beside its widest text
constexpr std::array kSnapNames = {TextKey("Off"), TextKey("Step"), TextKey("Beat"), TextKey("Bar")};

int WidthOf(const QString& text) { return static_cast<int>(CCanvas::TextWidth(text, kFont, true)); }

QString SnapText(ESongSnap snap) {
    return Text("Snap: %1").arg(Text(kSnapNames[static_cast<std::size_t>(snap)]).toLower());
}

QString LaunchLabel(ELaunch launch) { return Text("Launch: %1").arg(LaunchWord(launch)); }

}  // namespace

CSongToolBar::CSongToolBar(CWinControl& window, std::uint32_t number, CWorkstation& workstation, SongView& shown,
                           CSongCommands& songCommands)
    : CControl(window, number, 0, 0, 100, kHeight), station(workstation), view(shown), commands(songCommands) {
    backgroundColour = Palette().Colour(QStringLiteral("panel"));
    auto& title = AddChild<CLabelCtrl>(0U, 0, kTop, 10, kToolHeight, Text("SONG"));
    title.fontHeight = kTitleFont;
    title.strong = true;
    Add(title, static_cast<int>(CCanvas::TextWidth(title.Text(), kTitleFont, true)) + 14);
    BuildChoices();
    BuildCommands();
    BuildWindow();
    for (const auto& child : Children()) child->backgroundColour = backgroundColour;
}

void CSongToolBar::Draw() { Canvas().Fill(Rectangle(), backgroundColour); }

void CSongToolBar::Add(CControl& control, int room) {
    control.section = ESection::kTransport;
    tools.push_back({&control, room});
}

CLabelMenuCtrl& CSongToolBar::AddMenu(int info, int room, std::function<void(QMenu&)> fill) {
    auto& menu = AddChild<CLabelMenuCtrl>(0U, 0, kTop, 10, kToolHeight, QString(), std::move(fill));
    menu.fontHeight = kFont;
    menu.infoString = info;
    Add(menu, room + kMenuRoom);
    return menu;
}

void CSongToolBar::AddButton(const QString& text, int info, const std::function<void()>& run) {
    auto& made = AddChild<CSwitchCtrl>(0U, 0, kTop, 10, kToolHeight, nullptr, text);
    made.momentary = true;
    made.infoString = info;
    made.onChange = [run](CControl&) { run(); };
    Add(made, WidthOf(text) + 18);
}

void CSongToolBar::BuildChoices() {
    auto& newItem = AddChild<CLabelCtrl>(0U, 0, kTop, 10, kToolHeight, Text("New item"));
    newItem.textColour = Palette().Colour(QStringLiteral("textMuted"));
    newItem.fontHeight = kFont;
    Add(newItem, WidthOf(newItem.Text()) + 10);
    patternMenu =
        &AddMenu(493, WidthOf(Text("Pattern %1").arg(16)), [this](QMenu& menu) { commands.FillPatterns(menu); });
    int snapRoom = 0;
    for (const ESongSnap snap : {ESongSnap::kStep, ESongSnap::kBeat, ESongSnap::kBar}) {
        snapRoom = std::max(snapRoom, WidthOf(SnapText(snap)));
    }
    snapMenu = &AddMenu(494, snapRoom, [this](QMenu& menu) { FillSnaps(menu); });
    followShown.Set(view.time.followOn ? 1.0F : 0.0F);
    auto& follow = AddChild<CSwitchCtrl>(0U, 0, kTop, 10, kToolHeight, &followShown, Text("Follow"));
    follow.infoString = 495;
    follow.onChange = [this](CControl&) {
        view.time.followOn = followShown.IsOn();
        view.time.PlayingStarts();
    };
    Add(follow, WidthOf(follow.label) + 18);
}

void CSongToolBar::BuildCommands() {
    auto& perform =
        AddChild<CSwitchCtrl>(0U, 0, kTop, 10, kToolHeight, &station.Performance().Armed(), Text("Perform"));
    perform.infoString = 505;
    perform.onColour = Palette().Colour(QStringLiteral("record"));
    perform.onChange = [this](CControl&) { commands.Perform(); };
    Add(perform, WidthOf(perform.label) + 18);
    int launchRoom = 0;
    for (const ELaunch launch : kLaunches) launchRoom = std::max(launchRoom, WidthOf(LaunchLabel(launch)));
    launchMenu = &AddMenu(553, launchRoom, [this](QMenu& menu) { FillLaunchMenu(menu, station); });
    AddButton(Text("Loop selection"), 496, [this] { commands.LoopSelection(); });
    AddButton(Text("Marker"), 506, [this] { commands.MarkPlayhead(); });
    AddButton(Text("Insert time"), 497, [this] { commands.InsertTime(); });
    AddButton(Text("Delete time"), 498, [this] { commands.DeleteTime(); });
    AddButton(Text("Make unique"), 499, [this] { commands.MakeUnique(); });
    more = &AddChild<CLabelMenuCtrl>(0U, 0, kTop, WidthOf(Text("More")) + kMenuRoom, kToolHeight, Text("More"),
                                     [this](QMenu& menu) { commands.FillItemMenu(menu); });
    more->fontHeight = kFont;
    more->infoString = 554;
    more->section = ESection::kTransport;
}

void CSongToolBar::BuildWindow() {
    zoom = &AddChild<CZoomCtrl>(0U, 0, 5, 44, 18);
    zoom->onZoom = [this](int direction) {
        if (onZoom) onZoom(direction);
    };
    whole = &AddChild<CSwitchCtrl>(0U, 0, kTop, WidthOf(Text("Whole window")) + 18, kToolHeight, nullptr,
                                   Text("Whole window"));
    whole->momentary = true;
    whole->infoString = 500;
    whole->onChange = [this](CControl&) {
        if (onWholeWindow) onWholeWindow();
    };
    close = &AddChild<CSwitchCtrl>(0U, 0, kTop, 22, kToolHeight, nullptr, QStringLiteral("\u00D7"));
    close->momentary = true;
    close->infoString = 501;
    close->onChange = [this](CControl&) {
        if (onClose) onClose();
    };
}

void CSongToolBar::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    int right = Width() - 30;
    close->SetPosition(right, kTop);
    right -= whole->Width() + 8;
    whole->SetPosition(right, kTop);
    right -= zoom->Width() + 8;
    zoom->SetPosition(right, 5);
    right -= more->Width() + 8;
    int left = 8;
    for (const Tool& tool : tools) {
        const bool fits = left + tool.width <= right - kGap;
        tool.control->SetPosition(left, kTop);
        tool.control->SetSize(tool.width, kToolHeight);
        tool.control->SetVisible(fits);
        if (fits) left += tool.width + kGap;
    }
    more->SetPosition(left, kTop);
}

void CSongToolBar::FillSnaps(QMenu& menu) {
    for (int index = 3; index >= 1; --index) {
        const auto snap = static_cast<ESongSnap>(index);
        QAction* const action = menu.addAction(Text(kSnapNames[static_cast<std::size_t>(index)]), [this, snap] {
            view.snap = snap;
            snapMenu->SetText(SnapText(snap));
            snapMenu->Refresh();
        });
        action->setCheckable(true);
        action->setChecked(view.snap == snap);
    }
}

void CSongToolBar::ShowTexts(const CPlayListCtrlEx* lane) {
    patternMenu->SetText(lane != nullptr ? Text("Pattern %1").arg(lane->CurrentPattern() + 1) : QString());
    snapMenu->SetText(SnapText(view.snap));
    launchMenu->SetText(LaunchLabel(station.Transport().Launch()));
}

}  // namespace quib
