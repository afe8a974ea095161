// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's scale and colours, and where the windows that it opens go.
#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QScreen>
#include <cmath>

#include "app/CMainWindow.h"
#include "app/Commands.h"
#include "app/Look.h"
#include "app/console/CWinControlMain.h"
#include "document/CSettings.h"
#include "editors/base/CToolWindow.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kScales[] = {75, 100, 125, 150, 175, 200, 250, 300};
constexpr const char* kPaletteNames[] = {TextKey("Dark"), TextKey("Light"), TextKey("High contrast")};
constexpr int kFrameRoom = 64;  // pixels of a screen's height for title and menu

}  // namespace

int CMainWindow::MostScale() const {
    const QScreen* const shown = screen();
    if (shown == nullptr) return 300;
    const QSize room = shown->availableGeometry().size() - QSize(0, kFrameRoom);
    return LargestScale({CWinControlMain::kNarrowest, CWinControlMain::kLowest}, room);
}

int CMainWindow::Scale() const {
    const int stored = settings.ReadSettingInt(kSettingsSection, QStringLiteral("GuiScale"), 100);
    return std::clamp(stored, 75, MostScale());
}

// Those that the screen cannot show are there and say so.
void CMainWindow::BuildScaleMenu(QMenu& menu) {
    auto* const group = new QActionGroup(&menu);
    int number = command::kScale0;
    for (const int scale : kScales) {
        QAction* const action = menu.addAction(QStringLiteral("%1 %").arg(scale));
        actions[number++] = action;
        action->setCheckable(true);
        action->setChecked(scale == Scale());
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, scale] { SetScale(scale); });
    }
    connect(&menu, &QMenu::aboutToShow, this, [this, group] {
        const auto list = group->actions();
        for (qsizetype index = 0; index < list.size(); ++index) {
            const int scale = kScales[index];
            const bool fits = scale <= MostScale();
            list[index]->setEnabled(fits);
            list[index]->setText(fits ? QStringLiteral("%1 %").arg(scale)
                                      : Text("%1 % (too large for this screen)").arg(scale));
        }
    });
}

void CMainWindow::SetScale(int percent) {
    const int before = Scale();
    settings.WriteSettingInt(kSettingsSection, QStringLiteral("GuiScale"), percent);
    if (size() != scaledSize) unscaledSize = QSizeF(size()) * 100.0 / before;
    ApplyLook(Scale());
    Q_EMIT SettingsChanged();
    FollowScale(before);
}

void CMainWindow::FollowScale(int before) {
    if (isMaximized() || isFullScreen() || before == Scale()) return;
    const QSize wanted = (unscaledSize * Scale() / 100.0).toSize();
    const QSize most = screen() != nullptr ? screen()->availableGeometry().size() - QSize(0, kFrameRoom) : wanted;
    // The layout learns the new smallest size with the events that are on their way.
    QMetaObject::invokeMethod(
        this,
        [this, next = wanted.boundedTo(most)] {
            resize(next);
            scaledSize = size();
        },
        Qt::QueuedConnection);
}

void CMainWindow::BuildPaletteMenu(QMenu& menu) {
    auto* const group = new QActionGroup(&menu);
    for (int index = 0; index < kPaletteCount; ++index) {
        const auto palette = static_cast<EPalette>(index);
        QAction* const action =
            Add(menu, command::kPalette0 + index, kPaletteNames[index], [this, palette] { SetPalette(palette); });
        action->setCheckable(true);
        action->setChecked(palette == ChosenPalette());
        group->addAction(action);
    }
}

// Tool windows are made anew, as the parts of them have taken colours.
void CMainWindow::SetPalette(EPalette palette) {
    StorePalette(settings, palette);
    Action(command::kPalette0 + static_cast<int>(palette))->setChecked(true);
    if (palette == ChosenPalette()) return;
    ChoosePalette(palette);
    ApplyLook(Scale());
    Q_EMIT SettingsChanged();
    for (const ETool tool : tools.CloseAll()) OpenTool(tool);
    activateWindow();
}

void CMainWindow::PutBeside(QWidget& window, const QRect& anchor) const {
    if (screen() == nullptr) return;
    const QSize frame(std::max(window.width(), window.frameGeometry().width()),
                      std::max(window.height(), window.frameGeometry().height()));
    constexpr int kTitle = 24;  // pixels of a title bar that is not there yet
    const QSize whole = frame == window.size() ? frame + QSize(0, kTitle) : frame;
    const QRect place = anchor.isValid() ? anchor : QRect(frameGeometry().topLeft(), QSize(1, 1));
    window.move(
        PlaceBeside(whole, place, surroundings.bars ? surroundings.bars() : QRect(), screen()->availableGeometry()));
}

}  // namespace quib
