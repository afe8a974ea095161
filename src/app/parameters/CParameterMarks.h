// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the user has marked of a kind of plug-in: favourites among its parameters, and those that a sound by lot leaves
// alone. Kept in the settings by the plug-in's identity. User-interface thread.

#include <QString>
#include <set>

namespace quib {

class CSettings;

class CParameterMarks {
public:
    enum class EMark { kFavourite, kKept };

    CParameterMarks(CSettings& store, const std::string& identity);

    bool Has(EMark mark, int parameter) const { return Of(mark).contains(parameter); }
    void Set(EMark mark, int parameter, bool on);
    const std::set<int>& Favourites() const noexcept { return favourites; }

private:
    const std::set<int>& Of(EMark mark) const { return mark == EMark::kFavourite ? favourites : kept; }
    QString Key(EMark mark) const;
    std::set<int> Read(EMark mark) const;

    CSettings& settings;
    QString name;
    std::set<int> favourites;
    std::set<int> kept;
};

}  // namespace quib
