// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The window of one plug-in: its programs, its banks, a page of all its parameters, and its own editor
// where it has one that can be embedded. Keeps the plug-in alive while it is open. User-interface thread.

#include <QStackedWidget>
#include <QWidget>
#include <memory>

#include "app/CSettingsForControls.h"

class QComboBox;
class QToolButton;

namespace quib {

class CPanel;
class CParameterList;
class CPlugin;
class CWorkstation;
enum class EFileKind;

class CPluginWindow : public QWidget {
    Q_OBJECT

public:
    CPluginWindow(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin, QWidget* parent);
    ~CPluginWindow() override;

    CPlugin& Plugin() noexcept { return *plugin; }
    CParameterList& Parameters() noexcept { return *list; }
    // Null for a plug-in without one.
    CPanel* Panel() noexcept { return panel; }
    // Shows the panel, or the list of the parameters where that is chosen or there is none; or the plug-in's editor.
    void ShowPage();
    void ShowList();
    void ShowEditor();
    bool IsEditorOpen() const noexcept { return editorOpen; }
    // Of what stands above the editor.
    int BarHeight() const { return pages->y(); }
    // From the 40 ms timer.
    void Tick();
    // The plug-in asks for this size of its editor (pixels of the screen).
    void ResizeEditor(int width, int height);
    void Load(EFileKind kind);
    void Save(EFileKind kind);
    // Puts the window's own area there (pixels of the screen).
    void PlaceAt(const QPoint& point);

Q_SIGNALS:
    void Opening();  // it is about to be seen, in its size
    void Closing();
    // The plug-in has been told to close its editor; the area in which it stood belongs to whoever hears this.
    void EditorLeft(QWidget* area);

protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void BuildBar();
    void BuildPage();
    void BuildPanel();
    void FillPrograms();
    void OpenEditor();
    void CloseEditor();
    void FitEditor();
    void FollowContent();
    void ShowTitle();

    CWorkstation& workstation;
    CSettingsForControls controlSettings;
    std::shared_ptr<CPlugin> plugin;
    QComboBox* programs = nullptr;
    QToolButton* pageButton = nullptr;
    QToolButton* listButton = nullptr;
    QStackedWidget* pages = nullptr;
    CParameterList* list = nullptr;
    CPanel* panel = nullptr;
    QWidget* panelPage = nullptr;  // scrolls the panel where the screen is too small for it
    QWidget* page = nullptr;
    QWidget* editor = nullptr;  // the place for the plug-in's own window
    QSize pageSize{560, 480};
    int ticks = 0;
    bool editorOpen = false;
};

}  // namespace quib
