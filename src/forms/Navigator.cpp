#include "forms/Navigator.h"

namespace forms {

void Navigator::registerForm(const QString& name, Factory factory, Loader load) {
    factories_[name] = {std::move(factory), std::move(load)};
}

void Navigator::adopt(const QString& name, QWidget* form) { forms_[name] = form; }

bool Navigator::has(const QString& name) const {
    return factories_.count(name) != 0 || loaded(name) != nullptr;
}

QWidget* Navigator::loaded(const QString& name) const {
    const auto it = forms_.find(name);
    return it == forms_.end() ? nullptr : it->second.data();
}

QWidget* Navigator::load(const QString& name) {
    if (QWidget* f = loaded(name)) return f;
    const auto it = factories_.find(name);
    if (it == factories_.end()) return nullptr;
    QWidget* f = it->second.create();
    forms_[name] = f;
    if (it->second.load) it->second.load(f);
    return f;
}

QWidget* Navigator::show(const QString& name) {
    QWidget* f = load(name);
    if (!f) return nullptr;
    f->show();
    f->raise();
    f->activateWindow();
    return f;
}

void Navigator::unload(const QString& name) {
    const auto it = forms_.find(name);
    if (it == forms_.end()) return;
    if (QWidget* f = it->second.data()) {
        f->hide();
        f->deleteLater();
    }
    forms_.erase(it);
}

} // namespace forms
