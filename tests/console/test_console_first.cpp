// The console's word box, read of the system control register, and ADC button, on the
// virtual board, checked on the trace.

#include "console/frmMAINQZ7740.h"
#include "forms/BitRow.h"
#include "support/Harness.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using qztest::child;
using qztest::Harness;

namespace {

class ConsoleTest : public ::testing::Test {
protected:
    Harness h;
    std::unique_ptr<frmMAINQZ7740> f;

    void SetUp() override {
        f = std::make_unique<frmMAINQZ7740>(*h.session, h.nav);
        h.nav.adopt(forms::Form::frmMAINQZ7740, f.get());
        f->Form_Load();
        Harness::activate(f.get());
        h.trace.fresh();
    }
    void type(QLineEdit* box, const QString& text) { Harness::enter(box, text); }
    void expectRefusal(QLineEdit* box, const std::string& text) { h.expectRefusal(box, text); }
};

} // namespace

TEST_F(ConsoleTest, StartOpensTheBoardSession) {
    EXPECT_EQ(h.trace.lines().at(0), "SEARCH 1110 45599 -> 1 0");
    EXPECT_EQ(h.trace.lines().at(1), "CONNECT 1 -> 1 0");
    EXPECT_EQ(h.trace.lines().at(2).rfind("FIRMWARE ", 0), 0u);
    EXPECT_NE(h.trace.lines().at(2).find("/QZ7740SPI.hex -> 0"), std::string::npos);
    EXPECT_EQ(h.trace.lines().at(3), "VR 224 0000 0000 OUT 0 -> 0");
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_EQ(f->windowTitle(), QStringLiteral("QZ7740 MAIN MENU [virtual board]"));
    EXPECT_EQ(child<QLabel>(f.get(), "linkStatus")->text(), QStringLiteral("virtual board"));
}

TEST_F(ConsoleTest, AnyWordTypedInText1GoesOut) {
    type(f->Text1, QStringLiteral("812345"));
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 221 2345 0081 OUT 0 -> 0"}));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("812345"));
    type(f->Text1, QStringLiteral("ab"));
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 221 00AB 0000 OUT 0 -> 0"}));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("0000AB"));
    type(f->Text1, QStringLiteral("0"));
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 221 0000 0000 OUT 0 -> 0"}));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("000000"));
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(ConsoleTest, Text1RefusesBadAndOversizeWords) {
    type(f->Text1, QStringLiteral("1000000"));
    expectRefusal(f->Text1, "Number too large. Please reenter code between 0 and xFFFFFF.");
    type(f->Text1, QStringLiteral("zz"));
    expectRefusal(f->Text1, "Not a valid number. Please reenter it.");
    type(f->Text1, QString());
    expectRefusal(f->Text1, "Not a valid number. Please reenter it.");
    type(f->Text1, QStringLiteral("12 34"));
    expectRefusal(f->Text1, "Not a valid number. Please reenter it.");
    type(f->Text1, QString(300, QLatin1Char('9')));
    expectRefusal(f->Text1, "Not a valid number. Please reenter it.");
}

TEST_F(ConsoleTest, Text1ChecksItsTextWhenItLosesTheFocus) {
    f->Text1->setFocus();
    f->Text1->setText(QStringLiteral("abc"));
    QTest::keyClick(f->Text1, Qt::Key_Tab);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("ABC"));
    EXPECT_TRUE(h.boxes.empty());
    f->Text1->setFocus();
    f->Text1->setText(QStringLiteral("q1"));
    QTest::keyClick(f->Text1, Qt::Key_Tab);
    expectRefusal(f->Text1, "Not a valid number. Please reenter it.");
    // An empty box holds no number either: leaving it is refused the same way.
    QTest::keyClick(f->Text1, Qt::Key_Tab);
    expectRefusal(f->Text1, "Not a valid number. Please reenter it.");
    EXPECT_TRUE(h.trace.fresh().empty());
}

TEST_F(ConsoleTest, ReadingTheSystemControlRegisterShowsTheReply) {
    type(f->Text1, QStringLiteral("012200"));
    h.trace.fresh();
    QTest::mouseClick(f->readSYS, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 221 0000 0081 OUT 0 -> 0",
                                                          "VR 221 0000 0000 IN 3 -> 0 : 00 22 01"}));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("810000"));
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("012200"));
    EXPECT_EQ(f->lbltemp->text(), QStringLiteral("130degC"));
    EXPECT_EQ(f->lblGAIN1->text(), QStringLiteral("MEASOUT GAIN = 0.2"));
    EXPECT_EQ(f->lblGAIN0->text(), QStringLiteral("ISENSE GAIN = 20"));
    EXPECT_EQ(f->lblfin->text(), QStringLiteral("Force Amp i/p = FINDAC"));
    EXPECT_EQ(f->lblcpo->text(), QStringLiteral("Comparator info on CPOL & CPOH"));
    EXPECT_EQ(f->lblPD->text(), QStringLiteral("DPS powered up"));
    EXPECT_EQ(f->txtRSYS->digits(), QStringLiteral("000000010010001000000000"));
    EXPECT_EQ(child<QLineEdit>(f.get(), "txtRSYS(16)")->text(), QStringLiteral("1"));
}

TEST_F(ConsoleTest, ReadAdcShowsTheCode) {
    QTest::mouseClick(f->cmdREADADC, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 232 0000 0000 OUT 0 -> 0",
                                                          "VR 233 0000 0000 IN 3 -> 0 : 32 83 00"}));
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("008332"));
}
