// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The lessons of the tutorial: what to do, with which control, and how the state of the program shows that it was
// done. Plain values, user-interface thread.

#include <QDateTime>
#include <span>

#include "document/CWorkstation.h"

namespace quib {

// What the steps look at, counted now.
struct TutorialState {
    int instruments = 0;
    int notes = 0;             // of all patterns
    int notesOfCurrent = 0;    // of the current instrument
    int automationPoints = 0;  // of the settings of all strips
    bool playing = false;
    bool songMode = false;
    bool songHasItems = false;
    bool automationArmed = false;
    bool exportOpen = false;
    QDateTime newestExport;
};
TutorialState ReadTutorialState(CWorkstation& station);

// What a step points at: the help number of a control, or one of these.
enum ETutorialTarget : int { kNoTarget = 0, kExampleCard = -1, kNewBeatButton = -2 };

struct TutorialStep {
    const char* text;
    int target;
    bool (*isDone)(const TutorialState& now, const TutorialState& before);
};

// What a lesson begins with: what it lacks is made for it, and what is in its way goes.
enum class ELessonGround { kEmpty, kBeat, kBeatWithoutSong, kSong };

struct TutorialLesson {
    const char* title;
    ELessonGround ground;
    std::span<const TutorialStep> steps;
};
std::span<const TutorialLesson> TutorialLessons();

// False, with the reason, when the drum machine could not be loaded.
bool PrepareGround(CWorkstation& station, ELessonGround ground, QString& error);

}  // namespace quib
