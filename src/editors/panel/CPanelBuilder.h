// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Makes the controls of a panel from its layout, each in its place. User-interface thread.

#include <functional>
#include <string>
#include <vector>

#include "editors/panel/CPanel.h"
#include "editors/panel/PanelParameters.h"

namespace quib {

class CSwitchCtrl;

class CPanelBuilder {
public:
    CPanelBuilder(CPanel& builtPanel, const PanelLayout& panelLayout, CPanelValues& panelValues, int shownPage);
    void Build();

private:
    // What stands inside and is to be shown now.
    std::vector<const PanelStatement*> Shown(const std::vector<PanelStatement>& inside);
    void Columns(const std::vector<PanelStatement>& inside, const QRect& place);
    void Column(const std::vector<PanelStatement>& inside, const QRect& place);
    void Row(const std::vector<PanelStatement>& inside, const QRect& place);
    void Group(const PanelStatement& group, const QRect& place);
    void Inside(const std::vector<PanelStatement>& inside, QRect place, const QRect& title);
    void Line(const std::vector<PanelStatement>& inside, const QRect& place);
    // One thing in its place; what the place is too small for is left out.
    void Put(const PanelStatement& statement, const QRect& place);
    void PutControl(const PanelStatement& statement, const QRect& place, int parameter);
    void PutPicture(const PanelStatement& statement, const QRect& place);
    void PutMatrix(const PanelStatement& statement, const QRect& place);
    void PutPads(const PanelStatement& statement, const QRect& place);
    void PutPages(const PanelStatement& statement, const QRect& place);
    void PutHost(const PanelStatement& statement, const QRect& place);
    void PutPageCopy(const QRect& place);
    void PutLoops(const QRect& place);
    void PutLoop(const QRect& place);
    int PutKinds(const PanelStatement& statement, const QRect& place);
    void ChooseKind(const PanelStatement& statement, CProgramListCtrl& programs) const;
    void PutRest(const QRect& place);

    int Parameter(const std::string& word);
    QStringList StepNames(const PanelStatement& statement, int parameter) const;
    QString Caption(const PanelStatement& statement, int parameter) const;
    bool MeetsCondition(const std::string& condition);

    CPanel& panel;
    const PanelLayout& layout;
    CPanelValues& values;
    int page;
    PanelParameters parameters;
    int offset = 0;                         // of "@k"
    ESection section = ESection::kPattern;  // of the group that is being built
};

}  // namespace quib
