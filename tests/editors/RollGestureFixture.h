// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The hands of a piano roll over a document that keeps every step, without a window.

#include "controls/VirtualKeys.h"
#include "editors/RollFixture.h"
#include "editors/pianoroll/CPianoRollKeys.h"

namespace quib {

inline constexpr auto kLeft = EMouseButton::kLeft;
inline constexpr auto kRight = EMouseButton::kRight;

class CFakeSurface : public IPianoRollSurface {
public:
    void SetCursor(ERollCursor next) override { cursor = next; }
    void ViewMoved() override { ++moves; }
    void MarksChanged() override {}
    void ShowNote(const Note* note) override { shown = note != nullptr; }
    ERollCursor cursor = ERollCursor::kArrow;
    int moves = 0;
    bool shown = false;
};

class RollGesture : public testing::Test {
protected:
    RollGesture() {
        view.Resize(888, 408);
        Show({});
        view.ScrollKeysTo(12 * (127 - 72));  // key 72 is the first row
        view.time.SetExtent(256);
    }
    void Show(std::vector<Note> notes, NoteSelection selection = {}) {
        document.now = std::make_shared<CPattern>(32, std::move(notes));
        edit.Show({document.now, std::move(selection)});
    }
    static int XOf(double step) { return 64 + static_cast<int>(step * 24); }
    static int YOf(int key) { return 24 + (72 - key) * 12 + 6; }
    void Press(double step, int key, EMouseButton button = kLeft) { gestures.Press(button, XOf(step), YOf(key)); }
    void Move(double step, int key) { gestures.Move(XOf(step), YOf(key)); }
    void Release() { gestures.Release(0, 0); }
    void Drag(double fromStep, int fromKey, double toStep, int toKey, EMouseButton button = kLeft) {
        Press(fromStep, fromKey, button);
        Move(toStep, toKey);
        gestures.Release(XOf(toStep), YOf(toKey));
        edit.Settle();
    }
    void Click(double step, int key, EMouseButton button = kLeft) { Drag(step, key, step, key, button); }
    void Key(int key) {
        if (!gestures.KeyDown(key)) keys.KeyDown(key, gestures);
        gestures.KeyUp(key);
        keys.KeyUp(key, gestures);
        for (int tick = 0; tick < 7; ++tick) keys.Tick();
    }
    const std::vector<Note>& Notes() const { return edit.State().Notes(); }
    const NoteSelection& Selection() const { return edit.State().selection; }
    std::string LastStep() const { return document.steps.empty() ? "" : document.steps.back().name; }
    void ExpectConsistent() const {
        EXPECT_EQ(document.now, edit.State().pattern);
        EXPECT_FALSE(document.before) << "a gesture was left open";
        EXPECT_TRUE(document.IsSilent());
    }

    CFakeDocument document;
    CPianoRollEdit edit{document};
    PianoRollView view;
    PianoRollOptions options;
    CFakeSurface surface;
    CPianoRollGestures gestures{edit, view, options, surface};
    CPianoRollKeys keys{edit, view, options, surface};
};

}  // namespace quib
