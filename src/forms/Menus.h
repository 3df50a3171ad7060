#pragma once
// A panel's menu bar, built from its table: "File", "View" and "Help", each entry with
// its name, caption and action.

#include "forms/Forms.h"

#include <initializer_list>

namespace forms {

class Panel;

enum class Menu { File, View, Help };

enum class MenuAction {
    Show,   // show the target panel
    Unload, // unload this panel: its next showing loads it afresh
    Hide,   // hide this panel, which stays loaded
    Exit,   // end the program at once
};

struct MenuEntry {
    Menu menu;
    const char* name;    // the entry's objectName
    const char* caption;
    MenuAction action;
    Form target = Form::frmMain; // for Show
};

// Adds the three menus and their entries. An entry that shows a panel the program does
// not have is disabled, and looked at again each time its menu opens.
void buildMenuBar(Panel& panel, std::initializer_list<MenuEntry> entries);

} // namespace forms
