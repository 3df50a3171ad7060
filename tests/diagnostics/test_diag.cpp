// The diagnostics panel on the virtual board, through its controls by name and the trace:
// each choice of the diagnostic word written at once with its mask, the MEASOUT path, the
// read-back, the pages' frames, and a showing after a close that loads afresh.

#include "diagnostics/frmDIAG.h"
#include "forms/BitRow.h"
#include "forms/TabControl.h"
#include "support/ConsoleFixture.h"

#include <QAction>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using qztest::clickBox;
using qztest::Harness;

namespace {

class Diag : public qztest::ConsoleFixture {
protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        d = static_cast<frmDIAG*>(h.nav.show(forms::Form::frmDIAG));
        ASSERT_NE(d, nullptr);
        Harness::activate(d);
        d->SSTab2->setCurrentIndex(0);
        h.trace.fresh();
    }
    frmDIAG* d = nullptr;
};

} // namespace

TEST_F(Diag, ItsLoadRoutesTheFirstForceAmplifierPointToGpo) {
    EXPECT_EQ(g.DIAGreg, 0x070800);
    EXPECT_TRUE(d->optTSENSE[9]->isChecked());
    EXPECT_TRUE(d->optDIAGA[11]->isChecked());
    EXPECT_TRUE(d->optDIAGB[11]->isChecked());
    EXPECT_TRUE(d->optTESTFORCE[0]->isChecked());
    EXPECT_EQ(d->optTESTFORCE[5], nullptr) << "there is no stage option 5";
    EXPECT_EQ(d->Text1->text(), QStringLiteral("070800"));
    EXPECT_EQ(d->txtCP1->digits(), QStringLiteral("000001110000100000000000"));
    EXPECT_EQ(d->windowTitle(), QStringLiteral("QZ7740 DIAGNOSTIC REGISTER & TH2260 [virtual board]"));
}

TEST_F(Diag, EachChoiceReplacesItsFieldAndGoesOutAtOnce) {
    clickBox(d->optDIAGA[3]);
    EXPECT_EQ(sent(), std::vector<int>{0x078800});
    clickBox(d->optDIAGB[7]);
    EXPECT_EQ(sent(), std::vector<int>{0x07C800}) << "it replaces the code, it does not add";
    clickBox(d->optTESTFORCE[3]);
    clickBox(d->optTESTFORCE[7]);
    EXPECT_EQ(sent(), (std::vector<int>{0x07C860, 0x07C860}));
    // The word holds one point: one shows chosen, whichever drawn block it stands in.
    auto points = [this] {
        std::vector<int> on;
        for (int i = 0; i < 25; ++i)
            if (d->optTSENSE[static_cast<size_t>(i)]->isChecked()) on.push_back(i);
        return on;
    };
    clickBox(d->optTSENSE[0]);
    EXPECT_EQ(sent(), std::vector<int>{0x07C060});
    EXPECT_EQ(points(), std::vector<int>{0}) << "DISABLED clears the load's point";
    clickBox(d->optTSENSE[24]);
    clickBox(d->optTSENSE[1]);
    EXPECT_EQ(sent(), (std::vector<int>{0x07CFE0, 0x07C460}));
    EXPECT_EQ(points(), std::vector<int>{1});
    clickBox(d->optDIAGA[11]);
    clickBox(d->optTESTFORCE[6]);
    EXPECT_EQ(sent(), (std::vector<int>{0x070460, 0x070440}));
    EXPECT_TRUE(d->optDIAGB[7]->isChecked()) << "each group keeps its dot";
}

TEST_F(Diag, EachMaskAlsoClearsTheUnusedBits) {
    const std::pair<QRadioButton*, int> cases[] = {
        {d->optDIAGA[0], 0x075FE0}, {d->optTESTFORCE[1], 0x07FFA0}, {d->optTSENSE[12], 0x07F9F0}};
    for (const auto& [option, word] : cases) {
        g.DIAGreg = 0x07FFFF;
        option->setChecked(false);
        clickBox(option);
        EXPECT_EQ(sent(), std::vector<int>{word});
    }
    // While an entry is busy the mask still takes its field out; nothing goes.
    g.DIAGreg = 0x07FFFF;
    g.entryBusy = true;
    d->optDIAGB_Click(4);
    EXPECT_EQ(g.DIAGreg, 0x070FE0);
    EXPECT_TRUE(sent().empty());
}

TEST_F(Diag, TheMeasoutPathSendsTheDiagnosticWordThenDps1) {
    g.PMUreg = 0x02FFFF;
    clickBox(d->optMEASAB[1]);
    EXPECT_EQ(sent(), (std::vector<int>{0x070800, 0x02FFF0}));
    EXPECT_EQ(d->Text1->text(), QStringLiteral("070800")) << "the box shows the first word";
    clickBox(d->optMEASAB[0]);
    EXPECT_EQ(sent(), (std::vector<int>{0x070800, 0x02FFD0}));
    QTest::mouseClick(d->cmdWRITEDIAGREG, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x070800, 0x02FFD0}));
}

TEST_F(Diag, AReadFillsTheReadMirrorOnly) {
    d->SSTab2->setCurrentIndex(1);
    EXPECT_FALSE(d->frmDiagREG->isVisible());
    EXPECT_TRUE(d->frmwrite->isVisible());
    g.DIAGreg = 0x07F000;
    QTest::mouseClick(d->cmdREADDIAG, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 221 0000 0087 OUT 0 -> 0",
                                                          "VR 221 0000 0000 IN 3 -> 0 : 00 08 07"}));
    EXPECT_EQ(d->lblREADSPI->text(), QStringLiteral("070800"));
    EXPECT_EQ(d->Text1->text(), QStringLiteral("870000"));
    EXPECT_EQ(d->txtRD1->digits(), QStringLiteral("000001110000100000000000"));
    EXPECT_EQ(d->txtCP1->digits(), QStringLiteral("000001110000100000000000")) << "as the load left it";
    EXPECT_EQ(g.DIAGreg, 0x07F000) << "a read changes no shadow";
}

TEST_F(Diag, ResetClearsTheAlarmsAndCloseUnloadsForAFreshLoad) {
    QTest::mouseClick(d->cmdRESET, Qt::LeftButton);
    EXPECT_EQ(h.trace.fresh(), (std::vector<std::string>{"VR 219 0000 0000 OUT 0 -> 0",
                                                          "VR 221 0000 00C4 OUT 0 -> 0"}));
    clickBox(d->optDIAGA[5]);
    sent();
    d->findChild<QAction*>(QStringLiteral("mnuClose"))->trigger();
    EXPECT_EQ(h.nav.loaded(forms::Form::frmDIAG), nullptr);
    auto* again = static_cast<frmDIAG*>(h.nav.show(forms::Form::frmDIAG));
    ASSERT_NE(again, nullptr);
    EXPECT_NE(again, d);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), std::vector<int>{0x070800});
    EXPECT_TRUE(again->optDIAGA[11]->isChecked());
    again->close();
    EXPECT_EQ(h.nav.loaded(forms::Form::frmDIAG), nullptr) << "the frame's close is the menu's";
    EXPECT_EQ(h.ends, 0);
}
