// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CPluginWindow.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
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
#include "app/CSoundTools.h"
#include "app/Dialogs.h"
#include "app/FileDialogs.h"
#include "app/ProgramNames.h"
#include "app/parameters/CParameterPage.h"
#include "app/parameters/ParameterMenu.h"
#include "controls/Colours.h"
#include "document/CWorkstation.h"
#include "editors/panel/CPanel.h"
#include "editors/panel/PanelFiles.h"
#include "model/plugin/CPlugin.h"
#include "model/plugin/PluginMarks.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kWideHeader = 50;  // heights of its text

constexpr const char* kButtons =
    "QToolButton{background:%1;border:1px solid %2;border-radius:3px;padding:0.25em 0.6em;}"
    "QToolButton:hover{background:%3;}QToolButton:checked{background:%4;color:%5;}"
    "QToolButton:disabled{color:%6;}"
    "QToolButton::menu-indicator{image:none;}QToolButton[popupMode=\"1\"]{padding-right:1.5em;}";

bool CanEmbed() { return QGuiApplication::platformName() == QLatin1String("xcb"); }

}  // namespace

CPluginWindow::CPluginWindow(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin, QWidget* parent)
    : QWidget(parent, Qt::Window),
      workstation(projectOwner),
      controlSettings(projectOwner.Settings()),
      plugin(std::move(shownPlugin)),
      userPrograms(projectOwner, *plugin),
      marks(projectOwner.Settings(), plugin->Identity().Key()) {
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
    ShowSize();
}

CPluginWindow::~CPluginWindow() {
    CloseEditor();
    workstation.Places().UnwatchParameters(plugin.get());
}

void CPluginWindow::ShowTitle() {
    SlotPlace place;
    const QString name = QString::fromStdString(plugin->Identity().displayName);
    QString owner;
    if (workstation.Places().FindPlugin(plugin.get(), place)) {
        if (const auto instrument = workstation.Stack().InstrumentById(place.instrument))
            owner = QString::fromStdString(instrument->title);
    }
    setWindowTitle(owner.isEmpty() ? name : name + QStringLiteral(" - ") + owner);
    const QString maker = QString::fromStdString(plugin->Identity().vendor);
    const QString below = owner.isEmpty() ? maker : owner;
    title->setText(QStringLiteral("<b>%1</b><br><small>%2</small>").arg(name.toHtmlEscaped(), below.toHtmlEscaped()));
    title->setToolTip(name + QStringLiteral(" - ") + maker);
}

// --- The header -----------------------------------------------------------------------------------------------------

void CPluginWindow::BuildBar() {
    header = new QWidget;
    ShowColours();
    auto* const bar = new QHBoxLayout(header);
    bar->setContentsMargins(10, 5, 8, 5);
    bar->setSpacing(6);
    title = new QLabel;
    title->setTextFormat(Qt::RichText);
    title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    title->setMinimumWidth(60);
    bar->addWidget(title, 3);
    const auto addStep = [&](Qt::ArrowType arrow, int by) {
        auto* const button = new QToolButton;
        button->setArrowType(arrow);
        button->setAutoRaise(false);
        connect(button, &QToolButton::clicked, this, [this, by] { StepProgram(by); });
        bar->addWidget(button);
    };
    addStep(Qt::LeftArrow, -1);
    programs = new QComboBox;
    programs->setObjectName(QStringLiteral("programs"));
    programs->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    programs->setMinimumWidth(90);
    programs->setMaxVisibleItems(30);
    connect(programs, &QComboBox::activated, this, &CPluginWindow::ChooseProgram);
    bar->addWidget(programs, 4);
    addStep(Qt::RightArrow, 1);
    AddFileMenu(*bar);
    bar->addSpacing(6);
    tools = new CSoundTools(workstation, plugin);
    tools->isKept = [this](int parameter) { return marks.Has(CParameterMarks::EMark::kKept, parameter); };
    bar->addWidget(tools);
    learnButton = new QToolButton;
    learnButton->setText(Text("Learn"));
    learnButton->setCheckable(true);
    connect(learnButton, &QToolButton::clicked, this, [this](bool on) { workstation.Controllers().SetPicking(on); });
    connect(&workstation.Controllers(), &CControllers::Changed, this,
            [this] { learnButton->setChecked(workstation.Controllers().IsPicking()); });
    bar->addWidget(learnButton);
    bar->addSpacing(6);
    AddPageButtons(*bar);
    layout()->addWidget(header);
}

// Buttons that are on are filled, as everywhere.
void CPluginWindow::ShowColours() {
    const auto name = [](QRgb colour) { return QColor::fromRgb(colour).name(); };
    header->setStyleSheet(QString::fromLatin1(kButtons).arg(
        name(Colour("panelRaised")), name(Colour("edge")), name(Colour("knobHover")),
        name(Palette().Accent(ESection::kMix)), name(Colour("onAccent")), name(Colour("textOff"))));
    palette = &Palette();
}

void CPluginWindow::AddFileMenu(QHBoxLayout& bar) {
    auto* const button = new QToolButton;
    auto* const menu = new QMenu(button);
    menu->addAction(Text("Save As ..."), this, &CPluginWindow::SaveAs);
    menu->addSeparator();
    const struct {
        const char* text;
        void (CPluginWindow::*run)(EFileKind);
    } rows[] = {{TextKey("Load"), &CPluginWindow::Load}, {TextKey("Save"), &CPluginWindow::Save}};
    for (const auto& row : rows) {
        QMenu* const files = menu->addMenu(Text(row.text));
        const auto run = row.run;
        files->addAction(Text("Program ..."), this, [this, run] { (this->*run)(EFileKind::kProgram); });
        files->addAction(Text("Bank ..."), this, [this, run] { (this->*run)(EFileKind::kBank); });
    }
    button->setObjectName(QStringLiteral("files"));
    button->setText(Text("Save"));
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    bar.addWidget(button);
}

// Which of them are there, BuildPanel and what the plug-in has decide.
void CPluginWindow::AddPageButtons(QHBoxLayout& bar) {
    const auto add = [&](const char* text, const char* name, void (CPluginWindow::*choose)()) {
        auto* const button = new QToolButton;
        button->setText(Text(text));
        button->setObjectName(QLatin1String(name));
        button->setCheckable(true);
        connect(button, &QToolButton::clicked, this, [this, choose] { (this->*choose)(); });
        bar.addWidget(button);
        return button;
    };
    ownButton = add(TextKey("Own window"), "own", &CPluginWindow::ShowEditor);
    panelButton = add(TextKey("Panel"), "panel", &CPluginWindow::ShowPanel);
    listButton = add(TextKey("List"), "list", &CPluginWindow::ShowList);
    ownButton->setVisible(plugin->HasEditor() && CanEmbed());
}

// --- Its pages ------------------------------------------------------------------------------------------------------

void CPluginWindow::BuildPage() {
    list = new CParameterPage(controlSettings, workstation, plugin, marks);
    list->SetUiScale(workstation.Settings().ReadSettingInt("Settings", "GuiScale", 100) / 100.0);
    list->differing = [this] { return tools->Differing(); };
    const auto lane = [this](int parameter) {
        if (showLane) showLane(parameter);
    };
    list->onShowLane = lane;
    list->Values().onMenu = [this, lane](int parameter) {
        ShowParameterMenu(*list, list->Values(), marks, parameter, lane);
    };
    pages->addWidget(list);
}

void CPluginWindow::BuildPanel() {
    const QString folder = workstation.ProgramFolders().program + QStringLiteral("Panels");
    auto layout = FindPanelLayout(plugin->Identity().Key(), folder);
    panelButton->setVisible(layout.has_value());
    if (!layout) return;
    panel = new CPanel(controlSettings, workstation, plugin, std::move(*layout));
    panel->SetUiScale(workstation.Settings().ReadSettingInt("Settings", "GuiScale", 100) / 100.0);
    panel->setFixedSize(panel->sizeHint());
    panel->Values().onMenu = [this](int parameter) {
        ShowParameterMenu(*panel, panel->Values(), marks, parameter, [this](int one) {
            if (showLane) showLane(one);
        });
    };
    panel->onSaveProgram = [this] { QMetaObject::invokeMethod(this, &CPluginWindow::SaveAs, Qt::QueuedConnection); };
    panel->onUserProgram = [this](int index) {
        ChooseProgram(static_cast<int>(programs->count() - userPrograms.Names().size()) + index);
    };
    auto* const scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(panel);
    pages->addWidget(scroll);
    panelPage = scroll;
    pages->setCurrentWidget(scroll);
}

bool CPluginWindow::IsListShown() const { return !editorOpen && pages->currentWidget() == list; }

// What a narrow header has no room for.
void CPluginWindow::ShowWide(bool isWide) {
    tools->SetNarrow(!isWide);
    learnButton->setVisible(isWide);
    header->layout()->activate();
    layout()->activate();
}

// As large as what is shown wants to be.
void CPluginWindow::ShowSize() {
    ownButton->setChecked(editorOpen);
    panelButton->setChecked(!editorOpen && panelPage != nullptr && pages->currentWidget() == panelPage);
    listButton->setChecked(IsListShown());
    if (editorOpen) return;
    const QSize wanted = panel == nullptr || IsListShown() ? list->sizeHint() : panel->size();
    ShowWide(wanted.width() >= header->fontMetrics().height() * kWideHeader);
    resize((wanted + QSize(0, header->sizeHint().height())).boundedTo(screen()->availableSize()));
}

void CPluginWindow::ShowPage() { panel != nullptr ? ShowPanel() : ShowList(); }

void CPluginWindow::ShowPanel() {
    CloseEditor();
    pages->setCurrentWidget(panelPage);
    ShowSize();
}

void CPluginWindow::ShowList() {
    CloseEditor();
    pages->setCurrentWidget(list);
    list->Follow();
    ShowSize();
}

void CPluginWindow::ShowEditor() {
    if (!plugin->HasEditor() || !CanEmbed()) return ShowPage();
    ShowWide(false);  // editors may be narrow
    if (OpenEditor()) ShowSize();
}

// --- Programs -------------------------------------------------------------------------------------------------------

void CPluginWindow::FillPrograms() {
    const QSignalBlocker quiet(programs);
    programs->clear();
    programs->addItems(ProgramNames(*plugin));
    if (!userPrograms.Names().isEmpty()) {
        programs->insertSeparator(programs->count());
        programs->addItems(userPrograms.Names());
    }
    programs->setEnabled(programs->count() > 0);
    if (panel != nullptr) panel->SetUserPrograms(userPrograms.Names());
}

void CPluginWindow::ChooseProgram(int row) {
    const int own = static_cast<int>(programs->count() - userPrograms.Names().size());
    if (row < own) {
        chosenUser = -1;
        workstation.Places().SelectProgram(plugin, row);
        return;
    }
    QString error;
    if (!userPrograms.Load(userPrograms.Names().value(row - own), error)) return TellError(this, error);
    chosenUser = row;
    programThen = plugin->CurrentProgram();
    programs->setCurrentIndex(row);
}

void CPluginWindow::StepProgram(int by) {
    int row = programs->currentIndex() + by;
    while (row >= 0 && row < programs->count() && programs->itemText(row).isEmpty()) row += by;
    if (row < 0 || row >= programs->count()) return;
    programs->setCurrentIndex(row);
    ChooseProgram(row);
}

void CPluginWindow::SaveAs() {
    bool accepted = false;
    const QString name =
        QInputDialog::getText(this, Text("Save As ..."), Text("Name"), QLineEdit::Normal, QString(), &accepted)
            .trimmed();
    if (!accepted) return;
    QString error;
    if (userPrograms.Names().contains(name) &&
        QMessageBox::question(this, windowTitle(), Text("\"%1\" exists. Replace it?").arg(name)) != QMessageBox::Yes)
        return;
    if (!userPrograms.Save(name, error)) return TellError(this, error);
    FillPrograms();
    const int row =
        static_cast<int>(programs->count() - userPrograms.Names().size() + userPrograms.Names().indexOf(name));
    chosenUser = row;
    programThen = plugin->CurrentProgram();
    programs->setCurrentIndex(row);
}

bool CPluginWindow::CallPlugin(const std::function<void(CPlugin& called)>& call) {
    const QPointer<CPluginWindow> alive(this);
    const std::shared_ptr<CPlugin> called = plugin;
    ++callsInside;
    call(*called);
    if (alive == nullptr) return false;
    --callsInside;
    return true;
}

// False: this window is gone.
bool CPluginWindow::OpenEditor() {
    closeLater = false;
    if (editorOpen) return true;
    editor = new QWidget;
    editor->setAttribute(Qt::WA_NativeWindow);
    editor->setAttribute(Qt::WA_DontCreateNativeAncestors);
    pages->addWidget(editor);
    pages->setCurrentWidget(editor);
    // What is not seen must not make the window larger than the editor.
    for (QWidget* const page : {static_cast<QWidget*>(list), panelPage}) {
        if (page != nullptr) page->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    }
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    FitEditor();
    show();
    const QSize shown = size();
    const WId id = editor->winId();
    QGuiApplication::sync();
    editorOpen = true;
    plugin->PinLibrary();
    MarkSuspect(plugin->MarkedAs(), EPluginCall::kOpenEditor);
    if (!CallPlugin([id](CPlugin& called) { called.OpenEditor(id); })) return false;
    if (!editorOpen) return true;
    FitEditor();
    if (size() != shown) Q_EMIT Opening();
    return true;
}

void CPluginWindow::CloseEditor() {
    if (!editorOpen) return;
    editorOpen = false;
    if (!CallPlugin([](CPlugin& called) { called.CloseEditor(); })) return;
    pages->removeWidget(editor);
    editor->hide();
    editor->setParent(nullptr);
    Q_EMIT EditorLeft(std::exchange(editor, nullptr));
    layout()->setSizeConstraint(QLayout::SetDefaultConstraint);
    for (QWidget* const page : {static_cast<QWidget*>(list), panelPage}) {
        if (page != nullptr) page->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    }
    setMinimumSize(0, 0);
    setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
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
    if (palette != &Palette()) ShowColours();
    if (closeLater && callsInside == 0) {
        close();
        return;
    }
    if (editorOpen) {
        if (!CallPlugin([](CPlugin& called) { called.IdleEditor(); })) return;
        constexpr int kLookTicks = 10;
        if (editorOpen && ++ticks % kLookTicks == 0) FollowContent();
    } else if (isVisible()) {
        if (IsListShown()) {
            list->Follow();
        } else if (panel != nullptr) {
            panel->Follow();
        }
    }
    const int program = plugin->CurrentProgram();
    if (chosenUser >= 0 && program == programThen && chosenUser < programs->count()) return;
    chosenUser = -1;
    if (program == programs->currentIndex() || program < 0 || program >= programs->count()) return;
    programs->setCurrentIndex(program);
}

void CPluginWindow::resizeEvent(QResizeEvent* event) {
    if (editor == nullptr) ShowWide(width() >= header->fontMetrics().height() * kWideHeader);
    QWidget::resizeEvent(event);
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

// Not while the plug-in is in the middle of its editor's work: it would come back to what is no more.
void CPluginWindow::closeEvent(QCloseEvent* event) {
    closeLater = callsInside > 0;
    if (closeLater) return event->ignore();
    Q_EMIT Closing();
    CloseEditor();
    event->accept();
}

}  // namespace quib
