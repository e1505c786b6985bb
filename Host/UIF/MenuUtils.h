#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "UIF/View.h"
#include "zebcore/UString.h"

namespace UIF {

class TabView;

// Menus by name: a panel asks for one, the program says what is in it.
namespace MenuUtils {

// The context menu of that name at a point of the node, modal until it closes. What is chosen goes to the tab view that
// the node is in and along its super commanders; with a node that is in none, to whoever is on duty.
void TrackContextMenu(const std::string& menuName, zebui::ui::UI_Node* node, const PointT<int>& point);
// The wing menu of a created tab view, the one behind its title, at a point of the view. False if it has none.
bool TrackWingMenu(TabView& view, const PointT<int>& point);

struct MenuItem {
  UString text;
  int command = 0;
  bool separator = false;
  // What whoever answers for the command says as the menu is shown; what SetMenu is given here counts for nothing.
  bool enabled = false;
  std::optional<bool> checked; // nothing if nobody set a mark
  std::string keys;            // the command's first shortcut, "Ctrl+B"; empty for none
};
// What a named menu holds; the program fills it.
void SetMenu(const std::string& menuName, std::vector<MenuItem> items);
// Asked each time the menu is shown, so that its texts are in the language of that moment.
using MenuMaker = std::function<std::vector<MenuItem>()>;
void SetMenuMaker(const std::string& menuName, MenuMaker maker);
// Empty for a menu that nobody filled.
std::vector<MenuItem> GetMenu(const std::string& menuName);
// The same as it would be shown over the tab view now: with marks and keys, and with the names that the commands'
// handlers give. Null: over whoever is on duty.
std::vector<MenuItem> GetMenuFor(const std::string& menuName, TabView* view);

// In place of the popup: gets the items as they would be shown, answers the command chosen or 0.
using MenuHook = std::function<int(const std::string& menuName, const std::vector<MenuItem>&)>;
void SetMenuHook(MenuHook hook);

} // namespace MenuUtils

} // namespace UIF
