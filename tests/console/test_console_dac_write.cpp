// The console's DAC write page: each entry field's word, its refusals, the reload of
// x1 after m and c, the ramp words and the reference voltage.

#include "console/frmMAINQZ7740.h"
#include "forms/BitRow.h"
#include "forms/TabControl.h"
#include "support/ConsoleFixture.h"
#include "support/Harness.h"

#include <QLineEdit>
#include <QRadioButton>

using qztest::clickBox;
using qztest::Harness;

namespace {

class ConsoleDacWrite : public qztest::ConsoleFixture {
protected:
    ConsoleDacWrite() : ConsoleFixture(4) {}
    void enter(QLineEdit* box, const QString& text) { Harness::enter(box, text); }
};

constexpr const char* kInvalid = "Not a valid number. Please reenter it.";

} // namespace

TEST_F(ConsoleDacWrite, DacLoadSendsTheWordShowsItAndLeavesDAClastAtZero) {
    f->tabDACS->setCurrentIndex(1);
    h.trace.fresh();
    enter(f->txtFINx1, QStringLiteral("89fe"));
    EXPECT_EQ(sent(), std::vector<int>{0x0889FE});
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("89FE"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("0889FE"));
    EXPECT_EQ(f->txtDAC->digits(), QStringLiteral("000010001000100111111110"));
    EXPECT_EQ(g.DAClast, 0) << "the mirror leaves DAClast at 0 until the next load";
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("01.000"));
    EXPECT_EQ(h.board->reg(0x08), 0x89FE);
}

TEST_F(ConsoleDacWrite, FieldsTidyTheirTextAndWriteTheirRegister) {
    enter(f->txtDGS, QStringLiteral("ff"));
    EXPECT_EQ(f->txtDGS->text(), QStringLiteral("00FF"));
    enter(f->OFFSETx1, QStringLiteral("4000"));
    f->tabDACS->setCurrentIndex(1);
    h.trace.fresh();
    enter(f->txtFINM, QStringLiteral("FFFF0123"));
    h.expectRefusal(f->txtFINM, "Number too large. Please reenter code between 0 and xFFFF.");
    enter(f->txtFINM, QStringLiteral("00000123"));
    EXPECT_EQ(f->txtFINM->text(), QStringLiteral("0123")) << "eight digits keep their last four";
    enter(f->txtFINC, QStringLiteral("8100"));
    EXPECT_EQ(sent(), (std::vector<int>{0x090123, 0x0A8100}))
        << "FIN m and c wait for the next x1 entry";
    EXPECT_EQ(h.board->reg(0x0B), 0x4000);
    EXPECT_EQ(h.board->reg(0x3D), 0x00FF);
}

TEST_F(ConsoleDacWrite, ReloadTakesTheX1TextAsItStands) {
    f->tabDACS->setCurrentIndex(2);
    // Typed but not confirmed: the reload writes it as it reads, past the box's own bound
    // and untidied; the box's bound is its own Enter key's business.
    f->txtCLLx1->setText(QStringLiteral("9000"));
    enter(f->txtCLLM, QStringLiteral("1234"));
    EXPECT_EQ(sent(), (std::vector<int>{0x0E1234, 0x0D9000}));
    EXPECT_EQ(f->txtCLLx1->text(), QStringLiteral("9000"));
    f->txtCLHx1->setText(QStringLiteral("ffff0010"));
    enter(f->txtCLHM, QStringLiteral("2"));
    EXPECT_EQ(sent(), (std::vector<int>{0x110002, 0x100010}));
    EXPECT_TRUE(h.boxes.empty());
    // An x1 box that holds no number stops both words, and is the field refused.
    f->txtCLHx1->setText(QStringLiteral("x"));
    enter(f->txtCLHC, QStringLiteral("3"));
    h.expectRefusal(f->txtCLHx1, "Not a valid number. Please reenter it.");
    EXPECT_EQ(f->txtCLHC->text(), QStringLiteral("3")) << "the entry stays as typed";
}

TEST_F(ConsoleDacWrite, HighClampCodeHasALowerBoundToo) {
    f->tabDACS->setCurrentIndex(2);
    h.trace.fresh();
    enter(f->txtCLHx1, QStringLiteral("7fff"));
    h.expectRefusal(f->txtCLHx1, "Number too small. Please reenter code between 0x8000 and 0xFFFF.");
    enter(f->txtCLHx1, QStringLiteral("FFFF8000"));
    h.expectRefusal(f->txtCLHx1, "Number too small. Please reenter code between 0x8000 and 0xFFFF.");
    enter(f->txtCLHx1, QStringLiteral("10000"));
    h.expectRefusal(f->txtCLHx1, "Number too large. Please reenter code between 0 and 0xFFFF.");
    enter(f->txtCLHx1, QStringLiteral("8000"));
    EXPECT_EQ(sent(), std::vector<int>{0x108000});
}

TEST_F(ConsoleDacWrite, RampFieldsBuildTheirOwnWord) {
    g.DAClast = 0x081234;
    enter(f->txtRAMP, QStringLiteral("FFFF"));
    enter(f->txtRampStep, QStringLiteral("7f"));
    enter(f->txtRCLKDiv, QStringLiteral("ff"));
    EXPECT_EQ(sent(), (std::vector<int>{0x3EFFFF, 0x3F007F, 0x4000FF}));
    EXPECT_EQ(g.DAClast, 0x081234) << "the ramp leaves DAClast alone";
    EXPECT_EQ(f->rampWord, 0) << "the mirror takes the ramp word down to 0";
    EXPECT_EQ(f->txtDAC->digits(), QStringLiteral("010000000000000011111111"));
    EXPECT_EQ(f->txtRCLKDiv->text(), QStringLiteral("00FF"));
}

TEST_F(ConsoleDacWrite, StartCodeAndFinX1WriteTheSameRegisterButOnlyFinShowsTheOutput) {
    enter(f->txtstart, QStringLiteral("4e0c"));
    EXPECT_EQ(sent(), std::vector<int>{0x084E0C});
    f->tabDACS->setCurrentIndex(1);
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("00.000"));
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("4E0C")) << "read back from the chip";
    h.trace.fresh();
    enter(f->txtFINx1, QStringLiteral("4e0c"));
    EXPECT_EQ(sent(), std::vector<int>{0x084E0C});
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("-05.000"));
}

TEST_F(ConsoleDacWrite, OutputFollowsMAndCAndTheReference) {
    f->tabDACS->setCurrentIndex(1);
    enter(f->txtFINM, QStringLiteral("7fff"));
    enter(f->txtFINx1, QStringLiteral("89FE"));
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("-05.906"));
    enter(f->txtFINM, QStringLiteral("ffff"));
    h.trace.fresh();
    // The front panel's reference follows and puts the code of 0 V in txtFINx1 first.
    clickBox(f->optRef[1]);
    EXPECT_EQ(g.VREF, 2.5f);
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("8000"));
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("00.000"));
    enter(f->txtFINx1, QStringLiteral("C000"));
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("03.203"));
    f->txtVREF->setText(QStringLiteral("4.096"));
    clickBox(f->optRef[2]);
    EXPECT_EQ(g.VREF, 4.096f);
    EXPECT_TRUE(m->optRef[2]->isChecked());
    EXPECT_EQ(sent(), std::vector<int>{0x08C000}) << "a reference sends nothing";
}

TEST_F(ConsoleDacWrite, OtherReferenceMustLieFromTwoToFiveVolts) {
    for (const char* bad : {"abc", "0", "", "5.5"}) {
        f->txtVREF->setText(QString::fromLatin1(bad));
        clickBox(f->optRef[2]);
        h.expectRefusal(f->txtVREF, bad[0] == 'a' || bad[0] == 0
                                        ? kInvalid
                                        : "Number outside Reference range. Please reenter reference "
                                          "voltage between 2V and +5V.");
        EXPECT_EQ(g.VREF, 5.0f);
        EXPECT_TRUE(f->optRef[0]->isChecked()) << "the option in use stays selected";
        EXPECT_FALSE(f->optRef[2]->isChecked());
    }
}

TEST_F(ConsoleDacWrite, CodesThatAreNotHexAtTheMomentOfUseAreRefusedOnTheirBox) {
    f->tabDACS->setCurrentIndex(1);
    h.trace.fresh();
    f->txtFINC->setText(QStringLiteral("xyz"));
    enter(f->txtFINx1, QStringLiteral("8000"));
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].text, kInvalid);
    EXPECT_TRUE(f->txtFINC->text().isEmpty());
    EXPECT_TRUE(sent().empty());
    h.boxes.clear();
    f->txtFINC->setText(QStringLiteral("8000"));
    f->OFFSETx1->setText(QStringLiteral("12 45"));
    enter(f->txtFINx1, QStringLiteral("8000"));
    EXPECT_EQ(h.boxes.size(), 1u);
    EXPECT_TRUE(f->txtFINx1->text().isEmpty()) << "an OFFSET that is no code refuses txtFINx1";
    h.boxes.clear();
    // A number past the register is still a number: the arithmetic takes it as it is.
    f->OFFSETx1->setText(QStringLiteral("10000"));
    enter(f->txtFINx1, QStringLiteral("8000"));
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("-12.813"));
    EXPECT_EQ(sent(), std::vector<int>{0x088000});

    // An OFFSET entry shows the output it gives; a FIN m that holds no code stops it
    // before its word leaves, and the OFFSET box keeps what was typed.
    h.trace.fresh();
    f->txtFINM->setText(QStringLiteral("m?"));
    enter(f->OFFSETx1, QStringLiteral("4000"));
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].title, "Entry Error");
    EXPECT_EQ(h.boxes[0].text, kInvalid);
    EXPECT_TRUE(f->txtFINM->text().isEmpty());
    EXPECT_EQ(f->OFFSETx1->text(), QStringLiteral("4000"));
    EXPECT_TRUE(sent().empty());
    EXPECT_EQ(h.board->reg(0x0B), 0x8000);
    h.boxes.clear();
    f->txtFINM->setText(QStringLiteral("FFFF"));
    enter(f->OFFSETx1, QStringLiteral("4000"));
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_EQ(f->OFFSETx1->text(), QStringLiteral("4000"));
    EXPECT_EQ(sent(), std::vector<int>{0x0B4000});
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("06.406"));

    // An empty FIN x1 box (its last entry refused) has no output to show: the OFFSET word
    // still goes and the output box says nothing. A reference then puts a code there: the
    // code of 0 V by the front panel's own OFFSET box, which the console's entry left.
    enter(f->txtFINx1, QStringLiteral("10000"));
    ASSERT_EQ(h.boxes.size(), 1u);
    ASSERT_TRUE(f->txtFINx1->text().isEmpty());
    h.boxes.clear();
    h.trace.fresh();
    enter(f->OFFSETx1, QStringLiteral("2000"));
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_EQ(sent(), std::vector<int>{0x0B2000});
    EXPECT_TRUE(f->txtOutputV->text().isEmpty());
    f->txtOutputV->setText(QStringLiteral("stale"));
    clickBox(f->optRef[1]);
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_EQ(g.VREF, 2.5f);
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("8000"));
    EXPECT_EQ(f->txtOutputV->text(), QStringLiteral("04.805"));
}
