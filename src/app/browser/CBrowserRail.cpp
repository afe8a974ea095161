// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CBrowserRail.h"

#include <QMouseEvent>
#include <algorithm>

#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

CBrowserRail::CBrowserRail(CSkin& sharedSkin, const CPluginSearch& pluginSearch, QWidget* parent)
    : CSkinnedPart(sharedSkin, parent), search(pluginSearch) {
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
}

void CBrowserRail::SetKind(ESlotKind kind) {
    const bool instruments = kind == ESlotKind::kInstrument;
    hovered = nullptr;
    rows = {{EShelf::kAll, 0, instruments ? Text("All instruments") : Text("All effects"), 0},
            {EShelf::kFavourites, 0, Text("Favourites"), picture::kGlyphStar},
            {EShelf::kRecent, 0, Text("Recent"), picture::kGlyphClock},
            {EShelf::kMostUsed, 0, Text("Most used"), picture::kGlyphMostUsed}};
    const qsizetype fixed = rows.size();
    for (int number = 0; number < kPluginCategoryCount; ++number) {
        const auto category = static_cast<EPluginCategory>(number);
        if (IsInstrumentCategory(category) != instruments) continue;
        rows.append(
            {static_cast<EShelf>(static_cast<int>(EShelf::kFirstCategory) + number), 0, CategoryName(category), 0});
    }
    rows.append({EShelf::kFailed, 0, Text("Failed"), 0});
    int top = 0;
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (row == fixed) headingTop = std::exchange(top, top + kRowHeight + 2);
        if (rows[row].shelf == EShelf::kFailed) top += 4;
        rows[row].top = top;
        top += kRowHeight;
    }
    shelf = EShelf::kAll;
    update();
}

void CBrowserRail::SetShelf(EShelf next) {
    if (next == shelf) return;
    shelf = next;
    update();
    Q_EMIT ShelfChanged();
}

void CBrowserRail::Step(int by) {
    const auto now = std::find_if(rows.cbegin(), rows.cend(), [this](const Row& row) { return row.shelf == shelf; });
    const qsizetype wanted = now - rows.cbegin() + by;
    if (wanted >= 0 && wanted < rows.size()) SetShelf(rows[wanted].shelf);
}

const CBrowserRail::Row* CBrowserRail::RowAt(const QPointF& point) const {
    const int y = ToSkin(point).y();
    const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                    [y](const Row& row) { return y >= row.top && y < row.top + kRowHeight; });
    return found == rows.cend() ? nullptr : &*found;
}

void CBrowserRail::mousePressEvent(QMouseEvent* event) {
    if (const Row* const row = RowAt(event->position())) SetShelf(row->shelf);
}

void CBrowserRail::mouseMoveEvent(QMouseEvent* event) {
    const Row* const under = RowAt(event->position());
    if (std::exchange(hovered, under) != under) update();
}

void CBrowserRail::leaveEvent(QEvent* /*event*/) {
    hovered = nullptr;
    update();
}

void CBrowserRail::Draw(CCanvas& canvas) {
    const CPalette& palette = Palette();
    canvas.Text(QRectF(10, headingTop + 4, kWidth - 20, kRowHeight - 4), Text("CATEGORY"),
                palette.Colour(QStringLiteral("textMuted")), 10, Qt::AlignLeft | Qt::AlignVCenter, true);
    for (const Row& row : rows) {
        const QRectF area(0, row.top, kWidth, kRowHeight);
        const bool chosen = row.shelf == shelf;
        const bool failedOnes = row.shelf == EShelf::kFailed;
        const int count = search.Count(row.shelf);
        if (chosen || hovered == &row) {
            canvas.FillRound(area, 3, palette.Colour(chosen ? QStringLiteral("knob") : QStringLiteral("panelRaised")));
        }
        if (chosen && hasFocus()) canvas.Frame(area, 3, palette.Colour(QStringLiteral("text")));
        const QRgb colour = failedOnes && count > 0 ? palette.Colour(QStringLiteral("warning"))
                            : chosen || count > 0   ? palette.Colour(QStringLiteral("text"))
                                                    : palette.Colour(QStringLiteral("textMuted"));
        if (row.glyph != 0) {
            const bool star = row.glyph == picture::kGlyphStar;
            canvas.Glyph(Skin(), row.glyph, area.topLeft() + QPointF(17, 12),
                         palette.Colour(star ? QStringLiteral("pattern") : QStringLiteral("textMuted")));
        }
        canvas.Text(area.adjusted(row.glyph != 0 ? 30 : 10, 0, -34, 0), row.name, colour, 12,
                    Qt::AlignLeft | Qt::AlignVCenter, chosen);
        canvas.Text(area.adjusted(100, 0, -8, 0), QString::number(count), colour, 12,
                    Qt::AlignRight | Qt::AlignVCenter);
    }
}

}  // namespace quib
