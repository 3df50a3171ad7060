#include "forms/MessageBox.h"

#include "levels/EntryField.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>

#include <cstdio>
#include <cstdlib>

namespace forms {

namespace {

qz::MessageSink& sink() {
    static qz::MessageSink s;
    return s;
}

std::function<void()>& ender() {
    static std::function<void()> e;
    return e;
}

void qtBox(const std::string& title, const std::string& text, qz::MsgIcon icon) {
    QMessageBox::Icon i = QMessageBox::NoIcon;
    switch (icon) {
    case qz::MsgIcon::Exclamation: i = QMessageBox::Warning; break;
    case qz::MsgIcon::Information: i = QMessageBox::Information; break;
    case qz::MsgIcon::Critical: i = QMessageBox::Critical; break;
    case qz::MsgIcon::None: break;
    }
    QMessageBox box(i, QString::fromStdString(title), QString::fromStdString(text),
                    QMessageBox::Ok, QApplication::activeWindow());
    box.exec();
}

} // namespace

void message(const std::string& title, const std::string& text, qz::MsgIcon icon) {
    if (sink()) sink()(title, text, icon);
    else qtBox(title, text, icon);
}

void setMessageSink(qz::MessageSink s) { sink() = std::move(s); }

Outcome& Outcome::operator+=(Outcome other) {
    for (Box& b : other.notes) notes.push_back(std::move(b));
    if (!refusal && other.refusal) {
        refusal = std::move(other.refusal);
        field = other.field;
    }
    return *this;
}

Outcome refused(QLineEdit* field, const std::string& text) {
    Outcome o = refused(Box{qz::kEntryErrorTitle, text, qz::MsgIcon::Exclamation});
    o.field = field;
    return o;
}

Outcome refused(Box box) {
    Outcome o;
    o.refusal = std::move(box);
    return o;
}

Outcome noted(Box box) {
    Outcome o;
    o.notes.push_back(std::move(box));
    return o;
}

void show(const Outcome& outcome) {
    for (const Box& b : outcome.notes) message(b.title, b.text, b.icon);
    if (!outcome.refusal) return;
    message(outcome.refusal->title, outcome.refusal->text, outcome.refusal->icon);
    if (outcome.field) {
        outcome.field->clear();
        outcome.field->setFocus();
    }
}

void refuseEntry(QLineEdit* field, const std::string& text) { show(refused(field, text)); }

void endProgram() {
    if (ender()) {
        ender()();
        return;
    }
    // At once: no handler, no destructor, nothing more to the board. The trace is
    // flushed line by line already.
    std::fflush(nullptr);
    std::_Exit(0);
}

void setEndProgram(std::function<void()> end) { ender() = std::move(end); }

} // namespace forms
