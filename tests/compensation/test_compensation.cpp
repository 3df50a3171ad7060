// The compensation panel on the virtual board, through its controls by name and the trace:
// each selection's mask on the word the LOAD button then sends, the drawn switches, the
// word boxes and mirrors of the loads and reads, and the load that runs at each creation.

#include "compensation/frmCompensation.h"
#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/TabControl.h"
#include "support/ConsoleFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

using forms::Form;
using qztest::clickBox;
using qztest::Harness;
using qztest::pick;

namespace {

class Comp : public qztest::ConsoleFixture {
protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        open();
        h.trace.fresh();
    }
    void open() {
        c = static_cast<frmCompensation*>(h.nav.show(Form::frmCompensation));
        ASSERT_NE(c, nullptr);
        Harness::activate(c);
    }

    // The operator's choice: a list's item, a box ticked (1) or unticked (0), an option.
    void choose(const char* name, int item = 1) {
        auto* w = c->findChild<QWidget*>(QString::fromLatin1(name));
        ASSERT_NE(w, nullptr) << name;
        if (auto* list = qobject_cast<QComboBox*>(w)) return pick(list, item);
        if (auto* box = qobject_cast<QCheckBox*>(w)) box->setChecked(item == 0);
        clickBox(static_cast<QAbstractButton*>(w));
    }
    void press(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    // The switches drawn closed; each switch shows exactly one of its two drawings.
    QString closedSwitches() {
        std::vector<std::pair<QString, QString>> pairs;
        for (int k = 0; k < 6; ++k)
            pairs.emplace_back(forms::member("SWclosed", k), forms::member("SWopen", k));
        pairs.insert(pairs.end(), {{"cc1ON", "Cc1off"}, {"cc2on", "cc2off"}, {"cc3on", "cc3off"}});
        QStringList closed;
        for (const auto& [on, off] : pairs) {
            auto* a = c->findChild<QWidget*>(on);
            auto* b = c->findChild<QWidget*>(off);
            if (!a || !b) {
                ADD_FAILURE() << "no drawing " << on.toStdString();
                continue;
            }
            EXPECT_NE(a->isHidden(), b->isHidden()) << on.toStdString();
            if (!a->isHidden()) closed << on;
        }
        return closed.join(QLatin1Char(' '));
    }

    frmCompensation* c = nullptr;
};

struct MaskCase {
    const char* control;
    int item;
    int32_t start;
    int32_t word; // the word LOAD then sends
};

// A word with every data bit set pins the bits a mask keeps; with none, the bits it sets.
constexpr int32_t R1 = 0x04FFFF, R1none = 0x040000, R2 = 0x05FFFF, R2none = 0x050000;
const MaskCase kMasks[] = {
    {"Option2(0)", 1, R1, 0x04FF00},     {"Option2(1)", 1, R1, 0x04FF80},
    {"Option2(1)", 1, R1none, 0x040080}, {"cboRC", 0, R1, 0x04F080},
    {"cboRC", 15, R1none, 0x040F00},     {"cboCR", 0, R1, 0x040F80},
    {"cboCR", 15, R1none, 0x04F000},     {"cboRp", 0, R2, 0x05F1FE},
    {"cboRp", 7, R2none, 0x050E00},      {"cboRZ", 0, R2, 0x058FFE},
    {"cboRZ", 7, R2none, 0x057000},      {"cboGM", 0, R2, 0x05FE70},
    {"cboGM", 3, R2none, 0x050180},      {"Option1(6)", 1, R2, 0x05FF8E},
    {"Option1(2)", 1, R2, 0x05FFBE},     {"Option1(0)", 1, R2none, 0x050010},
    {"Option1(5)", 1, R2none, 0x050060}, {"chkCc1", 0, R2, 0x05FFF6},
    {"chkCc1", 1, R2none, 0x050008},     {"chkCc1", 1, R2, 0x05FFFF},
    {"chkCc2", 0, R2, 0x05FFFA},         {"chkCc2", 1, R2none, 0x050004},
    {"chkCc3", 0, R2, 0x05FFFC},         {"chkCc3", 1, R2none, 0x050002},
    {"chkManualMode", 0, R2, 0x057FFE},  {"chkManualMode", 1, R2none, 0x058000},
    {"chkManualMode", 1, R2, 0x05FFFF},
};

} // namespace

TEST_F(Comp, EachSelectionMasksItsShadowAndOnlyTheLoadSendsIt) {
    for (const MaskCase& k : kMasks) {
        SCOPED_TRACE(std::string(k.control) + " item " + std::to_string(k.item));
        const bool second = (k.word >> 16) == 5;
        (second ? g.COMP2reg : g.COMP1reg) = k.start;
        c->Text1->setText(QStringLiteral("-"));
        choose(k.control, k.item);
        EXPECT_TRUE(sent().empty()) << "a selection sends nothing";
        // The manual enable alone leaves the word box until the next selection or load.
        const bool manual = std::string(k.control) == "chkManualMode";
        EXPECT_EQ(c->Text1->text(),
                  manual
                      ? QStringLiteral("-")
                      : QString::number(k.word, 16).toUpper().rightJustified(6, QLatin1Char('0')));
        press(second ? c->cmdWriteCOMP2 : c->cmdWriteCOMP1);
        EXPECT_EQ(sent(), std::vector<int>{k.word});
    }
}

TEST_F(Comp, EveryItemSetsItsIndexAsTheField) {
    // The lists' fields stand at their list index; option k of the CF rows sets k + 1.
    const std::tuple<QComboBox*, int, int32_t*, int32_t, int32_t> lists[] = {
        {c->autoComp.cboRC, 16, &g.COMP1reg, 0x040000, 0x100},
        {c->autoComp.cboCR, 16, &g.COMP1reg, 0x040000, 0x1000},
        {c->cboRp, 8, &g.COMP2reg, 0x050000, 0x200},
        {c->cboRZ, 8, &g.COMP2reg, 0x050000, 0x1000},
        {c->cboGM, 4, &g.COMP2reg, 0x050000, 0x80}};
    for (const auto& [list, items, word, base, step] : lists) {
        ASSERT_EQ(list->count(), items);
        for (int i = 0; i < items; ++i) {
            *word = base;
            pick(list, i);
            EXPECT_EQ(*word, base + i * step) << list->objectName().toStdString() << " " << i;
        }
    }
    for (int k = 0; k < 6; ++k) {
        g.COMP2reg = 0x050000;
        clickBox(c->Option1[static_cast<size_t>(k)]);
        EXPECT_EQ(g.COMP2reg, 0x050000 + (k + 1) * 0x10) << k;
    }
    EXPECT_EQ(c->autoComp.cboRC->itemText(9), QStringLiteral("140 to 250 "));
    EXPECT_EQ(c->autoComp.cboRC->itemText(15), QStringLiteral("64000 to 10000"));
    EXPECT_EQ(c->autoComp.cboCR->itemText(6), QStringLiteral("630nF to 1.1uF"));
    EXPECT_EQ(c->cboRp->itemText(2), QStringLiteral("Rp = 2280, Fp = 8.7MHzk"));
    EXPECT_EQ(c->cboRp->itemText(7), QStringLiteral("Rz = 1M, Fz = 20KHz"));
    EXPECT_EQ(c->cboRZ->itemText(0), QStringLiteral("Rz = 500, Fz = 3.2M"));
    EXPECT_EQ(c->cboGM->itemText(3), QStringLiteral("gm = 10000uA/V, GBW = 1.6MHz"));
    EXPECT_EQ(c->Option1[6]->text(), QStringLiteral("NONE"));
}

TEST_F(Comp, SwitchDrawingsFollowTheOptionsAndTheBoxes) {
    EXPECT_EQ(closedSwitches(), QStringLiteral("SWclosed(0)"));
    for (QRadioButton* o : c->Option1)
        EXPECT_FALSE(o->isChecked());
    choose("Option1(3)");
    EXPECT_EQ(closedSwitches(), QStringLiteral("SWclosed(3)"));
    g.COMP2reg = 0x05FFFF;
    choose("Option1(6)");
    EXPECT_EQ(closedSwitches(), QString());
    EXPECT_EQ(g.COMP2reg & 0x70, 0);
    choose("chkCc2", 1);
    choose("chkCc3", 1);
    choose("chkCc3", 0);
    EXPECT_EQ(closedSwitches(), QStringLiteral("cc2on"));
    EXPECT_EQ(c->txtCP2->digits(), QStringLiteral("000000000000000000000100"));
}

TEST_F(Comp, AGmChoiceDropsTheTickedCcBitsUntilTheBoxIsTickedAgain) {
    choose("chkCc1", 1);
    choose("cboGM", 1);
    EXPECT_TRUE(c->chkCc[0]->isChecked());
    EXPECT_EQ(closedSwitches(), QStringLiteral("SWclosed(0) cc1ON"));
    EXPECT_EQ(c->txtCP2->box(3)->text(), QStringLiteral("1"));
    press(c->cmdWriteCOMP2);
    EXPECT_EQ(sent(), std::vector<int>{0x050080});
    choose("chkCc1", 0);
    choose("chkCc1", 1);
    press(c->cmdWriteCOMP2);
    EXPECT_EQ(sent(), std::vector<int>{0x050088});
}

TEST_F(Comp, ListsWithoutAnItemAndRepeatedModeClicks) {
    g.COMP2reg = 0x05FFFF;
    c->cboRZ->setCurrentIndex(-1);
    forms::click(c->cboRZ);
    EXPECT_EQ(g.COMP2reg, 0x058FFE) << "the field stays cleared";
    EXPECT_EQ(c->Text1->text(), QStringLiteral("058FFE"));
    g.COMP1reg = 0x04FFFF;
    forms::click(c->autoComp.cboCR);
    EXPECT_EQ(g.COMP1reg, 0x040F80);

    choose("Option2(1)");
    choose("Option2(1)");
    EXPECT_EQ(g.COMP1reg, 0x040F80);
    EXPECT_TRUE(c->autoComp.cboRC->isEnabled() && c->autoComp.Label11->isEnabled() && c->autoComp.Label10->isEnabled());
    EXPECT_EQ(c->txtCP1->box(7)->text(), QStringLiteral("1"));
    pick(c->autoComp.cboRC, 4);
    choose("Option2(0)");
    EXPECT_EQ(g.COMP1reg, 0x040400) << "safe mode keeps the fields";
    EXPECT_FALSE(c->autoComp.cboRC->isEnabled() || c->autoComp.cboCR->isEnabled() || c->autoComp.Label9->isEnabled());
    EXPECT_EQ(c->autoComp.cboRC->currentText(), QStringLiteral("6.3 to 12"));
    EXPECT_EQ(c->txtCP1->box(7)->text(), QStringLiteral("0"));
    choose("chkManualMode", 1);
    EXPECT_EQ(c->txtCP2->box(15)->text(), QStringLiteral("1"));
    EXPECT_TRUE(sent().empty());
}

TEST_F(Comp, LoadsAndReadsShowTheirWordsAndMirrors) {
    choose("Option2(1)");
    press(c->cmdREADC1);
    EXPECT_EQ(sent(), std::vector<int>{0x840000});
    EXPECT_EQ(c->lblREADSPI->text(), QStringLiteral("040000"));
    EXPECT_EQ(c->Text1->text(), QStringLiteral("840000"));
    EXPECT_EQ(c->txtCP1->digits(), QStringLiteral("000001000000000000000000")) << "the chip's bits";
    EXPECT_EQ(g.COMP1reg, 0x040080);
    EXPECT_TRUE(c->autoComp.Option2[1]->isChecked());

    press(c->cmdWriteCOMP1);
    EXPECT_EQ(sent(), std::vector<int>{0x040080});
    EXPECT_EQ(c->lblREADSPI->text(), QStringLiteral("040000")) << "LOAD COMP 1 leaves the boxes";
    EXPECT_EQ(c->Text1->text(), QStringLiteral("840000"));
    EXPECT_EQ(c->txtCP1->digits(), QStringLiteral("000001000000000010000000"));
    press(c->cmdREADC1);
    EXPECT_EQ(c->lblREADSPI->text(), QStringLiteral("040080"));
    EXPECT_EQ(sent(), std::vector<int>{0x840000});

    choose("cboRp", 3);
    press(c->cmdREADC2);
    EXPECT_EQ(c->Text1->text(), QStringLiteral("850000"));
    press(c->cmdWriteCOMP2);
    EXPECT_EQ(sent(), (std::vector<int>{0x850000, 0x050600}));
    EXPECT_EQ(c->Text1->text(), QStringLiteral("050600"));
    EXPECT_TRUE(c->lblREADSPI->text().isEmpty()) << "LOAD COMP 2 clears the read box";
    EXPECT_EQ(c->txtCP2->digits(), QStringLiteral("000001010000011000000000"));

    // Register 1's mirror takes words up to 9000000 only, register 2's up to 0x20000000.
    g.COMP1reg = g.COMP2reg = 0x1000001;
    press(c->cmdWriteCOMP1);
    press(c->cmdWriteCOMP2);
    EXPECT_EQ(c->txtCP1->digits(), QStringLiteral("000001000000000010000000"));
    EXPECT_EQ(c->txtCP2->digits(), QStringLiteral("000000000000000000000001"));
    EXPECT_EQ(g.COMP2reg, 0x1000001);
}

TEST_F(Comp, EachCreationLoadsTheBaseWordsAndAShowingOfTheLoadedPanelKeepsThem) {
    EXPECT_EQ(c->windowTitle(), QStringLiteral("QZ7740 COMPENSATION REGISTERS [virtual board]"));
    EXPECT_EQ(c->SSTab1->tabButton(1)->text(), QStringLiteral("COMPENSATION REGISTER 2"));
    EXPECT_FALSE(c->autoComp.cboRC->isEnabled() || c->autoComp.Label11->isEnabled() || c->autoComp.Label9->isEnabled());
    EXPECT_EQ(c->autoComp.cboCR->currentText(), QStringLiteral("Choose Load Capacitance, CR"));
    EXPECT_EQ(c->txtCP1->digits(), QString(24, QLatin1Char('0')));
    choose("Option2(1)");
    choose("cboRC", 3);
    choose("cboGM", 2);
    QTest::mouseClick(m->Command3, Qt::LeftButton);
    QTest::mouseClick(m->cmdManualComp, Qt::LeftButton);
    EXPECT_EQ(h.nav.loaded(Form::frmCompensation), c);
    EXPECT_EQ(c->SSTab1->currentIndex(), 1);
    EXPECT_EQ(g.COMP1reg, 0x040380);

    c->findChild<QAction*>(QStringLiteral("mnuClose"))->trigger();
    EXPECT_EQ(h.nav.loaded(Form::frmCompensation), nullptr);
    pick(m->autoComp.cboCR, 2);
    EXPECT_EQ(sent(), std::vector<int>{0x042380});
    open();
    EXPECT_EQ(g.COMP1reg, 0x040000) << "the front panel's word is dropped too";
    EXPECT_EQ(g.COMP2reg, 0x050000);
    EXPECT_TRUE(c->autoComp.Option2[0]->isChecked());
    EXPECT_FALSE(c->autoComp.cboRC->isEnabled());
    EXPECT_EQ(c->cboGM->currentIndex(), -1);

    choose("Option2(1)");
    c->close(); // the window's frame closes as "Close" does
    EXPECT_EQ(h.nav.loaded(Form::frmCompensation), nullptr);
    open();
    EXPECT_EQ(g.COMP1reg, 0x040000);
    EXPECT_TRUE(sent().empty()) << "a load sends nothing";
}

TEST_F(Comp, ResetMenusAndTheEntryGuard) {
    choose("Option2(1)");
    press(c->cmdRESET);
    EXPECT_EQ(h.trace.fresh(), std::vector<std::string>{"VR 219 0000 0000 OUT 0 -> 0"});
    EXPECT_EQ(c->Text1->text(), QStringLiteral("000000"));
    EXPECT_EQ(g.COMP1reg, 0x040080);

    g.entryBusy = true;
    c->Text1->clear();
    press(c->cmdRESET);
    choose("Option2(0)");
    choose("Option1(2)");
    choose("chkCc1", 1);
    choose("chkManualMode", 1);
    EXPECT_TRUE(h.trace.fresh().empty());
    EXPECT_EQ(g.COMP1reg, 0x040080);
    EXPECT_EQ(g.COMP2reg, 0x050000);
    EXPECT_TRUE(c->Text1->text().isEmpty());
    choose("cboGM", 2);
    EXPECT_EQ(g.COMP2reg, 0x050100) << "the lists do not look at the guard";
    g.entryBusy = false;

    const std::pair<const char*, const char*> menu[] = {{"mnuClose", "Close"},
                                                        {"mnuEnd", "Exit"},
                                                        {"mnuSweepM", "Sweep Voltage Measurements"},
                                                        {"mnuDiag", "Diagnostic Functions"},
                                                        {"mnuMain", "QZ7740 Main Menu"},
                                                        {"mnuAbout", "About"}};
    for (const auto& [name, caption] : menu) {
        auto* a = c->findChild<QAction*>(QString::fromLatin1(name));
        ASSERT_NE(a, nullptr) << name;
        EXPECT_EQ(a->text(), QString::fromLatin1(caption));
    }
    f->hide();
    c->findChild<QAction*>(QStringLiteral("mnuMain"))->trigger();
    EXPECT_TRUE(f->isVisible()) << "the console, not the front panel";
    EXPECT_TRUE(f->findChild<QAction*>(QStringLiteral("mnuComp"))->isEnabled());
    EXPECT_TRUE(m->findChild<QAction*>(QStringLiteral("mnuComp"))->isEnabled());
    EXPECT_TRUE(m->Command3->isEnabled());
    press(c->cmdEXIT);
    c->findChild<QAction*>(QStringLiteral("mnuEnd"))->trigger();
    EXPECT_EQ(h.ends, 2);
    EXPECT_TRUE(h.trace.fresh().empty());
}
