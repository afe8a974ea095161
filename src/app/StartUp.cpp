// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"

#include <algorithm>

#include "editors/ToolTable.h"

namespace quib {

namespace {

constexpr int kMainWidth = 977;
constexpr int kMainHeight = 300;
constexpr const char* kErrorClosed = "ErrorClosed";
constexpr const char* kBackupClosed = "BackupClosed";

}  // namespace

EStartProject ChooseStartProject(int errorClosed, int backupClosed, std::int32_t backupTicks) noexcept {
    if (errorClosed != 0) return EStartProject::kEmpty;
    if (backupClosed != 0 || backupTicks <= 0) return EStartProject::kCurrent;
    return EStartProject::kAsk;
}

CrashMarks MarkStart(CSettings& settings) {
    CrashMarks marks;
    marks.errorClosed = settings.ReadSettingInt(kSettingsSection, QLatin1String(kErrorClosed), 0);
    settings.WriteSettingInt(kSettingsSection, QLatin1String(kErrorClosed), 1);
    marks.backupClosed = settings.ReadSettingInt(kSettingsSection, QLatin1String(kBackupClosed), 1);
    settings.WriteSettingInt(kSettingsSection, QLatin1String(kBackupClosed), 0);
    settings.Flush();
    return marks;
}

void MarkLoaded(CSettings& settings) {
    settings.WriteSettingInt(kSettingsSection, QLatin1String(kErrorClosed), 0);
    settings.Flush();
}

void MarkEnd(CSettings& settings) {
    settings.WriteSettingInt(kSettingsSection, QLatin1String(kBackupClosed), 1);
    settings.Flush();
}

void SetMarks(CSettings& settings, const CrashMarks& marks) {
    settings.WriteSettingInt(kSettingsSection, QLatin1String(kErrorClosed), marks.errorClosed);
    settings.WriteSettingInt(kSettingsSection, QLatin1String(kBackupClosed), marks.backupClosed);
    settings.Flush();
}

void PrepareToolPlacements(CSettings& settings) {
    for (const ToolRow& row : ToolTable()) {
        const QString name = QLatin1String(row.placement);
        QRect placement = settings.ReadWindowPlacement(name, CSettings::Centred(row.size, CSettings::ScreenSize()));
        if (row.fixedWidth) placement.setWidth(row.size.width());
        if (row.fixedHeight) placement.setHeight(row.size.height());
        settings.WriteWindowPlacement(name, placement);
    }
}

QRect MainPlacement(const CSettings& settings) {
    const QSize screen = CSettings::ScreenSize();
    const QSize usual(std::min(screen.width(), 1280), std::min(screen.height(), 720));
    QRect placement = settings.ReadWindowPlacement(QStringLiteral("Main"), CSettings::Centred(usual, screen));
    placement.setWidth(std::max(placement.width(), kMainWidth));
    placement.setHeight(std::max(placement.height(), kMainHeight));
    return placement;
}

}  // namespace quib
