// The twins: every list and check box that stands on both the console and the front panel.
// A change on either reaches the chip as one word, through the front panel (the gang mode
// also by the console's own handler, so twice), and the two controls end equal. Each case starts from a word with every data bit set (which
// pins the bits a mask keeps) or none (which pins the bits an item sets).

#include "forms/Controls.h"
#include "support/ConsoleFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

using qztest::pick;

namespace {

struct TwinCase {
    const char* control;
    int item; // a list's item; for a check box 0 unchecks and 1 checks
    int32_t start;
    int32_t word;
};

constexpr int32_t SYS1 = 0x01FFFF, SYS0 = 0x010000;
constexpr int32_t PMU1 = 0x02FFFF, PMU0 = 0x020000;
constexpr int32_t DPS1 = 0x03FFFF, DPS0 = 0x030000;

const TwinCase kTwins[] = {
    {"chkPD", 0, SYS1, 0x01FC00},       {"chkPD", 1, SYS0, 0x010200},
    {"IMEASG", 0, SYS1, 0x01EF00},      {"IMEASG", 1, SYS0, 0x011000},
    {"MEASOUTG", 0, SYS0, 0x012000},    {"MEASOUTG", 1, SYS1, 0x01DF00},
    {"tempset", 0, SYS1, 0x013E00},     {"tempset", 1, SYS1, 0x017FFF},
    {"tempset", 2, SYS1, 0x01BFFF},     {"tempset", 3, SYS0, 0x01C000},
    {"tempset", 1, SYS0, 0x014000},     {"tempset", 2, SYS0, 0x018000},
    {"chkENABLECH", 0, PMU1, 0x023FF0}, {"chkENABLECH", 1, PMU0, 0x028000},
    {"cboCurrent", 6, PMU1, 0x02B7F0},  {"cboCurrent", 5, PMU0, 0x022800},
    {"cboCurrent", 0, PMU1, 0x0287F0},  {"cboCompare", 3, PMU1, 0x02BFF0},
    {"cboCompare", 1, PMU0, 0x020200},  {"cboMEASURE", 7, PMU1, 0x02BFF0},
    {"cboMEASURE", 1, PMU0, 0x020020},  {"chkCLAMPEN", 0, PMU1, 0x02BFE0},
    {"chkCLAMPEN", 1, PMU0, 0x020010},  {"cboSysforce", 0, DPS1, 0x037F00},
    {"cboSysforce", 1, DPS0, 0x038000}, {"cboSlew", 7, DPS1, 0x03FF00},
    {"cboSlew", 4, DPS0, 0x034000},     {"chkGPO", 0, DPS1, 0x03F700},
    {"chkGPO", 1, DPS0, 0x030800},      {"cboSlave", 3, DPS1, 0x03FF00},
    {"cboSlave", 2, DPS0, 0x030400},    {"chk10k", 0, DPS1, 0x03FE00},
    {"chk10k", 1, DPS0, 0x030100},
};

class Twins : public qztest::ConsoleFixture {
protected:
    // The shadow word of a register, by the address the word carries.
    int32_t& shadowOf(int32_t word) {
        switch (word >> 16) {
        case 1: return g.SYSreg;
        case 2: return g.PMUreg;
        default: return g.DPS2reg;
        }
    }

    // Puts the control on both panels away from item without running anything.
    void elsewhere(const QString& name, int item) {
        for (QWidget* panel : {static_cast<QWidget*>(f.get()), static_cast<QWidget*>(m)}) {
            if (auto* list = panel->findChild<QComboBox*>(name)) list->setCurrentIndex(-1);
            if (auto* box = panel->findChild<QCheckBox*>(name)) box->setChecked(item == 0);
        }
    }

    // The operator's change of the control on this panel.
    static void change(QWidget* panel, const QString& name, int item) {
        if (auto* list = panel->findChild<QComboBox*>(name)) return pick(list, item);
        auto* box = panel->findChild<QCheckBox*>(name);
        ASSERT_NE(box, nullptr) << name.toStdString();
        qztest::Harness::activate(panel);
        qztest::clickBox(box);
    }
};

} // namespace

TEST_F(Twins, AChangeOnEitherPanelSendsOneWordAndLeavesBothEqual) {
    for (const bool fromConsole : {true, false}) {
        for (const TwinCase& c : kTwins) {
            SCOPED_TRACE(std::string(c.control) + " item " + std::to_string(c.item) +
                         (fromConsole ? " on the console" : " on the front panel"));
            const QString name = QString::fromLatin1(c.control);
            elsewhere(name, c.item);
            shadowOf(c.word) = c.start;
            h.trace.fresh();
            change(fromConsole ? static_cast<QWidget*>(f.get()) : m, name, c.item);
            // The console's gang mode goes out at once by its own handler as well.
            const size_t words = name == QLatin1String("cboSlave") ? 2 : 1;
            EXPECT_EQ(sent(), std::vector<int>(words, c.word));
            EXPECT_EQ(shadowOf(c.word), c.word);
            EXPECT_EQ(forms::itemOf(f->findChild<QWidget*>(name)), c.item);
            EXPECT_EQ(forms::itemOf(m->findChild<QWidget*>(name)), c.item);
            EXPECT_EQ(m->txtWrite->text().toInt(nullptr, 16), c.word);
            EXPECT_EQ(f->Text1->text().toInt(nullptr, 16), c.word);
            h.boxes.clear(); // the range-name warning of a gain of 10 at VREF 5
        }
    }
}

TEST_F(Twins, ATwinAlreadyAtTheItemSendsNothingMore) {
    pick(f->cboCurrent, 5);
    EXPECT_EQ(sent(), std::vector<int>{0x02A950});
    pick(f->cboCurrent, 5);
    EXPECT_TRUE(sent().empty()) << "the front panel's list stands there already";
    pick(m->cboCurrent, 5);
    EXPECT_EQ(sent(), std::vector<int>{0x02A950}) << "a pick on the front panel always writes";
}
