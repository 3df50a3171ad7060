// The console and the front panel under a long run of random operator actions: every box
// gets random text and Enter or loses the focus, every list a random pick, every button
// and option a click, the tabs change. Nothing may crash or hang, every word on the wire
// is a 24-bit word in a well-formed trace line, and every message is an entry refusal or
// the range warning.

#include "console/frmMAINQZ7740.h"
#include "forms/TabControl.h"
#include "support/ConsoleFixture.h"
#include "support/FakeLibrary.h"
#include "support/Harness.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>

#include <random>

using qztest::ConsoleFixture;

namespace {

std::string randomText(std::mt19937& rng) {
    static const std::vector<std::string> typical = {
        "", "0", "8000", "7FFF", "FFFF", "10000", "ffff8000", "FFFFFF80", "1234", "zz", "&h12",
        "-1", "1e3", " 12", "812345", "1000000", "80000000", "0000000012", "7f", "ff", "100",
        "2.5", "-3.3", "5.4", "0.4", "256001", "12.8121", "-12.8125", "1e-40", "nan"};
    static const std::string alphabet = "0123456789abcdefABCDEF xyz.-+&hHe";
    if (rng() % 3 != 0) return typical[rng() % typical.size()];
    std::string s;
    const size_t n = rng() % 12;
    for (size_t i = 0; i < n; ++i) s += alphabet[rng() % alphabet.size()];
    return s;
}

class ConsoleMonkey : public ConsoleFixture {};


bool allowedMessage(const std::string& text) {
    for (const char* start : {"Not a valid number", "Number too large", "Number too small",
                              "Number outside", "Requested clamp level", "This combination of VREF"})
        if (text.rfind(start, 0) == 0) return true;
    return false;
}

// Runs the random operator on both panels and checks what it leaves behind. On a board
// that answers, the wire must carry many well-formed lines.
void runMonkey(qztest::Harness& h, frmMAINQZ7740* f, uint32_t seed, bool boardAnswers) {
    std::mt19937 rng(seed);
    QList<QLineEdit*> boxes;
    QList<QComboBox*> lists;
    QList<QAbstractButton*> buttons;
    for (QWidget* panel : {static_cast<QWidget*>(f), h.nav.loaded(forms::Form::frmMain)}) {
        ASSERT_NE(panel, nullptr);
        for (QLineEdit* e : panel->findChildren<QLineEdit*>())
            if (!e->isReadOnly() && e->objectName().size() > 0 && e->isEnabled()) boxes << e;
        lists << panel->findChildren<QComboBox*>();
        // The program's own buttons; Qt's inner ones (a menu bar's) open menus of their own.
        for (QAbstractButton* b : panel->findChildren<QAbstractButton*>())
            if (b->objectName() != QStringLiteral("cmdEXIT") && !b->objectName().isEmpty() &&
                !b->objectName().startsWith(QStringLiteral("qt_")))
                buttons << b;
    }
    ASSERT_GT(boxes.size(), 45);
    ASSERT_GT(lists.size(), 20);
    ASSERT_GT(buttons.size(), 40);

    int refusals = 0;
    for (int step = 0; step < 3000; ++step) {
        switch (rng() % 6) {
        case 0:
        case 1: {
            QLineEdit* box = boxes[static_cast<int>(rng() % boxes.size())];
            box->setFocus();
            box->setText(QString::fromStdString(randomText(rng)));
            if (rng() % 4 == 0)
                f->QZ7740->setFocus(Qt::TabFocusReason);  // leaves the box
            else
                QTest::keyClick(box, Qt::Key_Return);
            break;
        }
        case 2: {
            QComboBox* list = lists[static_cast<int>(rng() % lists.size())];
            if (list->count() > 0) qztest::pick(list, static_cast<int>(rng() % list->count()));
            break;
        }
        case 3:
            buttons[static_cast<int>(rng() % buttons.size())]->click();
            break;
        case 4:
            f->QZ7740->setCurrentIndex(static_cast<int>(rng() % 10));
            break;
        default:
            f->tabDACS->setCurrentIndex(static_cast<int>(rng() % 4));
            break;
        }
        for (const qztest::Box& b : h.boxes) {
            ASSERT_EQ(b.title, "Entry Error") << "step " << step << ": " << b.text;
            ASSERT_EQ(b.icon, qz::MsgIcon::Exclamation);
            ASSERT_TRUE(allowedMessage(b.text)) << b.text;
            ++refusals;
        }
        h.boxes.clear();
        QApplication::processEvents();
    }
    EXPECT_GT(refusals, 100) << "the run should meet many refusals";
    EXPECT_EQ(h.ends, 0);

    const QRegularExpression line(QStringLiteral(
        R"(^VR \d+ [0-9A-F]{4} [0-9A-F]{4} (OUT|IN) \d+ -> \d+( :( [0-9A-F]{2})*)?$)"));
    const std::vector<std::string> lines = h.trace.fresh();
    if (boardAnswers) {
        ASSERT_GT(lines.size(), 1000u);
    }
    for (const std::string& l : lines)
        ASSERT_TRUE(line.match(QString::fromStdString(l)).hasMatch()) << l;
    for (int w : qztest::wordsSent(lines)) ASSERT_TRUE(w >= 0 && w <= 0xFFFFFF) << w;
    if (h.board != nullptr) {
        for (int address = 0; address < 0x80; ++address)
            ASSERT_LE(h.board->reg(address), 0xFFFF) << "register " << address;
    }
}

} // namespace

TEST_F(ConsoleMonkey, RandomOperatorActionsKeepTheWireAndTheMessagesInOrder) {
    runMonkey(h, f.get(), 7740, true);
}

// Without a board, and with a board that stops answering, the console takes the same
// run: the one start message, then only entry refusals, no crash and no hang.
TEST(ConsoleMonkeyWithoutBoard, NoBoardAndADeadBoardStaySilentAndAlive) {
    {
        auto fake = std::make_unique<qztest::FakeLibrary>();
        fake->boards = 0;
        fake->searchStatus = 1001;
        qztest::Harness h(std::move(fake));
        auto f = h.startConsole<frmMAINQZ7740>();
        ASSERT_EQ(h.boxes.size(), 1u) << h.boxes.back().text;
        EXPECT_EQ(h.boxes[0].title, ": 1001");
        h.boxes.clear();
        h.trace.fresh();
        runMonkey(h, f.get(), 1001, false);
    }
    {
        auto fake = std::make_unique<qztest::FakeLibrary>();
        qztest::FakeLibrary* lib = fake.get();
        qztest::Harness h(std::move(fake));
        auto f = h.startConsole<frmMAINQZ7740>();
        ASSERT_TRUE(h.boxes.empty());
        lib->requestStatus = 3001;
        lib->link = qz::LinkState::Lost;
        h.trace.fresh();
        runMonkey(h, f.get(), 3001, false);
    }
}
