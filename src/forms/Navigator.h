#pragma once
// The single instance of every panel: created, with its load, when it is first needed,
// shown modeless beside the others, unloaded on "Close". Panels reach each other by
// name, so a panel never needs the header of a panel in a room below its own.

#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <map>

namespace forms {

class Navigator {
public:
    // Creates the panel; its load runs after the instance is known by name, since a
    // load may reach for its own panel through a twin on another panel.
    using Factory = std::function<QWidget*()>;
    using Loader = std::function<void(QWidget*)>;

    void registerForm(const QString& name, Factory factory, Loader load = {});
    // Takes a panel that exists already (the console that the program starts with).
    void adopt(const QString& name, QWidget* form);

    // Whether this program has the panel at all.
    bool has(const QString& name) const;
    // The instance, or nullptr while it is not loaded.
    QWidget* loaded(const QString& name) const;
    // The instance, created and loaded if need be; nullptr for a panel the program lacks.
    QWidget* load(const QString& name);
    // Loads the panel, shows it and brings it forward.
    QWidget* show(const QString& name);
    // Removes the panel; its next showing loads it afresh.
    void unload(const QString& name);

private:
    struct Entry {
        Factory create;
        Loader load;
    };
    std::map<QString, Entry> factories_;
    std::map<QString, QPointer<QWidget>> forms_;
};

// A control of a loaded panel, by name; nullptr when the panel or the control is absent.
template <typename T>
T* controlOf(Navigator& nav, const QString& form, const QString& control) {
    QWidget* f = nav.loaded(form);
    return f ? f->findChild<T*>(control) : nullptr;
}

} // namespace forms
