#pragma once

#include "UIF/CommandHandler.h"

namespace UIF {

class TabView;

// Where a command of a menu or a shortcut goes: to the tab view on duty, then along its super commanders, the program
// last. Without a view on duty it goes to the program.

// True if it was obeyed.
bool RouteCommand(int id);
// True if anyone answers for it; enabled is false if nobody does.
bool FindStatus(int id, bool& enabled, bool& marked, MenuMark& mark, UString& name);
bool FindStatus(int id, bool& enabled);
// The same with the chain that begins at a tab view, whoever is on duty; null: as above.
bool RouteCommand(TabView* view, int id);
bool FindStatus(TabView* view, int id, bool& enabled, bool& marked, MenuMark& mark, UString& name);

// The tab view that the user works in; null for none. It follows the focus; a panel whose focus vanished stays on duty.
TabView* GetTabViewOnDuty();
// Null for none. The one that goes and the one that comes are told, once.
void SetTabViewOnDuty(TabView* view);

} // namespace UIF
