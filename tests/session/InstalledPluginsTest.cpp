// SPDX-License-Identifier: GPL-3.0-or-later
// Every plug-in of the machine through the browser, and the editors of every maker with a mouse. Minutes, and the
// plug-ins of others: scripts/plugins runs it.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <map>

#include "CDriver.h"
#include "app/CPluginCatalog.h"
#include "app/CPluginWindows.h"
#include "app/browser/CPluginBrowser.h"
#include "model/plugin/CPlugin.h"

namespace quib {
namespace {

class InstalledPluginsTest : public testing::Test {
protected:
    InstalledPluginsTest() {
        QDir(folder.path()).mkpath(QStringLiteral("program"));
        CSettings(folder.filePath(QStringLiteral("program/settings.ini")))
            .WriteSettingInt(kSettingsSection, QStringLiteral("Init"), 1);
        arguments = {QStringLiteral("--portable"), folder.filePath(QStringLiteral("program")),
                     QStringLiteral("--no-audio")};
    }
    static void Scan(CDriver& user) {
        user.WaitFor([&] { return user.IsStarted(); });
        while (user.Ask([&] { return user.Window().Catalog().IsScanning(); })) QTest::qSleep(100);
    }
    static QString Failures(CDriver& user) {
        return user.Ask([&] {
            QString text;
            for (const PluginEntry& entry : user.Window().Catalog().Failed()) {
                text += entry.path + QStringLiteral(": ") + FailureText(entry) + QLatin1Char('\n');
            }
            return text;
        });
    }
    static void Close(CDriver& user) {
        user.Ask([&] { QMetaObject::invokeMethod(&user.Window(), "close", Qt::QueuedConnection); });
    }
    static bool HasBox() { return QApplication::activeModalWidget() != nullptr; }
    static void TakeBoxes(CDriver& user) {
        for (int turn = 0; turn < 5 && user.Ask(HasBox); ++turn) {
            std::printf("  says: %s\n", user.Ask([] {
                                                auto* const box =
                                                    qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
                                                return box != nullptr ? box->text().toStdString() : std::string("?");
                                            })
                                            .c_str());
            user.Key("Escape");
        }
    }
    // What stands in the first place for that kind.
    static std::shared_ptr<CPlugin> Loaded(CDriver& user, bool isInstrument) {
        CWorkstation& station = user.Window().Workstation();
        if (!isInstrument) return station.Places().Slot({SlotPlace::EKind::kEffect, 0, 0})->plugin;
        const auto first = station.Stack().Instrument(0);
        return first ? first->plugin.ForEdit()->plugin : nullptr;
    }
    // Opens the browser, types the name, goes down to the library and presses Enter.
    static void Choose(CMainWindow& window, const PluginEntry& entry) {
        if (entry.isInstrument) {
            Q_EMIT window.InstrumentWanted();
        } else {
            Q_EMIT window.EffectWanted();
        }
        auto* const browser = window.findChild<CPluginBrowser*>();
        QTest::keyClicks(&browser->Field(), entry.name);
        for (int row = 0; row < 100; ++row) {
            const PluginChoice* const chosen = browser->List().Chosen();
            if (chosen != nullptr && chosen->entry.path == entry.path) break;
            QTest::keyClick(&browser->Field(), Qt::Key_Down);
        }
        QTest::keyClick(&browser->Field(), Qt::Key_Return);
    }

    QTemporaryDir folder;
    QStringList arguments;
};

TEST_F(InstalledPluginsTest, EachIsLoadedThroughTheBrowser) {
    const int code = CDriver::Run(arguments, [&](CDriver& user) {
        Scan(user);
        EXPECT_EQ(Failures(user).toStdString(), "");
        const auto all = user.Ask([&] { return user.Window().Catalog().All(); });
        int loaded = 0;
        int wanted = 0;
        for (const PluginEntry& entry : all) {
            if (entry.failure == EPluginFailure::kNoEntry) continue;
            ++wanted;
            user.Ask([&] {
                QMetaObject::invokeMethod(
                    &user.Window(), [&user, entry] { Choose(user.Window(), entry); }, Qt::QueuedConnection);
            });
            const auto there = [&] { return Loaded(user, entry.isInstrument) != nullptr || HasBox(); };
            user.WaitFor(there);
            const auto plugin = user.Ask([&] { return Loaded(user, entry.isInstrument); });
            const bool isRight =
                plugin && QFileInfo(entry.path).fileName().toStdString() == plugin->Identity().fileName;
            loaded += isRight ? 1 : 0;
            EXPECT_TRUE(isRight) << entry.path.toStdString();
            TakeBoxes(user);
            user.Ask([&] { user.Window().Workstation().Session().NewProject(); });
        }
        std::printf("%d of %d plug-ins loaded through the browser\n", loaded, wanted);
        EXPECT_EQ(loaded, wanted);
        Close(user);
    });
    EXPECT_EQ(code, 0);
}

// The first of each maker in turn, until there are enough; one maker's editor is known for the handler that it leaves
// behind, so that one comes first.
QList<PluginEntry> OfEveryMaker(const QList<PluginEntry>& all, qsizetype count) {
    std::map<QString, QList<PluginEntry>> makers;
    QList<PluginEntry> chosen;
    for (const PluginEntry& entry : all) {
        if (entry.isBroken) continue;
        if (entry.name.startsWith(QLatin1String("amsynth"))) {
            chosen.append(entry);
        } else {
            makers[entry.vendor].append(entry);
        }
    }
    for (qsizetype round = 0; chosen.size() < count && round < all.size(); ++round) {
        for (const auto& [maker, entries] : makers) {
            if (round < entries.size() && chosen.size() < count) chosen.append(entries[round]);
        }
    }
    return chosen;
}

TEST_F(InstalledPluginsTest, EditorsOfEveryMakerOpenTakeClicksCloseAndOpenAgain) {
    const int code = CDriver::Run(arguments, [&](CDriver& user) {
        constexpr qsizetype kEditors = 48;
        Scan(user);
        CMainWindow& window = user.Window();
        CWorkstation& station = window.Workstation();
        const auto all = user.Ask([&] { return window.Catalog().All(); });
        int opened = 0;
        int tooTall = 0;
        for (const PluginEntry& entry : OfEveryMaker(all, 4 * kEditors)) {
            if (opened == kEditors) break;
            SlotPlace place{SlotPlace::EKind::kEffect, 0, opened % kSendCount};
            const bool has = user.Ask([&] {
                QString error;
                if (entry.isInstrument) {
                    const int index = station.Stack().AddInstrument(entry.path, error);
                    if (index >= 0) place = {SlotPlace::EKind::kInstrument, station.Stack().Instrument(index)->Id(), 0};
                } else {
                    station.Places().LoadPlugin(place, entry.path, error);
                }
                const auto slot = station.Places().Slot(place);
                return slot && slot->plugin && slot->plugin->HasEditor();
            });
            if (!has) continue;
            std::printf("%2d %s (%s)\n", ++opened, entry.name.toUtf8().data(), entry.vendor.toUtf8().data());
            std::fflush(stdout);
            for (int round = 0; round < 2; ++round) {
                auto* const editor = user.Ask([&] {
                    window.OpenPlugin(place);
                    return window.PluginWindows().Show(place);
                });
                QTest::qSleep(300);
                const QRect area = user.Ask([&] { return editor->geometry(); });
                const int bar = user.Ask([&] { return editor->BarHeight(); });
                const auto size = user.Ask([&] { return editor->Plugin().AskEditorSize(); });
                if (size && size->height > 10 && area.height() > size->height + bar + 2) {
                    std::printf("   %d pixels high for an editor of %d\n", area.height(), size->height);
                    ++tooTall;
                }
                for (const double share : {0.5, 0.3, 0.7}) {
                    user.Click(area.topLeft() + QPoint(static_cast<int>(area.width() * share),
                                                       bar + static_cast<int>((area.height() - bar) * share)));
                }
                TakeBoxes(user);
                // As the window manager closes it; the last rounds stay open, one over the other.
                if (round == 0 || opened % 4 != 0) {
                    user.Ask([&] { editor->close(); });
                    EXPECT_TRUE(user.WaitFor([&] { return !window.PluginWindows().IsShown(place); }));
                }
            }
        }
        std::printf("%d editors opened, clicked, closed and opened again; %d higher than their editor\n", opened,
                    tooTall);
        EXPECT_EQ(opened, kEditors);
        EXPECT_EQ(tooTall, 0);
        Close(user);
    });
    EXPECT_EQ(code, 0);
}

}  // namespace
}  // namespace quib
