// SPDX-License-Identifier: GPL-3.0-or-later
// The song pane's commands: its menu, its keys, and those of the Edit menu.
#include <QMenu>
#include <algorithm>

#include "controls/CLabelCtrl.h"
#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"
#include "editors/playlist/CSongPane.h"
#include "texts/Texts.h"

namespace quib {

// What the tools for time mean: the selection, else the loop, else the bar of the playhead.
StepRange CSongPane::Section() const {
    if (const CPlayListCtrlEx* const lane = Current()) {
        const StepRange range = RangeOf(lane->Edit().State(), lane->Edit().Patterns(), view.songEnd);
        if (!range.IsEmpty()) return range;
    }
    if (view.loopOn && !view.loop.IsEmpty()) return view.loop;
    const int bar = station.Song().StepsPerBar();
    const int first = view.SnapDown(std::max(0.0, view.playhead), bar);
    return {first, first + bar};
}

void CSongPane::AskMarker(int step) {
    QString known;
    for (const SongMarker& marker : station.Song().Markers()) {
        if (marker.step == step) known = QString::fromStdString(marker.name);
    }
    ruler->onTextEntry = [this, step](CControl&, const QString& text) { station.Song().SetMarker(step, text); };
    ruler->entryText = known.isEmpty() ? Text("Part") : known;
    ruler->entryTitle = Text("Marker");
    Owner().RunManualEntry(*ruler);
    ruler->entryTitle.clear();  // a double click is no way to it
}

// What is performed are the patterns, so they are what plays.
void CSongPane::Perform() {
    CValue& mode = station.Audio().settings.songMode;
    if (!station.Performance().Armed().IsOn() || !mode.IsOn()) return;
    mode.Set(0);
    station.Changes().ValueEdited(EnginePart(mode), 1.0F, 0.0F, Text("Song mode"));
    Tell(TextKey("Pattern mode: play, and choose patterns. The take is written into the song when you stop."));
}

void CSongPane::LoopSelection() { station.Song().SetLoop(Section()); }

void CSongPane::MakeUnique() {
    CPlayListCtrlEx* const lane = Current();
    if (lane == nullptr) return;
    if (lane->Edit().State().selection.empty()) return Tell(TextKey("Select the items first."));
    if (!station.Song().MakeUnique(lane->Edit().Instrument(), lane->Edit().State())) {
        Tell(TextKey("All sixteen patterns are used."));
    }
}

void CSongPane::SplitAtPlayhead() {
    CPlayListCtrlEx* const lane = Current();
    if (lane == nullptr) return;
    CPlaylistEdit& edit = lane->Edit();
    const auto split = SplitItems(edit.State(), edit.Patterns(), view.SnapDown(view.playhead, view.Raster()));
    split ? edit.Apply(*split, TextKey("Split item"))
          : Tell(TextKey("A repeat can only be split where its pattern begins again."));
}

// The selection once more behind itself.
void CSongPane::Duplicate() {
    CPlayListCtrlEx* const lane = Current();
    if (lane == nullptr || lane->Edit().State().selection.empty()) return;
    CPlaylistEdit& edit = lane->Edit();
    const StepRange range = RangeOf(edit.State(), edit.Patterns(), view.songEnd);
    edit.Apply(CopyItems(edit.State(), edit.Patterns(), range.end - range.first), TextKey("Copy items"));
}

void CSongPane::ShowItemMenu(CPlayListCtrlEx& lane) {
    PopUpMenu(Owner(), [this, &lane](QMenu& menu) { FillItemMenu(menu, lane); });
}

void CSongPane::FillItemMenu(QMenu& menu, CPlayListCtrlEx& lane) {
    CPlaylistEdit& edit = lane.Edit();
    const bool any = !edit.State().selection.empty();
    const auto add = [&menu](const char* text, bool usable, const std::function<void()>& run) {
        QAction* const action = menu.addAction(Text(text), run);
        action->setEnabled(usable);
        return action;
    };
    add(TextKey("Open in the piano roll"), any, [this, &edit] {
        if (edit.State().selection.empty()) return;
        OpenPattern(edit.State().Items()[edit.State().selection.front()].pattern);
    });
    FillPatterns(*menu.addMenu(Text("Pattern")));
    const bool repeats = any && edit.State().Items()[edit.State().selection.front()].repeat != 0 &&
                         !edit.HasEndMark(static_cast<std::int32_t>(edit.State().selection.front()));
    QAction* const repeat = add(TextKey("Repeat without end"), any, [&edit, repeats] {
        edit.Apply(RepeatItems(edit.State(), edit.Patterns(), !repeats), TextKey("Length of an item"));
    });
    repeat->setCheckable(true);
    repeat->setChecked(repeats);
    add(TextKey("Make unique"), any, [this] { MakeUnique(); });
    add(TextKey("Split at the playhead"), true, [this] { SplitAtPlayhead(); });
    menu.addSeparator();
    add(TextKey("Cut"), any, [this] { Edit(EEdit::kCut); });
    add(TextKey("Copy"), any, [this] { Edit(EEdit::kCopy); });
    add(TextKey("Paste"), !clipboard.empty(), [this] { Edit(EEdit::kPaste); });
    add(TextKey("Duplicate"), any, [this] { Duplicate(); });
    add(TextKey("Delete"), any, [this] { Edit(EEdit::kDelete); });
    menu.addSeparator();
    add(TextKey("Loop selection"), true, [this] { LoopSelection(); });
    add(TextKey("Insert time"), true, [this] {
        const StepRange range = Section();
        station.Song().InsertTime(range.first, range.end - range.first);
    });
    add(TextKey("Delete time"), true, [this] { station.Song().DeleteTime(Section()); });
    add(TextKey("Duplicate section"), true, [this] { station.Song().DoubleSection(Section()); });
}

// --- Keys

void CSongPane::OnKeyDown(int key) {
    if (IsActive()) RunKey(key);
}

bool CSongPane::RepeatKey(int key) {
    CPlayListCtrlEx* const lane = Current();
    if (!IsActive() || lane == nullptr) return false;
    if (!RunKey(key)) lane->RepeatKey(key);
    return true;
}

bool CSongPane::RunKey(int key) {
    CPlayListCtrlEx* const lane = Current();
    if (lane == nullptr) return false;
    CPlaylistEdit& edit = lane->Edit();
    const bool any = !edit.State().selection.empty();
    const int bar = station.Song().StepsPerBar();
    const int now = static_cast<int>(std::max(0.0, view.playhead));
    if (Owner().IsControlHeld()) {
        if (key == 'L') LoopSelection();
        if (key == 'D') Duplicate();
        if (key == 'K') SplitAtPlayhead();
        return key == 'L' || key == 'D' || key == 'K';
    }
    switch (key) {
        case virtualKey::kLeft:
            if (!any) Locate(std::max(0, (now - 1) / bar * bar));
            return !any;
        case virtualKey::kRight:
            if (!any) Locate((now / bar + 1) * bar);
            return !any;
        case virtualKey::kHome:
            Locate(0);
            return true;
        case virtualKey::kEnd:
            Locate(view.songEnd);
            return true;
        case virtualKey::kPlus:
        case virtualKey::kMinus:
            lane->ChoosePattern(lane->CurrentPattern() + (key == virtualKey::kPlus ? 1 : -1));
            return true;
        case virtualKey::kReturn:
            edit.Apply(
                AddItem(edit.State(), edit.Patterns(), lane->CurrentPattern(), view.SnapDown(now, view.Raster())),
                TextKey("Add item"));
            return true;
        default:
            return false;
    }
}

bool CSongPane::SelectNext(int way) {
    CPlayListCtrlEx* const lane = Current();
    if (lane == nullptr) return false;
    CPlaylistEdit& edit = lane->Edit();
    PlaylistSelection order = SelectAll(edit.State(), edit.Patterns()).selection;
    if (order.empty()) return false;
    const auto start = [&edit](std::uint32_t item) { return edit.State().Items()[item].start; };
    std::sort(order.begin(), order.end(), [&](auto left, auto right) { return start(left) < start(right); });
    const auto count = static_cast<int>(order.size());
    int place = way > 0 ? -1 : count;
    if (!edit.State().selection.empty()) {
        place = static_cast<int>(std::find(order.begin(), order.end(), edit.State().selection.front()) - order.begin());
    }
    const std::uint32_t next = order[static_cast<std::size_t>(std::clamp(place + way, 0, count - 1))];
    edit.Select({next});
    const double left = view.time.XOf(start(next));
    if (left < 0 || left > view.time.Width() - 40) ScrollBy(static_cast<int>(left) - 40);
    lane->Refresh();
    return true;
}

// --- The Edit menu

bool CSongPane::CanEdit(EEdit command) const {
    const CPlayListCtrlEx* const lane = Current();
    if (!IsActive() || lane == nullptr) return false;
    if (command == EEdit::kPaste) return !clipboard.empty();
    if (command == EEdit::kSelectAll) return !lane->Edit().State().Items().empty();
    return !lane->Edit().State().selection.empty();
}

void CSongPane::Edit(EEdit command) {
    CPlayListCtrlEx* const lane = Current();
    if (lane == nullptr) return;
    CPlaylistEdit& edit = lane->Edit();
    if (command == EEdit::kCut || command == EEdit::kCopy) clipboard = CopiedItems(edit.State(), edit.Patterns());
    switch (command) {
        case EEdit::kCut:
        case EEdit::kDelete:
            edit.Apply(RemoveItems(edit.State(), edit.Patterns(), edit.State().selection), TextKey("Remove items"));
            break;
        case EEdit::kPaste:
            edit.Apply(PasteItems(edit.State(), clipboard, view.SnapDown(std::max(0.0, view.playhead), view.Raster())),
                       TextKey("Paste items"));
            break;
        case EEdit::kSelectAll:
            edit.Select(SelectAll(edit.State(), edit.Patterns()).selection);
            break;
        case EEdit::kCopy:
            break;
    }
    lane->Refresh();
}

}  // namespace quib
