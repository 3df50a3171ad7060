#include "forms/Navigator.h"

#include "forms/Recording.h"

#include <QtGlobal>

namespace forms {

void Navigator::registerForm(Form form, Factory factory, Loader load) {
    factories_[form] = {std::move(factory), std::move(load)};
}

void Navigator::adopt(Form form, QWidget* instance) { forms_[form] = instance; }

bool Navigator::has(Form form) const {
    return factories_.count(form) != 0 || loaded(form) != nullptr;
}

QWidget* Navigator::loaded(Form form) const {
    const auto it = forms_.find(form);
    return it == forms_.end() ? nullptr : it->second.data();
}

QWidget* Navigator::load(Form form) {
    if (QWidget* f = loaded(form)) return f;
    const auto it = factories_.find(form);
    if (it == factories_.end()) return nullptr;
    QWidget* f = nullptr;
    recording().act({Action::Kind::Open, nullptr, form}, [&] {
        f = it->second.create();
        forms_[form] = f;
        if (it->second.load) it->second.load(f);
        return Outcome{};
    });
    return f;
}

QWidget* Navigator::show(Form form) {
    QWidget* f = load(form);
    if (!f) return nullptr;
    f->show();
    f->raise();
    f->activateWindow();
    return f;
}

void Navigator::unload(Form form) {
    const auto it = forms_.find(form);
    if (it == forms_.end()) return;
    recording().act({Action::Kind::Close, nullptr, form}, [&] {
        if (QWidget* f = it->second.data()) {
            f->hide();
            f->deleteLater();
        }
        forms_.erase(it);
        return Outcome{};
    });
}

QObject* Navigator::child(Form form, QWidget* panel, const QString& name, const QMetaObject& kind) {
    Found& f = children_[{form, name, &kind}];
    if (f.panel == panel && f.control) return f.control;
    f.panel = panel;
    // The first of the kind by that name, as findChild would give it.
    f.control = nullptr;
    for (QObject* o : panel->findChildren<QObject*>(name))
        if (kind.cast(o)) {
            f.control = o;
            break;
        }
    return f.control;
}

QString ControlRef::objectName() const {
    return member < 0 ? QString::fromLatin1(name) : forms::member(name, member);
}

void missingControl(Form form, const QString& control, const char* kind) {
    qFatal("no %s named \"%s\" on %s", kind, qPrintable(control), qPrintable(formName(form)));
}

} // namespace forms
