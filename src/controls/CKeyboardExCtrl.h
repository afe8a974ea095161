// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// An on-screen piano keyboard, scrolled sideways. A key that is left with Ctrl or Shift down stays held until
// the next click.
// User-interface thread.

#include <vector>

#include "controls/CControl.h"

namespace quib {

class CKeyboardExCtrl : public CControl, public CTicked {
public:
    static constexpr int kWhiteWidth = 20;
    static constexpr int kOctaveWidth = 7 * kWhiteWidth;
    static constexpr int kHighestNote = 127;
    static constexpr int kWholeWidth = 75 * kWhiteWidth;  // of all 128 notes

    CKeyboardExCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                    bool isCompact);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void OnKeyDown(int key) override;
    void OnKeyUp(int key) override;
    void Resize(int newWidth, int newHeight) override;
    void Tick() override;
    ERole Role() const override { return ERole::kKeys; }

    // The note under a point; negative or above 127 for none.
    int NoteAt(int px, int py) const noexcept;
    const std::vector<std::uint32_t>& HeldNotes() const noexcept { return held; }
    int CurrentNote() const noexcept { return current; }
    int ScrollOffset() const noexcept { return scroll; }
    // In pixels, limited to what there is.
    void SetScrollOffset(int offset);
    // Ends every note that is held; the other draws nothing.
    void ReleaseAll();
    void EndAll();

    std::function<void(CKeyboardExCtrl&, int note, bool off)> onNote;
    std::function<bool(int note)> isSounding;  // keys that sound from elsewhere
    std::function<void(int offset)> onScroll;

private:
    static bool IsNote(int note) noexcept { return note >= 0 && note <= kHighestNote; }
    void Send(int note, bool off);
    bool EndHeld(int note);
    bool IsLit(int note) const;
    void DrawWhite(int octave);
    void DrawBlack(int octave);
    int BlackHeight() const noexcept { return compact ? 36 : 62; }
    std::uint64_t SoundingHash() const;

    bool compact;
    int scroll = 0;
    int current = -1;
    int hoveredNote = -1;
    bool playing = false;  // the left button is down
    bool controlHeld = false;
    bool shiftHeld = false;
    std::vector<std::uint32_t> held;
    std::uint64_t drawnSounding = 0;
};

}  // namespace quib
