// SPDX-License-Identifier: GPL-3.0-or-later
// The page of a plug-in's parameters, its programs, and the catalogue of plug-ins.
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/browser/CPluginBrowser.h"
#include "app/console/SlotMenu.h"
#include "app/parameters/CParameterPage.h"
#include "controls/CControl.h"
#include "document/DocumentFixture.h"
#include "editors/panel/CMenuCtrl.h"

namespace quib {
namespace {

class PluginWindowTest : public DocumentTest {
protected:
    PluginWindowTest() {
        AddSynth();
        window = windows.ShowParameters(Place(0));
        QCoreApplication::processEvents();
    }
    float Value(int parameter) { return PluginAt(0).Parameter(parameter); }
    CParameterPage& Page() { return window->Parameters(); }
    // The control that shows a parameter, in the page and not in the box of the one that was moved last.
    CControl* Showing(int parameter) {
        CControl* found = nullptr;
        for (const auto& control : Page().Controls()) {
            if (control->Value() == &Page().Values().Value(parameter)) found = control.get();
        }
        return found;
    }
    QStringList NamesShown() {
        QStringList names;
        for (const int parameter : Page().Shown()) names.append(Page().Values().Name(parameter));
        return names;
    }

    CPluginWindows windows{*workstation};
    CPluginWindow* window = nullptr;
};

TEST(ParameterGroupsTest, GroupsComeFromCategoriesElseFromWhatNamesBeginWith) {
    const QStringList names = {
        "Osc 1 Wave",          "Osc 1 Octave",         "Osc 1 Fine",    "Osc 2 Wave", "Osc 2 Fine", "Cutoff",
        "Amp Env Attack Time", "Amp Env Attack Curve", "Amp Env Decay", "Osc",        "Told"};
    QStringList categories(names.size(), QString());
    categories.back() = "Filter";
    const GroupedParameters found = GroupParameters(names, categories);
    QStringList titles;
    std::set<int> members;
    for (const ParameterGroup& group : found.groups) {
        titles.append(group.title);
        members.insert(group.members.begin(), group.members.end());
    }
    EXPECT_EQ(titles, QStringList({"Osc 1", "Osc", "", "Amp Env", "Filter"}));
    EXPECT_EQ(members.size(), static_cast<std::size_t>(names.size())) << "none is lost, none stands twice";
    EXPECT_EQ(found.labels, QStringList({"Wave", "Octave", "Fine", "2 Wave", "2 Fine", "Cutoff", "Attack Time",
                                         "Attack Curve", "Decay", "Osc", "Told"}));
    QStringList many;
    for (int number = 0; number < 40; ++number) many.append(QString(QChar(ushort('a' + number))));
    EXPECT_EQ(GroupParameters(many, QStringList(many.size(), QString())).groups.size(), 3U) << "in blocks";
}

TEST_F(PluginWindowTest, AKnobIsOneStepOfUndoAndMarksWhatItMoved) {
    Page().Follow();
    constexpr int kCutoff = 24;
    CControl* const knob = Showing(kCutoff);
    ASSERT_NE(knob, nullptr);
    const float before = Value(kCutoff);
    const int steps = Steps().index();
    knob->BeginGesture();
    knob->SetValueAndUpdate(true, true, 0.25F);
    knob->SetValueAndUpdate(true, true, 0.5F);
    knob->EndGesture();
    EXPECT_NEAR(Value(kCutoff), 0.5F, 1e-4F);
    EXPECT_EQ(Steps().index(), steps + 1);
    EXPECT_TRUE(knob->learns && knob->learns->index == kCutoff) << "MIDI can be made to move it";
    Page().SetShelf(CParameterPage::EShelf::kChanged);
    EXPECT_EQ(Page().Shown(), std::vector<int>({kCutoff}));
    CParameterMarks marks(workstation->Settings(), PluginAt(0).Identity().Key());
    marks.Set(CParameterMarks::EMark::kFavourite, 3, true);
    EXPECT_TRUE(CParameterMarks(workstation->Settings(), PluginAt(0).Identity().Key())
                    .Has(CParameterMarks::EMark::kFavourite, 3))
        << "kept for the next time";
    Steps().undo();
    EXPECT_EQ(Value(kCutoff), before);
    Page().Follow();
    EXPECT_TRUE(Page().Shown().empty());
}

TEST_F(PluginWindowTest, TheSearchKeepsWhatHoldsItsTextAndControlsSuitTheirParameters) {
    const int count = static_cast<int>(PluginAt(0).Parameters().size());
    Page().Follow();
    EXPECT_EQ(static_cast<int>(Page().Shown().size()), count);
    window->findChild<QLineEdit*>("filter")->setText("octave");
    for (const QString& name : NamesShown())
        EXPECT_TRUE(name.contains("octave", Qt::CaseInsensitive)) << qPrintable(name);
    EXPECT_GE(NamesShown().size(), 2);
    EXPECT_LT(NamesShown().size(), 8);
    window->findChild<QLineEdit*>("filter")->setText("no parameter has this");
    EXPECT_TRUE(Page().Shown().empty());
    window->findChild<QLineEdit*>("filter")->setText("");
    auto* const waves = dynamic_cast<CMenuCtrl*>(Showing(0));
    ASSERT_NE(waves, nullptr) << "four waves with texts are a menu";
    const float before = Value(0);
    const QStringList texts = waves->Texts();
    EXPECT_EQ(QSet<QString>(texts.begin(), texts.end()).size(), 4);
    EXPECT_EQ(Value(0), before);
}

TEST_F(PluginWindowTest, AProgramOfTheUsersIsSavedByNameAndComesBack) {
    CUserPrograms mine(*workstation, PluginAt(0));
    QString error;
    PluginAt(0).SetParameter(24, 0.3F);
    for (const char* const bad : {"", "..", "a/b", ".hidden", " x"}) EXPECT_FALSE(mine.Save(bad, error)) << bad;
    ASSERT_TRUE(mine.Save("Bass for Kick", error)) << error.toStdString();
    PluginAt(0).SetParameter(24, 0.9F);
    CUserPrograms later(*workstation, PluginAt(0));
    EXPECT_EQ(later.Names(), QStringList("Bass for Kick"));
    ASSERT_TRUE(later.Load("Bass for Kick", error)) << error.toStdString();
    EXPECT_NEAR(Value(24), 0.3F, 1e-3F);
    Steps().undo();
    EXPECT_NEAR(Value(24), 0.9F, 1e-3F);
}

TEST_F(PluginWindowTest, ProgramsHaveTheirNamesAndFollowThePlugin) {
    auto* const programs = window->findChild<QComboBox*>("programs");
    EXPECT_GE(programs->count(), 16);
    EXPECT_GT(programs->itemText(1).size(), 4);
    Places().SelectProgram(At(0)->plugin.ForEdit()->plugin, 5);
    window->Tick();
    EXPECT_EQ(programs->currentIndex(), 5);
    Steps().undo();
    window->Tick();
    EXPECT_EQ(programs->currentIndex(), 0);
}

TEST_F(PluginWindowTest, WindowsGoWithTheirPlugin) {
    const QPointer<CPluginWindow> open = window;
    EXPECT_EQ(windows.ShowParameters(Place(0)), window) << "one window for each plug-in";
    Stack().RenameInstrument(0, "Lead");
    EXPECT_TRUE(open->windowTitle().endsWith("Lead"));
    Stack().RemoveInstrument(0);
    EXPECT_TRUE(open.isNull());
    EXPECT_EQ(windows.Show({SlotPlace::EKind::kInstrument, 0, 0}), nullptr);
}

class CatalogTest : public DocumentTest {
protected:
    std::unique_ptr<CPluginCatalog> Make() {
        auto made = std::make_unique<CPluginCatalog>(QStringLiteral(QUIB_BIN_DIR "/quib-scan"), File("catalog.json"));
        made->SetFolders({QStringLiteral(QUIB_BIN_DIR "/PluginInstruments"), File("plugins")});
        return made;
    }
    // Scans to the end; gives how many libraries were asked.
    static int Scan(CPluginCatalog& catalog) {
        QSignalSpy asked(&catalog, &CPluginCatalog::Progressed);
        QSignalSpy finished(&catalog, &CPluginCatalog::Finished);
        catalog.Scan();
        EXPECT_TRUE(!finished.isEmpty() || finished.wait(60000));
        return static_cast<int>(asked.size());
    }
};

TEST_F(CatalogTest, AsksEachLibraryOnceAndSurvivesBrokenOnes) {
    ASSERT_TRUE(QDir().mkpath(File("plugins/deep")));
    QFile::link(QStringLiteral(QUIB_BIN_DIR "/testplugins/Gain.so"), File("plugins/deep/Gain.so"));
    QFile::link(QStringLiteral(QUIB_BIN_DIR "/testplugins/Exits.so"), File("plugins/Exits.so"));
    QFile nonsense(File("plugins/Nonsense.so"));
    ASSERT_TRUE(nonsense.open(QIODevice::WriteOnly) && nonsense.write("no library") > 0);
    nonsense.close();

    const auto catalog = Make();
    EXPECT_GE(Scan(*catalog), 4);
    QStringList names;
    for (const PluginEntry& entry : catalog->Instruments()) names.append(entry.name);
    EXPECT_TRUE(names.contains("QUIB synth"));
    names.clear();
    for (const PluginEntry& entry : catalog->Effects()) names.append(QFileInfo(entry.path).fileName());
    EXPECT_EQ(names, QStringList("Gain.so"));
    int broken = 0;
    for (const PluginEntry& entry : catalog->All()) broken += entry.isBroken ? 1 : 0;
    EXPECT_EQ(broken, 2);
    for (const PluginEntry& entry : catalog->Failed()) {
        EXPECT_EQ(entry.name == "Exits", entry.failure == EPluginFailure::kEnded) << entry.name.toStdString();
    }

    const auto again = Make();
    EXPECT_EQ(Scan(*again), 0) << "all is known";
    EXPECT_EQ(again->All(), catalog->All());
    PluginEntry entry;
    QString error;
    EXPECT_FALSE(again->Ask(File("plugins/Exits.so"), entry, error));
    EXPECT_FALSE(error.isEmpty());
    ASSERT_TRUE(nonsense.open(QIODevice::Append) && nonsense.write("!") > 0);
    nonsense.close();
    EXPECT_EQ(Scan(*again), 1) << "only what has changed";
    // Left out for good, until the user has it asked again.
    EXPECT_EQ(again->Block("Gain.so"), "Gain");
    const auto later = Make();
    EXPECT_EQ(Scan(*later), 0);
    EXPECT_FALSE(later->Ask(File("plugins/deep/Gain.so"), entry, error));
    EXPECT_EQ(entry.failure, EPluginFailure::kEndedProgram);
    QSignalSpy finished(later.get(), &CPluginCatalog::Finished);
    later->AskAgain(entry.path);
    ASSERT_TRUE(finished.wait(60000));
    EXPECT_TRUE(later->Ask(File("plugins/deep/Gain.so"), entry, error)) << error.toStdString();
}

TEST_F(CatalogTest, TypedLettersAndEnterLoadALibraryWhateverTheNamesAre) {
    ASSERT_TRUE(QDir().mkpath(File("plugins/deep")));
    QFile::copy(QStringLiteral(QUIB_BIN_DIR "/testplugins/ParameterBank.so"), File("plugins/library.so"));
    QFile::copy(QStringLiteral(QUIB_BIN_DIR "/testplugins/Gain.so"), File("plugins/one.so"));
    QFile::copy(QStringLiteral(QUIB_BIN_DIR "/testplugins/Gain.so"), File("plugins/two.so"));
    QFile::copy(QStringLiteral(QUIB_BIN_DIR "/testplugins/Gain.so"), File("plugins/deep/two.so"));
    const auto catalog = Make();
    Scan(*catalog);
    CPluginUse use(settings);
    QWidget parent;
    parent.resize(1366, 700);
    CPluginBrowser browser(
        *catalog, use, [&](ESlotKind kind) { return PluginChoices(folders, *catalog, kind); }, &parent);
    AddSynth();
    const SlotPlace place{SlotPlace::EKind::kInsert, At(0)->Id(), 0};
    QString error;
    QObject::connect(&browser, &CPluginBrowser::Chosen, [&](const PluginEntry& entry, bool) {
        EXPECT_TRUE(Places().LoadPlugin(place, entry.path, error)) << error.toStdString();
        use.Loaded(entry);
    });
    browser.Open(ESlotKind::kEffect, "Insert 1", QRect(900, 300, 100, 20), 1);
    EXPECT_TRUE(browser.List().Chosen()->isBuiltIn) << "the built-in ones come first";
    // Every word counts, in any order.
    QTest::keyClicks(&browser.Field(), "bank par");
    QTest::keyClick(&browser.Field(), Qt::Key_D, Qt::ControlModifier);
    QTest::keyClick(&browser.Field(), Qt::Key_Return);
    const auto slot = Places().Slot(place);
    ASSERT_TRUE(slot->plugin);
    EXPECT_EQ(slot->plugin->Identity().effectName, "Parameter bank");
    EXPECT_TRUE(At(0)->strip.insertOn[0].IsOn()) << "what is loaded is on";
    Steps().undo();
    EXPECT_FALSE(Places().Slot(place)->plugin || At(0)->strip.insertOn[0].IsOn()) << "in one step";

    // One maker: told apart by their files, and by their folders where that is not enough.
    QStringList details;
    for (const PluginChoice& choice : PluginChoices(folders, *catalog, ESlotKind::kEffect)) {
        if (choice.entry.name == "Gain") details.append(choice.detail);
    }
    EXPECT_EQ(details, QStringList({QFileInfo(File("plugins/deep/two.so")).canonicalFilePath(), "one.so",
                                    QFileInfo(File("plugins/two.so")).canonicalFilePath()}));

    // The shelves remember, and the next start does.
    const CPluginUse kept(settings);
    CPluginSearch search(kept);
    search.SetPlugins(PluginChoices(folders, *catalog, ESlotKind::kEffect), {});
    for (const EShelf shelf : {EShelf::kFavourites, EShelf::kRecent, EShelf::kMostUsed}) {
        PluginFilter filter;
        filter.shelf = shelf;
        search.Find(filter);
        ASSERT_EQ(search.Found().size(), 1) << static_cast<int>(shelf);
        EXPECT_EQ(search.Found().front().entry.name, "Parameter bank");
    }
    PluginFilter category;
    category.shelf =
        static_cast<EShelf>(static_cast<int>(EShelf::kFirstCategory) + static_cast<int>(EPluginCategory::kReverb));
    search.Find(category);
    ASSERT_EQ(search.Found().size(), 1);
    EXPECT_EQ(search.Found().front().entry.name, "QUIB reverb");
}

TEST_F(CatalogTest, CancelEndsALibraryThatHangs) {
    ASSERT_TRUE(QDir().mkpath(File("plugins")));
    QFile::link(QStringLiteral(QUIB_BIN_DIR "/testplugins/Hangs.so"), File("plugins/Hangs.so"));
    const auto catalog = Make();
    QSignalSpy finished(catalog.get(), &CPluginCatalog::Finished);
    QObject::connect(catalog.get(), &CPluginCatalog::Progressed, catalog.get(), [&](int, int, const QString& name) {
        if (name == "Hangs") {
            QMetaObject::invokeMethod(catalog.get(), &CPluginCatalog::Cancel, Qt::QueuedConnection);
        }
    });
    catalog->Scan();
    ASSERT_TRUE(finished.wait(10000)) << "far below the time that a hung one is given";
    EXPECT_FALSE(catalog->IsScanning());
    EXPECT_FALSE(catalog->Instruments().isEmpty()) << "what was learnt before stays";
}

}  // namespace
}  // namespace quib
