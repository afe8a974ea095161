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
#include "editors/grid/PlayheadPictures.h"
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
constexpr int kLeastWidth = 890;     // pixels: all of the tools
constexpr int kUsualStep = 24;       // pixels
constexpr double kLeastExtent = 16;  // steps
constexpr double kBeyondSong = 64;   // steps after the last point that can be scrolled to
constexpr const char* kZoomSetting = "ParamEventZoomTime";

}  // namespace

CWinControlParamEvent::CWinControlParamEvent(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent), catalog(Document()), source(Document()), search(new QLineEdit(this)) {
    source.onFinished = [this] { ShowList(); };
    Build();
    const CSettings& store = Document().Settings();
    CTimeGrid& time = curve->View().time;
    time.SetStepWidth(store.ReadSettingInt(kWindowsSection, QLatin1String(kZoomSetting), 24), 0);
    time.followOn = store.IsOn(QStringLiteral("AutomaticScroll"));
    frames.setInterval(kFrame);
    frames.setTimerType(Qt::PreciseTimer);
    connect(&frames, &QTimer::timeout, this, [this] { curve->SetPlayhead(playhead.At(Nanoseconds())); });
    connect(&Document().Changes(), &CChanges::Settling, this, [this] { curve->Edit().Settle(); });
    connect(&Document().Changes(), &CChanges::ValueMoved, this, &CWinControlParamEvent::ShowTouched);
    connect(search, &QLineEdit::textChanged, this, [this] { ShowList(); });
    QPalette look = search->palette();
    look.setColor(QPalette::Base, QColor(Palette().Colour(QStringLiteral("well"))));
    look.setColor(QPalette::Text, QColor(Palette().Colour(QStringLiteral("text"))));
    search->setPalette(look);
    search->setFocusPolicy(Qt::ClickFocus);
    search->setClearButtonEnabled(true);
    search->setPlaceholderText(Text("Search lanes"));
    setMinimumSize(kLeastWidth, 300);
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
    source.Serve(*curve);
    curve->Gestures().tool = tool;
    curve->Gestures().onMenu = [this] { PopUpMenu(*this, [this](QMenu& menu) { curve->FillMenu(menu); }); };
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
    source.GiveUp();
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
    source.Look(shown, Slot());
    if (source.Entry(touched) == nullptr) touched.reset();
    if (TakeTouched()) source.Choose(touched);
    if (const auto used = source.Used(); !source.Chosen() && !used.empty()) source.Choose(used.front().key);
    if (!source.Chosen() && !source.Lanes().empty()) {
        const LaneKey level = {ELaneGroup::kMix, 0};
        source.Choose(source.Entry(level) != nullptr ? level : source.Lanes().front().key);
    }
    ShowList();
    ShowLane();
    LayoutAndRefresh();
}

void CWinControlParamEvent::ShowChange(const Change& change) {
    switch (change.kind) {
        case EChange::kLanes:
            if (source.IsPublishing()) return;
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

void CWinControlParamEvent::ShowList() {
    std::vector<CLaneListCtrl::Row> rows;
    const QString wanted = search->text().trimmed();
    const auto rowOf = [&](const LaneEntry& lane) {
        const auto points = source.PointsOf(lane.key);
        const QString right = points ? QString::number(points->size()) : QString();
        return CLaneListCtrl::Row{QString::fromStdString(lane.description.name), right, lane.key, points != nullptr};
    };
    const auto matches = [&](const LaneEntry& lane) {
        return wanted.isEmpty() || QString::fromStdString(lane.description.name).contains(wanted, Qt::CaseInsensitive);
    };
    const auto heading = [&rows](const QString& text) { rows.push_back({text, {}, {}, false}); };
    const LaneEntry* const top = source.Entry(touched);
    if (top != nullptr && matches(*top)) {
        heading(Text("LAST TOUCHED"));
        rows.push_back(rowOf(*top));
        if (const auto now = Document().Lanes().ValueNow(shown, top->key))
            rows.back().right = catalog.ValueText(*top, *now);
    }
    std::vector<CLaneListCtrl::Row> used;
    for (const LaneEntry& lane : source.Lanes()) {
        if (&lane != top && matches(lane) && source.PointsOf(lane.key)) used.push_back(rowOf(lane));
    }
    if (!used.empty()) {
        heading(Text("USED"));
        rows.back().right = QString::number(used.size());
        rows.insert(rows.end(), used.begin(), used.end());
    }
    std::optional<ELaneGroup> group;
    for (const LaneEntry& lane : source.Lanes()) {
        if (&lane == top || !matches(lane) || source.PointsOf(lane.key)) continue;
        if (group != lane.key.group) heading(catalog.GroupName(shown, lane.key.group));
        group = lane.key.group;
        rows.push_back(rowOf(lane));
    }
    list->Show(std::move(rows), source.Chosen());
    UpdateScrollBars();
}

double CWinControlParamEvent::LastStep() const {
    if (!song) return shown ? shown->patterns[static_cast<std::size_t>(pattern)].ForEdit()->StepCount() : kLeastExtent;
    double last = Document().Contents().PlaylistSteps();
    if (const auto points = source.Chosen() ? source.PointsOf(*source.Chosen()) : nullptr)
        last = std::max(last, static_cast<double>(points->back().x));
    return last + kBeyondSong;
}

void CWinControlParamEvent::ShowLane() {
    const double last = LastStep();
    curve->View().time.SetExtent(std::max(last, kLeastExtent));
    if (!song && std::exchange(fitted, last) != last) FitPattern(last);
    curve->patternEnd = song ? 0 : static_cast<int>(last);
    curve->notes =
        !song && shown
            ? std::make_shared<const CNoteIndex>(shown->patterns[static_cast<std::size_t>(pattern)].ForEdit())
            : nullptr;
    source.Show(*curve, static_cast<float>(song ? kMaximumSongStep : last));
    UpdateScrollBars();
    bar->ShowState();
}

// A long pattern is seen whole; a short one is not drawn wider than usual.
void CWinControlParamEvent::FitPattern(double steps) {
    CTimeGrid& time = curve->View().time;
    if (steps < 1 || time.Width() <= 0) return;
    time.SetStepWidth(std::min(kUsualStep, static_cast<int>(time.Width() / steps)), 0);
    time.ScrollTo(0);
}

void CWinControlParamEvent::ShowPoints() {
    source.ShowPoints(*curve);
    UpdateScrollBars();
}

void CWinControlParamEvent::ShowPlaying(const PlayPicture& picture) {
    const EngineSettings& engine = Document().Audio().settings;
    const CPlayhead::Picture now =
        song ? SongPlayhead(picture, engine) : PatternPlayhead(picture, engine, shown.get(), pattern);
    playhead.Set(now, Nanoseconds());
    curve->SetPlayhead(playhead.At(Nanoseconds()));
    bar->ShowMode();
    const bool isWritten = Document().AutomationRecording().IsWriting(source.Chosen().value_or(LaneKey{}));
    if (isWritten != std::exchange(curve->recording, isWritten)) curve->Refresh();
    if (now.playing != frames.isActive()) now.playing ? frames.start() : frames.stop();
}

void CWinControlParamEvent::keyPressEvent(QKeyEvent* event) {
    // After a word was searched, keys belong to the curve again.
    if (event->key() == Qt::Key_Escape && search->hasFocus()) setFocus();
    CToolWindow::keyPressEvent(event);
}

}  // namespace quib
