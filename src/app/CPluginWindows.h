// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The open windows of plug-ins, one for each plug-in; they close when their plug-in leaves the project.
// User-interface thread.

#include <QHash>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

#include "app/CLeftEditors.h"
#include "app/CPluginWindow.h"
#include "app/console/SlotFields.h"
#include "document/CWorkstation.h"

namespace quib {

class CPluginWindows : public QObject {
    Q_OBJECT

public:
    // Where the console shows a place; unset, or without an answer, the desktop chooses where a window opens.
    std::function<std::optional<StripSight>(const SlotPlace& place)> sightOf;

    // A parameter's curve is wanted; unset, it cannot be shown.
    std::function<void(const CPlugin* plugin, int parameter)> showLane;

    explicit CPluginWindows(CWorkstation& projectOwner, QWidget* windowParent = nullptr);
    ~CPluginWindows() override { CloseAll(); }

    // Whether the window of what is in the place is open.
    bool IsShown(const SlotPlace& place) const;
    // Opens the window of what stands in a place, or brings it to the front: the plug-in's own editor, or
    // the page of its parameters. Null when there is no plug-in.
    CPluginWindow* Show(const SlotPlace& place);
    CPluginWindow* ShowParameters(const SlotPlace& place);
    void CloseAll();
    void Tick();

private:
    CPluginWindow* WindowOf(const SlotPlace& place);
    void PlaceNew(CPluginWindow& window, const SlotPlace& place) const;
    void KeepPlace(const CPluginWindow& window, const QString& key);
    QString KeyOf(const CPlugin& plugin, const SlotPlace& place) const;
    void CloseLost();
    static void Remove(const QPointer<CPluginWindow>& window);
    void ResizeEditor(const void* plugin, int width, int height);

    CWorkstation& workstation;
    QWidget* parent;
    CLeftEditors leftEditors;
    QHash<const void*, QPointer<CPluginWindow>> windows;
};

}  // namespace quib
