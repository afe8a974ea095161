// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CShortcutsPage.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "texts/Texts.h"

namespace quib {

namespace {

constexpr QSize kFirstSize{560, 600};

bool HasWords(const QString& text, const QStringList& words) {
    return std::ranges::all_of(words, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

}  // namespace

CShortcutsPage::CShortcutsPage(QWidget* parent)
    : QDialog(parent), field(new QLineEdit(this)), list(new QTreeWidget(this)) {
    setObjectName(QStringLiteral("shortcuts"));
    resize(kFirstSize);
    field->setClearButtonEnabled(true);
    list->setColumnCount(2);
    list->setRootIsDecorated(false);
    list->setIndentation(12);
    list->setSelectionMode(QAbstractItemView::NoSelection);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    list->header()->setStretchLastSection(false);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(field);
    layout->addWidget(list);
    layout->addWidget(buttons);
    connect(field, &QLineEdit::textChanged, this, &CShortcutsPage::Search);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
}

void CShortcutsPage::Show(const std::vector<ShortcutSection>& sections) {
    setWindowTitle(Text("Keyboard shortcuts"));
    field->setPlaceholderText(Text("Search a command or a key"));
    field->setAccessibleName(field->placeholderText());
    list->setAccessibleName(windowTitle());
    list->setHeaderLabels({Text("Command"), Text("Key")});
    list->clear();
    for (const ShortcutSection& section : sections) {
        auto* const heading = new QTreeWidgetItem(list, {section.title});
        QFont strong = list->font();
        strong.setBold(true);
        heading->setFont(0, strong);
        for (const ShortcutRow& row : section.rows) new QTreeWidgetItem(heading, {row.command, row.keys});
    }
    list->expandAll();
    Search(field->text());
    field->setFocus();
    field->selectAll();
    show();
    raise();
    activateWindow();
}

void CShortcutsPage::Search(const QString& words) {
    const QStringList wanted = words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int section = 0; section < list->topLevelItemCount(); ++section) {
        QTreeWidgetItem* const heading = list->topLevelItem(section);
        bool shown = false;
        for (int row = 0; row < heading->childCount(); ++row) {
            QTreeWidgetItem* const item = heading->child(row);
            const bool matches = HasWords(
                heading->text(0) + QLatin1Char(' ') + item->text(0) + QLatin1Char(' ') + item->text(1), wanted);
            item->setHidden(!matches);
            shown = shown || matches;
        }
        heading->setHidden(!shown);
    }
}

}  // namespace quib
