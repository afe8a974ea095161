// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What stands in the place of the strips while a project is empty: examples to hear, ways to begin, projects to go
// on with, the tutorial. Mouse, Tab and arrows, Enter; Ctrl+Enter also plays. User-interface thread.

#include <functional>
#include <vector>

#include "app/browser/CSkinnedPart.h"
#include "app/start/SongCard.h"

namespace quib {

class CMainWindow;

class CStartPage : public CSkinnedPart {
    Q_OBJECT

public:
    CStartPage(CSkin& sharedSkin, CMainWindow& mainWindow, std::function<void()> browseInstruments, QWidget* parent);

    // Whether the page is wanted at the start of the program, and back after a new project.
    bool IsWanted() const noexcept { return wanted; }
    void SetWanted(bool show) noexcept { wanted = show; }
    // The projects and texts as they are now.
    void Renew();
    // Does what the entry of a name does: "HouseMusic", "beat", "synth", "tutorial" ... False for one not there.
    bool Press(const QString& name, bool play);
    // Where that entry lies, in its own pixels; of the first one without a name.
    QRect AreaOf(const QString& name) const;

protected:
    void Draw(CCanvas& canvas) override;
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    enum class EKind { kCard, kBig, kRow, kCheck };
    struct Entry {
        EKind kind;
        QString name;
        QString title;
        QString note;
        QString right;
        int glyph = 0;
        ESection section = ESection::kMix;
        std::function<void(bool play)> run;
        QRectF area;
    };

    void AddBeginning();
    void AddRecent();
    void AddLearning();
    void OpenProject(const QString& path, bool play);
    void Begin(bool (*add)(class CWorkstation&, QString&), bool play);
    void Arrange();
    void Place(int from, int to, qreal left, qreal top, qreal width);
    int EntryAt(const QPointF& point) const;
    bool IsOnDisc(const Entry& entry, const QPointF& point) const;
    QRectF Disc(const Entry& entry) const;
    void MoveFocus(int key);
    void Run(int index, bool play);
    void DrawCard(CCanvas& canvas, const Entry& entry, const SongCard& card, bool over);
    void DrawEntry(CCanvas& canvas, const Entry& entry, bool over);
    void DrawFocus(CCanvas& canvas, const Entry& entry) const;

    CMainWindow& window;
    std::function<void()> browse;
    std::vector<SongCard> cards;
    std::vector<Entry> entries;
    int firstRecent = 0;
    int firstLearn = 0;
    int hovered = -1;
    bool overDisc = false;
    int focused = 0;
    bool wanted = true;
};

}  // namespace quib
