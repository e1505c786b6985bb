#include "zebui/Menu.h"

#include <algorithm>

#include <cmath>

#include <QMenu>
#include <QPointer>

#include "zebcore/Trace.h"
#include "zebui/Toolkit.h"

namespace zebui::utility {

std::size_t OSMenu::AddItem(const zebcore::UString& name) {
  Item item;
  item.text = name;
  mItems.push_back(std::move(item));
  return mItems.size() - 1;
}

std::size_t OSMenu::AddSeparator() {
  Item item;
  item.separator = true;
  mItems.push_back(std::move(item));
  return mItems.size() - 1;
}

void OSMenu::EnableItem(std::size_t index, bool enabled) {
  if (index < mItems.size())
    mItems[index].enabled = enabled;
}

void OSMenu::SetItemID(std::size_t index, int id) {
  if (index < mItems.size())
    mItems[index].id = id;
}

void OSMenu::SetItemCheckMark(std::size_t index, bool checked) {
  if (index >= mItems.size())
    return;
  mItems[index].hasCheck = true;
  mItems[index].checked = checked;
}

std::size_t OSMenu::CountItems() const {
  return static_cast<std::size_t>(
      std::count_if(mItems.begin(), mItems.end(), [](const Item& item) { return !item.separator; }));
}

std::unique_ptr<OSMenu> CreateOSMenu() {
  return std::make_unique<OSMenu>();
}

} // namespace zebui::utility

namespace zebui::ui {

namespace {

PopupMenuHook& Hook() {
  static PopupMenuHook hook;
  return hook;
}

// A lone ampersand in a name is a character, not the mark of a key.
QString MenuText(const UString& text) {
  return toolkit::ToQt(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

void Fill(QMenu& shown, const utility::OSMenu& menu) {
  for (const utility::OSMenu::Item& item : menu.GetItems()) {
    if (item.separator) {
      shown.addSeparator();
      continue;
    }
    QAction* const action = shown.addAction(MenuText(item.text));
    action->setEnabled(item.enabled);
    action->setCheckable(item.hasCheck);
    action->setChecked(item.checked);
    action->setData(item.id);
  }
}

QPoint PlaceOf(const QWidget* parent, const RectT<float>& rect, bool above, const QMenu& menu) {
  const QPoint corner(static_cast<int>(std::lround(rect.x)), static_cast<int>(std::lround(rect.y)));
  const QPoint below(corner.x(), static_cast<int>(std::lround(rect.Bottom())));
  const QPoint local = above ? corner - QPoint(0, menu.sizeHint().height()) : below;
  return parent ? parent->mapToGlobal(local) : local;
}

} // namespace

int UI_DoPopupMenu(const utility::OSMenu& menu, UI_Node* node, const RectT<float>& rect, bool above) {
  if (zebcore::trace::IsOn())
    zebcore::trace::Record("ui::UI_DoPopupMenu", {{"items", menu.CountItems()}, {"above", above}});
  if (const PopupMenuHook hook = Hook())
    return hook(menu);
  if (!toolkit::HasApplication() || menu.GetItems().empty())
    return 0;
  QWidget* const widget = toolkit::WidgetOf(node);
  QWidget* const parent = widget ? widget->parentWidget() : nullptr;
  // What happens while it is open may take the window away, and the menu with it.
  const QPointer<QMenu> shown = new QMenu(parent ? parent->window() : nullptr);
  Fill(*shown, menu);
  const QAction* const chosen = shown->exec(PlaceOf(parent, rect, above, *shown));
  const int id = shown && chosen ? chosen->data().toInt() : 0;
  delete shown.data();
  return id;
}

void SetPopupMenuHook(PopupMenuHook hook) {
  Hook() = std::move(hook);
}

} // namespace zebui::ui
