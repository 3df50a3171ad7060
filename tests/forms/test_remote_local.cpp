// Remote and local on the real panels: the operator's clicks and keys held back while a
// client has the program, the remote's own events passing, the Local key, and the watch on
// the operator's modal boxes.

#include "forms/Entry.h"
#include "forms/RemoteLocal.h"
#include "support/ConsoleFixture.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

using qztest::child;
using qztest::clickBox;
using State = forms::RemoteLocal::State;

namespace {

class RemoteLocal : public qztest::ConsoleFixture {
  protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        qztest::Harness::activate(m);
    }
    void TearDown() override { rl.clientGone(); }
    // The operator's press on a list of the panels (on its text box, which opens it as
    // the arrow does) opens it.
    static bool pressOpens(QComboBox* list) {
        QTest::mouseClick(list->lineEdit(), Qt::LeftButton);
        const bool open = list->view()->isVisible();
        list->hidePopup();
        return open;
    }
    forms::RemoteLocal& rl = forms::remoteLocal();
};

} // namespace

TEST_F(RemoteLocal, TheOperatorsInputIsHeldWhileRemoteAndTheRemotesOwnEventsPass) {
    ASSERT_TRUE(m->centralWidget()->isAncestorOf(m->chkPD));
    const bool pd = m->chkPD->isChecked();
    rl.clientCommand(QStringLiteral("127.0.0.1"));
    clickBox(m->chkPD);
    EXPECT_EQ(m->chkPD->isChecked(), pd);
    EXPECT_FALSE(pressOpens(m->cboCurrent));
    QTest::keyClicks(m->txtV, QStringLiteral("7"));
    EXPECT_TRUE(m->txtV->text().isEmpty()) << "no typing";
    m->txtV->setText(QStringLiteral("1"));
    QTest::keyClick(m->txtV, Qt::Key_Return);
    EXPECT_TRUE(sent().empty()) << "the operator's Enter is held";
    // The remote works the box by an Enter sent from code.
    forms::pressEnter(m->txtV);
    EXPECT_EQ(sent(), (std::vector<int>{0x029950, 0x029950, 0x0889FE}));
    EXPECT_EQ(m->txtOutputV->text(), QStringLiteral("01.000"));

    // A button that only goes to another panel stays the operator's.
    QTest::mouseClick(m->Command1, Qt::LeftButton);
    EXPECT_TRUE(h.nav.loaded(forms::Form::frmMeasure) && h.nav.loaded(forms::Form::frmMeasure)->isVisible());

    // Local, from the status bar: the panel is the operator's until the next command.
    QTest::mouseClick(child<QPushButton>(m, "cmdLocal"), Qt::LeftButton);
    EXPECT_EQ(rl.state(), State::Local);
    clickBox(m->chkPD);
    EXPECT_EQ(m->chkPD->isChecked(), !pd);
    EXPECT_FALSE(sent().empty());
    EXPECT_TRUE(pressOpens(m->cboCurrent));
    QTest::keyClicks(m->txtV, QStringLiteral("7"));
    EXPECT_EQ(m->txtV->text(), QStringLiteral("17"));
}

// The remote waits while the operator reads a box, and goes on once the last box has
// closed and the code that opened it has finished.
TEST(RemoteLocalOperator, BusyWhileAModalBoxIsOpenAndFreeOnceAfterTheLast) {
    forms::RemoteLocal& rl = forms::remoteLocal();
    int frees = 0, open = 0; // boxes whose exec has not returned
    bool freedInABox = false, busy[3] = {};
    rl.onOperatorFree = [&] {
        ++frees;
        freedInABox = freedInABox || open > 0;
    };
    EXPECT_FALSE(rl.operatorBusy());
    auto run = [&](QMessageBox& box) {
        ++open;
        box.exec();
        --open;
    };
    QMessageBox outer(QMessageBox::Warning, QStringLiteral("Outer"), QStringLiteral("x"),
                      QMessageBox::Ok);
    QMessageBox inner(QMessageBox::Warning, QStringLiteral("Inner"), QStringLiteral("y"),
                      QMessageBox::Ok);
    QTimer::singleShot(0, &outer, [&] {
        busy[0] = rl.operatorBusy();
        QTimer::singleShot(0, &inner, [&] {
            busy[1] = rl.operatorBusy();
            inner.accept();
        });
        run(inner);
        QCoreApplication::processEvents();
        busy[2] = rl.operatorBusy(); // the outer box is still open
        outer.accept();
        // Events served before the box's loop has ended are still inside the box.
        QCoreApplication::processEvents();
    });
    run(outer);
    EXPECT_TRUE(busy[0] && busy[1] && busy[2]);
    EXPECT_EQ(frees, 0) << "not inside the box's own loop";
    EXPECT_FALSE(rl.operatorBusy());
    EXPECT_TRUE(QTest::qWaitFor([&] { return frees > 0; }, 5000));
    // Once: neither the events still to serve nor another window going calls it again.
    QWidget other;
    other.show();
    other.hide();
    QCoreApplication::processEvents();
    EXPECT_EQ(frees, 1);
    EXPECT_FALSE(freedInABox);
    rl.onOperatorFree = {};
}
