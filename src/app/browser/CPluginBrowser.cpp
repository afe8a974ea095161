// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CPluginBrowser.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalBlocker>
#include <algorithm>

#include "controls/SkinNumbers.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kFooterTop = 488;  // skin pixels, as all that follow
constexpr int kFieldTop = 36;
constexpr int kFieldHeight = 32;
constexpr QRect kCross{492, 10, 20, 20};

QString Colour(const char* name) { return QColor(Palette().Colour(QLatin1String(name))).name(); }

}  // namespace

CPluginBrowser::CPluginBrowser(CPluginCatalog& pluginCatalog, CPluginUse& pluginUse, Offer offeredPlugins,
                               QWidget* parent)
    : CSkinnedPart(skin, parent),
      catalog(pluginCatalog),
      offer(std::move(offeredPlugins)),
      search(pluginUse),
      rail(skin, search, this),
      list(skin, search, pluginUse, this) {
    hide();
    setObjectName(QStringLiteral("pluginBrowser"));
    Build();
    connect(&field, &QLineEdit::textChanged, this, [this] { Search(false); });
    connect(&makers, &QComboBox::activated, this, [this] { Search(false); });
    connect(&orders, &QComboBox::activated, this, [this] { Search(false); });
    connect(&rail, &CBrowserRail::ShelfChanged, this, [this] { Search(false); });
    connect(&list, &CBrowserList::FavouriteChanged, this, [this] { Search(true); });
    connect(&list, &CBrowserList::Activated, this, &CPluginBrowser::Chosen);
    connect(&list, &CBrowserList::Dragged, this, &CPluginBrowser::Dragged);
    connect(&list, &CBrowserList::DragEnded, this, [this] { StepAside(false); });
    connect(&list, &CBrowserList::RetryWanted, &catalog, &CPluginCatalog::AskAgain);
    connect(&reading, &QPushButton::clicked, this, &CPluginBrowser::ReadOn);
    connect(&folders, &QPushButton::clicked, this, &CPluginBrowser::FoldersWanted);
    connect(&file, &QPushButton::clicked, this, &CPluginBrowser::FileWanted);
    connect(&catalog, &CPluginCatalog::Progressed, this, &CPluginBrowser::Offered);
    connect(&catalog, &CPluginCatalog::Finished, this, &CPluginBrowser::Offered);
}

CPluginBrowser::~CPluginBrowser() { qApp->removeEventFilter(this); }

void CPluginBrowser::Build() {
    field.setObjectName(QStringLiteral("pluginSearch"));
    field.setFrame(false);
    for (QWidget* const box :
         {static_cast<QWidget*>(&makers), static_cast<QWidget*>(&orders), static_cast<QWidget*>(&reading),
          static_cast<QWidget*>(&folders), static_cast<QWidget*>(&file)}) {
        box->setFocusPolicy(Qt::NoFocus);
    }
    makers.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setFocusProxy(&field);
}

void CPluginBrowser::ApplyColours() {
    const auto height = [this](int skinPixels) { return QString::number(static_cast<int>(skinPixels * Scale())); };
    field.setStyleSheet(QStringLiteral("background: transparent; color: %1;").arg(Colour("text")));
    field.setFont(SkinFont(static_cast<int>(15 * Scale())));
    const QString box = QLatin1String(
        "%1 { background: %2; color: %3; border: 1px solid %4; border-radius: %5px; "
        "padding: 0px %6px; font-size: %7px; } %1:disabled { color: %8; }");
    const auto style = [&](const char* widget, const char* ground) {
        return box.arg(QLatin1String(widget), Colour(ground), Colour("text"), Colour("edge"), height(3), height(8),
                       height(12), Colour("textOff"));
    };
    for (QComboBox* const combo : {&makers, &orders}) combo->setStyleSheet(QString());
    for (QComboBox* const combo : {&makers, &orders}) combo->setFont(SkinFont(static_cast<int>(12 * Scale())));
    list.setStyleSheet(QStringLiteral("QScrollBar { background: %1; } QScrollBar::handle { background: %2; "
                                      "border-radius: %3px; min-height: %4px; } QScrollBar::add-line, "
                                      "QScrollBar::sub-line { height: 0px; } QScrollBar::add-page, "
                                      "QScrollBar::sub-page { background: none; }")
                           .arg(Colour("well"), Colour("edge"), height(3), height(24)));
    for (QPushButton* const button : {&reading, &folders, &file})
        button->setStyleSheet(style("QPushButton", "panelRaised"));
}

QRect CPluginBrowser::Scaled(int x, int y, int w, int h) const {
    return QRectF((x + left) * Scale(), y * Scale(), w * Scale(), h * Scale()).toRect();
}

void CPluginBrowser::Arrange() {
    field.setGeometry(Scaled(40, kFieldTop + 2, 340, kFieldHeight - 4));
    rail.setGeometry(Scaled(12, 80, CBrowserRail::kWidth, kFooterTop - 84));
    makers.setGeometry(Scaled(162, 80, 180, 24));
    orders.setGeometry(Scaled(350, 80, 158, 24));
    list.setGeometry(Scaled(162, 112, 346, kFooterTop - 120));
    reading.setGeometry(Scaled(250, kFooterTop + 6, 80, 24));
    folders.setGeometry(Scaled(336, kFooterTop + 6, 90, 24));
    file.setGeometry(Scaled(432, kFooterTop + 6, 76, 24));
}

void CPluginBrowser::Open(ESlotKind wanted, const QString& title, const QRect& beside, double uiScale) {
    kind = wanted;
    shownTitle = title;
    SetScale(uiScale);
    rail.SetScale(uiScale);
    list.SetScale(uiScale);
    const QSize room = parentWidget()->size();
    const int arrow = static_cast<int>(kArrow * uiScale);
    const QSize panel = kSize * uiScale;
    const bool atLeft = beside.isValid() && beside.left() - arrow - panel.width() >= 0;
    const bool atRight = beside.isValid() && !atLeft && beside.right() + arrow + panel.width() < room.width();
    left = atRight ? kArrow : 0;
    home.setSize(QSize(panel.width() + (atLeft || atRight ? arrow : 0), panel.height()));
    const int x = atLeft    ? beside.left() - home.width()
                  : atRight ? beside.right() + 1
                            : std::max(0, (room.width() - home.width()) / 2);
    const int middleOf = beside.isValid() ? beside.center().y() : room.height() / 2;
    home.moveTo(x, std::clamp(middleOf - panel.height() / 2, 0, std::max(0, room.height() - panel.height())));
    const double middle = (beside.center().y() - home.top()) / uiScale;
    arrowTop = atLeft || atRight ? std::clamp(static_cast<int>(middle), 14, kSize.height() - 14) : -1;
    setGeometry(home);
    ApplyColours();
    Arrange();
    rail.SetKind(kind);
    field.clear();
    orders.clear();
    orders.addItems({Text("Best first"), Text("Name"), Text("Maker"), Text("Most used"), Text("Newest")});
    makers.clear();
    folders.setText(Text("Folders..."));
    file.setText(Text("File..."));
    Offered();
    Search(false);
    show();
    raise();
    field.setFocus();
    qApp->installEventFilter(this);
}

void CPluginBrowser::hideEvent(QHideEvent* event) {
    CSkinnedPart::hideEvent(event);
    if (event->spontaneous()) return;
    qApp->removeEventFilter(this);
    Q_EMIT Closed();
}

// A hidden widget would lose the mouse that drags.
void CPluginBrowser::StepAside(bool away) { move(away ? QPoint(-2 * width(), home.top()) : home.topLeft()); }

void CPluginBrowser::ReadOn() {
    if (catalog.IsScanning()) {
        catalog.SetPaused(!catalog.IsPaused());
    } else {
        catalog.Scan();
    }
    Offered();
}

void CPluginBrowser::FillMakers() {
    const QString chosen = makers.currentIndex() > 0 ? makers.currentText() : QString();
    QStringList names = search.Makers();
    names.prepend(Text("All makers"));
    const QSignalBlocker quiet(makers);
    makers.clear();
    makers.addItems(names);
    makers.setCurrentIndex(std::max(0, chosen.isEmpty() ? 0 : static_cast<int>(names.indexOf(chosen))));
}

// What there is to choose from has changed.
void CPluginBrowser::Offered() {
    reading.setText(!catalog.IsScanning() ? Text("Scan") : catalog.IsPaused() ? Text("Go on") : Text("Pause"));
    search.SetPlugins(offer(kind), catalog.Failed());
    FillMakers();
    Search(true);
}

void CPluginBrowser::Search(bool keep) {
    PluginFilter filter;
    filter.text = field.text();
    filter.shelf = rail.Shelf();
    filter.maker = makers.currentIndex() > 0 ? makers.currentText() : QString();
    filter.order = static_cast<EPluginOrder>(std::max(0, orders.currentIndex()));
    search.Find(filter);
    list.ShowFound(filter.Words(), kind, keep);
    rail.update();
    update();
}

// --- Keys and mouse ----------------------------------------------------------------------------------------------

bool CPluginBrowser::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        const QObject* part = watched;
        while (part != nullptr && part != this) part = part->parent();
        const auto& over = *static_cast<QWidget*>(watched);
        // Not for dialogs that it has opened.
        if (part == nullptr && over.window() == window()) hide();
        return false;
    }
    if (event->type() != QEvent::KeyPress) return false;
    if (watched != &field && watched != &rail && watched != &list) return false;
    return TakeKey(*static_cast<QWidget*>(watched), *static_cast<QKeyEvent*>(event));
}

bool CPluginBrowser::TakeKey(QWidget& focus, const QKeyEvent& key) {
    if ((key.modifiers() & Qt::ControlModifier) != 0) return TakeControlKey(key);
    const bool inRail = &focus == &rail;
    const int page = list.RowsInSight() - 1;
    switch (key.key()) {
        case Qt::Key_Escape:
            hide();
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down: {
            const int by = key.key() == Qt::Key_Up ? -1 : 1;
            inRail ? rail.Step(by) : list.Step(by);
            return true;
        }
        case Qt::Key_PageUp:
            list.Step(-page);
            return true;
        case Qt::Key_PageDown:
            list.Step(page);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            list.Activate((key.modifiers() & Qt::ShiftModifier) != 0);
            return true;
        case Qt::Key_Tab:
            MoveFocus(1);
            return true;
        case Qt::Key_Backtab:
            MoveFocus(-1);
            return true;
        case Qt::Key_Backspace:
            if (field.text().isEmpty()) rail.SetShelf(EShelf::kAll);
            return &focus != &field;
        default:
            break;
    }
    // Letters search, wherever the focus is.
    if (&focus == &field || key.text().isEmpty() || !key.text().front().isPrint()) return false;
    field.setFocus();
    field.insert(key.text());
    return true;
}

bool CPluginBrowser::TakeControlKey(const QKeyEvent& key) {
    if (key.key() == Qt::Key_D) {
        list.ToggleFavourite();
        return true;
    }
    if (key.key() < Qt::Key_1 || key.key() > Qt::Key_9) return false;
    list.Choose(list.FirstInSight() + key.key() - Qt::Key_1);
    list.Activate(false);
    return true;
}

void CPluginBrowser::MoveFocus(int by) {
    QWidget* const parts[] = {&field, &rail, &list};
    const int now = rail.hasFocus() ? 1 : list.hasFocus() ? 2 : 0;
    parts[(now + by + 3) % 3]->setFocus();
    for (QWidget* const part : parts) part->update();
    update();
}

void CPluginBrowser::mousePressEvent(QMouseEvent* event) {
    if (kCross.translated(left, 0).contains(ToSkin(event->position()))) hide();
}

// --- Drawing -----------------------------------------------------------------------------------------------------

void CPluginBrowser::Draw(CCanvas& canvas) {
    const CPalette& palette = Palette();
    const bool instruments = kind == ESlotKind::kInstrument;
    const QRgb accent = palette.Accent(instruments ? ESection::kPattern : ESection::kEffects);
    const QRgb text = palette.Colour(QStringLiteral("text"));
    const QRgb muted = palette.Colour(QStringLiteral("textMuted"));
    canvas.Fill(QRectF(QPointF(0, 0), SkinSize()), palette.Colour(QStringLiteral("window")));
    const QRectF panel(left + 0.5, 0.5, kSize.width() - 1, kSize.height() - 1);
    canvas.Box(panel, 5, palette.Colour(QStringLiteral("panel")), palette.Colour(QStringLiteral("edge")));
    if (arrowTop >= 0) {
        const double tip = left > 0 ? 0 : kSize.width() + kArrow;
        const double base = left > 0 ? left : kSize.width();
        const QPointF points[] = {{base, arrowTop - 7.0}, {tip, double(arrowTop)}, {base, arrowTop + 7.0}};
        canvas.Polygon(points, accent);
    }
    canvas.Glyph(skin, instruments ? picture::kInstrumentIcon : picture::kGlyphSynchro, QPointF(left + 22, 20), accent);
    canvas.Text(QRectF(left + 38, 8, 330, 24), shownTitle, text, 13, Qt::AlignLeft | Qt::AlignVCenter, true);
    canvas.Text(QRectF(left + 370, 8, 112, 24),
                (instruments ? Text("%1 instruments") : Text("%1 effects")).arg(search.Total()), muted, 12,
                Qt::AlignRight | Qt::AlignVCenter);
    const QPointF cross = QRectF(kCross).center() + QPointF(left, 0);
    canvas.Line(cross.x() - 4, cross.y() - 4, cross.x() + 4, cross.y() + 4, text, 1.6);
    canvas.Line(cross.x() - 4, cross.y() + 4, cross.x() + 4, cross.y() - 4, text, 1.6);
    const QRectF well(left + 12.5, kFieldTop + 0.5, kSize.width() - 25, kFieldHeight - 1);
    canvas.Box(well, 4, palette.Colour(QStringLiteral("wellDeep")), field.hasFocus() ? text : muted);
    canvas.Glyph(skin, picture::kGlyphSearch, QPointF(left + 26, kFieldTop + 16), muted);
    if (!field.text().isEmpty()) {
        canvas.Text(QRectF(left + 390, kFieldTop, 108, kFieldHeight), Text("%1 found").arg(search.Found().size()),
                    muted, 12, Qt::AlignRight | Qt::AlignVCenter);
    }
    const QRectF frame(left + 161.5, 111.5, 347, kFooterTop - 119);
    canvas.Frame(frame, 3, list.hasFocus() ? text : palette.Colour(QStringLiteral("edge")));
    DrawFooter(canvas);
}

void CPluginBrowser::DrawFooter(CCanvas& canvas) {
    const CPalette& palette = Palette();
    const QRgb muted = palette.Colour(QStringLiteral("textMuted"));
    const QRgb accent = palette.Accent(kind == ESlotKind::kInstrument ? ESection::kPattern : ESection::kEffects);
    canvas.Line(left + 1, kFooterTop, left + kSize.width() - 1, kFooterTop, palette.Colour(QStringLiteral("line")));
    if (catalog.IsScanning() && catalog.Total() > 0) {
        const QString told = Text("Reading new plug-ins: %1 of %2").arg(catalog.Done()).arg(catalog.Total());
        canvas.Text(QRectF(left + 16, kFooterTop + 4, 230, 16), told, palette.Colour(QStringLiteral("text")), 12,
                    Qt::AlignLeft | Qt::AlignVCenter, true);
        canvas.Text(QRectF(left + 16, kFooterTop + 19, 230, 13), catalog.Current(), muted, 11,
                    Qt::AlignLeft | Qt::AlignVCenter);
        const QRectF whole(left + 16, kFooterTop + 35, kSize.width() - 32, 4);
        canvas.FillRound(whole, 2, palette.Colour(QStringLiteral("wellDeep")));
        canvas.FillRound(QRectF(whole.topLeft(), QSizeF(whole.width() * catalog.Done() / catalog.Total(), 4)), 2,
                         accent);
    } else {
        const qsizetype failed = catalog.Failed().size();
        const qsizetype read = catalog.All().size() - failed;
        canvas.Text(
            QRectF(left + 16, kFooterTop + 6, 230, 24),
            failed > 0 ? Text("%1 plug-ins read, %2 not").arg(read).arg(failed) : Text("%1 plug-ins read").arg(read),
            muted, 12, Qt::AlignLeft | Qt::AlignVCenter);
    }
    const struct {
        const char* key;
        const char* what;
    } hints[] = {{TextKey("Arrows"), TextKey("choose")},     {TextKey("Enter"), TextKey("load")},
                 {TextKey("Tab"), TextKey("category")},      {"Ctrl+D", TextKey("favourite")},
                 {TextKey("drag"), TextKey("onto a strip")}, {TextKey("Esc"), TextKey("close")}};
    // Spread over the width, which the words of some languages nearly fill.
    constexpr double kRoom = kSize.width() - 32;
    constexpr double kInside = 4;
    double words = 0;
    for (const auto& hint : hints) {
        words += CCanvas::TextWidth(Text(hint.key), 11, true) + kInside + CCanvas::TextWidth(Text(hint.what), 11);
    }
    const double gap = std::clamp((kRoom - words) / (std::size(hints) - 1), 4.0, 16.0);
    double x = left + 16;
    for (const auto& hint : hints) {
        const double keyWidth = CCanvas::TextWidth(Text(hint.key), 11, true);
        const double whatWidth = CCanvas::TextWidth(Text(hint.what), 11);
        const double whatLeft = x + keyWidth + kInside;
        const double y = kFooterTop + 46;
        canvas.Text(QRectF(x, y, keyWidth + 2, 18), Text(hint.key), palette.Colour(QStringLiteral("text")), 11,
                    Qt::AlignLeft | Qt::AlignVCenter, true);
        canvas.Text(QRectF(whatLeft, y, whatWidth + 2, 18), Text(hint.what), muted, 11,
                    Qt::AlignLeft | Qt::AlignVCenter);
        x = whatLeft + whatWidth + gap;
    }
}

}  // namespace quib
