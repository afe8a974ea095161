// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPluginWindow.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "app/CLeftEditors.h"
#include "app/CParameterList.h"
#include "app/CSoundTools.h"
#include "app/Dialogs.h"
#include "app/FileDialogs.h"
#include "app/ProgramNames.h"
#include "document/CWorkstation.h"
#include "editors/panel/CPanel.h"
#include "editors/panel/PanelFiles.h"
#include "model/plugin/CPlugin.h"
#include "model/plugin/PluginMarks.h"
#include "texts/Texts.h"

namespace quib {

namespace {

bool CanEmbed() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

}  // namespace

CPluginWindow::CPluginWindow(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin, QWidget* parent)
    : QWidget(parent, Qt::Window),
      workstation(projectOwner),
      controlSettings(projectOwner.Settings()),
      plugin(std::move(shownPlugin)) {
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    pages = new QStackedWidget;
    BuildBar();
    BuildPage();
    BuildPanel();
    layout->addWidget(pages, 1);
    FillPrograms();
    workstation.Places().WatchParameters(plugin);
    ShowTitle();
    connect(&workstation.Changes(), &CChanges::Changed, this, [this](const Change& change) {
        if (change.kind == EChange::kInstrument) ShowTitle();
    });
    if (panel != nullptr)
        pageSize = (panel->size() + QSize(0, programs->sizeHint().height() + 12)).boundedTo(screen()->availableSize());
    resize(pageSize);
}

CPluginWindow::~CPluginWindow() {
    CloseEditor();
    workstation.Places().UnwatchParameters(plugin.get());
}

void CPluginWindow::ShowTitle() {
    SlotPlace place;
    QString title = QString::fromStdString(plugin->Identity().displayName);
    if (workstation.Places().FindPlugin(plugin.get(), place)) {
        if (const auto instrument = workstation.Stack().InstrumentById(place.instrument)) {
            title += QStringLiteral(" - ") + QString::fromStdString(instrument->title);
        }
    }
    setWindowTitle(title);
}

void CPluginWindow::BuildBar() {
    auto* const bar = new QHBoxLayout;
    bar->setContentsMargins(6, 6, 6, 6);
    programs = new QComboBox;
    programs->setObjectName(QStringLiteral("programs"));
    programs->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(programs, &QComboBox::activated, this,
            [this](int program) { workstation.Places().SelectProgram(plugin, program); });
    bar->addWidget(programs, 1);
    bar->addWidget(new CSoundTools(workstation, plugin));
    const struct {
        const char* text;
        void (CPluginWindow::*run)(EFileKind);
    } menus[] = {{TextKey("Load"), &CPluginWindow::Load}, {TextKey("Save"), &CPluginWindow::Save}};
    for (const auto& entry : menus) {
        auto* const button = new QToolButton;
        auto* const menu = new QMenu(button);
        const auto run = entry.run;
        menu->addAction(Text("Bank ..."), this, [this, run] { (this->*run)(EFileKind::kBank); });
        menu->addAction(Text("Program ..."), this, [this, run] { (this->*run)(EFileKind::kProgram); });
        button->setText(Text(entry.text));
        button->setMenu(menu);
        button->setPopupMode(QToolButton::InstantPopup);
        bar->addWidget(button);
    }
    pageButton = new QToolButton;
    pageButton->setText(Text("Parameters"));
    pageButton->setCheckable(true);
    pageButton->setChecked(true);
    pageButton->setVisible(plugin->HasEditor() && CanEmbed());
    connect(pageButton, &QToolButton::clicked, this,
            [this](bool parameters) { parameters ? ShowPage() : ShowEditor(); });
    bar->addWidget(pageButton);
    listButton = new QToolButton;
    listButton->setObjectName(QStringLiteral("list"));
    listButton->setText(Text("List"));
    listButton->setCheckable(true);
    connect(listButton, &QToolButton::clicked, this, [this] { ShowPage(); });
    bar->addWidget(listButton);
    static_cast<QVBoxLayout*>(layout())->addLayout(bar);
}

void CPluginWindow::BuildPage() {
    page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const filter = new QLineEdit;
    filter->setObjectName(QStringLiteral("filter"));
    filter->setPlaceholderText(Text("Filter"));
    filter->setClearButtonEnabled(true);
    list = new CParameterList(workstation, plugin);
    connect(filter, &QLineEdit::textChanged, list, &CParameterList::SetFilter);
    layout->addWidget(filter);
    layout->addWidget(list, 1);
    pages->addWidget(page);
}

void CPluginWindow::BuildPanel() {
    const QString folder = workstation.ProgramFolders().program + QStringLiteral("Panels");
    auto layout = FindPanelLayout(plugin->Identity().Key(), folder);
    listButton->setVisible(layout.has_value());
    if (!layout) return;
    panel = new CPanel(controlSettings, workstation, plugin, std::move(*layout));
    panel->SetUiScale(workstation.Settings().ReadSettingInt("Settings", "GuiScale", 100) / 100.0);
    panel->setFixedSize(panel->sizeHint());
    auto* const scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(panel);
    pages->addWidget(scroll);
    panelPage = scroll;
    pages->setCurrentWidget(scroll);
}

void CPluginWindow::FillPrograms() {
    const QSignalBlocker quiet(programs);
    programs->clear();
    programs->addItems(ProgramNames(*plugin));
    programs->setEnabled(programs->count() > 0);
}

void CPluginWindow::ShowPage() {
    pageButton->setChecked(true);
    CloseEditor();
    pages->setCurrentWidget(panel != nullptr && !listButton->isChecked() ? panelPage : page);
}

void CPluginWindow::ShowList() {
    listButton->setChecked(true);
    ShowPage();
}

void CPluginWindow::ShowEditor() {
    if (!plugin->HasEditor() || !CanEmbed()) return ShowPage();
    pageButton->setChecked(false);
    OpenEditor();
}

// The plug-in talks to the window system on its own, so the place must be there when it is told of it.
void CPluginWindow::OpenEditor() {
    if (editorOpen) return;
    pageSize = size();
    editor = new QWidget;
    editor->setAttribute(Qt::WA_NativeWindow);
    editor->setAttribute(Qt::WA_DontCreateNativeAncestors);
    pages->addWidget(editor);
    pages->setCurrentWidget(editor);
    // What is not seen must not make the window larger than the editor.
    page->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    FitEditor();
    show();
    const QSize shown = size();
    const WId id = editor->winId();
    QGuiApplication::sync();
    editorOpen = true;
    plugin->PinLibrary();
    MarkSuspect(plugin->MarkedAs(), EPluginCall::kOpenEditor);
    plugin->OpenEditor(id);
    FitEditor();
    if (size() != shown) Q_EMIT Opening();
}

void CPluginWindow::CloseEditor() {
    if (!editorOpen) return;
    editorOpen = false;
    plugin->CloseEditor();
    pages->removeWidget(editor);
    editor->hide();
    editor->setParent(nullptr);
    Q_EMIT EditorLeft(std::exchange(editor, nullptr));
    layout()->setSizeConstraint(QLayout::SetDefaultConstraint);
    page->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    setMinimumSize(0, 0);
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    resize(pageSize);
}

void CPluginWindow::FitEditor() {
    if (const auto wanted = plugin->AskEditorSize()) ResizeEditor(wanted->width, wanted->height);
}

// Editors may change their size without a word.
void CPluginWindow::FollowContent() {
    if (const auto content = ContentOf(*editor)) ResizeEditor(content->width, content->height);
}

void CPluginWindow::ResizeEditor(int width, int height) {
    constexpr int kSmallest = 10;
    constexpr int kLargest = 4000;
    if (editor == nullptr || std::min(width, height) < kSmallest || std::max(width, height) > kLargest) return;
    // Its pixels are those of the screen, ours may be larger.
    const qreal ratio = devicePixelRatioF();
    const QSize wanted(static_cast<int>(std::ceil(width / ratio)), static_cast<int>(std::ceil(height / ratio)));
    if (editor->size() == wanted && editor->minimumSize() == wanted) return;
    editor->setFixedSize(wanted);
    layout()->activate();
    adjustSize();
}

void CPluginWindow::PlaceAt(const QPoint& point) { setGeometry(QRect(point, size())); }

void CPluginWindow::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) Q_EMIT Opening();
}

void CPluginWindow::Tick() {
    if (editorOpen) {
        plugin->IdleEditor();
        constexpr int kLookTicks = 10;
        if (editorOpen && ++ticks % kLookTicks == 0) FollowContent();
    } else if (isVisible()) {
        if (panel != nullptr && !listButton->isChecked()) {
            panel->Follow();
        } else {
            list->Refresh();
        }
    }
    const int program = plugin->CurrentProgram();
    if (program == programs->currentIndex() || program < 0 || program >= programs->count()) return;
    programs->setCurrentIndex(program);
}

void CPluginWindow::Load(EFileKind kind) {
    SlotPlace place;
    if (!workstation.Places().FindPlugin(plugin.get(), place)) return;
    const QString path = ChooseFileToOpen(this, workstation.Settings(), kind);
    if (path.isEmpty()) return;
    QString error;
    const bool loaded = kind == EFileKind::kBank ? workstation.Places().LoadBank(place, path, error)
                                                 : workstation.Places().LoadProgram(place, path, error);
    if (!loaded) TellError(this, error);
    FillPrograms();
}

void CPluginWindow::Save(EFileKind kind) {
    SlotPlace place;
    if (!workstation.Places().FindPlugin(plugin.get(), place)) return;
    const QString path = ChooseFileToSave(this, workstation.Settings(), kind);
    if (path.isEmpty()) return;
    QString error;
    const bool saved = kind == EFileKind::kBank ? workstation.Places().SaveBank(place, path, error)
                                                : workstation.Places().SaveProgram(place, path, error);
    if (!saved) TellError(this, error);
}

void CPluginWindow::closeEvent(QCloseEvent* event) {
    Q_EMIT Closing();
    CloseEditor();
    event->accept();
}

}  // namespace quib
