// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

namespace quib {

class CSettings;

// A file that the user chooses, where the last one was; empty when there is none.
QString ChooseSoundFile(QWidget* parent, CSettings& settings);

}  // namespace quib
