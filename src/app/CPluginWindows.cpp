// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPluginWindows.h"

namespace quib {

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
    if (window == nullptr) window = new CPluginWindow(workstation, slot->plugin, parent);
    return window;
}

CPluginWindow* CPluginWindows::Show(const SlotPlace& place) {
    CPluginWindow* const window = WindowOf(place);
    if (window == nullptr) return nullptr;
    window->ShowEditor();
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

// At once: a window must not outlive the project that its plug-in is from.
void CPluginWindows::CloseAll() {
    for (const QPointer<CPluginWindow>& window : windows) delete window.data();
    windows.clear();
}

void CPluginWindows::CloseLost() {
    for (auto entry = windows.begin(); entry != windows.end();) {
        SlotPlace place;
        const QPointer<CPluginWindow> window = entry.value();
        if (window != nullptr && workstation.Places().FindPlugin(&window->Plugin(), place)) {
            ++entry;
            continue;
        }
        delete window.data();
        entry = windows.erase(entry);
    }
}

void CPluginWindows::Tick() {
    for (const QPointer<CPluginWindow>& window : windows) {
        if (window != nullptr) window->Tick();
    }
}

void CPluginWindows::ResizeEditor(const void* plugin, int width, int height) {
    if (const QPointer<CPluginWindow> window = windows.value(plugin)) window->ResizeEditor(width, height);
}

}  // namespace quib
