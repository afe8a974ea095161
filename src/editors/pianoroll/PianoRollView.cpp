// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/pianoroll/PianoRollView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace quib {

void PianoRollView::Resize(int newWidth, int newHeight) noexcept {
    width = newWidth;
    height = newHeight;
    time.SetWidth(width - GridLeft());
    ScrollKeysTo(keyScroll);
}

void PianoRollView::SetDrums(bool on) noexcept {
    drums = on;
    Resize(width, height);
}

void PianoRollView::SetRows(const CRowOrder& order) noexcept {
    const int middle = kHeaderHeight + GridHeight() / 2;
    const int key = KeyAt(middle);
    rows = order;
    // Of a key that went, the place of the next lower one that is there.
    int row = -1;
    for (int lower = key; lower >= 0 && row < 0; --lower) row = rows.RowOf(lower);
    keyScroll += YOfRow(std::max(0, row)) + RowHeight() / 2 - middle;
    ScrollKeysTo(keyScroll);
}

bool PianoRollView::SetKeyZoom(int pixels, int y) noexcept {
    const int next = kKeyZoom.Clamp(pixels);
    if (drums || next == rowHeight) return false;
    const double rowsAbove = static_cast<double>(y - kHeaderHeight + keyScroll) / rowHeight;
    rowHeight = next;
    ScrollKeysTo(static_cast<int>(std::lround(rowsAbove * next)) - (y - kHeaderHeight));
    return true;
}

int PianoRollView::MaximumKeyScroll() const noexcept { return std::max(0, rows.Count() * RowHeight() - GridHeight()); }

bool PianoRollView::ScrollKeysTo(int pixels) noexcept {
    const int before = keyScroll;
    keyScroll = std::clamp(pixels, 0, MaximumKeyScroll());
    return keyScroll != before;
}

int PianoRollView::FootOf(int key) const noexcept {
    for (int higher = key; higher <= kHighestKey; ++higher) {
        if (const int row = rows.RowOf(higher); row >= 0) return YOfRow(row - 1);
    }
    return YOfRow(rows.Count() - 1);
}

int PianoRollView::RowAt(int y) const noexcept {
    const int place = y - kHeaderHeight + keyScroll;
    const int fromTop = place >= 0 ? place / RowHeight() : -1 - (-1 - place) / RowHeight();
    return rows.Count() - 1 - fromTop;
}

float PianoRollView::LeastLength() const noexcept {
    return static_cast<float>(kLeastNoteWidth) / static_cast<float>(time.StepWidth());
}

float PianoRollView::ShownLength(const Note& note) const noexcept {
    return drums ? 1.0F : std::max(note.length, LeastLength());
}

std::optional<NoteBox> PianoRollView::BoxOf(const Note& note) const noexcept {
    const int row = rows.RowOf(note.key);
    if (row < 0) return std::nullopt;
    const double left = XOf(static_cast<double>(note.position));
    const double right = left + static_cast<double>(ShownLength(note)) * time.StepWidth();
    const int top = YOfRow(row);
    return NoteBox{left, static_cast<double>(top), right, static_cast<double>(top + RowHeight())};
}

std::optional<std::uint32_t> PianoRollView::NoteAt(const CNoteIndex& index, int x, int y) const {
    if (RowAt(y) < 0 || RowAt(y) >= rows.Count()) return std::nullopt;
    // The middle of the pixel.
    const auto step = static_cast<float>(StepAt(x + 0.5));
    const int key = KeyAt(y);
    std::optional<std::uint32_t> found;
    index.VisitRange(std::max(0.0F, step - 1), step + LeastLength(), LeastLength(),
                     [&](std::uint32_t note, const Note& candidate) {
                         const float place = step - candidate.position;
                         if (candidate.key == key && place >= 0 && place < ShownLength(candidate)) found = note;
                     });
    return found;
}

NoteSelection PianoRollView::NotesBetween(const CNoteIndex& index, int x0, int y0, int x1, int y1) const {
    const auto from = static_cast<float>(StepAt(std::min(x0, x1)));
    const auto to = static_cast<float>(StepAt(std::max(x0, x1) + 1));
    const int lowest = RowAt(std::max(y0, y1));
    const int highest = RowAt(std::min(y0, y1));
    NoteSelection found;
    index.VisitRange(from - 1, to, LeastLength(), [&](std::uint32_t note, const Note& candidate) {
        const int row = rows.RowOf(candidate.key);
        const bool inTime = candidate.position < to && candidate.position + ShownLength(candidate) > from;
        if (inTime && row >= 0 && row >= lowest && row <= highest) found.push_back(note);
    });
    std::sort(found.begin(), found.end());
    return found;
}

bool PianoRollView::Reveal(const Note& note) noexcept {
    bool moved = false;
    const double left = time.XOf(static_cast<double>(note.position));
    if (left < 0 || left >= time.Width()) {
        const double margin = left < 0 ? 0 : time.Width() - 2.0 * time.StepWidth();
        moved = time.ScrollTo(static_cast<int>(std::floor(left + time.Scroll() - std::max(0.0, margin))));
    }
    const int row = rows.RowOf(note.key);
    if (row < 0) return moved;
    const int top = YOfRow(row);
    if (top < kHeaderHeight) return ScrollKeysTo(keyScroll + top - kHeaderHeight) || moved;
    if (top + RowHeight() > height) return ScrollKeysTo(keyScroll + top + RowHeight() - height) || moved;
    return moved;
}

bool IsBlackKey(int key) noexcept {
    constexpr unsigned kBlack = 0b0101'0100'1010;
    return (kBlack >> static_cast<unsigned>(key % 12) & 1U) != 0;
}

KeyName NameOfKey(int key) noexcept {
    constexpr std::array<char, 12> kLetters = {'C', 'C', 'D', 'D', 'E', 'F', 'F', 'G', 'G', 'A', 'A', 'B'};
    KeyName name{};
    const int bounded = std::clamp(key, 0, kHighestKey);
    std::snprintf(name.text, sizeof name.text, "%c%c%i", kLetters[static_cast<std::size_t>(bounded % 12)],
                  IsBlackKey(bounded) ? '#' : ' ', bounded / 12 - 2);
    return name;
}

}  // namespace quib
