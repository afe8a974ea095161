// SPDX-License-Identifier: GPL-3.0-or-later
// The page of a plug-in's parameters, its programs, and the catalogue of plug-ins.
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include "app/AppFixture.h"
#include "app/CParameterList.h"
#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/browser/CPluginBrowser.h"
#include "app/console/SlotMenu.h"

namespace quib {
namespace {

class PluginWindowTest : public AppTest {
protected:
    PluginWindowTest() {
        AddSynth();
        window = windows.ShowParameters(Place(0));
        window->resize(600, 400);
        QCoreApplication::processEvents();
    }
    float Value(int parameter) { return PluginAt(0).Parameter(parameter); }
    void Mouse(QEvent::Type type, QPoint at, Qt::KeyboardModifiers keys = {}) {
        QWidget* const view = window->Parameters().viewport();
        const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(type, at, view->mapToGlobal(QPointF(at)), button, buttons, keys);
        QCoreApplication::sendEvent(view, &event);
    }

    CPluginWindows windows{*workstation};
    CPluginWindow* window = nullptr;
};

TEST_F(PluginWindowTest, ADragSetsAParameterAndIsOneStepOfUndo) {
    const float before = Value(0);
    const int steps = Steps().index();
    const int width = window->Parameters().viewport()->width();
    Mouse(QEvent::MouseButtonPress, {width / 3 + 10, 10});
    const float low = Value(0);
    Mouse(QEvent::MouseMove, {width / 2, 10});
    const float middle = Value(0);
    Mouse(QEvent::MouseMove, {width - 5, 10});
    const float high = Value(0);
    Mouse(QEvent::MouseButtonRelease, {width - 5, 10});
    EXPECT_LT(low, 0.1F);
    EXPECT_LT(low, middle);
    EXPECT_LT(middle, high);
    EXPECT_GT(high, 0.99F);
    EXPECT_EQ(Steps().index(), steps + 1);
    Steps().undo();
    EXPECT_NEAR(Value(0), before, 1e-4F);

    Mouse(QEvent::MouseButtonPress, {width / 3 + 10, 10});
    Mouse(QEvent::MouseButtonRelease, {width / 3 + 10, 10});
    Mouse(QEvent::MouseButtonPress, {width / 3 + 10, 10}, Qt::AltModifier);
    EXPECT_NEAR(Value(0), before, 1e-4F) << "Alt and a click go back to the start";
}

TEST_F(PluginWindowTest, TheFilterKeepsWhatHoldsItsText) {
    auto* const filter = window->findChild<QLineEdit*>("filter");
    const auto& parameters = PluginAt(0).Parameters();
    const int count = static_cast<int>(parameters.size());
    EXPECT_EQ(window->Parameters().RowCount(), count);
    int shown = count - 1;  // one whose name no other holds
    filter->setText(QString::fromStdString(parameters[static_cast<std::size_t>(shown)].name).toLower());
    while (window->Parameters().RowCount() > 1 && shown > 0) {
        filter->setText(QString::fromStdString(parameters[static_cast<std::size_t>(--shown)].name).toLower());
    }
    ASSERT_GT(shown, 0);
    std::vector<float> before;
    for (int i = 0; i < count; ++i) before.push_back(Value(i));
    window->Parameters().SetByText(0, "0.0123");
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(Value(i) != before[static_cast<std::size_t>(i)], i == shown) << "rows stand for what they show";
    }
    EXPECT_EQ(UndoText(), "Plug-in parameter");
    filter->setText("no parameter has this");
    EXPECT_EQ(window->Parameters().RowCount(), 0);
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

class CatalogTest : public AppTest {
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
