// Every entry field of the console's DAC page, driven by name: the words each sends and
// the words of each refusal.

#include "console/frmMAINQZ7740.h"
#include "forms/Controls.h"
#include "levels/Messages.h"
#include "forms/Lamp.h"
#include "forms/TabControl.h"
#include "support/FakeLibrary.h"
#include "support/ConsoleFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using qztest::clickBox;
using qztest::Harness;
using qztest::pick;

namespace {

struct FieldCase {
    const char* box;
    int dacTab;             // tab of the DAC page that holds it; -1: beside the tabs
    const char* good;
    std::vector<int> words; // what a good entry sends
    const char* tooLarge;   // a text past the upper bound
    const char* boundText;
};

constexpr const char* kXFFFF = "Number too large. Please reenter code between 0 and xFFFF.";
constexpr const char* kX7F = "Number too large. Please reenter code between 0 and x7F.";

// In this order: the m and c boxes reload the x1 that the boxes before them wrote.
const FieldCase kFields[] = {
    {"OFFSETx1(0)", -1, "8000", {0x0B8000}, "10000", kXFFFF},
    {"txtDGS", -1, "1", {0x3D0001}, "10000", kXFFFF},
    {"txtstart", 0, "8000", {0x088000}, "10000", kXFFFF},
    {"txtRAMP", 0, "0", {0x3E0000}, "10000", kXFFFF},
    {"txtRampStep", 0, "7F", {0x3F007F}, "80", kX7F},
    {"txtRCLKDiv", 0, "FF", {0x4000FF}, "100", kX7F},
    {"txtFINx1", 1, "8000", {0x088000}, "10000", kXFFFF},
    {"txtFINM", 1, "FFFF", {0x09FFFF}, "10000", kXFFFF},
    {"txtFINC", 1, "8000", {0x0A8000}, "10000", kXFFFF},
    {"txtCLLx1(0)", 2, "7FFF", {0x0D7FFF}, "8000",
     "Number too large. Please reenter code between 0 and 7FFF."},
    {"txtCLLM(0)", 2, "1234", {0x0E1234, 0x0D7FFF}, "10000", kXFFFF},
    {"txtCLLC(0)", 2, "8000", {0x0F8000, 0x0D7FFF}, "10000", kXFFFF},
    {"txtCLHx1(0)", 2, "8000", {0x108000}, "10000",
     "Number too large. Please reenter code between 0 and 0xFFFF."},
    {"txtCLHM(0)", 2, "FFFF", {0x11FFFF, 0x108000}, "10000", kXFFFF},
    {"txtCLHC(0)", 2, "8000", {0x128000, 0x108000}, "10000", kXFFFF},
    {"txtCPLx1(0)", 3, "1", {0x130001}, "10000", kXFFFF},
    {"txtCPLM(4)", 3, "1", {0x200001}, "10000", kXFFFF},
    {"txtCPLC(6)", 3, "1", {0x270001}, "10000", kXFFFF},
    {"txtCPHx1(3)", 3, "8000", {0x318000}, "10000", kXFFFF},
    {"txtCPHM(7)", 3, "1", {0x490001}, "10000", kXFFFF},
    {"txtCPHC(5)", 3, "1", {0x390001}, "10000", kXFFFF},
};

class ConsoleFields : public qztest::ConsoleFixture {};

} // namespace

TEST_F(ConsoleFields, EveryDacFieldWritesItsRegisterAndRefusesInItsOwnWords) {
    f->QZ7740->setCurrentIndex(4);
    for (const FieldCase& c : kFields) {
        SCOPED_TRACE(c.box);
        if (c.dacTab >= 0) f->tabDACS->setCurrentIndex(c.dacTab);
        h.trace.fresh();
        auto* box = f->findChild<QLineEdit*>(QString::fromLatin1(c.box));
        ASSERT_NE(box, nullptr);
        for (const auto& [text, message] :
             {std::pair<const char*, const char*>{c.tooLarge, c.boundText}, std::pair<const char*, const char*>{"12x", qz::kNotValidNumber},
              std::pair<const char*, const char*>{"", qz::kNotValidNumber}}) {
            box->setFocus();
            box->setText(QString::fromLatin1(text));
            QTest::keyClick(box, Qt::Key_Return);
            ASSERT_EQ(h.boxes.size(), 1u) << text;
            EXPECT_EQ(h.boxes[0].title, "Entry Error");
            EXPECT_EQ(h.boxes[0].text, message);
            EXPECT_EQ(h.boxes[0].icon, qz::MsgIcon::Exclamation);
            EXPECT_TRUE(box->text().isEmpty());
            EXPECT_EQ(QApplication::focusWidget(), box);
            EXPECT_TRUE(h.trace.fresh().empty());
            h.boxes.clear();
        }
        box->setText(QString::fromLatin1(c.good));
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_TRUE(h.boxes.empty());
        EXPECT_EQ(qztest::wordsSent(h.trace.fresh()), c.words);
    }
}

TEST(ConsoleFieldsEdge, DacLoadOfTheMidCode) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    f->DACLOAD(0x8000, 0x080000);
    EXPECT_EQ(qztest::wordsSent(h.trace.fresh()).back(), 0x088000);
    EXPECT_EQ(h.session->general.DAClast, 0);
    EXPECT_EQ(f->Text1->text(), QStringLiteral("088000"));
}

TEST(ConsoleFieldsEdge, AlarmLampsOfTheAllClearReply) {
    auto fake = std::make_unique<qztest::FakeLibrary>();
    qztest::FakeLibrary* lib = fake.get();
    Harness h(std::move(fake));
    auto f = h.startConsole<frmMAINQZ7740>();
    lib->replies = {{0x00, 0xC0, 0x43}};
    QTest::mouseClick(f->READCOMP, Qt::LeftButton);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(f->cmdTEMP[static_cast<size_t>(i)]->text(), QStringLiteral("OK"));
    }
    EXPECT_EQ(f->lblREADSPI->text(), QStringLiteral("43C000"));
}
