// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/StartUp.h"

#include <algorithm>

namespace quib {

namespace {

constexpr int kMainWidth = 977;
constexpr int kMainHeight = 300;
constexpr const char* kErrorClosed = "ErrorClosed";
constexpr const char* kBackupClosed = "BackupClosed";

struct ToolWindow {
    const char* name;
    QSize size;
    bool fixedWidth;
    bool fixedHeight;
};

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

void PrepareToolPlacements(CSettings& settings) {
    static constexpr ToolWindow windows[] = {{"PianoRoll", {900, 600}, false, false},
                                             {"ParamEvent", {900, 500}, false, false},
                                             {"Arpeggiator", {270, 150}, true, true},
                                             {"Ball", {445, 436}, true, false},
                                             {"Tutorial", {640, 580}, true, true}};
    for (const ToolWindow& window : windows) {
        const QString name = QLatin1String(window.name);
        const QRect missing = CSettings::Centred(window.size, CSettings::ScreenSize());
        QRect placement = settings.ReadWindowPlacement(name, missing);
        if (window.fixedWidth) placement.setWidth(window.size.width());
        if (window.fixedHeight) placement.setHeight(window.size.height());
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
