// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CLeftEditors.h"

#include <QGuiApplication>
#include <QThread>

#include "model/plugin/CPlugin.h"

namespace quib {

std::optional<WindowSize> ContentOf(const QWidget& area) {
#if QT_CONFIG(xcb)
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && area.internalWinId() != 0) return SizeOfContent(x11->display(), area.internalWinId());
#endif
    return std::nullopt;
}

CLeftEditors::~CLeftEditors() {
    constexpr int kTurns = 25;
    constexpr unsigned kTurn = 20;  // milliseconds
    for (int turn = 0; turn < kTurns && !areas.empty(); ++turn) {
        QThread::msleep(kTurn);
        Tick();
    }
}

void CLeftEditors::Take(const std::shared_ptr<CPlugin>& plugin, QWidget* area) {
    if (!ContentOf(*area)) return delete area;
    areas.push_back({plugin, area});
}

// Only one that has left something is called after its editor was closed.
void CLeftEditors::Tick() {
    for (const Area& area : areas) {
        if (const auto plugin = area.plugin.lock()) plugin->IdleEditor();
    }
    std::erase_if(areas, [](const Area& area) {
        const bool done = area.plugin.expired() || !ContentOf(*area.widget);
        if (done) delete area.widget;
        return done;
    });
}

}  // namespace quib
