// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ProgramNames.h"

#include <algorithm>

#include "model/plugin/CPlugin.h"

namespace quib {

namespace {
constexpr int kMostPrograms = 4096;
}

QStringList ProgramNames(CPlugin& plugin) {
    QStringList names;
    const int count = std::min(plugin.ProgramCount(), kMostPrograms);
    for (int program = 0; program < count; ++program) {
        const QString name = QString::fromStdString(plugin.ProgramName(program)).trimmed();
        const QString number = QString::number(program + 1);
        names += name.isEmpty() ? number : number + QStringLiteral("  ") + name;
    }
    return names;
}

}  // namespace quib
