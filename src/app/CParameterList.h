// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The parameters of a plug-in as rows of name, slider and value in its own units. Draws and asks only what
// is in sight, so thousands cost nothing. A drag sets, Shift or Ctrl makes it fine, the wheel steps, a
// double click asks for a text, Alt+click goes back to the value of the opening. User-interface thread.

#include <QAbstractScrollArea>
#include <memory>
#include <vector>

#include "controls/CControl.h"

namespace quib {

class CPlugin;
class CWorkstation;

class CParameterList : public QAbstractScrollArea {
    Q_OBJECT

public:
    CParameterList(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin);

    // Shows the parameters whose names hold the text.
    void SetFilter(const QString& text);
    // Follows what others have moved; from the 40 ms timer.
    void Refresh();
    int RowCount() const { return static_cast<int>(rows.size()); }
    // What a row shows.
    QString ValueText(int row) const;

    // The rows in sight, for the learn mode; in pixels of the viewport.
    std::vector<CControl::Learnable> LearnableParts() const;

    // Sets the parameter of a row by a text: in the plug-in's own way, or as a number 0..1.
    void SetByText(int row, const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    int RowHeight() const;
    int RowAt(const QPoint& point) const;
    QRect SliderOf(int row) const;
    // What MIDI may move of a row; nothing for a plug-in that has gone.
    std::optional<ControlTarget> TargetOf(int row) const;
    float Value(int row) const;
    void Set(int row, float value);
    void Edit(int row, float before);
    void UpdateRange();

    CWorkstation& workstation;
    std::shared_ptr<CPlugin> plugin;
    std::vector<int> rows;        // parameters in sight of the filter
    std::vector<float> opening;   // values when the list was made
    std::vector<float> lastSeen;  // values when they were drawn last, by parameter
    int dragged = -1;             // row
    float dragStart = 0;
    QPoint dragPoint;
    float dragValue = 0;
};

}  // namespace quib
