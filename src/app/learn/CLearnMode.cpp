// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/learn/CLearnMode.h"

#include <QApplication>
#include <QCursor>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include "app/learn/LearnMenu.h"
#include "controls/CWinControl.h"
#include "texts/Texts.h"

namespace quib {

namespace {
constexpr int kToldTicks = 75;  // of 40 ms
constexpr int kFoot = 12;       // pixels below the line
}  // namespace

CLearnMode::CLearnMode(CWorkstation& projectOwner, QWidget* mainWindow)
    : station(projectOwner), controllers(projectOwner.Controllers()), main(mainWindow), line(new QFrame(mainWindow)) {
    line->setObjectName(QStringLiteral("learnLine"));
    line->setFrameShape(QFrame::StyledPanel);
    line->setAutoFillBackground(true);
    auto* const layout = new QHBoxLayout(line);
    layout->setContentsMargins(14, 6, 6, 6);
    text = new QLabel;
    listButton = new QPushButton;
    done = new QPushButton;
    for (QPushButton* const button : {listButton, done}) button->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(text, 1);
    layout->addWidget(listButton);
    layout->addWidget(done);
    line->hide();
    connect(listButton, &QPushButton::clicked, this, &CLearnMode::ListWanted);
    connect(done, &QPushButton::clicked, this, [this] {
        controllers.CancelLearning();
        controllers.SetPicking(false);
        ShowLine({});
    });
    connect(&controllers, &CControllers::Changed, this, &CLearnMode::Follow);
    connect(&controllers, &CControllers::Bound, this, [this](const ControlBinding& binding) {
        told = Text("%1 follows %2 (%3)")
                   .arg(controllers.TargetText(binding.target), CControllers::SourceText(binding.source),
                        CControllers::ChannelText(binding.source.channelSelector));
        toldTicks = kToldTicks;
        Follow();
    });
    connect(&station.Changes(), &CChanges::ValueMoved, this, &CLearnMode::ValueMoved);
    qApp->installEventFilter(this);
    Translate();
}

CLearnMode::~CLearnMode() {
    disconnect(&controllers, nullptr, this, nullptr);
    disconnect(&station.Changes(), nullptr, this, nullptr);
}

void CLearnMode::Translate() {
    listButton->setText(Text("List ..."));
    done->setText(Text("Done"));
}

QString CLearnMode::LineText() const {
    if (const auto& learning = controllers.Learning()) {
        return Text("Move a controller or press a key for: %1 (%2). Esc leaves it.")
            .arg(controllers.TargetText(*learning), controllers.OwnerText(*learning));
    }
    if (toldTicks > 0) return told;
    return controllers.IsPicking() ? Text("MIDI learn: click what a controller is to move. Esc ends it.") : QString();
}

void CLearnMode::Follow() {
    ShowLine(LineText());
    if (!controllers.IsPicking()) {
        for (const auto& [window, overlay] : overlays) delete overlay.data();
        overlays.clear();
        return;
    }
    Tick();
}

void CLearnMode::ShowLine(const QString& next) {
    line->setVisible(!next.isEmpty());
    if (next.isEmpty()) return;
    text->setText(next);
    PlaceLine();
    line->raise();
}

void CLearnMode::PlaceLine() {
    line->adjustSize();
    line->move((main->width() - line->width()) / 2, main->height() - line->height() - kFoot);
}

void CLearnMode::AddOverlay(QWidget& window, CLearnOverlay::List list) {
    QPointer<CLearnOverlay>& overlay = overlays[&window];
    if (overlay != nullptr) return;
    overlay = new CLearnOverlay(controllers, std::move(list), &window);
    connect(overlay, &CLearnOverlay::MenuWanted, this, [this](const ControlTarget& target) {
        auto* const menu = new QMenu(main);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        AddLearnItems(*menu, controllers, target);
        menu->popup(QCursor::pos());
    });
}

void CLearnMode::Tick() {
    if (toldTicks > 0 && --toldTicks == 0) ShowLine(LineText());
    if (line->isVisible()) PlaceLine();
    if (!controllers.IsPicking()) return;
    std::erase_if(overlays, [](const auto& entry) { return entry.second == nullptr; });
    for (QWidget* const widget : QApplication::allWidgets()) {
        if (!widget->isVisible()) continue;
        if (auto* const window = qobject_cast<CWinControl*>(widget)) {
            AddOverlay(*window, [window] { return LearnableParts(*window); });
        }
    }
    for (const auto& [window, overlay] : overlays) overlay->Tick();
    line->raise();
}

void CLearnMode::ValueMoved(const void* thing, int part) {
    if (!controllers.IsPicking()) return;
    SlotPlace place;
    if (!station.Places().FindPlugin(static_cast<const CPlugin*>(thing), place)) return;
    const EControlTarget kind = TargetKindOf(place);
    controllers.Learn({kind, IsOfInstrument(kind) ? place.instrument : 0, part});
}

bool CLearnMode::eventFilter(QObject* watched, QEvent* event) {
    const bool isOn = controllers.IsPicking() || controllers.Learning();
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!isOn || !isKey || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape ||
        QApplication::activePopupWidget() != nullptr || QApplication::activeModalWidget() != nullptr) {
        return QObject::eventFilter(watched, event);
    }
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    controllers.Learning() ? controllers.CancelLearning() : controllers.SetPicking(false);
    return true;
}

}  // namespace quib
