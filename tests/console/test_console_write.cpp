// The console's write tabs: the fields without a twin wait for their WRITE button, the
// buttons send the shadow words, and the switch, pins, tabs, silicon revision, gain
// warning and menus, checked on the trace. The fields with a twin are the twins' test's.

#include "forms/BitRow.h"
#include "forms/Controls.h"
#include "support/ConsoleFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using qztest::clickBox;
using qztest::pick;

namespace {

class ConsoleWrite : public qztest::ConsoleFixture {};

struct FieldCase {
    const char* control;
    int item;
    int32_t start;
    int32_t word;
};

// Every data bit set pins what a mask keeps; none set, what the item sets.
const FieldCase kOwnFields[] = {
    {"chkFINGND", 0, 0x01FFFF, 0x01F600}, {"chkFINGND", 1, 0x010000, 0x010800},
    {"CPEN", 0, 0x01FFFF, 0x01FA00},      {"CPEN", 1, 0x010000, 0x010400},
    {"chkMEASOUT", 0, 0x02FFFF, 0x02BEF0}, {"chkMEASOUT", 1, 0x020000, 0x020100},
    {"Check2", 0, 0x03FFFF, 0x03FF00},    {"Check2", 1, 0x03FFFF, 0x03FF80},
    {"chk1", 0, 0x06FFFF, 0x067FC0},      {"chk2", 0, 0x06FFFF, 0x06BFC0},
    {"chk3", 0, 0x06FFFF, 0x06DFC0},      {"chk4", 0, 0x06FFFF, 0x06EFC0},
    {"chk5", 0, 0x06FFFF, 0x06F7C0},      {"chk6", 0, 0x06FFFF, 0x06FBC0},
    {"chk7", 0, 0x06FFFF, 0x06FDC0},      {"chk8", 0, 0x06FFFF, 0x06FEC0},
    {"chk9", 0, 0x06FFFF, 0x06FF40},      {"chk10", 0, 0x06FFFF, 0x06FF80},
    {"chk1", 1, 0x060000, 0x068000},      {"chk6", 1, 0x060000, 0x060400},
    {"chk10", 1, 0x060000, 0x060040},
};

} // namespace

TEST_F(ConsoleWrite, FieldsWithoutATwinChangeOnlyTheShadowAndTheWordBox) {
    for (const FieldCase& c : kOwnFields) {
        SCOPED_TRACE(std::string(c.control) + " item " + std::to_string(c.item));
        int32_t* shadow[] = {&g.SYSreg, &g.PMUreg, &g.DPS2reg, nullptr, nullptr, &g.ALMreg};
        int32_t& word = *shadow[(c.word >> 16) - 1];
        word = c.start;
        auto* box = f->findChild<QCheckBox*>(QString::fromLatin1(c.control));
        ASSERT_NE(box, nullptr);
        box->setChecked(c.item == 0);
        clickBox(box);
        EXPECT_EQ(word, c.word);
        EXPECT_EQ(f->Text1->text().toInt(nullptr, 16), c.word);
        EXPECT_TRUE(sent().empty());
    }
    EXPECT_EQ(f->txtWALM->digits(), QStringLiteral("000000001000010001000000"))
        << "each alarm box writes its own digit";
}

TEST_F(ConsoleWrite, TheWriteButtonsSendTheirShadowWords) {
    g.SYSreg = 0x012A00;
    QTest::mouseClick(f->cmdWRITESYS, Qt::LeftButton);
    g.PMUreg = 0x02FFFF;
    QTest::mouseClick(f->cmdWRITEPMU, Qt::LeftButton);
    g.DPS2reg = 0x030080;
    QTest::mouseClick(f->cmdWriteDPS2, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x012A00, 0x02FFF0, 0x030080}));
    EXPECT_EQ(f->txtSYS->digits(), QStringLiteral("000000010010101000000000"));
    EXPECT_EQ(f->txtPMU->digits(), QStringLiteral("000000101111111111110000"));
    EXPECT_EQ(f->txtDPS2->digits(), QStringLiteral("000000110000000010000000"));
    EXPECT_EQ(g.PMUreg, 0x02FFF0);
}

TEST_F(ConsoleWrite, TheAlarmWriteRebuildsItsWordFromTheBoxes) {
    for (int n : {3, 5, 7, 9}) clickBox(f->chk[static_cast<size_t>(n)]);
    clickBox(f->chk[10]);
    g.ALMreg = 0x06003F;
    QTest::mouseClick(f->cmdALAM, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0x068040});
    EXPECT_EQ(f->txtWALM->digits(), QStringLiteral("000000001000000001000000"));
}

TEST_F(ConsoleWrite, GangModeGoesOutAtOnceAndBitSevenFallsToAnyOtherField) {
    clickBox(f->Check2);
    EXPECT_EQ(g.DPS2reg, 0x030080);
    pick(f->cboSlew, 3);
    EXPECT_EQ(sent(), std::vector<int>{0x033000}) << "through the front panel's twin";
    EXPECT_TRUE(f->Check2->isChecked()) << "the box is not told";
    pick(f->cboSlave, 2);
    EXPECT_EQ(sent(), (std::vector<int>{0x033400, 0x033400}));
}

TEST_F(ConsoleWrite, TheGainOfOneShowsItsWarningWhichPutsTheShadowRight) {
    g.SYSreg = 0x0132FF;
    pick(f->MEASOUTG, 1);
    EXPECT_EQ(sent(), std::vector<int>{0x011200}) << "the gain of 1 goes out while the warning stands";
    QWidget* warning = h.nav.loaded(forms::Form::frmMEASOUTGAIN);
    ASSERT_NE(warning, nullptr);
    EXPECT_TRUE(warning->isVisible());
    EXPECT_FALSE(warning->isModal());
    EXPECT_EQ(warning->windowTitle(), QStringLiteral("QZ7740 MEASOUT GAIN [virtual board]"));
    EXPECT_EQ(warning->findChild<QLabel*>(QStringLiteral("lblLine1"))->text(),
              QStringLiteral("YOU HAVE SELECTED TO CHANGE THE MEASOUT GAIN FROM 0.2 TO 1,"));
    EXPECT_EQ(warning->findChild<QLabel*>(QStringLiteral("lblLine2"))->text(),
              QStringLiteral("IF LINK 4 IS INSERTED, PLEASE REMOVE IT NOW"));
    EXPECT_TRUE(warning->findChild<QPushButton*>(QStringLiteral("cmdOK"))->isDefault());
    g.SYSreg = 0x0132FF;
    QTest::mouseClick(warning->findChild<QPushButton*>(QStringLiteral("cmdOK")), Qt::LeftButton);
    EXPECT_EQ(g.SYSreg, 0x011200) << "OK clears bit 13 and bits 7..0";
    EXPECT_EQ(f->Text1->text(), QStringLiteral("011200"));
    QApplication::processEvents();
    EXPECT_EQ(h.nav.loaded(forms::Form::frmMEASOUTGAIN), nullptr);

    pick(f->MEASOUTG, 0);
    pick(f->MEASOUTG, 1);
    warning = h.nav.loaded(forms::Form::frmMEASOUTGAIN);
    ASSERT_NE(warning, nullptr);
    sent();
    QTest::mouseClick(warning->findChild<QPushButton*>(QStringLiteral("cmdSysInfo")), Qt::LeftButton);
    EXPECT_EQ(g.SYSreg, 0x013200) << "Cancel sets bit 13 back in the shadow only";
    EXPECT_EQ(f->MEASOUTG->currentIndex(), 1) << "the list is not moved";
    EXPECT_TRUE(sent().empty());
}

TEST_F(ConsoleWrite, ListsTakeNoKeys) {
    f->cboCurrent->setFocus();
    QTest::keyClick(f->cboCurrent, Qt::Key_Down);
    f->tempset->setFocus();
    QTest::keyClick(f->tempset, Qt::Key_Down);
    EXPECT_EQ(f->cboCurrent->currentIndex(), 3);
    EXPECT_EQ(f->tempset->currentIndex(), -1);
    EXPECT_TRUE(sent().empty());
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

TEST_F(ConsoleWrite, TheSwitchMovesOnlyAtMeasoutGainPointTwo) {
    clickBox(f->optComp0[0]);
    EXPECT_EQ(h.trace.fresh(), std::vector<std::string>{"VR 228 0000 0000 OUT 0 -> 0"});
    g.SYSreg = 0x010200; // MEASOUT gain 1
    clickBox(f->optComp0[2]);
    EXPECT_TRUE(h.trace.fresh().empty());
    EXPECT_TRUE(f->optComp0[3]->isChecked());
    EXPECT_FALSE(f->optComp0[2]->isChecked());
    EXPECT_EQ(h.board->pins().switchChannel, 0) << "the switch stays where it was";
}

TEST_F(ConsoleWrite, TabsShowTheirWordOrReadTheAlarms) {
    const std::pair<int, const char*> tabs[] = {{1, "029950"}, {3, "06AA80"}, {2, "000000"},
                                                {7, "930000"}, {5, "012200"}, {0, "012200"}};
    for (const auto& [tab, word] : tabs) {
        f->QZ7740->setCurrentIndex(tab);
        EXPECT_EQ(f->Text1->text(), QString::fromLatin1(word)) << tab;
    }
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
}

TEST_F(ConsoleWrite, MainMenuOpensTheFrontPanelAndCloseOnlyHides) {
    EXPECT_TRUE(f->findChild<QAction*>(QStringLiteral("mnuMain"))->isEnabled());
    m->hide();
    f->findChild<QAction*>(QStringLiteral("mnuMain"))->trigger();
    EXPECT_TRUE(m->isVisible());
    f->findChild<QAction*>(QStringLiteral("mnuClose"))->trigger();
    EXPECT_TRUE(f->isHidden());
    EXPECT_EQ(h.nav.loaded(forms::Form::frmMAINQZ7740), f.get()) << "hidden, never unloaded";
    f->findChild<QAction*>(QStringLiteral("mnuExit"))->trigger();
    EXPECT_EQ(h.ends, 1);
    EXPECT_TRUE(sent().empty());
}
