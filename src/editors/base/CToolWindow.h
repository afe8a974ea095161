// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Base of the tool windows: place and size with their settings, scale, title, and following the selection,
// the changes of the project and the playing state. While it is hidden it follows nothing and costs
// nothing; it takes everything over anew when it is shown. User-interface thread.

#include "controls/CWinControl.h"
#include "editors/base/CEditTarget.h"
#include "editors/base/ToolRow.h"
#include "engine/PlayPicture.h"

namespace quib {

class CToolWindow : public CWinControl, public CEditTarget {
    Q_OBJECT

public:
    CToolWindow(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);
    ~CToolWindow() override;

    const ToolRow& Row() const noexcept { return row; }
    // Shows it where it stood last, in front.
    void Open();
    // Whether the place that it opens at is another than the middle of the screen, where the start puts it.
    bool WasPlacedByUser() const noexcept { return placedByUser; }
    // Percent of the size of the windows.
    void SetScale(int percent);
    // Writes its placement into the settings.
    void KeepPlacement();
    // Builds its texts anew, after another language was chosen.
    void Retranslate();
    // The 40 ms work.
    void FollowEngine();

    // A file that is dropped on it. False: it goes where those dropped on the console go.
    virtual bool TakeFile(const QString& /*path*/) { return false; }

    // A grid of beats that another window has found in a sound file: BPM, and seconds of a downbeat.
    virtual void TakeGrid(const QString& /*path*/, double /*tempo*/, double /*downbeat*/) {}

    bool CanEdit(EEdit /*command*/) const override { return false; }
    void Edit(EEdit /*command*/) override {}

protected:
    CWorkstation& Document() const noexcept { return context.document; }
    CToolWindow* OpenOther(ETool tool) const { return context.open ? context.open(tool) : nullptr; }
    // The instrument and pattern that are to be shown; null when there is none.
    std::shared_ptr<CInstrument> Instrument() const { return context.document.Selection().CurrentInstrument(); }
    int Pattern() const { return context.document.Selection().CurrentPattern(); }

    // The selection or everything has changed.
    virtual void ShowSelection() = 0;
    // Something of the shown instrument or of all has changed, but not the selection.
    virtual void ShowChange(const Change& /*change*/) {}
    // With each tick while it is shown.
    virtual void ShowPlaying(const PlayPicture& /*picture*/) {}
    virtual void Translate() {}
    virtual QString Title() const;
    // Tells the title to the window again.
    void ShowTitle() { setWindowTitle(Title()); }

    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Follow(const Change& change);
    // A length that is kept as at 100 percent, on this screen.
    int Scaled(int length) const noexcept;

    const ToolContext& context;
    const ToolRow& row;
    int scale = 100;  // percent
    bool placed = false;
    bool placedByUser = false;
};

}  // namespace quib
