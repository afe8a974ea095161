// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CPlayListCtrlEx.h"

#include <algorithm>

#include "controls/CInfoCtrl.h"
#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "document/CWorkstation.h"
#include "editors/playlist/CSongPlayhead.h"
#include "editors/playlist/ItemText.h"
#include "editors/playlist/RulerPainter.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kFirstKey = 16;
constexpr int kLastKey = 105;
constexpr int kKeypad1 = 97;
constexpr int kKeypad9 = 105;
}  // namespace

CPlayListCtrlEx::CPlayListCtrlEx(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                 int newHeight, int newHeaderHeight, const SongParts& songParts,
                                 std::shared_ptr<CInstrument> instrument)
    : CPaneCtrl(window, number, left, top, newWidth, newHeight),
      headerHeight(newHeaderHeight),
      parts(songParts),
      loop(songParts.station.Song(), songParts.station.Changes(), songParts.view) {
    takesMiddleButton = true;
    takesWheel = true;
    doubleClickIsClick = false;
    section = ESection::kTransport;
    infoString = instrument ? 490 : 491;
    if (!instrument) return;
    edit = std::make_unique<CPlaylistEdit>(songParts.station.Changes(), std::move(instrument));
    gestures = std::make_unique<CPlaylistGestures>(*edit, parts.view, static_cast<IPlaylistSurface&>(*this));
    gestures->currentPattern = std::clamp(Instrument().patternSelected.Get(), 0, kPatternCount - 1);
}

void CPlayListCtrlEx::Resize(int newWidth, int newHeight) {
    if (!IsRuler()) headerHeight = newHeight;
    SetSize(newWidth, newHeight);
}

// --- The mouse

void CPlayListCtrlEx::SyncModifiers() {
    if (!gestures) return;
    const bool both = Owner().IsFine();
    gestures->SetModifiers(shift || (both && !Owner().IsControlHeld()), control || Owner().IsControlHeld(),
                           Owner().IsAltHeld());
}

void CPlayListCtrlEx::OnLButtonDown(int px, int py, int button) {
    if (px < X()) return;
    if (IsRuler()) return PressRuler(px, py, button);
    parts.host.MakeCurrent(*this);
    SyncModifiers();
    gestures->Press(button, px - X());
}

void CPlayListCtrlEx::PressRuler(int px, int py, int button) {
    const int place = px - X();
    if (button == 2) {
        panX = px;
        return;
    }
    if (button == 1) {
        const int raster = std::max(1, static_cast<int>(parts.view.time.meter.StepsPerBeat()));
        return parts.host.ShowRulerMenu(parts.view.SnapDown(parts.view.time.StepAt(place), raster));
    }
    if (IsInLoopBand(py)) {
        if (parts.station.Audio().settings.songMode.Get() != 0) loop.Press(place);
        return;
    }
    if (Owner().IsFine() && !Owner().IsControlHeld()) return loop.PressNew(place);
    locating = true;
    OnMouseMove(px, py);
}

void CPlayListCtrlEx::OnMouseMove(int px, int py) {
    if (IsRuler()) return MoveOnRuler(px, py);
    SyncModifiers();
    gestures->Move(px - X());
    if (gestures->IsBusy()) return parts.host.DraggedTo(*this, py);
    TellItem(px - X());
}

// Over an item the help tells what it plays.
void CPlayListCtrlEx::TellItem(int place) {
    const std::int32_t item = gestures->ItemAt(place);
    if (std::exchange(toldItem, item) == item || !InfoTextsAreShown(Owner().Settings(), 1)) return;
    if (item >= 0) return parts.host.Tell(ItemText(*edit, item, parts.view));
    if (Owner().infoPanel != nullptr) Owner().infoPanel->Show(infoString);
}

void CPlayListCtrlEx::MoveOnRuler(int px, int py) {
    const int place = px - X();
    if (panX >= 0) {
        parts.host.ScrollBy(panX - px);
        panX = px;
        return;
    }
    if (loop.IsBusy()) {
        loop.Move(place, Owner().IsAltHeld());
        return parts.host.LoopMoved();
    }
    if (locating) {
        const int raster =
            Owner().IsAltHeld() ? 1 : std::max(1, static_cast<int>(parts.view.time.meter.StepsPerBeat()));
        return parts.host.Locate(parts.view.SnapDown(parts.view.time.StepAt(place), raster));
    }
    using EDrag = CLoopGestures::EDrag;
    const EDrag under = IsInLoopBand(py) ? loop.HitTest(place) : EDrag::kNone;
    Owner().setCursor(under == EDrag::kStart || under == EDrag::kEnd ? Qt::SizeHorCursor
                      : under == EDrag::kWhole                       ? Qt::OpenHandCursor
                                                                     : Qt::ArrowCursor);
}

void CPlayListCtrlEx::OnLButtonUp(int px, int /*py*/, int /*button*/) {
    if (!IsRuler()) return parts.host.Dropped(*this) ? void() : gestures->Release(px - X());
    loop.Release();
    locating = false;
    panX = -1;
    parts.host.LoopMoved();
}

void CPlayListCtrlEx::OnDoubleClick(int px, int py) {
    if (IsRuler()) return PressRuler(px, py, 0);
    const std::int32_t item = gestures->ItemAt(px - X());
    if (item >= 0) return parts.host.OpenPattern(edit->State().Items()[static_cast<std::size_t>(item)].pattern);
    OnLButtonDown(px, py, 0);
    pressed = true;
}

void CPlayListCtrlEx::OnMouseWheel(int px, int /*py*/, std::uint32_t word) {
    if (!IsRuler() && Owner().IsAltHeld()) {
        const std::int32_t item = gestures->ItemAt(px - X());
        if (item < 0) return;
        if (!IsSelected(edit->State(), static_cast<std::uint32_t>(item))) {
            edit->Select({static_cast<std::uint32_t>(item)});
        }
        const int now = edit->State().Items()[static_cast<std::size_t>(item)].pattern;
        return ChoosePattern(now + (NotchesOf(word) > 0 ? 1 : -1));
    }
    parts.host.TurnWheel(px - X(), word);
}

void CPlayListCtrlEx::OnMouseLeave() {
    toldItem = -1;
    Owner().unsetCursor();
}

bool CPlayListCtrlEx::IsDragging() const noexcept {
    return IsRuler() ? loop.IsBusy() || locating : gestures->ScrollsAtEdges();
}

void CPlayListCtrlEx::ShowGuests(std::vector<StepRange> ranges) {
    guests = std::move(ranges);
    LaneChanged();
}

void CPlayListCtrlEx::SetCursor(ESongCursor cursor) {
    constexpr std::array kShapes = {Qt::ArrowCursor, Qt::PointingHandCursor, Qt::SizeAllCursor,
                                    Qt::CrossCursor, Qt::SizeHorCursor,      Qt::ClosedHandCursor};
    Owner().setCursor(kShapes[static_cast<std::size_t>(cursor)]);
}

void CPlayListCtrlEx::EndRefused() {
    parts.host.Tell(Text("An end in the middle needs an empty pattern, and none of the sixteen is empty."));
}

// --- The keys

void CPlayListCtrlEx::OnKeyDown(int key) {
    if (key < kFirstKey || key > kLastKey) return;
    if (key == virtualKey::kShift) shift = true;
    if (key == virtualKey::kControl) control = true;
    if (IsRuler()) {
        if (key == virtualKey::kEscape) loop.Cancel();
        return;
    }
    if (key == virtualKey::kShift || key == virtualKey::kControl) return SyncModifiers();
    if (!parts.host.HasKeys(*this)) return;
    if (key == virtualKey::kDelete) return gestures->SetDeleteHeld(true);
    if (key == virtualKey::kEscape) {
        gestures->Cancel();
        parts.host.DraggedTo(*this, Y());
        edit->SelectNone();
        return LaneChanged();
    }
    RepeatKey(key);
}

void CPlayListCtrlEx::RepeatKey(int key) {
    if (key == virtualKey::kUp) return ChoosePattern(CurrentPattern() + 1);
    if (key == virtualKey::kDown) return ChoosePattern(CurrentPattern() - 1);
    if (key >= kKeypad1 && key <= kKeypad9) return ChoosePattern(key - kKeypad1);
    if (key == virtualKey::kLeft) return Nudge(-1);
    if (key == virtualKey::kRight) return Nudge(1);
}

void CPlayListCtrlEx::OnKeyUp(int key) {
    if (key == virtualKey::kShift) shift = false;
    if (key == virtualKey::kControl) control = false;
    if (IsRuler()) return;
    if (key == virtualKey::kShift || key == virtualKey::kControl) return SyncModifiers();
    if (key != virtualKey::kDelete || !parts.host.HasKeys(*this)) return gestures->SetDeleteHeld(false);
    gestures->SetDeleteHeld(false);
    if (gestures->HasSwept() || gestures->IsBusy() || edit->State().selection.empty()) return;
    edit->Apply(RemoveItems(edit->State(), edit->Patterns(), edit->State().selection), TextKey("Remove items"));
}

void CPlayListCtrlEx::SetCurrentPattern(int pattern) {
    const int next = std::clamp(pattern, 0, kPatternCount - 1);
    if (next == CurrentPattern()) return;
    gestures->currentPattern = next;
    parts.host.CurrentPatternChanged(*this);
}

void CPlayListCtrlEx::ChoosePattern(int pattern) {
    SetCurrentPattern(pattern);
    if (edit->State().selection.empty() || gestures->IsBusy()) return;
    edit->Apply(SetItemPattern(edit->State(), CurrentPattern()), TextKey("Pattern of an item"));
}

// By the raster; by a bar with Ctrl, a step with Shift; with Alt the end of the items is moved.
void CPlayListCtrlEx::Nudge(int way) {
    if (edit->State().selection.empty() || gestures->IsBusy()) return;
    const bool bar = Owner().IsControlHeld();
    const bool step = Owner().IsFine() && !bar;
    const int raster = bar ? static_cast<int>(parts.view.time.meter.StepsPerBar()) : step ? 1 : parts.view.Raster();
    if (!Owner().IsAltHeld()) {
        return edit->Apply(MoveItems(edit->State(), edit->Patterns(), way * raster), TextKey("Move items"));
    }
    const std::uint32_t item = edit->State().selection.back();
    const StepRange range = edit->ItemRange(static_cast<std::int32_t>(item), parts.view.songEnd);
    const auto next = SetItemEnd(edit->State(), edit->Patterns(), item, range.end + way * raster);
    next ? edit->Apply(*next, TextKey("Length of an item")) : EndRefused();
}

// --- Drawing

void CPlayListCtrlEx::DocumentChanged() {
    if (edit) edit->Refresh();
    LaneChanged();
}

void CPlayListCtrlEx::SetSounding(double step) {
    const auto spanOf = [this](double place) { return place < 0 ? -1 : edit->SpanAt(place); };
    const bool same = spanOf(sounding) == spanOf(step);
    sounding = step;
    if (!same) LaneChanged();
}

void CPlayListCtrlEx::Paint(const QRect& part) {
    parts.masks.SetScale(Canvas().Scale());
    parts.playhead.Painted(OnCanvas(part));
    const SongDrawing drawing{Canvas(), parts.masks,    parts.colours, parts.view, QPoint(X(), Y()),
                              part,     OnCanvas(part), Width(),       Height()};
    Canvas().SetClip(OnCanvas(part));
    if (IsRuler()) {
        DrawRuler(drawing, LoopBand());
        return DrawMarks(drawing, true);
    }
    painter.Draw(drawing, *edit, {track, sounding});
    DrawMarks(drawing, false);
    const auto frame = [&](double left, double right) {
        drawing.Fill(left, 0, right - left, Height(), WithOpacity(parts.colours.text, 0.12F));
        drawing.Frame(left, 0, right - left, Height(), 1, parts.colours.textMuted);
    };
    for (const StepRange& range : guests) frame(parts.view.time.XOf(range.first), parts.view.time.XOf(range.end));
    if (const auto marquee = gestures->Marquee()) frame(marquee->first, marquee->second);
}

}  // namespace quib
