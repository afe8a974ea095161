// SPDX-License-Identifier: GPL-3.0-or-later
// How the song pane follows the document and the playing state.
#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "editors/grid/PlayheadPictures.h"
#include "editors/playlist/CSongPane.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kLeastBars = 64;
constexpr int kMoreBars = 16;       // behind the song
constexpr int kFastestScroll = 60;  // pixels a tick
}  // namespace

// --- Following the document

void CSongPane::Follow(const Change& change) {
    switch (change.kind) {
        case EChange::kProject:
            BuildLanes();
            UpdateExtent();
            if (!lanes.empty()) ScrollTo(std::exchange(keptScroll, 0));
            return;
        case EChange::kStack:
            BuildLanes();
            return UpdateExtent();
        case EChange::kPlaylist:
        case EChange::kPattern:
            for (CPlayListCtrlEx* const lane : lanes) {
                if (lane->Instrument().Id() == change.instrument) FollowLane(*lane);
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
            ShowTexts();
            return ShowLoop();
        default:
            return;
    }
}

// Notes that were written into the pattern of an end mark are played where the silence was.
void CSongPane::FollowLane(CPlayListCtrlEx& lane) {
    const int ends = lane.Edit().EndPattern();
    lane.DocumentChanged();
    const bool heard = ends >= 0 && !lane.Edit().Patterns().empty[static_cast<std::size_t>(ends)];
    if (heard) station.Song().WarnOfEndMark(lane.Instrument(), ends);
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

void CSongPane::ShowTexts() {
    tools->ShowTexts(Current());
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
    ScrollAtEdges();
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
    const auto place = [this](double at) { return static_cast<int>(std::floor(view.time.XOf(at))); };
    if (before >= 0 && place(before) == place(step)) return;
    if (!IsShown() || !Owner().HasBackBuffer()) return;
    if (!line.TakeAway() && before >= 0) {
        view.playhead = -1;
        constexpr int kRoom = CSongPlayhead::kFlagRoom;
        ruler->DrawAgain({place(before) - kRoom, 0, CSongPlayhead::kLine + 2 * kRoom, kRuler});
        for (CPlayListCtrlEx* const lane : lanes) {
            lane->DrawAgain({place(before), 0, CSongPlayhead::kLine, view.laneHeight});
        }
        view.playhead = step;
    }
    line.Put({ruler->ShownRectangle(), LaneArea()}, place(step));
}

// What is dragged beyond an edge scrolls, the faster the farther.
void CSongPane::ScrollAtEdges() {
    CPlayListCtrlEx* dragged = ruler->IsDragging() ? ruler : nullptr;
    for (CPlayListCtrlEx* const lane : lanes) {
        if (lane->IsDragging()) dragged = lane;
    }
    if (dragged == nullptr) return;
    const QPoint mouse(Owner().Mouse().X(), Owner().Mouse().Y());
    const auto beyond = [](int place, int from, int to) {
        const int way = place < from ? place - from : std::max(0, place - to);
        return std::clamp(way, -kFastestScroll, kFastestScroll);
    };
    const int left = X() + kHead;
    const int sideways = beyond(mouse.x(), left, left + view.time.Width() - 1);
    const int down = dragged == ruler ? 0 : beyond(mouse.y(), area->Y(), area->Y() + area->Height() - 1);
    if (down != 0) laneBar->SetValueAndUpdate(true, true, laneScroll.Get() + static_cast<float>(down));
    if (sideways != 0) ScrollBy(sideways);
    if (sideways != 0 || down != 0) dragged->OnMouseMove(mouse.x(), mouse.y());
}

}  // namespace quib
