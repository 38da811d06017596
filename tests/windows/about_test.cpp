// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QDesktopServices>

#include "windows/window_harness.h"

namespace vantrell::test {

/// Stands in for the file manager.
class FileManager : public QObject {
    Q_OBJECT

public:
    FileManager() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "show"); }
    ~FileManager() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    Q_SLOT void show(const QUrl& url) { shown.append(url.toLocalFile()); }
    QStringList shown;
};

class AboutTest : public MainWindowTest {
protected:
    void SetUp() override {
        MainWindowTest::SetUp();
        window.showAbout({"Vantrell", "1.2.3", {{"OpenSSL", "3.0.9"}, {"SQLite", "3.40.1"}}, "/srv/data"});
        about = window.findChild<frmAbout*>();
        ASSERT_NE(about, nullptr);
    }

    frmAbout* about = nullptr;
};

TEST_F(AboutTest, SaysWhatTheProgramIs) {
    EXPECT_EQ(about->windowTitle(), QStringLiteral("About Vantrell"));
    EXPECT_EQ(textOf("lblVersion"), "Version 1.2.3");
    QStringList texts;
    for (const auto* label : about->findChildren<QLabel*>()) texts.append(label->text());
    for (const char* text : {"3.0.9", "3.40.1", "/srv/data", "MIT, without any warranty", qVersion()})
        EXPECT_TRUE(texts.contains(QString::fromLatin1(text))) << text;
}

TEST_F(AboutTest, IsOneWindowThatHoldsUpNothing) {
    EXPECT_FALSE(about->isModal());
    window.showAbout({});
    EXPECT_EQ(window.findChildren<frmAbout*>().size(), 1);
    const FileManager files;
    for (const char* name : {"cmdStartDir", "cmdSysInfo", "cmdOpenDataFolder"}) click(name);
    EXPECT_EQ(events.seen, (Seen{"start", "system info"}));
    EXPECT_EQ(files.shown, QStringList{QStringLiteral("/srv/data")});
    QTest::keyClick(about, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<frmAbout*>() == nullptr; }));
    EXPECT_TRUE(window.isVisible());
}

TEST_F(AboutTest, CopiesTheDiagnostics) {
    const QSize size = about->size();
    click("cmdCopyDiagnostics");
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              QStringLiteral("diagnostics of Qt %1 (offscreen)").arg(QString::fromLatin1(qVersion())));
    EXPECT_NE(textOf("lblCopied"), "");
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(about->size(), size);
}

}  // namespace vantrell::test

#include "about_test.moc"
