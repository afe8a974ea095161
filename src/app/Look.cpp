// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Look.h"

#include <QApplication>
#include <QLocale>
#include <QPalette>
#include <QProxyStyle>

#include "controls/CCanvas.h"
#include "document/CSettings.h"

namespace quib {

namespace {

constexpr QRgb kBackground = 0xff303030;
constexpr QRgb kField = 0xff282828;
constexpr QRgb kRaised = 0xff383838;
constexpr QRgb kLine = 0xff404040;
constexpr QRgb kText = 0xfffafafa;
constexpr QRgb kDim = 0xff8a8a8a;
constexpr QRgb kAccent = 0xff3d7ea6;
constexpr int kFontHeight = 13;  // skin pixels

// Buttons of dialogs without little pictures.
class CPlainStyle : public QProxyStyle {
public:
    CPlainStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QPalette DarkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, kBackground);
    palette.setColor(QPalette::Base, kField);
    palette.setColor(QPalette::AlternateBase, kRaised);
    palette.setColor(QPalette::Button, kRaised);
    palette.setColor(QPalette::ToolTipBase, kRaised);
    palette.setColor(QPalette::Mid, kLine);
    palette.setColor(QPalette::Dark, 0xff202020);
    palette.setColor(QPalette::Light, 0xff505050);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::BrightText, QPalette::ToolTipText, QPalette::HighlightedText}) {
        palette.setColor(role, kText);
        palette.setColor(QPalette::Disabled, role, kDim);
    }
    palette.setColor(QPalette::PlaceholderText, kDim);
    palette.setColor(QPalette::Highlight, kAccent);
    palette.setColor(QPalette::Link, 0xff6fb7e0);
    return palette;
}

}  // namespace

void ApplyLook(int scale) {
    QApplication::setStyle(new CPlainStyle);
    QApplication::setPalette(DarkPalette());
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

}  // namespace quib
