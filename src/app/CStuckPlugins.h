// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the workstation does about a plug-in that does not return: names it on standard error, asks through
// quib-message, whose window lives when ours do not, and on the wish to end saves the project as it was last and
// ends the process. Works on the watch's thread; the user-interface thread saves instead while it is alive.

#include <QString>
#include <array>
#include <atomic>
#include <functional>

#include "model/plugin/CPluginWatch.h"
#include "platform/CChildProcess.h"

namespace quib {

class CStuckPlugins {
public:
    // `saveProject` writes the project without calling a plug-in. Without a question the program ends at once.
    using Save = std::function<bool(std::string& error)>;
    CStuckPlugins(Save saveProject, bool askFirst);

    // User-interface thread: from its timer; while there is a project to save; and when the program is about to end.
    void Tick();
    void SetProject(bool there) noexcept { hasProject = there; }
    void SetEnding() noexcept { ending = true; }

private:
    void Look(const std::vector<CPluginWatch::Hang>& hung);
    void Tell(const CPluginWatch::Hang& hang);
    void Ask();
    void FollowAnswer();
    void End();
    void SaveAndEnd();

    Save save;
    bool asks;
    QString question;
    std::array<QString, kPluginCallNames.size()> calls;
    std::vector<std::string> buttons;
    std::atomic<bool> hasProject{false};
    std::atomic<bool> ending{false};
    std::atomic<bool> endWanted{false};
    std::atomic<bool> saving{false};
    Mark told = 0;
    CPluginWatch::Hang hang;
    bool asked = false;
    std::chrono::milliseconds askAgain{};  // of the call's time
    CChildProcess message;
    CPluginWatch watch;  // last: its thread uses the rest
};

}  // namespace quib
