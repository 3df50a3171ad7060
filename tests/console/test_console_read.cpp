// The console's read tabs: replies decoded into texts, lamps and bit rows.

#include "console/frmMAINQZ7740.h"
#include "forms/BitRow.h"
#include "forms/Lamp.h"
#include "support/FakeLibrary.h"
#include "support/Harness.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using qztest::Harness;

TEST(ConsoleRead, DPS1ReplyOfTheStartWord) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    h.trace.fresh();
    QTest::mouseClick(f->READPMU, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 221 0000 0082 OUT 0 -> 0",
                                                          "VR 221 0000 0000 IN 3 -> 0 : 50 99 02"}));
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("029950"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("820000"));
    EXPECT_EQ(f->RPMU[0]->text(), QStringLiteral("Force Amplifier enabled"));
    EXPECT_EQ(f->RPMU[1]->text(), QStringLiteral("Current Range = 2.5mA"));
    EXPECT_EQ(f->RPMU[2]->text(), QStringLiteral("COMPARATOR o/p Hi-Z"));
    EXPECT_TRUE(f->RPMU[3]->isHidden());
    EXPECT_EQ(f->RPMU[4]->text(), QStringLiteral("CLAMPS ENABLED"));
    EXPECT_EQ(f->RPMU[5]->text(), QStringLiteral("MEASOUT = V SENSE"));
    EXPECT_EQ(f->txtRPMU->digits(), QStringLiteral("000000101001100101010000"));
}

TEST(ConsoleRead, DPS2AndAlarmStatus) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    QTest::mouseClick(f->cmdReadDPS2, Qt::LeftButton);
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("030000"));
    EXPECT_EQ(f->txtRDPS2->digits(), QStringLiteral("000000110000000000000000"));
    h.trace.fresh();
    QTest::mouseClick(f->READALARM, Qt::LeftButton);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), std::vector<int>{0xC40000});
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("44FFC0"));
    for (forms::Lamp* lamp : f->cmdTEMP) {
        EXPECT_EQ(lamp->text(), QStringLiteral("OK"));
        EXPECT_EQ(lamp->colourValue(), 0x008000);
    }
    EXPECT_EQ(f->txtALM->digits(), QStringLiteral("010001001111111111000000"));
}

TEST(ConsoleRead, WithoutABoardTheDecodersShowAnEmptyReply) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    fake->boards = 0;
    fake->requestStatus = 3001;
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    QTest::mouseClick(f->READPMU, Qt::LeftButton);
    QTest::mouseClick(f->readSYS, Qt::LeftButton);
    QTest::mouseClick(f->READCOMP, Qt::LeftButton);
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("000000"));
    EXPECT_EQ(f->RPMU[0]->text(), QStringLiteral("Force Amplfier Disabled"));
    EXPECT_EQ(f->RPMU[1]->text(), QStringLiteral("Current Range = 5uA"));
    EXPECT_EQ(f->RPMU[2]->text(), QStringLiteral("COMPARATOR o/p Hi-Z"));
    EXPECT_FALSE(f->RPMU[3]->isHidden());
    EXPECT_EQ(f->RPMU[3]->text(), QStringLiteral("MEASOUT Hi-Z"));
    EXPECT_EQ(f->RPMU[5]->text(), QStringLiteral("MEASOUT = Hi-Z"));
    EXPECT_EQ(f->RPMU[4]->text(), QStringLiteral("CLAMPS DISABLED"));
    EXPECT_EQ(f->lbltemp->text(), QStringLiteral("130degC"));
    EXPECT_EQ(f->lblGAIN1->text(), QStringLiteral("MEASOUT GAIN = 1"));
    EXPECT_EQ(f->lblGAIN0->text(), QStringLiteral("ISENSE GAIN = 20"));
    EXPECT_EQ(f->lblfin->text(), QStringLiteral("Force Amp i/p = FINDAC"));
    EXPECT_EQ(f->lblcpo->text(), QStringLiteral("Comparator info on CPOL & CPOH"));
    EXPECT_EQ(f->lblPD->text(), QStringLiteral("DPS powered down"));
    for (forms::Lamp* lamp : f->cmdTEMP) {
        EXPECT_EQ(lamp->text(), QStringLiteral("HOT"));
        EXPECT_EQ(lamp->colourValue(), 0x0000FF);
    }
}

TEST(ConsoleRead, LampsOfAPartlyHotReply) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    lib->replies = {{0x00, 0x40, 0x43}};  // TMPALM fine, its latched form hot
    QTest::mouseClick(f->READCOMP, Qt::LeftButton);
    EXPECT_EQ(f->cmdTEMP[0]->text(), QStringLiteral("HOT"));
    EXPECT_EQ(f->cmdTEMP[1]->text(), QStringLiteral("OK"));
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("434000"));

    lib->replies = {{0x00, 0xC0, 0x43}};  // both temperature bits high: no alarm
    QTest::mouseClick(f->READCOMP, Qt::LeftButton);
    for (forms::Lamp* lamp : f->cmdTEMP) {
        EXPECT_EQ(lamp->text(), QStringLiteral("OK"));
        EXPECT_EQ(lamp->colourValue(), 0x008000);
    }
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("43C000"));
}
