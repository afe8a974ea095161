// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/automation/CWinControlParamEvent.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <algorithm>
#include <cmath>

#include "controls/CEntryDialog.h"
#include "controls/CLabelCtrl.h"
#include "controls/CScrollCtrl.h"
#include "controls/CZoomCtrl.h"
#include "editors/automation/CEventBar.h"
#include "editors/automation/CLaneListCtrl.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kList = 216;
constexpr int kSearch = 40;
constexpr int kScroll = 12;
constexpr int kZoom = 55;
constexpr int kBars = CEventBar::kTools + CEventBar::kHead;
constexpr int kFrame = 16;           // milliseconds
constexpr double kLeastExtent = 16;  // steps
constexpr double kBeyondSong = 64;   // steps after the last point that can be scrolled to
constexpr const char* kZoomSetting = "ParamEventZoomTime";

}  // namespace

CWinControlParamEvent::CWinControlParamEvent(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent), catalog(Document()), search(new QLineEdit(this)) {
    Build();
    const CSettings& store = Document().Settings();
    CTimeGrid& time = curve->View().time;
    time.SetStepWidth(store.ReadSettingInt(kWindowsSection, QLatin1String(kZoomSetting), 24), 0);
    time.followOn = store.IsOn(QStringLiteral("AutomaticScroll"));
    frames.setInterval(kFrame);
    frames.setTimerType(Qt::PreciseTimer);
    connect(&frames, &QTimer::timeout, this, [this] { curve->SetPlayhead(playhead.At(Nanoseconds())); });
    connect(&Document().Changes(), &CChanges::Settling, this, [this] { curve->Edit().Settle(); });
    connect(search, &QLineEdit::textChanged, this, [this] { ShowList(); });
    const auto colour = [](const char* name) { return QColor(Palette().Colour(QLatin1String(name))).name(); };
    search->setStyleSheet(QStringLiteral("QLineEdit{background:%1;color:%2;border:1px solid %3;border-radius:3px;"
                                         "padding-left:4px;}")
                              .arg(colour("well"), colour("text"), colour("edge")));
    search->setFocusPolicy(Qt::ClickFocus);
    search->setClearButtonEnabled(true);
    search->setPlaceholderText(Text("Search lanes"));
    setMinimumSize(640, 300);
}

CWinControlParamEvent::~CWinControlParamEvent() {
    disconnect(&Document().Changes(), nullptr, this, nullptr);
    RemoveAll();
}

void CWinControlParamEvent::Build() {
    const auto time = curve != nullptr ? std::optional(curve->View().time) : std::nullopt;
    RemoveAll();
    list = &Add<CLaneListCtrl>(0U, 0, kSearch, kList - kScroll, 460);
    list->infoString = 530;
    list->onChoose = [this](const LaneKey& key) { ChooseLane(key); };
    list->onScroll = [this] { UpdateScrollBars(); };
    listScroll = &Add<CScrollCtrl>(0U, kList - kScroll, kSearch, kScroll, 460, &listPlace, true);
    listScroll->onChange = [this](CControl&) { list->ScrollTo(static_cast<int>(listPlace.Get())); };
    bar = &Add<CEventBar>(0U, kList, 0, 684, kBars, *this);
    curve = &Add<CEventCtrl>(0U, kList, kBars, 684, 416, catalog);
    if (time) curve->View().time = *time;
    curve->infoString = 531;
    curve->onView = [this] { UpdateScrollBars(); };
    curve->onState = [this] { bar->ShowState(); };
    curve->onLocate = [this](double step) { Locate(step); };
    curve->valueNow = [this] { return chosen ? catalog.ValueNow(shown, *chosen) : std::nullopt; };
    curve->Edit().onPreview = [this](const LaneState& state) { Publish(state); };
    curve->Edit().onFinish = [this](const char* name) { FinishEdit(name); };
    curve->Edit().onCancel = [this] { gesture.reset(); };
    curve->Gestures().tool = tool;
    curve->Gestures().onMenu = [this] {
        PopUpMenu(*this, [this](QMenu& menu) {
            const std::array<std::pair<EEdit, const char*>, 5> rows = {{{EEdit::kCut, "Cut"},
                                                                        {EEdit::kCopy, "Copy"},
                                                                        {EEdit::kPaste, "Paste"},
                                                                        {EEdit::kDelete, "Delete"},
                                                                        {EEdit::kSelectAll, "Select All"}}};
            for (const auto& [command, name] : rows) {
                menu.addAction(Text(name), [this, edit = command] { Edit(edit); })->setEnabled(CanEdit(command));
            }
            menu.addSeparator();
            menu.addAction(Text("Clear the lane"), [this] { ClearLane(); });
        });
    };
    timeScroll = &Add<CScrollCtrl>(0U, kList + kZoom, 488, 629, kScroll, &timePlace, false);
    timeScroll->onChange = [this](CControl&) {
        if (curve->View().time.ScrollTo(static_cast<int>(timePlace.Get()))) curve->ViewMoved();
    };
    zoom = &Add<CZoomCtrl>(0U, kList, 488, kZoom, kScroll);
    zoom->onZoom = [this](int direction) {
        CTimeGrid& grid = curve->View().time;
        if (direction > 0 ? grid.ZoomIn(grid.Width() / 2) : grid.ZoomOut(grid.Width() / 2)) curve->ViewMoved();
        Document().Settings().WriteSettingInt(kWindowsSection, QLatin1String(kZoomSetting), grid.StepWidth());
    };
}

void CWinControlParamEvent::Translate() {
    Build();
    search->setPlaceholderText(Text("Search lanes"));
    LayoutAndRefresh();
}

void CWinControlParamEvent::Arrange(const QSize& size) {
    const int width = size.width() - kList;
    const int height = size.height();
    search->setGeometry(ToWidget(QRect(8, 8, 200, 24)));
    list->Resize(kList - kScroll, height - kSearch);
    listScroll->Resize(kScroll, height - kSearch);
    bar->Resize(width, kBars);
    curve->Resize(width, std::max(40, height - kBars - kScroll));
    zoom->SetPosition(kList, height - kScroll);
    timeScroll->SetPosition(kList + kZoom, height - kScroll);
    timeScroll->Resize(std::max(20, width - kZoom), kScroll);
    UpdateScrollBars();
}

void CWinControlParamEvent::DrawBackground() {
    Canvas().Fill(QRect(QPoint(0, 0), SkinSize()), Palette().Colour(QStringLiteral("panel")));
}

void CWinControlParamEvent::UpdateScrollBars() {
    const CTimeGrid& time = curve->View().time;
    timeScroll->SetRange(static_cast<float>(time.MaximumScroll() + time.Width()), static_cast<float>(time.Width()));
    timePlace.Set(static_cast<float>(time.Scroll()));
    listScroll->SetRange(static_cast<float>(std::max(list->WholeHeight(), list->Height())),
                         static_cast<float>(list->Height()));
    listPlace.Set(static_cast<float>(list->Scroll()));
    for (CScrollCtrl* const scroll : {timeScroll, listScroll}) scroll->Refresh();
}

void CWinControlParamEvent::hideEvent(QHideEvent* event) {
    frames.stop();
    curve->Edit().Settle();
    gesture.reset();
    CToolWindow::hideEvent(event);
}

// --- Following --------------------------------------------------------------------------------------------

QString CWinControlParamEvent::Title() const {
    const QString name = shown ? QString::fromStdString(shown->title) : QString();
    const QString part = song ? Text("Song") : Text("Pattern %1").arg(pattern + 1);
    return QStringLiteral("%1 - %2   %3").arg(name, Text("Automation"), part);
}

void CWinControlParamEvent::ShowSelection() {
    curve->Edit().Settle();
    shown = Instrument();
    pattern = Pattern();
    const EngineSettings& engine = Document().Audio().settings;
    curve->View().time.meter = {engine.stepsPerBeat.Get(), engine.beatsPerBar.Get(), engine.beatUnit.Get(),
                                engine.timebase.Get()};
    lanes = catalog.Lanes(shown, song);
    if (touched && Entry(touched) == nullptr) touched.reset();
    if (chosen && Entry(chosen) == nullptr) chosen.reset();
    for (const LaneEntry& lane : lanes) {
        if (!chosen && PointsOf(lane.key)) chosen = lane.key;
    }
    if (!chosen && !lanes.empty()) {
        const LaneKey level = {ELaneGroup::kMix, 0};
        chosen = Entry(level) != nullptr ? level : lanes.front().key;
    }
    ShowList();
    ShowLane();
    LayoutAndRefresh();
}

void CWinControlParamEvent::ShowChange(const Change& change) {
    switch (change.kind) {
        case EChange::kLanes:
            if (publishing) return;
            ShowList();
            return ShowPoints();
        case EChange::kPattern:
            return ShowLane();
        case EChange::kSlot:
            return ShowSelection();
        default:
            return;
    }
}

const LaneEntry* CWinControlParamEvent::Entry(const std::optional<LaneKey>& key) const {
    const auto found = std::find_if(lanes.begin(), lanes.end(), [&](const LaneEntry& lane) { return lane.key == key; });
    return found == lanes.end() ? nullptr : &*found;
}

std::shared_ptr<const PointList> CWinControlParamEvent::PointsOf(const LaneKey& key) const {
    const Place<CEventLanes> place = catalog.PlaceOf(shown, key.group);
    if (!place.target) return nullptr;
    for (const CEventLanes::Lane& lane : place.target->ForEdit()->Lanes(Slot())) {
        if (lane.index == key.index) return lane.points;
    }
    return nullptr;
}

void CWinControlParamEvent::ShowList() {
    std::vector<CLaneListCtrl::Row> rows;
    const QString wanted = search->text().trimmed();
    const auto rowOf = [&](const LaneEntry& lane) {
        const auto points = PointsOf(lane.key);
        const QString right = points ? QString::number(points->size()) : QString();
        return CLaneListCtrl::Row{QString::fromStdString(lane.description.name), right, lane.key, points != nullptr};
    };
    const auto matches = [&](const LaneEntry& lane) {
        return wanted.isEmpty() || QString::fromStdString(lane.description.name).contains(wanted, Qt::CaseInsensitive);
    };
    const auto heading = [&rows](const QString& text) { rows.push_back({text, {}, {}, false}); };
    const LaneEntry* const top = Entry(touched);
    if (top != nullptr && matches(*top)) {
        heading(Text("LAST TOUCHED"));
        rows.push_back(rowOf(*top));
        if (const auto now = catalog.ValueNow(shown, top->key)) rows.back().right = catalog.ValueText(*top, *now);
    }
    std::vector<CLaneListCtrl::Row> used;
    for (const LaneEntry& lane : lanes) {
        if (&lane != top && matches(lane) && PointsOf(lane.key)) used.push_back(rowOf(lane));
    }
    if (!used.empty()) {
        heading(Text("USED"));
        rows.back().right = QString::number(used.size());
        rows.insert(rows.end(), used.begin(), used.end());
    }
    std::optional<ELaneGroup> group;
    for (const LaneEntry& lane : lanes) {
        if (&lane == top || !matches(lane) || PointsOf(lane.key)) continue;
        if (group != lane.key.group) heading(catalog.GroupName(shown, lane.key.group));
        group = lane.key.group;
        rows.push_back(rowOf(lane));
    }
    list->Show(std::move(rows), chosen);
    UpdateScrollBars();
}

double CWinControlParamEvent::LastStep() const {
    if (!song) return shown ? shown->patterns[static_cast<std::size_t>(pattern)].ForEdit()->StepCount() : kLeastExtent;
    double last = Document().Contents().PlaylistSteps();
    if (const auto points = chosen ? PointsOf(*chosen) : nullptr)
        last = std::max(last, static_cast<double>(points->back().x));
    return last + kBeyondSong;
}

void CWinControlParamEvent::ShowLane() {
    curve->Edit().Settle();
    gesture.reset();
    const LaneEntry* const entry = Entry(chosen);
    const double last = LastStep();
    LaneLimits limits;
    if (entry != nullptr) {
        const LaneDescription& range = entry->description;
        limits = {range.minimum, range.maximum, range.kind,
                  song ? static_cast<float>(kMaximumSongStep) : static_cast<float>(last)};
    }
    curve->View().time.SetExtent(std::max(last, kLeastExtent));
    curve->patternEnd = song ? 0 : static_cast<int>(last);
    curve->notes =
        !song && shown
            ? std::make_shared<const CNoteIndex>(shown->patterns[static_cast<std::size_t>(pattern)].ForEdit())
            : nullptr;
    curve->ShowLane(entry != nullptr ? std::optional(*entry) : std::nullopt, limits);
    ShowPoints();
    bar->ShowState();
}

void CWinControlParamEvent::ShowPoints() {
    gesture.reset();
    const auto points = chosen ? PointsOf(*chosen) : nullptr;
    const PointSelection kept = points && points->size() == curve->Edit().State().points->size()
                                    ? curve->Edit().State().selection
                                    : PointSelection();
    curve->ShowPoints({points ? points : std::make_shared<const PointList>(), kept});
    UpdateScrollBars();
}

void CWinControlParamEvent::ShowPlaying(const PlayPicture& picture) {
    CPlayhead::Picture now;
    const EngineSettings& engine = Document().Audio().settings;
    now.stepsPerSecond = static_cast<double>(engine.tempo.Get()) / 60 * std::max(1, engine.stepsPerBeat.Get());
    if (song) {
        now.playing = picture.playing && engine.songMode.IsOn();
        now.step = picture.soundingStep + static_cast<double>(picture.stepFraction);
    } else {
        const auto end = picture.instruments.begin() + static_cast<std::ptrdiff_t>(picture.instrumentCount);
        const auto entry = std::find_if(picture.instruments.begin(), end, [this](const InstrumentPicture& candidate) {
            return shown && candidate.id == shown->Id();
        });
        if (picture.playing && entry != end && entry->pattern == pattern && entry->step >= 0) {
            const auto notes = shown->patterns[static_cast<std::size_t>(pattern)].ForEdit();
            now.playing = true;
            now.step = entry->step + static_cast<double>(picture.stepFraction);
            now.loopStart = notes->LoopStart();
            now.loopEnd = notes->LoopLength();
        }
    }
    playhead.Set(now, Nanoseconds());
    curve->SetPlayhead(playhead.At(Nanoseconds()));
    if (now.playing != frames.isActive()) now.playing ? frames.start() : frames.stop();
}

// --- Changes ----------------------------------------------------------------------------------------------

void CWinControlParamEvent::Publish(const LaneState& state) {
    if (!chosen) return;
    const Place<CEventLanes> place = catalog.PlaceOf(shown, chosen->group);
    if (!place.target) return;
    if (!gesture) gesture = std::make_unique<CGesture>(Document().Changes());
    publishing = true;
    gesture->Publish(place, std::make_shared<const CEventLanes>(
                                place.target->ForEdit()->With(Slot(), chosen->index, *state.points)));
    publishing = false;
}

void CWinControlParamEvent::FinishEdit(const char* name) {
    if (!gesture) return;
    gesture->Finish(Text(name));
    gesture.reset();
    ShowList();
}

void CWinControlParamEvent::ClearLane() {
    CLaneEdit& edit = curve->Edit();
    edit.Settle();
    edit.Apply(RemoveSelected(SelectAll(edit.State())), TextKey("Clear the lane"));
}

void CWinControlParamEvent::SetSong(bool on) {
    song = on;
    ShowSelection();
    ShowTitle();
}

void CWinControlParamEvent::SetTool(int number) {
    tool = static_cast<ELaneTool>(number);
    curve->Gestures().tool = tool;
    bar->ShowState();
}

void CWinControlParamEvent::SetSnap(const Snap& snap) {
    curve->View().time.snap = snap;
    bar->ShowState();
}

void CWinControlParamEvent::ChooseLane(const LaneKey& key) {
    if (Entry(key) == nullptr) return;
    chosen = key;
    // Which parameters of the plug-in have a lane shown is part of the project.
    if (key.group == ELaneGroup::kPlugin && shown) {
        auto& parameters = shown->eventPluginParameters;
        if (std::find(parameters.begin(), parameters.end(), key.index) == parameters.end()) {
            parameters.push_back(key.index);
            Document().Changes().Touch();
        }
    }
    ShowLane();
    ShowList();
}

void CWinControlParamEvent::LaneTouched(const LaneKey& key) {
    if (Entry(key) == nullptr || curve->Gestures().IsBusy()) return;
    const bool another = touched != key;
    touched = key;
    if (another || chosen != key) return ChooseLane(key);
    ShowList();
}

void CWinControlParamEvent::TypeTime(const QString& text) {
    CLaneEdit& edit = curve->Edit();
    edit.Apply(MoveSelectedTo(edit.State(), edit.limits, CEntryDialog::NumberOf(text)), TextKey("Move points"));
}

void CWinControlParamEvent::TypeValue(const QString& text) {
    const LaneEntry* const entry = Entry(chosen);
    const auto typed = entry != nullptr ? catalog.ValueOf(*entry, text) : std::nullopt;
    CLaneEdit& edit = curve->Edit();
    if (typed) edit.Apply(SetValueOfSelected(edit.State(), edit.limits, *typed), TextKey("Move points"));
}

void CWinControlParamEvent::Locate(double step) {
    if (song) Document().Transport().Locate(static_cast<int>(step));
}

// --- What its bars show -----------------------------------------------------------------------------------

std::optional<ESection> CWinControlParamEvent::LaneSection() const {
    return chosen ? std::optional(CLaneCatalog::SectionOf(*chosen)) : std::nullopt;
}

QString CWinControlParamEvent::LaneName() const {
    const LaneEntry* const entry = Entry(chosen);
    return entry != nullptr ? QString::fromStdString(entry->description.name) : QString();
}

QString CWinControlParamEvent::OwnerName() const {
    if (!chosen) return {};
    const bool ofMaster = chosen->group >= ELaneGroup::kMaster;
    const QString name = ofMaster || !shown ? Text("Master") : QString::fromStdString(shown->title);
    return QStringLiteral("%1  ·  %2").arg(name, song ? Text("Song") : Text("Pattern %1").arg(pattern + 1));
}

QString CWinControlParamEvent::TimeText() const {
    const LaneState& state = curve->Edit().State();
    if (state.selection.empty()) return {};
    return QString::number(static_cast<double>((*state.points)[state.selection.front()].x), 'f', 2);
}

QString CWinControlParamEvent::ValueText() const {
    const LaneState& state = curve->Edit().State();
    const LaneEntry* const entry = Entry(chosen);
    if (state.selection.empty() || entry == nullptr) return {};
    return catalog.ValueText(*entry, (*state.points)[state.selection.front()].y);
}

// --- Commands ---------------------------------------------------------------------------------------------

bool CWinControlParamEvent::CanEdit(EEdit command) const {
    const LaneState& state = curve->Edit().State();
    if (!chosen) return false;
    if (command == EEdit::kPaste) return !clip.points.empty();
    if (command == EEdit::kSelectAll) return !state.points->empty();
    return !state.selection.empty();
}

void CWinControlParamEvent::Edit(EEdit command) {
    CLaneEdit& edit = curve->Edit();
    edit.Settle();
    switch (command) {
        case EEdit::kCut:
        case EEdit::kCopy:
            clip = CopySelected(edit.State());
            if (command == EEdit::kCut) edit.Apply(RemoveSelected(edit.State()), TextKey("Cut points"));
            return;
        case EEdit::kPaste: {
            const CTimeGrid& time = curve->View().time;
            const auto origin = static_cast<double>(clip.origin);
            const bool visible = origin >= time.FirstStep() && origin < time.EndStep();
            const double place = curve->Playhead() >= 0 ? curve->Playhead() : visible ? origin : time.FirstStep();
            return edit.Apply(PastePoints(edit.State(), edit.limits, clip, time.SnapDown(place)),
                              TextKey("Paste points"));
        }
        case EEdit::kDelete:
            return curve->Gestures().Delete();
        case EEdit::kSelectAll:
            return edit.Select(SelectAll(edit.State()));
    }
}

void CWinControlParamEvent::keyPressEvent(QKeyEvent* event) {
    // After a word was searched, keys belong to the curve again.
    if (event->key() == Qt::Key_Escape && search->hasFocus()) setFocus();
    CToolWindow::keyPressEvent(event);
}

}  // namespace quib
