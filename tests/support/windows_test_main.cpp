// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>

#include "rig/temporary_folder.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const vantrell::test::TemporaryFolder runtimeFolder;
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(runtimeFolder.path()));
    qputenv("HOME", QByteArray::fromStdString(runtimeFolder.path()));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
