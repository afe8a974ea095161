// SPDX-License-Identifier: GPL-3.0-or-later
// One application for all tests of the windows, without a display unless one is named.
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM", QStringLiteral("offscreen")).toUtf8());
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
