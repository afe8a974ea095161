// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the start does about a crash before it, the countdown to the next backup, and the placements of
// the windows. User-interface thread.

#include <cstdint>

#include "document/CSettings.h"

namespace quib {

constexpr int kTicksPerMinute = 1500;  // of 40 ms
constexpr int kDefaultBackupMinutes = 2;

// Ticks until the backup is written. A negative one never comes.
class CBackupCountdown {
public:
    void Start(int minutes) noexcept {
        ticks = static_cast<std::int32_t>(static_cast<std::int64_t>(minutes) * kTicksPerMinute);
    }
    // One tick; true when the backup is due. The caller then starts it anew.
    bool Tick() noexcept {
        if (ticks > 0) --ticks;
        return ticks == 0;
    }
    std::int32_t Ticks() const noexcept { return ticks; }

private:
    std::int32_t ticks = 0;
};

inline int BackupMinutes(const CSettings& settings) {
    return settings.ReadSettingInt(kSettingsSection, QStringLiteral("BackupTime"), kDefaultBackupMinutes);
}

enum class EStartProject { kEmpty, kCurrent, kAsk };

// Which project a start begins with, from the marks that the last run left: `errorClosed`: it ended while
// it loaded its project; `backupClosed`: it ended as it should.
EStartProject ChooseStartProject(int errorClosed, int backupClosed, std::int32_t backupTicks) noexcept;

// Marks the run as begun, and gives what the last one left.
struct CrashMarks {
    int errorClosed = 0;
    int backupClosed = 1;
};
CrashMarks MarkStart(CSettings& settings);
void MarkLoaded(CSettings& settings);
void MarkEnd(CSettings& settings);
// Puts marks back that a start has found.
void SetMarks(CSettings& settings, const CrashMarks& marks);

// Reads the placements of the tool windows and keeps them, limited to the screen.
void PrepareToolPlacements(CSettings& settings);
// The main window's, at least 977 x 300.
QRect MainPlacement(const CSettings& settings);

}  // namespace quib
