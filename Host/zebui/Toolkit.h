// For the sources of zebui, UIF, DLG, App and Drive only: what lies between the nodes and the toolkit's widgets.
#pragma once

#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

#include <QKeyEvent>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <boost/core/demangle.hpp>
#include <nlohmann/json_fwd.hpp>

#include "zebui/Node.h"
#include "zebui/Skin.h"

namespace zebui::ui {

struct NodeImpl {
  UI_Node* parent = nullptr;
  std::vector<boost::intrusive_ptr<UI_Node>> children;
  QPointer<QWidget> widget;
  bool ownsWidget = true; // a view's node borrows the view's widget
  RectT<float> rect;
  bool shown = true;
  bool enabled = true;
  bool disabled = false;
  bool wantsFocus = true;
  UString toolTip;
  int toolTipDelay = 0;
  UString accessibleName;
  std::string traceName;

  // What a control brings along: its widget (a bare one without), what it does as the widget goes, its label and the
  // size that shows all of its content.
  std::function<QWidget*(QWidget* parent)> makeWidget;
  std::function<void()> widgetGoes;
  std::function<UString()> label;
  std::function<PointT<float>()> recommend;
};

} // namespace zebui::ui

namespace zebui::toolkit {

using ui::FocusChangeReason;
using ui::KeyboardCode;
using ui::KeyboardEvent;
using ui::KeyboardEventType;
using ui::ModKey;
using ui::UI_Node;
using zebcore::UString;

inline QString ToQt(std::u16string_view text) {
  return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}
inline UString FromQt(const QString& text) {
  return text.toStdU16String();
}
inline QColor ToQt(const ui::ColorRGBA& color) {
  return QColor::fromRgbF(color.red, color.green, color.blue, color.alpha);
}
template <class T> std::string TypeName(const T& object) {
  return boost::core::demangle(typeid(object).name());
}

// True while there is a QApplication; without one nodes work, but nothing of them is on screen.
bool HasApplication();

// The widget that a node is on screen with; null while it is off.
QWidget* WidgetOf(const UI_Node* node);
// The node whose widget this is or lies in; null for none.
UI_Node* NodeOf(const QWidget* widget);
// A node for a view's own widget, which it doesn't own.
void BindViewNode(UI_Node& node, QWidget* widget);
// Takes the children's widgets off before the view's goes.
void UnbindViewNode(UI_Node& node);
// What the trace calls a node, beside its class.
void SetTraceName(UI_Node& node, std::string name);
// Records a call on a node with its arguments beside what names the node; nothing while the trace is off.
void TraceNode(const char* call, const UI_Node& node, nlohmann::json args);
void TraceNode(const char* call, const UI_Node& node, const char* name, const nlohmann::json& value);

// --- Focus. The focus is the program's own record, right without an active window too; it follows the toolkit's.

// Null when the focus is nowhere.
QWidget* GetFocusWidget();
// To a widget, or nowhere. A node's widget gives the focus to its node.
void MoveFocus(QWidget* to, FocusChangeReason reason);
// If it is in the widget or below: before something is hidden, disabled or taken away, so that the toolkit doesn't hand
// the focus to a neighbour.
void TakeFocusAwayFrom(const QWidget* widget);
FocusChangeReason ReasonOf(Qt::FocusReason reason);
// Called between the node that loses the focus and the one that gets it.
using FocusObserver = std::function<void(QWidget* from, QWidget* to, FocusChangeReason reason)>;
void SetFocusObserver(FocusObserver observer);
// The next widget after this one at which Tab stops (backwards: before); null without one.
QWidget* NextTabStop(QWidget* from, bool backwards);
// In this widget Tab goes by what people see, line by line, whatever was made first.
void SetTabGroup(QWidget& widget);
// A window that stands above the program for a moment: dialog, menu, tip.
bool IsPassingWindow(const QWidget* window);

// --- Keys

// The same for real and synthetic events.
KeyboardEvent ToKeyboardEvent(const QKeyEvent& event, KeyboardEventType type);
KeyboardCode ToKeyboardCode(int key);
int ToQtKey(KeyboardCode code);
ModKey ToModKey(Qt::KeyboardModifiers modifiers);
Qt::KeyboardModifiers ToQtModifiers(ModKey modifiers);
// Runs the filters for an event whose focus is no node's; true if one swallowed it. Once for each event, however far it
// is propagated.
bool FilterKeyEvent(const QKeyEvent& event);
// Runs a key event that reached a node's widget through filters and node; accepts it when it was used. True in any case
// for events that it takes care of.
bool DispatchKeyEvent(UI_Node& node, QEvent& event);
// The toolkit's event that is being dispatched; null for a synthetic one.
const QKeyEvent* GetKeyEventInDispatch();

// --- Lifetime

// Keeps a node alive while its own code runs. A node that nobody holds yet is left alone.
class KeepAlive {
 public:
  explicit KeepAlive(const UI_Node& node);
  ~KeepAlive();
  KeepAlive(const KeepAlive&) = delete;
  KeepAlive& operator=(const KeepAlive&) = delete;

 private:
  const UI_Node* mNode;
};
// Around code of a widget that may lead to its own end; widgets given to Dispose meanwhile go when the outermost ends.
class WidgetScope {
 public:
  WidgetScope();
  ~WidgetScope();
  WidgetScope(const WidgetScope&) = delete;
  WidgetScope& operator=(const WidgetScope&) = delete;
};
// Around an event of the toolkit; widgets given to Dispose meanwhile go when control is back in the event loop.
class EventScope {
 public:
  EventScope();
  ~EventScope();
  EventScope(const EventScope&) = delete;
  EventScope& operator=(const EventScope&) = delete;
};
// Off the screen at once, destroyed as soon as that is safe.
void Dispose(QWidget* widget);

void SetDividerColor(const ui::ColorRGBA& color);

} // namespace zebui::toolkit
