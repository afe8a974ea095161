// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Look.h"

#include <QApplication>
#include <QLocale>
#include <QPalette>
#include <algorithm>
#include <array>

#include "app/CLookStyle.h"
#include "controls/CCanvas.h"
#include "document/CSettings.h"

namespace quib {

namespace {

constexpr int kFontHeight = 13;  // skin pixels
constexpr const char* kPaletteSetting = "Palette";

QPalette WidgetPalette() {
    constexpr std::array<std::pair<QPalette::ColorRole, const char*>, 12> kRoles = {
        {{QPalette::Window, "window"},
         {QPalette::Base, "well"},
         {QPalette::AlternateBase, "panel"},
         {QPalette::Button, "panelRaised"},
         {QPalette::ToolTipBase, "panelRaised"},
         {QPalette::Mid, "line"},
         {QPalette::Dark, "wellDeep"},
         {QPalette::Light, "edge"},
         {QPalette::Midlight, "panelRaised"},
         {QPalette::Highlight, "highlight"},
         {QPalette::PlaceholderText, "textDim"},
         {QPalette::Link, "mix"}}};
    QPalette palette;
    for (const auto& [role, name] : kRoles) palette.setColor(role, LookColour(name));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::BrightText, QPalette::ToolTipText, QPalette::HighlightedText}) {
        palette.setColor(role, LookColour("text"));
        palette.setColor(QPalette::Disabled, role, LookColour("textOff"));
    }
    return palette;
}

}  // namespace

QColor LookColour(const char* name) { return QColor::fromRgb(Colour(name)); }

void ApplyLook(int scale) {
    QApplication::setStyle(new CLookStyle);
    QApplication::setPalette(WidgetPalette());
    QApplication::setFont(SkinFont(kFontHeight * scale / 100));
}

void KeepFirstLanguage(CSettings& settings) {
    const QString english = QStringLiteral("DisplayInfoMessagesEnglish");
    const QString french = QStringLiteral("DisplayInfoMessagesFrench");
    constexpr int kMissing = -1;
    if (settings.ReadSettingInt(kSettingsSection, english, kMissing) != kMissing ||
        settings.ReadSettingInt(kSettingsSection, french, kMissing) != kMissing) {
        return;
    }
    const bool isFrench = QLocale::system().language() == QLocale::French;
    settings.SetOn(english, !isFrench);
    settings.SetOn(french, isFrench);
    if (isFrench) settings.WriteSettingInt(kSettingsSection, QStringLiteral("French"), 1);
}

ELanguage ChosenLanguage(const CSettings& settings) {
    const bool english = settings.IsOn(QStringLiteral("DisplayInfoMessagesEnglish"));
    const bool french = settings.IsOn(QStringLiteral("DisplayInfoMessagesFrench"));
    return french && !english ? ELanguage::kFrench : ELanguage::kEnglish;
}

EPalette StoredPalette(const CSettings& settings) {
    const int stored = settings.ReadSettingInt(kSettingsSection, QLatin1String(kPaletteSetting), 0);
    return stored > 0 && stored < kPaletteCount ? static_cast<EPalette>(stored) : EPalette::kDark;
}

void StorePalette(CSettings& settings, EPalette palette) {
    settings.WriteSettingInt(kSettingsSection, QLatin1String(kPaletteSetting), static_cast<int>(palette));
}

int LargestScale(const QSize& least, const QSize& screen) noexcept {
    const int across = screen.width() * 100 / std::max(1, least.width());
    const int down = screen.height() * 100 / std::max(1, least.height());
    return std::clamp(std::min(across, down), 75, 300);
}

QPoint PlaceBeside(const QSize& window, const QRect& anchor, const QRect& bars, const QRect& screen) noexcept {
    constexpr int kGap = 8;  // pixels
    const auto inside = [&](int x, int y) {
        return QPoint(std::clamp(x, screen.left(), std::max(screen.left(), screen.right() + 1 - window.width())),
                      std::clamp(y, screen.top(), std::max(screen.top(), screen.bottom() + 1 - window.height())));
    };
    const std::array<QPoint, 4> beside = {
        inside(anchor.left(), anchor.bottom() + 1 + kGap), inside(anchor.left(), anchor.top() - kGap - window.height()),
        inside(anchor.right() + 1 + kGap, anchor.top()), inside(anchor.left() - kGap - window.width(), anchor.top())};
    for (const QPoint& place : beside) {
        const QRect taken(place, window);
        if (!taken.intersects(bars) && !taken.intersects(anchor)) return place;
    }
    // As far below the bars as there is room for, at the right: names and levels are at the left.
    return inside(screen.right() + 1 - window.width(), bars.bottom() + 1 + kGap);
}

}  // namespace quib
