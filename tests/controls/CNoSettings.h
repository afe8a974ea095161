// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Controls as a user has them who never changed a setting.

#include "controls/ControlSettings.h"

namespace quib {

class CNoSettings : public CControlSettings {
public:
    int ReadSettingInt(const char* /*section*/, const char* /*name*/, int fallback) const override { return fallback; }
};

}  // namespace quib
