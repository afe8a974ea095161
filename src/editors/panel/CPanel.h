// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The panel of a plug-in, drawn by our own controls from a layout. User-interface thread.

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "controls/CWinControl.h"
#include "editors/panel/CPanelValues.h"
#include "editors/panel/PanelLayout.h"

class QLineEdit;

namespace quib {

class CProgramListCtrl;

class CPanel : public CWinControl {
    Q_OBJECT

public:
    CPanel(const CControlSettings& settings, CWorkstation& document, std::shared_ptr<CPlugin> plugin,
           PanelLayout panelLayout, QWidget* parent = nullptr);
    ~CPanel() override;

    // In the desktop's pixels, at the scale of the windows.
    QSize sizeHint() const override;
    // Which of its pages is shown, such as the chosen drum.
    int Page() const noexcept { return page; }
    void ChoosePage(int next);
    // The parameters that a control or a picture of the panel shows, whatever is hidden now; those that the
    // layout did not name stand in a group of their own.
    const std::vector<bool>& PlacedParameters() const noexcept { return placed; }
    CPanelValues& Values() noexcept { return values; }
    // Programs of the user's, which stand below those of the plug-in.
    void SetUserPrograms(QStringList names);
    std::function<void(int index)> onUserProgram;
    std::function<void()> onSaveProgram;
    // Shows what has changed; from the 40 ms timer.
    void Follow();

    // --- For the builder ---------------------------------------------------------------------------------

    // Drawn behind the controls.
    struct Frame {
        QRect place;
        QString title;
        ESection section = ESection::kPattern;
    };
    struct Label {
        QRect place;
        QString text;
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
    };
    // What is shown, or can be used, only while a parameter has a step.
    struct Condition {
        int parameter = 0;
        int low = 0;
        int high = 0;
        int steps = 0;  // of the parameter; 0: the number in its text counts

        bool Holds(const CPanelValues& values) const;
    };
    std::vector<Frame> frames;
    std::vector<Label> labels;
    std::vector<Condition> conditions;
    std::vector<bool> placed;
    CProgramListCtrl* programs = nullptr;
    CValue lit{1};       // what a lit button shows
    QRect searchPlace;   // of the field above the programs; empty: none
    int restHeight = 0;  // below what the layout describes, skin pixels
    void ChooseProgram(int program);
    int chosenLoop = -1;  // of a loop player
    void ChooseLoop(int loop) { chosenLoop = loop; }
    void ScanLoops();
    void OpenLoopFolder();
    // The parameters from the first on, so many as the page has.
    void CopyPage(int firstParameter, int count);
    bool HasCopy() const noexcept { return !copiedPage.empty(); }
    void PastePage(int firstParameter);
    void ResetPage(int firstParameter, int count);
    int Kind() const noexcept { return kind; }
    void ChooseKind(int next) { kind = next; }
    const QStringList& UserPrograms() const noexcept { return userPrograms; }
    void Play(int key, int velocity);

protected:
    void Arrange(const QSize& size) override;
    void DrawBackground() override;

private:
    void Build();
    std::vector<bool> ConditionsNow() const;

    CPanelValues values;
    PanelLayout layout;
    QLineEdit* search;
    void SetFrom(int firstParameter, const std::vector<float>& next, const QString& name);

    QStringList userPrograms;
    std::vector<float> copiedPage;
    int kind = -1;  // of the programs in the list
    int page = 0;
    int builtPage = -1;
    int builtKind = -1;
    int builtLoop = -1;
    std::vector<bool> builtConditions;
    const CPalette* builtPalette = nullptr;
};

}  // namespace quib
