// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CSongPane.h"

#include <QMenu>
#include <algorithm>

#include "controls/CInfoCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "controls/CZoomCtrl.h"
#include "controls/VirtualKeys.h"
#include "editors/grid/PlayheadPictures.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kFrame = 16;  // milliseconds
constexpr int kLeastBars = 64;
constexpr int kMoreBars = 16;    // behind the song
constexpr int kZoomDefault = 2;  // pixels a step
constexpr const char* kZoomName = "PlayListZoom";
constexpr const char* kScrollName = "PlayListScroll";
constexpr const char* kSnapName = "PlayListSnap";
constexpr const char* kHeightName = "PlayListLaneHeight";

}  // namespace

CSongPane::CSongPane(CWinControl& window, std::uint32_t number, CWorkstation& workstation)
    : CControl(window, number, 0, 0, 100, kLowest), station(workstation) {
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
    BuildTools();
    const SongParts parts{*this, station, view, masks, colours};
    ruler = &AddChild<CPlayListCtrlEx>(0U, kHead, kToolRow, 100, kRuler, kRulerHeader, parts, nullptr);
    ruler->onAlternativeClick = [this](CControl&) {
        const int raster = std::max(1, static_cast<int>(view.time.meter.StepsPerBeat()));
        AskMarker(view.SnapDown(view.time.StepAt(Owner().Mouse().X() - ruler->X()), raster));
    };
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
    BuildLanes();
    UpdateExtent();
    view.time.ScrollTo(kept(kScrollName, 0));
}

CSongPane::~CSongPane() { KeepView(); }

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
    area->ClearChildren();
    heads.clear();
    lanes.clear();
    const SongParts parts{*this, station, view, masks, colours};
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
    PlaceTools();
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

// --- Following the document

void CSongPane::Follow(const Change& change) {
    switch (change.kind) {
        case EChange::kProject:
        case EChange::kStack:
            BuildLanes();
            UpdateExtent();
            return;
        case EChange::kPlaylist:
        case EChange::kPattern:
            for (CPlayListCtrlEx* const lane : lanes) {
                if (lane->Instrument().Id() == change.instrument) lane->DocumentChanged();
            }
            return UpdateExtent();
        case EChange::kPatternSelected:
            for (CPlayListCtrlEx* const lane : lanes) {
                if (lane->Instrument().Id() != change.instrument) continue;
                lane->SetCurrentPattern(lane->Instrument().patternSelected.Get());
            }
            return;
        case EChange::kInstrument:
            for (CLaneHeadCtrl* const head : heads) head->Refresh();
            return;
        case EChange::kValue:
            return ShowLoop();
        default:
            return;
    }
}

void CSongPane::UpdateExtent() {
    const EngineSettings& settings = station.Audio().settings;
    view.time.meter.stepsPerBeat = settings.stepsPerBeat.Get();
    view.time.meter.beatsPerBar = settings.beatsPerBar.Get();
    view.time.meter.beatUnit = settings.beatUnit.Get();
    view.songEnd = station.Song().Steps();
    const int bar = station.Song().StepsPerBar();
    view.time.SetExtent(std::max(kLeastBars * bar, view.songEnd + kMoreBars * bar));
    ShowLoop();
    if (view.time.Scroll() != drawnScroll) ViewMoved();
    timeBar->Follow();
    timeBar->Refresh();
    ShowTexts();
}

void CSongPane::ShowLoop() {
    const StepRange loop = station.Song().Loop();
    const bool on = station.Song().IsLoopOn();
    const bool same = loop.first == view.loop.first && loop.end == view.loop.end && on == view.loopOn &&
                      view.markers == station.Song().Markers();
    view.markers = station.Song().Markers();
    view.loop = loop;
    view.loopOn = on;
    if (same) return;
    ruler->Refresh();
    for (CPlayListCtrlEx* const lane : lanes) lane->Refresh();
    ShowTexts();
}

void CSongPane::ShowCurrent() {
    CPlayListCtrlEx* const lane = Current();
    const std::uint32_t id = lane != nullptr ? lane->Instrument().Id() : 0;
    if (id != currentId) {
        for (CPlayListCtrlEx* const other : lanes) {
            if (other->Instrument().Id() != currentId || other->Edit().State().selection.empty()) continue;
            other->Edit().SelectNone();
            other->Refresh();
        }
        currentId = id;
    }
    for (CLaneHeadCtrl* const head : heads) head->Refresh();
    ShowTexts();
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

// --- The playing state

double CSongPane::PlayingStep() const {
    const double step = playhead.At(Nanoseconds());
    return step >= 0 ? step : station.Audio().Picture().globalStep;
}

void CSongPane::FollowEngine() {
    if (!IsShown()) return;
    const PlayPicture& picture = station.Audio().Picture();
    const EngineSettings& settings = station.Audio().settings;
    CPlayhead::Picture now = SongPlayhead(picture, settings);
    const bool playing = now.playing;
    if (playing && !view.playing) view.time.PlayingStarts();
    view.playing = playing;
    if (playing && settings.loopOn.IsOn() && now.step < settings.loopEnd.Get()) {
        now.loopStart = settings.loopStart.Get();
        now.loopEnd = settings.loopEnd.Get();
    }
    playhead.Set(now, Nanoseconds());
    MovePlayhead(PlayingStep());
    for (CPlayListCtrlEx* const lane : lanes) lane->SetSounding(playing ? picture.soundingStep : -1);
    if (playing != frames.isActive()) playing ? frames.start() : frames.stop();
    if (settings.stepsPerBeat.Get() != view.time.meter.stepsPerBeat ||
        settings.beatsPerBar.Get() != view.time.meter.beatsPerBar) {
        UpdateExtent();
        ViewMoved();
    }
}

void CSongPane::MovePlayhead(double step) {
    if (step == view.playhead) return;
    const double before = std::exchange(view.playhead, step);
    if (view.playing && view.time.Follow(step)) return ViewMoved();
    if (std::floor(view.time.XOf(before)) == std::floor(view.time.XOf(step)) && before >= 0) return;
    ruler->PlayheadMoved(before);
    for (CPlayListCtrlEx* const lane : lanes) lane->PlayheadMoved(before);
}

// --- What the lanes ask for

void CSongPane::MakeCurrent(CPlayListCtrlEx& lane) {
    const int index = station.Stack().IndexOf(lane.Instrument().Id());
    active = true;
    if (index == station.Selection().CurrentIndex()) return;
    station.Selection().SetCurrent(index);
    if (onCurrent) onCurrent(index);
}

bool CSongPane::HasKeys(const CPlayListCtrlEx& lane) const { return IsActive() && &lane == Current(); }

void CSongPane::OpenPattern(int pattern) {
    station.Contents().SelectPattern(station.Selection().CurrentIndex(), pattern);
    if (onOpenPianoRoll) onOpenPianoRoll();
}

void CSongPane::ScrollTo(int pixels) {
    if (view.time.ScrollTo(pixels)) ViewMoved();
}

void CSongPane::ScrollBy(int pixels) { ScrollTo(view.time.Scroll() + pixels); }

void CSongPane::Zoom(bool in, int anchor) {
    if (in ? view.time.ZoomIn(anchor) : view.time.ZoomOut(anchor)) ViewMoved();
}

void CSongPane::SetLaneHeight(int wanted) {
    const int next = std::clamp(wanted, SongView::kLowestLane, SongView::kHighestLane);
    if (next == view.laneHeight) return;
    view.laneHeight = next;
    PlaceLanes();
    area->Layout(X(), Y(), ShownRectangle());
    area->Refresh();
    laneBar->Refresh();
}

void CSongPane::TurnWheel(int place, std::uint32_t word) {
    const bool up = NotchesOf(word) > 0;
    const bool shift = (word & kWheelShift) != 0;
    const bool control = (word & kWheelControl) != 0;
    if (control && shift) return SetLaneHeight(view.laneHeight + (up ? 12 : -12));
    if (control) return Zoom(up, place);
    if (shift) return ScrollBy(static_cast<int>(-NotchesOf(word) * 60));
    laneBar->OnMouseWheel(0, 0, word);
}

void CSongPane::Tell(const char* text) {
    if (Owner().infoPanel != nullptr) Owner().infoPanel->Show(Text(text));
}

void CSongPane::Locate(int step) {
    if (step != station.Audio().Picture().globalStep) station.Transport().Locate(step);
}

void CSongPane::CurrentPatternChanged(CPlayListCtrlEx& lane) {
    if (&lane == Current()) ShowTexts();
}

}  // namespace quib
