// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The areas of editors that have been closed. A plug-in may have windows of its own in there for a while, as when one
// of its menus was open: it gets the time to take them away, and the area stays until it has, or is gone. An area that
// goes before would end the program later, when the plug-in comes back to its windows. User-interface thread.

#include <QWidget>
#include <memory>
#include <optional>
#include <vector>

#include "platform/XWindows.h"

namespace quib {

class CPlugin;

// What a plug-in has put into an area; nothing when it is empty.
std::optional<WindowSize> ContentOf(const QWidget& area);

class CLeftEditors {
public:
    CLeftEditors() = default;
    // What is in use still stays to the end of the process.
    ~CLeftEditors();
    CLeftEditors(const CLeftEditors&) = delete;
    CLeftEditors& operator=(const CLeftEditors&) = delete;

    void Take(const std::shared_ptr<CPlugin>& plugin, QWidget* area);
    // From the 40 ms timer.
    void Tick();
    bool IsEmpty() const noexcept { return areas.empty(); }

private:
    struct Area {
        std::weak_ptr<CPlugin> plugin;
        QWidget* widget;
    };
    std::vector<Area> areas;
};

}  // namespace quib
