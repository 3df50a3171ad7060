#include "forms/Controls.h"

#include "forms/Recording.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRadioButton>
#include <QAbstractItemView>
#include <QEvent>

namespace forms {

namespace {

// Holds a control's click operation, as a child of the control.
class ClickOperation : public QObject {
public:
    ClickOperation(QObject* control, std::function<Outcome()> h)
        : QObject(control), handler(std::move(h)) {
        setObjectName(QStringLiteral("clickOperation"));
    }
    std::function<Outcome()> handler;
};

Outcome operateOn(QObject* control) {
    if (!control) return {};
    auto* op = control->findChild<ClickOperation*>(QStringLiteral("clickOperation"),
                                                   Qt::FindDirectChildrenOnly);
    return op && op->handler ? op->handler() : Outcome{};
}

void run(QObject* control) { show(operateOn(control)); }

// The operator's pick or click: an action of the operator's, and its outcome shown.
void runByHand(QWidget* control) {
    show(recording().act({Action::Kind::Control, control}, [control] { return operateOn(control); }));
}

class InputFilter : public QObject {
public:
    InputFilter(QObject* parent, bool keys) : QObject(parent), keys_(keys) {}
    bool eventFilter(QObject*, QEvent* e) override {
        switch (e->type()) {
        case QEvent::Wheel: return true;
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride: {
            // Tab and Shift+Tab still move the focus on: the list must not trap it.
            const int key = static_cast<QKeyEvent*>(e)->key();
            return keys_ && key != Qt::Key_Tab && key != Qt::Key_Backtab;
        }
        default: return false;
        }
    }

private:
    bool keys_;
};

} // namespace

void onClick(QComboBox* list, std::function<Outcome()> handler) {
    new ClickOperation(list, std::move(handler));
    QObject::connect(list, &QComboBox::activated, list, [list](int) { runByHand(list); });
}

void onClick(QAbstractButton* button, std::function<Outcome()> handler) {
    new ClickOperation(button, std::move(handler));
    QObject::connect(button, &QAbstractButton::clicked, button, [button](bool) { runByHand(button); });
}

void onClicks(std::initializer_list<QWidget*> controls, std::function<Outcome(const QString&)> handler) {
    for (QWidget* control : controls) {
        std::function<Outcome()> run = [handler, name = control->objectName()] { return handler(name); };
        if (auto* list = qobject_cast<QComboBox*>(control)) onClick(list, run);
        else if (auto* button = qobject_cast<QAbstractButton*>(control)) onClick(button, run);
    }
}

void setListIndex(QComboBox* list, int index) {
    if (list->currentIndex() == index) return;
    list->setCurrentIndex(index);
    run(list);
}

void setChecked(QAbstractButton* box, bool checked) {
    if (box->isChecked() == checked) return;
    box->setChecked(checked);
    run(box);
}

void selectOption(QAbstractButton* option) {
    if (option->isChecked()) return;
    option->setChecked(true);
    run(option);
}

void click(QWidget* control) { run(control); }

Outcome operate(QWidget* control) { return operateOn(control); }

int itemOf(const QWidget* control) {
    if (const auto* list = qobject_cast<const QComboBox*>(control)) return list->currentIndex();
    if (const auto* box = qobject_cast<const QAbstractButton*>(control)) return box->isChecked() ? 1 : 0;
    return -1;
}

void setItem(QWidget* control, int item) {
    if (auto* list = qobject_cast<QComboBox*>(control)) {
        setListIndex(list, item);
    } else if (auto* option = qobject_cast<QRadioButton*>(control)) {
        if (item != 0) selectOption(option);
    } else if (auto* box = qobject_cast<QAbstractButton*>(control)) {
        setChecked(box, item == 1);
    }
}

void setTwin(Navigator& nav, Form panel, const QString& control, int item) {
    if (auto* twin = controlOf<QWidget>(nav, panel, control)) setItem(twin, item);
}

void swallowKeys(QComboBox* list) {
    auto* filter = new InputFilter(list, true);
    list->installEventFilter(filter);
    list->view()->installEventFilter(filter);
    if (list->lineEdit() != nullptr) list->lineEdit()->installEventFilter(filter);
}

void ignoreWheel(QComboBox* list) { list->installEventFilter(new InputFilter(list, false)); }

} // namespace forms
