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
    QWidget* warning = h.nav.loaded(forms::Form::frmMEASOUTGAIN);
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
    EXPECT_EQ(h.nav.loaded(forms::Form::frmMEASOUTGAIN), nullptr);

    g.SYSreg = 0x0132FF;
    pick(f->MEASOUTG, 1);
    warning = h.nav.loaded(forms::Form::frmMEASOUTGAIN);
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
    clickBox(f->optComp0[0]);
    EXPECT_TRUE(h.trace.fresh().empty());
    EXPECT_TRUE(f->optComp0[3]->isChecked());
    EXPECT_FALSE(f->optComp0[0]->isChecked());
    EXPECT_EQ(h.board->pins().switchChannel, 0) << "the switch stays where it was";
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

namespace {

QStringList itemsOf(const QComboBox* list) {
    QStringList items;
    for (int i = 0; i < list->count(); ++i) items << list->itemText(i);
    return items;
}

} // namespace

// Captions, list items and start texts as the operator reads them; a typo here is a
// label that no longer matches the data sheet.
TEST_F(ConsoleWrite, ControlsCarryTheirCaptionsItemsAndStartTexts) {
    const QStringList tabs = {"WRITE SYSTEM CONTROL REG", "WRITE DPS1 REG", "WRITE DPS2 REG",
                              "ALARM SETUP REG", "WRITE DAC REG", "READ SYSTEM CONTROL REG",
                              "READ DPS1 REG", "READ DPS2 REG", "READ ALARM STATUS",
                              "READ DAC REG"};
    ASSERT_EQ(f->QZ7740->count(), tabs.size());
    for (int i = 0; i < tabs.size(); ++i) EXPECT_EQ(f->QZ7740->tabButton(i)->text(), tabs[i]);

    const std::vector<std::pair<const char*, QStringList>> lists = {
        {"IMEASG", {"I MEAS GAIN = 20", "I MEAS GAIN = 10"}},
        {"MEASOUTG", {"MEASOUT GAIN =0.2", "MEASOUT GAIN = 1"}},
        {"tempset", {"TJ = 130degC", "TJ = 120degC", "TJ = 110degC", "TJ = 100degC"}},
        {"cboCurrent", {"±5uA", "±25uA", "±250uA", "±2.5mA", "±25mA", "±Ext Range 2",
                        "±Ext Range1"}},
        {"cboCompare", {"Compare o/p Hi-Z", "Compare o/p Hi-Z", "Compare Current",
                        "Compare Voltage"}},
        {"cboMEASURE", {"MEASOUT Hi-Z ", "MEASOUT = ISENSE", "MEASOUT = VSENSE",
                        "MEASOUT = KSENSE", "MEASOUT = TSENSE", "MEASOUT = DUTGND SENSE",
                        "MEASOUT = DIAG A", "MEASOUT = DIAG B"}},
        {"cboSysforce", {"Hi-Z SYS_FORCE & SENSE", "CONNECT TO FOHx MEASVHx"}},
        {"cboSlew", {"1 V/us", "0.875 V/us", "0.75 V/us", "0.625 V/us", "0.5 V/us",
                     "0.4375 V/us", "0.35 V/us", "0.3125 V/us"}},
        {"cboSlave", {"MASTER - Copy Voltage", "MASTER - Copy Current", "SLAVE - FV",
                      "SLAVE - F1"}},
    };
    for (const auto& [name, items] : lists) {
        const auto* list = f->findChild<QComboBox*>(QString::fromLatin1(name));
        ASSERT_NE(list, nullptr) << name;
        EXPECT_EQ(itemsOf(list), items) << name;
        EXPECT_EQ(list->currentIndex(), -1) << name << " starts with no item chosen";
    }
    const std::vector<std::pair<const char*, const char*>> startTexts = {
        {"cboCurrent", "2.5mA"},
        {"cboMEASURE", "MEASOUT = VSENSE"},
        {"cboCompare", "Compare o/p Hi-Z"},
        {"MEASOUTG", "MEASOUT GAIN = 0.2"},
        {"IMEASG", "I MEAS GAIN =20"},
        {"tempset", "ENABLED AT 130degC"},
        {"cboSlew", "1 V/us"},
        {"cboSlave", "MASTER"},
        {"cboSysforce", "SYSTEM FORCE/SENSE Disconnected"},
    };
    for (const auto& [name, text] : startTexts)
        EXPECT_EQ(f->findChild<QComboBox*>(QString::fromLatin1(name))->currentText(),
                  QString::fromUtf8(text))
            << name;

    const std::vector<std::pair<const char*, const char*>> captions = {
        {"chkPD", "/POWER DOWN"},
        {"chkFINGND", "FIN connected to GND"},
        {"CPEN", "ENABLE COMPARATOR AS WINDOW"},
        {"chkENABLECH", "/SW-INH"},
        {"chkMEASOUT", "MEASOUT ENABLE"},
        {"chkCLAMPEN", "CL EN (Software Bit)"},
        {"chkGPO", "GPO"},
        {"chk10k", "10K Resistor connected between Force/Sense"},
        {"Check2", "Bit 7 Guard Disable"},
        {"cmdWRITESYS", "WRITE SYSTEM CONTROL REGISTER"},
        {"cmdWRITEPMU", "WRITE DPS1 REGISTER"},
        {"cmdWriteDPS2", "WRITE DPS2 REGISTER"},
        {"cmdALAM", "WRITE ALARM REGISTER"},
        {"Command1", "Read Silicon Rev"},
        {"cmdEXIT", "EXIT"},
        {"cmdREADADC", "READ ADC"},
        {"cmdRESET", "RESET QZ7740"},
    };
    for (const auto& [name, caption] : captions) {
        const auto* control = f->findChild<QAbstractButton*>(QString::fromLatin1(name));
        ASSERT_NE(control, nullptr) << name;
        EXPECT_EQ(control->text(), QString::fromLatin1(caption)) << name;
    }
    EXPECT_EQ(f->windowTitle(), QStringLiteral("QZ7740 MAIN MENU [virtual board]"));
}
