// The About dialog on the virtual board: what it shows, one instance brought forward,
// "OK" and the frame unloading it, and "System Info..." where there is no tool.

#include "shell/frmAbout.h"
#include "shell/frmMEASOUTGAIN.h"
#include "support/ConsoleFixture.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>

using forms::Form;

namespace {

class About : public qztest::ConsoleFixture {
protected:
    frmAbout* open(QWidget* from, const char* entry = "mnuAbout") {
        QAction* a = from->findChild<QAction*>(QString::fromLatin1(entry));
        EXPECT_TRUE(a && a->isEnabled()) << entry;
        if (a) a->trigger();
        auto* about = static_cast<frmAbout*>(h.nav.loaded(Form::frmAbout));
        EXPECT_TRUE(about && about->isVisible());
        return about;
    }
    static int instances() {
        int n = 0;
        for (QWidget* w : QApplication::topLevelWidgets())
            n += w->objectName() == QStringLiteral("frmAbout");
        return n;
    }
};

} // namespace

TEST_F(About, ShowsTitleVersionAndTheUpdateLineOfTheGainWarning) {
    frmAbout* about = open(m);
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(about->windowTitle(), QStringLiteral("About QZ7740 [virtual board]"));
    EXPECT_EQ(about->lblTitle->text(), QStringLiteral("QZ7740"));
    EXPECT_EQ(about->lblVersion->text(), QStringLiteral("Version 1.6.0"));
    EXPECT_TRUE(about->lblDisclaimer->text().isEmpty());
    EXPECT_EQ(about->cmdOK->text(), QStringLiteral("OK"));
    EXPECT_EQ(about->cmdSysInfo->text(), QStringLiteral("&System Info..."));
    EXPECT_FALSE(about->isModal());
    EXPECT_TRUE(about->lblDescription->text().contains(QStringLiteral("www.")));

    auto* gain = static_cast<frmMEASOUTGAIN*>(h.nav.show(Form::frmMEASOUTGAIN));
    ASSERT_NE(gain, nullptr);
    auto* line = gain->findChild<QLabel*>(QStringLiteral("lblDescription"));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->text(), about->lblDescription->text()) << "one update line for both";
    EXPECT_TRUE(sent().empty());
}

TEST_F(About, OneInstanceBroughtForwardThenOkAndTheFrameUnloadIt) {
    frmAbout* about = open(m);
    // From another panel's Help menu, whose entry has another name there.
    EXPECT_EQ(open(h.nav.show(Form::frmMeasure), "menuAbout"), about);
    EXPECT_EQ(instances(), 1);
    EXPECT_TRUE(m->isVisible()) << "showing the dialog hides no panel";

    QTest::mouseClick(about->cmdOK, Qt::LeftButton);
    EXPECT_EQ(h.nav.loaded(Form::frmAbout), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(instances(), 0);

    about = open(f.get());
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(about->lblVersion->text(), QStringLiteral("Version 1.6.0")) << "loaded afresh";
    about->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(h.nav.loaded(Form::frmAbout), nullptr);
    EXPECT_EQ(instances(), 0);
    EXPECT_TRUE(sent().empty());
}

TEST_F(About, SystemInfoWithoutTheToolSaysSoAndStaysOpen) {
    frmAbout* about = open(m);
    ASSERT_NE(about, nullptr);
#ifndef _WIN32
    QTest::mouseClick(about->cmdSysInfo, Qt::LeftButton);
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].title, "QZ7740");
    EXPECT_EQ(h.boxes[0].text, "System Information Is Unavailable At This Time");
    EXPECT_EQ(h.boxes[0].icon, qz::MsgIcon::None);
    EXPECT_EQ(h.nav.loaded(Form::frmAbout), about);
    EXPECT_TRUE(about->isVisible());
    h.boxes.clear();
#endif
    // Where the tool is found it is started, with no message.
    std::vector<std::string> ran;
    qz::SysInfoSystem found;
    found.getKeyValue = [](uint32_t, const std::string&, const std::string& value, std::string& out) {
        out = "C:\\MSInfo\\msinfo32.exe";
        return value == "PATH";
    };
    found.run = [&ran](const std::string& p) { return ran.push_back(p), true; };
    about->useSystem(found);
    QTest::mouseClick(about->cmdSysInfo, Qt::LeftButton);
    EXPECT_EQ(ran, std::vector<std::string>{"C:\\MSInfo\\msinfo32.exe"});
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_EQ(h.nav.loaded(Form::frmAbout), about);
}
