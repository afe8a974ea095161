// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The plug-ins that the browser has found, one of them chosen, and below them those that could not be read.
// Rows can be dragged out of it. User-interface thread.

#include <QScrollBar>

#include "app/browser/CPluginSearch.h"
#include "app/browser/CSkinnedPart.h"

namespace quib {

class CBrowserList : public CSkinnedPart {
    Q_OBJECT

public:
    static constexpr int kRowHeight = 36;

    CBrowserList(CSkin& sharedSkin, const CPluginSearch& pluginSearch, CPluginUse& pluginUse, QWidget* parent);

    // Takes over what was found. The first row is chosen, or with `keep` the plug-in that was.
    void ShowFound(const QStringList& searchedWords, ESlotKind kind, bool keep);
    void Step(int rows);
    void Choose(int row);
    int RowsInSight() const { return std::max(1, SkinSize().height() / kRowHeight); }
    // The row that stands first in sight.
    int FirstInSight() const;
    // Null when nothing is chosen or one that could not be read is.
    const PluginChoice* Chosen() const;
    void ToggleFavourite();
    // What Enter does to the row: it is loaded, or read again.
    void Activate(bool staysOpen);

Q_SIGNALS:
    void Activated(const quib::PluginEntry& entry, bool staysOpen);
    void RetryWanted(const QString& path);
    void FavouriteChanged();
    // While a row is dragged beyond the list, and when it is let go; a point of the screen.
    void Dragged(const quib::PluginEntry& entry, const QPoint& point, bool dropped);
    void DragEnded();

protected:
    void Draw(CCanvas& canvas) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    int RowCount() const;
    int RowWidth() const;
    int TopOf(int row) const;
    int RowAt(const QPointF& point) const;
    bool IsOnStar(const QPointF& point) const;
    bool IsFailed(int row) const { return row >= search.Found().size(); }
    void FitBar();
    void DrawPlugin(CCanvas& canvas, const QRectF& area, const PluginChoice& choice, int row);
    void DrawName(CCanvas& canvas, const QRectF& area, const QString& name, QRgb colour, QRgb line);
    void DrawFailed(CCanvas& canvas, const QRectF& area, const PluginEntry& entry, bool isChosen);

    const CPluginSearch& search;
    CPluginUse& use;
    QScrollBar bar{Qt::Vertical, this};
    QStringList words;
    QRgb accent = 0;
    int chosen = 0;
    int hovered = -1;
    QPoint pressPoint;
    int pressedRow = -1;
    bool dragging = false;
};

}  // namespace quib
