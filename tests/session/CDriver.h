// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A user for tests: runs the whole program on the main thread while a thread of its own moves the mouse
// and presses keys through the X server, and looks at the windows through the event loop.

#include <QPoint>
#include <QString>
#include <condition_variable>
#include <functional>
#include <mutex>

#include "app/CMainWindow.h"
#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CWinControlMain.h"

class QMenu;

namespace quib {

// Number of the info text of the button, by which it is found.
constexpr int kAddInstrument = 448;

class CDriver {
public:
    // Runs the program with these arguments until its window closes; `script` runs on the user's thread
    // once the window is there. Gives the program's exit code.
    static int Run(const QStringList& arguments, const std::function<void(CDriver&)>& script);

    CMainWindow& Window() const { return *window; }
    CWinControlMain& Console() const { return *console; }

    // Runs on the user-interface thread and waits for it. Handed over by a mutex of our own: ThreadSanitizer
    // does not see how the event loop would do it.
    template <class Function>
    auto Ask(Function function) {
        using Answer = decltype(function());
        if constexpr (std::is_void_v<Answer>) {
            RunThere(function);
        } else {
            Answer answer{};
            RunThere([&] { answer = function(); });
            return answer;
        }
    }
    // Whether the start is over: the window's timer runs. For the user-interface thread.
    bool IsStarted() const { return started; }
    // Whether the tutorial stands in front, as at a first start. For the user-interface thread.
    static bool TutorialGreets();
    // Until it is true on the user-interface thread; false after half a minute.
    bool WaitFor(const std::function<bool()>& condition);

    // Points are those of the screen.
    void Move(QPoint point);
    void Click(QPoint point, int button = 1);
    void Drag(QPoint from, QPoint to, int button = 1);
    void Key(const char* name);
    // Words for xdotool, for what is pressed and held.
    void Send(const char* words);
    // Of a control of the console, `share` of its width from the left.
    QPoint PointOf(const CControl& control, double share = 0.5);
    // Chooses an entry of a menu of the main window by its words.
    bool ChooseMenu(const QString& menu, const QString& entry);
    // Chooses an entry of the menu that is open at the mouse.
    bool ChooseOpen(const QString& entry);
    // A child of the strip by the number of its info text; null when there is none.
    CControl* Find(const CControl& parent, int infoString);
    // The first top-level panel's child with that info text.
    CControl* FindInBand(int infoString);

private:
    enum class EJob { kNone, kWanted, kRunning };
    void RunThere(const std::function<void()>& work);
    void TakeJob();
    bool ClickAction(const std::function<QMenu*()>& menu, const QString& entry);

    CMainWindow* window = nullptr;
    CWinControlMain* console = nullptr;
    bool started = false;
    std::mutex mutex;
    std::condition_variable jobDone;
    EJob state = EJob::kNone;
    const std::function<void()>* job = nullptr;
};

}  // namespace quib
