// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the user did with plug-ins so far: favourites, how often and how lately each was loaded. Kept in the
// settings by format, id and file, whatever folder the file lies in. User-interface thread.

#include <QHash>
#include <QString>

namespace quib {

class CSettings;
struct PluginEntry;

class CPluginUse {
public:
    explicit CPluginUse(CSettings& store);

    bool IsFavourite(const PluginEntry& entry) const { return Of(entry).favourite; }
    void SetFavourite(const PluginEntry& entry, bool favourite);
    // Of loadings, by the user's own hand.
    int Count(const PluginEntry& entry) const { return Of(entry).count; }
    // Grows with each loading of any plug-in; 0: never.
    int Last(const PluginEntry& entry) const { return Of(entry).last; }
    void Loaded(const PluginEntry& entry);

private:
    struct Use {
        int count = 0;
        int last = 0;
        bool favourite = false;
    };
    static QString Key(const PluginEntry& entry);
    Use Of(const PluginEntry& entry) const { return uses.value(Key(entry)); }
    void Keep();

    CSettings& settings;
    QHash<QString, Use> uses;
    int newest = 0;
};

}  // namespace quib
