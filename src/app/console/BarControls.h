// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Controls that only the bars of the console have: the line of the state on top, the arm of a recording, the
// position, and the recorder. User-interface thread.

#include "app/console/ConsoleParts.h"
#include "controls/CSwitchCtrl.h"

namespace quib {

// Green over the whole width while it plays; its right half red while a file is recorded.
class CStateLineCtrl : public CControl, public CTicked {
public:
    CStateLineCtrl(CWinControl& window, std::uint32_t number, CWorkstation& workstation);
    void Draw() override;
    void Resize(int newWidth, int newHeight) override { SetSize(newWidth, newHeight); }
    void Tick() override;

private:
    CWorkstation& station;
    bool playing = false;
    bool recording = false;
};

// A switch that arms: a sign with a ring, which becomes a red dot in a red frame. Never filled, as a recording
// is that goes on.
class CArmCtrl : public CSwitchCtrl {
public:
    // `sign`: what is drawn before the ring where there is no glyph.
    CArmCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight, CValue* bound,
             const QString& armSign, int armGlyph, const QString& restWord);
    void Draw() override;

private:
    QString sign;
    QString word;
};

// Bar, beat and step; framed while it plays.
class CPositionCtrl : public CControl, public CTicked {
public:
    CPositionCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                  CAudio& engine, int letters);
    void Draw() override;
    void Tick() override;

private:
    QString TextNow() const;

    CAudio& audio;
    int fontHeight;
    struct Shown {
        int beats = 0;
        int step = 0;
        int stepsPerBeat = 0;
        int beatsPerBar = 0;
        friend bool operator==(const Shown&, const Shown&) = default;
    };
    Shown shown;
    QString text;
    bool playing = false;
};

// The button and what it writes: how long, where and how much. `path` is kept by the owner.
class CRecorderCtrl : public CControl, public CTicked {
public:
    CRecorderCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                  const ConsoleContext& consoleContext, QString& path);
    void Draw() override;
    void Tick() override;

private:
    void Toggle();
    bool IsNarrow() const noexcept;
    QString TimeText() const;
    QString FileText() const;

    CWorkstation& station;
    QString& recordPath;
    CValue shown;
    CSwitchCtrl* button = nullptr;
    QString drawnPath;
    QString drawnTime;
    QString drawnFile;
};

}  // namespace quib
