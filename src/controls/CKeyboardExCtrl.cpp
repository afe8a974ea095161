// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/CKeyboardExCtrl.h"

#include <algorithm>
#include <array>

#include "controls/CWinControl.h"
#include "controls/VirtualKeys.h"

namespace quib {

namespace {

// Right edges of the twelve keys in the upper part of an octave, in pixels; the last one is the octave's.
constexpr std::array<int, 12> kUpperEdges = {14, 28, 34, 48, 60, 74, 88, 94, 108, 114, 128, 140};
constexpr std::array<int, 7> kWhiteNotes = {0, 2, 4, 5, 7, 9, 11};
constexpr std::array<int, 5> kBlackNotes = {1, 3, 6, 8, 10};
constexpr int kNoteA = 48;  // of the key A

}  // namespace

CKeyboardExCtrl::CKeyboardExCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth,
                                 int newHeight, bool isCompact)
    : CControl(window, number, left, top, newWidth, newHeight), CTicked(window), compact(isCompact) {
    takesWheel = true;
    section = ESection::kKeyboard;
}

int CKeyboardExCtrl::NoteAt(int px, int py) const noexcept {
    const int place = px - X() + scroll;
    if (place < 0) return -1;
    const int octave = place / kOctaveWidth;
    const int base = 12 * octave;
    if (py - Y() >= BlackHeight()) {
        const int white = place / kWhiteWidth - 7 * octave;
        return base + 2 * white - (2 * white > 4 ? 1 : 0);
    }
    const int inOctave = place - kOctaveWidth * octave;
    const auto edge = std::upper_bound(kUpperEdges.begin(), kUpperEdges.end() - 1, inOctave);
    return base + static_cast<int>(edge - kUpperEdges.begin());
}

void CKeyboardExCtrl::Send(int note, bool off) {
    if (onNote) onNote(*this, note, off);
}

bool CKeyboardExCtrl::EndHeld(int note) {
    bool found = false;
    for (const std::uint32_t entry : held) {
        if (static_cast<int>(entry) != note) continue;
        Send(note, true);
        found = true;
    }
    std::erase(held, static_cast<std::uint32_t>(note));
    return found;
}

void CKeyboardExCtrl::EndAll() {
    for (const std::uint32_t note : held) Send(static_cast<int>(note), true);
    held.clear();
    current = -1;
    playing = false;
}

void CKeyboardExCtrl::ReleaseAll() {
    if (held.empty() && current < 0) return;
    EndAll();
    Refresh();
}

void CKeyboardExCtrl::OnLButtonDown(int px, int py, int button) {
    Owner().setCursor(Qt::PointingHandCursor);
    const int note = NoteAt(px, py);
    if (!IsNote(note)) return;
    if (controlHeld || shiftHeld) EndAll();
    if (button == 0) {
        if (onNote) {
            held.push_back(static_cast<std::uint32_t>(note));
            Send(note, false);
        }
        current = note;
        playing = true;
    }
    Refresh();
}

void CKeyboardExCtrl::OnLButtonUp(int px, int py, int button) {
    const int note = NoteAt(px, py);
    playing = false;
    if (button == 0) {
        if (IsNote(note)) EndHeld(note);
        // The note that the click began may lie elsewhere by now.
        if (!controlHeld && !shiftHeld && current >= 0) EndHeld(current);
    }
    current = -1;
    Refresh();
}

void CKeyboardExCtrl::OnMouseMove(int px, int py) {
    Owner().setCursor(Qt::PointingHandCursor);
    const int note = NoteAt(px, py);
    if (playing && note != current && IsNote(note) && !controlHeld && !shiftHeld) {
        EndHeld(current);
        current = note;
        if (onNote) held.push_back(static_cast<std::uint32_t>(note));
        Send(note, false);
        Refresh();
    }
    if (note != hoveredNote) {
        hoveredNote = note;
        Update(false, true);
    }
}

void CKeyboardExCtrl::OnMouseLeave() {
    Owner().unsetCursor();
    if (hoveredNote < 0) return;
    hoveredNote = -1;
    Update(false, true);
}

void CKeyboardExCtrl::OnMouseWheel(int /*px*/, int /*py*/, std::uint32_t word) {
    SetScrollOffset(scroll - static_cast<int>(NotchesOf(word) * kOctaveWidth / 2));
    if (onScroll) onScroll(scroll);
}

void CKeyboardExCtrl::OnKeyDown(int key) {
    if (key == virtualKey::kControl) controlHeld = true;
    if (key == virtualKey::kShift) shiftHeld = true;
}

void CKeyboardExCtrl::OnKeyUp(int key) {
    if (key == virtualKey::kControl) controlHeld = false;
    if (key == virtualKey::kShift) shiftHeld = false;
    if (key != virtualKey::kA) return;
    if (!controlHeld) EndHeld(kNoteA);
    if (!shiftHeld) {
        current = -1;
        Refresh();
    }
}

void CKeyboardExCtrl::SetScrollOffset(int offset) {
    scroll = std::clamp(offset, 0, std::max(0, kWholeWidth - Width()));
    Update(false, true);
}

void CKeyboardExCtrl::Resize(int newWidth, int newHeight) {
    SetSize(newWidth, newHeight);
    scroll = std::clamp(scroll, 0, std::max(0, kWholeWidth - newWidth));
}

std::uint64_t CKeyboardExCtrl::SoundingHash() const {
    std::uint64_t hash = 0;
    if (!isSounding) return hash;
    for (int note = 0; note <= kHighestNote; ++note) {
        if (isSounding(note)) hash = hash * 131 + static_cast<std::uint64_t>(note) + 1;
    }
    return hash;
}

void CKeyboardExCtrl::Tick() {
    if (!IsShown() || ShownRectangle().isEmpty()) return;
    const std::uint64_t sounding = SoundingHash();
    if (sounding == drawnSounding) return;
    drawnSounding = sounding;
    Update(false, true);
}

bool CKeyboardExCtrl::IsLit(int note) const {
    return note == current || std::find(held.begin(), held.end(), static_cast<std::uint32_t>(note)) != held.end() ||
           (isSounding && isSounding(note));
}

void CKeyboardExCtrl::Draw() {
    Canvas().Fill(Rectangle(), Palette().Colour(QStringLiteral("wellDeep")));
    const int firstOctave = scroll / kOctaveWidth;
    const int lastOctave = (scroll + Width()) / kOctaveWidth;
    for (int octave = firstOctave; octave <= lastOctave; ++octave) {
        DrawWhite(octave);
        DrawBlack(octave);
    }
}

void CKeyboardExCtrl::DrawWhite(int octave) {
    const QRgb accent = Palette().Accent(section);
    const auto named = [](const char* colour) { return Palette().Colour(QLatin1String(colour)); };
    const QRgb plain = named("pianoWhite");
    const QRgb shade = named("shade");
    for (int white = 0; white < 7; ++white) {
        const int note = 12 * octave + kWhiteNotes[static_cast<std::size_t>(white)];
        if (note > kHighestNote) return;
        const QRectF area(X() + octave * kOctaveWidth + white * kWhiteWidth - scroll, Y(), kWhiteWidth - 1, Height());
        const QRgb top = IsLit(note) ? accent : note == hoveredNote ? named("pianoWhiteHover") : plain;
        Canvas().FillVertical(area.adjusted(0, -3, 0, -1), 2.5, top, Mix(top, shade, 0.12F));
        if (white == 0) {
            Canvas().Text(QRectF(area.left(), area.bottom() - 16, area.width(), 12),
                          QStringLiteral("C%1").arg(octave - 2), named("pianoText"), 9);
        }
    }
}

void CKeyboardExCtrl::DrawBlack(int octave) {
    const QRgb accent = Palette().Accent(section);
    const auto named = [](const char* colour) { return Palette().Colour(QLatin1String(colour)); };
    const QRgb plain = named("pianoBlack");
    const QRgb gap = named("pianoGap");
    const QRgb shade = named("shade");
    for (const int inOctave : kBlackNotes) {
        const int note = 12 * octave + inOctave;
        if (note > kHighestNote) return;
        const auto index = static_cast<std::size_t>(inOctave);
        const int from = kUpperEdges[index - 1];
        const QRectF area(X() + octave * kOctaveWidth + from - scroll, Y(), kUpperEdges[index] - from, BlackHeight());
        const QRgb top = IsLit(note) ? accent : note == hoveredNote ? named("pianoBlackHover") : plain;
        Canvas().FillVertical(area.adjusted(0, -3, 0, 0), 2, gap, gap);
        Canvas().FillVertical(area.adjusted(1.5, -3, -1.5, -3), 2, top, Mix(top, shade, 0.35F));
    }
}

}  // namespace quib
