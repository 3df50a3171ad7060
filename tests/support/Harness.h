#pragma once
// What a panel test needs: a session on the virtual board with its trace, and the
// message boxes and the end of the program caught instead of shown.

#include "board/TraceLibrary.h"
#include "board/VirtualBoard.h"
#include "forms/MessageBox.h"
#include "registers/Session.h"
#include "support/TraceFile.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace qztest {

struct Box {
    std::string title, text;
    qz::MsgIcon icon;
};

class Harness {
public:
    TraceFile trace;
    qz::VirtualBoard* board = nullptr;
    std::unique_ptr<qz::Session> session;
    std::vector<Box> boxes;
    int ends = 0;

    Harness() {
        auto vb = std::make_unique<qz::VirtualBoard>();
        board = vb.get();
        std::string why;
        auto traced = qz::TraceLibrary::open(std::move(vb), trace.path(), why);
        EXPECT_TRUE(traced) << why;
        session = std::make_unique<qz::Session>(std::move(traced));
        session->usb.messageBox = [this](const std::string& t, const std::string& x, qz::MsgIcon i) {
            boxes.push_back({t, x, i});
        };
        forms::setMessageSink(session->usb.messageBox);
        forms::setEndProgram([this] { ++ends; });
    }
    ~Harness() {
        forms::setMessageSink({});
        forms::setEndProgram({});
    }

    // Shows the panel and makes it the active window, so that focus can be checked.
    static void activate(QWidget* w) {
        w->show();
        w->activateWindow();
        QApplication::setActiveWindow(w);
        QApplication::processEvents();
    }
};

template <typename T>
T* child(QWidget* panel, const char* name) {
    T* c = panel->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(c, nullptr) << "no control " << name;
    return c;
}

} // namespace qztest
