// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The tool windows of a session: made at their first use from the table, kept until the end.
// User-interface thread.

#include <QObject>
#include <map>
#include <memory>
#include <vector>

#include "editors/ToolTable.h"

namespace quib {

class CInfoCtrl;
class CToolWindow;

class CToolWindows {
public:
    // `windowParent` outlives it.
    CToolWindows(const ToolContext& toolContext, QWidget* windowParent);
    ~CToolWindows();

    static bool Has(ETool tool);
    // Brings the window to the front; null when there is no such window.
    CToolWindow* Open(ETool tool);
    // Closes all of them for good and tells which were open, so that they can be made anew.
    std::vector<ETool> CloseAll();
    // Null when it has not been made.
    CToolWindow* Find(ETool tool) const;
    void SetScale(int percent);
    // Where the help of the windows' controls is shown: the console's panel. To be told of each new one.
    void SetInfoPanel(CInfoCtrl* panel);
    void Retranslate();
    // Where they are, and which of them are open.
    void KeepPlacements();
    // Whether it was open when that was kept.
    bool WasOpen(const ToolRow& row) const;
    // The 40 ms work.
    void FollowEngine();

private:
    static QString OpenName(const ToolRow& row);

    ToolContext context;
    QWidget* parent;
    int scale = 100;
    CInfoCtrl* infoPanel = nullptr;
    std::map<ETool, std::unique_ptr<CToolWindow>> windows;
};

}  // namespace quib
