#include "UIF/Dialogs.h"

#include <map>

#include <QApplication>
#include <QMenu>
#include <QMessageBox>

#include "UIF/CommandRouter.h"
#include "UIF/ViewWidget.h"
#include "zebcore/Log.h"
#include "zebcore/Trace.h"
#include "zebui/NodeManager.h"

namespace UIF {

namespace toolkit = zebui::toolkit;
using zebui::ui::UI_NodeManager;

namespace {

constexpr int kFlag_Acknowledge = 1;
constexpr int kIcon_Warning = 4;
constexpr int kResult_Acknowledged = 1;

MessageBoxHook& GetMessageBoxHook() {
  static MessageBoxHook hook;
  return hook;
}

struct ModalScope {
  ModalScope() { UI_NodeManager::Get()->PushModalWindow(); }
  ~ModalScope() { UI_NodeManager::Get()->PopModalWindow(); }
  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;
};

int ShowMessageBox(const MessageBoxRecord& record) {
  const ModalScope modal;
  QMessageBox box(QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  box.setWindowTitle(toolkit::ToQt(record.title));
  box.setText(toolkit::ToQt(record.text));
  box.setIcon(record.icon == kIcon_Warning ? QMessageBox::Warning : QMessageBox::Information);
  const bool asks = record.flags != kFlag_Acknowledge;
  box.setStandardButtons(asks ? QMessageBox::Ok | QMessageBox::Cancel : QMessageBox::StandardButtons(QMessageBox::Ok));
  box.setDefaultButton(asks && record.defaultResult != kResult_Acknowledged ? QMessageBox::Cancel : QMessageBox::Ok);
  box.exec();
  return box.clickedButton() == box.button(QMessageBox::Ok) ? kResult_Acknowledged : record.defaultResult;
}

} // namespace

int MessageBoxW(const UString& text, const UString& title, int flags, int icon, int defaultResult) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("UIF::MessageBoxW", {{"text", zebcore::ToUTF8(text)},
                                                {"title", zebcore::ToUTF8(title)},
                                                {"flags", flags},
                                                {"icon", icon},
                                                {"default", defaultResult}});
  const MessageBoxRecord record{text, title, flags, icon, defaultResult};
  if (const MessageBoxHook hook = GetMessageBoxHook())
    return hook(record);
  if (toolkit::HasApplication())
    return ShowMessageBox(record);
  zebcore::log::Write(zebcore::log::Level::Warning, zebcore::ToUTF8(title) + ": " + zebcore::ToUTF8(text));
  return defaultResult;
}

void SetMessageBoxHook(MessageBoxHook hook) {
  GetMessageBoxHook() = std::move(hook);
}

namespace MenuUtils {

namespace {

MenuHook& GetMenuHook() {
  static MenuHook hook;
  return hook;
}

std::map<std::string, std::vector<MenuItem>>& GetMenus() {
  static std::map<std::string, std::vector<MenuItem>> menus;
  return menus;
}

int ShowMenu(const std::vector<MenuItem>& items, QWidget* widget, const PointT<int>& point) {
  const ModalScope modal;
  QMenu menu;
  for (const MenuItem& item : items) {
    if (item.separator) {
      menu.addSeparator();
      continue;
    }
    QAction* const action = menu.addAction(toolkit::ToQt(item.text));
    action->setData(item.command);
    bool enabled = false;
    bool marked = false;
    MenuMark mark = MenuMark::None;
    UString name;
    action->setEnabled(FindStatus(item.command, enabled, marked, mark, name) && enabled);
    action->setCheckable(marked);
    action->setChecked(marked);
    if (!name.empty())
      action->setText(toolkit::ToQt(name));
  }
  const QAction* const chosen = menu.exec(widget->mapToGlobal(QPoint(point.x, point.y)));
  return chosen ? chosen->data().toInt() : 0;
}

} // namespace

void TrackContextMenu(const std::string& menuName, zebui::ui::UI_Node* node, const PointT<int>& point) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("MenuUtils::TrackContextMenu", {{"menu", menuName}, {"x", point.x}, {"y", point.y}});
  const std::vector<MenuItem> items = GetMenu(menuName);
  int command = 0;
  if (const MenuHook hook = GetMenuHook())
    command = hook(menuName, items);
  else if (QWidget* widget = toolkit::WidgetOf(node); widget && !items.empty())
    command = ShowMenu(items, widget, point);
  if (command != 0)
    RouteCommand(command);
}

void SetMenu(const std::string& menuName, std::vector<MenuItem> items) {
  GetMenus()[menuName] = std::move(items);
}

const std::vector<MenuItem>& GetMenu(const std::string& menuName) {
  return GetMenus()[menuName];
}

void SetMenuHook(MenuHook hook) {
  GetMenuHook() = std::move(hook);
}

} // namespace MenuUtils

} // namespace UIF
