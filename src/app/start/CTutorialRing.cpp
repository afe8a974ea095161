// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/start/CTutorialRing.h"

#include "app/CMainWindow.h"
#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CWinControlMain.h"
#include "app/start/CStartPage.h"
#include "document/ShippedFiles.h"
#include "editors/tutorial/CWinControlTutorial.h"

namespace quib {

namespace {

CControl* FindIn(const CControl& parent, int number) {
    for (const auto& child : parent.Children()) {
        if (child->infoString == number && !child->ShownRectangle().isEmpty()) return child.get();
    }
    return nullptr;
}

}  // namespace

CTutorialRing::CTutorialRing(CMainWindow& mainWindow, CWinControlMain& mainConsole, CStartPage& startPage)
    : QObject(&mainConsole), window(mainWindow), console(mainConsole), page(startPage), mark(&mainConsole) {
    connect(&window, &CMainWindow::Ticked, this, [this] {
        const QRect place = Place();
        if (std::exchange(shown, place) != place) mark.Show(place, Palette().Accent(ESection::kPattern));
    });
}

// Of the current instrument's strip, else of whatever stands first.
CControl* CTutorialRing::Find(int number) const {
    if (const CInstrumentStripCtrl* const strip = console.Strip(window.Workstation().Selection().CurrentIndex())) {
        if (CControl* const found = FindIn(*strip, number)) return found;
    }
    for (const auto& control : console.Controls()) {
        if (control->infoString == number && !control->ShownRectangle().isEmpty()) return control.get();
        if (CControl* const found = FindIn(*control, number)) return found;
    }
    return nullptr;
}

QRect CTutorialRing::Place() const {
    const auto* const tutorial = static_cast<const CWinControlTutorial*>(window.Tools().Find(ETool::kTutorial));
    const int target = tutorial != nullptr ? tutorial->Target() : kNoTarget;
    if (target == kNoTarget) return {};
    if (target < 0) {
        const QRect place = target == kExampleCard ? page.AreaOf({}) : page.AreaOf(QStringLiteral("beat"));
        return place.isEmpty() || page.isHidden() ? QRect() : place.translated(page.pos());
    }
    const CControl* const control = Find(target);
    return control != nullptr ? console.ToWidget(control->ShownRectangle()) : QRect();
}

}  // namespace quib
