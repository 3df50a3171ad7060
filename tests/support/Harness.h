#pragma once
// What a panel test needs: a session on the virtual board with its trace, and the
// message boxes, the file dialogs and the end of the program caught instead of shown.

#include "board/TraceLibrary.h"
#include "board/VirtualBoard.h"
#include "forms/MessageBox.h"
#include "forms/Navigator.h"
#include "forms/SaveData.h"
#include "registers/Session.h"
#include "shell/Panels.h"
#include "support/QtPrint.h"
#include "support/TraceFile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTest>
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
    forms::Navigator nav;
    std::vector<Box> boxes;
    int ends = 0;

    Harness() : Harness(nullptr) {}

    // On the library given, or on the virtual board.
    explicit Harness(std::unique_ptr<qz::BridgeLibrary> library) {
        if (!library) {
            auto vb = std::make_unique<qz::VirtualBoard>();
            board = vb.get();
            library = std::move(vb);
        }
        std::string why;
        auto traced = qz::TraceLibrary::open(std::move(library), trace.path(), why);
        EXPECT_TRUE(traced) << why;
        session = std::make_unique<qz::Session>(std::move(traced));
        session->usb.messageBox = [this](const std::string& t, const std::string& x, qz::MsgIcon i) {
            boxes.push_back({t, x, i});
        };
        forms::setMessageSink(session->usb.messageBox);
        forms::setEndProgram([this] { ++ends; });
        // A file dialog would wait for a hand: every choice of a file is cancelled,
        // unless a test chooses the file itself.
        forms::setFileChooser(cancelChoice);
        qz::registerPanels(nav, *session);
    }
    ~Harness() {
        // The console belongs to the test that made it; the others to the navigator.
        for (forms::Form form : forms::kAllForms)
            if (form != forms::Form::frmMAINQZ7740) delete nav.loaded(form);
        forms::setMessageSink({});
        forms::setEndProgram({});
        forms::setFileChooser({});
    }

    static QString cancelChoice(QWidget*, const QString&, const QString&, const QString&) { return {}; }

    // The console as the program starts it: made, known by name, loaded.
    template <typename Console>
    std::unique_ptr<Console> startConsole() {
        auto c = std::make_unique<Console>(*session, nav);
        nav.adopt(forms::Form::frmMAINQZ7740, c.get());
        c->Form_Load();
        if (c->isVisible()) activate(c.get());
        return c;
    }

    // Types text into the box and presses Enter.
    static void enter(QLineEdit* box, const QString& text) {
        box->setFocus();
        box->setText(text);
        QTest::keyClick(box, Qt::Key_Return);
    }

    // The one refusal that came: its title, text and icon, the box emptied and focused,
    // nothing sent. The box and the trace are then clear for the next entry.
    void expectRefusal(QLineEdit* box, const std::string& text) {
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0].title, "Entry Error");
        EXPECT_EQ(boxes[0].text, text);
        EXPECT_EQ(boxes[0].icon, qz::MsgIcon::Exclamation);
        EXPECT_TRUE(box->text().isEmpty());
        EXPECT_EQ(QApplication::focusWidget(), box);
        EXPECT_TRUE(trace.fresh().empty()) << "a refusal sends nothing";
        boxes.clear();
    }

    // Shows the panel and makes it the active window, so that focus can be checked.
    static void activate(QWidget* w) {
        w->show();
        w->activateWindow();
        QApplication::setActiveWindow(w);
        QApplication::processEvents();
    }
};

// A user's pick of a list item: the index changes and the list reports the pick.
inline void pick(QComboBox* list, int index) {
    list->setCurrentIndex(index);
    emit list->activated(index);
}

// A mouse click on a check box or option button, at its indicator.
inline void clickBox(QAbstractButton* box) {
    QStyleOptionButton opt;
    opt.initFrom(box);
    const QRect r = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &opt, box);
    QTest::mouseClick(box, Qt::LeftButton, {}, r.center());
}

template <typename T>
T* child(QWidget* panel, const char* name) {
    T* c = panel->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(c, nullptr) << "no control " << name;
    return c;
}

} // namespace qztest
