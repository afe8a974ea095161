// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPluginWindows.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "document/CSettings.h"

namespace quib {

namespace {

constexpr int kGap = 6;     // pixels
constexpr int kFrame = 30;  // height of the window manager's title
constexpr int kCascade = 24;
constexpr const char* kSection = "PluginWindows";

// Below the strip, else above it; where neither has room, as low and as far to the right as the screen allows. Never
// over the panels at the top, unless the window is as high as the screen.
QPoint PlaceBeside(const StripSight& sight, const QSize& size, const QRect& screen) {
    const int height = size.height() + kFrame;
    const int right = std::max(screen.left(), screen.right() - size.width() - kGap);
    const int x = std::clamp(sight.field.left(), screen.left(), right);
    if (sight.strip.bottom() + kGap + height <= screen.bottom()) return {x, sight.strip.bottom() + kGap + kFrame};
    if (sight.strip.top() - kGap - height >= sight.bandBottom) {
        return {x, sight.strip.top() - kGap - size.height()};
    }
    return {right, std::max(screen.top(), screen.bottom() - height) + kFrame};
}

}  // namespace

CPluginWindows::CPluginWindows(CWorkstation& projectOwner, QWidget* windowParent)
    : workstation(projectOwner), parent(windowParent) {
    connect(&workstation.Changes(), &CChanges::Changed, this, [this](const Change& change) {
        if (change.kind == EChange::kSlot || change.kind == EChange::kStack || change.kind == EChange::kProject) {
            CloseLost();
        }
    });
    connect(&workstation.Places(), &CPluginPlaces::EditorSizeWanted, this, &CPluginWindows::ResizeEditor);
}

CPluginWindow* CPluginWindows::WindowOf(const SlotPlace& place) {
    const auto slot = workstation.Places().Slot(place);
    if (!slot || !slot->plugin) return nullptr;
    QPointer<CPluginWindow>& window = windows[slot->plugin.get()];
    if (window != nullptr) return window;
    window = new CPluginWindow(workstation, slot->plugin, parent);
    window->showLane = [this, plugin = slot->plugin.get()](int parameter) {
        if (showLane) showLane(plugin, parameter);
    };
    connect(window.data(), &CPluginWindow::Opening, this, [this, opened = window, place] { PlaceNew(*opened, place); });
    connect(window.data(), &CPluginWindow::Closing, this,
            [this, closed = window, key = KeyOf(*slot->plugin, place)] { KeepPlace(*closed, key); });
    // The plug-in is that of the window, which goes later than its editor.
    connect(window.data(), &CPluginWindow::EditorLeft, this,
            [this, plugin = std::weak_ptr<CPlugin>(slot->plugin)](QWidget* area) {
                leftEditors.Take(plugin.lock(), area);
            });
    return window;
}

bool CPluginWindows::IsShown(const SlotPlace& place) const {
    const auto slot = workstation.Places().Slot(place);
    if (!slot || !slot->plugin) return false;
    const QPointer<CPluginWindow> window = windows.value(slot->plugin.get());
    return window != nullptr && window->isVisible();
}

CPluginWindow* CPluginWindows::Show(const SlotPlace& place) {
    const QPointer<CPluginWindow> window = WindowOf(place);
    if (window == nullptr) return nullptr;
    window->ShowEditor();
    if (window == nullptr) return nullptr;
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

CPluginWindow* CPluginWindows::ShowParameters(const SlotPlace& place) {
    CPluginWindow* const window = WindowOf(place);
    if (window == nullptr) return nullptr;
    window->ShowList();
    window->show();
    window->raise();
    return window;
}

// A plug-in of that kind in that place of the console.
QString CPluginWindows::KeyOf(const CPlugin& plugin, const SlotPlace& place) const {
    const auto& all = workstation.Stack().Instruments();
    const auto owner =
        std::find_if(all.begin(), all.end(), [&](const auto& one) { return one->Id() == place.instrument; });
    return QStringLiteral("%1-%2-%3-%4")
        .arg(QString::fromStdString(plugin.Identity().Key()).replace(QLatin1Char(':'), QLatin1Char('-')))
        .arg(static_cast<int>(place.kind))
        .arg(place.index)
        .arg(std::distance(all.begin(), owner));
}

// Where it stood last, else beside its strip, and not exactly over another one.
void CPluginWindows::PlaceNew(CPluginWindow& window, const SlotPlace& place) const {
    const QString kept =
        workstation.Settings().ReadSettingString(QLatin1String(kSection), KeyOf(window.Plugin(), place));
    const QStringList numbers = kept.split(QLatin1Char(','));
    const QRect screen = window.screen()->availableGeometry();
    QPoint at;
    if (numbers.size() == 2) {
        at = QPoint(numbers[0].toInt(), numbers[1].toInt());
    } else {
        const auto sight = sightOf ? sightOf(place) : std::nullopt;
        if (!sight) return;
        at = PlaceBeside(*sight, window.size(), screen);
    }
    const auto isTaken = [&](const QPointer<CPluginWindow>& other) {
        return other != nullptr && other != &window && other->isVisible() && other->geometry().topLeft() == at;
    };
    while (std::any_of(windows.begin(), windows.end(), isTaken)) at += QPoint(-kCascade, kCascade);
    at.setX(std::clamp(at.x(), screen.left(), std::max(screen.left(), screen.right() - kCascade)));
    at.setY(std::clamp(at.y(), screen.top() + kFrame, std::max(screen.top() + kFrame, screen.bottom() - kCascade)));
    window.PlaceAt(at);
}

void CPluginWindows::KeepPlace(const CPluginWindow& window, const QString& key) {
    const QPoint at = window.geometry().topLeft();
    workstation.Settings().WriteSettingString(QLatin1String(kSection), key,
                                              QStringLiteral("%1,%2").arg(at.x()).arg(at.y()));
}

// At once: a window must not outlive the project that its plug-in is from. While one closes, its plug-in may handle
// what opens others.
void CPluginWindows::CloseAll() {
    for (const QPointer<CPluginWindow>& window : std::exchange(windows, {})) Remove(window);
}

void CPluginWindows::CloseLost() {
    QList<QPointer<CPluginWindow>> lost;
    windows.removeIf([&](const auto& entry) {
        SlotPlace place;
        const QPointer<CPluginWindow>& window = entry.value();
        if (window != nullptr && workstation.Places().FindPlugin(&window->Plugin(), place)) return false;
        lost.append(window);
        return true;
    });
    for (const QPointer<CPluginWindow>& window : lost) Remove(window);
}

void CPluginWindows::Remove(const QPointer<CPluginWindow>& window) {
    if (window != nullptr) window->close();  // which tells where it stood
    delete window.data();
}

// Of those that are there now: while one ticks, its plug-in may handle what opens and closes others.
void CPluginWindows::Tick() {
    const auto shown = windows.values();
    for (const QPointer<CPluginWindow>& window : shown) {
        if (window != nullptr) window->Tick();
    }
    leftEditors.Tick();
}

void CPluginWindows::ResizeEditor(const void* plugin, int width, int height) {
    if (const QPointer<CPluginWindow> window = windows.value(plugin)) window->ResizeEditor(width, height);
}

}  // namespace quib
