// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The console's strip of one instrument: a container that builds the controls of its header, mixer,
// patterns, equaliser and effects, with the keyboard below when it is shown. User-interface thread.

#include "app/console/CStepGestures.h"
#include "app/console/ConsoleParts.h"
#include "controls/CControl.h"
#include "controls/CPatternSelCtrl.h"
#include "engine/PlayPicture.h"
#include "engine/strip/CLevelTables.h"

class QMenu;

namespace quib {

class CFaderCtrl;
class CFilterCtrl;
class CImageCtrl;
class CKeyboardExCtrl;
class CLabelCtrl;
class CLabelMenuCtrl;
class CPresetSelectorCtrl;
class CStepLedCtrl;
class CSwitchCtrl;
class CSwitchFaderCtrl;
class CSwitchSelectorCtrl;

class CInstrumentStripCtrl : public CControl, public CPatternOwner {
public:
    static constexpr int kNarrowest = 960;  // pixels that the controls need
    static constexpr int kHeaderHeight = 26;
    static constexpr int kBodyHeight = 78;
    static constexpr int kKeyboardHeight = 62;

    CInstrumentStripCtrl(CWinControl& window, std::shared_ptr<CInstrument> shown, const ConsoleContext& consoleContext,
                         int newWidth);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseLeave() override;

    ~CInstrumentStripCtrl() override { EndKeys(); }

    CInstrument& Instrument() const noexcept { return *instrument; }
    // Its place in the list, which may have changed since the strip was made.
    int Index() const { return context.station.Stack().IndexOf(instrument->Id()); }
    // Builds the controls for this width, and its height for what is shown of it.
    void Rebuild(int newWidth);
    // False when the keyboard or the body has been shown or hidden since.
    bool IsHeightRight() const;
    // Takes over names, plug-ins and notes.
    void ShowContent();
    // Draws the cells of the patterns anew.
    void PatternsChanged();
    // Ends what its keyboard holds, but for the keys that an arpeggiator plays unless `all`.
    void ReleaseKeys(bool all);
    // With each tick, while the strip is on the screen; null when the engine does not play it.
    void Follow(const InstrumentPicture* picture);

    // While the strip is dragged to another place, and when it is let go.
    std::function<void(CInstrumentStripCtrl&, int py, bool dropped)> onDrag;

    // --- The instrument behind the pattern cells
    Look PatternLook() const override;
    void SelectPattern(int pattern) override;
    void CopyPattern(int from, int to) override;
    bool MayTogglePatternFlag() const override { return true; }
    void TogglePatternFlag(int pattern) override;
    void SendPatternMask(std::uint32_t mask) override;

private:
    void AddHeader();
    void AddHeaderButtons();
    void AddMixer();
    void AddPatterns(int left, int cellWidth);
    void AddStepControls(int left);
    void AddEqualizer(int left, int room);
    void AddEffects(int left, int room);
    void AddInserts(int left, int room);
    void AddKeyboard();
    void EndKeys();
    void ShowSilentKeys();
    void FillSteps(QMenu& menu);
    void FillStepMenu(QMenu& menu, int step);
    // Velocity of the loudest note that begins in a step; -1 none.
    int LoudnessOf(int step) const;
    // The pattern that plays, else the selected one.
    int ShownPattern() const;
    void SetSteps(int steps);
    void ToggleCollapsed();
    QRgb Ground() const;
    QRgb StripColour() const;
    std::uint32_t FilledPatterns() const;

    ConsoleContext context;
    std::shared_ptr<CInstrument> instrument;
    CStepGestures stepGestures;
    CLevelTables tables;
    bool collapsed = false;
    bool withKeyboard = false;
    bool dragging = false;
    int dragStart = 0;

    // Shown values that are no values of the instrument.
    CValue soloShown;
    CValue modeShown;
    CValue openShown;
    CValue presetShown;

    // The last picture of its playing.
    int playingPattern = -1;
    int nextPattern = -1;
    int playingStep = -1;
    std::array<bool, 128> sounding{};
    std::shared_ptr<const CPattern> shownPattern;

    CLabelCtrl* number = nullptr;
    CImageCtrl* icon = nullptr;
    CLabelCtrl* title = nullptr;
    CLabelMenuCtrl* plugin = nullptr;
    CLabelMenuCtrl* channel = nullptr;
    CSwitchCtrl* lamp = nullptr;
    CSwitchCtrl* arpeggiator = nullptr;
    CValue lampShown;
    CSwitchCtrl* solo = nullptr;
    CPresetSelectorCtrl* presets = nullptr;
    // Null while the strip is collapsed.
    CPatternSelCtrl* cells = nullptr;
    CStepLedCtrl* leds = nullptr;
    CSwitchSelectorCtrl* modes = nullptr;
    CLabelMenuCtrl* steps = nullptr;
    CFilterCtrl* filter = nullptr;
    CKeyboardExCtrl* keyboard = nullptr;
    std::array<CSwitchFaderCtrl*, kInsertCount> inserts{};
    std::array<CSwitchFaderCtrl*, kSendCount> sends{};
};

}  // namespace quib
