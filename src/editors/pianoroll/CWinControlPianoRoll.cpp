// SPDX-License-Identifier: GPL-3.0-or-later
// The window's bands, what it follows, and the commands that reach it.
#include "editors/pianoroll/CWinControlPianoRoll.h"

#include <QKeyEvent>
#include <QMenu>
#include <algorithm>

#include "controls/CScrollCtrl.h"
#include "controls/CSplitCtrl.h"
#include "controls/VirtualKeys.h"
#include "editors/pianoroll/CVelocityLaneCtrl.h"
#include "editors/pianoroll/RollBars.h"
#include "model/edits/NoteEdits.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kTools = 40;
constexpr int kSplit = 8;
constexpr int kLaneBar = 24;
constexpr int kScroll = 12;
constexpr int kStatus = 28;
constexpr int kLeastSplit = 150;
constexpr int kLeastFoot = 100;
constexpr int kFrame = 16;  // milliseconds

// The spelling is that of the stored settings.
constexpr const char* kZoomTime = "PianoRoolZoomTime";
constexpr const char* kZoomKey = "PianoRoolZoomKey";
constexpr const char* kSplitPlace = "PianoRoolSplit";

}  // namespace

CWinControlPianoRoll::CWinControlPianoRoll(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent) {
    const CSettings& store = Document().Settings();
    splitPlace = store.ReadSettingInt(kWindowsSection, QLatin1String(kSplitPlace), splitPlace);
    Build();
    roll->view.time.SetStepWidth(store.ReadSettingInt(kWindowsSection, QLatin1String(kZoomTime), 24), 0);
    roll->view.SetKeyZoom(store.ReadSettingInt(kWindowsSection, QLatin1String(kZoomKey), 12), 0);
    roll->view.time.followOn = store.IsOn(QStringLiteral("AutomaticScroll"));
    frames.setInterval(kFrame);
    frames.setTimerType(Qt::PreciseTimer);
    connect(&frames, &QTimer::timeout, this, [this] { roll->SetPlayhead(playhead.At(Nanoseconds())); });
    connect(&Document().Changes(), &CChanges::Settling, this, [this] { roll->Edit().Settle(); });
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
    lane->onView = [this] { UpdateScrollBars(); };
    status = &Add<CRollStatusBar>(0U, 0, 572, 900, kStatus, *this);
    keyScroll = &Add<CScrollCtrl>(0U, 888, kTools, kScroll, 408, &keyPlace, true);
    keyScroll->onChange = [this](CControl&) {
        if (roll->view.ScrollKeysTo(static_cast<int>(keyPlace.Get()))) roll->ViewMoved();
    };
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
    keyScroll->Resize(kScroll, std::max(20, splitPlace - kTools - PianoRollView::kHeaderHeight));
    split->SetPosition(0, splitPlace);
    split->Resize(width, kSplit);
    split->lowest = kLeastSplit;
    split->highest = highest;
    laneBar->SetPosition(0, splitPlace + kSplit);
    laneBar->Resize(width, kLaneBar);
    const int laneTop = splitPlace + kSplit + kLaneBar;
    lane->SetPosition(0, laneTop);
    lane->Resize(width - kScroll, std::max(8, foot - kScroll - laneTop));
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
    Document().Audio().noteCapture.stepEntry.Set(0.0F);
    gesture.reset();
    CToolWindow::hideEvent(event);
}

// --- Following -------------------------------------------------------------------------------------------

QString CWinControlPianoRoll::Title() const {
    const auto instrument = Instrument();
    const QString name = instrument ? QString::fromStdString(instrument->title) : QString();
    return QStringLiteral("%1 - %2   %3").arg(name, Text("Piano roll"), Text("Pattern %1").arg(Pattern() + 1));
}

void CWinControlPianoRoll::ShowSelection() {
    const auto next = Instrument();
    const bool another = next != shown;
    shown = next;
    pattern = Pattern();
    if (another) {
        ghosts = {};
        const auto plugin = shown ? shown->plugin.ForEdit()->plugin : nullptr;
        roll->view.SetDrums(plugin && plugin->Identity().isDrumMachine);
        ShowKeyNames();
    }
    ShowMeter();
    ShowInput();
    ShowPattern();
    ShowGhosts();
    ShowRows();
    if (another) CentreKeys();
    for (CControl* const bar : {static_cast<CControl*>(tools), static_cast<CControl*>(laneBar)}) bar->Refresh();
    LayoutAndRefresh();
}

// The keys in use in the middle, or the middle of the keyboard.
void CWinControlPianoRoll::CentreKeys() {
    int lowest = 127;
    int highest = 0;
    for (const Note& note : roll->State().Notes()) {
        lowest = std::clamp(note.key, 0, lowest);
        highest = std::clamp(note.key, highest, 127);
    }
    const int middle = lowest <= highest ? (lowest + highest) / 2 : 60;
    PianoRollView& view = roll->view;
    view.ScrollKeysTo(0);
    view.ScrollKeysTo(view.YOfRow(view.Rows().RowOf(middle)) - view.Height() / 2);
}

void CWinControlPianoRoll::ShowChange(const Change& change) {
    switch (change.kind) {
        case EChange::kPattern:
            if (publishing) return;
            if (change.index < 0 || change.index == pattern) ShowPattern();
            if (!ghosts.IsEmpty()) ShowGhosts();
            return;
        case EChange::kInstrument:
        case EChange::kValue:
            return ShowInput();
        case EChange::kSlot:
            ShowKeyNames();
            return ShowRows();
        default:
            return;
    }
}

void CWinControlPianoRoll::ShowPattern() {
    roll->Edit().Settle();
    const auto notes =
        shown ? shown->patterns[static_cast<std::size_t>(pattern)].ForEdit() : std::make_shared<const CPattern>();
    gesture.reset();
    roll->Show({notes, SelectionOf(notes)});
    roll->enabled = shown != nullptr;
    laneBar->ShowCount();
    UpdateScrollBars();
}

void CWinControlPianoRoll::ShowMeter() {
    const EngineSettings& engine = Document().Audio().settings;
    roll->view.time.meter = {engine.stepsPerBeat.Get(), engine.beatsPerBar.Get(), engine.beatUnit.Get(),
                             engine.timebase.Get()};
}

void CWinControlPianoRoll::ShowInput() {
    if (shown) {
        roll->options.swing = shown->swing.Get();
        roll->options.lowerLimit = shown->midi.keyFrom.Get();
        roll->options.upperLimit = shown->midi.keyTo.Get();
    }
    roll->OptionsChanged();
    status->ShowInput();
}

void CWinControlPianoRoll::ShowRows() {
    const CPattern& notes = *roll->State().pattern;
    CKeyRows rows;
    if (folded) {
        rows = roll->view.IsDrums() || roll->options.scale.type == EScaleType::kChromatic
                   ? CKeyRows::FoldToUsed(notes)
                   : CKeyRows::FoldToScale(roll->options.scale, notes);
    } else if (roll->view.IsDrums() && namedKeys.any()) {
        rows = CKeyRows(namedKeys | UsedKeys(notes));
    }
    roll->view.SetRows(CRowOrder(rows));
    OptionsChanged();
}

void CWinControlPianoRoll::ShowKeyNames() {
    const auto plugin = shown ? shown->plugin.ForEdit()->plugin : nullptr;
    namedKeys.reset();
    for (int key = 0; key <= kHighestKey; ++key) {
        std::string& name = roll->options.rowNames[static_cast<std::size_t>(key)];
        name = plugin ? plugin->KeyName(key) : std::string();
        namedKeys.set(static_cast<std::size_t>(key), !name.empty());
    }
}

void CWinControlPianoRoll::ShowGhosts() {
    auto& list = roll->options.ghosts;
    list.clear();
    const auto add = [&list](const CInstrument& owner, int number) {
        list.push_back(std::make_shared<const CNoteIndex>(owner.patterns[static_cast<std::size_t>(number)].ForEdit()));
    };
    for (const int number : ghosts.patterns) {
        if (shown && number != pattern) add(*shown, number);
    }
    for (const std::uint32_t id : ghosts.instruments) {
        const auto other = Document().Stack().InstrumentById(id);
        if (other) add(*other, std::clamp(other->patternSelected.Get(), 0, kPatternCount - 1));
    }
    roll->OptionsChanged();
}

void CWinControlPianoRoll::ShowPlaying(const PlayPicture& picture) {
    const auto end = picture.instruments.begin() + static_cast<std::ptrdiff_t>(picture.instrumentCount);
    const auto entry = std::find_if(picture.instruments.begin(), end, [this](const InstrumentPicture& candidate) {
        return shown && candidate.id == shown->Id();
    });
    const CPattern& notes = *roll->State().pattern;
    CPlayhead::Picture now;
    if (picture.playing && entry != end && entry->pattern == pattern && entry->step >= 0) {
        const EngineSettings& engine = Document().Audio().settings;
        now.playing = true;
        now.step = entry->step + static_cast<double>(picture.stepFraction);
        now.stepsPerSecond = static_cast<double>(engine.tempo.Get()) / 60 * std::max(1, engine.stepsPerBeat.Get());
        now.loopStart = notes.LoopStart();
        now.loopEnd = notes.LoopLength();
    }
    playhead.Set(now, Nanoseconds());
    roll->SetPlayhead(playhead.At(Nanoseconds()));
    if (now.playing != frames.isActive()) now.playing ? frames.start() : frames.stop();
    if (shown && shown->swing.Get() != roll->options.swing) ShowInput();
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

void CWinControlPianoRoll::SetScaleShown(const Scale& scale) {
    roll->options.scale = scale;
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

// --- Commands ----------------------------------------------------------------------------------------------

bool CWinControlPianoRoll::CanEdit(EEdit command) const {
    const NoteState& state = roll->State();
    if (!shown) return false;
    if (command == EEdit::kPaste) return !clip.notes.empty();
    if (command == EEdit::kSelectAll) return !state.Notes().empty();
    return !state.selection.empty();
}

void CWinControlPianoRoll::Edit(EEdit command) {
    const NoteState state = roll->State();
    roll->Edit().Settle();
    switch (command) {
        case EEdit::kCut:
        case EEdit::kCopy:
            clip = CopyNotes(state, roll->view.time.meter.StepsPerBeat());
            if (command == EEdit::kCut) Apply(RemoveSelected(state), TextKey("Cut notes"));
            return;
        case EEdit::kPaste: {
            const double playing = roll->Playhead();
            const double first = std::max(0.0, roll->view.time.FirstStep());
            const bool visible = static_cast<double>(clip.origin) >= first &&
                                 static_cast<double>(clip.origin) < roll->view.time.EndStep();
            const double place = playing >= 0 ? playing : visible ? static_cast<double>(clip.origin) : first;
            return Apply(PasteNotes(state, clip, roll->view.time.SnapDown(place)), TextKey("Paste notes"));
        }
        case EEdit::kDelete:
            return Apply(RemoveSelected(state), TextKey("Delete notes"));
        case EEdit::kSelectAll:
            return roll->Edit().Select(SelectAll(state));
    }
}

void CWinControlPianoRoll::Apply(const NoteState& next, const char* name) {
    roll->Edit().Settle();
    roll->Edit().Apply(next, name);
}

// A held key comes to the roll again and again; other controls hear it once.
void CWinControlPianoRoll::keyPressEvent(QKeyEvent* event) {
    if (!event->isAutoRepeat()) return CToolWindow::keyPressEvent(event);
    roll->RepeatKey(VirtualKeyOf(*event));
    event->accept();
}

}  // namespace quib
