// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The settings store as controls ask it. User-interface thread.

#include "controls/ControlSettings.h"
#include "document/CSettings.h"

namespace quib {

class CSettingsForControls : public CControlSettings {
public:
    explicit CSettingsForControls(const CSettings& settings) : store(settings) {}
    int ReadSettingInt(const char* section, const char* name, int fallback) const override {
        return store.ReadSettingInt(QString::fromLatin1(section), QString::fromLatin1(name), fallback);
    }

private:
    const CSettings& store;
};

}  // namespace quib
