// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The settings that controls ask for; the application's settings store implements it.

#include "texts/Language.h"

namespace quib {

class CControlSettings {
public:
    virtual ~CControlSettings() = default;
    // The stored integer, or `fallback` when there is none.
    virtual int ReadSettingInt(const char* section, const char* name, int fallback) const = 0;
};

// The language of the info texts: English when it is chosen or nothing is, else French.
inline ELanguage InfoLanguage(const CControlSettings& settings) {
    if (settings.ReadSettingInt("Settings", "DisplayInfoMessagesEnglish", 1) == 1) return ELanguage::kEnglish;
    const bool french = settings.ReadSettingInt("Settings", "DisplayInfoMessagesFrench", 1) == 1;
    return french ? ELanguage::kFrench : ELanguage::kEnglish;
}

// Whether one of the two info settings is on; `fallback` counts for one that is not stored.
inline bool InfoTextsAreShown(const CControlSettings& settings, int fallback) {
    return settings.ReadSettingInt("Settings", "DisplayInfoMessagesEnglish", fallback) != 0 ||
           settings.ReadSettingInt("Settings", "DisplayInfoMessagesFrench", fallback) != 0;
}

}  // namespace quib
