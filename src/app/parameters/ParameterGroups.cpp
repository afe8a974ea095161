// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/parameters/ParameterGroups.h"

#include <QHash>
#include <QRegularExpression>
#include <algorithm>

namespace quib {

namespace {

// The beginnings of a name that end before a further word, shortest first.
QStringList Beginnings(const QString& name, const QRegularExpression& gap) {
    QStringList found;
    auto matches = gap.globalMatch(name);
    while (matches.hasNext()) {
        const auto match = matches.next();
        if (match.capturedStart() > 0 && match.capturedEnd() < name.size())
            found.append(name.left(match.capturedStart()));
    }
    return found;
}

// The longest beginning that enough names share. Two are enough only where no more do: "Amp Env Attack Time" and
// "Amp Env Attack Curve" belong to "Amp Env" when there is more of that.
QString TitleFor(const QStringList& beginnings, const QHash<QString, int>& shared) {
    for (const int enough : {3, 2}) {
        for (auto beginning = beginnings.crbegin(); beginning != beginnings.crend(); ++beginning) {
            if (shared.value(*beginning) >= enough) return *beginning;
        }
    }
    return {};
}

}  // namespace

GroupedParameters GroupParameters(const QStringList& names, const QStringList& categories) {
    const QRegularExpression gap(QStringLiteral("[ _:/.>-]+"));
    QHash<QString, int> shared;
    std::vector<QStringList> beginnings;
    for (qsizetype index = 0; index < names.size(); ++index) {
        beginnings.push_back(categories[index].isEmpty() ? Beginnings(names[index], gap) : QStringList());
        for (const QString& beginning : beginnings.back()) ++shared[beginning];
    }
    GroupedParameters found;
    for (qsizetype index = 0; index < names.size(); ++index) {
        const bool told = !categories[index].isEmpty();
        const QString title = told ? categories[index] : TitleFor(beginnings[static_cast<std::size_t>(index)], shared);
        QString label = names[index];
        if (!title.isEmpty() && label.startsWith(title)) {
            const auto rest = gap.match(label, title.size());
            if (rest.capturedStart() == title.size() && rest.capturedEnd() < label.size())
                label = label.mid(rest.capturedEnd());
        }
        found.labels.append(label);
        const auto group = std::find_if(found.groups.begin(), found.groups.end(), [&title](const auto& one) {
            return one.title == title && (!title.isEmpty() || one.members.size() < kParameterBlock);
        });
        if (group != found.groups.end()) {
            group->members.push_back(static_cast<int>(index));
        } else {
            found.groups.push_back({title, {static_cast<int>(index)}});
        }
    }
    return found;
}

bool ReadsAsSwitch(const QString& text) {
    for (const char* const word : {"on", "off", "yes", "no", "true", "false"}) {
        if (text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0) return true;
    }
    return false;
}

}  // namespace quib
