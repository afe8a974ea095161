// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Which plug-ins the browser lists for what was typed and chosen, and in which order. Without a window.
// User-interface thread.

#include "app/browser/CPluginUse.h"
#include "app/browser/PluginCategory.h"
#include "app/browser/PluginChoices.h"

namespace quib {

// A row of the rail. Categories follow: kFirstCategory + the number of the category.
enum class EShelf { kAll, kFavourites, kRecent, kMostUsed, kFailed, kFirstCategory };

enum class EPluginOrder { kBest, kName, kMaker, kMostUsed, kNewest };

struct PluginFilter {
    QString text;  // words; each has to be found in the name, the maker or the category
    EShelf shelf = EShelf::kAll;
    QString maker;  // empty: all
    EPluginOrder order = EPluginOrder::kBest;

    QStringList Words() const;
};

class CPluginSearch {
public:
    explicit CPluginSearch(const CPluginUse& pluginUse) : use(pluginUse) {}

    void SetPlugins(QList<PluginChoice> offered, QList<PluginEntry> unreadable);
    // Lists anew.
    void Find(const PluginFilter& filter);

    // What was found last, best first, and the unreadable ones among it.
    const QList<PluginChoice>& Found() const noexcept { return found; }
    const QList<PluginEntry>& Failed() const noexcept { return failed; }
    // What a row of the rail would list for the text and the maker of the last search.
    int Count(EShelf shelf) const { return counts.value(static_cast<int>(shelf)); }
    int Total() const noexcept { return static_cast<int>(all.size()); }
    EPluginCategory Category(const PluginChoice& choice) const {
        return categories.value(choice.entry.path + choice.entry.name);
    }
    // In the order of the alphabet.
    QStringList Makers() const;

private:
    struct Listed {
        PluginChoice choice;
        EPluginCategory category;
    };
    bool IsOn(const Listed& listed, EShelf shelf) const;

    const CPluginUse& use;
    QList<Listed> all;
    QList<PluginEntry> allFailed;
    QList<PluginChoice> found;
    QList<PluginEntry> failed;
    QHash<int, int> counts;
    QHash<QString, EPluginCategory> categories;  // of what was offered so far
};

}  // namespace quib
