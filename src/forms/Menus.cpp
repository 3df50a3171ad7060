#include "forms/Menus.h"

#include "forms/MessageBox.h"
#include "forms/Panel.h"
#include "forms/Recording.h"

#include <QMenuBar>

namespace forms {

namespace {

struct MenuTitle {
    const char* name;
    const char* caption;
};
constexpr MenuTitle kMenus[] = {{"mnuFile", "File"}, {"mnuView", "View"}, {"mnuHelp", "Help"}};

} // namespace

void buildMenuBar(Panel& panel, std::initializer_list<MenuEntry> entries) {
    QMenu* menus[3];
    for (int i = 0; i < 3; ++i) {
        menus[i] = panel.menuBar()->addMenu(QString::fromLatin1(kMenus[i].caption));
        menus[i]->setObjectName(QString::fromLatin1(kMenus[i].name));
    }
    // Every panel's File menu opens the recorder first: the same entry everywhere.
    QAction* record = menus[0]->addAction(QStringLiteral("Record..."));
    record->setObjectName(QStringLiteral("mnuRecord"));
    QObject::connect(record, &QAction::triggered, &panel, [] { recording().openWindow(); });
    menus[0]->addSeparator();
    Navigator& nav = panel.nav;
    for (const MenuEntry& e : entries) {
        QMenu* menu = menus[static_cast<int>(e.menu)];
        QAction* a = menu->addAction(QString::fromLatin1(e.caption));
        a->setObjectName(QString::fromLatin1(e.name));
        const Form target = e.target;
        switch (e.action) {
        case MenuAction::Show:
            QObject::connect(a, &QAction::triggered, &panel, [&nav, target] { nav.show(target); });
            a->setEnabled(nav.has(target));
            QObject::connect(menu, &QMenu::aboutToShow, a,
                             [&nav, a, target] { a->setEnabled(nav.has(target)); });
            break;
        case MenuAction::Unload:
            QObject::connect(a, &QAction::triggered, &panel,
                             [&nav, form = panel.form] { nav.unload(form); });
            break;
        case MenuAction::Hide:
            QObject::connect(a, &QAction::triggered, &panel, [&panel] { panel.hide(); });
            break;
        case MenuAction::Exit:
            QObject::connect(a, &QAction::triggered, &panel, [] { endProgram(); });
            break;
        }
    }
}

} // namespace forms
