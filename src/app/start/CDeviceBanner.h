// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Says that no sound device answers, so that nothing plays, with the ways out. Shown by whoever places it, while
// IsNeeded(). User-interface thread.

#include <QPushButton>
#include <functional>

#include "app/browser/CSkinnedPart.h"

namespace quib {

class CMainWindow;
class CWorkstation;

class CDeviceBanner : public CSkinnedPart {
    Q_OBJECT

public:
    static constexpr int kHeight = 44;  // skin pixels

    CDeviceBanner(CSkin& sharedSkin, CMainWindow& mainWindow, QWidget* parent);

    bool IsNeeded() const;
    void Translate();

protected:
    void Draw(CCanvas& canvas) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void TryJack();
    void ArrangeButtons();

    CMainWindow& window;
    QPushButton choose{this};
    QPushButton jack{this};
    QPushButton silent{this};
};

// Where no device answers: tells why nothing moves, and gives false.
bool CanPlay(CWorkstation& station);
// Plays, if that is possible, or stops.
void PlayOrStop(CWorkstation& station);

}  // namespace quib
