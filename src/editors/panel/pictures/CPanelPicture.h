// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// One kind of picture of a panel: draws from the values of its roles and turns the drag of a handle into
// values. Holds nothing itself. A new one is a class and its row in Pictures.cpp. User-interface thread.

#include <QPointF>
#include <QRectF>
#include <memory>
#include <string>
#include <vector>

#include "controls/CCanvas.h"
#include "editors/panel/CPictureCtrl.h"

namespace quib {

struct PictureHandle {
    QPointF place;
    bool isRound = false;
};

class CPanelPicture {
public:
    virtual ~CPanelPicture() = default;
    // Whether it shows what the plug-in measures.
    virtual bool IsLive() const noexcept { return false; }
    virtual void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const = 0;
    virtual std::vector<PictureHandle> Handles(const QRectF& /*area*/, const CPictureRoles& /*roles*/) const {
        return {};
    }
    // The mouse has taken a handle to a place.
    virtual void Drag(int /*handle*/, const QPointF& /*place*/, const QRectF& /*area*/,
                      CPictureRoles& /*roles*/) const {}
};

// Null for a kind that is not known. `number`: the option of a picture that counts something, such as periods.
std::unique_ptr<CPanelPicture> MakePicture(const std::string& kind, int number);

// A curve of `count` points with what lies below it filled lightly.
void DrawFilledCurve(CCanvas& canvas, std::vector<QPointF> points, qreal bottom, QRgb accent);

// The share of a place along an extent, 0..1.
inline float ShareOf(qreal place, qreal start, qreal length) noexcept {
    const qreal share = (place - start) / length;
    return static_cast<float>(share < 0 ? 0.0 : share > 1 ? 1.0 : share);
}

}  // namespace quib
