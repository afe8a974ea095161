// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CSongPane.h"

#include <QMenu>
#include <algorithm>

#include "controls/CInfoCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "controls/CZoomCtrl.h"
#include "controls/VirtualKeys.h"
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

// --- The row of tools

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
    const bool playing = picture.playing && settings.songMode.IsOn() && picture.soundingStep >= 0;
    if (playing && !view.playing) view.time.PlayingStarts();
    view.playing = playing;
    CPlayhead::Picture now;
    if (playing) {
        now.playing = true;
        now.step = picture.soundingStep + static_cast<double>(picture.stepFraction);
        now.stepsPerSecond = static_cast<double>(settings.tempo.Get()) / 60 * std::max(1, settings.stepsPerBeat.Get());
        now.loopEnd = kMaximumSongStep;
        if (settings.loopOn.IsOn() && now.step < settings.loopEnd.Get()) {
            now.loopStart = settings.loopStart.Get();
            now.loopEnd = settings.loopEnd.Get();
        }
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
