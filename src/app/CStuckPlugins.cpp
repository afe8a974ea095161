// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CStuckPlugins.h"

#include <fmt/format.h>

#include <thread>
#include <utility>

#include "platform/EndSignals.h"
#include "platform/FatalEnd.h"
#include "platform/Paths.h"
#include "texts/Texts.h"

namespace quib {

namespace {

constexpr int kEndButton = 1;
constexpr int kExitCode = 1;
constexpr std::chrono::seconds kAskAgain{30};
constexpr auto kShortWait = std::chrono::milliseconds(50);
constexpr int kTurnsForWindows = 20;  // short waits
constexpr auto kLongestSave = std::chrono::seconds(30);

void Say(const std::string& text) { fmt::print(stderr, "quib: {}\n", text); }

}  // namespace

// The texts are made now: the watch's thread must not look them up.
CStuckPlugins::CStuckPlugins(Save saveProject, bool askFirst)
    : save(std::move(saveProject)),
      asks(askFirst),
      question(Text("\"%1\" has not returned for %2 seconds while %3.\n\nThe project can be saved as it is and the "
                    "program ended. The next start opens it without this plug-in, whose settings are kept.")),
      buttons({Text("Wait").toStdString(), Text("Save and end").toStdString()}),
      watch([this](const std::vector<CPluginWatch::Hang>& hung) { Look(hung); }) {
    for (std::size_t i = 0; i < calls.size(); ++i) calls[i] = Text(kPluginCallNames[i]);
}

void CStuckPlugins::Tick() {
    watch.EditingIsAlive();
    if (endWanted && !saving.exchange(true)) SaveAndEnd();
}

void CStuckPlugins::Look(const std::vector<CPluginWatch::Hang>& hung) {
    if (hung.empty()) {
        if (told == 0) return;
        Say('"' + CallOf(told).name + "\" has returned");
        told = 0;
        MarkHung(0);
        message.Kill();
        asked = false;
        return;
    }
    hang = hung.front();
    if (hang.mark != told) Tell(hang);
    if (EndWanted() || ending || !asks) return End();
    if (asked) {
        FollowAnswer();
    } else if (hang.time >= askAgain) {
        Ask();
    }
}

void CStuckPlugins::Tell(const CPluginWatch::Hang& of) {
    const MarkedCall call = CallOf(of.mark);
    Say(fmt::format("\"{}\" has not returned for {} s while {}", call.name, of.time.count() / 1000,
                    Describe(call.call)));
    told = of.mark;
    askAgain = {};
    MarkHung(of.mark);
}

void CStuckPlugins::Ask() {
    const MarkedCall call = CallOf(hang.mark);
    const QString text = question.arg(QString::fromStdString(call.name))
                             .arg(hang.time.count() / 1000)
                             .arg(calls[static_cast<std::size_t>(call.call)]);
    asked = message.Start(ExecutableFolder() / "quib-message",
                          {"QUIB Sequencer", text.toStdString(), buttons[0], buttons[1]});
    if (!asked) Say("quib-message does not start; a signal to end (kill) saves the project and ends the program");
    askAgain = hang.time + kAskAgain;
}

// Whoever waits is asked again after a while.
void CStuckPlugins::FollowAnswer() {
    const auto answer = message.Ended();
    if (!answer) return;
    asked = false;
    askAgain = hang.time + kAskAgain;
    if (*answer == kEndButton) End();
}

// The windows may be alive, and then nobody else may look at the project.
void CStuckPlugins::End() {
    endWanted = true;
    for (int turn = 0; turn < kTurnsForWindows && !saving; ++turn) std::this_thread::sleep_for(kShortWait);
    if (!saving.exchange(true)) SaveAndEnd();
    std::this_thread::sleep_for(kLongestSave);
    EndAtOnce(kExitCode);
}

// Before the project is there the files of the session hold more than we do.
void CStuckPlugins::SaveAndEnd() {
    std::string error;
    if (hasProject && !save(error)) Say(error);
    Say(hasProject && error.empty() ? "the project is saved; the program ends" : "the program ends");
    message.Kill();
    EndAtOnce(kExitCode);
}

}  // namespace quib
