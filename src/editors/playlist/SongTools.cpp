// SPDX-License-Identifier: GPL-3.0-or-later
// The row of tools above the song, and what its texts tell.
#include <QMenu>
#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "controls/CZoomCtrl.h"
#include "editors/playlist/CSongPane.h"
#include "texts/Texts.h"

namespace quib {

void CSongPane::BuildTools() {
    title = &AddChild<CLabelCtrl>(0U, 8, 2, 80, 24, Text("SONG"));
    title->fontHeight = 13;
    title->strong = true;
    const auto add = [this](CControl& control, int room) {
        control.section = ESection::kTransport;
        tools.push_back({&control, room});
    };
    const auto widthOf = [](const QString& text) { return static_cast<int>(CCanvas::TextWidth(text, 11, true)) + 18; };
    auto& newItem = AddChild<CLabelCtrl>(0U, 0, 4, 10, 20, Text("New item"));
    newItem.textColour = Palette().Colour(QStringLiteral("textMuted"));
    newItem.fontHeight = 11;
    add(newItem, widthOf(newItem.Text()) - 8);
    patternMenu = &AddChild<CLabelMenuCtrl>(0U, 0, 4, 10, 20, QString(), [this](QMenu& menu) { FillPatterns(menu); });
    snapMenu = &AddChild<CLabelMenuCtrl>(0U, 0, 4, 10, 20, QString(), [this](QMenu& menu) { FillSnaps(menu); });
    for (CLabelMenuCtrl* const menu : {patternMenu, snapMenu}) {
        menu->fontHeight = 11;
        add(*menu, 96);
    }
    patternMenu->infoString = 493;
    snapMenu->infoString = 494;
    followShown.Set(view.time.followOn ? 1.0F : 0.0F);
    auto& follow = AddChild<CSwitchCtrl>(0U, 0, 4, 10, 20, &followShown, Text("Follow"));
    follow.infoString = 495;
    follow.onChange = [this](CControl&) {
        view.time.followOn = followShown.IsOn();
        view.time.PlayingStarts();
    };
    add(follow, widthOf(follow.label));
    auto& perform = AddChild<CSwitchCtrl>(0U, 0, 4, 10, 20, &station.Performance().Armed(), Text("Perform"));
    perform.infoString = 505;
    perform.onColour = Palette().Colour(QStringLiteral("record"));
    perform.onChange = [this](CControl&) { Perform(); };
    add(perform, widthOf(perform.label));
    const auto button = [&](const QString& text, int info, const std::function<void()>& run) {
        auto& made = AddChild<CSwitchCtrl>(0U, 0, 4, 10, 20, nullptr, text);
        made.momentary = true;
        made.infoString = info;
        made.onChange = [run](CControl&) { run(); };
        add(made, widthOf(text));
    };
    button(Text("Loop selection"), 496, [this] { LoopSelection(); });
    button(Text("Marker"), 506,
           [this] { AskMarker(view.SnapDown(std::max(0.0, view.playhead), station.Song().StepsPerBar())); });
    button(Text("Insert time"), 497,
           [this] { station.Song().InsertTime(Section().first, Section().end - Section().first); });
    button(Text("Delete time"), 498, [this] { station.Song().DeleteTime(Section()); });
    button(Text("Make unique"), 499, [this] { MakeUnique(); });
    zoom = &AddChild<CZoomCtrl>(0U, 0, 5, 44, 18);
    zoom->onZoom = [this](int direction) { Zoom(direction > 0, view.time.Width() / 2); };
    whole = &AddChild<CSwitchCtrl>(0U, 0, 4, widthOf(Text("Whole window")), 20, nullptr, Text("Whole window"));
    whole->momentary = true;
    whole->infoString = 500;
    whole->onChange = [this](CControl&) {
        if (onWholeWindow) onWholeWindow();
    };
    close = &AddChild<CSwitchCtrl>(0U, 0, 4, 22, 20, nullptr, QStringLiteral("x"));
    close->momentary = true;
    close->infoString = 501;
    close->onChange = [this](CControl&) {
        if (onClose) onClose();
    };
    loopText = &AddChild<CLabelCtrl>(0U, 8, kToolRow, kHead - 16, 20);
    lengthText = &AddChild<CLabelCtrl>(0U, 8, kToolRow + 20, kHead - 16, 24);
    for (CLabelCtrl* const label : {loopText, lengthText}) {
        label->fontHeight = 11;
        label->textColour = Palette().Colour(QStringLiteral("textMuted"));
    }
    const QRgb ground = Palette().Colour(QStringLiteral("panel"));
    for (const auto& child : Children()) child->backgroundColour = ground;
}

// What has no room is left to the menu of the items.
void CSongPane::PlaceTools() {
    int right = Width() - 30;
    close->SetPosition(right, 4);
    right -= whole->Width() + 8;
    whole->SetPosition(right, 4);
    right -= zoom->Width() + 8;
    zoom->SetPosition(right, 5);
    int left = 92;
    for (const Tool& tool : tools) {
        tool.control->SetPosition(left, 4);
        tool.control->SetSize(tool.width, 20);
        tool.control->SetVisible(left + tool.width < right - 8);
        left += tool.width + 6;
    }
}

void CSongPane::FillPatterns(QMenu& menu) {
    CPlayListCtrlEx* const lane = Current();
    if (lane == nullptr) return;
    for (int pattern = 0; pattern < kPatternCount; ++pattern) {
        const bool empty = lane->Edit().Patterns().empty[static_cast<std::size_t>(pattern)];
        const QString text = Text("Pattern %1").arg(pattern + 1);
        QAction* const action =
            menu.addAction(empty ? text + Text(" (empty)") : text, [lane, pattern] { lane->ChoosePattern(pattern); });
        action->setCheckable(true);
        action->setChecked(pattern == lane->CurrentPattern());
    }
}

void CSongPane::FillSnaps(QMenu& menu) {
    const char* const names[] = {TextKey("Off"), TextKey("Step"), TextKey("Beat"), TextKey("Bar")};
    for (int index = 3; index >= 1; --index) {
        QAction* const action = menu.addAction(Text(names[index]), [this, index] {
            view.snap = static_cast<ESongSnap>(index);
            ShowTexts();
        });
        action->setCheckable(true);
        action->setChecked(static_cast<int>(view.snap) == index);
    }
}

void CSongPane::ShowTexts() {
    const char* const names[] = {TextKey("Off"), TextKey("Step"), TextKey("Beat"), TextKey("Bar")};
    const CPlayListCtrlEx* const lane = Current();
    patternMenu->SetText(lane != nullptr ? Text("Pattern %1").arg(lane->CurrentPattern() + 1) : QString());
    snapMenu->SetText(Text("Snap: %1").arg(Text(names[static_cast<std::size_t>(view.snap)]).toLower()));
    const int bar = station.Song().StepsPerBar();
    loopText->SetText(view.loop.IsEmpty() ? Text("No loop")
                                          : Text("Loop: bars %1 to %2")
                                                .arg(view.loop.first / bar + 1)
                                                .arg(std::max(view.loop.first / bar + 1, view.loop.end / bar)));
    const EngineSettings& settings = station.Audio().settings;
    const double seconds = view.songEnd * 60.0 / std::max(1, settings.stepsPerBeat.Get()) /
                           std::max(1.0, static_cast<double>(settings.tempo.Get()));
    const int rounded = static_cast<int>(seconds);
    lengthText->SetText(Text("%1 bars - %2:%3")
                            .arg((view.songEnd + bar - 1) / bar)
                            .arg(rounded / 60)
                            .arg(rounded % 60, 2, 10, QLatin1Char('0')));
}

}  // namespace quib
