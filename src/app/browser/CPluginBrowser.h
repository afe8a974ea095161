// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The plug-in browser: a panel inside the main window with a search, shelves, makers and a list, which says what
// the user chose for the place that it was opened for, and shows how far reading new plug-ins is. Loads nothing
// itself. User-interface thread.

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include "app/browser/CBrowserList.h"
#include "app/browser/CBrowserRail.h"

namespace quib {

class CPluginBrowser : public CSkinnedPart {
    Q_OBJECT

public:
    static constexpr QSize kSize{520, 560};  // skin pixels
    static constexpr int kArrow = 8;         // width of the arrow that points at the place, beside that

    // Gives what can be chosen from now.
    using Offer = std::function<QList<PluginChoice>(ESlotKind)>;

    CPluginBrowser(CPluginCatalog& pluginCatalog, CPluginUse& pluginUse, Offer offeredPlugins, QWidget* parent);
    ~CPluginBrowser() override;

    // Shows it beside a rectangle of the parent, which it points at; `title` says what the choice is for.
    void Open(ESlotKind wanted, const QString& title, const QRect& beside, double uiScale);
    ESlotKind Kind() const noexcept { return kind; }
    // Out of the way while a row is dragged to its place, and back.
    void StepAside(bool away);

    QLineEdit& Field() noexcept { return field; }
    CBrowserList& List() noexcept { return list; }
    CBrowserRail& Rail() noexcept { return rail; }

Q_SIGNALS:
    void Chosen(const quib::PluginEntry& entry, bool staysOpen);
    void Dragged(const quib::PluginEntry& entry, const QPoint& point, bool dropped);
    void FoldersWanted();
    void FileWanted();
    void Closed();

protected:
    void Draw(CCanvas& canvas) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void Build();
    void Arrange();
    void ApplyColours();
    void FillMakers();
    void Offered();
    void Search(bool keep);
    void ReadOn();
    bool TakeKey(QWidget& focus, const QKeyEvent& key);
    bool TakeControlKey(const QKeyEvent& key);
    void MoveFocus(int by);
    void DrawFooter(CCanvas& canvas);
    QRect Scaled(int x, int y, int w, int h) const;

    CPluginCatalog& catalog;
    Offer offer;
    CSkin skin;
    CPluginSearch search;
    QLineEdit field{this};
    QComboBox makers{this};
    QComboBox orders{this};
    CBrowserRail rail;
    CBrowserList list;
    QPushButton reading{this};
    QPushButton folders{this};
    QPushButton file{this};
    ESlotKind kind = ESlotKind::kInstrument;
    QString shownTitle;
    QRect home;         // where it stands in its parent
    int left = 0;       // of the panel itself, skin pixels: the arrow may stand there
    int arrowTop = -1;  // middle of the arrow, skin pixels; -1: none
};

}  // namespace quib
