// Where the keyboard focus is: the program's own record, which gives orders to the toolkit and follows it.

#include <QApplication>
#include <QFocusEvent>

#include "zebcore/Boundary.h"
#include "zebui/Focus.h"
#include "zebui/Toolkit.h"

namespace zebui::toolkit {

namespace {

struct FocusRecord {
  UI_Node* node = nullptr;
  QPointer<QWidget> widget;
};

FocusRecord sFocus;
int sMoving = 0; // the toolkit is following an order of ours
Qt::FocusReason sLastReason = Qt::NoFocusReason;
QPointer<QApplication> sFollowed;

FocusObserver& Observer() {
  static FocusObserver observer;
  return observer;
}

Qt::FocusReason ToQtReason(FocusChangeReason reason) {
  switch (reason) {
  case ui::kFocusChange_Advance:
    return Qt::TabFocusReason;
  case ui::kFocusChange_GoBack:
    return Qt::BacktabFocusReason;
  case ui::kFocusChange_Pointer:
    return Qt::MouseFocusReason;
  case ui::kFocusChange_Window:
    return Qt::ActiveWindowFocusReason;
  default:
    return Qt::OtherFocusReason;
  }
}

void Tell(UI_Node* node, FocusChangeReason reason) {
  if (!node)
    return;
  const KeepAlive alive(*node);
  const WidgetScope scope;
  zebcore::boundary::Guard("UI_Node::UI_FocusChanged", [&] { node->UI_FocusChanged(reason); });
}

void FollowToolkit(QWidget* now) {
  if (sMoving > 0)
    return;
  if (now && now == sFocus.widget) {
    if (sLastReason == Qt::ActiveWindowFocusReason)
      Tell(sFocus.node, ui::kFocusChange_Window);
    return;
  }
  if (!now) {
    if (sLastReason == Qt::ActiveWindowFocusReason)
      Tell(sFocus.node, ui::kFocusChange_Window);
    else if (sLastReason != Qt::PopupFocusReason && sLastReason != Qt::MenuBarFocusReason)
      ChangeFocus(nullptr, nullptr, ui::kFocusChange_None);
    return;
  }
  // The toolkit gives a window that becomes active a focus; a caption isn't entered because a window was.
  UI_Node* const node = NodeOf(now);
  if (node && sLastReason == Qt::ActiveWindowFocusReason) {
    ++sMoving;
    now->clearFocus();
    --sMoving;
    return;
  }
  // A dialog or a menu borrows the toolkit's focus; ours waits below it.
  if (sFocus.widget && now->window() != sFocus.widget->window() && IsPassingWindow(now->window()))
    return;
  ChangeFocus(node, now, ReasonOf(sLastReason));
}

class ReasonRecorder : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
      sLastReason = static_cast<QFocusEvent*>(event)->reason();
    return false;
  }
};

} // namespace

void FollowApplicationFocus() {
  auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (!application || sFollowed == application)
    return;
  sFollowed = application;
  application->installEventFilter(new ReasonRecorder(application));
  QObject::connect(application, &QApplication::focusChanged, application,
                   [](QWidget*, QWidget* now) { FollowToolkit(now); });
}

UI_Node* GetFocusRecordNode() {
  return sFocus.node;
}

QWidget* GetFocusWidget() {
  return sFocus.widget.data();
}

void ForgetFocusOf(const UI_Node* node) {
  if (sFocus.node == node)
    sFocus = {};
}

FocusChangeReason ReasonOf(Qt::FocusReason reason) {
  switch (reason) {
  case Qt::MouseFocusReason:
    return ui::kFocusChange_Pointer;
  case Qt::TabFocusReason:
    return ui::kFocusChange_Advance;
  case Qt::BacktabFocusReason:
    return ui::kFocusChange_GoBack;
  case Qt::ActiveWindowFocusReason:
    return ui::kFocusChange_Window;
  case Qt::NoFocusReason:
    return ui::kFocusChange_None;
  default:
    return ui::kFocusChange_Program;
  }
}

void SetFocusObserver(FocusObserver observer) {
  Observer() = std::move(observer);
}

void ChangeFocus(UI_Node* node, QWidget* widget, FocusChangeReason reason) {
  if (sFocus.node == node && sFocus.widget == widget)
    return;
  const FocusRecord old = sFocus;
  sFocus = {node, widget};
  ++sMoving;
  if (widget)
    widget->setFocus(ToQtReason(reason));
  else if (old.widget)
    old.widget->clearFocus();
  --sMoving;

  if (old.node != node)
    Tell(old.node, reason);
  if (Observer() && old.widget != widget)
    Observer()(old.widget, widget, reason);
  if (old.node != node && sFocus.node == node)
    Tell(node, reason);
}

void MoveFocus(QWidget* to, FocusChangeReason reason) {
  ChangeFocus(NodeOf(to), to, reason);
}

void TakeFocusAwayFrom(const QWidget* widget) {
  if (!widget)
    return;
  if (sFocus.widget && (sFocus.widget == widget || widget->isAncestorOf(sFocus.widget)))
    ChangeFocus(nullptr, nullptr, ui::kFocusChange_None);
  // What the toolkit keeps for the day the window is active again.
  if (QWidget* kept = widget->window()->focusWidget(); kept && (kept == widget || widget->isAncestorOf(kept))) {
    ++sMoving;
    kept->clearFocus();
    --sMoving;
  }
}

} // namespace zebui::toolkit
