// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The program in a real X server on a fresh profile that has the built-in instruments alone.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>

#include "CDriver.h"

namespace quib {

class FreshSession : public testing::Test {
protected:
    FreshSession() {
        QDir(folder.path()).mkdir(QStringLiteral("program"));
        QFile::link(QStringLiteral(QUIB_BIN_DIR "/PluginInstruments"),
                    folder.filePath(QStringLiteral("program/PluginInstruments")));
    }
    // The script runs in a thread of its own; the greeting is there when it begins.
    void Run(const std::function<void()>& script) {
        const QStringList arguments = {QStringLiteral("--portable"), folder.filePath(QStringLiteral("program")),
                                       QStringLiteral("--no-audio")};
        CDriver::Run(arguments, [&](CDriver& driver) {
            user = &driver;
            EXPECT_TRUE(user->WaitFor([] { return CDriver::TutorialGreets(); }));
            script();
            user->Ask([&] {
                Station().Session().NewProject();
                QMetaObject::invokeMethod(&user->Window(), "close", Qt::QueuedConnection);
            });
        });
    }
    bool IsReady() const {
        return user->WaitFor([&] { return user->Window().isActiveWindow() && user->IsStarted(); });
    }
    CWorkstation& Station() const { return user->Window().Workstation(); }

    QTemporaryDir folder;
    CDriver* user = nullptr;
};

}  // namespace quib
