// SPDX-License-Identifier: GPL-3.0-or-later
// The whole window without a mouse: its keys, its menus, the entries of values.
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QSet>
#include <QTest>
#include <QTreeWidget>
#include <set>

#include "app/CMainWindow.h"
#include "app/CPluginCatalog.h"
#include "app/CShortcutsPage.h"
#include "app/Commands.h"
#include "app/console/CInstrumentStripCtrl.h"
#include "app/console/CSongModeCtrl.h"
#include "app/console/CWinControlMain.h"
#include "app/console/MakeConsole.h"
#include "controls/Mnemonics.h"
#include "document/DocumentFixture.h"
#include "editors/automation/CWinControlParamEvent.h"
#include "editors/ball/CWinControlBall.h"
#include "editors/base/CToolWindow.h"
#include "editors/base/WindowKeys.h"
#include "engine/strip/CLevelTables.h"
#include "texts/Texts.h"

namespace quib {
namespace {

class KeysTest : public DocumentTest {
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
        const bool hasLetters = std::ranges::any_of(action->text(), [](QChar sign) { return sign.isLetter(); });
        EXPECT_TRUE(!letter.isEmpty() || !hasLetters) << action->text().toStdString();
        EXPECT_TRUE(letter.isEmpty() || !letters.contains(letter)) << action->text().toStdString();
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
                EXPECT_EQ(action->shortcutContext(), Qt::ApplicationShortcut) << action->text().toStdString();
                const auto [place, isNew] = owners.emplace(key.toString(), action->text().toStdString());
                EXPECT_TRUE(isNew || key.toString() == QLatin1String("Ctrl+S"))
                    << key.toString().toStdString() << ": " << place->second << ", " << action->text().toStdString();
            }
        }
        for (const char* const key : {"Ctrl+N", "Ctrl+O", "Ctrl+S", "Ctrl+Shift+S", "Ctrl+Q", "Ctrl+Z", "Ctrl+Y", "F1",
                                      "F2", "F3", "F4", "F5", "F6", "F11", "Space"}) {
            EXPECT_TRUE(owners.contains(QLatin1String(key))) << key;
        }
    }
}

TEST_F(KeysTest, KeysWorkInToolWindowsAndThePageOfKeysIsThatOfTheMenusAndCanBeSearched) {
    QWidget* const roll = window->Tools().Open(ETool::kPianoRoll);
    ASSERT_TRUE(QTest::qWaitForWindowActive(roll));
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
    QTest::keyClicks(page->findChild<QLineEdit*>(), QStringLiteral("ctrl+n"));
    EXPECT_EQ(shown(), QStringList{QStringLiteral("New=Ctrl+N")});
    page->hide();
    roll->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(roll));
    QTest::keyClick(roll, Qt::Key_F11);
    EXPECT_TRUE(window->isFullScreen());
    QTest::keyClick(roll, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(workstation->Stack().Instruments().empty()) << "Ctrl+Z from a tool window";
}

// Presses each key that the page of keys tells of a window: what is drawn, or the document, is another then.
void PressAll(
    QWidget& shown, QUndoStack& steps, const WindowKeys& keys, const std::function<void()>& prepare,
    const std::function<void()>& follow = [] {}) {
    const auto acts = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        prepare();
        QImage picture;
        QImage last(1, 1, QImage::Format_RGB32);
        for (int looks = 0; looks < 50 && picture != last; ++looks) {  // until all that was asked for is drawn
            QTest::qWait(20);
            follow();
            last = std::exchange(picture, shown.grab().toImage());
        }
        const int before = steps.index();
        QTest::keyClick(&shown, key, modifiers);
        QApplication::processEvents();
        follow();
        return steps.index() != before || shown.grab().toImage() != picture;
    };
    acts(Qt::Key_ScrollLock, {});  // what a window that has just opened draws
    EXPECT_FALSE(acts(Qt::Key_ScrollLock, {})) << "a key of nothing before " << keys.front().text;
    for (const WindowKey& row : keys) {
        Qt::Key key = row.key.key();
        if (row.kind == WindowKey::EKind::kLevel) key = Qt::Key_Right;
        if (key == Qt::Key_Tab && row.key.keyboardModifiers() == Qt::ShiftModifier) key = Qt::Key_Backtab;
        EXPECT_TRUE(acts(key, row.key.keyboardModifiers())) << row.text;
    }
}

TEST_F(KeysTest, EveryKeyThatThePageTellsOfAWindowActsInIt) {
    QUndoStack& steps = Steps();
    const std::uint32_t id = At(0)->Id();
    const auto pattern = std::make_shared<const CPattern>(
        16, std::vector<Note>{{0.3F, 1, 60, 90}, {1.3F, 2, 60, 90}, {4, 2, 64, 90}, {9, 2, 64, 90}});
    CToolWindow& roll = *window->Tools().Open(ETool::kPianoRoll);
    PressAll(roll, steps, PianoRollKeys(), [&] {
        Contents().SetPattern(id, 0, pattern, QStringLiteral("Notes"));
        roll.Edit(EEdit::kSelectAll);
    });

    auto& lanes = static_cast<CWinControlParamEvent&>(*window->Tools().Open(ETool::kAutomation));
    lanes.ChooseLane({ELaneGroup::kMix, 1});
    const QPoint corner = lanes.Curve().Rectangle().topLeft();
    for (const QPoint place : {QPoint(80, 80), QPoint(160, 120)})
        QTest::mouseClick(&lanes, Qt::LeftButton, {}, corner + place);
    PressAll(lanes, steps, AutomationKeys(), [&] { lanes.Edit(EEdit::kSelectAll); });

    auto& balls = static_cast<CWinControlBall&>(*window->Tools().Open(ETool::kBall));
    balls.AddBall();
    balls.AddBall();
    PressAll(balls, steps, BallPadKeys(),
             [&] { Contents().SetBallSounds(id, std::make_shared<const BallSoundList>(2), QStringLiteral("Balls")); });

    console->ShowSong(true, false);
    workstation->Audio().Prepare({44100.0, 256, 1, false});
    const auto follow = [&] {
        workstation->Audio().RenderBlock();
        console->FollowEngine();
    };
    const auto prepare = [&] {
        SetSongMode(*workstation, true);
        Contents().SetPlaylist(id, std::make_shared<const Playlist>(Playlist{{0, 0, 1}, {1, 64, 0}, {15, 128, 0}}),
                               QStringLiteral("Items"));
        workstation->Transport().Locate(32);
        follow();
        console->Edit(EEdit::kSelectAll);
    };
    PressAll(*console, steps, SongKeys(), prepare, follow);
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

// What the tree of names lacks: each shown control that a user can see or use.
void FindGaps(CWinControl& shown, std::vector<std::string>& gaps, int& found) {
    const std::function<void(QAccessibleInterface*)> walk = [&](QAccessibleInterface* entry) {
        ASSERT_NE(entry, nullptr);
        ++found;
        if (entry->text(QAccessible::Name).isEmpty() && entry->object() == nullptr) {
            const QRect place = entry->rect();
            gaps.push_back("role " + std::to_string(entry->role()) + " at " + std::to_string(place.x()) + "," +
                           std::to_string(place.y()));
        }
        for (int index = 0; index < entry->childCount(); ++index) {
            QAccessibleInterface* const child = entry->child(index);
            walk(child);
            if (child->object() == nullptr) {
                EXPECT_EQ(child->parent(), entry);
                EXPECT_EQ(entry->indexOfChild(child), index);
            }
        }
    };
    walk(QAccessible::queryAccessibleInterface(&shown));
}

TEST_F(KeysTest, TheTreeOfNamesHasNoGapInAnyWindow) {
    AddSynth();
    QApplication::processEvents();
    std::vector<std::string> gaps;
    int found = 0;
    FindGaps(*console, gaps, found);
    EXPECT_GT(found, 150);
    for (const ETool tool : {ETool::kPianoRoll, ETool::kAutomation, ETool::kArpeggiator, ETool::kBall}) {
        CToolWindow* const opened = window->Tools().Open(tool);
        QApplication::processEvents();
        gaps.push_back(opened->windowTitle().toStdString() + ":");
        const std::size_t before = gaps.size();
        FindGaps(*opened, gaps, found);
        if (gaps.size() == before) gaps.pop_back();
        opened->hide();
    }
    EXPECT_EQ(gaps, std::vector<std::string>());
}

TEST_F(KeysTest, AControlIsSpokenWithItsInstrumentNameAndValueAndCanBeMovedByItsInterface) {
    workstation->Stack().RenameInstrument(0, QStringLiteral("Kick"));
    QApplication::processEvents();
    CControl& level = Find("Level");
    QAccessibleInterface* const spoken = console->Spoken().InterfaceOf({&level, -1});
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Kick, Level, -9.5 dB"));
    EXPECT_EQ(spoken->role(), QAccessible::Slider);
    EXPECT_FALSE(spoken->text(QAccessible::Description).isEmpty());
    spoken->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_GT(level.ValueNow(), 73.67F);
    EXPECT_EQ(UndoText(), "Level");
    EXPECT_EQ(console->Keys().Control(), &level);
    EXPECT_TRUE(spoken->state().focused);
    spoken->valueInterface()->setCurrentValue(0);
    EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Kick, Level, -inf dB"));
    CControl& mute = Find("Mute");
    QAccessibleInterface* const button = console->Spoken().InterfaceOf({&mute, -1});
    button->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(button->state().checked);
    EXPECT_TRUE(At(0)->strip.mute.IsOn());
}

TEST_F(KeysTest, TabReachesEveryControlAndArrowsEnterAndTypingUseThem) {
    const auto key = [&](int number, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(console, static_cast<Qt::Key>(number), modifiers);
    };
    const std::vector<CControl*> stops = KeyStops(*console);
    std::set<CControl*> reached;
    for (std::size_t count = 0; count < stops.size(); ++count) {
        key(Qt::Key_Tab);
        reached.insert(console->Keys().Control());
        EXPECT_FALSE(console->Keys().Area().isEmpty());
    }
    EXPECT_EQ(reached, std::set<CControl*>(stops.begin(), stops.end()));
    EXPECT_GT(stops.size(), 60U);

    CControl& level = Find("Level");
    console->Keys().Show(level, -1);
    const float before = level.ValueNow();
    key(Qt::Key_Up);
    EXPECT_NEAR(level.ValueNow(), before + 1.27F, 0.001F);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_NEAR(level.ValueNow(), before + 1.27F - 0.127F, 0.001F);
    key(Qt::Key_PageDown);
    EXPECT_NEAR(level.ValueNow(), before + 1.27F - 0.127F - 12.7F, 0.001F);
    key(Qt::Key_End);
    EXPECT_EQ(level.ValueNow(), 127);
    key(Qt::Key_Backspace);
    EXPECT_EQ(level.ValueText(), "-9.5 dB");
    QTest::keyClicks(console, QStringLiteral("-20"));
    key(Qt::Key_Return);
    EXPECT_NEAR(20 * std::log10(tables.ChannelGain(level.ValueNow())), -20, 0.35);
    key(Qt::Key_Return);
    ASSERT_NE(console->findChild<QDialog*>(), nullptr) << "Enter opens the entry";
    delete console->findChild<QDialog*>();

    console->Keys().Show(Find("Mute"), -1);
    key(Qt::Key_Return);
    EXPECT_TRUE(At(0)->strip.mute.IsOn());
    key(Qt::Key_Space);
    EXPECT_TRUE(At(0)->strip.mute.IsOn()) << "Space belongs to Play";
    const auto stop = [&](int help) -> CControl& {
        return **std::ranges::find_if(
            stops, [&](const CControl* one) { return one->infoString == help && one->Parent() == console->Strip(0); });
    };
    console->Keys().Show(stop(127), -1);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    EXPECT_EQ(At(0)->patternSelected.Get(), 2);
    key(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(At(0)->patternUsed[2].IsOn()) << "the menu key is the other button: it marks";
    console->FollowEngine();
    console->Keys().Show(stop(480), 3);
    key(Qt::Key_Return);
    const auto notes = [&] { return At(0)->patterns[2].ForEdit()->Notes(); };
    ASSERT_EQ(notes().size(), 1U);
    EXPECT_EQ(notes()[0].position, 3);
    console->FollowEngine();
    const int velocity = notes()[0].velocity;
    key(Qt::Key_Up);
    EXPECT_GT(notes()[0].velocity, velocity);
    key(Qt::Key_Escape);
    EXPECT_EQ(console->Keys().Control(), nullptr);
}

}  // namespace
}  // namespace quib
