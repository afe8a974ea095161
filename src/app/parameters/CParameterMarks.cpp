// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/parameters/CParameterMarks.h"

#include <QStringList>

#include "document/CSettings.h"

namespace quib {

namespace {
constexpr const char* kSection = "ParameterMarks";
}

CParameterMarks::CParameterMarks(CSettings& store, const std::string& identity)
    : settings(store),
      name(QString::fromStdString(identity).replace(QLatin1Char(':'), QLatin1Char('-'))),
      favourites(Read(EMark::kFavourite)),
      kept(Read(EMark::kKept)) {}

QString CParameterMarks::Key(EMark mark) const {
    return name + (mark == EMark::kFavourite ? QLatin1String("-favourites") : QLatin1String("-kept"));
}

std::set<int> CParameterMarks::Read(EMark mark) const {
    std::set<int> found;
    const QStringList numbers =
        settings.ReadSettingString(QLatin1String(kSection), Key(mark)).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString& number : numbers) found.insert(number.toInt());
    return found;
}

void CParameterMarks::Set(EMark mark, int parameter, bool on) {
    std::set<int>& marked = mark == EMark::kFavourite ? favourites : kept;
    on ? (void)marked.insert(parameter) : (void)marked.erase(parameter);
    QStringList numbers;
    for (const int one : marked) numbers.append(QString::number(one));
    settings.WriteSettingString(QLatin1String(kSection), Key(mark), numbers.join(QLatin1Char(' ')));
}

}  // namespace quib
