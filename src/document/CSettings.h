// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The settings store: values by section and name, each a text or an integer; a value of one kind is not
// there for a reader of the other. One ini file, shared with nobody but other runs of the program.
// User-interface thread.

#include <QRect>
#include <QSettings>
#include <QString>

namespace quib {

// Sections of the store.
inline constexpr const char* kSettingsSection = "Settings";
inline constexpr const char* kWindowsSection = "Windows";
inline constexpr const char* kRecentFilesSection = "RecentFiles";
inline constexpr const char* kAudioSection = "AudioSettings";
inline constexpr const char* kTimeSignatureSection = "TimeSignatureSettings";

class CSettings {
public:
    // A missing file is made with the first value.
    explicit CSettings(const QString& file = DefaultFile());

    // QUIBSequencer/settings.ini in the user's folder for settings.
    static QString DefaultFile();
    QString File() const { return store.fileName(); }

    // Empty when there is no such text.
    QString ReadSettingString(const QString& section, const QString& name) const;
    void WriteSettingString(const QString& section, const QString& name, const QString& text);
    // `missing` when there is no such integer.
    int ReadSettingInt(const QString& section, const QString& name, int missing) const;
    void WriteSettingInt(const QString& section, const QString& name, int value);
    void DeleteSettingSection(const QString& section);

    // A flag of section "Settings"; on only when its value is exactly 1.
    bool IsOn(const QString& name) const { return ReadSettingInt(kSettingsSection, name, 0) == 1; }
    void SetOn(const QString& name, bool on) { WriteSettingInt(kSettingsSection, name, on ? 1 : 0); }

    // The placement kept under `name`, limited to the screen (see ClampPlacement). `missing`
    // stands in for values that are not kept.
    QRect ReadWindowPlacement(const QString& name, const QRect& missing) const;
    void WriteWindowPlacement(const QString& name, const QRect& placement);

    // At least 100 pixels and at most the screen on each side, and 40 pixels of it on the screen.
    static QRect ClampPlacement(const QRect& wanted, const QSize& screen);
    // A rectangle of this size in the middle of the screen.
    static QRect Centred(const QSize& size, const QSize& screen);
    static QSize ScreenSize();

    // Writes everything to disk now; what is not flushed follows within moments.
    void Flush() { store.sync(); }

private:
    QSettings store;
};

}  // namespace quib
