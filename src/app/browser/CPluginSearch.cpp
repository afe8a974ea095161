// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/browser/CPluginSearch.h"

#include <QFileInfo>
#include <algorithm>
#include <tuple>

namespace quib {

namespace {

constexpr int kNotFound = 4;

bool BeginsAWord(const QString& text, const QString& word) {
    for (qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(word, at + 1, Qt::CaseInsensitive)) {
        if (at == 0 || !text[at - 1].isLetterOrNumber()) return true;
    }
    return false;
}

// 0: the name begins so; 1: a word of it does; 2: the name contains it; 3: maker or category.
int RankOf(const QString& word, const QString& name, const QString& others) {
    if (name.startsWith(word, Qt::CaseInsensitive)) return 0;
    if (BeginsAWord(name, word)) return 1;
    if (name.contains(word, Qt::CaseInsensitive)) return 2;
    return others.contains(word, Qt::CaseInsensitive) ? 3 : kNotFound;
}

int RankOf(const QStringList& words, const QString& name, const QString& others) {
    int worst = 0;
    for (const QString& word : words) worst = std::max(worst, RankOf(word, name, others));
    return worst;
}

}  // namespace

QStringList PluginFilter::Words() const { return text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts); }

void CPluginSearch::SetPlugins(QList<PluginChoice> offered, QList<PluginEntry> unreadable) {
    all.clear();
    for (PluginChoice& choice : offered) {
        const QString key = choice.entry.path + choice.entry.name;
        if (!categories.contains(key)) categories.insert(key, CategoryOf(choice.entry));
        const EPluginCategory category = categories.value(key);
        all.append({std::move(choice), category});
    }
    allFailed = std::move(unreadable);
}

bool CPluginSearch::IsOn(const Listed& listed, EShelf shelf) const {
    const PluginEntry& entry = listed.choice.entry;
    switch (shelf) {
        case EShelf::kAll:
            return true;
        case EShelf::kFavourites:
            return use.IsFavourite(entry);
        case EShelf::kRecent:
        case EShelf::kMostUsed:
            return use.Count(entry) > 0;
        case EShelf::kFailed:
            return false;
        default:
            return static_cast<int>(listed.category) ==
                   static_cast<int>(shelf) - static_cast<int>(EShelf::kFirstCategory);
    }
}

void CPluginSearch::Find(const PluginFilter& filter) {
    struct Hit {
        const Listed* listed;
        int rank;
    };
    const QStringList words = filter.Words();
    QList<Hit> hits;
    counts.clear();
    for (const Listed& listed : all) {
        const PluginEntry& entry = listed.choice.entry;
        if (!filter.maker.isEmpty() && entry.vendor != filter.maker) continue;
        const int rank = RankOf(words, entry.name, entry.vendor + QLatin1Char('\n') + CategoryName(listed.category));
        if (rank == kNotFound) continue;
        for (int shelf = 0; shelf < static_cast<int>(EShelf::kFirstCategory) + kPluginCategoryCount; ++shelf) {
            if (IsOn(listed, static_cast<EShelf>(shelf))) ++counts[shelf];
        }
        if (IsOn(listed, filter.shelf)) hits.append({&listed, rank});
    }
    // Two shelves are orders of their own.
    EPluginOrder order = filter.order;
    if (filter.shelf == EShelf::kMostUsed) order = EPluginOrder::kMostUsed;
    const bool byTime = filter.shelf == EShelf::kRecent;
    const auto keyOf = [&](const Hit& hit) {
        const PluginEntry& entry = hit.listed->choice.entry;
        const bool best = order == EPluginOrder::kBest;
        const qint64 number = byTime                             ? -use.Last(entry)
                              : order == EPluginOrder::kMostUsed ? -use.Count(entry)
                              : order == EPluginOrder::kNewest   ? -entry.changed
                              : best                             ? !hit.listed->choice.isBuiltIn
                                                                 : 0;
        return std::make_tuple(number, best ? hit.rank : 0, best ? !use.IsFavourite(entry) : false,
                               order == EPluginOrder::kMaker ? entry.vendor.toCaseFolded() : QString(),
                               entry.name.toCaseFolded());
    };
    std::stable_sort(hits.begin(), hits.end(), [&](const Hit& a, const Hit& b) { return keyOf(a) < keyOf(b); });
    found.clear();
    for (const Hit& hit : hits) found.append(hit.listed->choice);
    failed.clear();
    for (const PluginEntry& entry : allFailed) {
        const bool fits =
            filter.maker.isEmpty() && RankOf(words, QFileInfo(entry.path).fileName(), entry.name) < kNotFound;
        if (!fits) continue;
        ++counts[static_cast<int>(EShelf::kFailed)];
        if (filter.shelf == EShelf::kAll || filter.shelf == EShelf::kFailed) failed.append(entry);
    }
}

QStringList CPluginSearch::Makers() const {
    QStringList makers;
    for (const Listed& listed : all) {
        if (!listed.choice.entry.vendor.isEmpty()) makers.append(listed.choice.entry.vendor);
    }
    makers.removeDuplicates();
    makers.sort(Qt::CaseInsensitive);
    return makers;
}

}  // namespace quib
