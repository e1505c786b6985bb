#include "UIF/MenuUtils.h"

#include <map>

#include <QKeySequence>
#include <QMenu>

#include "UIF/CommandRouter.h"
#include "UIF/ModalScope.h"
#include "UIF/ShortcutManager.h"
#include "UIF/TabView.h"
#include "UIF/ViewWidget.h"
#include "zebcore/Trace.h"

namespace UIF::MenuUtils {

namespace toolkit = zebui::toolkit;

namespace {

MenuHook& GetMenuHook() {
  static MenuHook hook;
  return hook;
}

std::map<std::string, MenuMaker>& GetMakers() {
  static std::map<std::string, MenuMaker> makers;
  return makers;
}

void AskHandlers(MenuItem& item, TabView* view) {
  bool enabled = false;
  bool marked = false;
  MenuMark mark = MenuMark::None;
  UString name;
  const bool answered = FindStatus(view, item.command, enabled, marked, mark, name);
  item.enabled = answered && enabled;
  // No mark at all and a mark that is off look alike to whoever asks.
  item.checked = std::nullopt;
  if (marked || mark != MenuMark::None)
    item.checked = marked || mark == MenuMark::Check;
  if (!name.empty())
    item.text = name;
  item.keys = ShortcutManager::Instance()->GetFirstKeysOf(item.command);
}

QString TextOf(const MenuItem& item) {
  QString text = toolkit::ToQt(item.text);
  if (!item.keys.empty())
    text +=
        QLatin1Char('\t') +
        QKeySequence(QString::fromStdString(item.keys), QKeySequence::PortableText).toString(QKeySequence::NativeText);
  return text;
}

int ShowMenu(const std::vector<MenuItem>& items, QWidget* widget, const PointT<int>& point) {
  const ModalScope modal;
  QMenu menu;
  for (const MenuItem& item : items) {
    if (item.separator) {
      menu.addSeparator();
      continue;
    }
    QAction* const action = menu.addAction(TextOf(item));
    action->setData(item.command);
    action->setEnabled(item.enabled);
    action->setCheckable(item.checked.has_value());
    action->setChecked(item.checked.value_or(false));
  }
  const QAction* const chosen = menu.exec(widget->mapToGlobal(QPoint(point.x, point.y)));
  return chosen ? chosen->data().toInt() : 0;
}

// What was chosen is obeyed once the menu is gone, by the panel over which it stood.
void Track(const std::string& menuName, TabView* view, QWidget* widget, const PointT<int>& point) {
  const std::vector<MenuItem> items = GetMenuFor(menuName, view);
  int command = 0;
  if (const MenuHook hook = GetMenuHook())
    command = hook(menuName, items);
  else if (widget && !items.empty())
    command = ShowMenu(items, widget, point);
  if (command != 0)
    RouteCommand(view, command);
}

void Trace(const char* call, const std::string& menuName, const PointT<int>& point) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record(call, {{"menu", menuName}, {"x", point.x}, {"y", point.y}});
}

} // namespace

void TrackContextMenu(const std::string& menuName, zebui::ui::UI_Node* node, const PointT<int>& point) {
  Trace("MenuUtils::TrackContextMenu", menuName, point);
  QWidget* const widget = toolkit::WidgetOf(node);
  Track(menuName, widget ? TabViewOf(widget) : nullptr, widget, point);
}

bool TrackWingMenu(TabView& view, const PointT<int>& point) {
  const std::string name = view.GetWingMenu();
  if (!view.IsCreated() || name.empty())
    return false;
  Trace("MenuUtils::TrackWingMenu", name, point);
  Track(name, &view, WidgetOf(&view), point);
  return true;
}

void SetMenu(const std::string& menuName, std::vector<MenuItem> items) {
  SetMenuMaker(menuName, [kept = std::move(items)] { return kept; });
}

void SetMenuMaker(const std::string& menuName, MenuMaker maker) {
  if (maker)
    GetMakers()[menuName] = std::move(maker);
  else
    GetMakers().erase(menuName);
}

std::vector<MenuItem> GetMenu(const std::string& menuName) {
  const auto found = GetMakers().find(menuName);
  return found == GetMakers().end() ? std::vector<MenuItem>() : found->second();
}

std::vector<MenuItem> GetMenuFor(const std::string& menuName, TabView* view) {
  std::vector<MenuItem> items = GetMenu(menuName);
  for (MenuItem& item : items) {
    if (!item.separator)
      AskHandlers(item, view);
  }
  return items;
}

void SetMenuHook(MenuHook hook) {
  GetMenuHook() = std::move(hook);
}

} // namespace UIF::MenuUtils
