// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The window of one plug-in: below a header with its programs and the tools for its sound, its panel, the page of all
// its parameters, or its own editor where it has one that can be embedded. Keeps the plug-in alive while it is open.
// User-interface thread.

#include <QStackedWidget>
#include <QWidget>
#include <functional>
#include <memory>

#include "app/CSettingsForControls.h"
#include "app/parameters/CParameterMarks.h"
#include "document/CUserPrograms.h"

class QComboBox;
class QHBoxLayout;
class QLabel;
class QToolButton;

namespace quib {

class CPalette;
class CPanel;
class CParameterPage;
class CPlugin;
class CSoundTools;
class CWorkstation;
enum class EFileKind;

class CPluginWindow : public QWidget {
    Q_OBJECT

public:
    CPluginWindow(CWorkstation& projectOwner, std::shared_ptr<CPlugin> shownPlugin, QWidget* parent);
    ~CPluginWindow() override;

    CPlugin& Plugin() noexcept { return *plugin; }
    CParameterPage& Parameters() noexcept { return *list; }
    // Null for a plug-in without one.
    CPanel* Panel() noexcept { return panel; }
    // Shows the panel, or the list of the parameters where that is chosen or there is none; or the plug-in's editor.
    void ShowPage();
    void ShowPanel();
    void ShowList();
    void ShowEditor();
    bool IsEditorOpen() const noexcept { return editorOpen; }
    // The header's programs: one of the plug-in by its number, then those of the user.
    void ChooseProgram(int row);
    // Saves what is heard under a name of the user's.
    void SaveAs();
    // A parameter's curve is wanted.
    std::function<void(int parameter)> showLane;
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
    void resizeEvent(QResizeEvent* event) override;

private:
    void BuildBar();
    void ShowColours();
    void AddFileMenu(QHBoxLayout& bar);
    void AddPageButtons(QHBoxLayout& bar);
    void BuildPage();
    void BuildPanel();
    void FillPrograms();
    void StepProgram(int by);
    void ShowSize();
    void ShowWide(bool isWide);
    bool IsListShown() const;
    bool OpenEditor();
    void CloseEditor();
    // Toolkits of plug-ins handle events of the whole program meanwhile. False: this window is gone.
    bool CallPlugin(const std::function<void(CPlugin& called)>& call);
    void FitEditor();
    void FollowContent();
    void ShowTitle();

    CWorkstation& workstation;
    CSettingsForControls controlSettings;
    std::shared_ptr<CPlugin> plugin;
    CUserPrograms userPrograms;
    CParameterMarks marks;
    QWidget* header = nullptr;
    QLabel* title = nullptr;
    QComboBox* programs = nullptr;
    CSoundTools* tools = nullptr;
    QToolButton* learnButton = nullptr;
    QToolButton* ownButton = nullptr;  // the plug-in's own window
    QToolButton* panelButton = nullptr;
    QToolButton* listButton = nullptr;
    QStackedWidget* pages = nullptr;
    CParameterPage* list = nullptr;
    CPanel* panel = nullptr;
    QWidget* panelPage = nullptr;  // scrolls the panel where the screen is too small for it
    QWidget* editor = nullptr;     // the place for the plug-in's own window
    int chosenUser = -1;           // the user's program that was chosen last, while the plug-in's number stays
    int programThen = -1;
    const CPalette* palette = nullptr;  // of the header
    int ticks = 0;
    bool editorOpen = false;
    int callsInside = 0;      // of the plug-in's editor that have not returned
    bool closeLater = false;  // when they have
};

}  // namespace quib
