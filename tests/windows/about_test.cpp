// SPDX-License-Identifier: MIT
#include "windows/window_harness.h"

namespace vantrell::test {

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

TEST_F(AboutTest, IsOneWindowThatTellsMuchAndHoldsUpNothing) {
    EXPECT_FALSE(about->isModal());
    QStringList texts;
    for (const auto* label : about->findChildren<QLabel*>()) texts.append(label->text());
    for (const char* text : {"Version 1.2.3", "3.0.9", "/srv/data", "MIT, without any warranty", qVersion()})
        EXPECT_TRUE(texts.contains(QString::fromLatin1(text))) << text;
    window.showAbout({});
    EXPECT_EQ(window.findChildren<frmAbout*>().size(), 1);
    QTest::keyClick(about, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<frmAbout*>() == nullptr; }));
    EXPECT_TRUE(window.isVisible());
}

}  // namespace vantrell::test
