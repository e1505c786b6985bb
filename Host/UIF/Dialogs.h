#pragma once

#include <functional>
#include <string>
#include <vector>

#include "UIF/View.h"
#include "zebcore/UString.h"

namespace UIF {

// A modal message. flag 1: one plain acknowledging button. icon 4: a warning. defaultResult: what closing the window
// answers.
int MessageBoxW(const UString& text, const UString& title, int flags, int icon, int defaultResult);

struct MessageBoxRecord {
  UString text;
  UString title;
  int flags;
  int icon;
  int defaultResult;
};
// In place of the window, for whoever drives the program; null restores the window.
using MessageBoxHook = std::function<int(const MessageBoxRecord&)>;
void SetMessageBoxHook(MessageBoxHook hook);

namespace MenuUtils {
// The context menu of that name at a point of the node, modal until it closes.
void TrackContextMenu(const std::string& menuName, zebui::ui::UI_Node* node, const PointT<int>& point);

struct MenuItem {
  UString text;
  int command = 0;
  bool separator = false;
};
// What a named menu holds; the program fills it.
void SetMenu(const std::string& menuName, std::vector<MenuItem> items);
const std::vector<MenuItem>& GetMenu(const std::string& menuName);
// In place of the popup: gets the items as they would be shown, answers the command chosen or 0.
using MenuHook = std::function<int(const std::string& menuName, const std::vector<MenuItem>&)>;
void SetMenuHook(MenuHook hook);
} // namespace MenuUtils

} // namespace UIF
