// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// All parameters of a plug-in in groups, each as the control that suits it: knob, switch, menu or whole number. A rail
// of shelves and a search say which are shown; only those in sight exist as controls. Below them stands the one that
// was moved last. User-interface thread.

#include <functional>
#include <set>
#include <vector>

#include "app/parameters/ParameterGroups.h"
#include "controls/CWinControl.h"
#include "editors/panel/CPanelValues.h"
#include "model/plugin/PluginIdentity.h"

class QLineEdit;

namespace quib {

class CParameterMarks;
class CParameterRail;

class CParameterPage : public CWinControl {
    Q_OBJECT

public:
    static constexpr QSize kSize{1088, 584};  // skin pixels
    enum class EShelf { kAll, kChanged, kAutomated, kLearned, kFavourites, kDiffering };

    CParameterPage(const CControlSettings& settings, CWorkstation& document, std::shared_ptr<CPlugin> plugin,
                   CParameterMarks& userMarks, QWidget* parent = nullptr);
    ~CParameterPage() override;

    QSize sizeHint() const override;
    // Shows what has changed; from the 40 ms timer.
    void Follow();
    void SetSearch(const QString& text);
    void SetShelf(EShelf next);
    // What search and shelf leave, in the order of the page, in sight or not.
    const std::vector<int>& Shown() const noexcept { return shown; }
    CPanelValues& Values() noexcept { return values; }
    QLineEdit& Search() noexcept { return *search; }

    std::function<std::vector<int>()> differing;    // those in which A and B differ
    std::function<void(int parameter)> onShowLane;  // its curve is wanted

protected:
    void Arrange(const QSize& size) override;
    void DrawBackground() override;
    QRect ClipOf(const CControl& control) const override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Box {
        const ParameterGroup* group;
        std::vector<int> members;  // that are shown
        QRect place;               // of the page, before it is scrolled
        int column = 0;
    };
    struct Label {
        QRect place;
        QString text;
        bool strong = false;
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    };
    // What the page has been built for.
    struct State {
        EShelf shelf = EShelf::kAll;
        int group = -1;
        QString text;
        int offset = 0;
        int touched = -1;
        int program = -1;
        bool learning = false;
        std::size_t differing = 0;
        std::vector<bool> changed{};  // groups
        std::set<int> automated{}, learned{}, marked{};
        const CPalette* palette = nullptr;

        bool operator==(const State&) const = default;
    };

    void Describe();
    void FollowMarks();
    State StateNow() const;
    void Choose();
    bool IsOnShelf(int parameter) const;
    bool IsChanged(int parameter) const;
    void PlaceGroups();
    void Build();
    void BuildRail();
    void BuildGroup(const Box& box);
    void BuildCell(int parameter, const QRect& cell);
    void BuildTouched(const QRect& place);
    void BuildCompare(const QRect& place);
    void AddButton(const QRect& place, int glyph, const QString& text, bool lit, std::function<void()> run);
    void ShowRail();
    void ChooseRow(int row);
    void ScrollTo(int next);
    void ResetGroup(const ParameterGroup& group);
    void LearnTouched();
    QRect TouchedPlace() const;
    int Columns() const;

    CPanelValues values;
    CParameterMarks& marks;
    QLineEdit* search;
    GroupedParameters grouped;
    std::vector<ParameterNature> natures;
    std::vector<float> programValues;
    int program = -1;
    EShelf shelf = EShelf::kAll;
    int chosenGroup = -1;
    QString text;
    int touched = 0;
    std::set<int> automated;
    std::set<int> learned;
    std::set<int> differences;
    std::vector<int> shown;
    std::vector<Box> boxes;
    std::vector<Label> labels;
    int contentHeight = 0;
    std::set<const CControl*> inLastColumn;
    CValue offset{0};
    CValue isLit{1};  // what a lit button shows
    CParameterRail* rail = nullptr;
    State built;
    bool isBuilt = false;
    int ticks = 0;
};

}  // namespace quib
