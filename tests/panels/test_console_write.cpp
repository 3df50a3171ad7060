// The console's write tabs: each control's field operation, the WRITE buttons, the
// switch panel, the tab operations and the silicon revision, checked on the trace.

#include "console/frmMAINQZ7740.h"
#include "forms/BitRow.h"
#include "forms/TabControl.h"
#include "support/ConsoleFixture.h"
#include "support/Harness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using qztest::clickBox;
using qztest::Harness;
using qztest::pick;

namespace {

class ConsoleWrite : public qztest::ConsoleFixture {
protected:
    ConsoleWrite() : ConsoleFixture(-1) {}
};

} // namespace

TEST_F(ConsoleWrite, ACurrentRangeComposesTheWordAndTheWriteButtonSendsIt) {
    pick(f->cboCurrent, 5);
    EXPECT_EQ(g.PMUreg, 0x02A950);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("02A950"));
    EXPECT_TRUE(sent().empty()) << "a field change alone sends nothing while no twin answers";
    QTest::mouseClick(f->cmdWRITEPMU, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0x02A950});
    EXPECT_EQ(f->txtPMU->digits(), QStringLiteral("000000101010100101010000"));
    EXPECT_EQ(h.board->reg(0x02), 0xA950);
}

TEST_F(ConsoleWrite, PowerDownAndTheSystemWriteButton) {
    clickBox(f->chkPD);
    EXPECT_FALSE(f->chkPD->isChecked());
    EXPECT_EQ(g.SYSreg, 0x012000);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("012000"));
    QTest::mouseClick(f->cmdWRITESYS, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0x012000});
    EXPECT_EQ(f->txtSYS->digits(), QStringLiteral("000000010010000000000000"));
}

TEST_F(ConsoleWrite, GainListsSetTheCurrentGainAndShowTheWarning) {
    pick(f->IMEASG, 1);
    EXPECT_EQ(g.imeasGain, 10.0f);
    EXPECT_EQ(g.SYSreg, 0x013200);
    pick(f->IMEASG, 0);
    EXPECT_EQ(g.imeasGain, 20.0f);
    EXPECT_EQ(g.SYSreg, 0x012200);

    pick(f->MEASOUTG, 1);
    QWidget* warning = h.nav.loaded(QStringLiteral("frmMEASOUTGAIN"));
    ASSERT_NE(warning, nullptr);
    EXPECT_TRUE(warning->isVisible());
    EXPECT_EQ(g.SYSreg, 0x010200) << "the panel goes on without waiting for the warning";
    EXPECT_EQ(warning->windowTitle(), QStringLiteral("QZ7740 MEASOUT GAIN [virtual board]"));
    EXPECT_FALSE(warning->isModal());
    EXPECT_EQ(warning->findChild<QLabel*>(QStringLiteral("lblLine1"))->text(),
              QStringLiteral("YOU HAVE SELECTED TO CHANGE THE MEASOUT GAIN FROM 0.2 TO 1,"));
    EXPECT_EQ(warning->findChild<QLabel*>(QStringLiteral("lblLine2"))->text(),
              QStringLiteral("IF LINK 4 IS INSERTED, PLEASE REMOVE IT NOW"));
    EXPECT_TRUE(warning->findChild<QPushButton*>(QStringLiteral("cmdOK"))->isDefault());
    EXPECT_EQ(warning->findChild<QPushButton*>(QStringLiteral("cmdSysInfo"))->text(), QStringLiteral("Cancel"));
    QTest::mouseClick(warning->findChild<QPushButton*>(QStringLiteral("cmdSysInfo")), Qt::LeftButton);
    EXPECT_EQ(g.SYSreg, 0x012200) << "Cancel puts the gain of 0.2 back in the shadow";
    EXPECT_EQ(f->Text1->text(), QStringLiteral("012200"));
    EXPECT_EQ(f->MEASOUTG->currentIndex(), 1) << "the list is not moved";
    EXPECT_TRUE(sent().empty());
    QApplication::processEvents();
    EXPECT_EQ(h.nav.loaded(QStringLiteral("frmMEASOUTGAIN")), nullptr);

    g.SYSreg = 0x0132FF;
    pick(f->MEASOUTG, 1);
    warning = h.nav.loaded(QStringLiteral("frmMEASOUTGAIN"));
    ASSERT_NE(warning, nullptr);
    QTest::mouseClick(warning->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    EXPECT_EQ(g.SYSreg, 0x011200);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("011200"));
}

TEST_F(ConsoleWrite, GangModeIsSentAtOnceAndOtherDPS2FieldsWait) {
    pick(f->cboSlave, 2);
    EXPECT_EQ(sent(), std::vector<int>{0x030400});
    clickBox(f->Check2);
    EXPECT_EQ(g.DPS2reg, 0x030480);
    pick(f->cboSlew, 3);
    EXPECT_EQ(g.DPS2reg, 0x033400) << "any other control takes bit 7 back to 0";
    EXPECT_TRUE(f->Check2->isChecked()) << "the box is not told";
    clickBox(f->chk10k);
    clickBox(f->chkGPO);
    pick(f->cboSysforce, 1);
    EXPECT_EQ(g.DPS2reg, 0x03BD00);
    EXPECT_TRUE(sent().empty());
    QTest::mouseClick(f->cmdWriteDPS2, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0x03BD00});
    EXPECT_EQ(f->txtDPS2->digits(), QStringLiteral("000000111011110100000000"));
}

TEST_F(ConsoleWrite, AlarmWriteRebuildsTheWordFromTheBoxes) {
    for (int n : {3, 5, 7, 9}) clickBox(f->chk[static_cast<size_t>(n)]);
    clickBox(f->chk[10]);
    EXPECT_EQ(f->txtWALM->digits(), QStringLiteral("000000000000000001000000"))
        << "a box writes its digit only when it is clicked";
    QTest::mouseClick(f->cmdALAM, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0x068040});
    EXPECT_EQ(f->txtWALM->digits(), QStringLiteral("000000001000000001000000"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("068040"));
}

TEST_F(ConsoleWrite, ListsThatTakeNoKeys) {
    f->cboCurrent->setFocus();
    QTest::keyClick(f->cboCurrent, Qt::Key_Down);
    f->tempset->setFocus();
    QTest::keyClick(f->tempset, Qt::Key_Down);
    EXPECT_EQ(f->cboCurrent->currentIndex(), -1);
    EXPECT_EQ(f->tempset->currentIndex(), -1);
    EXPECT_EQ(g.PMUreg, 0x029950);
    EXPECT_EQ(g.SYSreg, 0x012200);
}

TEST_F(ConsoleWrite, PinsAndSwitch) {
    clickBox(f->chkHWINHB);
    clickBox(f->chkHWINHB);
    clickBox(f->chkCLEN);
    clickBox(f->Check1);
    clickBox(f->Check1);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{
                                   "VR 227 0000 0000 OUT 0 -> 0", "VR 226 0000 0000 OUT 0 -> 0",
                                   "VR 235 0000 0000 OUT 0 -> 0", "VR 230 0000 0000 OUT 0 -> 0",
                                   "VR 229 0000 0000 OUT 0 -> 0"}));
    EXPECT_FALSE(h.board->pins().clampPin);
    g.entryBusy = true;
    clickBox(f->Check1);
    EXPECT_TRUE(h.trace.fresh().empty());
}

TEST_F(ConsoleWrite, SwitchChannelOnlyWithMeasoutGainPointTwo) {
    clickBox(f->optComp0[0]);
    EXPECT_EQ(h.trace.fresh(), std::vector<std::string>{"VR 228 0000 0000 OUT 0 -> 0"});
    EXPECT_EQ(h.board->pins().switchChannel, 0);
    g.SYSreg = 0x010200;  // MEASOUT gain 1
    clickBox(f->optComp0[2]);
    EXPECT_TRUE(h.trace.fresh().empty());
    EXPECT_TRUE(f->optComp0[3]->isChecked());
    EXPECT_FALSE(f->optComp0[2]->isChecked());
}

TEST_F(ConsoleWrite, TabsShowTheirWordOrReadTheAlarms) {
    f->QZ7740->setCurrentIndex(1);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("029950"));
    f->QZ7740->setCurrentIndex(3);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("06AA80"));
    f->QZ7740->setCurrentIndex(2);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("000000")) << "the last DAC word";
    f->QZ7740->setCurrentIndex(7);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("930000"));
    f->QZ7740->setCurrentIndex(5);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("012200"));
    EXPECT_TRUE(h.trace.fresh().empty());
    f->QZ7740->setCurrentIndex(8);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 221 0000 00C3 OUT 0 -> 0",
                                                          "VR 221 0000 0000 IN 3 -> 0 : C0 FF 43"}));
}

TEST_F(ConsoleWrite, SiliconRevisionBehindTheTestRegisters) {
    QTest::mouseClick(f->Command1, Qt::LeftButton);
    const std::vector<std::string> lines = h.trace.fresh();
    EXPECT_EQ(qztest::wordsSent(lines),
              (std::vector<int>{0x56A7C2, 0x56B1D8, 0x52C4E8, 0xD30000, 0x56B1DA}));
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[4], "VR 221 0000 0000 IN 3 -> 0 : 02 00 53");
    EXPECT_EQ(f->Text2->text(), QStringLiteral("000002"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("56B1DA"));
}
