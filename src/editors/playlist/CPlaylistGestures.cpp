// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CPlaylistGestures.h"

#include <algorithm>
#include <cstdlib>

#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kShake = 3;        // pixels that a click may move
constexpr int kNarrowItem = 12;  // pixels below which an item only moves
constexpr int kEndZone = 8;
constexpr int kMarkZone = 7;  // right of a definite end
}  // namespace

std::int32_t CPlaylistGestures::ItemAt(int x) const {
    const double step = view.time.StepAt(x);
    const std::ptrdiff_t index = edit.SpanAt(step);
    if (index < 0) return -1;
    const PlaylistSpan& span = edit.Spans()[static_cast<std::size_t>(index)];
    if (edit.IsEndMark(span.entry)) {
        if (index == 0 || x > view.time.XOf(span.first) + kMarkZone) return -1;
        return edit.Spans()[static_cast<std::size_t>(index - 1)].entry;
    }
    return step < span.end ? span.entry : -1;
}

bool CPlaylistGestures::IsOverEnd(std::int32_t item, int x) const {
    const StepRange range = edit.ItemRange(item, std::max(view.songEnd, 1));
    const double left = view.time.XOf(range.first);
    const double right = view.time.XOf(range.end);
    if (right - left < kNarrowItem) return false;
    const double zone = std::min<double>(kEndZone, (right - left) / 3);
    return x >= right - zone && x <= right + kMarkZone;
}

ESongCursor CPlaylistGestures::CursorAt(int x) const {
    if (deleteHeld) return ESongCursor::kCross;
    const std::int32_t item = ItemAt(x);
    if (item < 0) return ESongCursor::kArrow;
    return IsOverEnd(item, x) ? ESongCursor::kResize : ESongCursor::kHand;
}

void CPlaylistGestures::Press(int button, int x) {
    if (mode != EMode::kNone) Cancel();
    pressButton = button;
    pressX = mouseX = x;
    pressStep = view.time.StepAt(x);
    moved = refused = resizeByKey = copyByKey = elsewhere = false;
    dragSteps = 0;
    hit = -1;
    if (button == 2) {
        mode = EMode::kPan;
        return surface.SetCursor(ESongCursor::kPan);
    }
    if (deleteHeld) {
        mode = EMode::kSweep;
        edit.Begin();
        return Sweep(x);
    }
    hit = ItemAt(x);
    hit >= 0 ? PressItem(button, x) : PressEmpty(button, x);
    surface.LaneChanged();
}

void CPlaylistGestures::PressItem(int button, int x) {
    const auto item = static_cast<std::uint32_t>(hit);
    surface.SetCursor(button == 1 ? ESongCursor::kMoveAll : ESongCursor::kHand);
    mode = button == 0 && IsOverEnd(hit, x) ? EMode::kEnd : EMode::kItem;
    hitRange = edit.ItemRange(hit, std::max(view.songEnd, 1));
    if (IsSelected(edit.State(), item)) return;
    if (!control) {
        edit.SelectNone();
        surface.SelectionCleared();
    }
    PlaylistSelection selection = edit.State().selection;
    selection.push_back(item);
    edit.Select(std::move(selection));
}

void CPlaylistGestures::PressEmpty(int button, int x) {
    surface.SetCursor(button == 1 ? ESongCursor::kCross : ESongCursor::kArrow);
    if (!control) edit.SelectNone();
    if (button == 1 || shift) {
        mode = EMode::kMarquee;
        marqueeBase = edit.State().selection;
        return;
    }
    mode = EMode::kPaint;
    paintFirst = view.SnapDown(pressStep, Raster());
    // The bar's beginning may lie under another item: the free place begins behind it.
    const std::ptrdiff_t index = edit.SpanAt(pressStep);
    if (index >= 0) {
        const PlaylistSpan& span = edit.Spans()[static_cast<std::size_t>(index)];
        const int end = edit.IsEndMark(span.entry) ? span.first : span.end;
        if (end <= pressStep) paintFirst = std::max(paintFirst, end);
    }
    edit.Begin();
    Paint(x);
}

void CPlaylistGestures::Move(int x) {
    const int way = x - mouseX;
    mouseX = x;
    if (mode == EMode::kNone) return surface.SetCursor(CursorAt(x));
    if (mode == EMode::kPan) return surface.ScrollBy(-way);
    if (mode == EMode::kSweep) return Sweep(x);
    moved = moved || std::abs(x - pressX) > kShake;
    if (!moved) return;
    switch (mode) {
        case EMode::kItem:
            resizeByKey ? DragEnd(x) : DragItem(x);
            break;
        case EMode::kEnd:
            DragEnd(x);
            break;
        case EMode::kPaint:
            Paint(x);
            break;
        case EMode::kMarquee:
            SelectMarquee();
            break;
        default:
            break;
    }
    surface.LaneChanged();
}

void CPlaylistGestures::DragItem(int x) {
    if (!edit.IsOpen()) edit.Begin();
    const int raster = Raster();
    const double wanted = hitRange.first + view.time.StepAt(x) - view.time.StepAt(pressX);
    const int steps = view.SnapNearest(wanted, raster) - hitRange.first;
    // The way back to the press is none, wherever the item stands.
    dragSteps = std::abs(wanted - hitRange.first) * 2 < raster ? 0 : steps;
    if (elsewhere) return edit.Preview(edit.Start());
    edit.Preview(copyByKey ? CopyItems(edit.Start(), edit.Patterns(), dragSteps)
                           : MoveItems(edit.Start(), edit.Patterns(), dragSteps));
}

void CPlaylistGestures::SetElsewhere(bool on) {
    if (elsewhere == on) return;
    elsewhere = on;
    moved = moved || on;
    if (mode == EMode::kItem) Move(mouseX);
}

void CPlaylistGestures::DragEnd(int x) {
    if (!edit.IsOpen()) edit.Begin();
    const double wanted = hitRange.end + view.time.StepAt(x) - view.time.StepAt(pressX);
    const auto next = SetItemEnd(edit.Start(), SongPatternsOf(*edit.Instrument()), static_cast<std::uint32_t>(hit),
                                 view.SnapNearest(wanted, Raster()));
    if (next) return edit.Preview(*next);
    if (!std::exchange(refused, true)) surface.EndRefused();
}

void CPlaylistGestures::Paint(int x) {
    const int end = moved ? view.SnapUp(view.time.StepAt(x), Raster()) : paintFirst + 1;
    edit.Preview(PaintItem(edit.Start(), edit.Patterns(), currentPattern, paintFirst, std::max(end, paintFirst + 1)));
}

std::optional<std::pair<int, int>> CPlaylistGestures::Marquee() const {
    if (mode != EMode::kMarquee || !moved) return std::nullopt;
    return std::pair{std::min(pressX, mouseX), std::max(pressX, mouseX)};
}

void CPlaylistGestures::SelectMarquee() {
    const double from = view.time.StepAt(std::min(pressX, mouseX));
    const double to = view.time.StepAt(std::max(pressX, mouseX));
    PlaylistSelection chosen = marqueeBase;
    for (const PlaylistSpan& span : edit.Spans()) {
        if (span.end > from && span.first < to && !edit.IsEndMark(span.entry)) {
            chosen.push_back(static_cast<std::uint32_t>(span.entry));
        }
    }
    edit.Select(std::move(chosen));
}

void CPlaylistGestures::Sweep(int x) {
    const std::int32_t item = ItemAt(x);
    if (item < 0) return;
    swept = true;
    edit.Preview(RemoveItems(edit.State(), edit.Patterns(), {static_cast<std::uint32_t>(item)}));
    surface.LaneChanged();
}

const char* CPlaylistGestures::StepName() const noexcept {
    if (mode == EMode::kSweep) return TextKey("Remove items");
    if (mode == EMode::kPaint) return TextKey("Add item");
    if (mode == EMode::kEnd || resizeByKey) return TextKey("Length of an item");
    return copyByKey ? TextKey("Copy items") : TextKey("Move items");
}

void CPlaylistGestures::Release(int x) {
    mouseX = x;
    if (mode == EMode::kNone) return;
    const bool wantsMenu = pressButton == 1 && !moved && mode != EMode::kSweep;
    edit.Finish(StepName());
    mode = EMode::kNone;
    surface.SetCursor(CursorAt(x));
    surface.LaneChanged();
    if (wantsMenu) surface.ShowMenu();
}

void CPlaylistGestures::Cancel() {
    edit.Cancel();
    mode = EMode::kNone;
    hit = -1;
    surface.LaneChanged();
}

void CPlaylistGestures::SetModifiers(bool shiftHeld, bool controlHeld, bool altHeld) {
    const bool same = shift == shiftHeld && control == controlHeld && alt == altHeld;
    const bool dragging = mode == EMode::kItem;
    if (dragging && shiftHeld != shift) resizeByKey = shiftHeld;
    if (dragging && controlHeld != control) copyByKey = controlHeld;
    shift = shiftHeld;
    control = controlHeld;
    alt = altHeld;
    if (!same && moved && mode != EMode::kNone) Move(mouseX);
}

void CPlaylistGestures::SetDeleteHeld(bool held) {
    if (held && !deleteHeld) swept = false;
    deleteHeld = held;
}

}  // namespace quib
