// SPDX-License-Identifier: GPL-3.0-or-later
// The window's bands, their places, and what its settings keep.
#include "editors/pianoroll/CWinControlPianoRoll.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

#include "controls/CScrollCtrl.h"
#include "controls/CSplitCtrl.h"
#include "controls/CZoomCtrl.h"
#include "controls/VirtualKeys.h"
#include "editors/automation/CEventCtrl.h"
#include "editors/pianoroll/CRollLaneBar.h"
#include "editors/pianoroll/CRollStatusBar.h"
#include "editors/pianoroll/CRollToolBar.h"
#include "editors/pianoroll/CVelocityLaneCtrl.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kTools = 40;
constexpr int kSplit = 8;
constexpr int kLaneBar = 24;
constexpr int kScroll = 12;
constexpr int kStatus = 28;
constexpr int kKeyZoom = 46;
constexpr int kLeastSplit = 150;
constexpr int kLeastFoot = 100;
constexpr int kFrame = 16;  // milliseconds

// The spelling is that of the stored settings.
constexpr const char* kZoomTime = "PianoRoolZoomTime";
constexpr const char* kZoomKey = "PianoRoolZoomKey";
constexpr const char* kSplitPlace = "PianoRoolSplit";
constexpr const char* kRowOrder = "PianoRollRows";

}  // namespace

CWinControlPianoRoll::CWinControlPianoRoll(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent), catalog(Document()), lanes(Document()) {
    lanes.onFinished = [this] { laneBar->ShowLanes(); };
    const CSettings& store = Document().Settings();
    splitPlace = store.ReadSettingInt(kWindowsSection, QLatin1String(kSplitPlace), splitPlace);
    rowOrder = static_cast<ERowOrder>(
        std::clamp(store.ReadSettingInt(kWindowsSection, QLatin1String(kRowOrder), 0), 0, kRowOrderCount - 1));
    Build();
    roll->view.time.SetStepWidth(store.ReadSettingInt(kWindowsSection, QLatin1String(kZoomTime), 24), 0);
    roll->view.SetKeyZoom(store.ReadSettingInt(kWindowsSection, QLatin1String(kZoomKey), 12), 0);
    roll->view.time.followOn = store.IsOn(QStringLiteral("AutomaticScroll"));
    frames.setInterval(kFrame);
    frames.setTimerType(Qt::PreciseTimer);
    connect(&frames, &QTimer::timeout, this, [this] { ShowPlayhead(); });
    connect(&Document().Changes(), &CChanges::Settling, this, [this] {
        roll->Edit().Settle();
        curve->Edit().Settle();
    });
    setMinimumSize(640, 400);
    Document().NoteRecording().onStepEntry = [this](int key, int velocity) { roll->Keys().EnterStep(key, velocity); };
}

CWinControlPianoRoll::~CWinControlPianoRoll() {
    disconnect(&Document().Changes(), nullptr, this, nullptr);
    Document().NoteRecording().onStepEntry = {};
    SetStepEntry(false);
    RemoveAll();
}

void CWinControlPianoRoll::Build() {
    const auto options = roll != nullptr ? std::optional(roll->options) : std::nullopt;
    const auto view = roll != nullptr ? std::optional(roll->view) : std::nullopt;
    RemoveAll();
    tools = &Add<CRollToolBar>(0U, 0, 0, 900, kTools, *this);
    roll = &Add<CPianoRollCtrlEx>(0U, 0, kTools, 888, 408, *this);
    if (options) roll->options = *options;
    if (view) roll->view = *view;
    roll->infoString = 400;
    roll->SetLengthText(Text("%1 steps"));
    roll->onMousePlace = [this](float step, int key) { status->ShowPlace(step, key); };
    split = &Add<CSplitCtrl>(0U, 0, splitPlace, 900, kSplit, false);
    split->onSplit = [this](int place) { MoveSplit(place); };
    laneBar = &Add<CRollLaneBar>(0U, 0, 456, 900, kLaneBar, *this);
    lane = &Add<CVelocityLaneCtrl>(0U, 0, 480, 888, 80, *roll);
    lane->infoString = 401;
    lane->onNotes = [this](const NoteState&) { laneBar->ShowCount(); };
    lane->onView = [this] {
        UpdateScrollBars();
        curve->Refresh();
    };
    BuildLane();
    status = &Add<CRollStatusBar>(0U, 0, 572, 900, kStatus, *this);
    keyScroll = &Add<CScrollCtrl>(0U, 888, kTools, kScroll, 408, &keyPlace, true);
    keyScroll->onChange = [this](CControl&) {
        if (roll->view.ScrollKeysTo(static_cast<int>(keyPlace.Get()))) roll->ViewMoved();
    };
    keyZoom = &Add<CZoomCtrl>(0U, 888, 402, kScroll, kKeyZoom);
    keyZoom->onZoom = [this](int direction) { ZoomKeys(direction > 0); };
    keyZoom->infoString = 533;
    timeZoom = &Add<CZoomCtrl>(0U, 0, 560, 64, kScroll);
    timeZoom->onZoom = [this](int direction) { ZoomTime(direction > 0); };
    timeZoom->infoString = 422;
    timeScroll = &Add<CScrollCtrl>(0U, 64, 560, 824, kScroll, &timePlace, false);
    timeScroll->onChange = [this](CControl&) {
        if (roll->view.time.ScrollTo(static_cast<int>(timePlace.Get()))) roll->ViewMoved();
    };
}

void CWinControlPianoRoll::Translate() {
    Build();
    LayoutAndRefresh();
}

// The grid takes what room there is; the lower pane keeps its height.
void CWinControlPianoRoll::Arrange(const QSize& size) {
    const int width = size.width();
    const int foot = size.height() - kStatus;
    const int highest = std::max(kLeastSplit, size.height() - kLeastFoot);
    const int place = std::clamp(splitPlace, kLeastSplit, highest);
    if (place != splitPlace) {
        splitPlace = place;
        Document().Settings().WriteSettingInt(kWindowsSection, QLatin1String(kSplitPlace), place);
    }
    tools->Resize(width, kTools);
    roll->Resize(width - kScroll, splitPlace - kTools);
    keyScroll->SetPosition(width - kScroll, kTools + PianoRollView::kHeaderHeight);
    keyScroll->Resize(kScroll, std::max(20, splitPlace - kTools - PianoRollView::kHeaderHeight - kKeyZoom));
    keyZoom->SetPosition(width - kScroll, splitPlace - kKeyZoom);
    timeZoom->SetPosition(0, foot - kScroll);
    timeZoom->SetSize(roll->view.GridLeft(), kScroll);
    split->SetPosition(0, splitPlace);
    split->Resize(width, kSplit);
    split->lowest = kLeastSplit;
    split->highest = highest;
    laneBar->SetPosition(0, splitPlace + kSplit);
    laneBar->Resize(width, kLaneBar);
    const int laneTop = splitPlace + kSplit + kLaneBar;
    ArrangeLane(QRect(0, laneTop, width - kScroll, std::max(8, foot - kScroll - laneTop)));
    timeScroll->SetPosition(roll->view.GridLeft(), foot - kScroll);
    timeScroll->Resize(std::max(20, width - kScroll - roll->view.GridLeft()), kScroll);
    status->SetPosition(0, foot);
    status->Resize(width, kStatus);
    UpdateScrollBars();
}

void CWinControlPianoRoll::DrawBackground() {
    Canvas().Fill(QRect(QPoint(0, 0), SkinSize()), Palette().Colour(QStringLiteral("panel")));
}

void CWinControlPianoRoll::MoveSplit(int place) {
    splitPlace = place;
    Document().Settings().WriteSettingInt(kWindowsSection, QLatin1String(kSplitPlace), place);
    LayoutAndRefresh();
}

void CWinControlPianoRoll::UpdateScrollBars() {
    const PianoRollView& view = roll->view;
    keyScroll->SetRange(static_cast<float>(view.MaximumKeyScroll() + view.GridHeight()),
                        static_cast<float>(view.GridHeight()));
    timeScroll->SetRange(static_cast<float>(view.time.MaximumScroll() + view.time.Width()),
                         static_cast<float>(view.time.Width()));
    keyPlace.Set(static_cast<float>(view.KeyScroll()));
    timePlace.Set(static_cast<float>(view.time.Scroll()));
    for (CScrollCtrl* const bar : {keyScroll, timeScroll}) bar->Refresh();
}

// A window that is hidden takes nothing.
void CWinControlPianoRoll::SetStepEntry(bool on) {
    stepEntry = on;
    roll->Keys().EndSteps();
    Document().Audio().noteCapture.stepEntry.Set(on && isVisible() ? 1.0F : 0.0F);
}

void CWinControlPianoRoll::showEvent(QShowEvent* event) {
    CToolWindow::showEvent(event);
    SetStepEntry(stepEntry);
}

void CWinControlPianoRoll::hideEvent(QHideEvent* event) {
    frames.stop();
    roll->Edit().Settle();
    curve->Edit().Settle();
    lanes.GiveUp();
    roll->Keys().Silence();
    Hold(false);
    Document().Audio().noteCapture.stepEntry.Set(0.0F);
    gesture.reset();
    CToolWindow::hideEvent(event);
}

// --- Settings of the roll ----------------------------------------------------------------------------------

void CWinControlPianoRoll::OptionsChanged() {
    roll->OptionsChanged();
    UpdateScrollBars();
    tools->ShowState();
}

void CWinControlPianoRoll::SetFolded(bool on) {
    folded = on;
    ShowRows();
}

void CWinControlPianoRoll::SetDrums(bool on) {
    roll->view.SetDrums(on);
    ShowRows();
    LayoutAndRefresh();
}

void CWinControlPianoRoll::SetRowOrder(ERowOrder order) {
    rowOrder = order;
    Document().Settings().WriteSettingInt(kWindowsSection, QLatin1String(kRowOrder), static_cast<int>(order));
    ShowRows();
}

void CWinControlPianoRoll::SetScaleShown(const Scale& next) {
    roll->options.scale = next;
    ShowRows();
}

void CWinControlPianoRoll::SetGhosts(Ghosts next) {
    ghosts = std::move(next);
    ShowGhosts();
    tools->ShowState();
}

void CWinControlPianoRoll::ZoomTime(bool in) {
    CTimeGrid& time = roll->view.time;
    if (in ? time.ZoomIn(time.Width() / 2) : time.ZoomOut(time.Width() / 2)) roll->ViewMoved();
    ViewChanged();
}

void CWinControlPianoRoll::ZoomKeys(bool in) {
    const int middle = roll->Height() / 2;
    if (in ? roll->view.ZoomKeysIn(middle) : roll->view.ZoomKeysOut(middle)) roll->ViewMoved();
    ViewChanged();
}

void CWinControlPianoRoll::ViewChanged() {
    CSettings& store = Document().Settings();
    store.WriteSettingInt(kWindowsSection, QLatin1String(kZoomTime), roll->view.time.StepWidth());
    store.WriteSettingInt(kWindowsSection, QLatin1String(kZoomKey), roll->view.KeyZoom());
    UpdateScrollBars();
}

// A held key comes again and again to the control that has the keys; others hear it once.
void CWinControlPianoRoll::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && ArmedLimit() >= 0) return ArmLimit(-1);
    if (!event->isAutoRepeat()) return CToolWindow::keyPressEvent(event);
    if (IsCurveKeyed()) {
        curve->OnKeyDown(VirtualKeyOf(*event));
    } else {
        roll->RepeatKey(VirtualKeyOf(*event));
    }
    event->accept();
}

void CWinControlPianoRoll::mousePressEvent(QMouseEvent* event) {
    const QPoint place = ToSkin(event->position());
    if (curve->IsShown() && curve->Rectangle().contains(place)) GiveKeys(true);
    if (roll->Rectangle().contains(place)) GiveKeys(false);
    CToolWindow::mousePressEvent(event);
}

}  // namespace quib
