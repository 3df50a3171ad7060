#include "forms/Entry.h"

#include "forms/MessageBox.h"
#include "forms/Recording.h"
#include "levels/Numbers.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLineEdit>

namespace forms {

namespace {

// The Enter key in a box: an action of the operator's, whose outcome is shown.
class EnterFilter : public QObject {
public:
    EnterFilter(QLineEdit* box, std::function<Outcome()> h) : QObject(box), box_(box), handler_(std::move(h)) {}
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() != QEvent::KeyPress) return false;
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
        show(recording().act({Action::Kind::Control, box_}, handler_));
        return true;
    }

private:
    QLineEdit* box_;
    std::function<Outcome()> handler_;
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
    box->installEventFilter(new EnterFilter(box, [h = std::move(handler)] {
        h();
        return Outcome{};
    }));
}

void onLeave(QLineEdit* box, std::function<void()> handler) {
    box->installEventFilter(new LeaveFilter(box, std::move(handler)));
}

void pressEnter(QLineEdit* box) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(box, &press);
}

namespace {
// Holds a box's Enter operation, as a child of the box.
class EntryOperation : public QObject {
public:
    EntryOperation(QObject* box, const bool& busy, std::function<Outcome()> h)
        : QObject(box), busy_(busy), handler_(std::move(h)) {
        setObjectName(QStringLiteral("entryOperation"));
    }
    Outcome run() const { return busy_ ? Outcome{} : handler_(); }

private:
    const bool& busy_;
    std::function<Outcome()> handler_;
};
} // namespace

void onEntry(QLineEdit* box, const bool& entryBusy, std::function<Outcome()> enter) {
    auto* op = new EntryOperation(box, entryBusy, std::move(enter));
    box->installEventFilter(new EnterFilter(box, [op] { return op->run(); }));
}

Outcome enter(QLineEdit* box) {
    const auto* op = box->findChild<EntryOperation*>(QStringLiteral("entryOperation"), Qt::FindDirectChildrenOnly);
    return op ? op->run() : Outcome{};
}

namespace {
Outcome verdict(QLineEdit* box, bool ok, const std::string& text, const std::string& message) {
    if (!ok) return refused(box, message);
    box->setText(QString::fromStdString(text));
    markAccepted(box);
    return {};
}
constexpr const char* kAccepted = "qzAccepted";
} // namespace

void markAccepted(QLineEdit* box) { box->setProperty(kAccepted, box->text()); }

QString acceptedText(const QLineEdit* box) { return box->property(kAccepted).toString(); }

Outcome take(QLineEdit* box, const qz::FieldCheck& c) { return verdict(box, c.ok, c.text, c.message); }

Outcome take(QLineEdit* box, const qz::DecimalCheck& c) { return verdict(box, c.ok, c.text, c.message); }

std::optional<int32_t> readCode(QLineEdit* box, Outcome& outcome) {
    const std::optional<int32_t> code = qz::readDacCode(box->text().toStdString());
    if (!code) outcome += refused(box, qz::kNotValidNumber);
    return code;
}

QFont hexFont() {
    QFont f = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    f.setStyleHint(QFont::Monospace);
    return f;
}

} // namespace forms
