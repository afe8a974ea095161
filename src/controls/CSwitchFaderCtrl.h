// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A switch with a level: the field of an effect send. The right 25 pixels switch it on and off, the rest
// is dragged for the level. Disabled, while no effect is there, it tells how to choose one.
// User-interface thread.

#include "controls/CControl.h"
#include "controls/CDragValue.h"

namespace quib {

class CSwitchFaderCtrl : public CControl {
public:
    static constexpr int kSwitchZone = 25;  // pixels

    // `bound` is the switch. Without a level it is a plain switch with a name, as of an insert.
    CSwitchFaderCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
                     CValue* bound, CValue* boundLevel);

    void Draw() override;
    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    // Numbers and the default are the level's.
    void TakeNumber(float number) override;
    bool HasDefault() const override { return level != nullptr; }
    void ReturnToDefault() override;
    bool HasChanged() const override;
    void ListLearnable(std::vector<Learnable>& parts) const override;
    ERole Role() const override { return level != nullptr ? ERole::kSlider : ERole::kSwitch; }
    void Activate(int part) override;
    bool IsUsefulDisabled() const override { return true; }
    QString ShownText() const override { return text; }
    QString SpokenValue() const override;
    Range Amount() const override;

    CValue* Level() const noexcept { return level; }
    void SetText(const QString& text);
    void ResetLevel() { ReturnToDefault(); }

    std::optional<ControlTarget> levelLearns;
    float levelMaximum = 127;
    float levelDefault = 0;
    std::function<QString(float)> formatLevel;
    std::function<void(CControl&, float before)> onLevelGesture;
    // A click while it is disabled; unset: it tells how to choose an effect.
    std::function<void(CControl&)> onEmptyClick;
    bool struckWhileOff = false;  // the name of what is off is struck out

private:
    bool IsOn() const noexcept { return Value() != nullptr && Value()->IsOn(); }
    bool IsSwitch(int px) const noexcept { return level == nullptr || px - X() >= Width() - kSwitchZone; }
    void DrawName(QRectF room, bool on);
    void DrawEmpty(const QRectF& area);
    QString LevelText() const;
    void ShowLevel();
    void ChangeLevel(float next);
    void FinishLevel(float before);

    CValue* level;
    QString text;
    bool dragging = false;
    float levelBefore = 0;
    float drawnLevel = 0;
    CDragValue drag;
};

}  // namespace quib
