// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The sections of the two bars on top of the console: transport and recorder, tools, effects, crossfader and
// presets, levels. Each is a container that builds its controls over the engine's values, anew for another width.
// User-interface thread.

#include "app/console/ConsoleParts.h"
#include "app/console/SlotFields.h"
#include "controls/CControl.h"

class QMenu;

namespace quib {

class CLabelCtrl;
class CLabelMenuCtrl;
class CSwitchCtrl;
class CVuCtrl;

// A framed area of a bar.
class CPanelCtrl : public CControl {
public:
    CPanelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight)
        : CControl(window, number, left, top, newWidth, newHeight) {}
    void Draw() override;
    void Resize(int newWidth, int newHeight) override;

protected:
    // Makes its controls for the size that it has.
    virtual void Build() {}
    // Gives every child the panel's ground.
    void PaintChildren();
    CLabelCtrl& AddDimLabel(int left, int top, int newWidth, int newHeight, const QString& text);
};

// The first bar.
class CTransportPanel : public CPanelCtrl, public CTicked {
public:
    CTransportPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext);
    void Tick() override;

private:
    void Build() override;
    int AddPlay(int left);
    int AddModes(int left);
    int AddArms(int left);
    int AddMetronome(int left);
    int AddTempo(int left);
    void ShowCountIn();
    bool IsNarrow() const noexcept { return Width() < kWordsWidth; }
    int WordWidth(const QString& text) const;

    static constexpr int kWordsWidth = 1180;  // from which symbols have words and the recorder has its name

    ConsoleContext context;
    CValue playShown;  // follows the engine
    CValue countInShown;
    QString recordPath;
    CSwitchCtrl* countIn = nullptr;
    int shownBars = -1;
    CSwitchCtrl* play = nullptr;
};

// The windows of the tools.
class CToolsPanel : public CPanelCtrl, public CTicked {
public:
    CToolsPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext);
    void Tick() override;

private:
    static constexpr std::size_t kTools = 6;
    void Build() override;

    ConsoleContext context;
    std::array<CValue, kTools> shown;
    std::array<CSwitchCtrl*, kTools> buttons{};
};

class CEffectsPanel : public CPanelCtrl, public CSlotOwner {
public:
    CEffectsPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext);
    // Takes over what the places hold now.
    void ShowSlots();
    void ListSlots(std::vector<SlotField>& fields) const override;

private:
    void Build() override;
    void AddRow(const QRect& area, const SlotPlace& place, const QString& title, CValue* onSwitch);

    ConsoleContext context;
    struct Row {
        SlotPlace place;
        int room;  // of the label beside the button
        CLabelMenuCtrl* label;
        CSwitchCtrl* edit;
        CSwitchCtrl* on;
        CLabelCtrl* title;
    };
    std::vector<Row> rows;
};

// At the right of both bars.
class CLevelsPanel : public CPanelCtrl, public CTicked {
public:
    static constexpr int kWidth = 148;
    CLevelsPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext);
    void Draw() override;
    void Tick() override;

private:
    void Build() override;

    ConsoleContext context;
    CVuCtrl* meter = nullptr;
    CLabelCtrl* peak = nullptr;
    float shownPeak = 0;  // decibels
};

// Crossfader and presets.
class CSessionPanel : public CPanelCtrl, public CTicked {
public:
    CSessionPanel(CWinControl& window, std::uint32_t number, const ConsoleContext& consoleContext);
    void Tick() override;

private:
    void Build() override;
    void AddCrossfader();
    void AddPresets();
    void FillPresetMidi(QMenu& menu);
    QString HiddenSide() const;

    ConsoleContext context;
    CLabelMenuCtrl* presetMidi = nullptr;
    CLabelCtrl* hidden = nullptr;
    int shownChannel = -1;
    float shownCrossfader = -1;
};

}  // namespace quib
