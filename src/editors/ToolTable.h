// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The tool windows: one row each. A new window is a folder of its own, a row here and its texts.

#include <QKeySequence>
#include <QSize>
#include <functional>
#include <memory>
#include <span>

#include "document/CWorkstation.h"

class QWidget;

namespace quib {

class CControlSettings;
class CToolWindow;

enum class ETool { kPianoRoll, kAutomation, kArpeggiator, kBall, kPlaylist, kTutorial };

// What every tool window works with. All of it outlives the windows.
struct ToolContext {
    CWorkstation& document;
    const CControlSettings& settings;
};

struct ToolRow {
    ETool tool;
    const char* placement;  // name in the section "Windows"
    const char* title;      // for menus, in English
    QSize size;             // at first, in skin pixels
    bool fixedWidth;
    bool fixedHeight;
    Qt::Key key;
    // Null while there is no such window.
    std::unique_ptr<CToolWindow> (*make)(const ToolContext& context, const ToolRow& row, QWidget* parent);
};

std::span<const ToolRow> ToolTable();
// Null for a tool that has no row.
const ToolRow* FindTool(ETool tool);

}  // namespace quib
