// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/playlist/CSongCommands.h"

#include <algorithm>
#include <array>

#include "controls/VirtualKeys.h"
#include "editors/base/WindowKeys.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kRoomOfNext = 40;  // pixels that an item chosen by a key is away from the edges

struct LetterCommand {
    WindowKey key;
    void (CSongCommands::*run)();
};
constexpr std::array kLetters = {
    LetterCommand{{Qt::CTRL | Qt::Key_L, TextKey("Loop selection")}, &CSongCommands::LoopSelection},
    LetterCommand{{Qt::CTRL | Qt::Key_D, TextKey("Duplicate")}, &CSongCommands::Duplicate},
    LetterCommand{{Qt::CTRL | Qt::Key_K, TextKey("Split at the position")}, &CSongCommands::SplitAtPlayhead},
};
constexpr std::array kOtherKeys = {
    WindowKey{Qt::Key_Up, TextKey("Moves the selected items, else the position by a bar"), WindowKey::EKind::kLevel},
    WindowKey{Qt::Key_Up, TextKey("Pattern of the selected items, or of the next ones"), WindowKey::EKind::kUpright},
    WindowKey{Qt::KeypadModifier | Qt::Key_1, TextKey("Pattern 1; the others as far as 9")},
    WindowKey{Qt::Key_Home, TextKey("To the beginning of the song")},
    WindowKey{Qt::Key_End, TextKey("To the end of the song")},
    WindowKey{Qt::Key_Tab, TextKey("Next item")},
    WindowKey{Qt::SHIFT | Qt::Key_Tab, TextKey("Previous item")},
    WindowKey{Qt::Key_Return, TextKey("Adds an item at the position")},
    WindowKey{Qt::Key_Delete, TextKey("Removes the selected items; held, what is pressed")},
};
}  // namespace

WindowKeys SongKeys() {
    WindowKeys keys(kOtherKeys.begin(), kOtherKeys.end());
    for (const LetterCommand& command : kLetters) keys.push_back(command.key);
    return keys;
}

StepRange CSongCommands::Selected() const {
    const CPlayListCtrlEx* const lane = host.Current();
    return lane != nullptr ? RangeOf(lane->Edit().State(), lane->Edit().Patterns(), view.songEnd) : StepRange{};
}

StepRange CSongCommands::Section() const {
    const StepRange selected = Selected();
    if (!selected.IsEmpty()) return selected;
    if (view.loopOn && !view.loop.IsEmpty()) return view.loop;
    const int bar = station.Song().StepsPerBar();
    const int first = view.SnapDown(std::max(0.0, view.playhead), bar);
    return {first, first + bar};
}

void CSongCommands::Perform() {
    CValue& mode = station.Audio().settings.songMode;
    if (!station.Performance().Armed().IsOn() || !mode.IsOn()) return;
    mode.Set(0);
    station.Changes().ValueEdited(EnginePart(mode), 1.0F, 0.0F, Text("Song mode"));
    host.Tell(Text("Pattern mode: play, and choose patterns. The take is written into the song when you stop."));
}

void CSongCommands::MakeUnique() {
    CPlayListCtrlEx* const lane = host.Current();
    if (lane == nullptr) return;
    if (lane->Edit().State().selection.empty()) return host.Tell(Text("Select the items first."));
    if (!station.Song().MakeUnique(lane->Edit().Instrument(), lane->Edit().State())) {
        host.Tell(Text("All sixteen patterns are used."));
    }
}

void CSongCommands::SplitAtPlayhead() {
    CPlayListCtrlEx* const lane = host.Current();
    if (lane == nullptr) return;
    CPlaylistEdit& edit = lane->Edit();
    const auto split = SplitItems(edit.State(), edit.Patterns(), view.SnapDown(view.playhead, view.Raster()));
    split ? edit.Apply(*split, TextKey("Split item"))
          : host.Tell(Text("A repeat can only be split where its pattern begins again."));
}

void CSongCommands::Duplicate() {
    CPlayListCtrlEx* const lane = host.Current();
    if (lane == nullptr || lane->Edit().State().selection.empty()) return;
    CPlaylistEdit& edit = lane->Edit();
    const StepRange range = RangeOf(edit.State(), edit.Patterns(), view.songEnd);
    edit.Apply(CopyItems(edit.State(), edit.Patterns(), range.end - range.first), TextKey("Copy items"));
}

// --- Keys

void CSongCommands::GoByBar(int way) {
    const int bar = station.Song().StepsPerBar();
    const int now = static_cast<int>(std::max(0.0, view.playhead));
    host.Locate(way > 0 ? (now / bar + 1) * bar : std::max(0, (now - 1) / bar * bar));
}

bool CSongCommands::RunKey(int key, bool control) {
    CPlayListCtrlEx* const lane = host.Current();
    if (lane == nullptr) return false;
    CPlaylistEdit& edit = lane->Edit();
    if (control) {
        const auto found = std::ranges::find_if(
            kLetters, [key](const LetterCommand& command) { return static_cast<int>(command.key.key.key()) == key; });
        if (found == kLetters.end()) return false;
        (this->*found->run)();
        return true;
    }
    switch (key) {
        case virtualKey::kLeft:
        case virtualKey::kRight:
            if (!edit.State().selection.empty()) return false;
            GoByBar(key == virtualKey::kRight ? 1 : -1);
            return true;
        case virtualKey::kHome:
            host.Locate(0);
            return true;
        case virtualKey::kEnd:
            host.Locate(view.songEnd);
            return true;
        case virtualKey::kPlus:
        case virtualKey::kMinus:
            lane->ChoosePattern(lane->CurrentPattern() + (key == virtualKey::kPlus ? 1 : -1));
            return true;
        case virtualKey::kReturn:
            edit.Apply(AddItem(edit.State(), edit.Patterns(), lane->CurrentPattern(),
                               view.SnapDown(std::max(0.0, view.playhead), view.Raster())),
                       TextKey("Add item"));
            return true;
        default:
            return false;
    }
}

bool CSongCommands::SelectNext(int way) {
    CPlayListCtrlEx* const lane = host.Current();
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
    if (left < 0 || left > view.time.Width() - kRoomOfNext) host.ScrollBy(static_cast<int>(left) - kRoomOfNext);
    lane->Refresh();
    return true;
}

// --- The Edit menu

bool CSongCommands::CanEdit(EEdit command) const {
    const CPlayListCtrlEx* const lane = host.Current();
    if (lane == nullptr) return false;
    if (command == EEdit::kPaste) return !clipboard.empty();
    if (command == EEdit::kSelectAll) return !lane->Edit().State().Items().empty();
    return !lane->Edit().State().selection.empty();
}

void CSongCommands::Edit(EEdit command) {
    CPlayListCtrlEx* const lane = host.Current();
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
