// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDriver.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QTimer>
#include <thread>

#include "app/ApplicationMain.h"
#include "app/console/MakeConsole.h"
#include "editors/tutorial/CWinControlTutorial.h"

namespace quib {

namespace {

void Xdotool(const QStringList& arguments) { QProcess::execute(QStringLiteral("xdotool"), arguments); }

QStringList To(QPoint point) {
    return {QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y())};
}

void Pause(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

}  // namespace

int CDriver::Run(const QStringList& arguments, const std::function<void(CDriver&)>& script) {
    std::vector<QByteArray> words = {"quib"};
    for (const QString& argument : arguments) words.push_back(argument.toLocal8Bit());
    std::vector<char*> pointers;
    for (QByteArray& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    CDriver driver;
    std::thread user;
    const auto factory = [&](CMainWindow& window) {
        QWidget* const made = MakeConsole(window);
        driver.window = &window;
        driver.console = static_cast<CWinControlMain*>(made);
        // From within the event loop, a question of the start included.
        QTimer::singleShot(0, &window, [&] { user = std::thread([&] { script(driver); }); });
        QObject::connect(&window, &CMainWindow::Ticked, &window, [&driver] { driver.started = true; });
        auto* const jobs = new QTimer(&window);
        QObject::connect(jobs, &QTimer::timeout, &window, [&driver] { driver.TakeJob(); });
        jobs->start(2);
        return made;
    };
    const int code = ApplicationMain(static_cast<int>(words.size()), pointers.data(), factory);
    if (user.joinable()) user.join();
    return code;
}

void CDriver::RunThere(const std::function<void()>& work) {
    std::unique_lock lock(mutex);
    job = &work;
    state = EJob::kWanted;
    jobDone.wait(lock, [this] { return state == EJob::kNone; });
}

// A job may open a dialog, whose event loop comes by here again.
void CDriver::TakeJob() {
    std::unique_lock lock(mutex);
    if (state != EJob::kWanted) return;
    state = EJob::kRunning;
    lock.unlock();
    (*job)();
    lock.lock();
    state = EJob::kNone;
    jobDone.notify_all();
}

bool CDriver::TutorialGreets() { return qobject_cast<CWinControlTutorial*>(QApplication::activeWindow()) != nullptr; }

bool CDriver::WaitFor(const std::function<bool()>& condition) {
    for (int turn = 0; turn < 1500; ++turn) {
        if (Ask(condition)) return true;
        Pause(20);
    }
    return false;
}

void CDriver::Move(QPoint point) { Xdotool(To(point)); }

void CDriver::Click(QPoint point, int button) {
    Xdotool(To(point) + QStringList{QStringLiteral("sleep"), QStringLiteral("0.03"), QStringLiteral("click"),
                                    QString::number(button)});
    Pause(30);
}

void CDriver::Drag(QPoint from, QPoint to, int button) {
    QStringList words = To(from) + QStringList{QStringLiteral("mousedown"), QString::number(button)};
    for (int part = 1; part <= 4; ++part) {
        words += QStringList{QStringLiteral("sleep"), QStringLiteral("0.02")} + To(from + (to - from) * part / 4);
    }
    Xdotool(words + QStringList{QStringLiteral("sleep"), QStringLiteral("0.02"), QStringLiteral("mouseup"),
                                QString::number(button)});
    Pause(30);
}

void CDriver::Key(const char* name) {
    Xdotool({QStringLiteral("key"), QString::fromLatin1(name)});
    Pause(30);
}

void CDriver::Send(const char* words) {
    Xdotool(QString::fromLatin1(words).split(QLatin1Char(' ')));
    Pause(30);
}

QPoint CDriver::PointOf(const CControl& control, double share) {
    return Ask([&] {
        const QRect place = console->ToWidget(control.Rectangle());
        return console->mapToGlobal(QPoint(place.left() + static_cast<int>(place.width() * share), place.center().y()));
    });
}

// The place of an entry of a menu that is shown, once it is.
bool CDriver::ClickAction(const std::function<QMenu*()>& menu, const QString& entry) {
    QPoint place;
    const bool found = WaitFor([&] {
        QMenu* const shown = menu();
        if (shown == nullptr || !shown->isVisible()) return false;
        for (QAction* const action : shown->actions()) {
            if (!action->text().remove(QLatin1Char('&')).startsWith(entry)) continue;
            place = shown->mapToGlobal(shown->actionGeometry(action).center());
            return true;
        }
        return false;
    });
    if (found) Click(place);
    return found;
}

bool CDriver::ChooseMenu(const QString& name, const QString& entry) {
    QPoint place;
    QMenu* opened = nullptr;
    Ask([&] {
        for (QAction* const action : window->menuBar()->actions()) {
            if (action->text().remove(QLatin1Char('&')) != name) continue;
            place = window->menuBar()->mapToGlobal(window->menuBar()->actionGeometry(action).center());
            opened = action->menu();
        }
    });
    if (opened == nullptr) return false;
    Click(place);
    return ClickAction([opened] { return opened; }, entry);
}

bool CDriver::ChooseOpen(const QString& entry) {
    return ClickAction([] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }, entry);
}

CControl* CDriver::Find(const CControl& parent, int infoString) {
    return Ask([&]() -> CControl* {
        for (const auto& child : parent.Children()) {
            if (child->infoString == infoString) return child.get();
        }
        return nullptr;
    });
}

CControl* CDriver::FindInBand(int infoString) {
    const auto count = Ask([&] { return console->Controls().size(); });
    for (std::size_t index = 0; index < count; ++index) {
        CControl* const panel = console->Controls()[index].get();
        if (panel->infoString == infoString) return panel;
        if (CControl* const found = Find(*panel, infoString)) return found;
    }
    return nullptr;
}

}  // namespace quib
