#include "zebui/Node.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include <QTextDocument>

#include "zebcore/Trace.h"
#include "zebui/Focus.h"
#include "zebui/Toolkit.h"

namespace zebui::toolkit {

namespace {

std::unordered_map<const QWidget*, UI_Node*>& NodesByWidget() {
  static std::unordered_map<const QWidget*, UI_Node*> nodes;
  return nodes;
}

int Rounded(float value) {
  return static_cast<int>(std::lround(value));
}

void ApplyRect(ui::NodeImpl& impl) {
  if (impl.widget && impl.ownsWidget) {
    const auto& rect = impl.rect;
    impl.widget->setGeometry(Rounded(rect.x), Rounded(rect.y), std::max(0, Rounded(rect.width)),
                             std::max(0, Rounded(rect.height)));
  }
}

void ApplyNames(ui::NodeImpl& impl) {
  if (!impl.widget)
    return;
  const QString toolTip = ToQt(impl.toolTip);
  impl.widget->setToolTip(Qt::mightBeRichText(toolTip) ? toolTip.toHtmlEscaped() : toolTip);
  impl.widget->setProperty("toolTipDelay", impl.toolTipDelay);
  UString name = impl.accessibleName;
  if (name.empty() && impl.label)
    name = impl.label();
  // A mere sign says nothing when it is read out.
  const bool isSign = std::ranges::none_of(ToQt(name), [](QChar letter) { return letter.isLetterOrNumber(); });
  if (isSign && !impl.toolTip.empty())
    name = impl.toolTip;
  impl.widget->setAccessibleName(ToQt(name));
}

void Attach(UI_Node& node, QWidget* parent) {
  ui::NodeImpl& impl = node.Impl();
  if (impl.widget || !parent)
    return;
  FollowApplicationFocus();
  impl.widget = impl.makeWidget ? impl.makeWidget(parent) : new QWidget(parent);
  NodesByWidget()[impl.widget] = &node;
  ApplyRect(impl);
  ApplyNames(impl);
  impl.widget->setEnabled(impl.enabled && !impl.disabled);
  if (!impl.wantsFocus)
    impl.widget->setFocusPolicy(Qt::NoFocus);
  impl.widget->setVisible(impl.shown);
  for (const auto& child : impl.children)
    Attach(*child, impl.widget);
  // A node that was given the focus while it was off the screen.
  if (GetFocusRecordNode() == &node)
    ChangeFocus(&node, impl.widget, ui::kFocusChange_Program);
}

// Takes the widget off; the node's record stays.
void Detach(UI_Node& node) {
  ui::NodeImpl& impl = node.Impl();
  if (GetFocusRecordNode() == &node)
    ChangeFocus(nullptr, nullptr, ui::kFocusChange_None);
  TakeFocusAwayFrom(impl.widget);
  for (const auto& child : impl.children)
    Detach(*child);
  if (!impl.ownsWidget)
    return;
  if (impl.widgetGoes)
    impl.widgetGoes();
  NodesByWidget().erase(impl.widget.data());
  QWidget* widget = impl.widget;
  impl.widget = nullptr;
  Dispose(widget);
}

} // namespace

void TraceNode(const char* call, const UI_Node& node, nlohmann::json args) {
  if (!zebcore::trace::IsOn())
    return;
  args["class"] = TypeName(node);
  if (!node.Impl().traceName.empty())
    args["control"] = node.Impl().traceName;
  zebcore::trace::Record(call, std::move(args), &node);
}

void TraceNode(const char* call, const UI_Node& node, const char* name, const nlohmann::json& value) {
  if (zebcore::trace::IsOn())
    TraceNode(call, node, nlohmann::json{{name, value}});
}

UI_Node* NodeOf(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    const auto found = NodesByWidget().find(widget);
    if (found != NodesByWidget().end())
      return found->second;
  }
  return nullptr;
}

void BindViewNode(UI_Node& node, QWidget* widget) {
  FollowApplicationFocus();
  node.Impl().ownsWidget = false;
  node.Impl().widget = widget;
}

void UnbindViewNode(UI_Node& node) {
  Detach(node);
  node.Impl().widget = nullptr;
}

} // namespace zebui::toolkit

namespace zebui::ui {

using toolkit::TraceNode;

UI_Node::UI_Node() : mImpl(std::make_unique<NodeImpl>()) {}

UI_Node::~UI_Node() {
  toolkit::ForgetFocusOf(this);
  for (const auto& child : mImpl->children) {
    toolkit::Detach(*child);
    child->mImpl->parent = nullptr;
  }
  if (mImpl->widget && mImpl->ownsWidget) {
    toolkit::NodesByWidget().erase(mImpl->widget.data());
    toolkit::Dispose(mImpl->widget);
  }
}

void UI_Node::ChildPushBack(const boost::intrusive_ptr<UI_Node>& child) {
  if (!child || child->mImpl->parent == this)
    return;
  if (child->mImpl->parent)
    child->mImpl->parent->ChildRemove(child);
  child->mImpl->parent = this;
  mImpl->children.push_back(child);
  toolkit::Attach(*child, mImpl->widget);
}

void UI_Node::ChildRemove(const boost::intrusive_ptr<UI_Node>& child) {
  if (!child || child->mImpl->parent != this)
    return;
  // The caller's may be the one that the children hold.
  const boost::intrusive_ptr<UI_Node> kept = child; // NOLINT(performance-unnecessary-copy-initialization)
  toolkit::Detach(*kept);
  kept->mImpl->parent = nullptr;
  std::erase(mImpl->children, kept);
}

void UI_Node::UI_SetLocalRectF(const RectT<float>& rect) {
  TraceNode("UI_Node::UI_SetLocalRectF", *this, "rect", {rect.x, rect.y, rect.width, rect.height});
  mImpl->rect = rect;
  toolkit::ApplyRect(*mImpl);
}

RectT<float> UI_Node::UI_GetLocalRectF() const {
  return mImpl->rect;
}

void UI_Node::UI_Show(bool show) {
  TraceNode("UI_Node::UI_Show", *this, "show", show);
  mImpl->shown = show;
  if (!show) {
    if (UI_HasKeyboardFocus(true))
      toolkit::ChangeFocus(nullptr, nullptr, kFocusChange_None);
    toolkit::TakeFocusAwayFrom(mImpl->widget);
  }
  if (mImpl->widget && mImpl->ownsWidget)
    mImpl->widget->setVisible(show);
}

bool UI_Node::UI_IsShown() const {
  return mImpl->shown;
}

void UI_Node::UI_SetEnabled(bool enabled) {
  TraceNode("UI_Node::UI_SetEnabled", *this, "enabled", enabled);
  mImpl->enabled = enabled;
  if (!enabled) {
    if (UI_HasKeyboardFocus(true))
      toolkit::ChangeFocus(nullptr, nullptr, kFocusChange_None);
    toolkit::TakeFocusAwayFrom(mImpl->widget);
  }
  if (mImpl->widget && mImpl->ownsWidget)
    mImpl->widget->setEnabled(enabled && !mImpl->disabled);
}

bool UI_Node::UI_IsEnabled() const {
  return mImpl->enabled;
}

void UI_Node::UI_SetToolTip(const UString& text, int delayMilliseconds) {
  mImpl->toolTip = text;
  mImpl->toolTipDelay = delayMilliseconds;
  toolkit::ApplyNames(*mImpl);
}

UString UI_Node::UI_GetToolTip() const {
  return mImpl->toolTip;
}

void UI_Node::UI_SetAccessibleName(const UString& name) {
  mImpl->accessibleName = name;
  toolkit::ApplyNames(*mImpl);
}

bool UI_Node::UI_HasKeyboardFocus(bool orChild) const {
  const UI_Node* node = toolkit::GetFocusRecordNode();
  if (!orChild)
    return node == this;
  while (node && node != this)
    node = node->mImpl->parent;
  return node == this;
}

void UI_Node::UI_GainKeyboardFocus(FocusChangeReason reason) {
  TraceNode("UI_Node::UI_GainKeyboardFocus", *this, "reason", reason);
  const bool takesFocus = mImpl->wantsFocus && mImpl->shown && mImpl->enabled && !mImpl->disabled;
  if (takesFocus)
    toolkit::ChangeFocus(this, mImpl->widget, reason);
}

PointT<float> UI_Node::UI_GetRecommendedSize(drawbot::Drawbot&) const {
  if (mImpl->recommend)
    return mImpl->recommend();
  if (!mImpl->widget)
    return {};
  const QSize size = mImpl->widget->sizeHint();
  return {static_cast<float>(std::max(0, size.width())), static_cast<float>(std::max(0, size.height()))};
}

bool UI_Node::UI_DoPreKeyboardEvent(UI_Node*, const KeyboardEvent&) {
  return false;
}

bool UI_Node::UI_DoKeyboardEvent(UI_Node*, const KeyboardEvent&) {
  return false;
}

void UI_Node::UI_FocusChanged(FocusChangeReason) {}

UI_ControlView::UI_ControlView() = default;

UI_ControlView::~UI_ControlView() = default;

void UI_ControlView::SetDisabled(bool disabled) {
  TraceNode("UI_ControlView::SetDisabled", *this, "disabled", disabled);
  NodeImpl& impl = Impl();
  impl.disabled = disabled;
  if (disabled) {
    if (UI_HasKeyboardFocus(true))
      toolkit::ChangeFocus(nullptr, nullptr, kFocusChange_None);
    toolkit::TakeFocusAwayFrom(impl.widget);
  }
  if (impl.widget)
    impl.widget->setEnabled(impl.enabled && !disabled);
}

bool UI_ControlView::IsDisabled() const {
  return Impl().disabled;
}

void UI_ControlView::SetWantsKeyboardFocus(bool wants) {
  Impl().wantsFocus = wants;
  if (Impl().widget)
    Impl().widget->setFocusPolicy(wants ? Qt::StrongFocus : Qt::NoFocus);
}

void UI_ControlView::SetValueUnknown() {}

} // namespace zebui::ui
