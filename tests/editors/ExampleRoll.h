// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A window with a piano roll and its lane, and patterns to look at.

#include <QApplication>
#include <memory>
#include <vector>

#include "controls/CNoSettings.h"
#include "controls/CWinControl.h"
#include "editors/pianoroll/CVelocityLaneCtrl.h"

namespace quib {

// The roll at 0,0 and the lane 32 below it, as in a window of 888 pixels of width.
struct CExampleRoll {
    static constexpr int kWidth = 888;
    static constexpr int kRollHeight = 408;
    static constexpr int kLaneHeight = 80;

    explicit CExampleRoll(IPianoRollHost& host, int width = kWidth, int rollHeight = kRollHeight)
        : window(settings, "panel"),
          roll(&window.Add<CPianoRollCtrlEx>(0U, 0, 0, width, rollHeight, host)),
          lane(&window.Add<CVelocityLaneCtrl>(0U, 0, rollHeight + 32, width, kLaneHeight, *roll)) {
        window.resize(width, rollHeight + 32 + kLaneHeight);
        roll->view.ScrollKeysTo(12 * 40);
    }
    void Show() {
        window.show();
        QApplication::processEvents();
    }

    CNoSettings settings;
    CWinControl window;
    CPianoRollCtrlEx* roll;
    CVelocityLaneCtrl* lane;
};

inline NoteState StateOf(std::vector<Note> notes, int steps = 32, NoteSelection selection = {}) {
    return {std::make_shared<CPattern>(steps, std::move(notes)), std::move(selection)};
}

// Two bars of a melody in F minor, something of everything that is drawn.
inline NoteState ExampleMelody() {
    return StateOf({{0, 1.5F, 53, 118}, {2, 1, 65, 76},     {3, 1, 53, 84},      {4, 1, 56, 100},     {6, 1, 65, 94},
                    {7, 1, 63, 62},     {8, 1.5F, 53, 118}, {10, 1, 60, 80},     {11, 1, 58, 46},     {12, 2, 56, 104},
                    {14, 1, 58, 88},    {15, 1, 60, 40},    {16, 1.5F, 51, 116}, {18, 1, 63, 76},     {19, 1, 51, 86},
                    {20, 1, 55, 98},    {22, 1, 63, 92},    {23, 1, 60, 0},      {24, 1.5F, 53, 118}, {26, 1, 65, 78},
                    {27, 1, 65, 54},    {28, 2, 56, 106},   {30, 1, 60, 94},     {31, 0.75F, 58, 84}, {33, 1, 53, 98}},
                   32, {3, 14, 15, 16, 17});
}

inline NoteState ExampleDrums() {
    std::vector<Note> notes;
    for (int step = 0; step < 32; ++step) {
        if (step % 4 == 0) notes.push_back({static_cast<float>(step), 1, 60, 110});
        if (step % 8 == 4) notes.push_back({static_cast<float>(step), 1, 62, 100});
        if (step % 5 != 2) notes.push_back({static_cast<float>(step), 1, 66, step % 4 == 0 ? 104 : 50});
        if (step % 4 == 2) notes.push_back({static_cast<float>(step), 1, 70, 90});
        if (step % 7 < 4) notes.push_back({static_cast<float>(step), 1, 82, 30 + 12 * (step % 7)});
    }
    notes.push_back({0, 1, 73, 104});
    notes.push_back({28.5F, 1, 72, 80});
    notes.push_back({14, 1, 66, 0});
    return StateOf(std::move(notes), 32, {2, 5});
}

// `count` notes over the whole grid.
inline NoteState DenseNotes(int count, int steps) {
    std::vector<Note> notes;
    std::uint32_t random = 1;
    const auto next = [&random](std::uint32_t range) {
        random = random * 1664525U + 1013904223U;
        return static_cast<int>((random >> 8U) % range);
    };
    for (int index = 0; index < count; ++index) {
        notes.push_back({static_cast<float>(next(static_cast<std::uint32_t>(4 * steps))) / 4,
                         0.5F + 0.25F * static_cast<float>(next(8)), 36 + next(60), 1 + next(127)});
    }
    return StateOf(std::move(notes), steps);
}

}  // namespace quib
