// The front panel on the virtual board, driven through its controls by name and read on
// the trace: the start, the force voltage, the reference, the clamps, the reads and the
// alarms, and every refusal with its words.

#include "forms/Lamp.h"
#include "support/ConsoleFixture.h"
#include "support/FakeLibrary.h"

#include <QAction>
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

class Front : public qztest::ConsoleFixture {
protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        Harness::activate(m);
    }
    void enter(QLineEdit* box, const char* text) { Harness::enter(box, QString::fromLatin1(text)); }
    static constexpr int32_t PMU = 0x029950;
};

} // namespace

TEST(FrontStart, TheConsoleHandsOverToTheFrontPanelAfterThePowerOnWords) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    auto* m = static_cast<frmMain*>(h.nav.loaded(forms::Form::frmMain));
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(qztest::wordsSent(h.trace.lines()),
              (std::vector<int>{0x012200, 0x012200, 0x029950, 0x030000, 0x06AA80, 0x029950}));
    EXPECT_TRUE(m->isVisible());
    EXPECT_TRUE(f->isHidden());
    EXPECT_EQ(m->windowTitle(), QStringLiteral("QZ7740 Main Menu [virtual board]"));
    EXPECT_EQ(m->cboCurrent->currentIndex(), 3);
    EXPECT_EQ(f->cboCurrent->currentIndex(), 3) << "the twin follows";
    EXPECT_EQ(m->cboCurrent->itemText(3), QStringLiteral("\u00B12.5mA Current Range"));
    EXPECT_EQ(m->lblmA->text(), QStringLiteral("mA"));
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("029950"));
    EXPECT_EQ(f->Text1->text(), QStringLiteral("012200"));
    EXPECT_EQ(m->cboSysforce->currentText(), QStringLiteral("SYSTEM FORCE/SENSE OPEN"));
    EXPECT_EQ(m->IMEASG->currentText(), QStringLiteral("I MEAS GAIN =20"));
    EXPECT_EQ(m->cmdcpo[0]->text(), QStringLiteral("L =  0"));
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(Front, ForcedVoltagesGoOutAfterTheRangeWordTwice) {
    enter(m->txtV, "1");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU, 0x0889FE}));
    EXPECT_EQ(m->txtOutputV->text(), QStringLiteral("01.000"));
    EXPECT_EQ(m->txtDaccode->text(), QStringLiteral("89FE"));
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("89FE"));
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("0889FE"));
    EXPECT_EQ(m->txtOutputVl->text(), QStringLiteral("-12.813"));
    EXPECT_EQ(m->txtOutputVh->text(), QStringLiteral("12.812"));
    EXPECT_EQ(g.DAClast, 0x0889FE);
    EXPECT_EQ(h.board->reg(0x08), 0x89FE);

    enter(m->txtV, "-5e0");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU, 0x084E0C}));
    EXPECT_EQ(m->txtOutputV->text(), QStringLiteral("-05.000"));
    EXPECT_EQ(m->txtV->text(), QStringLiteral("-5E0")) << "the request stands upper-cased";

    enter(m->txtV, "-12.8125");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU, 0x080000})) << "the lowest output is taken";

    clickBox(m->optRef[1]);
    enter(m->txtV, "1");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU, 0x0893FB}));
    EXPECT_EQ(m->txtOutputV->text(), QStringLiteral("01.000"));
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(Front, TheOffsetMovesTheLimitsAndIsCopiedToTheConsoleOnly) {
    enter(m->OFFSETx1, "4000");
    EXPECT_EQ(sent(), std::vector<int>{0x0B4000});
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("0B4000"));
    EXPECT_EQ(f->OFFSETx1->text(), QStringLiteral("4000"));
    EXPECT_EQ(m->txtOutputVl->text(), QStringLiteral("-06.406"));
    EXPECT_EQ(m->txtOutputVh->text(), QStringLiteral("19.218"));
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("4000")) << "the code of 0 V";
    enter(m->txtV, "10");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU, 0x08A3E7}));
    EXPECT_EQ(m->txtOutputV->text(), QStringLiteral("10.000"));

    Harness::activate(f.get());
    Harness::enter(f->OFFSETx1, QStringLiteral("1000"));
    EXPECT_EQ(sent(), std::vector<int>{0x0B1000});
    EXPECT_EQ(m->OFFSETx1->text(), QStringLiteral("4000")) << "no copy back";
    Harness::activate(m);
    enter(m->OFFSETx1, "ffff0001");
    h.expectRefusal(m->OFFSETx1, "Number too large. Please reenter code between 0 and xFFFF.");
}

TEST_F(Front, RequestsOutsideTheLimitsAreRefusedAfterTheRangeWords) {
    enter(m->txtV, "12.9");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU}));
    h.expectRefusal(m->txtV, "Number too large. Please reenter voltage between Z/S and F/S.");
    enter(m->OFFSETx1, "0");
    sent();
    enter(m->txtV, "-0.001");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU})) << "with OFFSET 0 nothing below 0 V";
    h.expectRefusal(m->txtV, "Number too large. Please reenter voltage between Z/S and F/S.");
    for (const char* text : {"", "1,5", "abc", "1e99"}) {
        enter(m->txtV, text);
        h.expectRefusal(m->txtV, "Not a valid number. Please reenter it.");
    }
}

TEST_F(Front, ClampsInTheRangesUnitAndTheirRefusals) {
    enter(m->txtclamph, "2.5");
    EXPECT_EQ(sent(), std::vector<int>{0x10E3E7});
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("10E3E7"));
    enter(m->txtclamph, "2");
    EXPECT_EQ(sent(), std::vector<int>{0x10CFEC});
    enter(m->txtClampl, "0");
    EXPECT_EQ(sent(), std::vector<int>{0x0D8000});
    EXPECT_EQ(f->txtCLHx1->text(), QStringLiteral("FFFF")) << "the console's code boxes stay";

    const std::pair<QLineEdit*, const char*> refusals[] = {
        {m->txtclamph, "3.3"}, {m->txtclamph, "-1"}, {m->txtClampl, "1"}, {m->txtClampl, "-3.3"}};
    const char* texts[] = {
        "Requested clamp level outside of Irange. Please reenter current suited to the Irange.",
        "Requested clamp level outside of Irange. Please reenter reenter current suited to the "
        "Irange. CLL can only clamp positive current",
        "Requested clamp level outside of Irange. Please reenter current suited to the Irange. "
        "Ensure to add minus sign for negative clamp",
        "Requested clamp level outside of Irange. Please reenter reenter current suited to the "
        "Irange. Ensure to add minus sign for negative clamp, CLL can only clamp negative current"};
    for (size_t i = 0; i < 4; ++i) {
        enter(refusals[i].first, refusals[i].second);
        h.expectRefusal(refusals[i].first, texts[i]);
    }
    enter(m->txtClampl, "x");
    h.expectRefusal(m->txtClampl, "Not a valid number. Please reenter it.");
}

TEST_F(Front, TheClampUnitFollowsTheRangeAndExternalRangesTakeTheirResistor) {
    pick(m->cboCurrent, 0);
    EXPECT_EQ(m->lblmA->text(), QStringLiteral("uA"));
    pick(m->cboCurrent, 6);
    EXPECT_EQ(m->lblmA->text(), QStringLiteral("A"));
    EXPECT_EQ(g.IRangeIndex, 6);
    sent();
    m->txtEXT1rsense->setText(QStringLiteral("ten"));
    enter(m->txtclamph, "0.5");
    h.expectRefusal(m->txtEXT1rsense, "Number outside range. Please reenter Rsense between 1 and 256k.");
    enter(m->txtEXT1rsense, "0.3");
    h.expectRefusal(m->txtEXT1rsense, "Number outside range. Please reenter Rsense between 1 and 256k.");
    enter(m->txtEXT2Rsense, "256001");
    h.expectRefusal(m->txtEXT2Rsense, "Number outside range. Please reenter Rsense between 0.4 and 256k.");
    enter(m->txtEXT1rsense, "0.4");
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_TRUE(sent().empty()) << "a resistor is only kept for later";
    EXPECT_EQ(m->txtEXT1rsense->text(), QStringLiteral("0.4"));
}

TEST_F(Front, TheReferenceRenamesTheRangesOnAllPanelsAndRefusesAnOtherOutOfRange) {
    clickBox(m->optRef[1]);
    EXPECT_EQ(g.VREF, 2.5f);
    EXPECT_TRUE(f->optRef[1]->isChecked());
    EXPECT_EQ(m->cboCurrent->itemText(3), QStringLiteral("\u00B11.25mA Current Range"));
    EXPECT_EQ(m->txtOutputVh->text(), QStringLiteral("06.406"));
    EXPECT_TRUE(sent().empty()) << "a reference changes the arithmetic only";

    for (const auto& [text, message] : {std::pair<const char*, const char*>{"abc", "Not a valid number. Please reenter it."},
                                        {"1.4", "Number outside Reference range. Please reenter reference voltage between 2V and +5V."},
                                        {"5.6", "Number outside Reference range. Please reenter reference voltage between 2V and +5V."}}) {
        m->txtVREF->setText(QString::fromLatin1(text));
        clickBox(m->optRef[2]);
        h.expectRefusal(m->txtVREF, message);
        EXPECT_EQ(g.VREF, 2.5f);
        EXPECT_TRUE(m->optRef[1]->isChecked()) << text;
        EXPECT_TRUE(f->optRef[1]->isChecked()) << text;
    }
    // The number goes along with "Other" to the other panels' boxes.
    m->txtVREF->setText(QStringLiteral("5.4"));
    clickBox(m->optRef[2]);
    EXPECT_EQ(g.VREF, 5.4f);
    EXPECT_TRUE(f->optRef[2]->isChecked());
    EXPECT_EQ(f->txtVREF->text(), QStringLiteral("5.4"));
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(Front, AGainOfTenAtFiveVoltsIsWrittenThenWarnedAndStays) {
    size_t linesAtWarning = 0;
    forms::setMessageSink([&](const std::string& title, const std::string& text, qz::MsgIcon) {
        linesAtWarning = h.trace.lines().size();
        h.boxes.push_back({title, text, qz::MsgIcon::Exclamation});
    });
    const size_t before = h.trace.lines().size();
    pick(m->IMEASG, 1);
    EXPECT_EQ(sent(), std::vector<int>{0x013200});
    EXPECT_EQ(linesAtWarning, before + 1) << "the word goes out before the warning";
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].title, "Entry Error");
    EXPECT_EQ(h.boxes[0].text, "This combination of VREF = 5 and MI Gain = 10 isn't intended to "
                               "double the Irange. The QZ7740 can only deliver up to the rated Iranges");
    EXPECT_EQ(m->IMEASG->currentIndex(), 1);
    EXPECT_EQ(g.imeasGain, 10.0f);
}

TEST_F(Front, TheGainOfOneWarnsAndIsInForceWhileTheWarningStands) {
    pick(m->MEASOUTG, 1);
    EXPECT_EQ(sent(), std::vector<int>{0x010200});
    QWidget* warning = h.nav.loaded(forms::Form::frmMEASOUTGAIN);
    ASSERT_NE(warning, nullptr);
    EXPECT_TRUE(warning->isVisible());
    QTest::mouseClick(warning->findChild<QPushButton*>(QStringLiteral("cmdSysInfo")), Qt::LeftButton);
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("010200")) << "Cancel writes nothing";
    EXPECT_EQ(f->Text1->text(), QStringLiteral("012200"));
    EXPECT_TRUE(sent().empty());
}

TEST_F(Front, ReadButtonsShowCommandAndReply) {
    const std::pair<QPushButton*, const char*> reads[] = {
        {m->readSYS, "810000 012200"}, {m->Command4, "820000 029950"}, {m->readDPS2, "830000 030000"},
        {m->Command5, "840000 040000"}, {m->readcomp2, "850000 050000"}};
    for (const auto& [button, words] : reads) {
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(m->txtWrite->text() + QLatin1Char(' ') + m->txtRead->text(), QString::fromLatin1(words));
    }
    EXPECT_EQ(g.PMUreg, PMU);
}

TEST(FrontAlarms, EachBitLightsItsLampColourAndCaption) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    auto* m = static_cast<frmMain*>(h.nav.loaded(forms::Form::frmMain));
    const auto lamps = [m] {
        QString s;
        for (auto* row : {&m->cmdTEMP, &m->cmdosalm, &m->cmddut, &m->cmdclamp, &m->cmdguard, &m->cmdcpo})
            for (forms::Lamp* lamp : *row)
                s += QStringLiteral("%1%2|").arg(lamp->colourValue() == 0x008000 ? 'g' : 'r').arg(lamp->text());
        return s;
    };
    h.trace.fresh();
    lib->replies = {{0xF0, 0xFF, 0x43}};
    QTest::mouseClick(m->cmdCheckAlarms, Qt::LeftButton);
    EXPECT_EQ(lamps(), QStringLiteral("gOK|gOK|gOK|gOK|gOK|gOK|gOK|gOK|gOK|gOK|gL = 1|gH = 1|"));
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("C30000"));
    EXPECT_EQ(m->txtRead->text(), QStringLiteral("43FFF0"));
    lib->replies = {{0x00, 0x00, 0x43}};
    QTest::mouseClick(m->cmdCLEAR, Qt::LeftButton);
    EXPECT_EQ(lamps(), QStringLiteral("rHOT|rHOT|rOpen|rOpen|rOpen|rOpen|rCLAMP|rCLAMP|rs/c|rs/c|rL = 0|rH = 0|"));
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("C40000"));
    lib->replies = {{0x00, 0xA0, 0x43}};
    QTest::mouseClick(m->cmdCheckAlarms, Qt::LeftButton);
    EXPECT_TRUE(lamps().startsWith(QStringLiteral("gOK|rHOT|gOK|rOpen|rOpen|")));
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), (std::vector<int>{0xC30000, 0xC40000, 0xC30000}));
    EXPECT_EQ(h.session->general.ALMreg, 0x06AA80) << "no shadow changes";
}

TEST_F(Front, ResetExitAndTheWaysToOtherPanels) {
    QTest::mouseClick(m->cmdRESET, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 219 0000 0000 OUT 0 -> 0",
                                                          "VR 221 0000 00C4 OUT 0 -> 0"}));
    EXPECT_EQ(g.PMUreg, PMU) << "a reset leaves the shadows";
    f->hide();
    QTest::mouseClick(m->Command6, Qt::LeftButton);
    EXPECT_TRUE(f->isVisible());
    EXPECT_EQ(f->QZ7740->currentIndex(), 4);
    f->hide();
    m->findChild<QAction*>(QStringLiteral("mnuIndi"))->trigger();
    EXPECT_TRUE(f->isVisible());
    h.trace.fresh();
    QTest::mouseClick(m->cmdEXIT, Qt::LeftButton);
    m->findChild<QAction*>(QStringLiteral("mnuExit"))->trigger();
    m->close();
    EXPECT_EQ(h.ends, 3) << "EXIT, Exit and the window's frame all end the program";
    EXPECT_TRUE(h.trace.fresh().empty());
}
