// SPDX-License-Identifier: GPL-3.0-or-later
// The whole window without a mouse: its keys, its menus, the entries of values.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QSet>
#include <QTest>
#include <QTreeWidget>

#include "app/AppFixture.h"
#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/CShortcutsPage.h"
#include "app/Commands.h"
#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CWinControlMain.h"
#include "app/console/MakeConsole.h"
#include "controls/Mnemonics.h"
#include "engine/strip/CLevelTables.h"
#include "texts/Texts.h"

namespace quib {
namespace {

class KeysTest : public AppTest {
protected:
    KeysTest() : catalog(QStringLiteral(QUIB_BIN_DIR "/quib-scan"), File("catalog.json")) {
        AddSynth();
        window = std::make_unique<CMainWindow>(*workstation, catalog, MakeConsole);
        console = window->findChild<CWinControlMain*>();
        window->ApplySettings();
        window->resize(1366, 740);
        window->show();
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        console->setFocus();
    }
    ~KeysTest() override { SetLanguage(ELanguage::kEnglish); }

    CControl& Find(const char* name) {
        for (const auto& child : console->Strip(0)->Children()) {
            if (child->name == QLatin1String(name) && child->Value() != nullptr) return *child;
        }
        ADD_FAILURE() << name;
        return *console->Strip(0);
    }
    // Opens the entry of a control; gives what it shows and puts `typed` there.
    std::string Enter(CControl& control, const char* typed) {
        console->RunManualEntry(control);
        auto* const dialog = console->findChild<QDialog*>();
        auto* const field = dialog->findChild<QLineEdit*>();
        const std::string before = field->text().toStdString();
        if (typed != nullptr) field->setText(QLatin1String(typed));
        dialog->accept();
        delete dialog;
        return before;
    }

    CPluginCatalog catalog;
    std::unique_ptr<CMainWindow> window;
    CWinControlMain* console = nullptr;
    CLevelTables tables;
};

void ListActions(const QList<QAction*>& actions, std::vector<QAction*>& all) {
    QSet<QString> letters;
    for (QAction* const action : actions) {
        if (action->isSeparator()) continue;
        const QString letter = MnemonicOf(action->text());
        EXPECT_FALSE(letter.isEmpty()) << action->text().toStdString();
        EXPECT_FALSE(letters.contains(letter)) << action->text().toStdString();
        letters.insert(letter);
        if (action->menu() != nullptr) {
            Q_EMIT action->menu()->aboutToShow();
            ListActions(action->menu()->actions(), all);
        } else {
            all.push_back(action);
        }
    }
}

TEST_F(KeysTest, EveryMenuEntryHasALetterOfItsOwnAndNoKeyRunsTwoCommandsInEitherLanguage) {
    for (const int language : {command::kInfoEnglish, command::kInfoFrench, command::kInfoFrench}) {
        window->Run(language);
        QCoreApplication::processEvents();
        std::vector<QAction*> all;
        ListActions(window->menuBar()->actions(), all);
        std::map<QString, std::string> owners;
        for (const QAction* const action : all) {
            for (const QKeySequence& key : action->shortcuts()) {
                if (!action->isEnabled()) continue;
                EXPECT_EQ(action->shortcutContext(), Qt::ApplicationShortcut) << action->text().toStdString();
                const auto [place, isNew] = owners.emplace(key.toString(), action->text().toStdString());
                EXPECT_TRUE(isNew) << key.toString().toStdString() << ": " << place->second << ", "
                                   << action->text().toStdString();
            }
        }
        for (const char* const key : {"Ctrl+N", "Ctrl+O", "Ctrl+S", "Ctrl+Shift+S", "Ctrl+Q", "Ctrl+Z", "Ctrl+Y", "F1",
                                      "F2", "F3", "F4", "F5", "F6", "F11", "Space"}) {
            EXPECT_TRUE(owners.contains(QLatin1String(key))) << key;
        }
    }
}

TEST_F(KeysTest, KeysWorkInToolWindowsAndThePageOfKeysIsThatOfTheMenusAndCanBeSearched) {
    window->OpenTool(ETool::kPianoRoll);
    QWidget* const roll = QApplication::activeWindow();
    ASSERT_NE(roll, window.get());
    QTest::keyClick(roll, Qt::Key_F1);
    auto* const page = window->findChild<CShortcutsPage*>();
    ASSERT_NE(page, nullptr);
    auto* const list = page->findChild<QTreeWidget*>();
    const auto shown = [&] {
        QStringList rows;
        for (int section = 0; section < list->topLevelItemCount(); ++section) {
            for (int row = 0; row < list->topLevelItem(section)->childCount(); ++row) {
                const QTreeWidgetItem* const item = list->topLevelItem(section)->child(row);
                if (!item->isHidden()) rows << item->text(0) + QLatin1Char('=') + item->text(1);
            }
        }
        return rows;
    };
    EXPECT_GT(shown().size(), 40);
    QTest::keyClicks(page->findChild<QLineEdit*>(), QStringLiteral("ctrl n"));
    EXPECT_EQ(shown(), QStringList{QStringLiteral("New=Ctrl+N")});
    page->hide();
    roll->activateWindow();
    QTest::keyClick(roll, Qt::Key_F11);
    EXPECT_TRUE(window->isFullScreen());
    QTest::keyClick(roll, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(workstation->Stack().Instruments().empty()) << "Ctrl+Z from a tool window";
}

TEST_F(KeysTest, EntriesShowAndTakeWhatTheirTitlesSay) {
    CControl& level = Find("Level");
    EXPECT_EQ(level.ValueText(), "-9.5 dB") << "as the help says of a new one";
    EXPECT_EQ(Enter(level, nullptr), "-9.5");
    EXPECT_FLOAT_EQ(level.ValueNow(), 73.67F) << "what is left as it is shown is not rounded";
    const auto decibels = [&] { return 20 * std::log10(tables.ChannelGain(level.ValueNow())); };
    for (const double wanted : {0.0, -3.2, -20.0}) {
        Enter(level, QByteArray::number(wanted).constData());
        EXPECT_NEAR(decibels(), wanted, 0.35);
    }
    Enter(level, "-inf");
    EXPECT_EQ(level.ValueNow(), 0);
    level.ReturnToDefault();
    EXPECT_EQ(level.ValueText(), "-9.5 dB");

    CControl& pan = Find("Pan");
    for (const auto& [typed, value] : {std::pair("L 20", -0.2F), {"r50", 0.5F}, {"-40", -0.4F}, {"C", 0.0F}}) {
        Enter(pan, typed);
        EXPECT_FLOAT_EQ(pan.ValueNow(), value) << typed;
    }
    CControl& swing = Find("Swing");
    Enter(swing, "25");
    EXPECT_FLOAT_EQ(swing.ValueNow(), 0.25F);
    EXPECT_EQ(Enter(swing, nullptr), "25");
}

}  // namespace
}  // namespace quib
