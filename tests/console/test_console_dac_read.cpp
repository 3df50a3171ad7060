// The console's DAC read page: the selection words, the reads and the ramp buttons.

#include "console/frmMAINQZ7740.h"
#include "forms/BitRow.h"
#include "forms/TabControl.h"
#include "support/FakeLibrary.h"
#include "support/ConsoleFixture.h"
#include "support/Harness.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using qztest::Harness;
using qztest::pick;

namespace {

class ConsoleDacRead : public qztest::ConsoleFixture {
protected:
    ConsoleDacRead() : ConsoleFixture(9) {}
};

} // namespace

TEST_F(ConsoleDacRead, ComparatorSelectionWords) {
    pick(f->cboCOMPDACs, 1);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("A80000"));
    pick(f->cboCurrentRange, 7);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("C80000"));
    pick(f->Combo2, 1);
    EXPECT_EQ(f->compFullRead, 0xC90000);
    EXPECT_TRUE(sent().empty()) << "a selection only composes the word";
    QTest::mouseClick(f->cmdREADCOMPDACs, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0xC90000});
    EXPECT_EQ(f->txtDACcomp->text(), QStringLiteral("00FFFF")) << "CPH m of the voltage range";
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("49FFFF"));

    pick(f->cboCOMPDACs, 0);
    pick(f->cboCurrentRange, 6);
    pick(f->Combo2, 2);
    EXPECT_EQ(f->compFullRead, 0xA70000);
    pick(f->cboCurrentRange, 7);
    EXPECT_EQ(f->compRangeRead, 0xC50000);
}

TEST_F(ConsoleDacRead, ComparatorReadBeforeAnyChoiceActsAsTheFirstItems) {
    QTest::mouseClick(f->cmdREADCOMPDACs, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0x930000});
    EXPECT_EQ(f->txtDACcomp->text(), QStringLiteral("000000"));
    EXPECT_EQ(f->txtRDAC->digits(), QStringLiteral("000100110000000000000000"));
}

TEST_F(ConsoleDacRead, FinAndAuxiliaryDacRead) {
    QTest::mouseClick(f->cmdREADDAC, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x8B0000, 0}))
        << "before a choice the list holds the word 0";
    EXPECT_EQ(f->txtOFFSET->text(), QStringLiteral("008000"));
    pick(f->cboDAC, 4);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("BD0000"));
    QTest::mouseClick(f->cmdREADDAC, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x8B0000, 0xBD0000}));
    EXPECT_EQ(f->txtDaccode->text(), QStringLiteral("008000"));
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("3D8000"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("BD0000"));
    EXPECT_EQ(f->txtRDAC->digits(), QStringLiteral("001111011000000000000000"));
    EXPECT_TRUE(f->txtRDGS->text().isEmpty()) << "no operation fills it";
}

TEST_F(ConsoleDacRead, ClampDacRead) {
    pick(f->cboCLAMPS, 3);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("900000"));
    QTest::mouseClick(f->cmdREADCLAMPDACs, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0x900000});
    EXPECT_EQ(f->txtDACC->text(), QStringLiteral("00FFFF"));
}

TEST_F(ConsoleDacRead, RampRegistersAndStatus) {
    QTest::mouseClick(f->cmdREADRAMPREGS, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0xBE0000, 0xBF0000, 0xC00000}));
    EXPECT_EQ(f->txtRRampEnd->text(), QStringLiteral("00FFFF"));
    EXPECT_EQ(f->txtRRCLKDiv->text(), QStringLiteral("00007F"));
    EXPECT_EQ(f->txtRRampStep->text(), QStringLiteral("00007F"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("C00000"));
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("40007F"));

    f->QZ7740->setCurrentIndex(4);  // the ramp buttons stand on the write page
    h.trace.fresh();
    QTest::mouseClick(f->cmdENRAMP, Qt::LeftButton);
    QTest::mouseClick(f->cmdINTRAMP, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x41FFFF, 0x420000}));
    QTest::mouseClick(f->cmdReadEnableRamp, Qt::LeftButton);
    EXPECT_EQ(sent(), std::vector<int>{0xC10000});
    EXPECT_EQ(f->txtRampStatus->text(), QStringLiteral("41FFFF"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("C10000"));
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("40007F")) << "the status has a box of its own";

    h.session->general.entryBusy = true;
    QTest::mouseClick(f->cmdENRAMP, Qt::LeftButton);
    QTest::mouseClick(f->cmdINTRAMP, Qt::LeftButton);
    f->cmdREADRAMPREGS_Click();
    EXPECT_TRUE(sent().empty());
}

TEST(ConsoleDacReadNoBoard, AReplyWithoutItsAddressShowsNoCode) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    fake->requestStatus = 3001;
    fake->boards = 0;
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    f->txtFINx1->setText(QStringLiteral("1234"));
    f->QZ7740->setCurrentIndex(4);
    f->tabDACS->setCurrentIndex(1);
    EXPECT_TRUE(f->txtFINx1->text().isEmpty()) << "0 - 0x080000 is no code";
    QTest::mouseClick(f->cmdREADDAC, Qt::LeftButton);
    EXPECT_TRUE(f->txtOFFSET->text().isEmpty());
    EXPECT_EQ(f->txtDaccode->text(), QStringLiteral("000000"));
}

TEST(ConsoleDacTabs, ChangingTheDacTabReadsTheFinCodeBack) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    f->QZ7740->setCurrentIndex(4);
    h.trace.fresh();
    f->tabDACS->setCurrentIndex(1);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), std::vector<int>{0x880000});
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("8000"));
    f->tabDACS->setCurrentIndex(2);
    f->tabDACS->setCurrentIndex(3);
    EXPECT_TRUE(h.trace.fresh().empty());
    f->txtstart->setText(QStringLiteral("zz"));
    f->tabDACS->setCurrentIndex(0);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), std::vector<int>{0x880000});
    EXPECT_EQ(f->txtstart->text(), QStringLiteral("8000"));
    EXPECT_TRUE(f->lblREADSPI->text().isEmpty()) << "these reads fill their field alone";
}
