// SPDX-License-Identifier: GPL-3.0-or-later
// What the console shows of a project that is empty, and of a machine without sound.
#include "app/console/CSongHintCtrl.h"
#include "app/console/CWinControlMain.h"
#include "app/start/CDeviceBanner.h"
#include "app/start/CStartPage.h"

namespace quib {

using consoleLayout::kMargin;

void CWinControlMain::SetStart(CDeviceBanner& deviceBanner, CStartPage& page) {
    banner = &deviceBanner;
    startPage = &page;
}

int CWinControlMain::TopOfStrips() const {
    int top = consoleLayout::kStripsTop;
    if (hint->IsVisible()) top += CSongHintCtrl::kHeight + kMargin;
    if (banner != nullptr && !banner->isHidden()) top += CDeviceBanner::kHeight + kMargin;
    return top;
}

// With the ticks, which begin after the start has opened a project.
void CWinControlMain::FollowStart() {
    if (startPage == nullptr) return;
    const bool empty = strips.empty() && !rebuildWanted && startPage->IsWanted() && !songWhole;
    if (banner->IsNeeded() == !banner->isHidden() && empty == !startPage->isHidden()) return;
    banner->setVisible(banner->IsNeeded());
    startPage->setVisible(empty);
    if (empty && !startPage->hasFocus()) startPage->setFocus();
    LayoutAndRefresh();
}

void CWinControlMain::PlaceStart() {
    if (startPage == nullptr) return;
    const QRect area = StripArea();
    const QRect line(kMargin, area.top() - CDeviceBanner::kHeight - kMargin, SkinSize().width() - 2 * kMargin,
                     CDeviceBanner::kHeight);
    banner->SetScale(UiScale());
    banner->setGeometry(ToWidget(line));
    startPage->SetScale(UiScale());
    startPage->setGeometry(ToWidget(area.adjusted(0, 0, SkinSize().width() - area.width(), 0)));
}

}  // namespace quib
