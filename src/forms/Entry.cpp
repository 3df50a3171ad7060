#include "forms/Entry.h"

#include <QEvent>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLineEdit>

namespace forms {

namespace {

class EnterFilter : public QObject {
public:
    EnterFilter(QObject* parent, std::function<void()> h) : QObject(parent), handler_(std::move(h)) {}
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() != QEvent::KeyPress) return false;
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
        handler_();
        return true;
    }

private:
    std::function<void()> handler_;
};

class LeaveFilter : public QObject {
public:
    LeaveFilter(QObject* parent, std::function<void()> h) : QObject(parent), handler_(std::move(h)) {}
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() != QEvent::FocusOut) return false;
        const Qt::FocusReason why = static_cast<QFocusEvent*>(e)->reason();
        if (why == Qt::ActiveWindowFocusReason || why == Qt::PopupFocusReason) return false;
        handler_();
        return false;
    }

private:
    std::function<void()> handler_;
};

} // namespace

void onEnter(QLineEdit* box, std::function<void()> handler) {
    box->installEventFilter(new EnterFilter(box, std::move(handler)));
}

void onLeave(QLineEdit* box, std::function<void()> handler) {
    box->installEventFilter(new LeaveFilter(box, std::move(handler)));
}

QFont hexFont() {
    QFont f = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    f.setStyleHint(QFont::Monospace);
    return f;
}

} // namespace forms
