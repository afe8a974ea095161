// SPDX-License-Identifier: GPL-3.0-or-later
// The song in the console: its pane below the strips, the bar between them, the hint for a song that is empty.
#include <QKeyEvent>
#include <algorithm>

#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CSongHintCtrl.h"
#include "app/console/CWinControlMain.h"
#include "controls/CSplitCtrl.h"
#include "controls/VirtualKeys.h"
#include "document/CSettings.h"
#include "editors/playlist/CSongPane.h"

namespace quib {

namespace {
constexpr int kSongTop = consoleLayout::kStripsTop;
constexpr int kSplit = 8;
constexpr int kFirstHeight = 300;
constexpr int kLeastStrips = 40;  // pixels that the split leaves to them
constexpr const char* kSplitName = "PlayListSplit";
constexpr const char* kShownName = "PlayListShown";
}  // namespace

void CWinControlMain::BuildSong() {
    const CSettings& store = station.Settings();
    songHeight = store.ReadSettingInt(kWindowsSection, QLatin1String(kSplitName), kFirstHeight);
    const int kept = store.ReadSettingInt(kWindowsSection, QLatin1String(kShownName), 0);
    songShown = kept != 0;
    songWhole = kept == 2;
    hint = &Add<CSongHintCtrl>(0U, context);
    hint->SetVisible(false);
    split = &Add<CSplitCtrl>(0U, 0, 0, 100, kSplit, false);
    split->section = ESection::kTransport;
    split->infoString = 502;
    split->onSplit = [this](int place) {
        songHeight = AboveInfo(SkinSize()).height() - place - kSplit;
        KeepSong();
        LayoutAndRefresh();
    };
    song = &Add<CSongPane>(0U, station);
    song->onCurrent = [this](int index) { ScrollTo(index); };
    song->onOpenPianoRoll = [this] {
        if (actions.openTool) actions.openTool(ETool::kPianoRoll);
    };
    song->onBounce = [this](bool loop) {
        if (actions.bounce) actions.bounce(loop);
    };
    song->Tools().onClose = [this] { ShowSong(false, false); };
    song->Tools().onWholeWindow = [this] { ShowSong(true, !songWhole); };
    song->SetVisible(songShown);
    split->SetVisible(songShown && !songWhole);
}

bool CWinControlMain::IsSongShown() const { return songShown; }

void CWinControlMain::ShowSong(bool shown, bool inTheirPlace) {
    songShown = shown;
    songWhole = shown && inTheirPlace;
    song->SetVisible(songShown);
    song->SetActive(songShown);
    split->SetVisible(songShown && !songWhole);
    KeepSong();
    // One of its own buttons may be in the middle of a click.
    QMetaObject::invokeMethod(
        this, [this] { LayoutAndRefresh(); }, Qt::QueuedConnection);
}

void CWinControlMain::KeepSong() {
    CSettings& store = station.Settings();
    store.WriteSettingInt(kWindowsSection, QLatin1String(kSplitName), songHeight);
    store.WriteSettingInt(kWindowsSection, QLatin1String(kShownName), songShown ? (songWhole ? 2 : 1) : 0);
    song->KeepView();
}

// Where the split bar, or the pane alone, begins.
int CWinControlMain::SongTop(const QSize& size) const {
    const int top = TopOfStrips();
    if (songWhole) return top;
    const int most = size.height() - top - kLeastStrips - kSplit;
    const int height = std::max(CSongPane::kLowest, std::min(songHeight, most));
    return std::max(top, size.height() - height - kSplit);
}

void CWinControlMain::ArrangeSong(const QSize& size) {
    hint->SetPosition(consoleLayout::kMargin, kSongTop);
    hint->Resize(std::max(100, size.width() - 2 * consoleLayout::kMargin), CSongHintCtrl::kHeight);
    if (!songShown) return;
    const int top = SongTop(size);
    const int bar = songWhole ? 0 : kSplit;
    split->lowest = kSongTop + kLeastStrips;
    split->highest = std::max(split->lowest, size.height() - CSongPane::kLowest - kSplit);
    split->SetPosition(0, top);
    split->Resize(size.width(), kSplit);
    song->SetPosition(0, top + bar);
    song->Resize(size.width(), std::max(CSongPane::kLowest, size.height() - top - bar));
}

// A song without items is silent: somebody who plays it is told what to do.
void CWinControlMain::FollowHint() {
    const bool silent = station.Transport().IsPlaying() && station.Audio().settings.songMode.IsOn() &&
                        !station.Stack().Instruments().empty() && station.Song().IsEmpty();
    if (silent == hint->IsVisible()) return;
    hint->SetVisible(silent);
    LayoutAndRefresh();
}

// --- Keys

// The song's while it was pressed last, else those of the pattern that is shown.
bool CWinControlMain::CanEdit(EEdit command) const {
    return song->IsActive() ? song->CanEdit(command) : patternEdits.CanEdit(command);
}

void CWinControlMain::Edit(EEdit command) { song->IsActive() ? song->Edit(command) : patternEdits.Edit(command); }

void CWinControlMain::keyPressEvent(QKeyEvent* event) {
    if (event->isAutoRepeat() && song->RepeatKey(VirtualKeyOf(*event))) return event->accept();
    CWinControl::keyPressEvent(event);
}

bool CWinControlMain::focusNextPrevChild(bool next) {
    const CControl* const focused = Keys().Control();
    const bool isInSong = focused == nullptr || focused->Role() == ERole::kArea;
    if (isInSong && song->IsActive() && song->SelectNext(next ? 1 : -1)) return true;
    return CWinControl::focusNextPrevChild(next);
}

}  // namespace quib
