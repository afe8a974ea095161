// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/base/CToolWindow.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

#include "controls/CPalette.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kTitle = 32;  // pixels of the screen that the frame takes

// No larger than the screen.
QSize Fitting(const QSize& size) {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? size.boundedTo(screen->availableGeometry().size() - QSize(0, kTitle)) : size;
}

}  // namespace

CToolWindow::CToolWindow(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent)
    : CWinControl(toolContext.settings, "panel", parent), context(toolContext), row(toolRow) {
    setWindowFlag(Qt::Tool);
    connect(&context.document.Changes(), &CChanges::Changed, this, &CToolWindow::Follow);
    connect(&context.document.Selection(), &CSelection::CurrentChanged, this, [this] { Follow({EChange::kProject}); });
}

CToolWindow::~CToolWindow() {
    disconnect(&context.document.Changes(), nullptr, this, nullptr);
    disconnect(&context.document.Selection(), nullptr, this, nullptr);
}

int CToolWindow::Scaled(int length) const noexcept { return static_cast<int>(std::ceil(length * scale / 100.0)); }

void CToolWindow::Open() {
    if (!std::exchange(placed, true)) {
        const QRect middle = CSettings::Centred(row.size, CSettings::ScreenSize());
        const QRect stored = context.document.Settings().ReadWindowPlacement(QLatin1String(row.placement), middle);
        placedByUser = stored.topLeft() != middle.topLeft();
        if (!row.fixedWidth || !row.fixedHeight) resize(Fitting({Scaled(stored.width()), Scaled(stored.height())}));
        move(placedByUser ? stored.topLeft() : CSettings::Centred(size(), CSettings::ScreenSize()).topLeft());
    }
    show();
    raise();
    activateWindow();
}

// A side that is fixed has the size of its skin, whatever the scale.
void CToolWindow::SetScale(int percent) {
    const double ratio = static_cast<double>(percent) / std::exchange(scale, percent);
    const QSize wanted(Scaled(row.size.width()), Scaled(row.size.height()));
    setMinimumSize(Fitting((QSizeF(minimumSize()) * ratio).toSize()));
    if (row.fixedWidth) setFixedWidth(wanted.width());
    if (row.fixedHeight) setFixedHeight(wanted.height());
    resize(Fitting(placed ? (QSizeF(size()) * ratio).toSize() : wanted));
    SetUiScale(percent / 100.0);
}

// Sizes are kept as at 100 percent, fixed sides as the table has them.
void CToolWindow::KeepPlacement() {
    if (!placed) return;
    placedByUser = true;
    QRect place(pos(), (QSizeF(size()) * 100.0 / scale).toSize());
    if (row.fixedWidth) place.setWidth(row.size.width());
    if (row.fixedHeight) place.setHeight(row.size.height());
    context.document.Settings().WriteWindowPlacement(QLatin1String(row.placement), place);
}

void CToolWindow::Retranslate() {
    Translate();
    ShowTitle();
    if (isVisible()) ShowSelection();
}

void CToolWindow::FollowEngine() {
    if (!isVisible()) return;
    ShowPlaying(context.document.Audio().Picture());
    Tick();
}

QString CToolWindow::Title() const {
    const auto shown = Instrument();
    const QString name = Text(row.title);
    return shown ? QStringLiteral("%1 - %2").arg(QString::fromStdString(shown->title), name) : name;
}

void CToolWindow::Follow(const Change& change) {
    if (!isVisible()) return;
    const auto shown = Instrument();
    if (!Concerns(change, shown ? shown->Id() : 0)) return;
    const bool another =
        change.kind == EChange::kProject || change.kind == EChange::kStack || change.kind == EChange::kPatternSelected;
    another ? ShowSelection() : ShowChange(change);
    if (another || change.kind == EChange::kInstrument) ShowTitle();
}

void CToolWindow::showEvent(QShowEvent* event) {
    CWinControl::showEvent(event);
    ShowSelection();
    ShowTitle();
}

void CToolWindow::hideEvent(QHideEvent* event) {
    KeepPlacement();
    CWinControl::hideEvent(event);
}

}  // namespace quib
