// The front panel's compensation frame: mode, ESR and load capacitance of register 1, each
// written at once through the trace, and the way to the compensation panel's second page.

#include "forms/TabControl.h"
#include "support/ConsoleFixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using forms::Form;
using qztest::clickBox;
using qztest::Harness;
using qztest::pick;

namespace {

class FrontComp : public qztest::ConsoleFixture {
protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        Harness::activate(m);
    }
    bool listsEnabled() {
        const bool all = m->autoComp.cboRC->isEnabled() && m->autoComp.cboCR->isEnabled() && m->autoComp.Label9->isEnabled() &&
                         m->autoComp.Label10->isEnabled() && m->autoComp.Label11->isEnabled();
        const bool any = m->autoComp.cboRC->isEnabled() || m->autoComp.cboCR->isEnabled() || m->autoComp.Label9->isEnabled() ||
                         m->autoComp.Label10->isEnabled() || m->autoComp.Label11->isEnabled();
        EXPECT_EQ(all, any) << "the lists and their labels go together";
        return all;
    }
};

} // namespace

TEST_F(FrontComp, ModeEsrAndCapacitanceAreWrittenAtOnce) {
    EXPECT_TRUE(m->autoComp.Option2[0]->isChecked());
    EXPECT_TRUE(listsEnabled()) << "enabled at start although safe mode is selected";
    EXPECT_EQ(m->autoComp.Label11->text() + m->autoComp.Label10->text(), QStringLiteral("m\u03A9"));
    EXPECT_EQ(m->autoComp.cboCR->currentText(), QStringLiteral("Choose Load Capacitance, CR"));

    pick(m->autoComp.cboRC, 1);
    EXPECT_EQ(sent(), std::vector<int>{0x040100}) << "before any mode click, with SAFEMODE 0";
    g.COMP1reg = 0x040000;
    clickBox(m->autoComp.Option2[1]);
    EXPECT_EQ(sent(), std::vector<int>{0x040080});
    pick(m->autoComp.cboRC, 3);
    EXPECT_EQ(sent(), std::vector<int>{0x040380});
    pick(m->autoComp.cboCR, 2);
    EXPECT_EQ(sent(), std::vector<int>{0x042380});
    EXPECT_EQ(m->txtWrite->text(), QStringLiteral("042380"));
    clickBox(m->autoComp.Option2[0]);
    EXPECT_EQ(sent(), std::vector<int>{0x042300});
    EXPECT_FALSE(listsEnabled());
    clickBox(m->autoComp.Option2[1]);
    EXPECT_TRUE(listsEnabled());
}

TEST_F(FrontComp, MasksOnAFullWordAndTheEntryGuard) {
    const std::pair<QWidget*, int32_t> cases[] = {{m->autoComp.cboRC, 0x04F080},
                                                  {m->autoComp.cboCR, 0x040F80},
                                                  {m->autoComp.Option2[0], 0x04FF00},
                                                  {m->autoComp.Option2[1], 0x04FF80}};
    for (const auto& [control, word] : cases) {
        g.COMP1reg = 0x04FFFF;
        if (auto* list = qobject_cast<QComboBox*>(control))
            pick(list, 0);
        else
            clickBox(static_cast<QAbstractButton*>(control));
        EXPECT_EQ(sent(), std::vector<int>{word}) << control->objectName().toStdString();
    }
    g.COMP1reg = 0x040000;
    g.entryBusy = true;
    clickBox(m->autoComp.Option2[0]);
    EXPECT_TRUE(sent().empty());
    pick(m->autoComp.cboCR, 15);
    EXPECT_EQ(sent(), std::vector<int>{0x04F000}) << "the lists do not look at the guard";
    g.entryBusy = false;
}

TEST_F(FrontComp, ManualCompShowsPageOneAndLeavesAnExistingPanelsWords) {
    pick(m->autoComp.cboRC, 5);
    EXPECT_EQ(sent(), std::vector<int>{0x040500});
    QTest::mouseClick(m->cmdManualComp, Qt::LeftButton);
    QWidget* c = h.nav.loaded(Form::frmCompensation);
    ASSERT_NE(c, nullptr);
    EXPECT_TRUE(c->isVisible() && m->isVisible());
    auto* pages =
        dynamic_cast<forms::TabControl*>(c->findChild<QWidget*>(QStringLiteral("SSTab1")));
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(pages->currentIndex(), 1);
    EXPECT_EQ(g.COMP1reg, 0x040000) << "a new panel drops what the front panel composed";
    EXPECT_EQ(h.board->reg(0x04), 0x0500) << "while the chip keeps it";
    EXPECT_TRUE(sent().empty());

    pick(m->autoComp.cboCR, 1);
    EXPECT_EQ(sent(), std::vector<int>{0x041000});
    EXPECT_TRUE(c->findChild<QLineEdit*>(QStringLiteral("Text1"))->text().isEmpty());
    EXPECT_EQ(c->findChild<QComboBox*>(QStringLiteral("cboCR"))->currentIndex(), -1);
    pages->setCurrentIndex(0);
    g.COMP2reg = 0x05ABCD;
    QTest::mouseClick(m->cmdManualComp, Qt::LeftButton);
    EXPECT_EQ(pages->currentIndex(), 1);
    EXPECT_EQ(g.COMP1reg, 0x041000);
    EXPECT_EQ(g.COMP2reg, 0x05ABCD);
    EXPECT_TRUE(sent().empty());
}
