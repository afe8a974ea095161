// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which panel a plug-in has. User-interface thread.

#include <QString>
#include <optional>

#include "editors/panel/PanelLayout.h"

namespace quib {

// The layout for the plug-in of that PluginIdentity::Key: the first that fits of the files "*.panel" of the
// user's folder, else the program's own. Nothing where there is none; files that cannot be read are told on
// standard error and passed over.
std::optional<PanelLayout> FindPanelLayout(const std::string& identity, const QString& userFolder);

}  // namespace quib
