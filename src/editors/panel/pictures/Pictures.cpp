// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/panel/pictures/Pictures.h"

#include <array>

#include "editors/panel/PanelLook.h"

namespace quib {

namespace {

template <class Picture>
std::unique_ptr<CPanelPicture> Make(int /*number*/) {
    return std::make_unique<Picture>();
}

struct PictureRow {
    const char* kind;
    std::unique_ptr<CPanelPicture> (*make)(int number);
};

constexpr std::array kPictures = {
    PictureRow{"wave",
               [](int periods) -> std::unique_ptr<CPanelPicture> { return std::make_unique<CWavePicture>(periods); }},
    PictureRow{"voices", &Make<CVoicesPicture>},
    PictureRow{"filter", &Make<CFilterPicture>},
    PictureRow{"envelope", &Make<CEnvelopePicture>},
    PictureRow{"stroke", &Make<CStrokePicture>},
    PictureRow{"taps", &Make<CTapsPicture>},
    PictureRow{"decay", &Make<CDecayPicture>},
    PictureRow{"curve", &Make<CCurvePicture>},
    PictureRow{"reduction", &Make<CReductionPicture>},
    PictureRow{"swing", &Make<CSwingPicture>},
    PictureRow{"comb", &Make<CCombPicture>},
};

constexpr float kFilled = 0.16F;

}  // namespace

std::unique_ptr<CPanelPicture> MakePicture(const std::string& kind, int number) {
    for (const PictureRow& row : kPictures) {
        if (kind == row.kind) return row.make(number);
    }
    return nullptr;
}

void DrawFilledCurve(CCanvas& canvas, std::vector<QPointF> points, qreal bottom, QRgb accent) {
    if (points.size() < 2) return;
    std::vector<QPointF> filled = points;
    filled.emplace_back(points.back().x(), bottom);
    filled.emplace_back(points.front().x(), bottom);
    canvas.Polygon(filled, WithOpacity(accent, kFilled));
    canvas.Polyline(points, accent, 2);
}

}  // namespace quib
