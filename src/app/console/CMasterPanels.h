// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The sections of the master band on top of the console: transport, effects, levels, presets and
// recorder. Each is a container that builds its controls over the engine's values. User-interface thread.

#include "app/console/ConsoleParts.h"
#include "controls/CControl.h"

class QMenu;

namespace quib {

class CLabelMenuCtrl;
class CSwitchCtrl;

// A framed area of the band.
class CPanelCtrl : public CControl {
public:
    CPanelCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight)
        : CControl(window, number, left, top, newWidth, newHeight) {}
    void Draw() override;
    void Resize(int newWidth, int newHeight) override { SetSize(newWidth, newHeight); }

protected:
    // Gives every child the panel's ground.
    void PaintChildren();
};

class CTransportPanel : public CPanelCtrl, public CTicked {
public:
    static constexpr int kWidth = 326;
    CTransportPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                    const ConsoleContext& consoleContext);
    void Tick() override;

private:
    void AddSwitches();
    void AddMetronome();
    void ShowCountIn();
    void AddTempo();
    void AddDisplays();
    void AddTools();

    ConsoleContext context;
    CValue playShown;  // follows the engine
    CValue countInShown;
    CSwitchCtrl* countIn = nullptr;
    CSwitchCtrl* play = nullptr;
};

class CEffectsPanel : public CPanelCtrl {
public:
    static constexpr int kWidth = 210;
    CEffectsPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                  const ConsoleContext& consoleContext);
    // Takes over what the places hold now.
    void ShowSlots();

private:
    void AddRow(int top, const SlotPlace& place, const QString& title, CValue* onSwitch);

    ConsoleContext context;
    struct Row {
        SlotPlace place;
        CLabelMenuCtrl* label;
        CSwitchCtrl* edit;
        CSwitchCtrl* on;
    };
    std::vector<Row> rows;
};

class CLevelsPanel : public CPanelCtrl {
public:
    static constexpr int kWidth = 96;
    CLevelsPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                 const ConsoleContext& consoleContext);

private:
    CLevelTables tables;
};

class CSessionPanel : public CPanelCtrl, public CTicked {
public:
    static constexpr int kWidth = 168;
    CSessionPanel(CWinControl& window, std::uint32_t number, int left, int top, int newHeight,
                  const ConsoleContext& consoleContext);
    void Tick() override;

private:
    void AddCrossfader();
    void AddPresets();
    void AddRecorder();
    void ToggleRecording();
    void FillPresetMidi(QMenu& menu);

    ConsoleContext context;
    CLevelTables tables;
    CValue recordShown;
    QString recordPath;
    CSwitchCtrl* record = nullptr;
    CLabelMenuCtrl* presetMidi = nullptr;
};

}  // namespace quib
