// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The piano roll: header, key strip and grid of one pattern's notes. It draws, redrawing only what has
// changed, and hands the events on to the gestures; what they do to the document goes to the host. The
// window publishes and undoes, scrolls by its bars, and tells where the playhead is. User-interface thread.

#include "editors/pianoroll/CDirectPaneCtrl.h"
#include "editors/pianoroll/CPianoRollKeys.h"
#include "editors/pianoroll/drawing/CGridPainter.h"
#include "editors/pianoroll/drawing/CNotePainter.h"

namespace quib {

class CPianoRollCtrlEx : public CDirectPaneCtrl, public CTicked, private IPianoRollSurface {
public:
    CPianoRollCtrlEx(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                     IPianoRollHost& host);

    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void Resize(int newWidth, int newHeight) override;
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;
    void Tick() override;
    // A held key again.
    void RepeatKey(int key);

    // --- For the window

    // The pattern that is shown, after any change of the document; what has changed is redrawn.
    void Show(const NoteState& state) { edit.Show(state); }
    const NoteState& State() const noexcept { return edit.State(); }
    CPianoRollEdit& Edit() noexcept { return edit; }
    // Else only Escape and the modifiers count: another control has the keys.
    bool takesKeys = true;
    // After changing these two: OptionsChanged. After scrolling or zooming: ViewMoved.
    PianoRollOptions options;
    PianoRollView view;
    void OptionsChanged();
    void ViewMoved() override;
    // Quantise and the like.
    CPianoRollKeys& Keys() noexcept { return keys; }
    // In steps of the pattern; below 0 nothing plays. Turns the page where following is on.
    void SetPlayhead(double step);
    double Playhead() const noexcept { return playhead; }
    // The text in the header's corner, "%1" for the number of steps.
    void SetLengthText(const QString& format);
    // Each of these is "%i", "%.2f", "%.2f".
    static QString BubbleText(const Note& note);

    const RollColours& Colours() const noexcept { return colours; }
    CGridPainter& Ground() noexcept { return ground; }
    CMasks& Masks() noexcept { return masks; }

    // For the lane and the status line.
    std::function<void(const NoteState& before)> onNotes;
    std::function<void()> onView;
    std::function<void(double from, double to)> onPlayhead;
    std::function<void(float step, int key)> onMousePlace;

private:
    struct Hover {
        std::optional<std::uint32_t> note;
        bool cell = false;
        float step = 0;
        int row = 0;
        friend bool operator==(const Hover&, const Hover&) = default;
    };

    void SetCursor(ERollCursor cursor) override;
    void MarksChanged() override;
    void ShowNote(const Note* note) override;

    RollDrawing Drawing(const QRect& part);
    void Paint(const QRect& part) override;
    void PaintHeader(const RollDrawing& drawing) const;
    void PaintGrid(const RollDrawing& drawing);
    void PaintRows(const RollDrawing& drawing);
    void PaintMarks(const RollDrawing& drawing) const;
    void PaintHover(const RollDrawing& drawing) const;
    // The part of the control that a rectangle of the grid takes.
    QRect GridPart(double left, double top, double right, double bottom) const;
    QRect HoverPart() const;
    QRect MarqueePart() const;
    // Of the flag in the header, or of the line through the grid.
    QRect PlayheadPart(double step, bool isFlag) const;
    void NotesChanged(const NoteState& before);
    QRect ChangedPart(const NoteState& before) const;
    void UpdateExtent();
    void SyncAlt();
    void TrackHover(int x, int y);
    void LightHover();

    CPianoRollEdit edit;
    CPianoRollGestures gestures;
    CPianoRollKeys keys;
    RollColours colours;
    CGridPainter ground;
    CNotePainter notes;
    CMasks masks;
    KeySet usedKeys;
    QString lengthFormat = QStringLiteral("%1 steps");
    double playhead = -1;
    Hover hover;        // what is lit
    Hover wantedHover;  // what the next tick lights
    QRect drawnMarquee;
    QRect drawnCursor;
    int drawnPressed = -1;
    KeySet drawnSounding;
    int pendingTicks = 0;
    ERollCursor cursor = ERollCursor::kArrow;
};

}  // namespace quib
