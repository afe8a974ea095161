// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Ties the plug-in browser to the console: opens it for a place, loads what was chosen or dragged into the place,
// marks where a drag would go. User-interface thread.

#include "app/browser/CPlaceMark.h"
#include "app/browser/CPluginBrowser.h"
#include "app/console/ConsoleParts.h"
#include "app/console/SlotFields.h"

namespace quib {

class CMainWindow;

class CPluginBrowsing : public QObject {
    Q_OBJECT

public:
    CPluginBrowsing(CMainWindow& mainWindow, CWinControlMain& mainConsole);

    void Browse(const BrowseWish& wish);
    // For the first place that is free of the instrument shown, without one for a send effect.
    void BrowseEffect();
    CPluginBrowser& Browser() noexcept { return browser; }

private:
    void Choose(const PluginEntry& entry, bool staysOpen);
    void Drag(const PluginEntry& entry, const QPoint& point, bool dropped);
    void HoverFiles(const QStringList& paths, const QPoint& point);
    // A new instrument where there is no place.
    bool Load(const PluginEntry& entry, const std::optional<SlotPlace>& place);
    void LoadFile();
    void Mark(const QRect& area, ESlotKind kind);
    QRect WishArea() const;
    QString Title() const;

    CMainWindow& window;
    CWinControlMain& console;
    CPluginUse use;
    CPluginBrowser browser;
    CPlaceMark mark;
    BrowseWish wanted;
};

}  // namespace quib
