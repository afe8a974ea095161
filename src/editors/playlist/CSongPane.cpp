// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CSongPane.h"

#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kFrame = 16;       // milliseconds
constexpr int kZoomDefault = 2;  // pixels a step
constexpr const char* kZoomName = "PlayListZoom";
constexpr const char* kScrollName = "PlayListScroll";
constexpr const char* kSnapName = "PlayListSnap";
constexpr const char* kHeightName = "PlayListLaneHeight";

}  // namespace

CSongPane::CSongPane(CWinControl& window, std::uint32_t number, CWorkstation& workstation)
    : CControl(window, number, 0, 0, 100, kLowest),
      station(workstation),
      line(window, masks, colours),
      drag(workstation, *this),
      commands(workstation, view, *this, drag) {
    const CSettings& store = station.Settings();
    const auto kept = [&store](const char* setting, int missing) {
        return store.ReadSettingInt(kWindowsSection, QLatin1String(setting), missing);
    };
    view.time.meter = {};
    view.time.SetStepWidth(kept(kZoomName, kZoomDefault), 0);
    view.snap = static_cast<ESongSnap>(std::clamp(kept(kSnapName, 3), 0, 3));
    view.laneHeight =
        std::clamp(kept(kHeightName, SongView::kLowestLane), SongView::kLowestLane, SongView::kHighestLane);
    view.time.followOn = store.IsOn(QStringLiteral("AutomaticScroll"));
    station.Song().selectedRange = [this] { return commands.Selected(); };
    BuildParts();
    BuildLanes();
    UpdateExtent();
    // Before there is a project, there is nothing yet to scroll in.
    keptScroll = kept(kScrollName, 0);
    if (!lanes.empty()) view.time.ScrollTo(std::exchange(keptScroll, 0));
}

void CSongPane::BuildParts() {
    tools = &AddChild<CSongToolBar>(0U, station, view, commands);
    tools->onZoom = [this](int direction) { Zoom(direction > 0, view.time.Width() / 2); };
    loopText = &AddChild<CLabelCtrl>(0U, 8, kToolRow, kHead - 16, 20);
    lengthText = &AddChild<CLabelCtrl>(0U, 8, kToolRow + 20, kHead - 16, 24);
    for (CLabelCtrl* const label : {loopText, lengthText}) {
        label->fontHeight = 11;
        label->textColour = Palette().Colour(QStringLiteral("textMuted"));
        label->backgroundColour = Palette().Colour(QStringLiteral("panel"));
    }
    const SongParts parts{*this, station, view, masks, colours, line};
    ruler = &AddChild<CPlayListCtrlEx>(0U, kHead, kToolRow, 100, kRuler, kRulerHeader, parts, nullptr);
    timeBar = &AddChild<CScrollbarCtrl>(0U, view.time);
    timeBar->onScroll = [this] { ViewMoved(); };
    laneBar = &AddChild<CScrollCtrl>(0U, 0, 0, kBar, 100, &laneScroll, true);
    laneBar->wheelUnits = SongView::kLowestLane;
    laneBar->onChange = [this](CControl&) {
        PlaceLanes();
        area->Layout(X(), Y(), ShownRectangle());
        area->Refresh();
    };
    area = &AddChild<CClipCtrl>(0U, 0, kToolRow + kRuler, 100, 100);
    area->backgroundColour = Palette().Colour(QStringLiteral("window"));
    frames.setInterval(kFrame);
    frames.setTimerType(Qt::PreciseTimer);
    QObject::connect(&frames, &QTimer::timeout, &frames, [this] { MovePlayhead(PlayingStep()); });
}

CSongPane::~CSongPane() {
    station.Song().selectedRange = nullptr;
    KeepView();
}

void CSongPane::KeepView() const {
    CSettings& store = station.Settings();
    const auto keep = [&store](const char* setting, int number) {
        if (store.ReadSettingInt(kWindowsSection, QLatin1String(setting), -1) == number) return;
        store.WriteSettingInt(kWindowsSection, QLatin1String(setting), number);
    };
    keep(kZoomName, view.time.StepWidth());
    keep(kScrollName, view.time.Scroll());
    keep(kSnapName, static_cast<int>(view.snap));
    keep(kHeightName, view.laneHeight);
}

// --- Lanes

QRgb CSongPane::TrackColour(int index) const {
    const QColor own = station.Stack().StripColour(index);
    return own.isValid() ? own.rgb() : colours.tracks[static_cast<std::size_t>(index) % colours.tracks.size()];
}

void CSongPane::BuildLanes() {
    drag.Forget();
    area->ClearChildren();
    heads.clear();
    lanes.clear();
    const SongParts parts{*this, station, view, masks, colours, line};
    int index = 0;
    for (const auto& instrument : station.Stack().Instruments()) {
        const QRgb track = TrackColour(index++);
        auto& lane =
            area->AddChild<CPlayListCtrlEx>(0U, kHead, 0, 100, view.laneHeight, view.laneHeight, parts, instrument);
        auto& head = area->AddChild<CLaneHeadCtrl>(0U, 0, 0, kHead - 2, view.laneHeight, station, instrument, track);
        lane.track = track;
        head.onPress = [this, &lane] { MakeCurrent(lane); };
        lanes.push_back(&lane);
        heads.push_back(&head);
    }
    PlaceLanes();
    ShowCurrent();
}

void CSongPane::PlaceLanes() {
    const int pitch = view.laneHeight;
    laneBar->SetRange(static_cast<float>(pitch * static_cast<int>(lanes.size())), static_cast<float>(area->Height()));
    int top = -static_cast<int>(laneScroll.Get());
    for (std::size_t index = 0; index < lanes.size(); ++index, top += pitch) {
        heads[index]->SetPosition(0, top);
        heads[index]->Resize(kHead - 2, pitch);
        lanes[index]->SetPosition(kHead, top);
        lanes[index]->Resize(view.time.Width(), pitch);
    }
}

void CSongPane::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    const int room = std::max(50, newWidth - kHead - kBar);
    view.time.SetWidth(room);
    ruler->Resize(room, kRuler);
    area->SetPosition(0, kToolRow + kRuler);
    area->Resize(newWidth - kBar, std::max(10, newHeight - kToolRow - kRuler - kBar));
    laneBar->SetPosition(newWidth - kBar, kToolRow + kRuler);
    laneBar->Resize(kBar, area->Height());
    timeBar->SetPosition(kHead, newHeight - kBar);
    timeBar->Resize(room, kBar);
    tools->Resize(newWidth, kToolRow);
    PlaceLanes();
    timeBar->Follow();
}

void CSongPane::Draw() {
    const CPalette& palette = Palette();
    Canvas().Fill(Rectangle(), palette.Colour(QStringLiteral("window")));
    Canvas().Fill(QRectF(X(), Y(), Width(), kToolRow + kRuler), palette.Colour(QStringLiteral("panel")));
    drawnScroll = view.time.Scroll();
    drawnStepWidth = view.time.StepWidth();
}

void CSongPane::OnShow(bool nowVisible) {
    if (!nowVisible) return frames.stop();
    for (CPlayListCtrlEx* const lane : lanes) lane->Edit().Refresh();
    UpdateExtent();
    ShowTexts();
}

CPlayListCtrlEx* CSongPane::Lane(int index) const {
    return index >= 0 && index < static_cast<int>(lanes.size()) ? lanes[static_cast<std::size_t>(index)] : nullptr;
}

CPlayListCtrlEx* CSongPane::Current() const { return Lane(station.Selection().CurrentIndex()); }

// The lanes as far as they are seen.
QRect CSongPane::LaneArea() const {
    const int bottom = view.laneHeight * static_cast<int>(lanes.size()) - static_cast<int>(laneScroll.Get());
    return QRect(X() + kHead, area->Y(), view.time.Width(), std::max(0, bottom)) & area->ShownRectangle();
}

void CSongPane::ViewMoved() {
    if (!ShiftPicture()) {
        ruler->Refresh();
        for (CPlayListCtrlEx* const lane : lanes) lane->Refresh();
    }
    drawnScroll = view.time.Scroll();
    drawnStepWidth = view.time.StepWidth();
    timeBar->Follow();
    timeBar->Refresh();
}

// What is drawn already moves with the scroll, and only what comes into view is drawn.
bool CSongPane::ShiftPicture() {
    const int way = view.time.Scroll() - drawnScroll;
    const int room = view.time.Width();
    if (!IsShown() || !Owner().HasBackBuffer() || drawnStepWidth != view.time.StepWidth()) return false;
    if (way == 0 || std::abs(way) > room / 2) return false;
    const QRect picture(X() + kHead, Y() + kToolRow, room, kRuler + area->Height());
    if (!ShownRectangle().contains(picture) || !Canvas().Scroll(picture, -way, 0)) return false;
    const QRect fresh(way > 0 ? room - way : 0, 0, std::abs(way), std::max(kRuler, view.laneHeight));
    ruler->DrawAgain(fresh);
    for (CPlayListCtrlEx* const lane : lanes) lane->DrawAgain(fresh);
    Owner().BlitRectangle(picture);
    return true;
}

}  // namespace quib
