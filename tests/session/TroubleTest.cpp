// SPDX-License-Identifier: GPL-3.0-or-later
// What the workstation does when a plug-in aborts, ends the process, throws or hangs, and what the next start does:
// a whole session for each case. A row for each is printed.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include "CDriver.h"
#include "TroubleProject.h"
#include "app/CPluginWindows.h"
#include "model/plugin/CPlugin.h"

namespace quib {
namespace {

class TroubleTest : public testing::TestWithParam<std::tuple<const char*, const char*>> {
protected:
    TroubleTest() {
        QDir(folder.path()).mkpath(QStringLiteral("more"));
        QDir(folder.path()).mkpath(QStringLiteral("program"));
        QFile::copy(QStringLiteral(QUIB_BIN_DIR "/testplugins/Trouble.so"), Path("more/Trouble.so"));
        QFile file(Path("song.prg"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(QByteArray::fromStdString(TroubleProject())) > 0);
        CSettings settings(Path("program/settings.ini"));
        settings.WriteSettingString(kSettingsSection, QStringLiteral("PluginFolders"), Path("more"));
        settings.WriteSettingInt(kSettingsSection, QStringLiteral("Init"), 1);
    }
    QString Path(const char* name) const { return folder.filePath(QLatin1String(name)); }
    QStringList Arguments(const QStringList& more) const {
        return QStringList{QStringLiteral("--portable"), Path("program"), QStringLiteral("--no-audio"),
                           QStringLiteral("--end-when-stuck")} +
               more;
    }
    static QMessageBox* Box() { return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); }
    static std::shared_ptr<const PluginSlot> Slot(CDriver& user) {
        return user.Ask([&]() -> std::shared_ptr<const PluginSlot> {
            const auto instrument = user.Window().Workstation().Stack().Instrument(0);
            return instrument ? instrument->plugin.ForEdit() : nullptr;
        });
    }
    static void Close(CDriver& user) {
        user.Ask([&] { QMetaObject::invokeMethod(&user.Window(), "close", Qt::QueuedConnection); });
    }
    // Closes the box that names the plug-in, if one comes.
    static void TakeMessage(CDriver& user) {
        const auto tells = [] { return Box() != nullptr && Box()->text().contains(QLatin1String("Trouble")); };
        for (int turn = 0; turn < 50 && !user.Ask(tells); ++turn) usleep(20000);
        if (!user.Ask(tells)) return;
        std::fprintf(stderr, "quib: a message: %s\n", user.Ask([] { return Box()->text().toStdString(); }).c_str());
        user.Key("Escape");
    }

    // In a process of its own; gives how that ended.
    int RunTroubled(const std::string& trouble, const std::string& where) {
        const pid_t child = fork();
        if (child == 0) {
            setenv("QUIB_TROUBLE", trouble.c_str(), 1);
            if (std::freopen(Path("stderr").toLocal8Bit().data(), "w", stderr) == nullptr) _exit(99);
            std::setvbuf(stderr, nullptr, _IONBF, 0);  // as it is in a program of its own
            _exit(CDriver::Run(Arguments({Path("song.prg")}), [&](CDriver& user) {
                user.WaitFor([&] { return user.IsStarted() || Box() != nullptr; });
                TakeMessage(user);
                user.WaitFor([&] { return user.IsStarted(); });
                if (where == "process") user.Key("space");
                if (where == "editor") {
                    user.Ask([&] {
                        const auto instrument = user.Window().Workstation().Stack().Instrument(0);
                        user.Window().OpenPlugin({SlotPlace::EKind::kInstrument, instrument->Id(), 0});
                    });
                }
                TakeMessage(user);
                Close(user);
            }));
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    // The first line that names the plug-in.
    std::string Told() const {
        QFile file(Path("stderr"));
        if (!file.open(QIODevice::ReadOnly)) return {};
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.contains("Trouble")) return line.toStdString();
        }
        return {};
    }

    QTemporaryDir folder;
};

TEST_P(TroubleTest, IsNamedAndTheNextStartGoesOnWithoutIt) {
    const std::string how = std::get<0>(GetParam());
    const std::string where = std::get<1>(GetParam());
    const bool scanned = where == "load" || where == "open";
    // What the scanner finds is never loaded here, but for one that only throws: that says so itself.
    const bool there = scanned && how != "throw";
    const int code = RunTroubled(how + ":" + where + (there ? ":quib-scan" : ":test_session"), where);
    // At the end everything is saved, so that what happens there changes nothing.
    const bool survives = scanned || how == "throw" || (where == "close" && how != "hang");
    EXPECT_EQ(code == 0, survives) << "ended with " << code;
    const std::string told = Told();
    EXPECT_FALSE(told.empty() && !(how == "throw" && where == "close"));
    std::string next = "as usual";
    CDriver::Run(Arguments({}), [&](CDriver& user) {
        EXPECT_TRUE(user.WaitFor([&] { return user.IsStarted(); }));
        EXPECT_TRUE(user.WaitFor([&] { return user.Window().Workstation().Stack().Instruments().size() == 1; }));
        const auto slot = Slot(user);
        // What the project keeps for it, byte for byte.
        if (slot->missing) {
            const std::string kept(reinterpret_cast<const char*>(slot->missing->state->data()),
                                   slot->missing->state->size());
            // It gives another one when it is asked, which it is for the first backup.
            const bool untouched = scanned || where == "setChunk";
            EXPECT_TRUE(kept == TroubleState() || (!untouched && kept.find("a state of its own") != std::string::npos));
        }
        auto* const button = user.Ask([&] { return user.Window().findChild<QPushButton*>("noticeButton"); });
        // One that ends the program as it is closed has spoilt nothing.
        EXPECT_EQ(button != nullptr, !survives && where != "close");
        if (button == nullptr) return Close(user);
        EXPECT_TRUE(slot->missing);
        next = user.Ask([&] { return user.Window().findChild<QPushButton*>("notice")->text().toStdString(); });
        EXPECT_NE(next.find("\"Trouble\""), std::string::npos);
        user.Click(user.Ask([&] { return button->mapToGlobal(button->rect().center()); }));
        EXPECT_TRUE(user.WaitFor([&] {
            return user.Window().Workstation().Stack().Instrument(0)->plugin.ForEdit()->plugin != nullptr;
        })) << "tried again";
        Close(user);
    });
    std::printf("| %s in %s | %d | %s | %s |\n", how.c_str(), where.c_str(), code, told.c_str(), next.c_str());
}

INSTANTIATE_TEST_SUITE_P(Every, TroubleTest,
                         testing::Combine(testing::Values("abort", "exit", "throw", "hang"),
                                          testing::Values("load", "open", "setChunk", "process", "editor", "close")),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param)) + "_" + std::get<1>(test.param);
                         });

}  // namespace
}  // namespace quib
