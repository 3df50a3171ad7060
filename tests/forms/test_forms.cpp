#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/TabControl.h"
#include "registers/BitLabels.h"
#include "console/frmMAINQZ7740.h"
#include "support/Harness.h"
#include "support/QtPrint.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

TEST(FormsControls, CodeChangesRunTheHandlerOnlyOnARealChange) {
    QComboBox list;
    list.addItems({"a", "b", "c"});
    int runs = 0;
    forms::onClick(&list, [&] { ++runs; });
    forms::setListIndex(&list, 2);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(list.currentIndex(), 2);
    forms::setListIndex(&list, 2);
    EXPECT_EQ(runs, 1) << "setting the index it has runs nothing";
    emit list.activated(2);  // the user picks the item already chosen
    EXPECT_EQ(runs, 2);

    QCheckBox box;
    int boxRuns = 0;
    forms::onClick(&box, [&] { ++boxRuns; });
    forms::setChecked(&box, false);
    EXPECT_EQ(boxRuns, 0);
    forms::setChecked(&box, true);
    forms::setChecked(&box, true);
    EXPECT_EQ(boxRuns, 1);
    box.click();  // the user
    EXPECT_EQ(boxRuns, 2);
    EXPECT_FALSE(box.isChecked());
}

TEST(FormsControls, OptionButtonsRunOnSelection) {
    QWidget group;
    QRadioButton a(&group), b(&group);
    int aRuns = 0, bRuns = 0;
    forms::onClick(&a, [&] { ++aRuns; });
    forms::onClick(&b, [&] { ++bRuns; });
    forms::selectOption(&b);
    forms::selectOption(&b);
    EXPECT_EQ(bRuns, 1);
    forms::selectOption(&a);
    EXPECT_TRUE(a.isChecked());
    EXPECT_FALSE(b.isChecked());
    EXPECT_EQ(aRuns, 1);
    forms::click(&a);
    EXPECT_EQ(aRuns, 2);
}

TEST(FormsControls, SwallowingListsIgnoreKeysAndWheel) {
    QComboBox list;
    list.addItems({"a", "b", "c"});
    list.setCurrentIndex(0);
    int runs = 0;
    forms::onClick(&list, [&] { ++runs; });
    forms::swallowKeys(&list);
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_End);
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_EQ(runs, 0);

    // The focus still leaves the list both ways.
    QWidget window;
    auto* before = new QLineEdit(&window);
    auto* trapped = new QComboBox(&window);
    auto* after = new QLineEdit(&window);
    trapped->addItems({"a", "b"});
    forms::swallowKeys(trapped);
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    trapped->setFocus();
    QTest::keyClick(trapped, Qt::Key_Tab);
    EXPECT_TRUE(after->hasFocus());
    trapped->setFocus();
    QTest::keyClick(trapped, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(before->hasFocus());
    EXPECT_EQ(trapped->currentIndex(), 0);

    QComboBox other;
    other.addItems({"a", "b"});
    other.setCurrentIndex(0);
    QTest::keyClick(&other, Qt::Key_Down);
    EXPECT_EQ(other.currentIndex(), 1) << "an ordinary list still takes keys";
}

TEST(FormsControls, ListsShowTheirStartTextAndTakeNoTyping) {
    QWidget window;
    auto* quiet = forms::makeList(QStringLiteral("quiet"), {"one", "two"},
                                  QStringLiteral("start text"), &window);
    auto* keyed = forms::makeList(QStringLiteral("keyed"), {"one", "two"},
                                  QStringLiteral("other start"), &window);
    auto* after = new QLineEdit(&window);
    forms::swallowKeys(quiet);
    int keyedRuns = 0;
    forms::onClick(keyed, [&] { ++keyedRuns; });
    EXPECT_EQ(quiet->currentText(), QStringLiteral("start text"));
    EXPECT_EQ(quiet->currentIndex(), -1);
    window.show();
    QApplication::setActiveWindow(&window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));

    quiet->setFocus();
    QTest::keyClicks(quiet->lineEdit(), QStringLiteral("xyz"));
    QTest::keyClick(quiet->lineEdit(), Qt::Key_Down);
    EXPECT_EQ(quiet->currentText(), QStringLiteral("start text"));
    EXPECT_EQ(quiet->currentIndex(), -1);
    QTest::keyClick(quiet->lineEdit(), Qt::Key_Tab);
    EXPECT_FALSE(quiet->hasFocus());

    // A list that takes keys steps through its items and reports each step, but its text
    // box still takes no typing.
    keyed->setFocus();
    QTest::keyClicks(keyed->lineEdit(), QStringLiteral("xyz"));
    EXPECT_EQ(keyed->currentText(), QStringLiteral("other start"));
    QTest::keyClick(keyed->lineEdit(), Qt::Key_Down);
    EXPECT_EQ(keyed->currentIndex(), 0);
    EXPECT_EQ(keyed->currentText(), QStringLiteral("one"));
    EXPECT_EQ(keyedRuns, 1);
    forms::setListIndex(keyed, 1);
    EXPECT_EQ(keyed->currentText(), QStringLiteral("two"));
    EXPECT_EQ(keyedRuns, 2);
    (void)after;
}

TEST(FormsBitRow, BoxesAreNamedByBitAndShowTheMirror) {
    forms::BitRow row(QStringLiteral("txtSYS"), qz::rowCaptions(qz::kSystemControlLabels));
    for (int k = 0; k < 24; ++k) {
        auto* b = row.findChild<QLineEdit*>(QStringLiteral("txtSYS(%1)").arg(k));
        ASSERT_NE(b, nullptr) << k;
        EXPECT_EQ(b, row.box(k));
        EXPECT_TRUE(b->text().isEmpty());
    }
    int32_t w = 0x012200;
    EXPECT_TRUE(row.mirror(w, qz::kDecToBinSYS));
    EXPECT_EQ(row.digits(), QStringLiteral("000000010010001000000000"));
    EXPECT_EQ(row.box(9)->text(), QStringLiteral("1"));
    int32_t big = 0x1000001;
    EXPECT_FALSE(row.mirror(big, qz::kDecToBinRSYS));
    EXPECT_EQ(row.digits(), QStringLiteral("000000010010001000000000"));
    EXPECT_TRUE(row.box(0)->isReadOnly());
}

TEST(FormsTabControl, ClickOperationRunsWhenTheTabChanges) {
    forms::TabControl tabs(QStringLiteral("QZ7740"), 2);
    for (const char* c : {"A", "B", "C"}) tabs.addTab(new QWidget, QString::fromLatin1(c));
    std::vector<int> previous;
    tabs.onClick([&](int p) { previous.push_back(p); });
    EXPECT_EQ(tabs.currentIndex(), 0);
    tabs.setCurrentIndex(0);
    EXPECT_TRUE(previous.empty());
    tabs.setCurrentIndex(2);
    QTest::mouseClick(tabs.tabButton(1), Qt::LeftButton);
    QTest::mouseClick(tabs.tabButton(1), Qt::LeftButton);
    EXPECT_EQ(previous, (std::vector<int>{0, 2}));
    EXPECT_EQ(tabs.currentIndex(), 1);
    EXPECT_TRUE(tabs.tabButton(1)->isChecked());
    EXPECT_FALSE(tabs.tabButton(2)->isChecked());
    tabs.setCurrentIndex(7);
    EXPECT_EQ(tabs.currentIndex(), 1);
}

// The rows of the compensation and diagnostics panels carry their fields' captions, each
// over exactly the bits it spans, as labels a screen reader finds.
TEST(FormsBitRow, FieldCaptionsStandOverTheirBitsOnEveryPanelThatHasThem) {
    qztest::Harness h;
    auto console = h.startConsole<frmMAINQZ7740>();
    struct Field {
        const char* caption;
        int high, low;
    };
    const std::vector<Field> comp1 = {{"REGISTER ADDRESS", 22, 16}, {"CDUT", 15, 12},
                                      {"DUTALM", 11, 8}, {"SAFEMODE", 7, 7}, {"UNUSED DATA BITS", 6, 0}};
    const std::vector<Field> comp2 = {{"REGISTER ADDRESS", 22, 16}, {"MANUAL", 15, 15}, {"Rz", 14, 12},
                                      {"Rp", 11, 9}, {"GM", 8, 7}, {"CF", 6, 4}, {"CcX", 3, 1},
                                      {"UNUSED DATA BITS", 0, 0}};
    const std::vector<Field> diag = {{"REGISTER ADDRESS", 22, 16}, {"DIAG SELECT", 15, 12},
                                     {"TSENSE SELECT", 11, 7}, {"TEST FORCE AMP", 6, 5},
                                     {"UNUSED DATA BITS", 4, 0}};
    const std::tuple<forms::Form, const char*, const std::vector<Field>*> rows[] = {
        {forms::Form::frmCompensation, "txtCP1", &comp1},
        {forms::Form::frmCompensation, "txtCP2", &comp2},
        {forms::Form::frmDIAG, "txtCP1", &diag},
        {forms::Form::frmDIAG, "txtRD1", &diag}};
    for (const auto& [form, name, fields] : rows) {
        QWidget* panel = h.nav.show(form);
        auto* row = panel->findChild<forms::BitRow*>(QString::fromLatin1(name));
        ASSERT_NE(row, nullptr) << name;
        // Laid out at its own size, also where its page is not the one on top.
        row->layout()->setGeometry(QRect(QPoint(), row->sizeHint()));
        const auto captions = row->findChildren<QLabel*>();
        EXPECT_EQ(captions.size(), static_cast<qsizetype>(fields->size())) << name << ": R/W has none";
        for (const Field& f : *fields) {
            const QString at = QStringLiteral("%1Group(%2)").arg(QLatin1String(name)).arg(f.high);
            auto* label = row->findChild<QLabel*>(at);
            ASSERT_NE(label, nullptr) << at.toStdString();
            EXPECT_EQ(label->text().toStdString(), f.caption);
            EXPECT_EQ(label->accessibleName().toStdString(), f.caption);
            const QRect span = label->geometry();
            EXPECT_LE(span.left(), row->box(f.high)->geometry().left()) << f.caption;
            EXPECT_GE(span.right(), row->box(f.low)->geometry().right()) << f.caption;
            if (f.high < 23) {
                EXPECT_GT(span.left(), row->box(f.high + 1)->geometry().right()) << f.caption;
            }
            if (f.low > 0) {
                EXPECT_LT(span.right(), row->box(f.low - 1)->geometry().left()) << f.caption;
            }
        }
    }
}
