// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The shelves of the plug-in browser: all, favourites, recent, most used, the categories, the unreadable ones,
// each with how many the search has found on it. User-interface thread.

#include "app/browser/CPluginSearch.h"
#include "app/browser/CSkinnedPart.h"

namespace quib {

class CBrowserRail : public CSkinnedPart {
    Q_OBJECT

public:
    static constexpr int kWidth = 144;
    static constexpr int kRowHeight = 24;

    CBrowserRail(CSkin& sharedSkin, const CPluginSearch& pluginSearch, QWidget* parent);

    void SetKind(ESlotKind kind);
    void SetShelf(EShelf next);
    EShelf Shelf() const noexcept { return shelf; }
    // To the next shelf above (-1) or below (1).
    void Step(int by);

Q_SIGNALS:
    void ShelfChanged();

protected:
    void Draw(CCanvas& canvas) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    struct Row {
        EShelf shelf;
        int top;  // skin pixels
        QString name;
        int glyph;  // 0: none
    };
    const Row* RowAt(const QPointF& point) const;

    const CPluginSearch& search;
    QList<Row> rows;
    int headingTop = 0;
    EShelf shelf = EShelf::kAll;
    const Row* hovered = nullptr;
};

}  // namespace quib
