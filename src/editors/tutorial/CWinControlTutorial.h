// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The window of the tutorial: six lessons in the real program. A step is over when the state of the program shows
// it; it can always be skipped. Works on a project of its own: the user's comes back when the window closes.
// User-interface thread.

#include <array>

#include "editors/base/CToolWindow.h"
#include "editors/tutorial/Lessons.h"

namespace quib {

class CSwitchCtrl;

class CWinControlTutorial : public CToolWindow {
    Q_OBJECT

public:
    CWinControlTutorial(const ToolContext& toolContext, const ToolRow& toolRow, QWidget* parent);
    ~CWinControlTutorial() override;

    // -1 before the first lesson.
    int Lesson() const noexcept { return lesson; }
    int Step() const noexcept { return step; }
    bool IsOver(int number) const noexcept { return over[static_cast<std::size_t>(number)]; }
    // What the step that is shown points at; nothing while the window is hidden.
    int Target() const;
    void Begin(int number);
    void Skip();

protected:
    void ShowSelection() override {}
    void ShowPlaying(const PlayPicture& picture) override;
    void Translate() override;
    void DrawBackground() override;
    QString Title() const override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    static constexpr std::size_t kLessons = 6;

    void Build();
    void Advance();
    void ShowSkip();
    void StepAside();
    void KeepUsersProject();
    void GiveUsersProjectBack();
    void DrawSteps();

    CSwitchCtrl* skip = nullptr;  // begins, before the first lesson
    int lesson = -1;
    int step = 0;
    std::array<bool, kLessons> over{};
    TutorialState before;  // when the step began
    bool kept = false;     // the user's project waits in a file
    bool modified = false;
    QString projectFile;
};

}  // namespace quib
