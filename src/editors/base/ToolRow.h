// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the program knows of a tool window before there is one. Plain values, user-interface thread.

#include <QKeySequence>
#include <QSize>
#include <functional>
#include <memory>

#include "document/CWorkstation.h"

class QWidget;

namespace quib {

class CControlSettings;
class CToolWindow;

enum class ETool { kPianoRoll, kAutomation, kArpeggiator, kBall, kPlaylist, kTutorial, kRhythm, kLoopCreator };

// What every tool window works with. All of it outlives the windows.
struct ToolContext {
    CWorkstation& document;
    const CControlSettings& settings;
    // Brings another one to the front; null when there is no such window.
    std::function<CToolWindow*(ETool tool)> open = {};
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

}  // namespace quib
