// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/console/CWinControlMain.h"

#include <QKeyEvent>
#include <QMenu>
#include <QWheelEvent>
#include <algorithm>

#include "app/console/BarControls.h"
#include "app/console/CInfoBar.h"
#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CSongHintCtrl.h"
#include "app/console/SlotMenu.h"
#include "app/start/CDeviceBanner.h"
#include "app/start/CStartPage.h"
#include "controls/CInfoCtrl.h"
#include "controls/CLabelCtrl.h"
#include "controls/CScrollCtrl.h"
#include "controls/CSplitCtrl.h"
#include "controls/VirtualKeys.h"
#include "document/CSettings.h"
#include "editors/playlist/CSongPane.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

namespace quib {

namespace {
using consoleLayout::kBar1Height;
using consoleLayout::kBar1Top;
using consoleLayout::kBar2Height;
using consoleLayout::kBar2Top;
using consoleLayout::kInfoHeight;
using consoleLayout::kMargin;
using consoleLayout::kScrollWidth;
using consoleLayout::kStateHeight;
using consoleLayout::kStripGap;
using consoleLayout::kStripsTop;
constexpr int kAddHeight = 32;
constexpr int kWideBar = 1100;   // pixels from which the tools have their words
constexpr int kLeastScope = 40;  // pixels below which there is none
}  // namespace

// The engine's scope as the control wants it.
class CWinControlMain::CScopeFeed : public CScopeSource {
public:
    explicit CScopeFeed(CScope& engineScope) : scope(engineScope) {}
    void Show(bool on) override { scope.Show(on); }
    void Arm() override { scope.Arm(); }
    bool Fetch(Picture& picture) override {
        const CScope::Picture* const newest = scope.Fetch();
        if (newest == nullptr) return false;
        picture = {newest->left, newest->right};
        return true;
    }

private:
    CScope& scope;
};

CWinControlMain::CWinControlMain(const CControlSettings& controlSettings, CWorkstation& workstation,
                                 ConsoleActions consoleActions, QWidget* parent)
    : CWinControl(controlSettings, "window", parent),
      station(workstation),
      actions(std::move(consoleActions)),
      context{station, actions, tables, nullptr},
      scopeFeed(std::make_unique<CScopeFeed>(station.Audio().Scope())) {
    setObjectName(QStringLiteral("console"));
    BuildMaster();
    BuildSong();
    BuildStrips();
    connect(&station.Changes(), &CChanges::Changed, this, &CWinControlMain::Follow);
    connect(&station.Freezing(), &CFreezing::Changed, this, [this](std::uint32_t id) {
        for (CInstrumentStripCtrl* const strip : strips) {
            if (strip->Instrument().Id() == id) strip->ShowFrozen();
        }
    });
    connect(&station.Selection(), &CSelection::CurrentChanged, this, [this] {
        for (CInstrumentStripCtrl* const strip : strips) strip->Refresh();
        song->ShowCurrent();
    });
    onControlClicked = [this](CControl& top) {
        song->SetActive(&top == song);
        const auto clicked = std::find(strips.begin(), strips.end(), &top);
        if (clicked != strips.end()) station.Selection().SetCurrent((*clicked)->Index());
    };
}

CWinControlMain::~CWinControlMain() {
    disconnect(&station.Changes(), nullptr, this, nullptr);
    disconnect(&station.Selection(), nullptr, this, nullptr);
    RemoveAll();
}

void CWinControlMain::BuildMaster() {
    stateLine = &Add<CStateLineCtrl>(0U, station);
    transport = &Add<CTransportPanel>(0U, context);
    tools = &Add<CToolsPanel>(0U, context);
    effects = &Add<CEffectsPanel>(0U, context);
    session = &Add<CSessionPanel>(0U, context);
    levels = &Add<CLevelsPanel>(0U, context);
    scope = &Add<CScopeCtrl>(0U, 0, kBar2Top, 100, kBar2Height, *scopeFeed);
    scope->infoString = 459;
    infoBar = &Add<CInfoBar>(0U, context);
    infoPanel = &infoBar->Help();
    scrollBar = &Add<CScrollCtrl>(0U, 0, kStripsTop, kScrollWidth, 100, &scrollPosition, true);
    scrollBar->wheelUnits = 60;
    scrollBar->onChange = [this](CControl&) { Scroll(); };
    auto& add = Add<CLabelMenuCtrl>(0U, kMargin, 0, 190, kAddHeight - 4, Text("+  Add an instrument"),
                                    [this](QMenu& /*menu*/) { actions.browse({}); });
    add.infoString = 448;
    add.fontHeight = 12;
    addButton = &add;
    // What screen readers call the sections.
    transport->name = Text("Transport");
    effects->name = Text("Effects");
    levels->name = Text("Master");
    session->name = Text("Session");
    infoPanel->name = Text("Help");
    tools->name = Text("Tools");
}

// The bars for the width that there is: with less of it tools lose their words, then the scope goes.
void CWinControlMain::ArrangeBars(const QSize& size) {
    const int right = size.width() - kMargin;
    const int levelsLeft = right - CLevelsPanel::kWidth;
    stateLine->Resize(size.width(), kStateHeight);
    levels->SetPosition(levelsLeft, kBar1Top);
    levels->Resize(CLevelsPanel::kWidth, kBar1Height + kMargin + kBar2Height);
    const int room = levelsLeft - 2 * kMargin;
    transport->Resize(room, kBar1Height);
    const bool wide = room >= kWideBar;
    const int toolsWidth = wide ? 310 : 122;
    const int sessionWidth = 260;
    const int effectsWidth = std::min(504, room - toolsWidth - sessionWidth - 2 * kMargin);
    int left = kMargin;
    tools->Resize(toolsWidth, kBar2Height);
    left += toolsWidth + kMargin;
    effects->SetPosition(left, kBar2Top);
    effects->Resize(effectsWidth, kBar2Height);
    left += effectsWidth + kMargin;
    session->SetPosition(left, kBar2Top);
    session->Resize(sessionWidth, kBar2Height);
    left += sessionWidth + kMargin;
    const int rest = kMargin + room - left;
    scope->SetVisible(rest >= kLeastScope);
    scope->SetPosition(left, kBar2Top);
    scope->Resize(std::max(1, rest), kBar2Height);
    infoBar->SetPosition(0, size.height() - kInfoHeight);
    infoBar->Resize(size.width(), kInfoHeight);
}

// What moves with the values themselves is drawn from the timer.
void CWinControlMain::Follow(const Change& change) {
    song->Follow(change);
    switch (change.kind) {
        case EChange::kProject:
            scrollPosition.Set(0);
            RebuildSoon();
            return effects->ShowSlots();
        case EChange::kStack:
            return RebuildSoon();
        case EChange::kSlot:
            return change.instrument == 0 ? ShowSlots() : StripChanged(change.instrument);
        case EChange::kInstrument:
        case EChange::kPresets:
            return StripChanged(change.instrument);
        case EChange::kPattern:
        case EChange::kPatternSelected:
            return PatternsChanged(change.instrument);
        case EChange::kPlaylist:
        case EChange::kLanes:
        case EChange::kBalls:
        case EChange::kValue:
            return;
    }
}

void CWinControlMain::PatternsChanged(quint32 id) {
    for (CInstrumentStripCtrl* const strip : strips) {
        if (strip->Instrument().Id() == id) strip->PatternsChanged();
    }
}

// Not at once: a control of a strip may be in the middle of the click that has changed the list.
void CWinControlMain::RebuildSoon() {
    if (std::exchange(rebuildWanted, true)) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            const std::size_t before = strips.size();
            if (rebuildWanted) BuildStrips();
            // One that was added is looked for.
            if (before > 0 && strips.size() > before) ScrollTo(station.Selection().CurrentIndex());
        },
        Qt::QueuedConnection);
}

void CWinControlMain::BuildStrips() {
    rebuildWanted = false;
    for (CInstrumentStripCtrl* const strip : strips) Remove(*strip);
    strips.clear();
    const int room = StripRoom(SkinSize());
    for (const auto& instrument : station.Stack().Instruments()) {
        auto& strip = Add<CInstrumentStripCtrl>(instrument, context, room);
        strip.onDrag = [this](CInstrumentStripCtrl& dragged, int py, bool dropped) { DragStrip(dragged, py, dropped); };
        strips.push_back(&strip);
    }
    builtWidth = room;
    LayoutAndRefresh();
}

void CWinControlMain::Translate() {
    infoPanel = nullptr;
    strips.clear();
    RemoveAll();
    BuildMaster();
    BuildSong();
    BuildStrips();
    if (startPage == nullptr) return;
    banner->Translate();
    startPage->Renew();
}

void CWinControlMain::ShowSlots() {
    effects->ShowSlots();
    for (CInstrumentStripCtrl* const strip : strips) {
        strip->ShowContent();
        strip->Refresh();
    }
}

void CWinControlMain::StripChanged(quint32 id) {
    const auto found = std::find_if(strips.begin(), strips.end(),
                                    [id](const CInstrumentStripCtrl* strip) { return strip->Instrument().Id() == id; });
    if (found == strips.end()) return;
    if ((*found)->IsHeightRight()) {
        (*found)->ShowContent();
        (*found)->Refresh();
        return;
    }
    // One of its own controls may be in the middle of a click.
    QMetaObject::invokeMethod(
        this,
        [this, id] {
            for (CInstrumentStripCtrl* const strip : strips) {
                if (strip->Instrument().Id() == id) strip->Rebuild(strip->Width());
            }
            LayoutAndRefresh();
        },
        Qt::QueuedConnection);
}

int CWinControlMain::StripRoom(const QSize& size) {
    return std::max(size.width(), kNarrowest) - kScrollWidth - 3 * kMargin - 2;
}

// What the help at the foot leaves.
QSize CWinControlMain::AboveInfo(const QSize& size) { return {size.width(), std::max(1, size.height() - kInfoHeight)}; }

CInstrumentStripCtrl* CWinControlMain::Strip(int index) const {
    return index >= 0 && index < static_cast<int>(strips.size()) ? strips[static_cast<std::size_t>(index)] : nullptr;
}

QRect CWinControlMain::StripArea() const {
    const QSize size = AboveInfo(SkinSize());
    const int top = TopOfStrips();
    const int bottom = songShown ? SongTop(size) : size.height();
    return {0, top, size.width() - kScrollWidth - kMargin, std::max(0, bottom - top)};
}

QRect CWinControlMain::ClipOf(const CControl& control) const {
    const bool scrolled = &control == addButton || std::find(strips.begin(), strips.end(), &control) != strips.end();
    return scrolled ? StripArea() : CWinControl::ClipOf(control);
}

void CWinControlMain::Arrange(const QSize& size) {
    ArrangeBars(size);
    ArrangeSong(AboveInfo(size));
    scrollBar->SetVisible(!StripArea().isEmpty());
    scrollBar->SetPosition(size.width() - kScrollWidth - kMargin, StripArea().top());
    scrollBar->Resize(kScrollWidth, std::max(10, StripArea().height()));
    const int room = StripRoom(size);
    if (room != builtWidth) {
        builtWidth = room;
        for (CInstrumentStripCtrl* const strip : strips) strip->Rebuild(room);
    }
    PlaceStrips();
    PlaceStart();
}

// Where the strips lie, for the present scroll position.
void CWinControlMain::PlaceStrips() {
    stripsHeight = kAddHeight;
    for (const CInstrumentStripCtrl* const strip : strips) stripsHeight += strip->Height() + kStripGap;
    scrollBar->SetRange(static_cast<float>(stripsHeight), static_cast<float>(StripArea().height()));
    int top = StripArea().top() - static_cast<int>(scrollPosition.Get());
    for (CInstrumentStripCtrl* const strip : strips) {
        strip->SetPosition(kMargin, top);
        top += strip->Height() + kStripGap;
    }
    addButton->SetPosition(kMargin, top + 1);
}

void CWinControlMain::Scroll() {
    PlaceStrips();
    const QRect area = StripArea();
    Canvas().SetClip(area);
    Canvas().Fill(area, Palette().Colour(QStringLiteral("window")));
    for (CInstrumentStripCtrl* const strip : strips) {
        strip->Layout(0, 0, area);
        strip->Refresh(false);
    }
    addButton->Layout(0, 0, area);
    addButton->Refresh(false);
    if (strips.empty()) DrawWelcome();
    BlitRectangle(area);
}

void CWinControlMain::ScrollTo(int index) {
    const CInstrumentStripCtrl* const strip = Strip(index);
    if (strip == nullptr) return;
    const QRect area = StripArea();
    const int above = area.top() - strip->Y();
    const int below = strip->Y() + strip->Height() - area.bottom();
    const int way = above > 0 ? -above : below > 0 ? below : 0;
    if (way != 0) scrollBar->SetValueAndUpdate(true, true, scrollPosition.Get() + static_cast<float>(way));
}

void CWinControlMain::Reveal(CControl& control) {
    const CControl* top = &control;
    while (top->Parent() != nullptr) top = top->Parent();
    for (const CInstrumentStripCtrl* const strip : strips) {
        if (strip == top) return ScrollTo(strip->Index());
    }
    const int below = control.Y() + control.Height() - StripArea().bottom();
    if (&control == addButton && below > 0) {
        scrollBar->SetValueAndUpdate(true, true, scrollPosition.Get() + static_cast<float>(below));
    }
}

// Over the strips the wheel scrolls unless the control under the mouse has a use for it.
void CWinControlMain::wheelEvent(QWheelEvent* event) {
    const QPoint point = ToSkin(event->position());
    CControl* const under = Mouse().Hovered();
    const bool takes = under != nullptr && under->TakesWheel();
    if (takes || !StripArea().contains(point)) return CWinControl::wheelEvent(event);
    scrollBar->OnMouseWheel(point.x(), point.y(), WheelWordOf(*event));
    event->accept();
}

// --- Dragging a strip to another place ------------------------------------------------------------------------

int CWinControlMain::PlaceAt(int py) const {
    int place = 0;
    for (const CInstrumentStripCtrl* const strip : strips) {
        if (py > strip->Y() + strip->Height() / 2) ++place;
    }
    return place;
}

void CWinControlMain::DragStrip(CInstrumentStripCtrl& strip, int py, bool dropped) {
    const int from = strip.Index();
    const int place = PlaceAt(py);
    if (dropped) {
        dropPlace = -1;
        const int to = place > from ? place - 1 : place;
        // The strip that tells is gone afterwards.
        QMetaObject::invokeMethod(
            this,
            [this, from, to] {
                if (to != from) station.Stack().MoveInstrument(from, to);
                LayoutAndRefresh();
            },
            Qt::QueuedConnection);
        return;
    }
    if (place == dropPlace) return;
    dropPlace = place;
    Scroll();
    const CInstrumentStripCtrl* const next = Strip(place);
    const int line = next != nullptr ? next->Y() - 3 : addButton->Y() - 3;
    Canvas().SetClip(StripArea());
    Canvas().Fill(QRectF(kMargin, line, strip.Width(), 3), Palette().Accent(ESection::kPattern));
    BlitRectangle(StripArea());
}

// --- Drawing -----------------------------------------------------------------------------------------------------

void CWinControlMain::DrawBackground() {
    if (strips.empty()) DrawWelcome();
}

void CWinControlMain::DrawWelcome() {
    const QRect area = StripArea();
    if (area.height() < 100) return;
    Canvas().SetClip(area);
    const QRectF middle(area.left(), area.top() + std::max(40, area.height() / 3), area.width(), 28);
    Canvas().Text(middle, Text("This project is empty"), Palette().Colour(QStringLiteral("text")), 20, Qt::AlignCenter,
                  true);
    Canvas().Text(middle.translated(0, 32), Text("Add an instrument with the button on the left, drop a plug-in here,"),
                  Palette().Colour(QStringLiteral("textMuted")), 13);
    Canvas().Text(middle.translated(0, 52),
                  Text("or open one of the examples from the File menu. Space plays and stops."),
                  Palette().Colour(QStringLiteral("textMuted")), 13);
}

// What the mouse holds on a keyboard goes up with the window, as nobody sees it any more.
bool CWinControlMain::event(QEvent* event) {
    // Delete is the pane's own key before it is the menu's: held, it removes what is pressed.
    if (event->type() == QEvent::ShortcutOverride && song->IsActive() &&
        static_cast<const QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::WindowDeactivate) ReleaseKeys(false);
    return CWinControl::event(event);
}

void CWinControlMain::ReleaseKeys(bool all) {
    for (CInstrumentStripCtrl* const strip : strips) strip->ReleaseKeys(all);
}

// While nothing plays, nothing was changed and nothing was painted for a while, a look now and then is enough.
bool CWinControlMain::IsAtRest() {
    constexpr std::uint64_t kStill = 2'000'000'000;  // nanoseconds
    constexpr int kRestingTicks = 4;                 // of which one looks
    const std::uint64_t now = Nanoseconds();
    const std::uint64_t changes = station.Changes().Revision();
    const bool moves = station.Audio().Picture().playing || seenPixels != PaintedPixels() || seenChanges != changes;
    if (moves) movedLast = now;
    seenPixels = PaintedPixels();
    seenChanges = changes;
    restingTicks = (restingTicks + 1) % kRestingTicks;
    return now - movedLast > kStill && restingTicks != 0;
}

void CWinControlMain::FollowEngine() {
    if (IsAtRest()) return;
    const CTransportControl::Releases& releases = station.Transport().KeysReleased();
    if (released != releases) ReleaseKeys(released.panics != releases.panics);
    released = releases;
    const PlayPicture& picture = station.Audio().Picture();
    const std::uint32_t soloed = station.Stack().SoloedId();
    for (std::size_t index = 0; index < strips.size(); ++index) {
        CInstrumentStripCtrl& strip = *strips[index];
        if (strip.ShownRectangle().isEmpty()) continue;
        const InstrumentPicture* shown = nullptr;
        for (std::size_t offset = 0; offset < picture.instrumentCount && shown == nullptr; ++offset) {
            const InstrumentPicture& candidate = picture.instruments[(index + offset) % picture.instrumentCount];
            if (candidate.id == strip.Instrument().Id()) shown = &candidate;
        }
        strip.FollowSilence(soloed);
        strip.Follow(shown);
    }
    FollowHint();
    FollowStart();
    song->FollowEngine();
    Tick();
}

}  // namespace quib
