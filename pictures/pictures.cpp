// SPDX-License-Identifier: MIT
// Draws the windows into PNG files: pictures FOLDER [FONT SCALE]. QT_SCALE_FACTOR and QT_QPA_PLATFORM hold as
// usual.
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMenu>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QStyleFactory>
#include <memory>

#include "core/about_facts.h"
#include "mainwindow/frmMain.h"
#include "pictures/folder_picker_pictures.h"
#include "pictures/history_pictures.h"
#include "pictures/passwords_picture.h"
#include "pictures/second_start_picture.h"
#include "pictures/weekly_picture.h"
#include "platform/files/posix_toolbox.h"
#include "platform/files/spilled_lines.h"
#include "platform/qt/qt_message_boxes.h"
#include "platform/qt/qt_tray.h"
#include "rig/hand_cranked_loop.h"
#include "rig/settable_clock.h"
#include "task/run_queue.h"
#include "widgets/visible_indicators.h"

namespace {

using vantrell::FolderKind;
using vantrell::frmMain;

QPalette darkPalette() {
    QPalette dark(QColor(0x2B, 0x2D, 0x30), QColor(0x2B, 0x2D, 0x30));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText}) {
        dark.setColor(role, QColor(0xE6, 0xE6, 0xE6));
        dark.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    }
    dark.setColor(QPalette::Base, QColor(0x1E, 0x1F, 0x22));
    dark.setColor(QPalette::Highlight, QColor(0x2F, 0x65, 0xCA));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    return dark;
}

void wait(int milliseconds) {
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < milliseconds) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
}

void showEmpty(frmMain& window) {
    window.setCaption("Quillon Inc - Vantrell(ZEP)");
    window.setMode(vantrell::Mode::stopped);
    window.setClock("20:41:03");
    window.setMinutes("1");
    window.setPanel1("ZEP Folder = ");
    window.setLabel2("One or all of the folder  parameters are missing. Please check below.");
    window.setStopEnabled(false);
}

void showAtWork(frmMain& window) {
    window.setMode(vantrell::Mode::running);
    window.setSchedule("Scheduled: Monday 7:5 PM  File Create Date > 7");
    window.setFolder(FolderKind::source, "/srv/in");
    window.setFolder(FolderKind::destination, "/srv/out");
    window.setFolder(FolderKind::done, "/srv/done");
    window.setFolder(FolderKind::reject, "/srv/rejected");
    window.setMinutes("5");
    window.setPanel1("ZEP Folder = /srv/in");
    window.setLabel2("Please Wait Encrypting files.");
    window.setStartEnabled(false);
    window.setStopEnabled(true);
    window.setTotalFiles(240);
    window.setProcessedCount(1204);
    window.setPassProgress(12, 240);
    window.setLastFile("invoices-2026-11.pdf");
    window.setCurrentFile("annual report.pdf");
    window.setFileProgress(0, 100);
    wait(1100);
    window.setFileProgress(64, 100);
}

void showActivity(frmMain& window, vantrell::LineStore& lines) {
    for (int number = 1; number <= 12; ++number) {
        lines.append("11/24/2026 08:41:" + std::to_string(10 + number) + " PM Encryped:  invoice " +
                     std::to_string(number) + ".pdf - Sucessful: ");
    }
    window.activityJoined();
    window.setActivityShown(true);
}

void showLongTexts(frmMain& window, vantrell::LineStore& lines) {
    const std::string deep = "/mnt/archive/" + std::string(90, 'x') + "/department of long names/incoming files";
    window.setFolder(FolderKind::source, deep);
    window.setFolder(FolderKind::reject, "/srv/M\xFCller\n/rejected");
    window.setPanel1("ZEP Folder = " + deep);
    window.setLabel2("User Stopped Encrypting Files in " + deep);
    window.setCurrentFile(std::string(200, 'n') + ".tar.gz");
    window.setTotalFiles(123456789);
    window.setProcessedCount(2147483647);
    window.setPassProgress(12345678, 123456789);
    for (int line = 1; line <= 40; ++line) {
        lines.append("11/16/2026 08:41:03 PM Encryped:  file " + std::to_string(line) + ".pdf - Sucessful: ");
    }
    lines.append("11/16/2026 08:41:04 PM  Moving orginal file " + deep + deep);
    window.activityJoined();
    window.setActivityShown(true);
}

void save(QWidget& widget, const QString& path) {
    wait(150);
    if (!widget.grab().save(path)) qFatal("cannot write a picture");
}

void paint(QPainter& painter, QMenu& menu, const frmMain& window) {
    painter.drawPixmap(menu.pos() - window.mapToGlobal(QPoint()), menu.grab());
}

/// Draws the window with an open menu over it, and beside that the sub-menu of its last entry that has one.
void saveMenu(frmMain& window, const QString& name, const QString& path) {
    auto* const menu = window.findChild<QMenu*>(name);
    QMenuBar* bar = window.menuBar();
    bar->setActiveAction(menu->menuAction());
    menu->popup(bar->mapToGlobal(bar->actionGeometry(menu->menuAction()).bottomLeft()));
    auto* const inner = menu->findChild<QMenu*>();
    if (inner != nullptr) {
        menu->setActiveAction(inner->menuAction());
        inner->popup(menu->mapToGlobal(menu->actionGeometry(inner->menuAction()).topRight()));
    }
    wait(150);
    const QPixmap above = window.grab();
    QSize size = window.size();
    for (const QMenu* open : {static_cast<const QMenu*>(menu), static_cast<const QMenu*>(inner)}) {
        if (open == nullptr) continue;
        const QPoint at = open->pos() - window.mapToGlobal(QPoint());
        size = size.expandedTo(QSize(at.x(), at.y()) + open->size());
    }
    QPixmap picture(size * above.devicePixelRatio());
    picture.setDevicePixelRatio(above.devicePixelRatio());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.drawPixmap(QPoint(), above);
    paint(painter, *menu, window);
    if (inner != nullptr) paint(painter, *inner, window);
    painter.end();
    if (!picture.save(path)) qFatal("cannot write a picture");
    if (inner != nullptr) inner->close();
    menu->close();
}

void drawMenus(frmMain& window, const QDir& folder, const QString& theme) {
    vantrell::SettingsRecord settings;
    settings.RunContinuallyAtStartup = true;
    settings.RunNormalAtStartup = true;
    window.showSettings(settings);
    window.setStartupEntry(vantrell::StartupEntry::State::switchedOff);
    for (const char* name : {"mnuStartup", "mnuPasswordsAndFiles", "mnview"}) {
        const QString menu = QString::fromLatin1(name);
        saveMenu(window, menu, folder.filePath(menu + QLatin1Char('-') + theme));
    }
    vantrell::QtTray tray;
    tray.add(" Quillon Inc - ZEP ");
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* popUp = qobject_cast<QMenu*>(widget);
        if (popUp == nullptr || popUp->objectName() != QStringLiteral("mPopupSys")) continue;
        popUp->popup({});
        save(*popUp, folder.filePath(QStringLiteral("pop-up-") + theme));
        popUp->close();
    }
}

void drawAbout(frmMain& window, const QDir& folder, const QString& theme) {
    // Versions that do not change from machine to machine.
    window.showAbout({"Vantrell",
                      vantrell::programVersion(),
                      {{"OpenSSL", "3.0.17"}, {"SQLite", "3.40.1"}, {"liburing", "2.3"}, {"Linux", "6.1.0"}},
                      "/home/operator/.local/share/Quillon, Inc/Vantrell/Bin"});
    auto* about = window.findChild<vantrell::frmAbout*>();
    about->copyDiagnostics(QStringLiteral("-"));
    save(*about, folder.filePath(QStringLiteral("about-") + theme));
    about->close();
}

void drawBoxes(frmMain& window, const QDir& folder, const QString& theme) {
    vantrell::RunQueue queue([] {}, [] { return std::chrono::nanoseconds(0); });
    vantrell::QtMessageBoxes boxes(queue, &window);
    const vantrell::Pending<vantrell::Answer> question = boxes.ask(
        {"File Overwrite Options",
         " Are you sure you want to overwrite existing files?\r\n\r\nIf a previous encrypted file exists in the folder "
         "/srv/out\r\nit will be overwritten",
         vantrell::Buttons::yesNo, false});
    save(*window.findChild<QMessageBox*>(), folder.filePath(QStringLiteral("question-") + theme));
    boxes.inform({"", "ZEP Now Added to Start UP.  On the next boot ZEP will be take affect."});
    save(*window.findChildren<QMessageBox*>().back(), folder.filePath(QStringLiteral("box-") + theme));
}

void drawMainWindow(frmMain& window, vantrell::LineStore& lines, const QDir& folder, const QString& theme) {
    const auto saveAs = [&](const char* name) {
        save(window, folder.filePath(QString::fromLatin1(name) + QLatin1Char('-') + theme));
    };
    showEmpty(window);
    window.setNormalSize();
    window.showWindow();
    saveAs("empty");
    showAtWork(window);
    saveAs("at-work");
    drawMenus(window, folder, theme);
    drawAbout(window, folder, theme);
    drawBoxes(window, folder, theme);
    showActivity(window, lines);
    saveAs("activity");
    showLongTexts(window, lines);
    saveAs("long");
}

void drawAll(const QDir& folder, const QString& theme, const vantrell::Path& examples) {
    const vantrell::Path spillFolder = QDir::tempPath().toStdString();
    vantrell::test::HandCrankedLoop loop;
    vantrell::SpilledLines lines(loop.kernel(), spillFolder, spillFolder);
    vantrell::test::SettableClock clock;
    vantrell::PosixToolbox toolbox(loop, loop.kernel(), clock);
    frmMain window(lines, toolbox);
    drawMainWindow(window, lines, folder, theme);
    const auto saveAs = [&](QWidget& widget, const QString& name) {
        save(widget, folder.filePath(name + QLatin1Char('-') + theme));
    };
    vantrell::test::drawPasswords(saveAs);
    vantrell::test::drawWeeklyDelete(saveAs);
    vantrell::test::drawHistory(saveAs, wait);
    vantrell::test::drawFolderPicker(toolbox, examples, saveAs, wait);
    vantrell::test::drawSecondStart(saveAs);
}

}  // namespace

int main(int argc, char** argv) try {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc < 2) qFatal("usage: pictures FOLDER [FONT SCALE]");
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    vantrell::VisibleIndicators::install();
    if (argc > 2) {
        QFont font = QApplication::font();
        font.setPointSizeF(font.pointSizeF() * QByteArray(argv[2]).toDouble());
        QApplication::setFont(font);
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.mkpath(QStringLiteral("."))) qFatal("cannot make the folder");
    const vantrell::test::ExampleFolders examples;
    qputenv("HOME", QByteArray::fromStdString(examples.path()));
    drawAll(folder, QStringLiteral("light.png"), examples.path());
    QApplication::setPalette(darkPalette());
    drawAll(folder, QStringLiteral("dark.png"), examples.path());
    return 0;
} catch (const std::exception& error) {
    qFatal("%s", error.what());
}
