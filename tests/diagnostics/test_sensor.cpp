// The temperature sensor's page: the panel's load, one reading of both channels, the raw
// access to the sensor's registers, and the logged run with its STOP, list and cursor.

#include "diagnostics/frmDIAG.h"
#include "forms/ResultList.h"
#include "forms/StripChart.h"
#include "support/RunTools.h"
#include "support/ConsoleFixture.h"
#include "support/FakeLibrary.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using qztest::clickBox;
using qztest::Harness;
using qztest::pick;

namespace {

class Sensor : public qztest::ConsoleFixture {
protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        d = static_cast<frmDIAG*>(h.nav.show(forms::Form::frmDIAG));
        ASSERT_NE(d, nullptr);
        d->useClock(clock);
        Harness::activate(d);
        h.trace.fresh();
    }
    frmDIAG* d = nullptr;
    qz::SteppedClock clock;
};

} // namespace

TEST_F(Sensor, TheLoadSetsTheSensorUpAroundTheRoutingOfTheFirstPoint) {
    // What the load sent, from the fixture's start: the set-up, data first and pointer
    // second, the diagnostic word, the last set-up write and the first local reading.
    h.nav.unload(forms::Form::frmDIAG);
    h.trace.fresh();
    auto* again = static_cast<frmDIAG*>(h.nav.show(forms::Form::frmDIAG));
    const std::vector<std::string> lines = h.trace.fresh();
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(std::vector<std::string>(lines.begin(), lines.begin() + 4),
              (std::vector<std::string>{"VR 236 0009 0000 OUT 0 -> 0", "VR 236 000D 0082 OUT 0 -> 0",
                                        "VR 236 000A 000A OUT 0 -> 0", "VR 236 0019 0082 OUT 0 -> 0"}));
    EXPECT_EQ(lines[4], "VR 221 0800 0007 OUT 0 -> 0");
    EXPECT_EQ(lines[5], "VR 236 000C 0000 OUT 0 -> 0");
    EXPECT_EQ(lines[6], "VR 236 0000 0000 IN 1 -> 0 : 1A");
    EXPECT_EQ(again->txtLocal->text(), QStringLiteral("26"));
    EXPECT_EQ(again->lblREADSPI->text(), QStringLiteral("1A"));
    EXPECT_EQ(g.tempDelay, 0.1f);
    EXPECT_EQ(again->SSTab2->currentIndex(), 2);
    EXPECT_FALSE(again->frmwrite->isVisible());
}

TEST(SensorReadings, TheExternalChannelTakesItsQuartersFromTheTopBits) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    auto* d = static_cast<frmDIAG*>(h.nav.show(forms::Form::frmDIAG));
    qz::SteppedClock clock;
    d->useClock(clock);
    const std::tuple<uint8_t, uint8_t, const char*> cases[] = {
        {25, 0x40, "25.25"}, {8, 0xC0, "08.75"}, {30, 0x00, "30.00"}, {30, 0x3F, "30.00"}};
    for (const auto& [whole, quarters, shown] : cases) {
        lib->replies = {{0x3F}, {27}, {whole}, {quarters}}; // status ready, local, external
        d->cmdReadI2C_Click();
        EXPECT_EQ(d->txtExt->text(), QString::fromLatin1(shown));
        EXPECT_EQ(d->txtLocal->text(), QStringLiteral("27"));
    }
    // A sensor that stays busy for the whole second is no reading.
    lib->replies.assign(2000, {0x80});
    d->cmdReadI2C_Click();
    EXPECT_EQ(d->txtLocal->text(), QStringLiteral("not ready"));
    EXPECT_EQ(d->txtExt->text(), QStringLiteral("not ready"));
    EXPECT_NEAR(clock.seconds(), 1.0, 0.01);
}

TEST_F(Sensor, RawAccessTakesBytesOnlyAndSendsOnlyFromItsButtons) {
    Harness::enter(d->txtPTR, QStringLiteral("a"));
    EXPECT_EQ(d->txtPTR->text(), QStringLiteral("000A"));
    Harness::enter(d->txtdata, QStringLiteral("100"));
    h.expectRefusal(d->txtdata, "Number too large. Please reenter code between 0 and FF.");
    d->txtdata->setText(QStringLiteral("5a"));
    QTest::mouseClick(d->cmdwriteTempSensor, Qt::LeftButton);
    d->txtAddrPtr->setText(QStringLiteral("a"));
    QTest::mouseClick(d->cmdREADTempSensor, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 236 000A 005A OUT 0 -> 0",
                                                          "VR 236 000A 0000 IN 1 -> 0 : 5A"}));
    EXPECT_EQ(d->txttempdata->text(), QStringLiteral("5A"));
    d->txtAddrPtr->clear();
    QTest::mouseClick(d->cmdREADTempSensor, Qt::LeftButton);
    h.expectRefusal(d->txtAddrPtr, "Not a valid number. Please reenter it.");
}

TEST_F(Sensor, ARunTakesAThousandAndOneReadingsIntoTheChartAndTheList) {
    pick(d->cboDelay, 1); // "No Delay"
    h.trace.fresh();
    QTest::mouseClick(d->cmdPLOTTEMP, Qt::LeftButton);
    const std::vector<std::string>& lines = d->List2->lines();
    ASSERT_EQ(lines.size(), 1002u);
    EXPECT_EQ(lines[0], "time\tlocal temp sensor\tQZ7740 Thermal Array");
    EXPECT_EQ(lines[1].substr(0, 4), "\t26\t") << "the first time field stands empty";
    EXPECT_EQ(lines[2].substr(0, 7), "0.0001\t");
    EXPECT_EQ(d->Strip1->count(), 1000) << "the chart keeps its last thousand points";
    EXPECT_EQ(d->txtcount->text(), QStringLiteral("1000"));
    EXPECT_EQ(h.trace.fresh().size(), 3u * 1001) << "three readings a point, nothing written";
    EXPECT_TRUE(d->cmdPLOTTEMP->isEnabled());

    d->Strip1->moveCursor(3);
    EXPECT_EQ(d->txtX->text(), QStringLiteral("00.0002"));
    EXPECT_EQ(d->txtY->text().size(), 5);
    d->Strip1->moveCursor(1500);
    EXPECT_EQ(d->txtX->text(), QStringLiteral("00.0002")) << "outside the readings: unchanged";

    QApplication::clipboard()->setText(QStringLiteral("stale"));
    QTest::mouseClick(d->cmdCopy, Qt::LeftButton);
    const QString text = QApplication::clipboard()->text();
    EXPECT_TRUE(text.startsWith(QStringLiteral("time\tlocal temp sensor\tQZ7740 Thermal Array\r\n\t26\t")));
    EXPECT_EQ(text.count(QStringLiteral("\r\n")), 1002);
}

TEST_F(Sensor, StopEndsTheRunWithinTheReadingAndAPressWhileStoppedGivesTheHeadingAlone) {
    // The operator's STOP arrives in the first event pass of the run.
    QTimer::singleShot(0, d, [this] { clickBox(d->Check1); });
    QTest::mouseClick(d->cmdPLOTTEMP, Qt::LeftButton);
    EXPECT_EQ(d->List2->lines().size(), 2u);
    EXPECT_EQ(d->txtcount->text(), QStringLiteral("0"));
    EXPECT_EQ(d->Check1->text(), QStringLiteral("START"));
    QTest::mouseClick(d->cmdPLOTTEMP, Qt::LeftButton);
    EXPECT_EQ(d->List2->lines(), std::vector<std::string>{"time\tlocal temp sensor\tQZ7740 Thermal Array"});
    clickBox(d->Check1);
    EXPECT_EQ(d->Check1->text(), QStringLiteral("STOP"));
    EXPECT_TRUE(d->txtcount->text().isEmpty());
    clickBox(d->Check2);
    EXPECT_EQ(d->Strip1->handleStyle(), 3) << "unticked: handles";
}

TEST_F(Sensor, ARunShowsItsProgressAndStopKeepsTheReadingsSoFarForTheFileToo) {
    qztest::ActingClock acting;
    d->useClock(acting);
    pick(d->cboDelay, 6); // "1000ms"
    const QLabel* progress = d->findChild<QLabel*>(QStringLiteral("runProgressText"));
    acting.at(10, [&] {
        EXPECT_EQ(progress->text(), QStringLiteral("point 10 of 1001, 0:09 elapsed, 14:52 left"));
        clickBox(d->Check1);
    });
    QTest::mouseClick(d->cmdPLOTTEMP, Qt::LeftButton);
    EXPECT_FALSE(progress->isVisible());
    const std::vector<std::string>& lines = d->List2->lines();
    ASSERT_EQ(lines.size(), 12u) << "the heading and eleven readings";
    EXPECT_EQ(lines[11].substr(0, 3), "10\t");
    EXPECT_EQ(d->tempCount, 11);
    EXPECT_EQ(d->txtcount->text(), QStringLiteral("10"));
    ASSERT_EQ(d->Strip1->count(), 11);
    for (int k = 0; k < 11; ++k)
        EXPECT_EQ(d->Strip1->pointAt(k).y(), d->temps.external[static_cast<size_t>(k)]) << k;

    qztest::SaveTarget target;
    target.chosen = target.path("temperatures.txt");
    QTest::mouseClick(d->cmdSave, Qt::LeftButton);
    QTest::mouseClick(d->cmdCopy, Qt::LeftButton);
    const auto saved = qztest::SaveTarget::read(target.chosen);
    ASSERT_EQ(saved.header.size(), 4u);
    EXPECT_EQ(saved.header[0], "# QZ7740 temperature readings");
    EXPECT_EQ(saved.header[2], "# board: virtual board");
    EXPECT_EQ(saved.header[3], "# delay between readings: 1000ms (1 s)");
    EXPECT_EQ(saved.rest, QApplication::clipboard()->text().toStdString());
    EXPECT_EQ(saved.rest.substr(0, 45), "time\tlocal temp sensor\tQZ7740 Thermal Array\r\n");
}

TEST_F(Sensor, ThePanelStaysLiveBetweenReadingsAndANewDelayCountsFromThen) {
    qztest::ActingClock acting;
    d->useClock(acting);
    pick(d->cboDelay, 1); // "No Delay"
    d->txtAddrPtr->setText(QStringLiteral("0005"));
    d->txtPTR->setText(QStringLiteral("0009"));
    d->txtdata->setText(QStringLiteral("0042"));
    std::vector<std::string> before;
    // In the wait after the third reading the operator's clicks are queued; they run in the
    // fourth reading's event pass. STOP follows in the wait after the fifth.
    acting.at(3, [&] {
        QTimer::singleShot(0, d, [&] {
            before = h.trace.fresh();
            pick(d->cboDelay, 5); // "500ms"
            for (QPushButton* b : {d->cmdReadI2C, d->cmdREADTempSensor, d->cmdwriteTempSensor})
                QTest::mouseClick(b, Qt::LeftButton);
            d->SSTab2->setCurrentIndex(0);
            QTest::mouseClick(d->cmdWRITEDIAGREG, Qt::LeftButton);
            acting.at(2, [&] { QTimer::singleShot(0, d, [&] { clickBox(d->Check1); }); });
        });
    });
    h.trace.fresh();
    QTest::mouseClick(d->cmdPLOTTEMP, Qt::LeftButton);

    auto starts = [](const std::vector<std::string>& lines, size_t at, const char* head) {
        return at < lines.size() && lines[at].rfind(head, 0) == 0;
    };
    auto reading = [&](const std::vector<std::string>& lines, size_t at) {
        return starts(lines, at, "VR 236 0000 0000 IN 1") && starts(lines, at + 1, "VR 236 0001 0000 IN 1") &&
               starts(lines, at + 2, "VR 236 0010 0000 IN 1");
    };
    // Four whole readings went out before the clicks ran, and nothing else.
    ASSERT_EQ(before.size(), 12u);
    for (size_t k = 0; k < 12; k += 3)
        EXPECT_TRUE(reading(before, k)) << k;
    // READ TEMPS: the diagnostic and DPS1 words, the status until the sensor is ready, and
    // its reading; then READ FROM, WRITE TO and WRITE DIAG REG; then the run's own two
    // readings, whole, to its stop.
    const std::vector<std::string> after = h.trace.fresh();
    EXPECT_TRUE(starts(after, 0, "VR 221 0800 0007") && starts(after, 1, "VR 221 9950 0002"));
    size_t k = 2;
    while (starts(after, k, "VR 236 0002 0000 IN 1")) ++k;
    const size_t polls = k - 2;
    ASSERT_GE(polls, 1u);
    EXPECT_TRUE(reading(after, k));
    EXPECT_TRUE(starts(after, k + 3, "VR 236 0005 0000 IN 1")) << "READ FROM";
    EXPECT_TRUE(starts(after, k + 4, "VR 236 0009 0042 OUT")) << "WRITE TO";
    EXPECT_TRUE(starts(after, k + 5, "VR 221 0800 0007") && starts(after, k + 6, "VR 221 9950 0002"))
        << "WRITE DIAG REG";
    EXPECT_TRUE(reading(after, k + 7));
    EXPECT_TRUE(reading(after, k + 10));
    EXPECT_EQ(after.size(), k + 13);

    // The time column took 0.0001 up to the fourth reading and 0.5 from then on; so did
    // the waits, each counted from its event pass's start (READ TEMPS's polls inside it).
    const std::vector<std::string>& lines = d->List2->lines();
    ASSERT_EQ(lines.size(), 1u + 6);
    const char* times[] = {"", "0.0001", "0.0002", "0.0003", "0.0004", "0.5004"};
    for (size_t i = 0; i < 6; ++i)
        EXPECT_EQ(lines[i + 1].substr(0, lines[i + 1].find('\t')), times[i]) << i;
    EXPECT_NEAR(acting.seconds(), 3 * 0.0001 + 3 * 0.5, 1e-6);
}
