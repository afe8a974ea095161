// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the controls and pictures of panels are drawn with. User-interface thread.

#include <QRectF>
#include <functional>
#include <optional>
#include <string_view>

#include "controls/CCanvas.h"
#include "controls/Colours.h"
#include "texts/Language.h"

namespace quib {

class CSwitchCtrl;
class CWinControl;
struct PanelText;

constexpr int kFieldHeight = 24;  // of a field to choose from or to type into

// The section whose accent a layout names.
std::optional<ESection> SectionNamed(std::string_view name) noexcept;

QString InLanguage(const PanelText& text);

// The dark glass that pictures are drawn on, with so many lines across it.
void DrawGlass(CCanvas& canvas, const QRectF& area, int linesAcross);

// One of several choices, in its state.
void DrawSegment(CCanvas& canvas, const QRectF& area, bool chosen, bool hovered, bool enabled, QRgb accent);
QRgb SegmentText(bool chosen, bool hovered, bool enabled);

// Beside a control: whether a lane plays it, and whether MIDI moves it.
void DrawParameterMarks(CCanvas& canvas, CSkin& skin, QPointF place, bool automated, bool learned);

// Adds a button that does something once it has been let go, as the page may be built anew then. `glyph`: -1 for none.
CSwitchCtrl& AddPanelButton(CWinControl& window, const QRect& place, int glyph, const QString& text,
                            std::function<void()> run);

// The largest text height, of 12 down to 10, in which the text fits the width.
int FittingHeight(const QString& text, qreal width, bool strong, int largest = 12);

// One turn of a wave by the name of its shape, -1..1 at a place of 0..1; `width` is that of a pulse, 0..1.
float WaveAt(const QString& shape, float place, float width) noexcept;

}  // namespace quib
