// The mirror between the console and the front panel, with a stand-in front panel that
// does what the real one does with a twin: rebuild the field, send the word, set the
// console's control back.

#include "console/frmMAINQZ7740.h"
#include "forms/Controls.h"
#include "registers/FieldOps.h"
#include "support/Harness.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QVBoxLayout>

using qztest::clickBox;
using qztest::Harness;
using qztest::pick;

namespace {

struct StandIn {
    int runs = 0;
};

QWidget* makeFrontPanel(Harness& h, StandIn& stats) {
    auto* w = new QWidget;
    w->setObjectName(forms::formName(forms::Form::frmMain));
    auto* v = new QVBoxLayout(w);
    auto* list = new QComboBox(w);
    list->setObjectName(QStringLiteral("cboCurrent"));
    for (int i = 0; i < 7; ++i) list->addItem(QString::number(i));
    auto* box = new QCheckBox(w);
    box->setObjectName(QStringLiteral("chkPD"));
    box->setChecked(true);
    v->addWidget(list);
    v->addWidget(box);
    qz::Session& s = *h.session;
    forms::Navigator& nav = h.nav;
    forms::onClick(list, [&s, &nav, &stats, list] {
        ++stats.runs;
        s.general.PMUreg = qz::applyField(s.general.PMUreg, *qz::findControl("cboCurrent"), list->currentIndex());
        forms::setListIndex(forms::controlOf<QComboBox>(nav, forms::Form::frmMAINQZ7740,
                                                        QStringLiteral("cboCurrent")),
                            list->currentIndex());
        s.SPIout(s.general.PMUreg);
    });
    forms::onClick(box, [&s, &nav, &stats, box] {
        ++stats.runs;
        s.general.SYSreg = qz::applyField(s.general.SYSreg, *qz::findControl("chkPD"), box->isChecked());
        forms::setChecked(forms::controlOf<QCheckBox>(nav, forms::Form::frmMAINQZ7740,
                                                      QStringLiteral("chkPD")),
                          box->isChecked());
        s.SPIout(s.general.SYSreg);
    });
    return w;
}

} // namespace

TEST(ConsoleTwins, AChangeOnTheConsoleReachesTheChipThroughItsTwinOnce) {
    Harness h;
    StandIn stats;
    h.nav.registerForm(forms::Form::frmMain, [&] { return makeFrontPanel(h, stats); });
    auto f = h.startConsole<frmMAINQZ7740>();
    EXPECT_TRUE(f->isHidden()) << "the front panel takes over at start";
    QWidget* front = h.nav.loaded(forms::Form::frmMain);
    ASSERT_NE(front, nullptr);
    EXPECT_TRUE(front->isVisible());
    h.trace.fresh();

    pick(f->cboCurrent, 5);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), std::vector<int>{0x02A950});
    EXPECT_EQ(stats.runs, 1);
    EXPECT_EQ(front->findChild<QComboBox*>(QStringLiteral("cboCurrent"))->currentIndex(), 5);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("02A950"));

    pick(f->cboCurrent, 5);  // the twin already stands there: nothing is sent
    EXPECT_TRUE(h.trace.fresh().empty());
    EXPECT_EQ(stats.runs, 1);

    f->show();
    clickBox(f->chkPD);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), std::vector<int>{0x012000});
    EXPECT_EQ(stats.runs, 2);
}

TEST(ConsoleTwins, AChangeOnTheFrontPanelSetsTheConsoleWithoutASecondWord) {
    Harness h;
    StandIn stats;
    h.nav.registerForm(forms::Form::frmMain, [&] { return makeFrontPanel(h, stats); });
    auto f = h.startConsole<frmMAINQZ7740>();
    auto* list = h.nav.loaded(forms::Form::frmMain)->findChild<QComboBox*>(QStringLiteral("cboCurrent"));
    h.trace.fresh();
    pick(list, 2);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), std::vector<int>{0x029150});
    EXPECT_EQ(f->cboCurrent->currentIndex(), 2);
    EXPECT_EQ(stats.runs, 1);
}

TEST(ConsoleMenus, EntriesOfMissingPanelsAreDisabledAndCloseHides) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    auto* close = f->findChild<QAction*>(QStringLiteral("mnuClose"));
    auto* exit = f->findChild<QAction*>(QStringLiteral("mnuExit"));
    ASSERT_NE(close, nullptr);
    ASSERT_NE(exit, nullptr);
    for (const char* name : {"mnuMain", "mnuPOT", "mnuMeas", "mnuComp", "mnuAbout"}) {
        auto* a = f->findChild<QAction*>(QString::fromLatin1(name));
        ASSERT_NE(a, nullptr) << name;
        EXPECT_FALSE(a->isEnabled()) << name << " opens a panel this program lacks";
    }
    EXPECT_EQ(f->findChild<QAction*>(QStringLiteral("mnuPOT"))->text(), QStringLiteral("Sweep Voltage Measurements"));
    close->trigger();
    EXPECT_TRUE(f->isHidden());
    EXPECT_EQ(h.nav.loaded(forms::Form::frmMAINQZ7740), f.get()) << "hidden, never unloaded";
    exit->trigger();
    EXPECT_EQ(h.ends, 1);
}
