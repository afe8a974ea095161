// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Oscilloscope of the output: the left channel blue, the right one red. Costs nothing while it is hidden.
// User-interface thread.

#include <span>

#include "controls/CControl.h"

namespace quib {

// Where the scope's pictures come from.
class CScopeSource {
public:
    virtual ~CScopeSource() = default;
    virtual void Show(bool on) = 0;
    // Asks for a new picture.
    virtual void Arm() = 0;
    struct Picture {
        std::span<const float> left;
        std::span<const float> right;
    };
    // The newest picture, valid until the next call; false when there is no new one.
    virtual bool Fetch(Picture& picture) = 0;
};

class CScopeCtrl : public CControl, public CTicked {
public:
    CScopeCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
               CScopeSource& scopeSource);
    ~CScopeCtrl() override;

    void Draw() override;
    void Resize(int newWidth, int newHeight) override;
    void OnShow(bool nowVisible) override;
    void Tick() override;
    ERole Role() const override { return ERole::kPicture; }

private:
    void DrawChannel(std::span<const float> samples, QRgb colour);

    CScopeSource& source;
    std::vector<float> left, right;
    std::vector<QPointF> points;
    bool flat = true;
};

}  // namespace quib
