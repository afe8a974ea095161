// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/ball/CWinControlBall.h"

#include <QKeyEvent>
#include <QMenu>
#include <QRegularExpression>
#include <algorithm>

#include "controls/CEntryDialog.h"
#include "controls/CLabelCtrl.h"
#include "controls/CSwitchCtrl.h"
#include "controls/Colours.h"
#include "controls/SkinNumbers.h"
#include "controls/VirtualKeys.h"
#include "editors/ball/CBallAssignmentsCtrl.h"
#include "editors/ball/CBallListCtrl.h"
#include "editors/base/CFieldCtrl.h"
#include "model/edits/LaneShapes.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kColumn = 284;
constexpr int kColumnWidth = 153;
constexpr int kFoot = 286;
constexpr int kRows = 316;

const BallSoundList kNoBalls;

QString ChannelText(int selector) {
    if (selector <= 0) return Text("Midi In OFF");
    if (selector == 1) return Text("Midi In OMNI");
    return Text("Midi In Channel %1").arg(selector - 1);
}

}  // namespace

CWinControlBall::CWinControlBall(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CToolWindow(toolContext, toolRow, parent), catalog(Document()) {
    Build();
    connect(&Document().Changes(), &CChanges::ValueMoved, this, [this](const void* thing, int part) {
        if (learning < 0 || !isVisible()) return;
        auto lane = Document().Lanes().Find(thing);
        if (!lane) lane = Document().Lanes().Find(static_cast<const CPlugin*>(thing), part);
        if (lane) Assign(*lane);
    });
}

CWinControlBall::~CWinControlBall() {
    disconnect(&Document().Changes(), nullptr, this, nullptr);
    RemoveAll();
}

void CWinControlBall::Build() {
    RemoveAll();
    pad = &Add<CBallPadCtrl>(0U, 8, 8);
    pad->infoString = 540;
    pad->entryTitle = Text("X and Y");
    pad->onSelect = [this](int ball) { Select(ball); };
    pad->onMoved = [this](int ball, const PadPlace& place) { Place(ball, place); };
    pad->onDropped = [this](int ball, const PadPlace& before) { Dropped(ball, before); };
    pad->onDelete = [this] { DeleteBall(); };
    pad->onTextEntry = [this](CControl&, const QString& text) {
        const QStringList numbers = text.split(QRegularExpression(QStringLiteral("[^0-9.,]+")), Qt::SkipEmptyParts);
        if (numbers.size() != 2 || Ball() == nullptr) return;
        const PadPlace before = pad->Balls()[static_cast<std::size_t>(selected)];
        Place(selected, {CEntryDialog::NumberOf(numbers[0]), CEntryDialog::NumberOf(numbers[1])});
        Dropped(selected, before);
    };
    BuildColumn();
    BuildFoot();
    for (const auto& control : Controls()) control->backgroundColour = Colour("panel");
}

void CWinControlBall::BuildColumn() {
    list = &Add<CBallListCtrl>(0U, kColumn, 8, kColumnWidth);
    list->infoString = 541;
    list->onSelect = [this](int ball) { Select(ball); };
    const auto button = [this](int left, int wide, int glyph, const QString& text, std::function<void()> run) {
        auto& made = Add<CSwitchCtrl>(0U, left, 94, wide, 24, nullptr, text);
        made.glyph = glyph;
        made.momentary = true;
        made.infoString = 541;
        made.onChange = [run = std::move(run)](CControl&) { run(); };
    };
    button(kColumn, 74, picture::kGlyphPlus, Text("ADD"), [this] { AddBall(); });
    button(kColumn + 78, 75, picture::kGlyphBin, Text("DELETE"), [this] { DeleteBall(); });
    const auto label = [this](int top, const QString& text, Qt::Alignment alignment) {
        auto& made = Add<CLabelCtrl>(0U, kColumn, top, kColumnWidth, 16, text);
        made.textColour = Colour("textMuted");
        made.alignment = alignment;
    };
    label(126, Text("NEW PLACE EVERY ... steps"), Qt::AlignLeft | Qt::AlignVCenter);
    for (int rate = 0; rate <= kHighestBallRate; ++rate) {
        const QString text = rate == 0 ? Text("Off") : QString::number(1 << (rate - 1));
        auto& cap = Add<CSwitchCtrl>(0U, kColumn + 39 * (rate % 4), 144 + 28 * (rate / 4), 36, 24,
                                     &rateShown[static_cast<std::size_t>(rate)], text);
        cap.infoString = 542;
        cap.onChange = [this, rate](CControl&) {
            ChangeBall([rate](BallSound& ball) { ball.rate = rate; }, TextKey("Ball rate"));
            ShowBalls();
        };
    }
    label(204, Text("MIDI"), Qt::AlignLeft | Qt::AlignVCenter);
    channel = &Add<CLabelMenuCtrl>(0U, kColumn, 222, kColumnWidth, 22, QString(), [this](QMenu& menu) {
        for (int selector = 0; selector <= 17; ++selector) {
            QAction* const action = menu.addAction(ChannelText(selector), [this, selector] {
                ChangeBall([selector](BallSound& ball) { ball.channelSelector = selector; }, TextKey("Ball MIDI"));
            });
            action->setCheckable(true);
            action->setChecked(Ball() != nullptr && Ball()->channelSelector == selector);
        }
    });
    channel->infoString = 543;
    for (const int axis : {0, 1}) {
        auto& field = Add<CFieldCtrl>(0U, kColumn + 79 * axis, 250, 74, 22, Text("Controller"));
        field.infoString = 543;
        field.onTextEntry = [this, axis](CControl&, const QString& text) {
            QString digits = text;
            digits.remove(QRegularExpression(QStringLiteral("[^0-9]")));
            if (digits.isEmpty()) return;
            ChangeBall([axis, number = digits.left(4).toInt()](
                           BallSound& ball) { (axis == 0 ? ball.controllerX : ball.controllerY) = number; },
                       TextKey("Ball MIDI"));
        };
        controllers[static_cast<std::size_t>(axis)] = &field;
    }
}

void CWinControlBall::BuildFoot() {
    name = &Add<CLabelCtrl>(0U, 32, kFoot, 58, 24);
    name->strong = true;
    name->fontHeight = 13;
    for (const int axis : {0, 1}) {
        auto& learn = Add<CSwitchCtrl>(0U, 92 + 104 * axis, kFoot, 100, 24, &learnShown[static_cast<std::size_t>(axis)],
                                       axis == 0 ? Text("LEARN X") : Text("LEARN Y"));
        learn.glyph = picture::kGlyphLearn;
        learn.infoString = 544;
        learn.onChange = [this, axis](CControl&) { Learn(learning == axis ? -1 : axis); };
    }
    auto& keep = Add<CSwitchCtrl>(0U, 304, kFoot, 133, 24, nullptr, Text("KEEP LAST 60 S"));
    keep.momentary = true;
    keep.glyph = picture::kGlyphAutomation;
    keep.infoString = 545;
    keep.onChange = [this](CControl&) { KeepMovement(); };
    assignments = &Add<CBallAssignmentsCtrl>(0U, 0, kRows, 445, 120);
    assignments->infoString = 546;
    using Row = CBallAssignmentsCtrl::Row;
    assignments->onOtherAxis = [this](const Row& line) {
        ChangeBall([line](BallSound& ball) { ball = OnOtherAxis(ball, line.axis, line.assignment); },
                   TextKey("Ball assignment"));
    };
    assignments->onRemove = [this](const Row& line) {
        ChangeBall([line](BallSound& ball) { ball = Unassigned(ball, line.axis, line.assignment); },
                   TextKey("Ball assignment"));
    };
    assignments->onSpan = [this](const Row& line, float low, float high) {
        SetSpan(line.axis, line.assignment, low, high);
    };
    assignments->onSpanDone = [this] {
        if (span) span->Finish(Text("Ball assignment"));
        span.reset();
    };
}

void CWinControlBall::Translate() {
    Build();
    LayoutAndRefresh();
}

void CWinControlBall::Arrange(const QSize& size) {
    assignments->Resize(size.width(), std::max(0, size.height() - kRows - 4));
}

void CWinControlBall::DrawBackground() {
    Canvas().Fill(QRect(QPoint(0, 0), SkinSize()), Colour("panel"));
    Canvas().Fill(QRectF(0, 279, SkinSize().width(), 1), Colour("edge"));
    if (Ball() != nullptr) DrawBall(Canvas(), QPointF(20, kFoot + 12), 8, selected);
}

void CWinControlBall::hideEvent(QHideEvent* event) {
    Document().Audio().ballsShown.Set(0);
    pad->StopAll();
    span.reset();
    learning = -1;
    CToolWindow::hideEvent(event);
}

void CWinControlBall::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && learning >= 0) return Learn(-1);
    CToolWindow::keyPressEvent(event);
}

// --- What is shown ----------------------------------------------------------------------------------------

const BallSoundList& CWinControlBall::Balls() const { return shown ? *shown->ballSounds.ForEdit() : kNoBalls; }

const BallSound* CWinControlBall::Ball() const {
    const BallSoundList& balls = Balls();
    return selected >= 0 && selected < static_cast<int>(balls.size()) ? &balls[static_cast<std::size_t>(selected)]
                                                                      : nullptr;
}

void CWinControlBall::ShowSelection() {
    const auto next = Instrument();
    if (next != shown) {
        selected = 0;
        memory.Forget();
        pad->ShowBalls({}, false);
    }
    shown = next;
    lanes = Document().Lanes().Lanes(shown, true);
    Document().Audio().ballsShown.Set(shown ? shown->Id() : 0);
    ShowBalls();
    LayoutAndRefresh();
}

void CWinControlBall::ShowChange(const Change& change) {
    if (change.kind == EChange::kSlot) return ShowSelection();
    if (change.kind == EChange::kBalls && !publishing) ShowBalls();
}

void CWinControlBall::ShowBalls() {
    const BallSoundList& balls = Balls();
    selected = std::clamp(selected, 0, std::max(0, static_cast<int>(balls.size()) - 1));
    std::vector<PadPlace> places;
    for (const BallSound& ball : balls) places.push_back({ball.x, ball.y});
    const bool known = pad->Balls().size() == places.size();
    if (!known) pad->ShowBalls(places, false);
    QStringList states;
    for (std::size_t index = 0; index < balls.size(); ++index) {
        const int rate = balls[index].rate;
        states.append(rate > 0                                  ? Text("every %1").arg(1 << (rate - 1))
                      : pad->IsGliding(static_cast<int>(index)) ? Text("glides")
                                                                : Text("still"));
    }
    list->Show(states, selected);
    const BallSound* const ball = Ball();
    for (int rate = 0; rate <= kHighestBallRate; ++rate) {
        rateShown[static_cast<std::size_t>(rate)].Set(ball != nullptr && ball->rate == rate ? 1.0F : 0.0F);
    }
    channel->SetText(ChannelText(ball != nullptr ? ball->channelSelector : 0));
    for (const int axis : {0, 1}) {
        const ControlTarget target{axis == 0 ? EControlTarget::kBallX : EControlTarget::kBallY, shown ? shown->Id() : 0,
                                   selected};
        controllers[static_cast<std::size_t>(axis)]->learns = ball != nullptr ? std::optional(target) : std::nullopt;
        const int number = ball == nullptr ? 0 : axis == 0 ? ball->controllerX : ball->controllerY;
        controllers[static_cast<std::size_t>(axis)]->SetText(
            QStringLiteral("%1 CC %2").arg(axis == 0 ? "X" : "Y").arg(number));
    }
    name->SetText(ball != nullptr ? Text("Ball %1").arg(selected + 1) : QString());
    for (const auto& control : Controls()) {
        if (control.get() != pad && control.get() != list) control->RefreshIfChanged();
    }
    ShowAssignments();
}

InstrumentLane CWinControlBall::LaneOf(const BallAssignment& assignment) const {
    return {shown, {GroupOf(assignment.target), assignment.parameter}};
}

const LaneEntry* CWinControlBall::EntryOf(const BallAssignment& assignment) const {
    const LaneKey key = LaneOf(assignment).key;
    const auto found = std::find_if(lanes.begin(), lanes.end(), [&](const LaneEntry& lane) { return lane.key == key; });
    return found == lanes.end() ? nullptr : &*found;
}

void CWinControlBall::ShowAssignments() {
    std::vector<CBallAssignmentsCtrl::Row> rows;
    std::array<QString, 2> axisTexts;
    for (int axis = 0; Ball() != nullptr && axis < 2; ++axis) {
        const auto& followers = AssignmentsOf(*Ball(), axis);
        for (std::size_t index = 0; index < followers.size(); ++index) {
            const BallAssignment& assignment = followers[index];
            const LaneEntry* const entry = EntryOf(assignment);
            CBallAssignmentsCtrl::Row line{axis, static_cast<int>(index), Text("missing"), {}};
            line.low = assignment.low / kBallSpan;
            line.high = assignment.high / kBallSpan;
            if (entry != nullptr) {
                const LaneDescription& range = entry->description;
                const auto text = [&](float place) {
                    const float share = BallShare(assignment, place);
                    return catalog.ValueText(*entry, range.minimum + (range.maximum - range.minimum) * share);
                };
                line.name = QString::fromStdString(range.name);
                line.range = text(0) + QStringLiteral(" \u2192 ") + text(kBallReach);
            }
            QString& text = axisTexts[static_cast<std::size_t>(axis)];
            text =
                index == 0 ? line.name : text.section(QStringLiteral(" +"), 0, 0) + QStringLiteral(" +%1").arg(index);
            rows.push_back(line);
        }
    }
    pad->axisTexts = axisTexts;
    pad->litAxis = learning;
    pad->Select(selected);
    for (const int axis : {0, 1}) learnShown[static_cast<std::size_t>(axis)].Set(learning == axis ? 1.0F : 0.0F);
    assignments->colour = BallColour(selected);
    assignments->hint = learning == 0   ? Text("Move a knob: it will follow X")
                        : learning == 1 ? Text("Move a knob: it will follow Y")
                        : rows.empty()  ? Text("Press LEARN X or LEARN Y and move a knob")
                                        : QString();
    assignments->Show(std::move(rows));
    LayoutAndRefresh();
}

std::vector<float> CWinControlBall::ValuesNow() const {
    std::vector<float> values;
    for (int axis = 0; Ball() != nullptr && axis < 2; ++axis) {
        for (const BallAssignment& assignment : AssignmentsOf(*Ball(), axis)) {
            const LaneEntry* const entry = EntryOf(assignment);
            const auto now = entry != nullptr ? Document().Lanes().ValueNow(shown, entry->key) : std::nullopt;
            if (!now) {
                values.push_back(-1);
                continue;
            }
            const LaneDescription& range = entry->description;
            values.push_back((*now - range.minimum) / (range.maximum - range.minimum));
        }
    }
    return values;
}

void CWinControlBall::ShowPlaying(const PlayPicture& picture) {
    if (!shown) return;
    if (picture.balls.instrument != shown->Id()) {
        // Nothing renders.
        std::vector<PadPlace> places;
        for (const BallSound& ball : Balls()) places.push_back({ball.x, ball.y});
        pad->ShowBalls(places, true);
    } else {
        std::vector<PadPlace> places = pad->Balls();
        std::copy_n(picture.balls.places.begin(), std::min(places.size(), picture.balls.places.size()), places.begin());
        pad->ShowBalls(places, true);
    }
    pad->Trail();
    assignments->ShowValues(ValuesNow());
    Remember(picture);
}

}  // namespace quib
