// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The main console: the master band on top, the instruments' strips stacked below it and scrolled.
// User-interface thread.

#include "app/console/CMasterPanels.h"
#include "app/console/ConsoleParts.h"
#include "app/console/PatternMenu.h"
#include "controls/CScopeCtrl.h"
#include "controls/CWinControl.h"
#include "editors/base/CEditTarget.h"

namespace quib {

class CInfoBar;
class CInstrumentStripCtrl;
class CDeviceBanner;
class CScrollCtrl;
class CSongHintCtrl;
class CSongPane;
class CSplitCtrl;
class CStateLineCtrl;
class CStartPage;

class CWinControlMain : public CWinControl, public CEditTarget {
    Q_OBJECT

public:
    static constexpr int kNarrowest = 977;  // skin pixels
    static constexpr int kLowest = 300;

    CWinControlMain(const CControlSettings& controlSettings, CWorkstation& workstation, ConsoleActions consoleActions,
                    QWidget* parent = nullptr);
    ~CWinControlMain() override;

    // Everything that moves with the music; from the 40 ms timer.
    void FollowEngine();
    // Builds the texts anew, after another language was chosen.
    void Translate();
    // Brings the strip of an instrument into view.
    void ScrollTo(int index);
    CInstrumentStripCtrl* Strip(int index) const;
    // The song below the strips: shown or not, or in their place.
    void ShowSong(bool shown, bool inTheirPlace);
    bool IsSongShown() const;
    bool IsSongWhole() const noexcept { return songWhole; }
    CSongPane& Song() const noexcept { return *song; }
    // Two children of it, which it places: a line above the strips, and a page in their place while there are none.
    void SetStart(CDeviceBanner& deviceBanner, CStartPage& startPage);

    void Reveal(CControl& control) override;
    bool CanEdit(EEdit command) const override;
    void Edit(EEdit command) override;

protected:
    void Arrange(const QSize& size) override;
    QRect ClipOf(const CControl& control) const override;
    void DrawBackground() override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void BuildMaster();
    void BuildSong();
    void ArrangeSong(const QSize& size);
    int SongTop(const QSize& size) const;
    void KeepSong();
    void FollowHint();
    void FollowStart();
    void PlaceStart();
    int TopOfStrips() const;
    void BuildStrips();
    void Follow(const Change& change);
    void ReleaseKeys(bool all);
    void RebuildSoon();
    void ShowSlots();
    void StripChanged(quint32 id);
    void PatternsChanged(quint32 id);
    void PlaceStrips();
    void ArrangeBars(const QSize& size);
    static int StripRoom(const QSize& size);
    static QSize AboveInfo(const QSize& size);
    void Scroll();
    void DragStrip(CInstrumentStripCtrl& strip, int py, bool dropped);
    int PlaceAt(int py) const;
    void DrawWelcome();
    QRect StripArea() const;

    class CScopeFeed;

    CWorkstation& station;
    ConsoleActions actions;
    CLevelTables tables;
    ConsoleContext context;
    CPatternEdits patternEdits{station};
    std::unique_ptr<CScopeFeed> scopeFeed;
    CStateLineCtrl* stateLine = nullptr;
    CTransportPanel* transport = nullptr;
    CToolsPanel* tools = nullptr;
    CEffectsPanel* effects = nullptr;
    CLevelsPanel* levels = nullptr;
    CSessionPanel* session = nullptr;
    CScopeCtrl* scope = nullptr;
    CInfoBar* infoBar = nullptr;
    CControl* addButton = nullptr;
    CScrollCtrl* scrollBar = nullptr;
    CValue scrollPosition;
    std::vector<CInstrumentStripCtrl*> strips;
    CSongHintCtrl* hint = nullptr;
    CDeviceBanner* banner = nullptr;
    CStartPage* startPage = nullptr;
    CSplitCtrl* split = nullptr;
    CSongPane* song = nullptr;
    bool songShown = false;
    bool songWhole = false;
    int songHeight = 0;  // of the pane beside the strips
    int stripsHeight = 0;
    int dropPlace = -1;
    bool rebuildWanted = false;
    CTransportControl::Releases released = station.Transport().KeysReleased();
    int builtWidth = 0;
};

}  // namespace quib
