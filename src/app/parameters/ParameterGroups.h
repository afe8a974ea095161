// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How a plug-in's parameters are sorted into groups: by what the plug-in calls them, else by the words with which
// several names begin, else in blocks. Pure functions, any thread.

#include <QString>
#include <QStringList>
#include <vector>

namespace quib {

struct ParameterGroup {
    QString title;  // empty: those that belong nowhere
    std::vector<int> members;
};

struct GroupedParameters {
    std::vector<ParameterGroup> groups;  // in the order of their first members
    QStringList labels;                  // of each parameter: its name without what the title says already
};

// Those that belong nowhere, in blocks of at most so many.
inline constexpr int kParameterBlock = 16;

// `categories`: of each parameter, empty where the plug-in tells none.
GroupedParameters GroupParameters(const QStringList& names, const QStringList& categories);

// Whether a value's text is one of a switch, such as "Off".
bool ReadsAsSwitch(const QString& text);

}  // namespace quib
