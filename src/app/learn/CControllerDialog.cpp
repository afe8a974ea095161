// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/learn/CControllerDialog.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <cmath>

#include "app/learn/LearnMenu.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kPlayColumn = 6;
constexpr int kChannels = 16;

int Percent(float share) { return static_cast<int>(std::lround(share * 100)); }

QString RangeText(const ControlBinding& binding) {
    if (IsAction(binding.target.kind)) return {};
    return QStringLiteral("%1 \u2192 %2 %").arg(Percent(binding.low)).arg(Percent(binding.high));
}

// Where the hand is that has not taken the value over yet.
QString PlayText(const ControlPlay& play) {
    if (play.waits.Get() == 0 || play.hand.Get() < 0) return {};
    return Text("waits, hand at %1 %").arg(Percent(play.hand.Get()));
}

}  // namespace

CControllerDialog::CControllerDialog(CWorkstation& projectOwner, QWidget* parent)
    : QDialog(parent), station(projectOwner), controllers(projectOwner.Controllers()), list(new QTreeWidget) {
    setWindowTitle(Text("MIDI controllers"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const layout = new QVBoxLayout(this);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setHeaderLabels({Text("Of"), Text("Control"), Text("Message"), Text("Channel"), Text("Range"), Text("Mode"),
                           Text("Now"), Text("Kept with")});
    list->header()->setStretchLastSection(true);
    layout->addWidget(list, 1);
    auto* const row = new QHBoxLayout;
    BuildSettings(*row);
    layout->addLayout(row);
    connect(list, &QTreeWidget::currentItemChanged, this, &CControllerDialog::ShowChosen);
    connect(&controllers, &CControllers::Changed, this, &CControllerDialog::Fill);
    resize(860, 420);
    Fill();
}

CControllerDialog::~CControllerDialog() { disconnect(&controllers, nullptr, this, nullptr); }

void CControllerDialog::BuildSettings(QLayout& layout) {
    channel = new QComboBox;
    for (int selector = 1; selector <= kChannels + 1; ++selector)
        channel->addItem(CControllers::ChannelText(selector), selector);
    connect(channel, &QComboBox::activated, this,
            [this](int index) { Change([index](ControlBinding& next) { next.source.channelSelector = index + 1; }); });
    mode = new QComboBox;
    for (int number = 0; number < kControlModeCount; ++number)
        mode->addItem(ModeText(static_cast<EControlMode>(number)));
    connect(mode, &QComboBox::activated, this, [this](int index) {
        Change([index](ControlBinding& next) { next.mode = static_cast<EControlMode>(index); });
    });
    const auto percent = [this](float ControlBinding::*share, const QString& name) {
        auto* const box = new QSpinBox;
        box->setRange(0, 100);
        box->setSuffix(QStringLiteral(" %"));
        box->setAccessibleName(name);
        connect(box, &QSpinBox::editingFinished, this, [this, box, share] {
            Change([box, share](ControlBinding& next) { next.*share = static_cast<float>(box->value()) / 100; });
        });
        return box;
    };
    low = percent(&ControlBinding::low, Text("From"));
    high = percent(&ControlBinding::high, Text("To"));
    const auto button = [this](const QString& text, auto run) {
        auto* const made = new QPushButton(text);
        made->setAutoDefault(false);
        connect(made, &QPushButton::clicked, this, run);
        return made;
    };
    invert =
        button(Text("Swap the ends"), [this] { Change([](ControlBinding& next) { std::swap(next.low, next.high); }); });
    learn = button(Text("Learn again"), [this] {
        if (const int index = Chosen(); index >= 0)
            controllers.Learn(controllers.Map().Entries()[static_cast<std::size_t>(index)].binding.target);
    });
    remove = button(Text("Remove"), [this] {
        if (const int index = Chosen(); index >= 0) controllers.Remove(static_cast<std::size_t>(index));
    });
    channel->setAccessibleName(Text("Channel"));
    mode->setAccessibleName(Text("Mode"));
    for (QWidget* const widget :
         {static_cast<QWidget*>(channel), static_cast<QWidget*>(mode), static_cast<QWidget*>(new QLabel(Text("From"))),
          static_cast<QWidget*>(low), static_cast<QWidget*>(new QLabel(Text("To"))), static_cast<QWidget*>(high),
          static_cast<QWidget*>(invert), static_cast<QWidget*>(learn), static_cast<QWidget*>(remove)}) {
        layout.addWidget(widget);
    }
}

void CControllerDialog::Fill() {
    const auto& entries = controllers.Map().Entries();
    const QSignalBlocker quiet(list);
    list->clear();
    for (const CControlMap::Entry& entry : entries) {
        const ControlBinding& binding = entry.binding;
        auto* const item = new QTreeWidgetItem(
            list, {controllers.OwnerText(binding.target), controllers.TargetText(binding.target),
                   CControllers::SourceText(binding.source), CControllers::ChannelText(binding.source.channelSelector),
                   RangeText(binding), IsAction(binding.target.kind) ? Text("A press") : ModeText(binding.mode),
                   QString(), IsOfProject(binding.target.kind) ? Text("The project") : Text("All projects")});
        item->setDisabled(entry.overruled);
        if (entry.overruled) item->setText(kPlayColumn, Text("the project has this controller"));
        if (wanted == binding.target) list->setCurrentItem(item);
    }
    for (int column = 0; column < kPlayColumn; ++column) list->resizeColumnToContents(column);
    if (list->currentItem() == nullptr && !entries.empty()) list->setCurrentItem(list->topLevelItem(0));
    ShowChosen();
}

int CControllerDialog::Chosen() const { return list->indexOfTopLevelItem(list->currentItem()); }

void CControllerDialog::ShowChosen() {
    const int index = Chosen();
    const bool any = index >= 0;
    for (QWidget* const widget :
         {static_cast<QWidget*>(channel), static_cast<QWidget*>(learn), static_cast<QWidget*>(remove)}) {
        widget->setEnabled(any);
    }
    const ControlBinding binding =
        any ? controllers.Map().Entries()[static_cast<std::size_t>(index)].binding : ControlBinding();
    const bool isValue = any && !IsAction(binding.target.kind);
    for (QWidget* const widget : {static_cast<QWidget*>(mode), static_cast<QWidget*>(low), static_cast<QWidget*>(high),
                                  static_cast<QWidget*>(invert)}) {
        widget->setEnabled(isValue);
    }
    if (any) wanted = binding.target;
    channel->setCurrentIndex(binding.source.channelSelector - 1);
    mode->setCurrentIndex(static_cast<int>(binding.mode));
    low->setValue(Percent(binding.low));
    high->setValue(Percent(binding.high));
}

void CControllerDialog::Change(const std::function<void(ControlBinding&)>& change) {
    const int index = Chosen();
    if (index < 0) return;
    ControlBinding next = controllers.Map().Entries()[static_cast<std::size_t>(index)].binding;
    const ControlBinding before = next;
    change(next);
    // A number that was not touched stays as fine as it is.
    if (Percent(next.low) == Percent(before.low) && Percent(next.high) == Percent(before.high)) {
        next.low = before.low;
        next.high = before.high;
    }
    if (next != before) controllers.Change(static_cast<std::size_t>(index), next);
}

void CControllerDialog::Tick() {
    const auto& entries = controllers.Map().Entries();
    for (int row = 0; row < list->topLevelItemCount() && row < static_cast<int>(entries.size()); ++row) {
        const CControlMap::Entry& entry = entries[static_cast<std::size_t>(row)];
        QTreeWidgetItem* const item = list->topLevelItem(row);
        const QString now = PlayText(*entry.play);
        if (!entry.overruled && item->text(kPlayColumn) != now) item->setText(kPlayColumn, now);
    }
}

void CControllerDialog::keyPressEvent(QKeyEvent* event) {
    const int index = Chosen();
    if (event->key() == Qt::Key_Delete && index >= 0) return controllers.Remove(static_cast<std::size_t>(index));
    QDialog::keyPressEvent(event);
}

}  // namespace quib
