// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The curve of one lane: draws its points over the grid and the notes, forwards the hands. It stands in a window of
// its own or below a grid whose time axis it shares. User-interface thread.

#include "editors/automation/CCrowdPainter.h"
#include "editors/automation/CCurvePainter.h"
#include "editors/automation/CLaneCatalog.h"
#include "editors/automation/CLaneGestures.h"
#include "editors/base/CEditTarget.h"
#include "editors/pianoroll/CDirectPaneCtrl.h"
#include "model/edits/CNoteIndex.h"
#include "model/edits/LaneCurve.h"

class QMenu;

namespace quib {

class CEventCtrl : public CDirectPaneCtrl {
public:
    CEventCtrl(CWinControl& window, std::uint32_t number, int left, int top, int newWidth, int newHeight,
               const CLaneCatalog& lanes, CTimeGrid* sharedTime = nullptr);

    CLaneView& View() noexcept { return view; }
    CLaneEdit& Edit() noexcept { return edit; }
    CLaneGestures& Gestures() noexcept { return gestures; }
    // Another lane, or none.
    void ShowLane(std::optional<LaneEntry> next, const LaneLimits& limits);
    // Points that the document has now.
    void ShowPoints(const LaneState& next) { edit.Show(next); }
    const std::optional<LaneEntry>& Lane() const noexcept { return lane; }
    // In steps; below 0: none.
    void SetPlayhead(double step);
    double Playhead() const noexcept { return playhead; }

    // --- Commands, those of the Edit menu and the menu of the right button

    bool CanEdit(EEdit command) const;
    void DoEdit(EEdit command);
    void ClearLane();
    void FillMenu(QMenu& menu);

    bool takesKeys = true;
    bool wheelIsValue = false;                // else it scrolls
    int patternEnd = 0;                       // steps; 0: the song, which has none
    std::shared_ptr<const CNoteIndex> notes;  // behind the curve; null: none
    std::function<std::optional<float>()> valueNow;
    bool recording = false;  // what is shown is being written
    std::function<void()> onView;
    std::function<void(double step)> onLocate;
    std::function<void()> onState;

    void OnMouseMove(int px, int py) override;
    void OnLButtonDown(int px, int py, int button) override;
    void OnLButtonUp(int px, int py, int button) override;
    void OnDoubleClick(int px, int py) override;
    void OnMouseWheel(int px, int py, std::uint32_t word) override;
    void OnMouseLeave() override;
    void OnKeyDown(int key) override;
    void Resize(int newWidth, int newHeight) override;
    void ViewMoved();

private:
    void Paint(const QRect& part) override;
    void PaintGround(const QRect& part);
    void PrepareLines(const QRect& part, const QRect& area);
    std::vector<QRect> NoteAreas(const QRect& part, const QRect& area) const;
    void PaintScale();
    void PaintHeader(const QRect& part);
    void PaintRest();
    // The points of a part, and how they are seen.
    struct PointsInSight {
        std::uint32_t first = 0;
        float to = 0;                           // steps
        PointSelection::const_iterator chosen;  // the first of them that is
        bool crowded = false;                   // only those that are meant are seen
        bool many = false;                      // as small squares, being that many
    };
    PointsInSight InSight(const QRect& part) const;
    // `paint(index, place, isChosen)` for each that is seen.
    template <class Visit>
    void VisitPoints(const PointsInSight& sight, const Visit& paint) const;
    void FindCrowd(const QRect& part, const QRect& area);
    void PaintPoints(const QRect& part);
    void PaintPoint(std::uint32_t index, bool chosen, QRgb accent);
    void PaintMarquee();
    void PaintPlayhead();
    void ShowBubble();
    std::vector<float> ScaleValues() const;
    // Of what has changed since.
    void ShowState(const LaneState& before);
    QRect PartOf(const StepSpan& span) const;
    void SetHovered(std::optional<std::uint32_t> next);
    QRectF Shape(double left, double top, double newWidth, double newHeight) const {
        return {X() + left, Y() + top, newWidth, newHeight};
    }
    QPointF PlaceOf(const Point& point) const {
        return {X() + view.XOf(static_cast<double>(point.x)), Y() + view.YOf(point.y)};
    }
    QRgb Accent() const;
    LaneHand Hand() const;

    const CLaneCatalog& catalog;
    CLaneView view;
    CLaneEdit edit;
    CLaneGestures gestures{edit, view};
    CCurvePainter lineNow, lineBefore;
    CCrowdPainter crowd;
    bool showsBefore = false;  // in what is painted
    LaneClip clip;
    std::optional<LaneEntry> lane;
    std::optional<std::uint32_t> hovered;
    double playhead = -1;
    bool locating = false;
};

}  // namespace quib
