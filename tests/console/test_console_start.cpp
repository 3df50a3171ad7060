// The start of the program as the console runs it, and the reset button.

#include "console/frmMAINQZ7740.h"
#include "forms/BitRow.h"
#include "support/FakeLibrary.h"
#include "support/Harness.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using qztest::Harness;

TEST(ConsoleStart, SendsThePowerOnSeriesInOrder) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    const std::vector<std::string> lines = h.trace.lines();
    ASSERT_GE(lines.size(), 4u);
    const std::vector<std::string> series(lines.begin() + 4, lines.end());
    EXPECT_EQ(series, (std::vector<std::string>{
                          "VR 228 0001 0000 OUT 0 -> 0",
                          "VR 229 0000 0000 OUT 0 -> 0",
                          "VR 226 0000 0000 OUT 0 -> 0",
                          "VR 221 2200 0001 OUT 0 -> 0",
                          "VR 221 2200 0001 OUT 0 -> 0",
                          "VR 221 9950 0002 OUT 0 -> 0",
                          "VR 221 0000 0003 OUT 0 -> 0",
                          "VR 221 AA80 0006 OUT 0 -> 0",
                          "VR 229 0000 0000 OUT 0 -> 0",
                          "VR 234 0000 0000 OUT 0 -> 0",
                          "VR 221 9950 0002 OUT 0 -> 0", // the front panel's range at its load
                      }));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("012200"));
    EXPECT_EQ(f->txtSYS->digits(), QStringLiteral("000000010010001000000000"));
    EXPECT_EQ(f->txtPMU->digits(), QStringLiteral("000000101001100101010000"));
    EXPECT_EQ(f->txtDPS2->digits(), QStringLiteral("000000110000000000000000"));
    // The board is where the series leaves it.
    EXPECT_EQ(h.board->reg(0x01), 0x2200);
    EXPECT_EQ(h.board->reg(0x02), 0x9950);
    EXPECT_EQ(h.board->reg(0x06), 0xAA80);
    EXPECT_EQ(h.board->pins().switchChannel, 1);
    EXPECT_TRUE(h.board->pins().switchEnabled);
    EXPECT_FALSE(h.board->pins().hwInhibit);
    EXPECT_TRUE(h.board->pins().clampPin);
    EXPECT_EQ(h.session->general.VREF, 5.0f);
    EXPECT_TRUE(f->isHidden()) << "the front panel takes over";
    EXPECT_TRUE(h.boxes.empty());
}

TEST(ConsoleStart, WithoutABoardTheSeriesRunsSilently) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    fake->boards = 0;
    fake->searchStatus = 1001;
    fake->connectStatus = 2001;
    fake->firmwareStatus = 3001;
    fake->requestStatus = 3001;
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].title, ": 1001");
    EXPECT_EQ(h.boxes[0].text, "No Evaluation Board Found");
    EXPECT_EQ(qztest::wordsSent(h.trace.lines()),
              (std::vector<int>{0x012200, 0x012200, 0x029950, 0x030000, 0x06AA80, 0x029950}));
    EXPECT_TRUE(h.session->usb.noBoard);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("012200"));
}

TEST(ConsoleStart, ResetPulsesTheChipAndClearsAlarmsLeavingTheShadows) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    const qz::General before = h.session->general;
    h.trace.fresh();
    QTest::mouseClick(f->cmdRESET, Qt::LeftButton);
    QTest::mouseClick(f->cmdRESET, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{
                                   "VR 219 0000 0000 OUT 0 -> 0",
                                   "VR 221 0000 00C4 OUT 0 -> 0",
                                   "VR 219 0000 0000 OUT 0 -> 0",
                                   "VR 221 0000 00C4 OUT 0 -> 0",
                               }));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("C40000"));
    const qz::General& after = h.session->general;
    EXPECT_EQ(after.SYSreg, before.SYSreg);
    EXPECT_EQ(after.PMUreg, before.PMUreg);
    EXPECT_EQ(after.DPS2reg, before.DPS2reg);
    EXPECT_EQ(after.ALMreg, before.ALMreg);
    EXPECT_EQ(h.board->resets(), 2);
    EXPECT_EQ(h.board->reg(0x02), 0x0000) << "the chip is back at its own reset state";
}

TEST(ConsoleStart, ResetDoesNothingWhileAnEntryIsBusy) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    h.trace.fresh();
    h.session->general.entryBusy = true;
    QTest::mouseClick(f->cmdRESET, Qt::LeftButton);
    EXPECT_TRUE(h.trace.fresh().empty());
}

TEST(ConsoleStart, StatusBarFollowsTheLink) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    auto* link = f->findChild<QLabel*>(QStringLiteral("linkStatus"));
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->text(), QStringLiteral("board connected"));
    EXPECT_EQ(f->windowTitle(), QStringLiteral("QZ7740 MAIN MENU")) << "a real board is not labelled";
    lib->link = qz::LinkState::Lost;
    QTest::mouseClick(f->readSYS, Qt::LeftButton);
    EXPECT_EQ(link->text(), QStringLiteral("board lost"));
    EXPECT_TRUE(h.boxes.empty()) << "failures after the start stay silent";
}
