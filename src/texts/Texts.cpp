// SPDX-License-Identifier: GPL-3.0-or-later
#include "texts/Texts.h"

#include <QHash>

#include "texts/FrenchTexts.h"

namespace quib {

namespace {

ELanguage chosen = ELanguage::kEnglish;

const QHash<QByteArray, const char*>& French() {
    static const QHash<QByteArray, const char*> table = [] {
        QHash<QByteArray, const char*> texts;
        for (const FrenchText& entry : kFrenchTexts) texts.insert(entry.english, entry.french);
        return texts;
    }();
    return table;
}

}  // namespace

void SetLanguage(ELanguage language) { chosen = language; }

ELanguage Language() { return chosen; }

QString Text(const char* english) {
    if (chosen == ELanguage::kFrench) {
        if (const char* const french = French().value(english)) return QString::fromUtf8(french);
    }
    return QString::fromUtf8(english);
}

}  // namespace quib
