// SPDX-License-Identifier: GPL-3.0-or-later
// The menus of the song pane.
#include <QMenu>

#include "editors/playlist/CLaneDrag.h"
#include "editors/playlist/CSongCommands.h"
#include "editors/playlist/LaunchMenu.h"
#include "texts/Texts.h"

namespace quib {

namespace {

// With the key, which is the pane's and not the menu's.
QAction* AddCommand(QMenu& menu, const char* text, const std::function<void()>& run, bool usable = true,
                    const char* key = nullptr) {
    QString shown = Text(text);
    if (key != nullptr) shown += QLatin1Char('\t') + QLatin1String(key);
    QAction* const action = menu.addAction(shown, run);
    action->setEnabled(usable);
    return action;
}

}  // namespace

void CSongCommands::FillPatterns(QMenu& menu) {
    CPlayListCtrlEx* const lane = host.Current();
    if (lane == nullptr) return;
    for (int pattern = 0; pattern < kPatternCount; ++pattern) {
        const bool empty = lane->Edit().Patterns().empty[static_cast<std::size_t>(pattern)];
        const QString text = Text("Pattern %1").arg(pattern + 1);
        QAction* const action =
            menu.addAction(empty ? text + Text(" (empty)") : text, [lane, pattern] { lane->ChoosePattern(pattern); });
        action->setCheckable(true);
        action->setChecked(pattern == lane->CurrentPattern());
    }
}

void CSongCommands::FillInstruments(QMenu& menu) {
    CPlayListCtrlEx* const source = host.Current();
    for (CPlayListCtrlEx* const lane : host.Lanes()) {
        if (lane == source) continue;
        QString title = QString::fromStdString(lane->Instrument().title);
        menu.addAction(title.replace(QLatin1Char('&'), QLatin1String("&&")),
                       [this, source, lane] { drag.Move(*source, *lane, 0, false); });
    }
}

void CSongCommands::FillItemMenu(QMenu& menu) {
    CPlayListCtrlEx* const lane = host.Current();
    if (lane == nullptr) return;
    CPlaylistEdit& edit = lane->Edit();
    const bool any = !edit.State().selection.empty();
    const auto first = any ? edit.State().selection.front() : 0U;
    AddCommand(
        menu, TextKey("Open in the piano roll"),
        [this, &edit, first] { host.OpenPattern(edit.State().Items()[first].pattern); }, any);
    FillPatterns(*menu.addMenu(Text("Pattern")));
    const bool repeats =
        any && edit.State().Items()[first].repeat != 0 && !edit.HasEndMark(static_cast<std::int32_t>(first));
    QAction* const repeat = AddCommand(
        menu, TextKey("Repeat without end"),
        [&edit, repeats] {
            edit.Apply(RepeatItems(edit.State(), edit.Patterns(), !repeats), TextKey("Length of an item"));
        },
        any);
    repeat->setCheckable(true);
    repeat->setChecked(repeats);
    AddCommand(
        menu, TextKey("Make unique"), [this] { MakeUnique(); }, any);
    AddCommand(
        menu, TextKey("Split at the playhead"), [this] { SplitAtPlayhead(); }, true, "Ctrl+K");
    QMenu* const instruments = menu.addMenu(Text("Move to another instrument"));
    FillInstruments(*instruments);
    instruments->setEnabled(any && !instruments->isEmpty());
    menu.addSeparator();
    AddCommand(
        menu, TextKey("Cut"), [this] { Edit(EEdit::kCut); }, any, "Ctrl+X");
    AddCommand(
        menu, TextKey("Copy"), [this] { Edit(EEdit::kCopy); }, any, "Ctrl+C");
    AddCommand(
        menu, TextKey("Paste"), [this] { Edit(EEdit::kPaste); }, !clipboard.empty(), "Ctrl+V");
    AddCommand(
        menu, TextKey("Duplicate"), [this] { Duplicate(); }, any, "Ctrl+D");
    AddCommand(
        menu, TextKey("Delete"), [this] { Edit(EEdit::kDelete); }, any);
    menu.addSeparator();
    FillSongMenu(menu);
}

void CSongCommands::FillSongMenu(QMenu& menu) {
    AddCommand(
        menu, TextKey("Loop selection"), [this] { LoopSelection(); }, true, "Ctrl+L");
    AddCommand(menu, TextKey("Marker"), [this] { MarkPlayhead(); });
    AddCommand(menu, TextKey("Insert time"), [this] { InsertTime(); });
    AddCommand(menu, TextKey("Delete time"), [this] { DeleteTime(); });
    AddCommand(menu, TextKey("Duplicate section"), [this] { DoubleSection(); });
    menu.addSeparator();
    FillLaunchMenu(*menu.addMenu(Text("Launch patterns")), station);
    menu.addSeparator();
    AddCommand(
        menu, TextKey("Bounce the loop region ..."), [this] { host.Bounce(true); }, !view.loop.IsEmpty());
    AddCommand(
        menu, TextKey("Bounce the song ..."), [this] { host.Bounce(false); }, view.songEnd > 0);
}

void CSongCommands::FillRulerMenu(QMenu& menu, int step) {
    bool marked = false;
    for (const SongMarker& marker : view.markers) marked = marked || marker.step == step;
    AddCommand(menu, marked ? TextKey("Name of the marker ...") : TextKey("Marker here ..."),
               [this, step] { host.AskMarker(step); });
    AddCommand(
        menu, TextKey("Remove the marker"), [this, step] { station.Song().SetMarker(step, {}); }, marked);
    menu.addSeparator();
    FillSongMenu(menu);
}

}  // namespace quib
