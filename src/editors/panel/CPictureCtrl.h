// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The picture of a group of parameters: it draws from their values, and what is dragged in it moves them. Which
// picture it is, CPanelPicture knows. User-interface thread.

#include <map>
#include <memory>
#include <string>

#include "controls/CControl.h"

namespace quib {

class CPanelPicture;
class CPanelValues;

// The parameters of a picture by their roles.
class CPictureRoles {
public:
    CPictureRoles(CPanelValues& panelValues, std::map<std::string, int> parameters)
        : values(panelValues), indices(std::move(parameters)) {}

    bool Has(const char* role) const { return indices.contains(role); }
    // 0..1; `fallback` for a role that the layout does not give.
    float Get(const char* role, float fallback = 0) const;
    // In the plug-in's words; empty without it.
    QString Reading(const char* role) const;
    // The number that its reading begins with.
    float Number(const char* role, float fallback = 0) const;
    void Set(const char* role, float value);
    const std::map<std::string, int>& Indices() const noexcept { return indices; }
    CPanelValues& Values() const noexcept { return values; }

private:
    CPanelValues& values;
    std::map<std::string, int> indices;
};

class CPictureCtrl : public CControl {
public:
    CPictureCtrl(CWinControl& window, const QRect& place, CPictureRoles pictureRoles,
                 std::unique_ptr<CPanelPicture> shownPicture);
    ~CPictureCtrl() override;

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnMouseLeave() override;
    bool HasChanged() const override;

private:
    QRectF Inside() const;
    int HandleAt(int px, int py) const;
    std::vector<float> Values() const;

    CPictureRoles roles;
    std::unique_ptr<CPanelPicture> picture;
    int under = -1;
    int held = -1;                // handle
    std::map<int, float> before;  // of the parameters, when it was taken
    std::vector<float> drawn;
    unsigned drawnMeasured = 0;
};

}  // namespace quib
