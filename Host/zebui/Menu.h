#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "zebui/Node.h"

namespace zebui::utility {

// A native popup menu, built entry by entry. Indices go from 0 and count separators too.
class OSMenu {
 public:
  struct Item {
    zebcore::UString text;
    int id = 0;
    bool separator = false;
    bool enabled = false;
    bool hasCheck = false; // a check mark was set, on or off
    bool checked = false;
  };

  // Disabled, without an id, without a check mark; its index.
  std::size_t AddItem(const zebcore::UString& name);
  std::size_t AddSeparator();
  void EnableItem(std::size_t index, bool enabled);
  void SetItemID(std::size_t index, int id);
  void SetItemCheckMark(std::size_t index, bool checked);
  // Those that can be chosen: without the separators.
  std::size_t CountItems() const;
  const std::vector<Item>& GetItems() const { return mItems; }

 private:
  std::vector<Item> mItems;
};

std::unique_ptr<OSMenu> CreateOSMenu();

} // namespace zebui::utility

namespace zebui::ui {

// Modal until an item is chosen or the menu is closed; the id chosen, 0 if none. rect: in pixels of the node's parent,
// the menu opens below it, or above it.
int UI_DoPopupMenu(const utility::OSMenu& menu, UI_Node* node, const RectT<float>& rect, bool above);

// In place of the menu on screen, for whoever drives the program; null restores it.
using PopupMenuHook = std::function<int(const utility::OSMenu&)>;
void SetPopupMenuHook(PopupMenuHook hook);

} // namespace zebui::ui
