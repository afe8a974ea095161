// SPDX-License-Identifier: GPL-3.0-or-later
#include "editors/base/CToolWindow.h"

#include <cmath>

#include "controls/CPalette.h"
#include "texts/Texts.h"

namespace quib {

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

void CToolWindow::Open() {
    if (!std::exchange(placed, true)) {
        // What is stored at the first start knows no scale.
        const QSize screen = CSettings::ScreenSize();
        const QRect missing = CSettings::ClampPlacement(CSettings::Centred(size(), screen), screen);
        QRect place = context.document.Settings().ReadWindowPlacement(QLatin1String(row.placement), missing);
        placedByUser = place.topLeft() != CSettings::Centred(row.size, screen).topLeft();
        if (!placedByUser && place.size() == row.size) place = missing;
        move(place.topLeft());
        if (!row.fixedWidth || !row.fixedHeight) resize(place.size());
    }
    show();
    raise();
    activateWindow();
}

// A side that is fixed has the size of its skin, whatever the scale.
void CToolWindow::SetScale(int percent) {
    const auto scaled = [percent](int length) { return static_cast<int>(std::ceil(length * percent / 100.0)); };
    const QSize wanted(scaled(row.size.width()), scaled(row.size.height()));
    if (row.fixedWidth) setFixedWidth(wanted.width());
    if (row.fixedHeight) setFixedHeight(wanted.height());
    if (!placed) resize(wanted);
    SetUiScale(percent / 100.0);
}

// Fixed sides are kept as the table has them.
void CToolWindow::KeepPlacement() {
    if (!placed) return;
    placedByUser = true;
    QRect place(pos(), size());
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
