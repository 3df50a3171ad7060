// A board lost and plugged in again, with the program's panels: the status bars offer
// "Reconnect" once it is back on the bus, and it starts the program afresh on it.

#include "emulated/EmulatedBoard.h"

#include "board/LibusbPort.h"
#include "board/TraceLibrary.h"
#include "board/UsbBridge.h"
#include "forms/MessageBox.h"
#include "frontpanel/frmMain.h"
#include "measure/frmMeasure.h"
#include "shell/Panels.h"
#include "shell/Start.h"
#include "support/RunTools.h"
#include "support/TraceFile.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

TEST(EmulatedReconnect, ABoardBackOnTheBusIsStartedAfreshWithEveryPanel) {
    qz::EmulatedBoard board;
    board.plug(1);
    const std::string dir = board.root() + "/firmware";
    std::filesystem::create_directories(dir);
    std::ofstream(dir + "/QZ7740SPI.hex") << ":0100000055AA\n:00000001FF\n";
    qztest::TraceFile trace;
    std::string why;
    qz::Session session(qz::TraceLibrary::open(
        std::make_unique<qz::UsbBridge>(std::make_unique<qz::LibusbPort>()), trace.path(), why));
    session.usb.applicationDirectory = dir;
    std::vector<std::string> boxes;
    const qz::MessageSink sink = [&](const std::string& title, const std::string& text, qz::MsgIcon) {
        boxes.push_back(title + "|" + text);
    };
    session.usb.messageBox = sink;
    forms::setMessageSink(sink);
    forms::Navigator nav;
    qz::registerPanels(nav, session);
    std::unique_ptr<frmMAINQZ7740> console = qz::startConsole(nav, session);
    qz::BoardWatch watch(nav, session, console);

    QPointer<frmMain> front = static_cast<frmMain*>(nav.loaded(forms::Form::frmMain));
    ASSERT_NE(front, nullptr);
    auto* button = front->findChild<QPushButton*>(QStringLiteral("cmdReconnect"));
    ASSERT_NE(button, nullptr);
    EXPECT_FALSE(button->isVisibleTo(front));
    const int startRange = front->cboCurrent->currentIndex();
    front->cboCurrent->setCurrentIndex(startRange + 1);

    // Pulled out in the middle of a sweep: the run stops with the points it took, says so
    // once, and the status bar says the board is lost.
    auto* measure = static_cast<frmMeasure*>(nav.show(forms::Form::frmMeasure));
    qztest::ActingClock clock;
    measure->useClock(clock);
    measure->cboDela->setCurrentIndex(1); // "100ms", on the test's clock
    emit measure->cboDela->activated(1);
    clock.at(3, [&] { board.unplug(0); });
    QTest::mouseClick(measure->cmdPlot, Qt::LeftButton);
    ASSERT_EQ(session.usb.linkState(), qz::LinkState::Lost);
    EXPECT_LT(measure->arrays.sweepCodes.size(), 11u) << "eleven points asked for";
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].rfind("QZ7740|The evaluation board was lost during the run.", 0), 0u) << boxes[0];
    boxes.clear();
    EXPECT_EQ(front->findChild<QLabel*>(QStringLiteral("linkStatus"))->text(), QStringLiteral("board lost"));
    watch.poll();
    EXPECT_FALSE(button->isVisibleTo(front)) << "the board is not on the bus";

    board.replug(0);
    // The stack hears of the board from its hot-plug events.
    for (int i = 0; i < 250 && !session.boardBack(); ++i) {
        watch.poll();
        if (!session.boardBack()) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ASSERT_TRUE(session.boardBack());
    EXPECT_TRUE(button->isVisibleTo(front));

    trace.fresh();
    QTest::mouseClick(button, Qt::LeftButton);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(session.usb.linkState(), qz::LinkState::Connected);
    EXPECT_TRUE(front.isNull()) << "the old front panel is gone";
    auto* again = static_cast<frmMain*>(nav.loaded(forms::Form::frmMain));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->cboCurrent->currentIndex(), startRange) << "at its start state";
    EXPECT_FALSE(again->findChild<QPushButton*>(QStringLiteral("cmdReconnect"))->isVisibleTo(again));

    // The start once more: search, connect, firmware, the start request, the power-on words.
    const std::vector<std::string> lines = trace.fresh();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0].rfind("SEARCH ", 0), 0u) << lines[0];
    EXPECT_EQ(lines[1].rfind("CONNECT ", 0), 0u) << lines[1];
    EXPECT_EQ(lines[2].rfind("FIRMWARE ", 0), 0u) << lines[2];
    EXPECT_NE(lines[2].find("-> 0"), std::string::npos) << lines[2];
    EXPECT_EQ(qztest::wordsSent(lines).front(), 0x012200);
    EXPECT_EQ(board.chip(0).reg(0x01), 0x2200) << "the chip took the power-on words";
    EXPECT_TRUE(boxes.empty()) << boxes.front();
    forms::setMessageSink({});
    for (forms::Form form : forms::kAllForms)
        if (form != forms::Form::frmMAINQZ7740) delete nav.loaded(form);
}
