// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CBrowserList.h"

#include <QApplication>
#include <QFileInfo>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>

#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kHeadingHeight = 24;
constexpr int kBarWidth = 10;
constexpr int kStarZone = 32;     // pixels at the right of a row
constexpr int kRetryZone = 90;    // likewise, of one that could not be read
constexpr int kMarkRoom = 102;    // of the format and the star
constexpr int kDragDistance = 5;  // pixels before a press becomes a drag

}  // namespace

CBrowserList::CBrowserList(CSkin& sharedSkin, const CPluginSearch& pluginSearch, CPluginUse& pluginUse, QWidget* parent)
    : CSkinnedPart(sharedSkin, parent), search(pluginSearch), use(pluginUse) {
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
    bar.setFocusPolicy(Qt::NoFocus);
    connect(&bar, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
}

int CBrowserList::RowCount() const { return static_cast<int>(search.Found().size() + search.Failed().size()); }

int CBrowserList::RowWidth() const { return SkinSize().width() - kBarWidth; }

int CBrowserList::TopOf(int row) const {
    const bool belowHeading = IsFailed(row) && row < RowCount();
    return row * kRowHeight + (belowHeading ? kHeadingHeight : 0);
}

int CBrowserList::FirstInSight() const { return (bar.value() + kRowHeight - 1) / kRowHeight; }

void CBrowserList::FitBar() {
    const int heading = search.Failed().isEmpty() ? 0 : kHeadingHeight;
    const int content = RowCount() * kRowHeight + heading;
    const int sight = SkinSize().height();
    bar.setRange(0, std::max(0, content - sight));
    bar.setPageStep(sight);
    bar.setSingleStep(kRowHeight);
    bar.setVisible(content > sight);
}

void CBrowserList::ShowFound(const QStringList& searchedWords, ESlotKind kind, bool keep) {
    const QString before = keep && Chosen() != nullptr ? Chosen()->entry.path : QString();
    words = searchedWords;
    accent = Palette().Accent(kind == ESlotKind::kInstrument ? ESection::kPattern : ESection::kEffects);
    hovered = -1;
    FitBar();
    const auto& found = search.Found();
    const auto same = std::find_if(found.begin(), found.end(),
                                   [&before](const PluginChoice& choice) { return choice.entry.path == before; });
    if (same != found.end() && !before.isEmpty()) {
        chosen = static_cast<int>(same - found.begin());
        update();
    } else if (keep) {
        chosen = std::clamp(chosen, 0, std::max(0, RowCount() - 1));
        update();
    } else {
        bar.setValue(0);
        Choose(0);
    }
}

void CBrowserList::Choose(int row) {
    chosen = std::clamp(row, 0, std::max(0, RowCount() - 1));
    const int top = TopOf(chosen);
    const int sight = SkinSize().height();
    if (top < bar.value()) bar.setValue(top);
    if (top + kRowHeight > bar.value() + sight) bar.setValue(top + kRowHeight - sight);
    update();
}

void CBrowserList::Step(int rows) { Choose(chosen + rows); }

const PluginChoice* CBrowserList::Chosen() const {
    return chosen >= 0 && chosen < search.Found().size() ? &search.Found()[chosen] : nullptr;
}

void CBrowserList::ToggleFavourite() {
    const PluginChoice* const choice = Chosen();
    if (choice == nullptr) return;
    use.SetFavourite(choice->entry, !use.IsFavourite(choice->entry));
    update();
    Q_EMIT FavouriteChanged();
}

void CBrowserList::Activate(bool staysOpen) {
    if (const PluginChoice* const choice = Chosen()) {
        const PluginEntry entry = choice->entry;  // the list may be made anew meanwhile
        return Q_EMIT Activated(entry, staysOpen);
    }
    const qsizetype failed = chosen - search.Found().size();
    if (failed >= 0 && failed < search.Failed().size()) Q_EMIT RetryWanted(QString(search.Failed()[failed].path));
}

// --- The mouse ---------------------------------------------------------------------------------------------------

int CBrowserList::RowAt(const QPointF& point) const {
    const int y = ToSkin(point).y() + bar.value();
    for (int row = 0; row < RowCount(); ++row) {
        if (y >= TopOf(row) && y < TopOf(row) + kRowHeight) return row;
    }
    return -1;
}

bool CBrowserList::IsOnStar(const QPointF& point) const { return ToSkin(point).x() > RowWidth() - kStarZone; }

void CBrowserList::resizeEvent(QResizeEvent* event) {
    const int barWidth = static_cast<int>(kBarWidth * Scale());
    bar.setGeometry(width() - barWidth, 0, barWidth, height());
    FitBar();
    CSkinnedPart::resizeEvent(event);
}

void CBrowserList::wheelEvent(QWheelEvent* event) {
    constexpr int kNotch = 120;
    bar.setValue(bar.value() - event->angleDelta().y() * 2 * kRowHeight / kNotch);
    event->accept();
}

void CBrowserList::mousePressEvent(QMouseEvent* event) {
    const int row = RowAt(event->position());
    if (row < 0) return;
    Choose(row);
    if (!IsFailed(row) && IsOnStar(event->position())) return ToggleFavourite();
    if (IsFailed(row) && ToSkin(event->position()).x() > RowWidth() - kRetryZone) return Activate(false);
    pressedRow = IsFailed(row) || event->button() != Qt::LeftButton ? -1 : row;
    pressPoint = event->pos();
}

void CBrowserList::mouseMoveEvent(QMouseEvent* event) {
    const int under = RowAt(event->position());
    if (std::exchange(hovered, under) != under) update();
    if (pressedRow < 0 || pressedRow >= search.Found().size()) return;
    if (!dragging && (event->pos() - pressPoint).manhattanLength() < kDragDistance) return;
    dragging = true;
    setCursor(Qt::ClosedHandCursor);
    Q_EMIT Dragged(search.Found()[pressedRow].entry, event->globalPosition().toPoint(), false);
}

void CBrowserList::mouseReleaseEvent(QMouseEvent* event) {
    const int row = std::exchange(pressedRow, -1);
    if (!std::exchange(dragging, false)) return;
    unsetCursor();
    Q_EMIT DragEnded();
    if (row >= search.Found().size()) return;
    const PluginEntry entry = search.Found()[row].entry;
    Q_EMIT Dragged(entry, event->globalPosition().toPoint(), true);
}

void CBrowserList::mouseDoubleClickEvent(QMouseEvent* event) {
    const int row = RowAt(event->position());
    if (row < 0 || IsFailed(row)) return;
    if (IsOnStar(event->position())) return ToggleFavourite();
    pressedRow = -1;
    Choose(row);
    Activate(false);
}

void CBrowserList::leaveEvent(QEvent* /*event*/) {
    hovered = -1;
    update();
}

// Whole names and files, where a row shows them shortened.
bool CBrowserList::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return CSkinnedPart::event(event);
    const auto* const help = static_cast<QHelpEvent*>(event);
    const int row = RowAt(help->pos());
    QString text;
    if (row >= 0 && !IsFailed(row))
        text = search.Found()[row].entry.name + QLatin1Char('\n') + search.Found()[row].entry.path;
    if (row >= 0 && IsFailed(row)) {
        const PluginEntry& entry = search.Failed()[row - search.Found().size()];
        text = entry.path + QLatin1Char('\n') + entry.error;
    }
    QToolTip::showText(help->globalPos(), text, this);
    return true;
}

// --- Drawing -----------------------------------------------------------------------------------------------------

void CBrowserList::Draw(CCanvas& canvas) {
    const CPalette& palette = Palette();
    canvas.Fill(QRectF(QPointF(0, 0), SkinSize()), palette.Colour(QStringLiteral("wellDeep")));
    const int count = RowCount();
    if (count == 0) {
        return canvas.Text(QRectF(10, 10, RowWidth() - 20, 24), Text("Nothing is called so."),
                           palette.Colour(QStringLiteral("textMuted")), 12, Qt::AlignLeft | Qt::AlignVCenter);
    }
    for (int row = 0; row < count; ++row) {
        const int top = TopOf(row) - bar.value();
        if (top + kRowHeight < -kHeadingHeight || top > SkinSize().height()) continue;
        const QRectF area(1, top, RowWidth() - 2, kRowHeight);
        if (!IsFailed(row)) {
            DrawPlugin(canvas, area, search.Found()[row], row);
            continue;
        }
        if (row == search.Found().size()) {
            canvas.Text(QRectF(10, top - kHeadingHeight, RowWidth() - 20, kHeadingHeight), Text("COULD NOT BE READ"),
                        palette.Colour(QStringLiteral("textMuted")), 10, Qt::AlignLeft | Qt::AlignVCenter, true);
        }
        DrawFailed(canvas, area, search.Failed()[row - search.Found().size()], row == chosen);
    }
}

void CBrowserList::DrawPlugin(CCanvas& canvas, const QRectF& area, const PluginChoice& choice, int row) {
    const CPalette& palette = Palette();
    const bool isChosen = row == chosen;
    const QRgb ink = palette.Colour(QStringLiteral("ink"));
    if (isChosen) canvas.Fill(area, accent);
    if (!isChosen && row == hovered) canvas.Fill(area, palette.Colour(QStringLiteral("panelRaised")));
    const QRgb text = isChosen ? ink : palette.Colour(QStringLiteral("text"));
    const QRgb muted = isChosen ? ink : palette.Colour(QStringLiteral("textMuted"));
    DrawName(canvas, area.adjusted(11, 3, -kMarkRoom, -17), choice.entry.name, text, isChosen ? ink : accent);
    QStringList below;
    if (!choice.entry.vendor.isEmpty()) below.append(choice.entry.vendor);
    below.append(CategoryName(search.Category(choice)));
    if (!choice.detail.isEmpty()) below.append(choice.detail);
    canvas.Text(area.adjusted(11, 18, -kMarkRoom, -3), below.join(QStringLiteral(" · ")), muted, 11,
                Qt::AlignLeft | Qt::AlignVCenter);
    const QRectF mark(area.right() - 96, area.top() + 9, 56, 18);
    canvas.Frame(mark, 3, isChosen ? ink : palette.Colour(QStringLiteral("edge")));
    canvas.Text(mark, choice.isBuiltIn ? Text("built in") : QStringLiteral("VST 2"), muted, 10);
    const bool favourite = use.IsFavourite(choice.entry);
    if (!favourite && !isChosen && row != hovered) return;
    canvas.Glyph(Skin(), favourite ? picture::kGlyphStar : picture::kGlyphStarEmpty,
                 QPointF(area.right() - 18, area.center().y()),
                 isChosen ? ink : palette.Colour(favourite ? QStringLiteral("pattern") : QStringLiteral("textMuted")));
}

// What was searched is underlined, since colours alone do not tell it.
void CBrowserList::DrawName(CCanvas& canvas, const QRectF& area, const QString& name, QRgb colour, QRgb line) {
    canvas.Text(area, name, colour, 13, Qt::AlignLeft | Qt::AlignVCenter, true);
    for (const QString& word : words) {
        const qsizetype at = name.indexOf(word, 0, Qt::CaseInsensitive);
        if (at < 0) continue;
        const qreal left = area.left() + CCanvas::TextWidth(name.left(at), 13, true);
        const qreal right =
            std::min(area.right(), area.left() + CCanvas::TextWidth(name.left(at + word.size()), 13, true));
        if (right > left) canvas.Fill(QRectF(left, area.bottom() - 1, right - left, 2), line);
    }
}

void CBrowserList::DrawFailed(CCanvas& canvas, const QRectF& area, const PluginEntry& entry, bool isChosen) {
    const CPalette& palette = Palette();
    if (isChosen) canvas.Fill(area, palette.Colour(QStringLiteral("knob")));
    const QRectF text = area.adjusted(11, 0, -kRetryZone - 4, 0);
    canvas.Text(text.adjusted(0, 3, 0, -17), QFileInfo(entry.path).fileName(),
                palette.Colour(QStringLiteral("textMuted")), 13, Qt::AlignLeft | Qt::AlignVCenter);
    canvas.Text(text.adjusted(0, 18, 0, -3), FailureText(entry), palette.Colour(QStringLiteral("warning")), 11,
                Qt::AlignLeft | Qt::AlignVCenter);
    const QRectF button(area.right() - kRetryZone + 6, area.top() + 7, kRetryZone - 14, 22);
    canvas.Box(button, 3, palette.Colour(QStringLiteral("panelRaised")), palette.Colour(QStringLiteral("edge")));
    canvas.Text(button, Text("Try again"), palette.Colour(QStringLiteral("text")), 12);
}

}  // namespace quib
