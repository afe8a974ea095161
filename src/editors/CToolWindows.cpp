// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/CToolWindows.h"

#include "editors/base/CToolWindow.h"

namespace quib {

CToolWindows::CToolWindows(const ToolContext& toolContext, QWidget* windowParent)
    : context(toolContext), parent(windowParent) {}

CToolWindows::~CToolWindows() = default;

bool CToolWindows::Has(ETool tool) {
    const ToolRow* const row = FindTool(tool);
    return row != nullptr && row->make != nullptr;
}

CToolWindow* CToolWindows::Open(ETool tool) {
    if (!Has(tool)) return nullptr;
    std::unique_ptr<CToolWindow>& window = windows[tool];
    if (!window) {
        const ToolRow& row = *FindTool(tool);
        window = row.make(context, row, parent);
        window->SetScale(scale);
        window->infoPanel = infoPanel;
    }
    window->Open();
    return window.get();
}

std::vector<ETool> CToolWindows::CloseAll() {
    std::vector<ETool> open;
    for (const auto& [tool, window] : windows) {
        window->KeepPlacement();
        if (window->isVisible()) open.push_back(tool);
    }
    windows.clear();
    return open;
}

CToolWindow* CToolWindows::Find(ETool tool) const {
    const auto known = windows.find(tool);
    return known == windows.end() ? nullptr : known->second.get();
}

void CToolWindows::SetScale(int percent) {
    scale = percent;
    for (const auto& [tool, window] : windows) window->SetScale(percent);
}

void CToolWindows::SetInfoPanel(CInfoCtrl* panel) {
    infoPanel = panel;
    for (const auto& [tool, window] : windows) window->infoPanel = panel;
}

void CToolWindows::Retranslate() {
    for (const auto& [tool, window] : windows) window->Retranslate();
}

void CToolWindows::KeepPlacements() {
    for (const auto& [tool, window] : windows) window->KeepPlacement();
    CSettings& store = context.document.Settings();
    for (const ToolRow& row : ToolTable()) {
        const CToolWindow* const window = Find(row.tool);
        const int open = window != nullptr && window->isVisible() ? 1 : 0;
        if (WasOpen(row) != (open == 1)) store.WriteSettingInt(kWindowsSection, OpenName(row), open);
    }
}

QString CToolWindows::OpenName(const ToolRow& row) { return QLatin1String(row.placement) + QStringLiteral("Open"); }

bool CToolWindows::WasOpen(const ToolRow& row) const {
    return context.document.Settings().ReadSettingInt(kWindowsSection, OpenName(row), 0) == 1;
}

void CToolWindows::FollowEngine() {
    for (const auto& [tool, window] : windows) window->FollowEngine();
}

}  // namespace quib
