// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The console's strip of one instrument: a container that builds the controls of its name and mixer, patterns,
// equaliser and effects, with the keyboard below when it is shown; or, closed, one row of what is played with.
// An instrument that cannot be heard is drawn dim, with the reason in its meter. User-interface thread.

#include "app/console/CStepGestures.h"
#include "app/console/ConsoleParts.h"
#include "app/console/SlotFields.h"
#include "controls/CControl.h"
#include "controls/CPatternSelCtrl.h"
#include "engine/PlayPicture.h"

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
class CVuCtrl;

class CInstrumentStripCtrl : public CControl, public CPatternOwner, public CSlotOwner {
public:
    static constexpr int kHeight = 104;
    static constexpr int kClosedHeight = 40;
    static constexpr int kKeyboardHeight = 62;
    static constexpr int kInsertEdit = 30;  // pixels of the button behind an insert, with its gap

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
    // Its sign of a frozen instrument.
    void ShowFrozen();
    // Draws the cells of the patterns anew.
    void PatternsChanged();
    // Ends what its keyboard holds, but for the keys that an arpeggiator plays unless `all`.
    void ReleaseKeys(bool all);
    // With each tick, while the strip is on the screen; null when the engine does not play it.
    void Follow(const InstrumentPicture* picture);
    // The same: whether it can be heard. `soloed`: the first instrument in solo; 0: none.
    void FollowSilence(std::uint32_t soloed);

    // While the strip is dragged to another place, and when it is let go.
    std::function<void(CInstrumentStripCtrl&, int py, bool dropped)> onDrag;

    // --- The places for plug-ins
    void ListSlots(std::vector<SlotField>& fields) const override;
    std::uint32_t InstrumentId() const override { return instrument->Id(); }

    // --- The instrument behind the pattern cells
    Look PatternLook() const override;
    void SelectPattern(int pattern) override;
    void CopyPattern(int from, int to) override;
    bool MayTogglePatternFlag() const override { return true; }
    void TogglePatternFlag(int pattern) override;
    void SendPatternMask(std::uint32_t mask) override;

private:
    void BuildOpen(int newWidth);
    void BuildClosed(int newWidth);
    void AddName(int nameWidth);
    void AddFrozenSign(int left, int top);
    void AddMixer(bool folded);
    void AddPan(bool folded, int left);
    CSwitchCtrl& AddStripSwitch(const QRect& area, CValue& bound, const QString& text, int info);
    void AddMuteAndSolo(const QRect& muteArea, const QRect& soloArea);
    void AddLevel(const QRect& area, const QRect& figures);
    void AddMeter(const QRect& area);
    void AddPlugin(int left, int room);
    CSwitchCtrl& AddButton(const QRect& area, int glyph, int info, bool usable, std::function<void()> action);
    void AddArpeggiatorAndKeyboard(int left);
    void AddChannel(int left, int room);
    void AddLamp(int left, int top);
    void AddPresets(int left, int top, int room);
    void AddPatterns(int left, int pitch);
    void AddCells(int left, int top, int pitch, int high);
    void AddStepControls(int left);
    void AddEqualizer(int left, int room);
    void AddSends(int left, int room);
    void AddInserts(int left, int room);
    void AddKeyboard();
    void OpenTool(ETool tool);
    bool HasTool(ETool tool) const { return context.actions.hasTool && context.actions.hasTool(tool); }
    void TellChanged();
    // What a closed strip hides, as a menu.
    void FillMore(QMenu& menu);
    void AddMoreSwitches(QMenu& menu);
    bool IsOnGrip(int px, int py) const;
    void DrawDim(bool dim);
    QString SilenceText() const;
    void FindHeldSteps();
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
    bool collapsed = false;
    bool withKeyboard = false;
    bool dragging = false;
    int dragStart = 0;

    // Shown values that are no values of the instrument.
    CValue soloShown;
    CValue modeShown;
    CValue presetShown;

    // The last picture of its playing.
    int playingPattern = -1;
    int nextPattern = -1;
    int playingStep = -1;
    std::array<bool, 128> sounding{};
    std::shared_ptr<const CPattern> shownPattern;
    std::vector<bool> heldSteps;  // of the shown pattern: a note that began before sounds on

    // Why it is not heard.
    enum class ESilence { kNone, kMuted, kSolo, kFadedA, kFadedB };
    ESilence silence = ESilence::kNone;
    std::uint32_t silencedBy = 0;

    CLabelCtrl* number = nullptr;
    CImageCtrl* icon = nullptr;
    CLabelCtrl* title = nullptr;
    int titleRoom = 0;
    CSwitchCtrl* frozen = nullptr;
    CValue frozenShown;
    CLabelMenuCtrl* plugin = nullptr;
    CLabelMenuCtrl* channel = nullptr;
    CSwitchCtrl* lamp = nullptr;
    CSwitchCtrl* arpeggiator = nullptr;
    CValue lampShown;
    CSwitchCtrl* solo = nullptr;
    CSwitchCtrl* mute = nullptr;
    CVuCtrl* meter = nullptr;
    CPresetSelectorCtrl* presets = nullptr;
    CPatternSelCtrl* cells = nullptr;
    int gripLeft = 0;
    // Null while the strip is closed.
    CStepLedCtrl* leds = nullptr;
    CSwitchSelectorCtrl* modes = nullptr;
    CLabelMenuCtrl* steps = nullptr;
    CFilterCtrl* filter = nullptr;
    CKeyboardExCtrl* keyboard = nullptr;
    std::array<CSwitchFaderCtrl*, kInsertCount> inserts{};
    std::array<CSwitchCtrl*, kInsertCount> insertEdits{};
    int insertsRoom = 0;  // of an insert with its button
    std::array<CSwitchFaderCtrl*, kSendCount> sends{};
};

}  // namespace quib
