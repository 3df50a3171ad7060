// The operator and a script on one board, through a real socket with the panels open: the
// client's command locks the panels and Local hands them back; a line waits while the
// operator's box is open and nothing the script set is emptied by its close; the
// operator's box during a remote run stays the operator's; a query of a panel not loaded
// during a run sends nothing and loads nothing.

#include "forms/RemoteLocal.h"
#include "measure/frmMeasure.h"
#include "remote/Attach.h"
#include "remote/Server.h"
#include "support/ConsoleFixture.h"
#include "support/RemoteClient.h"
#include "support/RunTools.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using qz::remote::Instrument;
using qz::remote::Server;
using qztest::RemoteClient;

namespace {

class Operator : public qztest::ConsoleFixture {
  protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        std::string why;
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0, why)) << why;
        qz::remote::attachPanels(server);
        qztest::Harness::activate(m);
    }
    void TearDown() override { forms::remoteLocal().clientGone(); }
    // The operator's Enter of text in a box of the front panel.
    void typeInto(QLineEdit* box, const QString& text) {
        box->clear();
        QTest::keyClicks(box, text);
        QTest::keyClick(box, Qt::Key_Return);
    }
    Instrument in{*h.session, h.nav, {"1", {}, {}}};
    Server server{in};
};

TEST_F(Operator, TheClientsCommandsTakeThePanelsAndItsLeavingHandsThemBack) {
    forms::RemoteLocal& state = forms::remoteLocal();
    RemoteClient c(server.port());
    EXPECT_EQ(c.ask("*OPC?"), "1");
    ASSERT_TRUE(state.isRemote());
    EXPECT_EQ(m->findChild<QLabel*>(QStringLiteral("lblRemote"))->text().toStdString(), "REMOTE 127.0.0.1");
    // The operator's click on a setting does nothing while the client has the panels.
    const bool gpo = m->chkGPO->isChecked();
    qztest::clickBox(m->chkGPO);
    EXPECT_EQ(m->chkGPO->isChecked(), gpo);
    EXPECT_TRUE(sent().empty());
    // The lockout locks Local on every panel, one opened since too, and outlives commands.
    EXPECT_EQ(c.ask("SYST:RWL;*OPC?"), "1");
    EXPECT_EQ(c.ask("*OPC?"), "1");
    QWidget* comp = h.nav.show(forms::Form::frmCompensation);
    for (QWidget* p : {static_cast<QWidget*>(m), comp}) {
        EXPECT_TRUE(p->findChild<QLabel*>(QStringLiteral("lblRemote"))->isVisible());
        EXPECT_FALSE(p->findChild<QPushButton*>(QStringLiteral("cmdLocal"))->isEnabled());
    }
    EXPECT_EQ(c.ask("SYST:REM;*OPC?"), "1");
    EXPECT_TRUE(m->findChild<QPushButton*>(QStringLiteral("cmdLocal"))->isEnabled());
    EXPECT_EQ(c.ask("SYST:LOC;*OPC?"), "1");
    EXPECT_FALSE(state.isRemote());
    EXPECT_EQ(c.ask("*OPC?"), "1");
    EXPECT_TRUE(state.isRemote() && !state.isLockedOut());
    // "Disconnect client" on a panel drops the client, and the panels are the operator's.
    m->findChild<QAction*>(QStringLiteral("actDisconnectClient"))->trigger();
    EXPECT_TRUE(c.closed());
    EXPECT_FALSE(state.isRemote());
}

TEST_F(Operator, ALineWaitsForTheOperatorsBoxAndItsCloseEmptiesNothingTheScriptSet) {
    // The real box, with its own loop, for this test.
    forms::setMessageSink({});
    RemoteClient c(server.port());
    std::string answer = "not yet";
    bool sawBox = false;
    QTimer::singleShot(0, [&] {
        QWidget* box = QApplication::activeModalWidget();
        sawBox = box != nullptr;
        c.write("VOLT 2.5;:VOLT?\n");
        // While the box is open the line is kept: no answer, no word.
        QTest::qWait(200);
        if (c.socket.canReadLine()) answer = c.socket.readLine().toStdString();
        EXPECT_TRUE(sent().empty()) << "a line ran inside the operator's box";
        if (box) box->close();
    });
    typeInto(m->txtV, QStringLiteral("abc")); // refused: the box opens
    EXPECT_TRUE(sawBox);
    EXPECT_EQ(answer, "not yet");
    // Once the box is closed and its refusal has emptied the box, the script's line runs.
    EXPECT_EQ(c.line(), "2.5");
    EXPECT_EQ(m->txtV->text().toStdString(), "2.5");
    EXPECT_FALSE(sent().empty());
    forms::setMessageSink(h.session->usb.messageBox);
}

TEST_F(Operator, DuringARemoteRunAQueryLoadsNothingAndTheOperatorsBoxIsTheirs) {
    auto* measure = static_cast<frmMeasure*>(h.nav.load(forms::Form::frmMeasure));
    qztest::ActingClock clock;
    measure->useClock(clock);
    ASSERT_EQ(h.nav.loaded(forms::Form::frmDIAG), nullptr);
    RemoteClient c(server.port());
    std::string answer;
    size_t words = 0;
    clock.at(5, [&] {
        // A query of a panel not loaded, between two points of the client's sweep.
        sent();
        c.write("DIAG:NODE:A?;B?\n");
        answer = c.line();
        words = sent().size();
        // The operator takes the panels back and enters a voltage the front panel refuses.
        EXPECT_TRUE(forms::remoteLocal().pressLocal());
        typeInto(m->txtV, QStringLiteral("99"));
        measure->cmdStop_Click();
    });
    c.write("SWE:RANG 2.5MA;DEL 0.1;STAR -5;STOP 5;STEP 1MV;:INIT:SWE\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !answer.empty() && !in.running(); }, 10000));
    EXPECT_EQ(answer, "11;11");
    EXPECT_EQ(words, 0u);
    EXPECT_EQ(h.nav.loaded(forms::Form::frmDIAG), nullptr);
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].title, "Entry Error");
    EXPECT_EQ(c.ask("SYST:ERR?"), "0,\"No error\"") << "the operator's box is not the script's error";
}

} // namespace
