#pragma once
// The single instance of every panel: created, with its load, when it is first needed,
// shown modeless beside the others, unloaded on "Close". Panels reach each other through
// the navigator by name, so a panel never needs the header of a panel in a room below
// its own.

#include "forms/Forms.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <map>
#include <tuple>

namespace forms {

class Navigator {
public:
    // Creates the panel; its load runs after the instance is known, since a load may
    // reach for its own panel through a twin on another panel.
    using Factory = std::function<QWidget*()>;
    using Loader = std::function<void(QWidget*)>;

    void registerForm(Form form, Factory factory, Loader load = {});
    // Takes a panel that exists already (the console that the program starts with).
    void adopt(Form form, QWidget* instance);

    // Whether this program has the panel at all.
    bool has(Form form) const;
    // The instance, or nullptr while it is not loaded.
    QWidget* loaded(Form form) const;
    // The instance, created and loaded if need be; nullptr for a panel the program lacks.
    QWidget* load(Form form);
    // Loads the panel, shows it and brings it forward.
    QWidget* show(Form form);
    // Removes the panel; its next showing loads it afresh.
    void unload(Form form);

    // A control of the panel by name and kind: looked for once, then kept for as long as
    // the panel and the control live (a search of a panel's tree costs more than the
    // operations that ask for it).
    QObject* child(Form form, QWidget* panel, const QString& name, const QMetaObject& kind);

private:
    struct Entry {
        Factory create;
        Loader load;
    };
    std::map<Form, Entry> factories_;
    std::map<Form, QPointer<QWidget>> forms_;
    struct Found {
        QPointer<QWidget> panel;
        QPointer<QObject> control;
    };
    std::map<std::tuple<Form, QString, const QMetaObject*>, Found> children_;
};

// A control of another panel: the panel and the control's name, with the member's index
// for a member of a control array.
struct ControlRef {
    Form form;
    const char* name;
    int member = -1;
    QString objectName() const;
};

// A control of another panel, by name. As with the forms of old, reaching for a control
// loads its panel; nullptr only when the program lacks the panel. A panel that lacks the
// control, or has it as another kind, is a fault of the program: it stops at once with
// the name it looked for, rather than let an Enter or a click do nothing.
[[noreturn]] void missingControl(Form form, const QString& control, const char* kind);
template <typename T> T* controlOf(Navigator& nav, Form form, const QString& control) {
    QWidget* panel = nav.load(form);
    if (!panel) return nullptr;
    T* t = static_cast<T*>(nav.child(form, panel, control, T::staticMetaObject));
    if (!t) missingControl(form, control, T::staticMetaObject.className());
    return t;
}
template <typename T> T* controlOf(Navigator& nav, const ControlRef& ref) {
    return controlOf<T>(nav, ref.form, ref.objectName());
}

} // namespace forms
